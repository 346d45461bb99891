#include "ui/fonts.h"

#include "ui/shape_text.h"

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

static bool pickFont(FontSystem& fonts, std::span<const FontFiles> candidates) {
    for (const FontFiles& files : candidates) {
        if (!opens(files.regular)) continue;
        fonts.regularPath = files.regular;
        fonts.boldPath = opens(files.bold) ? files.bold : files.regular;
        return true;
    }
    return false;
}

static void selectFonts(FontSystem& fonts, int language, std::string* log) {
    fonts.shapeMode = language == ARABIC ? SHAPE_ARABIC : language == HINDI ? SHAPE_DEVANAGARI : SHAPE_NONE;
    fonts.regularPath.clear();
    fonts.boldPath.clear();
    if (!pickFont(fonts, fontsOf(language)) && pickFont(fonts, DEFAULT_FONTS) && log)
        *log += "No font for this language, using " + fonts.regularPath + "\n";
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

static void closeSizedFonts(FontSystem& fonts) {
    for (const auto& [key, font] : fonts.sizedFonts)
        if (font) TTF_CloseFont(font);
    fonts.sizedFonts.clear();
}

void fontsShutdown(FontSystem& fonts) {
    fontsClearRuns(fonts);
    closeSizedFonts(fonts);
    if (fonts.ttfReady) TTF_Quit();
    fonts.ttfReady = 0;
    fonts.regularPath.clear();
    fonts.boldPath.clear();
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

TTF_Font* fontAt(FontSystem& fonts, int size, bool bold) {
    const int32_t key = size * 2 + (bold ? 1 : 0);
    const auto found = fonts.sizedFonts.find(key);
    if (found != fonts.sizedFonts.end()) return found->second;
    TTF_Font* font = TTF_OpenFont((bold ? fonts.boldPath : fonts.regularPath).c_str(), size);
    fonts.sizedFonts[key] = font; // null too, so that a size that fails is not tried in every frame
    return font;
}

int fontsMeasure(FontSystem& fonts, const char* text, int size, bool bold) {
    if (!*text || fonts.regularPath.empty()) return 0;
    TTF_Font* font = fontAt(fonts, size, bold);
    if (!font) return 0;
    int width = 0;
    if (TTF_SizeUTF8(font, shapeText(text, fonts.shapeMode).c_str(), &width, nullptr) != 0) return 0;
    return width;
}

int fontsLineSkip(FontSystem& fonts, int size, bool bold) {
    TTF_Font* font = fonts.regularPath.empty() ? nullptr : fontAt(fonts, size, bold);
    return font ? TTF_FontLineSkip(font) : size;
}

static void appendNumber(std::string& text, long long number) {
    char digits[24];
    text.append(digits, std::to_chars(digits, digits + sizeof digits, number).ptr);
}

static GLuint uploadRun(const SDL_Surface& surface) {
    GLuint texture = 0;
    gl.GenTextures(1, &texture);
    gl.BindTexture(GL_TEXTURE_2D, texture);
    gl.PixelStorei(GL_UNPACK_ALIGNMENT, 1);
    gl.TexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, surface.w, surface.h, 0, GL_RGBA, GL_UNSIGNED_BYTE,
                  surface.pixels);
    gl.TexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    gl.TexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    gl.TexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    gl.TexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    gl.BindTexture(GL_TEXTURE_2D, 0);
    return texture;
}

static TextRun renderRun(FontSystem& fonts, const char* text, int size, uint32_t color, bool bold) {
    TTF_Font* font = fontAt(fonts, size, bold);
    if (!font) return {};
    const SDL_Color colorBytes = {static_cast<uint8_t>(color >> 24), static_cast<uint8_t>(color >> 16),
                                  static_cast<uint8_t>(color >> 8), static_cast<uint8_t>(color)};
    SDL_Surface* rendered =
        TTF_RenderUTF8_Blended(font, shapeText(text, fonts.shapeMode).c_str(), colorBytes);
    if (!rendered) return {};
    SDL_Surface* surface = SDL_ConvertSurfaceFormat(rendered, SDL_PIXELFORMAT_RGBA32, 0);
    SDL_FreeSurface(rendered);
    if (!surface) return {};
    const TextRun run = {uploadRun(*surface), surface->w, surface->h};
    SDL_FreeSurface(surface);
    return run;
}

TextRun fontsRenderRun(FontSystem& fonts, const char* text, int size, uint32_t color, bool bold) {
    if (!*text || fonts.regularPath.empty()) return {};

    std::string& key = fonts.runKey;
    key.clear();
    appendNumber(key, size);
    key += bold ? "b|" : "|";
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
