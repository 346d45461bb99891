#include "ui/text/text_layout.h"

#include "allocation_count.h"
#include "ui/text/font_gate.h"
#include "ui/words/strings.h"
#include "view/gl/fake_gl.h"

#include <gmock/gmock.h>

#include <climits>
#include <cmath>

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

struct TextLayout : testing::Test {
    FontGate gate;
    FakeGl fake;
    FontSystem fonts;

    void SetUp() override { ASSERT_TRUE(fontsInit(fonts, nullptr)); }
    void TearDown() override {
        fontsShutdown(fonts);
        setCurrentLanguage(0);
    }
    void speak(int language) {
        setCurrentLanguage(language);
        fontsSetLanguage(fonts, language);
    }
    float width(const std::string& text, int size) {
        return static_cast<float>(fontsMeasureAnew(fonts, text.c_str(), size, false));
    }
    int fit(const std::string& text, int size, float most) {
        return fontsFitSize(fonts, text.c_str(), size, most, false);
    }
    std::vector<std::string> wrap(const std::string& text, float most, int lines = 1000, int size = 16) {
        return fontsWrapText(fonts, text.c_str(), size, most, lines);
    }
};

// --- The size of a label

TEST_F(TextLayout, ALabelThatFitsKeepsItsSize) {
    const float whole = width("Commercial", 20);
    EXPECT_EQ(fit("Commercial", 20, whole), 20);
    EXPECT_EQ(fit("Commercial", 20, whole - 0.5f), 19);
    EXPECT_EQ(fit("", 20, 0.0f), 20);
}

TEST_F(TextLayout, ALabelIsLoweredUntilItFitsOrReachesTheFloor) {
    for (const char* text : {"Commercial", "W", "a longer text of some words"})
        for (float most = 0.0f; most < 200.0f; most += 7.0f) {
            int plain = 22;
            while (plain > 10 && width(text, plain) > most) plain--;
            EXPECT_EQ(fit(text, 22, most), plain) << text << ' ' << most;
        }
}

TEST_F(TextLayout, TheFloorIsNotMeasured) {
    gate.measured = 0;
    EXPECT_EQ(fit("Commercial", 12, 1.0f), 10);
    EXPECT_EQ(gate.measured, 2); // at 12 and 11
}

TEST_F(TextLayout, ASmallSizeComesBackAsItIs) {
    for (const int size : {10, 9, 1, 0, -5, INT_MIN}) EXPECT_EQ(fit("Commercial", size, 1.0f), size);
    EXPECT_EQ(gate.measured, 0);
}

TEST_F(TextLayout, WildWidthsAndSizesAreBorne) {
    EXPECT_EQ(fit("Text", 20, -1.0f), 10);
    EXPECT_EQ(fit("Text", 20, -INFINITY), 10);
    EXPECT_EQ(fit("Text", 20, NAN), 20); // which no width exceeds
    EXPECT_EQ(fit("Text", INT_MAX, -1.0f), 10);
    EXPECT_EQ(fit("Text", INT_MAX, 5.0f), INT_MAX); // it measures nothing
    EXPECT_EQ(fit("Text", 10000, 5.0f), 10000);
}

TEST_F(TextLayout, AFitThatIsKnownIsNeitherMeasuredNorAllocatedAgain) {
    const std::string text = "A label too long for its button, and for a string without memory";
    const int fitted = fit(text, 22, 200.0f);
    gate.measured = 0;
    const uint64_t before = allocationCount();
    EXPECT_EQ(fontsFitSize(fonts, text.c_str(), 22, 200.0f, false), fitted);
    EXPECT_EQ(allocationCount(), before);
    EXPECT_EQ(gate.measured, 0);
    EXPECT_NE(fit(text, 22, 2000.0f), fitted);
    EXPECT_LT(fontsFitSize(fonts, "Text", 22, width("Text", 22), true), 22); // bold is wider
}

// --- The lines of a paragraph

TEST_F(TextLayout, WordsFillALineAsLongAsTheyFit) {
    const float three = width("one two three", 16);
    EXPECT_THAT(wrap("one two three four", three), ElementsAre("one two three ", "four"));
    EXPECT_THAT(wrap("one two three four", three - 1.0f), ElementsAre("one two ", "three four"));
    EXPECT_THAT(wrap("one", 1000.0f), ElementsAre("one"));
}

