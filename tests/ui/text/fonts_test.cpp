#include "ui/text/fonts.h"

#include "allocation_count.h"
#include "temp_dir.h"
#include "ui/text/font_gate.h"
#include "ui/text/shape_text.h"
#include "view/gl/fake_gl.h"
#include "view/gl/gl_context.h"

#include <gmock/gmock.h>

#include <climits>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

static const std::string DEJAVU = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";
static const std::string DEJAVU_BOLD = "/usr/share/fonts/truetype/dejavu/DejaVuSans-Bold.ttf";
static const std::string GOTHIC = "/usr/share/fonts/truetype/fonts-japanese-gothic.ttf";
static const std::string ZEN_HEI = "/usr/share/fonts/truetype/wqy/wqy-zenhei.ttc";
static const std::string DEVANAGARI = "/usr/share/fonts/truetype/noto/NotoSansDevanagari-Regular.ttf";
static const std::string DEVANAGARI_BOLD = "/usr/share/fonts/truetype/noto/NotoSansDevanagari-Bold.ttf";

constexpr uint32_t WHITE = 0xFFFFFFFF;
constexpr int JAPANESE = 11;
constexpr int ARABIC = 12;
constexpr int HINDI = 13;

// The fonts of English over a graphics card that only notes what it is asked.
struct Fonts : testing::Test {
    FontGate gate;
    FakeGl fake;
    FontSystem fonts;
    std::string log;

    void SetUp() override {
        ASSERT_TRUE(fontsInit(fonts, &log)) << log;
        gate.opened = gate.measured = gate.rendered = 0;
    }
    void TearDown() override { fontsShutdown(fonts); }

    TextRun render(const std::string& text, int size = 16, uint32_t color = WHITE, bool bold = false) {
        return fontsRenderRun(fonts, text.c_str(), size, color, bold);
    }
    int widthAsTold(const std::string& text, int size, bool bold) {
        int width = 0;
        TTF_SizeUTF8(fontAt(fonts, size, bold), shapeText(text.c_str(), fonts.shapeMode).c_str(), &width,
                     nullptr);
        return width;
    }
};

static bool isNothing(const TextRun& run) { return run.texture == 0 && run.width == 0 && run.height == 0; }

// --- The start

TEST_F(Fonts, TheStartTakesTheFontsOfEnglishAndSaysNothing) {
    EXPECT_EQ(log, "");
    EXPECT_EQ(fonts.ttfReady, 1);
    EXPECT_EQ(fonts.language, 0);
    EXPECT_EQ(fonts.shapeMode, SHAPE_NONE);
    EXPECT_EQ(fonts.regularPath, DEJAVU);
    EXPECT_EQ(fonts.boldPath, DEJAVU_BOLD);
}

TEST(FontsStart, WithoutAFontTheGameGoesOnAndSaysSo) {
    FontGate gate;
    FakeGl fake;
    gate.refusesAll = true;
    FontSystem fonts;
    std::string log = "before\n";
    EXPECT_FALSE(fontsInit(fonts, &log));
    EXPECT_EQ(log, "before\nNo usable font found. Text will not be drawn.\n");
    EXPECT_EQ(fonts.ttfReady, 1);

    EXPECT_EQ(fontsMeasure(fonts, "Text", 16, false), 0);
    EXPECT_EQ(fontsMeasureAnew(fonts, "Text", 16, false), 0);
    EXPECT_EQ(fontsLineSkip(fonts, 16, false), 16);
    EXPECT_EQ(fontsLineSkip(fonts, -3, true), -3);
    EXPECT_TRUE(isNothing(fontsRenderRun(fonts, "Text", 16, WHITE, false)));
    EXPECT_THAT(fonts.sizedFonts, IsEmpty());
    fontsShutdown(fonts);
    EXPECT_THAT(fake.calls, IsEmpty());
}

