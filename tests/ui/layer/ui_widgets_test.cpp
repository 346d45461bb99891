#include "ui/layer/ui_widgets.h"

#include "ui/layer/ui_helpers.h"
#include "ui/layer/ui_shapes.h"
#include "ui/layer/ui_text.h"
#include "ui/text/font_gate.h"
#include "view/gl/fake_gl.h"

#include <gmock/gmock.h>

#include <cmath>

using testing::IsEmpty;
using testing::SizeIs;

constexpr UiRect PLACE = {100, 100, 200, 40};
constexpr uint32_t ID = 42;

struct Widgets : testing::Test {
    FontGate gate;
    FakeGl fake;
    FontSystem fonts;
    Ui ui;

    void SetUp() override {
        ASSERT_TRUE(fontsInit(fonts, nullptr));
        ASSERT_TRUE(uiInit(ui, fonts, nullptr));
        begin({});
    }
    void TearDown() override {
        fontsShutdown(fonts);
        uiDestroy(ui);
    }
    void begin(const Input& input) { uiBeginFrame(ui, 1280, 720, input); }
    // A frame of one button.
    bool button(const Input& input, bool enabled = true, bool primary = false) {
        begin(input);
        return uiButton(ui, ID, PLACE, "Text", enabled, primary, 16);
    }
    // The colour of the button's body, which stands behind its shadow.
    UiColor bodyColor() const {
        constexpr size_t ROUND_RECT = 3 * 6 + 4 * 18;
        const UiVertex& vertex = ui.vertices[ROUND_RECT];
        return {vertex.r, vertex.g, vertex.b, vertex.a};
    }
    // What another 2-D layer draws must be what this one did.
    void expectSameAs(const Ui& other) const {
        ASSERT_EQ(ui.vertices.size(), other.vertices.size());
        for (size_t i = 0; i < ui.vertices.size(); i++) {
            const UiVertex &a = ui.vertices[i], &b = other.vertices[i];
            ASSERT_EQ((std::vector<float>{a.x, a.y, a.u, a.v, a.r, a.g, a.b, a.a}),
                      (std::vector<float>{b.x, b.y, b.u, b.v, b.r, b.g, b.b, b.a}))
                << i;
        }
        ASSERT_EQ(ui.commands.size(), other.commands.size());
        for (size_t i = 0; i < ui.commands.size(); i++)
            EXPECT_EQ(ui.commands[i].texture, other.commands[i].texture);
    }
    Ui emptyCopy() const {
        Ui copy = ui;
        copy.vertices.clear();
        copy.commands.clear();
        return copy;
    }
};

constexpr float INSIDE = 110, OUTSIDE = 90;

// --- The press

TEST_F(Widgets, AClickIsAPressAndAReleaseOnTheButton) {
    EXPECT_FALSE(button(mouseAt(INSIDE, INSIDE)));
    EXPECT_FALSE(button(pressAt(INSIDE, INSIDE)));
    EXPECT_EQ(ui.activeId, ID);
    EXPECT_FALSE(button(holdAt(INSIDE, INSIDE)));
    EXPECT_TRUE(button(releaseAt(INSIDE, INSIDE)));
    EXPECT_EQ(ui.activeId, 0u);
    EXPECT_FALSE(button(mouseAt(INSIDE, INSIDE)));
}

TEST_F(Widgets, ThePointerMayLeaveAHeldButtonAndComeBack) {
    button(pressAt(INSIDE, INSIDE));
    EXPECT_FALSE(button(holdAt(OUTSIDE, INSIDE)));
    EXPECT_FALSE(button(holdAt(INSIDE, INSIDE)));
    EXPECT_TRUE(button(releaseAt(INSIDE, INSIDE)));
}

TEST_F(Widgets, AReleaseOffTheButtonIsNoClick) {
    button(pressAt(INSIDE, INSIDE));
    EXPECT_FALSE(button(releaseAt(OUTSIDE, INSIDE)));
    EXPECT_EQ(ui.activeId, 0u);
    EXPECT_FALSE(button(releaseAt(INSIDE, INSIDE)));
}

TEST_F(Widgets, APressOffTheButtonIsNotIts) {
    EXPECT_FALSE(button(pressAt(OUTSIDE, INSIDE)));
    EXPECT_EQ(ui.activeId, 0u);
    EXPECT_FALSE(button(releaseAt(INSIDE, INSIDE)));
}

TEST_F(Widgets, APressAndAReleaseInOneFrameAreAClick) {
    Input input = releaseAt(INSIDE, INSIDE);
    input.leftPressed = 1;
    EXPECT_TRUE(button(input));
    EXPECT_EQ(ui.activeId, 0u);
}

