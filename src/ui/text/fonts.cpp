#include "ui/text/fonts.h"

#include "ui/text/latin_text.h"
#include "ui/text/shape_text.h"

#include <algorithm>
#include <cassert>
#include <charconv>
#include <span>

constexpr int CHINESE = 10;
constexpr int JAPANESE = 11;
constexpr int ARABIC = 12;
constexpr int HINDI = 13;

struct FontFiles {
    const char* regular;
    const char* bold;
};

// clang-format off
static constexpr FontFiles CHINESE_FONTS[] = {
    {"C:/Windows/Fonts/msyh.ttc", "C:/Windows/Fonts/msyhbd.ttc"},
    {"C:/Windows/Fonts/simhei.ttf", "C:/Windows/Fonts/simhei.ttf"},
    {"/usr/share/fonts/truetype/wqy/wqy-zenhei.ttc", "/usr/share/fonts/truetype/wqy/wqy-zenhei.ttc"},
};
static constexpr FontFiles JAPANESE_FONTS[] = {
    {"C:/Windows/Fonts/YuGothM.ttc", "C:/Windows/Fonts/YuGothB.ttc"},
    {"C:/Windows/Fonts/meiryo.ttc", "C:/Windows/Fonts/meiryob.ttc"},
    {"C:/Windows/Fonts/msgothic.ttc", "C:/Windows/Fonts/msgothic.ttc"},
    {"/usr/share/fonts/truetype/fonts-japanese-gothic.ttf", "/usr/share/fonts/truetype/fonts-japanese-gothic.ttf"},
    {"/usr/share/fonts/truetype/wqy/wqy-zenhei.ttc", "/usr/share/fonts/truetype/wqy/wqy-zenhei.ttc"},
};
static constexpr FontFiles ARABIC_FONTS[] = {
    {"C:/Windows/Fonts/segoeui.ttf", "C:/Windows/Fonts/segoeuib.ttf"},
    {"C:/Windows/Fonts/arial.ttf", "C:/Windows/Fonts/arialbd.ttf"},
    {"C:/Windows/Fonts/tahoma.ttf", "C:/Windows/Fonts/tahomabd.ttf"},
    {"/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf", "/usr/share/fonts/truetype/dejavu/DejaVuSans-Bold.ttf"},
};
static constexpr FontFiles HINDI_FONTS[] = {
    {"C:/Windows/Fonts/Nirmala.ttc", "C:/Windows/Fonts/NirmalaB.ttc"},
    {"C:/Windows/Fonts/mangal.ttf", "C:/Windows/Fonts/mangal.ttf"},
    {"/usr/share/fonts/truetype/noto/NotoSansDevanagari-Regular.ttf",
     "/usr/share/fonts/truetype/noto/NotoSansDevanagari-Bold.ttf"},
};
static constexpr FontFiles DEFAULT_FONTS[] = {
    {"C:/Windows/Fonts/segoeui.ttf", "C:/Windows/Fonts/segoeuib.ttf"},
    {"C:/Windows/Fonts/arial.ttf", "C:/Windows/Fonts/arialbd.ttf"},
    {"/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf", "/usr/share/fonts/truetype/dejavu/DejaVuSans-Bold.ttf"},
    {"/usr/share/fonts/truetype/liberation/LiberationSans-Regular.ttf",
     "/usr/share/fonts/truetype/liberation/LiberationSans-Bold.ttf"},
};
// clang-format on

static std::span<const FontFiles> fontsOf(int language) {
    switch (language) {
    case CHINESE:
        return CHINESE_FONTS;
    case JAPANESE:
        return JAPANESE_FONTS;
    case ARABIC:
        return ARABIC_FONTS;
    case HINDI:
        return HINDI_FONTS;
    default:
        return DEFAULT_FONTS;
    }
}

static bool opens(const char* path) {
    TTF_Font* font = TTF_OpenFont(path, 16);
    if (font) TTF_CloseFont(font);
    return font != nullptr;
}

// The first regular font that opens, and its partner or itself.
static bool pickFont(std::span<const FontFiles> candidates, std::string& regularPath, std::string& boldPath) {
    for (const FontFiles& files : candidates) {
        if (!opens(files.regular)) continue;
        regularPath = files.regular;
        boldPath = opens(files.bold) ? files.bold : files.regular;
        return true;
    }
    return false;
}

static bool lacksLatin(const std::string& path) {
    TTF_Font* font = TTF_OpenFont(path.c_str(), 16);
    if (!font) return false;
    const bool lacks = !hasLatinLetters(font);
    TTF_CloseFont(font);
    return lacks;
}

