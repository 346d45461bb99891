#include "ui/layer/ui_text.h"

#include "allocation_count.h"
#include "ui/layer/ui_helpers.h"
#include "ui/layer/ui_shapes.h"
#include "ui/layer/ui_widgets.h"
#include "ui/text/font_gate.h"
#include "ui/words/strings.h"
#include "view/gl/fake_gl.h"

#include <gmock/gmock.h>

#include <cmath>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr UiColor WHITE = {1, 1, 1, 1};

struct UiTexts : testing::Test {
    FontGate gate;
    FakeGl fake;
    FontSystem fonts;
    Ui ui;

    void SetUp() override {
        ASSERT_TRUE(fontsInit(fonts, nullptr));
        ASSERT_TRUE(uiInit(ui, fonts, nullptr));
        uiBeginFrame(ui, 1280, 720, {});
    }
    void TearDown() override {
        fontsShutdown(fonts);
        uiDestroy(ui);
    }
    void loseFonts() {
        gate.refusesAll = true;
        fontsSetLanguage(fonts, 3);
    }
    DrawnText onlyText() {
        const auto texts = drawnTexts(ui);
        EXPECT_THAT(texts, SizeIs(1));
        return texts.empty() ? DrawnText{} : texts[0];
    }
};

// --- Measures

TEST_F(UiTexts, AreMeasuredByTheirFont) {
    EXPECT_EQ(uiTextWidth(ui, "Text", 20, true), static_cast<float>(fontsMeasure(fonts, "Text", 20, true)));
    EXPECT_EQ(uiLineHeight(ui, 20), static_cast<float>(TTF_FontLineSkip(fontAt(fonts, 20, false))));
    EXPECT_EQ(uiFitFontSize(ui, "Text", 20, uiTextWidth(ui, "Text", 15)), 15);
    EXPECT_EQ(uiFitFontSize(ui, "Text", 10, 1), 10);
}

TEST_F(UiTexts, WithoutAFontAreNoPixelsWide) {
    loseFonts();
    EXPECT_EQ(uiTextWidth(ui, "Text", 20), 0.0f);
    EXPECT_EQ(uiLineHeight(ui, 20), 20.0f);
    EXPECT_EQ(uiFitFontSize(ui, "Text", 20, 1), 20);
    EXPECT_EQ(uiText(ui, 0, 0, "Text", 20, WHITE), 0.0f);
    EXPECT_EQ(uiTextInRect(ui, {0, 0, 50, 20}, "Text", 20, WHITE, ALIGN_CENTER), 0.0f);
    uiWrappedText(ui, {0, 0, 50, 200}, "a text of words", 20, WHITE, 1);
    EXPECT_THAT(ui.vertices, IsEmpty());
}

// --- A run

TEST_F(UiTexts, StandLeftOfCentredOnOrRightOfTheirPlace) {
    const float width = uiTextWidth(ui, "Text", 20);
    EXPECT_EQ(uiText(ui, 100, 50, "Text", 20, WHITE), width);
    EXPECT_EQ(uiText(ui, 100, 60, "Text", 20, WHITE, ALIGN_CENTER), width);
    EXPECT_EQ(uiText(ui, 100, 70, "Text", 20, WHITE, ALIGN_RIGHT), width);
    const auto texts = drawnTexts(ui);
    ASSERT_THAT(texts, SizeIs(3));
    EXPECT_EQ(texts[0].x, 100.0f);
    EXPECT_EQ(texts[1].x, 100.0f - width * 0.5f);
    EXPECT_EQ(texts[2].x, 100.0f - width);
    EXPECT_EQ(texts[2].y, 70.0f);
    const TextRun run = fonts.runCache.begin()->second;
    EXPECT_EQ(texts[0].w, static_cast<float>(run.width));
    EXPECT_EQ(texts[0].h, static_cast<float>(run.height));
    expectWholeBatch(ui);
}

