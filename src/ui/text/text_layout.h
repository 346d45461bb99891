// Texts fitted to a width: the size of a label, the lines of a paragraph. Each is computed once and then
// looked up, since the screens ask again in every frame.
#pragma once

#include "ui/text/fonts.h"

// The largest size from `size` downwards at which the text is no wider than maxWidth. 10 is the floor, and a
// smaller size comes back as it is.
int fontsFitSize(FontSystem& fonts, const char* text, int size, float maxWidth, bool bold);

// The first `mostLines` lines of the text, broken at spaces; a word wider than `width` is broken between code
// points. Valid until the next call.
const std::vector<std::string>& fontsWrapText(FontSystem& fonts, const char* text, int size, float width,
                                              int mostLines);