TEST_F(TextLayout, BlanksBeginNoLine) {
    EXPECT_THAT(wrap("  one  two", 1000.0f), ElementsAre("one  two"));
    EXPECT_THAT(wrap("one   two", width("one", 16)), ElementsAre("one   ", "two"));
    EXPECT_THAT(wrap("", 100.0f), IsEmpty());
    EXPECT_THAT(wrap("      ", 100.0f), IsEmpty());
}

TEST_F(TextLayout, AWordWiderThanTheParagraphIsCutBetweenCodePoints) {
    const float four = width("mmmm", 16);
    EXPECT_THAT(wrap("mmmmmmmmmm", four), ElementsAre("mmmm", "mmmm", "mm"));
    EXPECT_THAT(wrap("éééééé", width("ééé", 16)), ElementsAre("ééé", "ééé"));
    speak(10);
    EXPECT_THAT(wrap("建造一座现代化城市", width("建造一座", 16)), ElementsAre("建造一座", "现代化城", "市"));
}

TEST_F(TextLayout, AWideWordBeginsOnALineOfItsOwnAndTheNextFollowsItsEnd) {
    const float four = width("mmmm", 16);
    EXPECT_THAT(wrap("i mmmmmm i", four), ElementsAre("i ", "mmmm", "mm i"));
}

TEST_F(TextLayout, ACodePointWiderThanTheParagraphStandsAlone) {
    EXPECT_THAT(wrap("abc", 1.0f), ElementsAre("a", "b", "c"));
    EXPECT_THAT(wrap("é a", 0.0f), ElementsAre("é ", "a"));
    EXPECT_THAT(wrap("ab", NAN), ElementsAre("a", "b"));
}

TEST_F(TextLayout, LinesBeyondTheMostAreDropped) {
    EXPECT_THAT(wrap("a b c d", 1.0f, 3), ElementsAre("a ", "b ", "c "));
    EXPECT_THAT(wrap("a b c d", 1.0f, 4), ElementsAre("a ", "b ", "c ", "d"));
    EXPECT_THAT(wrap("mmmmmmmm", width("mm", 16), 2), ElementsAre("mm", "mm"));
    EXPECT_THAT(wrap("a b", 1.0f, 0), IsEmpty());
}

// The rules one by one, a look at every line from its beginning.
static std::vector<std::string> plainWrap(FontSystem& fonts, const std::string& text, int size, float most) {
    const auto fits = [&](const std::string& line) {
        return static_cast<float>(fontsMeasureAnew(fonts, line.c_str(), size, false)) <= most;
    };
    std::vector<std::string> lines;
    std::string line;
    const auto draw = [&] {
        if (!line.empty()) lines.push_back(line);
        line.clear();
    };
    for (size_t i = 0; i < text.size();) {
        if (text[i] == ' ') {
            if (!line.empty()) line += ' ';
            i++;
            continue;
        }
        const size_t end = std::min(text.find(' ', i), text.size());
        const std::string word = text.substr(i, end - i);
        i = end;
        if (fits(line + word)) {
            line += word;
            continue;
        }
        draw();
        if (fits(word)) {
            line = word;
            continue;
        }
        for (size_t k = 0; k < word.size();) {
            size_t next = k + 1;
            while (next < word.size() && (word[next] & 0xC0) == 0x80) next++;
            const std::string character = word.substr(k, next - k);
            if (!line.empty() && !fits(line + character)) draw();
            line += character;
            k = next;
        }
    }
    draw();
    return lines;
}

TEST_F(TextLayout, EveryRowOfEveryLanguageBreaksByTheRules) {
    for (int language = 0; language < LANGUAGE_COUNT; language++) {
        speak(language);
        for (int id = language % 3; id < STRING_COUNT; id += 3)
            for (const float most : {40.0f, 130.0f})
                EXPECT_EQ(wrap(tr(id), most), plainWrap(fonts, tr(id), 16, most)) << language << ' ' << id;
    }
}

