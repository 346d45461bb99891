#include "ui/text/latin_text.h"

#include <algorithm>
#include <cassert>
#include <cstdint>
#include <cstring>
#include <vector>

// --- Pictures of the text library: 32 bits a pixel, alpha in the highest byte

static const uint32_t* pixelRow(const SDL_Surface& surface, int y) {
    assert(y >= 0 && y < surface.h && surface.format->BytesPerPixel == 4);
    const uint8_t* pixels = static_cast<const uint8_t*>(surface.pixels);
    return reinterpret_cast<const uint32_t*>(pixels + static_cast<ptrdiff_t>(y) * surface.pitch);
}

static bool samePicture(const SDL_Surface& a, const SDL_Surface& b) {
    if (a.w != b.w || a.h != b.h) return false;
    for (int y = 0; y < a.h; y++)
        if (std::memcmp(pixelRow(a, y), pixelRow(b, y), static_cast<size_t>(a.w) * 4) != 0) return false;
    return true;
}

bool hasLatinLetters(TTF_Font* font) {
    constexpr SDL_Color white = {255, 255, 255, 255};
    SDL_Surface* narrow = TTF_RenderUTF8_Blended(font, "i", white);
    SDL_Surface* wide = TTF_RenderUTF8_Blended(font, "W", white);
    const bool differ = narrow && wide && !samePicture(*narrow, *wide);
    SDL_FreeSurface(narrow);
    SDL_FreeSurface(wide);
    return differ;
}

static uint32_t strongestAlpha(const SDL_Surface& surface, int y) {
    uint32_t strongest = 0;
    for (int x = 0; x < surface.w; x++) strongest = std::max(strongest, pixelRow(surface, y)[x] >> 24);
    return strongest;
}

// Rows from the top of a line to the foot of its digits, which every font has. Below lies only what their
// curves overshoot, which is fainter.
static int baseLine(TTF_Font* font) {
    SDL_Surface* digits = TTF_RenderUTF8_Blended(font, "1247", {255, 255, 255, 255});
    if (!digits) return 0;
    uint32_t strongest = 0;
    for (int y = 0; y < digits->h; y++) strongest = std::max(strongest, strongestAlpha(*digits, y));
    int foot = digits->h;
    while (foot > 0 && strongestAlpha(*digits, foot - 1) * 2 < strongest) foot--;
    SDL_FreeSurface(digits);
    return foot;
}

// --- The pieces of a text

struct TextPiece {
    std::string text;
    bool latin;
};

static bool isPrintedAscii(char c) { return c > ' ' && c <= '~'; }
static bool isLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

// A Latin word is ASCII without blanks, and one letter at least: "[F5]" is one, "100%" is none.
static std::vector<TextPiece> splitPieces(const std::string& text) {
    std::vector<TextPiece> pieces;
    for (size_t start = 0; start < text.size();) {
        size_t end = start;
        bool latin = false;
        for (; end < text.size() && isPrintedAscii(text[end]); end++) latin |= isLetter(text[end]);
        if (end == start) end++;
        if (latin || pieces.empty() || pieces.back().latin) pieces.push_back({{}, latin});
        pieces.back().text.append(text, start, end - start);
        start = end;
    }
    return pieces;
}

static int widthOf(TTF_Font* font, const std::string& text) {
    int width = 0;
    return TTF_SizeUTF8(font, text.c_str(), &width, nullptr) == 0 ? width : 0;
}

static int measurePieces(TTF_Font* font, TTF_Font* latinFont, const std::vector<TextPiece>& pieces) {
    int width = 0;
    for (const TextPiece& piece : pieces) width += widthOf(piece.latin ? latinFont : font, piece.text);
    return width;
}

int measureMixedText(TTF_Font* font, TTF_Font* latinFont, const std::string& text) {
    return measurePieces(font, latinFont, splitPieces(text));
}

SDL_Surface* renderMixedText(TTF_Font* font, TTF_Font* latinFont, const std::string& text, SDL_Color color) {
    const std::vector<TextPiece> pieces = splitPieces(text);
    if (pieces.size() == 1 && !pieces[0].latin) return TTF_RenderUTF8_Blended(font, text.c_str(), color);

    int height = 0;
    TTF_SizeUTF8(font, text.c_str(), nullptr, &height);
    SDL_Surface* line = SDL_CreateRGBSurfaceWithFormat(0, measurePieces(font, latinFont, pieces), height, 32,
                                                       SDL_PIXELFORMAT_RGBA32);
    if (!line) return nullptr;
    const int latinTop = baseLine(font) - baseLine(latinFont);
    int x = 0;
    for (const TextPiece& piece : pieces) {
        TTF_Font* pieceFont = piece.latin ? latinFont : font;
        SDL_Rect place = {x, piece.latin ? latinTop : 0, 0, 0};
        x += widthOf(pieceFont, piece.text);
        SDL_Surface* picture = TTF_RenderUTF8_Blended(pieceFont, piece.text.c_str(), color);
        if (!picture) continue; // nothing but marks without a width
        SDL_SetSurfaceBlendMode(picture, SDL_BLENDMODE_NONE);
        SDL_BlitSurface(picture, nullptr, line, &place);
        SDL_FreeSurface(picture);
    }
    assert(x == line->w);
    return line;
}
