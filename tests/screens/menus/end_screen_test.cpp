#include "screens/hud_fixture.h"

class EndScreenTest : public HudTest {
protected:
    static constexpr UiRect KEEP = {500, 422, 280, 46};
    static constexpr UiRect NEW = {500, 480, 280, 46};
    static constexpr UiRect MENU = {500, 538, 280, 46};

    EndScreenTest() {
        app.screen = SCREEN_END;
        app.city.day = 60;
        app.city.population = 606;
        app.city.jobs = 243;
        app.city.happiness = 65.5f;
    }
};

TEST_F(EndScreenTest, ItsCardStandsOverTheDimGame) {
    draw();
    EXPECT_TRUE(says("City"));
    EXPECT_TRUE(drew({0, 0, 1280, 720}, {0, 0, 0, 0.55f}));
    EXPECT_TRUE(drew({382, 170, 516, 380}, colPanel)); // between the rounded corners
    EXPECT_TRUE(drew({370, 170, 540, 2}, colFrame));
    expectText("Day 60   Citizens 606   Jobs 243   Happiness 66%", 640, 294, 17, colText, ALIGN_CENTER);
}

TEST_F(EndScreenTest, ABankruptCityHasNoWayBack) {
    app.city.bankrupt = 1;
    draw();
    expectText("Your city went bankrupt", 640, 192, 30, colBad, ALIGN_CENTER, true);
    expectText("The treasury stayed empty for too long.", 640, 244, 17, colText, ALIGN_CENTER);
    EXPECT_EQ(look(KEEP), NO_BUTTON);
    EXPECT_EQ(look(NEW), PRIMARY);
    EXPECT_EQ(look(MENU), NORMAL);
    click(KEEP);
    EXPECT_EQ(app.screen, SCREEN_END);
    EXPECT_EQ(app.city.keepPlaying, 0);
}

TEST_F(EndScreenTest, AMetropolisMayBeBuiltOn) {
    app.city.allMissionsDone = 1;
    draw();
    expectText("Metropolis complete!", 640, 192, 30, colGold, ALIGN_CENTER, true);
    expectText("Every mission is complete. You can keep building.", 640, 244, 17, colText, ALIGN_CENTER);
    EXPECT_EQ(look(KEEP), PRIMARY);
    EXPECT_EQ(look(NEW), NORMAL);
    EXPECT_EQ(look(MENU), NORMAL);
    click(KEEP);
    EXPECT_EQ(app.screen, SCREEN_GAME);
    EXPECT_EQ(app.city.keepPlaying, 1);
    frame();
    EXPECT_EQ(app.screen, SCREEN_GAME);
}

TEST_F(EndScreenTest, ABankruptMetropolisIsNotCongratulatedAndHasNoWayBack) {
    app.city.allMissionsDone = 1;
    for (const uint8_t kept : {0, 1}) {
        app.city.bankrupt = 1;
        app.city.keepPlaying = kept;
        draw();
        EXPECT_TRUE(says("Your city went bankrupt"));
        EXPECT_TRUE(says("The treasury stayed empty for too long."));
        EXPECT_FALSE(says("Metropolis complete!"));
        EXPECT_FALSE(says("Keep building"));
        EXPECT_EQ(look(KEEP), NO_BUTTON);
        EXPECT_EQ(look(NEW), PRIMARY);
        click(KEEP);
        EXPECT_EQ(app.screen, SCREEN_END);
        EXPECT_EQ(app.city.keepPlaying, kept);
    }
}

TEST_F(EndScreenTest, ANewCityStartsOver) {
    app.city.bankrupt = 1;
    click(NEW);
    EXPECT_EQ(app.screen, SCREEN_GAME);
    EXPECT_EQ(app.city.day, 0);
    EXPECT_EQ(app.city.bankrupt, 0);
}

TEST_F(EndScreenTest, TheMainMenuLeavesThePause) {
    app.paused = true;
    click(MENU);
    EXPECT_EQ(app.screen, SCREEN_TITLE);
    EXPECT_FALSE(app.paused);
}

TEST_F(EndScreenTest, WhatTheCardCoversIsDead) { expectCoveredCategoryIsDead(4); }

TEST_F(EndScreenTest, TheLastButtonEndsBelowTheCard) {
    app.city.bankrupt = 1;
    draw();
    EXPECT_EQ(MENU.y + MENU.h, 170.0f + 380.0f + 34.0f);
    click(640, 582);
    EXPECT_EQ(app.screen, SCREEN_TITLE);
}