TEST_F(UiTexts, AreOpaqueWhiteOverTheWholeTextureThatHoldsTheirColour) {
    uiText(ui, 0, 0, "Text", 20, {0.5f, 0.25f, 1.0f, 0.75f});
    EXPECT_EQ(onlyText().key, "20|" + std::to_string(0x8040FFBFu) + "|Text");
    for (const UiVertex& vertex : ui.vertices) {
        EXPECT_EQ((std::vector<float>{vertex.r, vertex.g, vertex.b, vertex.a}),
                  (std::vector<float>{1, 1, 1, 1}));
        EXPECT_EQ(vertex.u, vertex.x == 0 ? 0.0f : 1.0f);
        EXPECT_EQ(vertex.v, vertex.y == 0 ? 0.0f : 1.0f);
    }
}

TEST_F(UiTexts, HoldTheirColourToItsRange) {
    uiText(ui, 0, 0, "Text", 20, {-1.0f, 2.0f, NAN, INFINITY});
    EXPECT_EQ(onlyText().key, "20|" + std::to_string(0x00FF00FFu) + "|Text");
}

TEST_F(UiTexts, ThatAreEmptyOrFailDrawNothing) {
    EXPECT_EQ(uiText(ui, 0, 0, "", 20, WHITE), 0.0f);
    gate.rendersNothing = true;
    EXPECT_EQ(uiText(ui, 0, 0, "Text", 20, WHITE), 0.0f);
    for (const int size : {0, -4, 10000}) EXPECT_EQ(uiText(ui, 0, 0, "Text", size, WHITE), 0.0f);
    EXPECT_THAT(ui.vertices, IsEmpty());
    EXPECT_THAT(ui.commands, IsEmpty());
}

TEST_F(UiTexts, InARectangleAreCentredOnItsHeightAndPaddedFromItsEdge) {
    const UiRect rect = {100, 200, 300, 40};
    const float width = uiTextWidth(ui, "Text", 20, true);
    const float top = 200 + 20 - uiLineHeight(ui, 20, true) * 0.5f;
    const struct {
        int align;
        float x;
    } rows[] = {{ALIGN_LEFT, 108}, {ALIGN_RIGHT, 392 - width}, {ALIGN_CENTER, 250 - width * 0.5f}};
    for (const auto& row : rows) {
        uiBeginFrame(ui, 1280, 720, {});
        EXPECT_EQ(uiTextInRect(ui, rect, "Text", 20, WHITE, row.align, 8, true), width);
        EXPECT_EQ(onlyText().x, row.x);
        EXPECT_EQ(onlyText().y, top);
    }
}

TEST_F(UiTexts, OfMoreThan901RunsInAFrameAreAllDrawn) {
    for (int i = 0; i < 950; i++) EXPECT_GT(uiText(ui, 0, 0, std::to_string(i).c_str(), 12, WHITE), 0.0f);
    EXPECT_THAT(ui.commands, SizeIs(950));
    EXPECT_THAT(fonts.runCache, SizeIs(49));
    expectWholeBatch(ui);
    uiFlush(ui); // the first 901 textures are gone by now, for this one frame
    EXPECT_THAT(callsOf(fake, "DrawArrays"), SizeIs(950));
}

// --- Paragraphs

TEST_F(UiTexts, AParagraphIsDrawnLineByLine) {
    const float lineHeight = uiLineHeight(ui, 16);
    const float width = uiTextWidth(ui, "one two", 16);
    uiWrappedText(ui, {30, 40, width, 500}, "one two three four", 16, WHITE, 3);
    const auto texts = drawnTexts(ui);
    ASSERT_THAT(texts, SizeIs(3));
    for (size_t i = 0; i < 3; i++) {
        EXPECT_EQ(texts[i].x, 30.0f);
        EXPECT_EQ(texts[i].y, 40.0f + static_cast<float>(i) * (lineHeight + 6.0f));
    }
    EXPECT_EQ(textOf(texts[0]), "one two ");
    EXPECT_EQ(textOf(texts[1]), "three ");
    EXPECT_EQ(textOf(texts[2]), "four");
}

