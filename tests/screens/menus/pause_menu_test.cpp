#include "app/tools.h"
#include "screens/hud_fixture.h"

class PauseMenuTest : public HudTest {
protected:
    PauseMenuTest() { app.paused = true; }
    static UiRect row(int i) { return {500, 264.0f + 54.0f * static_cast<float>(i), 280, 44}; }
};

TEST_F(PauseMenuTest, ItsCardStandsOverTheDimGame) {
    draw();
    EXPECT_TRUE(drew({0, 0, 1280, 720}, {0, 0, 0, 0.45f}));
    EXPECT_TRUE(drew({472, 180, 336, 360}, colPanel)); // between the rounded corners
    EXPECT_TRUE(drew({460, 180, 360, 2}, colFrame));
    expectText("Paused", 640, 200, 32, colGold, ALIGN_CENTER, true);
    app.paused = false;
    draw();
    EXPECT_FALSE(says("Paused"));
}

TEST_F(PauseMenuTest, WhatItsCardCoversIsDead) { expectCoveredCategoryIsDead(4); }

TEST_F(PauseMenuTest, FiveButtons) {
    app.saveExists = true;
    draw();
    constexpr const char* LABELS[] = {"Resume", "Save game  [F5]", "Load game  [F9]", "Settings",
                                      "Quit to title"};
    for (int i = 0; i < 5; i++) {
        EXPECT_EQ(look(row(i)), i == 0 ? PRIMARY : NORMAL) << LABELS[i];
        EXPECT_NEAR(middleY(textOf(LABELS[i]).rect), middleY(row(i)), 1.0f);
        EXPECT_EQ(textOf(LABELS[i]).size, 19);
        EXPECT_EQ(textOf(LABELS[i]).bold, i == 0);
    }
}

TEST_F(PauseMenuTest, ResumeGoesOn) {
    click(row(0));
    EXPECT_FALSE(app.paused);
    EXPECT_EQ(app.screen, SCREEN_GAME);
}

TEST_F(PauseMenuTest, SavingLeavesTheMenuOpenAndAnswersBehindIt) {
    click(row(1));
    EXPECT_TRUE(app.paused);
    EXPECT_TRUE(app.saveExists);
    EXPECT_TRUE(says("Game saved."));
    EXPECT_EQ(look(row(2)), NORMAL);
}

TEST_F(PauseMenuTest, AFailedSaveSaysSo) {
    app.savePath = folder + "nowhere/savegame.ovw";
    click(row(1));
    EXPECT_TRUE(app.paused);
    EXPECT_FALSE(app.saveExists);
    EXPECT_TRUE(says("Could not save the game."));
}

TEST_F(PauseMenuTest, LoadingNeedsASave) {
    app.saveExists = false;
    draw();
    EXPECT_EQ(look(row(2)), DISABLED);
    click(row(2));
    EXPECT_TRUE(app.paused);
    EXPECT_EQ(app.statusTimer, 0.0f);
}

TEST_F(PauseMenuTest, LoadingBringsTheSavedCityBackAndClosesTheMenu) {
    click(row(1));
    app.city.money = 5.0;
    click(row(2));
    EXPECT_FALSE(app.paused);
    EXPECT_EQ(app.city.money, 150000.0);
    EXPECT_TRUE(says("Game loaded."));
}

TEST_F(PauseMenuTest, SettingsComeBackToTheMenu) {
    click(row(3));
    EXPECT_EQ(app.screen, SCREEN_SETTINGS);
    EXPECT_EQ(app.returnScreen, SCREEN_GAME);
    EXPECT_TRUE(app.paused);
}

TEST_F(PauseMenuTest, QuittingAsksNothingAndSavesNothing) {
    click(row(4));
    EXPECT_EQ(app.screen, SCREEN_TITLE);
    EXPECT_FALSE(app.paused);
    EXPECT_FALSE(app.saveExists);
}