TEST(FontsStart, ATextLibraryThatDoesNotStartIsTold) {
    FontGate gate;
    gate.initFails = true;
    FontSystem fonts;
    std::string log;
    EXPECT_FALSE(fontsInit(fonts, &log));
    EXPECT_EQ(log, "TTF_Init failed: the gate is shut\n");
    EXPECT_EQ(fonts.ttfReady, 0);
    EXPECT_FALSE(fontsInit(fonts, nullptr));
    fontsSetLanguage(fonts, ARABIC);
    EXPECT_EQ(fonts.regularPath, "");
    EXPECT_EQ(fontsMeasure(fonts, "Text", 16, false), 0);
    fontsShutdown(fonts);
}

TEST_F(Fonts, TheEndEmptiesEverythingAndMayComeTwice) {
    render("Text");
    fontsMeasure(fonts, "Text", 16, true);
    fontsShutdown(fonts);
    EXPECT_EQ(fonts.ttfReady, 0);
    EXPECT_EQ(fonts.regularPath, "");
    EXPECT_EQ(fonts.boldPath, "");
    EXPECT_THAT(fonts.runCache, IsEmpty());
    EXPECT_THAT(fonts.sizedFonts, IsEmpty());
    EXPECT_THAT(fonts.widths, IsEmpty());
    EXPECT_THAT(callsOf(fake, "DeleteTextures"), SizeIs(1));
    EXPECT_EQ(TTF_WasInit(), 0);
    fontsShutdown(fonts);
}

// --- The fonts of a language

TEST_F(Fonts, EveryLanguageTakesTheFirstFontOfItsListThatOpens) {
    const struct {
        int language;
        std::string regular, bold;
        int shapeMode;
    } rows[] = {{10, ZEN_HEI, ZEN_HEI, SHAPE_NONE},      {11, GOTHIC, GOTHIC, SHAPE_NONE},
                {12, DEJAVU, DEJAVU_BOLD, SHAPE_ARABIC}, {13, DEVANAGARI, DEVANAGARI_BOLD, SHAPE_DEVANAGARI},
                {9, DEJAVU, DEJAVU_BOLD, SHAPE_NONE},    {0, DEJAVU, DEJAVU_BOLD, SHAPE_NONE}};
    for (const auto& row : rows) {
        fontsSetLanguage(fonts, row.language);
        EXPECT_EQ(fonts.language, row.language);
        EXPECT_EQ(fonts.regularPath, row.regular) << row.language;
        EXPECT_EQ(fonts.boldPath, row.bold) << row.language;
        EXPECT_EQ(fonts.shapeMode, row.shapeMode) << row.language;
    }
}

// Whole and in the order of trial, with the fonts of a system that is not this one.
TEST(FontsOfALanguage, AreTriedInTheirOrderEachWithItsPartner) {
    using Files = std::pair<std::string, std::string>;
    const std::string windows = "C:/Windows/Fonts/";
    const std::string linux = "/usr/share/fonts/truetype/";
    const auto alone = [](const std::string& path) { return Files(path, path); };
    const Files segoe = {windows + "segoeui.ttf", windows + "segoeuib.ttf"};
    const Files arial = {windows + "arial.ttf", windows + "arialbd.ttf"};
    const Files tahoma = {windows + "tahoma.ttf", windows + "tahomabd.ttf"};
    const Files dejavu = {DEJAVU, DEJAVU_BOLD};
    const std::vector<std::pair<int, std::vector<Files>>> lists = {
        {10, {{windows + "msyh.ttc", windows + "msyhbd.ttc"}, alone(windows + "simhei.ttf"), alone(ZEN_HEI)}},
        {JAPANESE,
         {{windows + "YuGothM.ttc", windows + "YuGothB.ttc"},
          {windows + "meiryo.ttc", windows + "meiryob.ttc"},
          alone(windows + "msgothic.ttc"),
          alone(GOTHIC),
          alone(ZEN_HEI)}},
        {ARABIC, {segoe, arial, tahoma, dejavu}},
        {HINDI,
         {{windows + "Nirmala.ttc", windows + "NirmalaB.ttc"},
          alone(windows + "mangal.ttf"),
          {DEVANAGARI, DEVANAGARI_BOLD}}},
        {9,
         {segoe,
          arial,
          dejavu,
          {linux + "liberation/LiberationSans-Regular.ttf", linux + "liberation/LiberationSans-Bold.ttf"}}}};
    for (const auto& [language, list] : lists) {
        std::vector<std::string> expected; // tries: those that were refused before, a font and its partner
        for (const auto& [regular, bold] : list) {
            FontGate gate;
            FontSystem fonts;
            ASSERT_TRUE(fontsInit(fonts, nullptr));
            gate.refused = expected;
            gate.instead = {{regular, DEJAVU}, {bold, DEJAVU_BOLD}};
            gate.tried.clear();
            fontsSetLanguage(fonts, language);
            EXPECT_EQ(fonts.regularPath, regular);
            EXPECT_EQ(fonts.boldPath, bold);
            expected.push_back(regular);
            ASSERT_GT(gate.tried.size(), expected.size());
            EXPECT_EQ(gate.tried[expected.size()], bold);
            gate.tried.resize(expected.size());
            EXPECT_EQ(gate.tried, expected);
            fontsShutdown(fonts);
        }
        FontGate gate;
        gate.refusesAll = true;
        FontSystem fonts;
        fontsInit(fonts, nullptr);
        gate.tried.clear();
        fontsSetLanguage(fonts, language);
        for (const auto& [regular, bold] : lists.back().second) expected.push_back(regular);
        EXPECT_EQ(gate.tried, expected) << language; // and no other, but the default ones
        fontsShutdown(fonts);
    }
}

