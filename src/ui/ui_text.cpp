#include "ui/ui_text.h"

#include "ui/ui_shapes.h"

#include <algorithm>
#include <string>

int uiFontSize(const Ui& ui, float size) { return static_cast<int>(size * uiScale(ui)); }

float uiTextWidth(Ui& ui, const char* text, int size, bool bold) {
    return static_cast<float>(fontsMeasure(*ui.fonts, text, size, bold));
}

float uiLineHeight(Ui& ui, int size, bool bold) {
    return static_cast<float>(fontsLineSkip(*ui.fonts, size, bold));
}

int uiFitFontSize(Ui& ui, const char* text, int size, float maxWidth, bool bold) {
    constexpr int SMALLEST = 10;
    while (size > SMALLEST && uiTextWidth(ui, text, size, bold) > maxWidth) size--;
    return size;
}

static uint32_t packColor(UiColor color) {
    uint32_t packed = 0;
    for (const float channel : {color.r, color.g, color.b, color.a})
        packed = packed << 8 | static_cast<uint32_t>(std::clamp(channel, 0.0f, 1.0f) * 255.0f + 0.5f);
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

// A paragraph being laid into its rectangle.
struct Paragraph {
    UiRect rect;
    int size;
    UiColor color;
    float lineHeight;
    float lineStep;
    float y;
    std::string line;
    bool full = false; // the next line would not fit: the rest is dropped
};

static bool fits(Ui& ui, const Paragraph& paragraph, const std::string& line) {
    return uiTextWidth(ui, line.c_str(), paragraph.size) <= paragraph.rect.w;
}

static void endLine(Ui& ui, Paragraph& paragraph) {
    const UiRect& rect = paragraph.rect;
    if (paragraph.y + paragraph.lineHeight > rect.y + rect.h + 0.5f) {
        paragraph.full = true;
        return;
    }
    uiText(ui, rect.x, paragraph.y, paragraph.line.c_str(), paragraph.size, paragraph.color);
    paragraph.y += paragraph.lineStep;
    paragraph.line.clear();
}

// Bytes of the code point at `text`; continuation bytes belong to the lead before them.
static size_t codePointLength(const char* text) {
    size_t length = 1;
    while ((static_cast<unsigned char>(text[length]) & 0xC0u) == 0x80u) length++;
    return length;
}

// A word wider than the rectangle is cut where the next code point would not fit.
static void addLongWord(Ui& ui, Paragraph& paragraph, const std::string& word) {
    for (size_t at = 0; at < word.size() && !paragraph.full;) {
        const size_t length = codePointLength(word.c_str() + at);
        const std::string character = word.substr(at, length);
        if (!paragraph.line.empty() && !fits(ui, paragraph, paragraph.line + character))
            endLine(ui, paragraph);
        paragraph.line += character;
        at += length;
    }
}

static void addWord(Ui& ui, Paragraph& paragraph, const std::string& word) {
    if (fits(ui, paragraph, paragraph.line + word)) {
        paragraph.line += word;
        return;
    }
    if (!paragraph.line.empty()) endLine(ui, paragraph);
    if (paragraph.full) return;
    if (fits(ui, paragraph, word))
        paragraph.line = word;
    else
        addLongWord(ui, paragraph, word);
}

void uiWrappedText(Ui& ui, UiRect rect, const char* text, int size, UiColor color, float extraLineGap) {
    const float lineHeight = uiLineHeight(ui, size);
    Paragraph paragraph = {rect,   size, color, lineHeight, lineHeight + 2.0f * extraLineGap,
                           rect.y, {},   false};
    while (*text && !paragraph.full) {
        if (*text == ' ') {
            if (!paragraph.line.empty()) paragraph.line += ' ';
            text++;
            continue;
        }
        const char* end = text;
        while (*end && *end != ' ') end++;
        addWord(ui, paragraph, std::string(text, end));
        text = end;
    }
    if (!paragraph.full && !paragraph.line.empty()) endLine(ui, paragraph);
}
