#include "ui/text/text_layout.h"

#include <bit>
#include <cassert>
#include <string_view>
#include <utility>

static long long bitsOf(float number) { return std::bit_cast<uint32_t>(number); }

int fontsFitSize(FontSystem& fonts, const char* text, int size, float maxWidth, bool bold) {
    constexpr int SMALLEST = 10;
    if (size <= SMALLEST) return size;
    if (maxWidth < 0.0f) return SMALLEST; // which nothing is narrower than

    std::string& key = fontsKey(fonts, size, bold);
    appendNumber(key, bitsOf(maxWidth));
    key += '|';
    key += text;
    const auto found = fonts.fittedSizes.find(key);
    if (found != fonts.fittedSizes.end()) return found->second;

    int fitted = size;
    while (fitted > SMALLEST && static_cast<float>(fontsMeasureAnew(fonts, text, fitted, bold)) > maxWidth)
        fitted--;
    assert(key.ends_with(text)); // no other look-up came between
    fontsMakeRoom(fonts, key.size());
    fonts.fittedSizes.emplace(key, fitted);
    return fitted;
}

// A paragraph being broken into lines.
struct Wrapping {
    FontSystem& fonts;
    int size;
    float width;
    size_t mostLines;
    std::vector<std::string> lines = {};
    std::string line = {}; // the running one
    size_t measuredBytes = 0;
};

// Each word is measured with its line, so a line of very many words that never gets wide would hold up the
// game. No screenful of text comes near this.
static bool isDone(const Wrapping& wrapping) {
    constexpr size_t MOST_MEASURED_BYTES = 1u << 20;
    return wrapping.lines.size() >= wrapping.mostLines || wrapping.measuredBytes > MOST_MEASURED_BYTES;
}

// Puts the piece on the running line if it fits there.
static bool append(Wrapping& wrapping, std::string_view piece) {
    const size_t length = wrapping.line.size();
    wrapping.line += piece;
    wrapping.measuredBytes += wrapping.line.size();
    const int width = fontsMeasureAnew(wrapping.fonts, wrapping.line.c_str(), wrapping.size, false);
    if (static_cast<float>(width) <= wrapping.width) return true;
    wrapping.line.resize(length);
    return false;
}

static void endLine(Wrapping& wrapping) {
    wrapping.lines.push_back(wrapping.line);
    wrapping.line.clear();
}

// Bytes of the first code point; continuation bytes belong to the lead before them.
static size_t codePointLength(std::string_view text) {
    assert(!text.empty());
    size_t length = 1;
    while (length < text.size() && (static_cast<uint8_t>(text[length]) & 0xC0u) == 0x80u) length++;
    return length;
}

// A word wider than the paragraph, on a new line: cut where the next code point would not fit. One that is
// too wide by itself stands alone.
static void breakWord(Wrapping& wrapping, std::string_view word) {
    assert(wrapping.line.empty());
    while (!word.empty() && !isDone(wrapping)) {
        const std::string_view character = word.substr(0, codePointLength(word));
        if (!append(wrapping, character)) {
            if (!wrapping.line.empty()) endLine(wrapping);
            wrapping.line = character;
        }
        word.remove_prefix(character.size());
    }
}

static void addWord(Wrapping& wrapping, std::string_view word) {
    if (append(wrapping, word)) return;
    if (!wrapping.line.empty()) {
        endLine(wrapping);
        if (isDone(wrapping) || append(wrapping, word)) return;
    }
    breakWord(wrapping, word);
}

static std::vector<std::string> wrap(Wrapping& wrapping, std::string_view text) {
    while (!text.empty() && !isDone(wrapping)) {
        if (text.front() == ' ') {
            if (!wrapping.line.empty()) wrapping.line += ' ';
            text.remove_prefix(1);
            continue;
        }
        const std::string_view word = text.substr(0, text.find(' '));
        addWord(wrapping, word);
        text.remove_prefix(word.size());
    }
    if (!wrapping.line.empty() && wrapping.lines.size() < wrapping.mostLines) endLine(wrapping);
    return std::move(wrapping.lines);
}

const std::vector<std::string>& fontsWrapText(FontSystem& fonts, const char* text, int size, float width,
                                              int mostLines) {
    assert(mostLines >= 0);
    std::string& key = fontsKey(fonts, size, false);
    appendNumber(key, bitsOf(width));
    key += '|';
    appendNumber(key, mostLines);
    key += '|';
    key += text;
    const auto found = fonts.paragraphs.find(key);
    if (found != fonts.paragraphs.end()) return found->second;

    Wrapping wrapping = {fonts, size, width, static_cast<size_t>(mostLines)};
    std::vector<std::string> lines = wrap(wrapping, text);
    assert(key.ends_with(text));
    fontsMakeRoom(fonts, key.size() * 2 + lines.size() * sizeof(std::string)); // key and lines
    return fonts.paragraphs.emplace(key, std::move(lines)).first->second;
}
