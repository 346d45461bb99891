// Text of the 2-D layer. Sizes and widths in pixels; without a font nothing is drawn and every width is 0.
#pragma once

#include "ui/layer/ui_batch.h"

enum UiAlign {
    ALIGN_LEFT,
    ALIGN_CENTER,
    ALIGN_RIGHT
};

// A text size of the screens' layouts, which count at a window 720 high, in the whole pixels of this window.
int uiFontSize(const Ui& ui, float size);

float uiTextWidth(Ui& ui, const char* text, int size, bool bold = false);
// From line to line; `size` without a font.
float uiLineHeight(Ui& ui, int size, bool bold = false);
// The largest size from `size` downwards at which the text is no wider than maxWidth; 10 is the floor.
int uiFitFontSize(Ui& ui, const char* text, int size, float maxWidth, bool bold = false);

// `x` is the left end, the middle or the right end by `align`, `y` the top. The width drawn, 0 for nothing.
float uiText(Ui& ui, float x, float y, const char* text, int size, UiColor color, int align = ALIGN_LEFT,
             bool bold = false);
// Centred vertically; `padding` from the left or the right edge.
float uiTextInRect(Ui& ui, UiRect rect, const char* text, int size, UiColor color, int align,
                   float padding = 0.0f, bool bold = false);
// Words laid into the rectangle line by line; lines that do not fit whole are dropped.
void uiWrappedText(Ui& ui, UiRect rect, const char* text, int size, UiColor color, float extraLineGap);
