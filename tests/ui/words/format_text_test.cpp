#include "ui/words/format_text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <string>

TEST(FormatText, FillsThePlaceholders) {
    char buffer[32];
    EXPECT_EQ(formatTextInto(buffer, sizeof buffer, "Day %d", 12), buffer);
    EXPECT_STREQ(buffer, "Day 12");
    EXPECT_STREQ(formatTextInto(buffer, sizeof buffer, "%d%%", -3), "-3%");
    EXPECT_STREQ(formatTextInto(buffer, sizeof buffer, "%s %s", "Frühling", "01.03.2001"),
                 "Frühling 01.03.2001");
    EXPECT_STREQ(formatTextInto(buffer, sizeof buffer, "%.1f MB", 12.34), "12.3 MB");
}

// The text in a buffer of so many bytes.
template<size_t Size> static std::string cut(const char* text) {
    char buffer[Size + 4];
    std::memset(buffer, '#', sizeof buffer);
    formatTextInto(buffer, Size, "%s", text);
    EXPECT_EQ(std::string(buffer + Size, 4), "####") << "written past the end";
    return buffer;
}

TEST(FormatText, CutsWhatIsTooLong) {
    EXPECT_EQ(cut<8>("1234567"), "1234567");
    EXPECT_EQ(cut<8>("12345678"), "1234567");
    EXPECT_EQ(cut<1>("x"), "");
    EXPECT_EQ(cut<2>("xy"), "x");
}

TEST(FormatText, NeverCutsInsideASequence) {
    const char* const text = "aé\u20ac\U0001F600"; // of 1, 2, 3 and 4 bytes
    EXPECT_EQ(cut<2>(text), "a");
    EXPECT_EQ(cut<3>(text), "a");
    EXPECT_EQ(cut<4>(text), "aé");
    EXPECT_EQ(cut<5>(text), "aé");
    EXPECT_EQ(cut<6>(text), "aé");
    EXPECT_EQ(cut<7>(text), "aé\u20ac");
    EXPECT_EQ(cut<8>(text), "aé\u20ac");
    EXPECT_EQ(cut<10>(text), "aé\u20ac");
    EXPECT_EQ(cut<11>(text), text);
}

TEST(FormatText, EveryLeadByteTellsItsLength) {
    const struct {
        char lead;
        size_t length;
    } rows[] = {{'\xc0', 2}, {'\xdf', 2}, {'\xe0', 3}, {'\xef', 3}, {'\xf0', 4}, {'\xf7', 4}};
    for (const auto& [lead, length] : rows) {
        const std::string sequence = lead + std::string(length - 1, '\x80');
        const std::string whole = std::string(7 - length, 'a') + sequence;
        EXPECT_EQ(cut<8>((whole + "z").c_str()), whole) << length;
        EXPECT_EQ(cut<8>(("a" + whole).c_str()), std::string(8 - length, 'a')) << length;
    }
}

TEST(FormatText, BearsBytesThatAreNoText) {
    EXPECT_EQ(cut<4>("\x80\x80\x80\x80"), "\x80\x80\x80");
    EXPECT_EQ(cut<4>("a\x80\x80\x80"), "a\x80\x80");
    EXPECT_EQ(cut<4>("\xff\xff\xff\xff"), "\xff\xff");
    char nothing = '#';
    EXPECT_EQ(formatTextInto(&nothing, 0, "text"), &nothing);
    EXPECT_EQ(nothing, '#');
}

TEST(FormatText, PercentRoundsHalfUp) {
    EXPECT_EQ(percentOf(0.0f), 0);
    EXPECT_EQ(percentOf(0.004f), 0);
    EXPECT_EQ(percentOf(0.125f), 13);
    EXPECT_EQ(percentOf(0.5f), 50);
    EXPECT_EQ(percentOf(1.0f), 100);
    EXPECT_EQ(percentOf(-0.25f), -24); // towards zero after the half is added
}

TEST(FormatText, PercentOfNoNumberIsHeld) {
    constexpr float infinite = std::numeric_limits<float>::infinity();
    EXPECT_EQ(percentOf(std::nanf("")), 0);
    EXPECT_EQ(percentOf(infinite), 1000000000);
    EXPECT_EQ(percentOf(-infinite), -1000000000);
}
