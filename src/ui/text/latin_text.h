// Latin words inside a text of another script. Some fonts of a script hold no Latin letters, so that the name
// of the game or of a key would be a row of empty boxes; such words are set in a second font then.
#pragma once

#include <SDL_ttf.h>

#include <string>

// Whether the font draws "i" and "W" differently, which it does not where both are the box of a missing
// glyph.
bool hasLatinLetters(TTF_Font* font);

// A text in `font` with its Latin words in `latinFont`. Its width in pixels, 0 when it cannot be measured.
int measureMixedText(TTF_Font* font, TTF_Font* latinFont, const std::string& text);
// Its picture, all on the base line of `font`, or null when there is none. The caller frees it.
SDL_Surface* renderMixedText(TTF_Font* font, TTF_Font* latinFont, const std::string& text, SDL_Color color);