TEST_F(UiTexts, ALineThatDoesNotFitWholeEndsTheParagraph) {
    const float lineHeight = uiLineHeight(ui, 16);
    const struct {
        float height;
        size_t lines;
    } rows[] = {{lineHeight * 3 - 0.5f, 3},
                {lineHeight * 3 - 0.75f, 2},
                {lineHeight - 0.5f, 1},
                {lineHeight - 1, 0},
                {0, 0},
                {-50, 0},
                {1000, 5}};
    for (const auto& row : rows) {
        uiBeginFrame(ui, 1280, 720, {});
        uiWrappedText(ui, {0, 64, 1, row.height}, "a b c d e", 16, WHITE, 0);
        EXPECT_THAT(drawnTexts(ui), SizeIs(row.lines)) << row.height;
    }
}

TEST_F(UiTexts, AGapThatTakesLinesBackEndsAllTheSame) {
    uiWrappedText(ui, {0, 100, 1, 50}, "a b c d e", 16, WHITE, -100);
    EXPECT_THAT(drawnTexts(ui), SizeIs(5));
    uiWrappedText(ui, {0, 100, NAN, NAN}, "a b", 16, WHITE, NAN);
    expectWholeBatch(ui);
}

TEST_F(UiTexts, AParagraphInArabicStandsLineByLineInVisualOrder) {
    fontsSetLanguage(fonts, 12);
    setCurrentLanguage(12);
    uiWrappedText(ui, {30, 40, 200, 500}, tr(STR_SETUP_INTRODUCTION), 16, WHITE, 0);
    const auto texts = drawnTexts(ui);
    EXPECT_THAT(texts, SizeIs(testing::Gt(2u)));
    for (const DrawnText& text : texts) {
        EXPECT_EQ(text.x, 30.0f);
        EXPECT_LE(text.w, 206.0f); // the blank at the end stands outside of the width
    }
    setCurrentLanguage(0);
}

// --- A steady frame

static void drawFullScreen(Ui& ui) {
    for (uint32_t i = 0; i < 30; i++)
        uiButton(ui, 100 + i, {10, 20.0f * static_cast<float>(i), 84, 30}, tr(static_cast<int>(92 + i)), true,
                 false, 17);
    for (int i = 0; i < 40; i++) uiText(ui, 300, 15.0f * static_cast<float>(i), tr(60 + i), 15, colMuted);
    for (int i = 0; i < 10; i++)
        uiMeterRow(ui, 600, 40.0f * static_cast<float>(i), 200, tr(130 + i), 0.1f, colGood);
    float y = 400;
    for (int i = 0; i < 10; i++) uiKeyValueRow(ui, 600, y, 200, tr(150 + i), "12", colText);
    uiSettingRow(ui, 900, 10, tr(STR_LANGUAGE), tr(STR_LANGUAGE_HINT), 19);
    uiWrappedText(ui, {900, 100, 240, 300}, tr(STR_SETUP_INTRODUCTION), 15, colText, 1);
    uiRoundRect(ui, {900, 500, 100, 50}, 12, colPanel);
}

TEST_F(UiTexts, ASteadyFrameAllocatesNothingMeasuresNothingAndIsOneUpload) {
    for (const int language : {0, 10, 12, 13}) {
        setCurrentLanguage(language);
        fontsSetLanguage(fonts, language);
        for (int frame = 0; frame < 2; frame++) {
            uiBeginFrame(ui, 1280, 720, {});
            drawFullScreen(ui);
            uiFlush(ui);
        }
        fake.calls.clear();
        gate.measured = gate.rendered = gate.opened = 0;
        fake.recording = false;
        const uint64_t before = allocationCount();
        uiBeginFrame(ui, 1280, 720, {});
        drawFullScreen(ui);
        uiFlush(ui);
        EXPECT_EQ(allocationCount(), before) << language;
        fake.recording = true;
        EXPECT_EQ(gate.measured + gate.rendered + gate.opened, 0);

        uiBeginFrame(ui, 1280, 720, {});
        drawFullScreen(ui);
        EXPECT_THAT(fake.calls, IsEmpty()); // no texture is touched
        uiFlush(ui);
        EXPECT_THAT(callsOf(fake, "BufferData"), SizeIs(1));
    }
    setCurrentLanguage(0);
}