static void selectFonts(FontSystem& fonts, int language, std::string* log) {
    fonts.shapeMode = language == ARABIC ? SHAPE_ARABIC : language == HINDI ? SHAPE_DEVANAGARI : SHAPE_NONE;
    for (std::string* path : {&fonts.regularPath, &fonts.boldPath, &fonts.latinPath, &fonts.latinBoldPath})
        path->clear();
    if (pickFont(fontsOf(language), fonts.regularPath, fonts.boldPath)) {
        if (lacksLatin(fonts.regularPath)) pickFont(DEFAULT_FONTS, fonts.latinPath, fonts.latinBoldPath);
    } else if (pickFont(DEFAULT_FONTS, fonts.regularPath, fonts.boldPath) && log) {
        *log += "No font for this language, using " + fonts.regularPath + "\n";
    }
    fonts.language = static_cast<uint8_t>(language);
}

bool fontsInit(FontSystem& fonts, std::string* log) {
    if (TTF_Init() != 0) {
        if (log) *log += std::string("TTF_Init failed: ") + SDL_GetError() + "\n";
        return false;
    }
    fonts.ttfReady = 1;
    selectFonts(fonts, 0, log);
    if (!fonts.regularPath.empty()) return true;
    if (log) *log += "No usable font found. Text will not be drawn.\n";
    return false;
}

static void forgetMeasures(FontSystem& fonts) {
    fonts.widths.clear();
    fonts.fittedSizes.clear();
    fonts.paragraphs.clear();
    fonts.measuredBytes = 0;
}

// With the fonts goes what was measured in them.
static void closeSizedFonts(FontSystem& fonts) {
    forgetMeasures(fonts);
    for (auto* sizes : {&fonts.sizedFonts, &fonts.latinFonts}) {
        for (const auto& [key, font] : *sizes)
            if (font) TTF_CloseFont(font);
        sizes->clear();
    }
}

void fontsShutdown(FontSystem& fonts) {
    fontsClearRuns(fonts);
    closeSizedFonts(fonts);
    if (fonts.ttfReady) TTF_Quit();
    fonts.ttfReady = 0;
    fonts.regularPath.clear();
    fonts.boldPath.clear();
    fonts.latinPath.clear();
    fonts.latinBoldPath.clear();
}

void fontsSetLanguage(FontSystem& fonts, int language) {
    if (fonts.language == language && !fonts.regularPath.empty()) return;
    fontsClearRuns(fonts);
    closeSizedFonts(fonts);
    selectFonts(fonts, language, nullptr);
}

void fontsClearRuns(FontSystem& fonts) {
    for (const auto& [key, run] : fonts.runCache) gl.DeleteTextures(1, &run.texture);
    fonts.runCache.clear();
}

static TTF_Font* openSized(const std::string& path, int size) {
    // The text library takes sizes below 1 for 1; and each open font holds a file, of which a process may
    // have some 1,000.
    if (size < 1 || size > LARGEST_FONT_SIZE) return nullptr;
    return TTF_OpenFont(path.c_str(), size);
}

static TTF_Font* sizedFont(std::map<int32_t, TTF_Font*>& sizes, const std::string& path, int size,
                           bool bold) {
    // The sizes that do not open are kept as two, since the key of a wild one would overflow.
    const int32_t key = std::clamp(size, 0, LARGEST_FONT_SIZE + 1) * 2 + (bold ? 1 : 0);
    const auto found = sizes.find(key);
    if (found != sizes.end()) return found->second;
    TTF_Font* font = openSized(path, size);
    sizes[key] = font; // null too, so that a size that fails is not tried in every frame
    return font;
}

TTF_Font* fontAt(FontSystem& fonts, int size, bool bold) {
    return sizedFont(fonts.sizedFonts, bold ? fonts.boldPath : fonts.regularPath, size, bold);
}

// Null where the language's font has Latin letters.
static TTF_Font* latinFontAt(FontSystem& fonts, int size, bool bold) {
    if (fonts.latinPath.empty()) return nullptr;
    return sizedFont(fonts.latinFonts, bold ? fonts.latinBoldPath : fonts.latinPath, size, bold);
}

void appendNumber(std::string& text, long long number) {
    char digits[24];
    text.append(digits, std::to_chars(digits, digits + sizeof digits, number).ptr);
}

std::string& fontsKey(FontSystem& fonts, int size, bool bold) {
    fonts.key.clear();
    appendNumber(fonts.key, size);
    fonts.key += bold ? "b|" : "|";
    return fonts.key;
}