TEST_F(Fonts, WithoutAFontOfItsListALanguageTakesTheDefaultOne) {
    gate.refused = {ZEN_HEI};
    fontsSetLanguage(fonts, 10);
    EXPECT_EQ(fonts.regularPath, DEJAVU);
    EXPECT_EQ(fonts.boldPath, DEJAVU_BOLD);
    EXPECT_EQ(fonts.language, 10);
}

TEST_F(Fonts, AFileThatIsNoFontIsPassedOver) {
    TempDir dir;
    writeText(dir.file("text.ttf"), "no font");
    gate.instead[GOTHIC] = dir.file("text.ttf");
    fontsSetLanguage(fonts, JAPANESE);
    EXPECT_EQ(fonts.regularPath, ZEN_HEI);
}

TEST_F(Fonts, AFontWithoutItsBoldPartnerIsItsOwn) {
    gate.refused = {DEVANAGARI_BOLD};
    fontsSetLanguage(fonts, HINDI);
    EXPECT_EQ(fonts.boldPath, DEVANAGARI);

    const TextRun regular = render("शहर");
    const TextRun bold = render("शहर", 16, WHITE, true);
    EXPECT_NE(regular.texture, bold.texture);
    EXPECT_EQ(regular.width, bold.width);
    EXPECT_EQ(regular.height, bold.height);
    EXPECT_THAT(fonts.runCache, SizeIs(2));
    EXPECT_EQ(fonts.sizedFonts.count(32), 1u);
    EXPECT_EQ(fonts.sizedFonts.count(33), 1u);
}

TEST_F(Fonts, AnotherLanguageEmptiesEveryCache) {
    const TextRun run = render("Text");
    fontsMeasure(fonts, "Text", 16, true);
    fake.calls.clear();
    gate.closed = 0;
    fontsSetLanguage(fonts, JAPANESE);
    EXPECT_THAT(fake.calls, ElementsAre(glCall("DeleteTextures", 1, run.texture)));
    EXPECT_THAT(fonts.runCache, IsEmpty());
    EXPECT_THAT(fonts.sizedFonts, IsEmpty());
    EXPECT_THAT(fonts.widths, IsEmpty());
    EXPECT_EQ(fonts.measuredBytes, 0u);
    EXPECT_GE(gate.closed, 2);
    EXPECT_NE(fontsMeasure(fonts, "日本", 16, false), 0);
}

TEST_F(Fonts, TheSameLanguageChangesNothing) {
    render("Text");
    fake.calls.clear();
    fontsSetLanguage(fonts, 0);
    EXPECT_THAT(fake.calls, IsEmpty());
    EXPECT_THAT(fonts.runCache, SizeIs(1));
    EXPECT_EQ(gate.opened, 1); // that of the run
}

