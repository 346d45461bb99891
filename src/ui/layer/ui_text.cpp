#include "ui/layer/ui_text.h"

#include "sim/numbers.h"
#include "ui/layer/ui_shapes.h"
#include "ui/text/text_layout.h"

#include <algorithm>
#include <cstring>
#include <string>

int uiFontSize(const Ui& ui, float size) { return static_cast<int>(size * uiScale(ui)); }

float uiTextWidth(Ui& ui, const char* text, int size, bool bold) {
    return static_cast<float>(fontsMeasure(*ui.fonts, text, size, bold));
}

float uiLineHeight(Ui& ui, int size, bool bold) {
    return static_cast<float>(fontsLineSkip(*ui.fonts, size, bold));
}

int uiFitFontSize(Ui& ui, const char* text, int size, float maxWidth, bool bold) {
    return fontsFitSize(*ui.fonts, text, size, maxWidth, bold);
}

static uint32_t packColor(UiColor color) {
    uint32_t packed = 0;
    for (const float channel : {color.r, color.g, color.b, color.a}) {
        const float held = channel > 0.0f ? std::min(channel, 1.0f) : 0.0f; // NaN is 0
        packed = packed << 8 | static_cast<uint32_t>(wholePart(held * 255.0f + 0.5f));
    }
    return packed;
}

float uiText(Ui& ui, float x, float y, const char* text, int size, UiColor color, int align, bool bold) {
    const TextRun run = fontsRenderRun(*ui.fonts, text, size, packColor(color), bold);
    if (run.texture == 0) return 0.0f;
    const float width = static_cast<float>(run.width);
    if (align == ALIGN_CENTER) x -= width * 0.5f;
    if (align == ALIGN_RIGHT) x -= width;
    uiTexturedRect(ui, {x, y, width, static_cast<float>(run.height)}, run.texture, {1.0f, 1.0f, 1.0f, 1.0f});
    return width;
}

float uiTextInRect(Ui& ui, UiRect rect, const char* text, int size, UiColor color, int align, float padding,
                   bool bold) {
    const float y = rect.y + rect.h * 0.5f - uiLineHeight(ui, size, bold) * 0.5f;
    const float x = align == ALIGN_LEFT    ? rect.x + padding
                    : align == ALIGN_RIGHT ? rect.x + rect.w - padding
                                           : rect.x + rect.w * 0.5f;
    return uiText(ui, x, y, text, size, color, align, bold);
}

// How many lines the rectangle holds whole, at most `most`.
static int linesThatFit(UiRect rect, float lineHeight, float lineStep, int most) {
    int count = 0;
    for (float y = rect.y; count < most && !(y + lineHeight > rect.y + rect.h + 0.5f); y += lineStep) count++;
    return count;
}

void uiWrappedText(Ui& ui, UiRect rect, const char* text, int size, UiColor color, float extraLineGap) {
    const float lineHeight = uiLineHeight(ui, size);
    const float lineStep = lineHeight + 2.0f * extraLineGap;
    const int length = static_cast<int>(std::strlen(text)); // a line has a byte at least
    const int mostLines = linesThatFit(rect, lineHeight, lineStep, length);

    float y = rect.y;
    for (const std::string& line : fontsWrapText(*ui.fonts, text, size, rect.w, mostLines)) {
        uiText(ui, rect.x, y, line.c_str(), size, color);
        y += lineStep;
    }
}
