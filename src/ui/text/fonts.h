// Text as pictures: a font of the system for the language, and a cache of whole strings as GL textures.
// Nothing in the program knows glyphs. Main thread only, since it touches GL.
#pragma once

#include "view/gl/gl.h"

#include <SDL_ttf.h>

#include <cstdint>
#include <map>
#include <string>
#include <unordered_map>
#include <vector>

// A string as a texture; all zero when nothing could be drawn.
struct TextRun {
    GLuint texture = 0;
    int32_t width = 0; // pixels
    int32_t height = 0;
};

struct FontSystem {
    uint8_t language = 0;    // for which the paths were chosen
    uint8_t shapeMode = 0;   // ShapeMode
    std::string regularPath; // empty: there is no font, and nothing is measured or drawn
    std::string boldPath;
    std::map<int32_t, TTF_Font*> sizedFonts; // by size * 2 + bold; null for a size that does not open
    std::unordered_map<std::string, TextRun> runCache;
    uint8_t ttfReady = 0;

    // Of the Latin words, where the language's font has no Latin letters; else empty.
    std::string latinPath;
    std::string latinBoldPath;
    std::map<int32_t, TTF_Font*> latinFonts; // as sizedFonts

    // What was measured, by size, weight and text, so that a screen measures no text twice. Emptied with the
    // language, and when it has grown large.
    std::unordered_map<std::string, int> widths;
    std::unordered_map<std::string, int> fittedSizes;
    std::unordered_map<std::string, std::vector<std::string>> paragraphs; // the lines of each
    size_t measuredBytes = 0;                                             // in these three, about

    // The key of the last look-up. Its memory is kept, so that a text that is known allocates nothing.
    std::string key;
};

// Takes the fonts of English. True when there is one; without one the game goes on and draws no text. `log`,
// which may be null, gets what there is to tell.
bool fontsInit(FontSystem& fonts, std::string* log);
// Empties every cache and ends the text library. Needs the GL context.
void fontsShutdown(FontSystem& fonts);

void fontsSetLanguage(FontSystem& fonts, int language);
// Deletes the cached textures.
void fontsClearRuns(FontSystem& fonts);

// Sizes are in pixels, as the drawing layer counts them. Null when the font cannot be opened, as with a size
// below 1 or above LARGEST_FONT_SIZE.
constexpr int LARGEST_FONT_SIZE = 256;
TTF_Font* fontAt(FontSystem& fonts, int size, bool bold);
// Width of the shaped text in pixels, 0 without a font.
int fontsMeasure(FontSystem& fonts, const char* text, int size, bool bold);
// The same, neither looked up nor remembered.
int fontsMeasureAnew(FontSystem& fonts, const char* text, int size, bool bold);
// From line to line; `size` without a font.
int fontsLineSkip(FontSystem& fonts, int size, bool bold);
// `color` is r << 24 | g << 16 | b << 8 | a. The texture lives until the cache is emptied, which happens when
// a run is missing from a cache of more than 900. No order of use is kept, so that all go at once, and
// texts that the frame has queued by then may be wrong in it.
TextRun fontsRenderRun(FontSystem& fonts, const char* text, int size, uint32_t color, bool bold);

// For what is remembered of texts. The first begins the key of a look-up with size and weight, and the caller
// appends the rest; the last makes room for an entry of about so many bytes. There is one key for all
// look-ups: until its entry is stored, the caller measures by fontsMeasureAnew, since any other look-up would
// overwrite it.
std::string& fontsKey(FontSystem& fonts, int size, bool bold);
void appendNumber(std::string& text, long long number);
void fontsMakeRoom(FontSystem& fonts, size_t bytes);