TEST_F(Widgets, AButtonHasItsLeftAndTopEdgeAndNotTheOthers) {
    const struct {
        float x, y;
        bool on;
    } rows[] = {{100, 100, true},  {299.9f, 139.9f, true}, {300, 120, false},
                {200, 140, false}, {99.9f, 120, false},    {200, 99.9f, false}};
    for (const auto& row : rows) {
        button(pressAt(row.x, row.y));
        EXPECT_EQ(button(releaseAt(row.x, row.y)), row.on) << row.x << ' ' << row.y;
        ui.activeId = 0;
    }
}

TEST_F(Widgets, ADisabledButtonTakesNoPress) {
    EXPECT_FALSE(button(pressAt(INSIDE, INSIDE), false));
    EXPECT_EQ(ui.activeId, 0u);
    EXPECT_FALSE(button(releaseAt(INSIDE, INSIDE), false));
}

TEST_F(Widgets, AButtonDisabledWhileHeldLetsGoOnTheRelease) {
    button(pressAt(INSIDE, INSIDE));
    EXPECT_FALSE(button(holdAt(INSIDE, INSIDE), false));
    EXPECT_EQ(ui.activeId, ID);
    EXPECT_FALSE(button(releaseAt(INSIDE, INSIDE), false));
    EXPECT_EQ(ui.activeId, 0u);
    ui.activeId = 7; // of another widget
    button(releaseAt(INSIDE, INSIDE), false);
    EXPECT_EQ(ui.activeId, 7u);
}

TEST_F(Widgets, OfTwoButtonsOverEachOtherTheLaterTakesThePress) {
    const auto both = [&](const Input& input) {
        begin(input);
        const bool first = uiButton(ui, 1, PLACE, "", true, false, 16);
        const bool second = uiButton(ui, 2, {150, 100, 200, 40}, "", true, false, 16);
        return std::pair(first, second);
    };
    both(pressAt(200, INSIDE));
    EXPECT_EQ(ui.activeId, 2u);
    EXPECT_EQ(both(releaseAt(200, INSIDE)), std::pair(false, true));
}

// A button, a panel over its right half, and a button on that panel.
TEST_F(Widgets, WhatAPanelCoversIsDeadAndWhatStandsOnItOrBesideItIsNot) {
    constexpr UiRect PANEL = {200, 90, 300, 100};
    const auto screen = [&](const Input& input) {
        begin(input);
        const bool below = uiButton(ui, 1, PLACE, "", true, false, 16);
        uiPanel(ui, PANEL, 12, 2);
        const bool above = uiButton(ui, 2, {320, 100, 100, 40}, "", true, false, 16);
        return std::pair(below, above);
    };
    const auto clickAt = [&](float x) {
        screen(pressAt(x, INSIDE));
        return screen(releaseAt(x, INSIDE));
    };
    screen({});
    EXPECT_EQ(clickAt(250), std::pair(false, false)); // the button goes on there, unseen
    EXPECT_EQ(ui.activeId, 0u);
    EXPECT_EQ(clickAt(150), std::pair(true, false));
    EXPECT_EQ(clickAt(350), std::pair(false, true));

    screen(mouseAt(250, INSIDE));
    EXPECT_FLOAT_EQ(bodyColor().r, 0.30f);
    screen(mouseAt(150, INSIDE));
    EXPECT_GT(bodyColor().r, 0.30f);

    screen(pressAt(150, INSIDE)); // and slipped under the panel
    EXPECT_EQ(screen(releaseAt(250, INSIDE)), std::pair(false, false));
}

TEST_F(Widgets, WhatAPanelCoveredComesBackWithTheNextFrame) {
    begin({});
    uiPanel(ui, PLACE, 12, 2);
    EXPECT_FALSE(button(pressAt(INSIDE, INSIDE)));
    EXPECT_EQ(ui.activeId, 0u);
    button(pressAt(INSIDE, INSIDE));
    EXPECT_TRUE(button(releaseAt(INSIDE, INSIDE)));
}

TEST_F(Widgets, APanelThatGoesDoesNotKillTheOneAfterIt) {
    begin({});
    uiPanel(ui, {0, 0, 50, 50}, 12, 2);
    uiPanel(ui, PLACE, 12, 2);
    begin(pressAt(INSIDE, INSIDE));
    uiPanel(ui, PLACE, 12, 2);
    uiButton(ui, ID, PLACE, "", true, false, 16);
    EXPECT_EQ(ui.activeId, ID);
}