TEST_F(Fonts, TheSameLanguageIsTriedAgainWhenItHasNoFont) {
    gate.refusesAll = true;
    fontsSetLanguage(fonts, 3);
    EXPECT_EQ(fonts.language, 3);
    EXPECT_EQ(fonts.regularPath, "");
    EXPECT_EQ(fonts.boldPath, "");
    gate.refusesAll = false;
    fontsSetLanguage(fonts, 3);
    EXPECT_EQ(fonts.regularPath, DEJAVU);
}

// --- Sizes

TEST_F(Fonts, ASizeIsOpenedOnce) {
    TTF_Font* font = fontAt(fonts, 20, false);
    ASSERT_NE(font, nullptr);
    EXPECT_EQ(fontAt(fonts, 20, false), font);
    EXPECT_NE(fontAt(fonts, 20, true), font);
    EXPECT_EQ(gate.opened, 2);
    EXPECT_EQ(fonts.sizedFonts.at(40), font);
    EXPECT_EQ(fonts.sizedFonts.count(41), 1u);
}

TEST_F(Fonts, ASizeThatDoesNotOpenIsNotTriedAgain) {
    gate.refusesAll = true;
    for (int i = 0; i < 3; i++) EXPECT_EQ(fontAt(fonts, 20, false), nullptr);
    EXPECT_EQ(gate.opened, 1);
    EXPECT_EQ(fontsMeasure(fonts, "Text", 20, false), 0);
    EXPECT_EQ(fontsLineSkip(fonts, 20, false), 20);
    EXPECT_TRUE(isNothing(render("Text", 20)));
}

TEST_F(Fonts, SizesBeyondSenseMeasureNothingAndDrawNothing) {
    for (const int size : {0, -1, -16, INT_MIN, LARGEST_FONT_SIZE + 1, 10000, INT_MAX}) {
        EXPECT_EQ(fontAt(fonts, size, false), nullptr) << size;
        EXPECT_EQ(fontsMeasure(fonts, "Text", size, true), 0) << size;
        EXPECT_EQ(fontsLineSkip(fonts, size, false), size);
        EXPECT_TRUE(isNothing(render("Text", size))) << size;
    }
    EXPECT_EQ(gate.opened, 0);
    EXPECT_THAT(fonts.runCache, IsEmpty());
    EXPECT_NE(fontAt(fonts, 1, false), nullptr);
    EXPECT_NE(fontAt(fonts, LARGEST_FONT_SIZE, false), nullptr);
}

// --- Measures

TEST_F(Fonts, AWidthIsThatOfTheShapedText) {
    for (const int language : {0, 10, 11, ARABIC}) {
        fontsSetLanguage(fonts, language);
        for (const char* text : {"Text", "لا إله", "شارع", "100%", "建造"})
            for (const int size : {10, 16, 31})
                for (const bool bold : {false, true})
                    EXPECT_EQ(fontsMeasure(fonts, text, size, bold), widthAsTold(text, size, bold)) << text;
    }
    EXPECT_NE(fontsMeasure(fonts, "لا", 16, false), fontsMeasure(fonts, "ل ا", 16, false));
}

TEST_F(Fonts, AnEmptyTextAsksTheTextLibraryNothing) {
    EXPECT_EQ(fontsMeasure(fonts, "", 16, false), 0);
    EXPECT_EQ(fontsMeasureAnew(fonts, "", 16, false), 0);
    EXPECT_TRUE(isNothing(render("")));
    EXPECT_EQ(gate.opened + gate.measured + gate.rendered, 0);
    EXPECT_THAT(fonts.widths, IsEmpty());
    EXPECT_THAT(fake.calls, IsEmpty());
}

TEST_F(Fonts, AWidthThatIsKnownIsNeitherMeasuredNorAllocatedAgain) {
    fontsSetLanguage(fonts, ARABIC);
    const std::string text = "مدينة حديثة في هذا المكان";
    const int width = fontsMeasure(fonts, text.c_str(), 16, true);
    gate.measured = 0;
    const uint64_t before = allocationCount();
    EXPECT_EQ(fontsMeasure(fonts, text.c_str(), 16, true), width);
    EXPECT_EQ(allocationCount(), before);
    EXPECT_EQ(gate.measured, 0);
    EXPECT_NE(fontsMeasure(fonts, text.c_str(), 16, false), width);
    EXPECT_NE(fontsMeasure(fonts, text.c_str(), 17, true), width);
}