TEST_F(TextLayout, AParagraphThatIsKnownIsNeitherMeasuredNorAllocatedAgain) {
    const char* text = tr(STR_SETUP_INTRODUCTION);
    const auto* lines = &fontsWrapText(fonts, text, 15, 240.0f, 20);
    const std::vector<std::string> copy = *lines;
    EXPECT_THAT(copy, SizeIs(testing::Gt(3u)));
    gate.measured = 0;
    const uint64_t before = allocationCount();
    EXPECT_EQ(&fontsWrapText(fonts, text, 15, 240.0f, 20), lines);
    EXPECT_EQ(allocationCount(), before);
    EXPECT_EQ(gate.measured, 0);
    EXPECT_EQ(*lines, copy);
    EXPECT_THAT(wrap(text, 240.0f, 2, 15), ElementsAre(copy[0], copy[1]));
}

// By which the font system knows when it remembers too much.
TEST_F(TextLayout, WhatIsKnownCountsAboutAsManyBytesAsItTakes) {
    const std::string text(500, 'i');
    fit(text, 20, 5000.0f);
    const size_t fitted = fonts.measuredBytes;
    EXPECT_NEAR(static_cast<double>(fitted), 500.0, 200.0);
    ASSERT_THAT(wrap(text, 1.0f), SizeIs(500));
    EXPECT_NEAR(static_cast<double>(fonts.measuredBytes - fitted), 1000.0 + 500.0 * sizeof(std::string),
                200.0);
    wrap("a", 1.0f);
    EXPECT_LT(fonts.measuredBytes, 30000u);
}

TEST_F(TextLayout, ALanguageEmptiesWhatIsKnown) {
    fit("Text", 20, 5.0f);
    wrap("Text", 5.0f);
    fontsSetLanguage(fonts, 12);
    EXPECT_THAT(fonts.fittedSizes, IsEmpty());
    EXPECT_THAT(fonts.paragraphs, IsEmpty());
}

TEST_F(TextLayout, WithoutAFontAllFitsOnOneLine) {
    gate.refusesAll = true;
    fontsSetLanguage(fonts, 3);
    EXPECT_EQ(fit("Commercial", 20, 1.0f), 20);
    EXPECT_THAT(wrap("one two", 1.0f), ElementsAre("one two"));
}

// --- Texts that are none, and long ones

TEST_F(TextLayout, BytesThatAreNoTextAreKept) {
    for (const std::string text : {"\x80\x80\x80", "a\xff\xffz", "\xe0\xa4 \xe0\xa4", "\xc3"}) {
        std::string joined;
        for (const std::string& line : wrap(text, 12.0f)) joined += line;
        EXPECT_EQ(joined, text);
    }
}

TEST_F(TextLayout, ALongTextIsMeasuredOnlyAsFarAsItShows) {
    std::string words;
    while (words.size() < 100000) words += "some words of it ";
    gate.measuredBytes = 0;
    EXPECT_THAT(wrap(words, 400.0f, 5), SizeIs(5));
    EXPECT_LT(gate.measuredBytes, 20000u);
}

TEST_F(TextLayout, ALongWordIsMeasuredByItsLines) {
    gate.measuredBytes = 0;
    const auto lines = wrap(std::string(100000, 'm'), 160.0f, 30);
    EXPECT_THAT(lines, SizeIs(30));
    EXPECT_THAT(lines, Each(std::string(10, 'm')));
    EXPECT_LT(gate.measuredBytes, 110000u);
}

TEST_F(TextLayout, ALineThatNeverGetsWideDoesNotHoldUpTheGame) {
    std::string marks = "e";
    for (int i = 0; i < 50000; i++) marks += "\u0301";
    gate.measuredBytes = 0;
    wrap(marks, 5.0f);
    EXPECT_LT(gate.measuredBytes, 1500000u);
    std::string words;
    while (words.size() < 100000) words += "a ";
    gate.measuredBytes = 0;
    EXPECT_THAT(wrap(words, 1e9f), ElementsAre(SizeIs(2 * 1025 - 1))); // a line measured beyond a megabyte
    EXPECT_LT(gate.measuredBytes, 1500000u);
}