TEST_F(Widgets, APanelDrawnAlreadyIsNoOtherThatDiffersInOneEdge) {
    constexpr UiRect LATER = {90, 90, 300, 100};
    for (const UiRect& earlier :
         {UiRect{91, 90, 300, 100}, {90, 91, 300, 100}, {90, 90, 301, 100}, {90, 90, 300, 101}}) {
        for (const Input& input : {Input{}, pressAt(INSIDE, INSIDE)}) {
            begin(input);
            uiPanel(ui, earlier, 12, 2);
            uiButton(ui, ID, PLACE, "", true, false, 16);
            uiPanel(ui, LATER, 12, 2);
        }
        EXPECT_EQ(ui.activeId, 0u) << earlier.x << ' ' << earlier.y << ' ' << earlier.w << ' ' << earlier.h;
        ui.activeId = 0;
    }
}

TEST_F(Widgets, AButtonThatIsNoLongerDrawnKeepsThePressUntilTheNext) {
    button(pressAt(INSIDE, INSIDE));
    begin(releaseAt(INSIDE, INSIDE));
    EXPECT_EQ(ui.activeId, ID);
    begin(pressAt(INSIDE, INSIDE));
    uiButton(ui, 43, PLACE, "", true, false, 16);
    EXPECT_EQ(ui.activeId, 43u);
}

// --- How a button looks

static void expectColor(UiColor seen, float r, float g, float b) {
    EXPECT_FLOAT_EQ(seen.r, r);
    EXPECT_FLOAT_EQ(seen.g, g);
    EXPECT_FLOAT_EQ(seen.b, b);
    EXPECT_EQ(seen.a, 1.0f);
}

TEST_F(Widgets, AButtonIsBrighterUnderThePointerAndDarkerWhileHeld) {
    button(mouseAt(OUTSIDE, INSIDE));
    expectColor(bodyColor(), 0.30f, 0.26f, 0.22f);
    button(mouseAt(INSIDE, INSIDE));
    expectColor(bodyColor(), 0.30f + 0.70f * 0.14f, 0.26f + 0.74f * 0.14f, 0.22f + 0.78f * 0.14f);
    button(pressAt(INSIDE, INSIDE));
    expectColor(bodyColor(), 0.30f * 0.75f, 0.26f * 0.75f, 0.22f * 0.75f);
    button(holdAt(OUTSIDE, INSIDE)); // also off the button
    expectColor(bodyColor(), 0.30f * 0.75f, 0.26f * 0.75f, 0.22f * 0.75f);
    button(releaseAt(INSIDE, INSIDE));
    expectColor(bodyColor(), 0.30f + 0.70f * 0.14f, 0.26f + 0.74f * 0.14f, 0.22f + 0.78f * 0.14f);
}

TEST_F(Widgets, AButtonIsBrightUnderAHeldPointerThatIsAnothers) {
    ui.activeId = 7;
    button(holdAt(INSIDE, INSIDE));
    expectColor(bodyColor(), 0.30f + 0.70f * 0.14f, 0.26f + 0.74f * 0.14f, 0.22f + 0.78f * 0.14f);
}

TEST_F(Widgets, APrimaryButtonIsGoldenAndADisabledOneGrey) {
    button(mouseAt(OUTSIDE, OUTSIDE), true, true);
    expectColor(bodyColor(), 0.80f, 0.58f, 0.20f);
    for (const Input& input : {mouseAt(INSIDE, INSIDE), pressAt(INSIDE, INSIDE)})
        for (const bool primary : {false, true}) {
            button(input, false, primary);
            expectColor(bodyColor(), 0.28f, 0.28f, 0.29f);
        }
}

TEST_F(Widgets, AButtonIsAShadowABodyAFrameAndItsLabel) {
    const UiColor label = {0.12f, 0.08f, 0.03f, 1}, grey = {0.55f, 0.55f, 0.56f, 1};
    const UiColor goldFrame = {1.00f, 0.86f, 0.46f, 1};
    const struct {
        bool enabled, primary;
        UiColor body, frame, label;
    } rows[] = {{true, false, {0.30f, 0.26f, 0.22f, 1}, colFrame, colText},
                {true, true, {0.80f, 0.58f, 0.20f, 1}, goldFrame, label},
                {false, false, {0.28f, 0.28f, 0.29f, 1}, colFrame, grey},
                {false, true, {0.28f, 0.28f, 0.29f, 1}, goldFrame, grey}};
    for (const auto& row : rows) {
        button({}, row.enabled, row.primary);
        Ui plain = emptyCopy();
        uiRoundRect(plain, {100, 102, 200, 40}, 6, {0, 0, 0, 0.35f});
        uiRoundRect(plain, PLACE, 6, row.body);
        uiFrame(plain, PLACE, 1.5f, row.frame);
        uiTextInRect(plain, PLACE, "Text", 16, row.label, ALIGN_CENTER, 8);
        expectSameAs(plain);
    }
}