TEST_F(Fonts, WhatIsRememberedStaysBounded) {
    fontsMeasure(fonts, "Text", 16, false);
    fontsMakeRoom(fonts, 3u << 20);
    EXPECT_THAT(fonts.widths, SizeIs(1));
    fontsMakeRoom(fonts, 2u << 20);
    EXPECT_THAT(fonts.widths, IsEmpty());
    EXPECT_LT(fonts.measuredBytes, 3u << 20);
    EXPECT_GT(fontsMeasure(fonts, "Text", 16, false), 0);
}

// --- Runs

TEST_F(Fonts, ARunIsUploadedAsItsPixels) {
    const TextRun run = render("Text");
    int height = 0;
    TTF_SizeUTF8(fontAt(fonts, 16, false), "Text", nullptr, &height);
    EXPECT_EQ(run.width, widthAsTold("Text", 16, false));
    EXPECT_EQ(run.height, height);
    EXPECT_THAT(fake.calls,
                ElementsAre("GenTextures(1)", glCall("BindTexture", GL_TEXTURE_2D, run.texture),
                            glCall("PixelStorei", GL_UNPACK_ALIGNMENT, 1),
                            glCall("TexImage2D", GL_TEXTURE_2D, 0, GL_RGBA8, run.width, run.height, 0,
                                   GL_RGBA, GL_UNSIGNED_BYTE, "data"),
                            glCall("TexParameteri", GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR),
                            glCall("TexParameteri", GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR),
                            glCall("TexParameteri", GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE),
                            glCall("TexParameteri", GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE),
                            glCall("BindTexture", GL_TEXTURE_2D, 0)));
}

TEST_F(Fonts, ARunIsKeptBySizeWeightColourAndTextAsGiven) {
    fontsSetLanguage(fonts, ARABIC);
    render("لا", 16, 0x01020304);
    render("Text", 20, WHITE, true);
    EXPECT_THAT(fonts.runCache, SizeIs(2));
    EXPECT_EQ(fonts.runCache.count("16|16909060|لا"), 1u);
    EXPECT_EQ(fonts.runCache.count("20b|4294967295|Text"), 1u);
}

TEST_F(Fonts, ACachedRunCostsNoCallAndNoMemory) {
    const std::string text = "A text too long for a string without memory of its own";
    const TextRun run = render(text);
    fake.calls.clear();
    gate.rendered = 0;
    const uint64_t before = allocationCount();
    EXPECT_EQ(fontsRenderRun(fonts, text.c_str(), 16, WHITE, false).texture, run.texture);
    EXPECT_EQ(allocationCount(), before);
    EXPECT_THAT(fake.calls, IsEmpty());
    EXPECT_EQ(gate.rendered, 0);
}

TEST_F(Fonts, ARunThatFailsIsTriedAgain) {
    gate.rendersNothing = true;
    EXPECT_TRUE(isNothing(render("Text")));
    EXPECT_TRUE(isNothing(render("Text")));
    EXPECT_EQ(gate.rendered, 2);
    EXPECT_THAT(fonts.runCache, IsEmpty());
    gate.rendersNothing = false;
    EXPECT_FALSE(isNothing(render("Text")));
    EXPECT_THAT(fonts.runCache, SizeIs(1));
}

TEST_F(Fonts, TheCacheGrowsTo901RunsAndTheNextEmptiesIt) {
    for (int i = 0; i < 901; i++) render(std::to_string(i));
    EXPECT_THAT(fonts.runCache, SizeIs(901));
    EXPECT_THAT(callsOf(fake, "DeleteTextures"), IsEmpty());

    render("0"); // still there
    EXPECT_THAT(fonts.runCache, SizeIs(901));
    render("one more");
    EXPECT_THAT(fonts.runCache, SizeIs(1));
    EXPECT_THAT(callsOf(fake, "DeleteTextures"), SizeIs(901));
    EXPECT_FALSE(isNothing(render("0")));
    EXPECT_THAT(fonts.runCache, SizeIs(2));
}