void fontsMakeRoom(FontSystem& fonts, size_t bytes) {
    constexpr size_t MOST_BYTES = 4u << 20; // the texts of a day of play; a text of 100 kB is still kept
    constexpr size_t ENTRY_BYTES = 100;     // besides its texts
    if (fonts.measuredBytes + bytes > MOST_BYTES) forgetMeasures(fonts);
    fonts.measuredBytes += bytes + ENTRY_BYTES;
}

int fontsMeasureAnew(FontSystem& fonts, const char* text, int size, bool bold) {
    if (!*text || fonts.regularPath.empty()) return 0;
    TTF_Font* font = fontAt(fonts, size, bold);
    if (!font) return 0;
    const std::string shaped = shapeText(text, fonts.shapeMode);
    if (TTF_Font* latinFont = latinFontAt(fonts, size, bold))
        return measureMixedText(font, latinFont, shaped);
    int width = 0;
    return TTF_SizeUTF8(font, shaped.c_str(), &width, nullptr) == 0 ? width : 0;
}

int fontsMeasure(FontSystem& fonts, const char* text, int size, bool bold) {
    if (!*text || fonts.regularPath.empty()) return 0;
    std::string& key = fontsKey(fonts, size, bold);
    key += text;
    const auto found = fonts.widths.find(key);
    if (found != fonts.widths.end()) return found->second;

    const int width = fontsMeasureAnew(fonts, text, size, bold);
    assert(key.ends_with(text));
    fontsMakeRoom(fonts, key.size());
    fonts.widths.emplace(key, width);
    return width;
}

int fontsLineSkip(FontSystem& fonts, int size, bool bold) {
    TTF_Font* font = fonts.regularPath.empty() ? nullptr : fontAt(fonts, size, bold);
    return font ? TTF_FontLineSkip(font) : size;
}

// Bytes R, G, B, A, row by row.
static TextRun uploadRun(const SDL_Surface& surface) {
    // A wider texture is refused by common cards. What is cut here lies beyond every screen.
    constexpr int WIDEST_RUN = 8192;
    assert(surface.pitch == surface.w * 4);
    TextRun run = {0, std::min(surface.w, WIDEST_RUN), surface.h};
    gl.GenTextures(1, &run.texture);
    gl.BindTexture(GL_TEXTURE_2D, run.texture);
    gl.PixelStorei(GL_UNPACK_ALIGNMENT, 1);
    if (surface.w > run.width) gl.PixelStorei(GL_UNPACK_ROW_LENGTH, surface.w);
    gl.TexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, run.width, run.height, 0, GL_RGBA, GL_UNSIGNED_BYTE,
                  surface.pixels);
    if (surface.w > run.width) gl.PixelStorei(GL_UNPACK_ROW_LENGTH, 0);
    gl.TexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    gl.TexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    gl.TexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    gl.TexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    gl.BindTexture(GL_TEXTURE_2D, 0);
    return run;
}

static TextRun renderRun(FontSystem& fonts, const char* text, int size, uint32_t color, bool bold) {
    TTF_Font* font = fontAt(fonts, size, bold);
    if (!font) return {};
    const SDL_Color colorBytes = {static_cast<uint8_t>(color >> 24), static_cast<uint8_t>(color >> 16),
                                  static_cast<uint8_t>(color >> 8), static_cast<uint8_t>(color)};
    const std::string shaped = shapeText(text, fonts.shapeMode);
    TTF_Font* latinFont = latinFontAt(fonts, size, bold);
    SDL_Surface* rendered = latinFont ? renderMixedText(font, latinFont, shaped, colorBytes)
                                      : TTF_RenderUTF8_Blended(font, shaped.c_str(), colorBytes);
    if (!rendered) return {};
    SDL_Surface* surface = SDL_ConvertSurfaceFormat(rendered, SDL_PIXELFORMAT_RGBA32, 0);
    SDL_FreeSurface(rendered);
    if (!surface) return {};
    const TextRun run = uploadRun(*surface);
    SDL_FreeSurface(surface);
    return run;
}

TextRun fontsRenderRun(FontSystem& fonts, const char* text, int size, uint32_t color, bool bold) {
    if (!*text || fonts.regularPath.empty()) return {};

    std::string& key = fontsKey(fonts, size, bold);
    appendNumber(key, color);
    key += '|';
    key += text;
    const auto found = fonts.runCache.find(key);
    if (found != fonts.runCache.end()) return found->second;

    constexpr size_t MOST_RUNS = 900;
    if (fonts.runCache.size() > MOST_RUNS) fontsClearRuns(fonts);
    const TextRun run = renderRun(fonts, text, size, color, bold);
    if (run.texture) fonts.runCache.emplace(key, run); // a failure is tried again in the next frame
    return run;
}