TEST_F(Widgets, CornersFramesAndShadowsAreTheSamePixelsInEveryWindow) {
    const auto drawAt = [&](int height) {
        uiBeginFrame(ui, 1280, height, {});
        uiButton(ui, ID, PLACE, "Text", true, true, 16);
        uiProgressBar(ui, {10, 20, 100, 9}, 0.5f, colGood, colTrack);
    };
    drawAt(720);
    const Ui usual = ui;
    for (const int height : {540, 1440}) {
        drawAt(height);
        expectSameAs(usual);
    }
}

TEST_F(Widgets, ALabelIsLoweredToItsButtonButNotBelow10) {
    const auto sizeOf = [&](float width, int size) {
        begin({});
        uiButton(ui, ID, {0, 0, width, 30}, "Commercial", true, false, size, true);
        const auto texts = drawnTexts(ui);
        return texts.size() == 1 ? std::stoi(texts[0].key) : 0;
    };
    const float at16 = uiTextWidth(ui, "Commercial", 16, true);
    EXPECT_EQ(sizeOf(at16 + 16, 16), 16);
    EXPECT_EQ(sizeOf(at16 + 15, 16), 15);
    EXPECT_EQ(sizeOf(20, 16), 10);
    EXPECT_EQ(sizeOf(20, 9), 9);
    EXPECT_EQ(drawnTexts(ui)[0].key.substr(0, 3), "9b|");
}

TEST_F(Widgets, AButtonWorksWithoutAFont) {
    gate.refusesAll = true;
    fontsSetLanguage(fonts, 3);
    button(pressAt(INSIDE, INSIDE));
    EXPECT_TRUE(button(releaseAt(INSIDE, INSIDE)));
    EXPECT_THAT(ui.commands, SizeIs(1)); // all solid
}

// --- Bars

TEST_F(Widgets, ABarFillsByItsFractionAndAPillAtLeast) {
    const UiRect bar = {10, 20, 100, 9};
    const UiColor fill = colGood;
    const struct {
        float fraction, width;
    } rows[] = {{0.01f, 9},      {0.09f, 9},  {0.5f, 50}, {1, 100}, {1.5f, 100},
                {INFINITY, 100}, {1e-30f, 9}, {0, 0},     {-1, 0},  {NAN, 0}};
    for (const auto& row : rows) {
        begin({});
        uiProgressBar(ui, bar, row.fraction, fill, colTrack);
        Ui plain = emptyCopy();
        uiRoundRect(plain, bar, 4, colTrack);
        if (row.width > 0) uiRoundRect(plain, {10, 20, row.width, 9}, 4, fill);
        uiFrame(plain, bar, 1, {0, 0, 0, 0.5f});
        expectSameAs(plain);
    }
}

TEST_F(Widgets, ABarHigherThanWideIsFilledNoWiderThanItIs) {
    uiProgressBar(ui, {0, 0, 5, 20}, 0.1f, colGood, colTrack);
    for (const UiVertex& vertex : ui.vertices) EXPECT_LT(vertex.x, 5.001f);
}

// --- Rows

TEST_F(Widgets, ASettingIsACaptionWithOrWithoutAHint) {
    uiBeginFrame(ui, 1280, 1080, {}); // the scale is 1.5
    uiSettingRow(ui, 50, 100, "Caption", "Hint", 19);
    Ui plain = emptyCopy();
    uiText(plain, 50, 106, "Caption", 19, colText);
    uiText(plain, 50, 145, "Hint", 21, colHint);
    expectSameAs(plain);

    for (const char* none : {static_cast<const char*>(nullptr), ""}) {
        begin({});
        uiSettingRow(ui, 50, 100, "Caption", none, 19);
        ASSERT_THAT(drawnTexts(ui), SizeIs(1));
        EXPECT_EQ(textOf(drawnTexts(ui)[0]), "Caption");
    }
}

TEST_F(Widgets, AKeyValueRowMovesToTheNext) {
    uiBeginFrame(ui, 1280, 1080, {});
    float y = 100;
    uiKeyValueRow(ui, 50, y, 200, "Citizens", "12", colBad);
    EXPECT_EQ(y, 136.0f);
    Ui plain = emptyCopy();
    uiText(plain, 50, 100, "Citizens", 22, colMuted);
    uiText(plain, 250, 100, "12", 22, colBad, ALIGN_RIGHT);
    expectSameAs(plain);
}

TEST_F(Widgets, AMeterIsACaptionAPercentageAndABar) {
    uiBeginFrame(ui, 1280, 1080, {});
    uiMeterRow(ui, 50, 100, 200, "Traffic", 0.126f, colBad);
    Ui plain = emptyCopy();
    uiText(plain, 50, 100, "Traffic", 21, colMuted);
    uiText(plain, 250, 100, "13%", 21, colText, ALIGN_RIGHT);
    uiProgressBar(plain, {50, 128.5f, 200, 13.5f}, 0.126f, colBad, {0.20f, 0.19f, 0.18f, 1});
    expectSameAs(plain);
}
