#include "ui/text/latin_text.h"

#include "ui/text/font_gate.h"
#include "ui/text/fonts.h"
#include "view/gl/fake_gl.h"

#include <gmock/gmock.h>

using testing::IsEmpty;

static const char* const DEJAVU = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";
static const char* const DEVANAGARI = "/usr/share/fonts/truetype/noto/NotoSansDevanagari-Regular.ttf";

constexpr int HINDI = 13;
constexpr SDL_Color WHITE = {255, 255, 255, 255};

// A Devanagari font without Latin letters, and a font with them.
struct LatinText : testing::Test {
    TTF_Font* font = nullptr;
    TTF_Font* latinFont = nullptr;

    void open(int size) {
        TTF_Init();
        font = TTF_OpenFont(DEVANAGARI, size);
        latinFont = TTF_OpenFont(DEJAVU, size);
        ASSERT_TRUE(font && latinFont);
    }
    void TearDown() override {
        TTF_CloseFont(font);
        TTF_CloseFont(latinFont);
        TTF_Quit();
    }
    static int width(TTF_Font* font, const char* text) {
        int width = 0;
        TTF_SizeUTF8(font, text, &width, nullptr);
        return width;
    }
};

// Rows from the top to the lowest that holds ink.
static int footOf(SDL_Surface* picture) {
    int foot = 0;
    for (int y = 0; y < picture->h; y++)
        for (int x = 0; x < picture->w; x++) {
            uint8_t r, g, b, a;
            const auto* row =
                static_cast<const uint8_t*>(picture->pixels) + static_cast<ptrdiff_t>(y) * picture->pitch;
            SDL_GetRGBA(reinterpret_cast<const uint32_t*>(row)[x], picture->format, &r, &g, &b, &a);
            if (a >= 128) foot = y + 1;
        }
    return foot;
}

static int footOfMixed(TTF_Font* font, TTF_Font* latinFont, const char* text) {
    SDL_Surface* picture = renderMixedText(font, latinFont, text, WHITE);
    const int foot = picture ? footOf(picture) : -1;
    SDL_FreeSurface(picture);
    return foot;
}

TEST_F(LatinText, IsMissedInAFontThatDrawsEveryLetterAlike) {
    open(16);
    EXPECT_FALSE(hasLatinLetters(font));
    EXPECT_TRUE(hasLatinLetters(latinFont));
}

TEST_F(LatinText, WordsWithALetterStandInTheLatinFont) {
    open(20);
    const auto mixed = [&](const char* text) { return measureMixedText(font, latinFont, text); };
    EXPECT_EQ(mixed("Orlavane"), width(latinFont, "Orlavane"));
    EXPECT_EQ(mixed("[F5]"), width(latinFont, "[F5]"));
    EXPECT_EQ(mixed("शहर"), width(font, "शहर"));
    EXPECT_EQ(mixed("100% (12)"), width(font, "100% (12)"));
    EXPECT_EQ(mixed("गेम [F5] है"), width(font, "गेम ") + width(latinFont, "[F5]") + width(font, " है"));
    EXPECT_EQ(mixed("Esc:मेनू"), width(latinFont, "Esc:") + width(font, "मेनू"));
    EXPECT_EQ(mixed(""), 0);
}

TEST_F(LatinText, StandsOnTheBaseLineOfTheOtherFont) {
    for (const int size : {9, 10, 14, 19, 33, 64, 100}) {
        open(size);
        const int foot = footOfMixed(font, latinFont, "1247");
        EXPECT_NEAR(footOfMixed(font, latinFont, "HEM"), foot, 1) << size;
        EXPECT_NEAR(footOfMixed(font, latinFont, "124 HEM 7"), foot, 1) << size;
        if (size != 100) TearDown();
    }
}

TEST_F(LatinText, APictureIsAsWideAsMeasuredAndAsHighAsItsFont) {
    open(18);
    for (const char* text : {"Orlavane", "Orlavane में", "   ", "में g में"}) {
        SDL_Surface* picture = renderMixedText(font, latinFont, text, WHITE);
        ASSERT_NE(picture, nullptr) << text;
        EXPECT_EQ(picture->w, measureMixedText(font, latinFont, text));
        int height = 0;
        TTF_SizeUTF8(font, "में", nullptr, &height);
        EXPECT_EQ(picture->h, height);
        SDL_FreeSurface(picture);
    }
}

// --- In the font system

TEST(LatinTextOfALanguage, IsSetInTheDefaultFontWhereTheOwnLacksIt) {
    FakeGl fake;
    FontSystem fonts;
    ASSERT_TRUE(fontsInit(fonts, nullptr));
    EXPECT_EQ(fonts.latinPath, "");
    const int latin = fontsMeasure(fonts, "Orlavane", 20, false);
    const int bold = fontsMeasure(fonts, "Orlavane", 20, true);

    fontsSetLanguage(fonts, HINDI);
    EXPECT_EQ(fonts.latinPath, DEJAVU);
    EXPECT_EQ(fontsMeasure(fonts, "Orlavane", 20, false), latin);
    EXPECT_EQ(fontsMeasure(fonts, "Orlavane", 20, true), bold);
    EXPECT_EQ(fontsRenderRun(fonts, "Orlavane", 20, 0xFFFFFFFF, false).width, latin);

    for (const int language : {10, 11, 12, 0}) {
        fontsSetLanguage(fonts, language);
        EXPECT_EQ(fonts.latinPath, "") << language;
        EXPECT_THAT(fonts.latinFonts, IsEmpty());
    }
    fontsShutdown(fonts);
}

TEST(LatinTextOfALanguage, StaysInTheOwnFontWhereThereIsNoOther) {
    FontGate gate;
    FakeGl fake;
    FontSystem fonts;
    fontsInit(fonts, nullptr);
    gate.refused = {DEJAVU, "/usr/share/fonts/truetype/liberation/LiberationSans-Regular.ttf"};
    fontsSetLanguage(fonts, HINDI);
    EXPECT_EQ(fonts.regularPath, DEVANAGARI);
    EXPECT_EQ(fonts.latinPath, "");
    EXPECT_GT(fontsMeasure(fonts, "Orlavane", 20, false), 0);
    EXPECT_NE(fontsRenderRun(fonts, "Orlavane", 20, 0xFFFFFFFF, false).texture, 0u);
    fontsShutdown(fonts);
}
