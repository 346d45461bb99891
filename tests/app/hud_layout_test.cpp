#include "app/hud_layout.h"

#include "app/tools.h"
#include "screens/hud_fixture.h"

#include <algorithm>

class PointerOverHud : public HudTest {
protected:
    bool overAt(float x, float y) {
        input.mouseX = x;
        input.mouseY = y;
        return pointerOverHud(app, input);
    }

    // True inside, false one pixel outside of each edge; the left and upper edges belong to it, the others do
    // not.
    void expectHudIs(UiRect rect) {
        const float right = rect.x + rect.w;
        const float bottom = rect.y + rect.h;
        EXPECT_TRUE(overAt(rect.x, rect.y));
        EXPECT_TRUE(overAt(right - 0.5f, bottom - 0.5f));
        EXPECT_FALSE(overAt(rect.x - 0.5f, middleY(rect)));
        EXPECT_FALSE(overAt(middleX(rect), rect.y - 0.5f));
        EXPECT_FALSE(overAt(right, middleY(rect)));
        EXPECT_FALSE(overAt(middleX(rect), bottom));
    }
};

TEST_F(PointerOverHud, EveryOtherScreenIsInterface) {
    for (const Screen screen : {SCREEN_LAUNCHER, SCREEN_TITLE, SCREEN_SETTINGS, SCREEN_END}) {
        app.screen = screen;
        EXPECT_TRUE(overAt(640, 360)) << screen;
    }
    app.screen = SCREEN_GAME;
    EXPECT_FALSE(overAt(640, 360));
}

TEST_F(PointerOverHud, ThePausedGameIsInterface) {
    app.paused = true;
    EXPECT_TRUE(overAt(640, 360));
}

TEST_F(PointerOverHud, TheBarsReachFromEdgeToEdge) {
    EXPECT_TRUE(overAt(0, 0));
    EXPECT_TRUE(overAt(1279, 43));
    EXPECT_FALSE(overAt(640, 44));
    EXPECT_FALSE(overAt(640, 635));
    EXPECT_TRUE(overAt(0, 636));
    EXPECT_TRUE(overAt(1279, 719));
    EXPECT_FALSE(overAt(640, 720));
}

TEST_F(PointerOverHud, TheToolPanel) { expectHudIs({10, 54, 232, 500}); }
TEST_F(PointerOverHud, TheRightPanelWhetherOrNotItShowsAnything) { expectHudIs({974, 54, 296, 572}); }

TEST_F(PointerOverHud, TheSixthServiceToolHangsOverItsPanel) {
    app.currentCategory = CATEGORY_SERVICES;
    EXPECT_TRUE(overAt(18, 554));
    EXPECT_TRUE(overAt(233.5f, 559.5f));
    EXPECT_FALSE(overAt(17.5f, 556)); // beside the button
    EXPECT_FALSE(overAt(234, 556));
    EXPECT_FALSE(overAt(126, 560));
    for (const int category : {0, 1, 2, 4, 5, 6}) {
        app.currentCategory = static_cast<uint8_t>(category);
        EXPECT_FALSE(overAt(126, 556)) << category;
    }
}

TEST_F(PointerOverHud, TheRightPanelIs640HighAtMostAnd260AtLeast) {
    EXPECT_EQ(hudLayout(1280, 720).rightPanel.h, 572.0f);
    EXPECT_EQ(hudLayout(1280, 2160).rightPanel.h, 640.0f * 2.0f);
    EXPECT_EQ(hudLayout(1280, 300).rightPanel.h, 260.0f * 0.75f);
}

TEST_F(PointerOverHud, ItGrowsWithTheWindow) {
    resize(2560, 1440);
    expectHudIs({20, 108, 464, 1000});
    expectHudIs({2560 - 612, 108, 592, 1144});
    EXPECT_TRUE(overAt(1280, 87));
    EXPECT_FALSE(overAt(1280, 88));
}

TEST_F(PointerOverHud, TheTourCoversOnlyItsCard) {
    app.tutorialStep = 1;
    draw();
    const UiRect card = app.tutorialCard;
    ASSERT_GT(card.w, 0.0f);
    EXPECT_TRUE(overAt(middleX(card), middleY(card)));
    EXPECT_FALSE(overAt(card.x - 1.0f, middleY(card)));
    EXPECT_FALSE(overAt(640, 600)); // dimmed, and still the map
    app.tutorialStep = -1;
    EXPECT_FALSE(overAt(middleX(card), middleY(card)));
}

TEST_F(PointerOverHud, ClicksOnTheInterfaceDoNotReachTheMap) {
    input.mouseX = 100;
    input.mouseY = 600;
    app.currentTool = 1; // street
    input.leftPressed = input.leftHeld = 1;
    input.mouseY = 300;
    frame();
    EXPECT_FALSE(app.dragging);
    input.leftPressed = 1;
    input.mouseX = 640;
    frame();
    EXPECT_TRUE(app.dragging);
}

TEST_F(PointerOverHud, AnyWindowSizeHasAnAnswer) {
    for (const auto& [width, height] : {std::pair{0, 0}, {1, 1}, {-5, -5}, {8000, 300}, {300, 8000}}) {
        resize(width, height);
        EXPECT_TRUE(overAt(0, 0)) << width << " by " << height;
        const HudLayout hud = hudLayout(width, height);
        EXPECT_EQ(hud.width, static_cast<float>(std::max(width, 1)));
        EXPECT_EQ(hud.height, static_cast<float>(std::max(height, 1)));
    }
}
