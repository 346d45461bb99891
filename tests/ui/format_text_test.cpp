#include "ui/format_text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <string>

template<size_t Size, typename... Arguments>
static std::string formatted(const char* format, Arguments... arguments) {
    char buffer[Size + 4];
    std::memset(buffer, '#', sizeof buffer);
    EXPECT_EQ(formatTextInto(buffer, Size, format, arguments...), buffer);
    EXPECT_EQ(std::string(buffer + Size, 4), "####") << "written past the end";
    return buffer;
}

TEST(FormatText, FillsThePlaceholders) {
    EXPECT_EQ(formatted<32>("Day %d", 12), "Day 12");
    EXPECT_EQ(formatted<32>("%d%%", -3), "-3%");
    EXPECT_EQ(formatted<32>("%s %s", "Frühling", "01.03.2001"), "Frühling 01.03.2001");
    EXPECT_EQ(formatted<32>("%.1f MB", 12.34), "12.3 MB");
}

TEST(FormatText, CutsWhatIsTooLong) {
    EXPECT_EQ(formatted<8>("1234567"), "1234567");
    EXPECT_EQ(formatted<8>("12345678"), "1234567");
    EXPECT_EQ(formatted<1>("x"), "");
    EXPECT_EQ(formatted<2>("xy"), "x");
}

TEST(FormatText, NeverCutsInsideASequence) {
    const char* const text = "aé\u20ac\U0001F600"; // of 1, 2, 3 and 4 bytes
    EXPECT_EQ(formatted<2>(text), "a");
    EXPECT_EQ(formatted<3>(text), "a");
    EXPECT_EQ(formatted<4>(text), "aé");
    EXPECT_EQ(formatted<5>(text), "aé");
    EXPECT_EQ(formatted<6>(text), "aé");
    EXPECT_EQ(formatted<7>(text), "aé\u20ac");
    EXPECT_EQ(formatted<8>(text), "aé\u20ac");
    EXPECT_EQ(formatted<10>(text), "aé\u20ac");
    EXPECT_EQ(formatted<11>(text), text);
}

TEST(FormatText, BearsBytesThatAreNoText) {
    EXPECT_EQ(formatted<4>("%s", "\x80\x80\x80\x80"), "\x80\x80\x80");
    EXPECT_EQ(formatted<4>("%s", "a\x80\x80\x80"), "a\x80\x80");
    EXPECT_EQ(formatted<4>("%s", "\xff\xff\xff\xff"), "\xff\xff");
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