TEST_F(Fonts, ClearingTheRunsDeletesEachTexture) {
    const TextRun a = render("a");
    const TextRun b = render("b");
    fake.calls.clear();
    fontsClearRuns(fonts);
    EXPECT_THAT(fake.calls, testing::UnorderedElementsAre(glCall("DeleteTextures", 1, a.texture),
                                                          glCall("DeleteTextures", 1, b.texture)));
    EXPECT_THAT(fonts.runCache, IsEmpty());
}

TEST_F(Fonts, ARunWiderThanACardTakesIsCut) {
    const std::string text(1000, 'm');
    const TextRun run = render(text);
    EXPECT_EQ(run.width, 8192);
    const auto stores = callsOf(fake, "PixelStorei");
    const int wholeWidth = widthAsTold(text, 16, false);
    EXPECT_THAT(stores, ElementsAre(glCall("PixelStorei", GL_UNPACK_ALIGNMENT, 1),
                                    glCall("PixelStorei", GL_UNPACK_ROW_LENGTH, wholeWidth),
                                    glCall("PixelStorei", GL_UNPACK_ROW_LENGTH, 0)));
}

TEST_F(Fonts, ATextOf100kBIsMeasuredAndRenderedOnce) {
    const std::string text(100000, 'i');
    const int width = fontsMeasure(fonts, text.c_str(), 10, false);
    const TextRun run = render(text, 10);
    EXPECT_GT(width, 100000);
    EXPECT_EQ(fontsMeasure(fonts, text.c_str(), 10, false), width);
    EXPECT_EQ(render(text, 10).texture, run.texture);
    EXPECT_EQ(gate.measured, 1);
    EXPECT_EQ(gate.rendered, 1);
}

TEST_F(Fonts, TextsThatAreNoneAreBorne) {
    for (const int language : {0, ARABIC, HINDI}) {
        fontsSetLanguage(fonts, language);
        for (const char* text :
             {" ", "     ", "\xff", "\xc3", "\xe0\xa4", "a\x80\x80z", "\xf7\xbf\xbf\xbf", "\n\t\x01"}) {
            EXPECT_GE(fontsMeasure(fonts, text, 16, false), 0);
            const TextRun run = render(text);
            EXPECT_EQ(run.texture != 0, run.width > 0);
        }
    }
    EXPECT_GT(fontsMeasure(fonts, "     ", 16, false), fontsMeasure(fonts, " ", 16, false));
}

class FontsPicture : public GlTest {};

TEST_F(FontsPicture, ARunHoldsTheColourAndTheInkOfItsText) {
    FontSystem fonts;
    ASSERT_TRUE(fontsInit(fonts, nullptr));
    const TextRun run = fontsRenderRun(fonts, "\xE2\x96\x88", 40, 0x20C04080, false); // a full block

    GLuint framebuffer = 0;
    gl.GenFramebuffers(1, &framebuffer);
    gl.BindFramebuffer(GL_FRAMEBUFFER, framebuffer);
    gl.FramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, run.texture, 0);
    std::vector<uint8_t> pixels(static_cast<size_t>(run.width) * static_cast<size_t>(run.height) * 4);
    gl.ReadPixels(0, 0, run.width, run.height, GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
    gl.BindFramebuffer(GL_FRAMEBUFFER, 0);
    gl.DeleteFramebuffers(1, &framebuffer);
    fontsShutdown(fonts);

    const size_t middle = (static_cast<size_t>(run.height / 2) * static_cast<size_t>(run.width) +
                           static_cast<size_t>(run.width / 2)) *
                          4;
    EXPECT_THAT(std::vector<uint8_t>(pixels.begin() + static_cast<ptrdiff_t>(middle),
                                     pixels.begin() + static_cast<ptrdiff_t>(middle) + 4),
                ElementsAre(0x20, 0xC0, 0x40, 0x80));
}
