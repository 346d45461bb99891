#include "screens/game/tutorial.h"

#include "app/hud_layout.h"
#include "app/session.h"
#include "screens/hud_fixture.h"
#include "ui/words/strings.h"

#include <cmath>

constexpr UiColor DIM = {0, 0, 0, 0.55f};

class TutorialTest : public HudTest {
protected:
    TutorialTest() { app.settings.tutorialDone = false; }

    void show(int step) {
        startTutorial(app, step);
        draw();
    }

    UiRect skipButton() const { return {app.tutorialCard.x + 20, app.tutorialCard.y + 158, 140, 38}; }
    UiRect nextButton() const {
        return {app.tutorialCard.x + app.tutorialCard.w - 160, app.tutorialCard.y + 158, 140, 38};
    }

    void expectCard(UiRect card) {
        EXPECT_FLOAT_EQ(app.tutorialCard.x, card.x);
        EXPECT_FLOAT_EQ(app.tutorialCard.y, card.y);
        EXPECT_FLOAT_EQ(app.tutorialCard.w, card.w);
        EXPECT_FLOAT_EQ(app.tutorialCard.h, card.h);
        EXPECT_TRUE(
            drew({card.x + 12, card.y, card.w - 24, card.h}, colPanel)); // between the rounded corners
        EXPECT_TRUE(drew({card.x, card.y, card.w, 2}, colFrame));
        expectText("Tutorial", card.x + 20, card.y + 16, 15, colGold, ALIGN_LEFT, true);
    }

    void expectHole(UiRect hole) {
        EXPECT_TRUE(drew({hole.x, hole.y, hole.w, 2.5f}, colGold));
        EXPECT_TRUE(drew({0, hole.y + hole.h, 1280, 720 - hole.y - hole.h}, DIM));
        EXPECT_TRUE(drew({hole.x + hole.w, hole.y, 1280 - hole.x - hole.w, hole.h}, DIM) ||
                    hole.x + hole.w >= 1280);
        EXPECT_FALSE(drew({0, 0, 1280, 720}, DIM));
    }

    // A golden line from there, four wide, and right after it a triangle with its tip here.
    bool pointsFrom(float fromX, float fromY, float x, float y) const {
        const float s = uiScale(app.ui);
        for (size_t i = 6; i + 2 < app.ui.vertices.size(); i++) {
            const UiVertex* v = &app.ui.vertices[i];
            const UiVertex& left = v[-6];
            const UiVertex& right = v[-1];
            const float side = std::hypot(v[1].x - v[2].x, v[1].y - v[2].y);
            const float height = std::hypot(v[0].x - (v[1].x + v[2].x) / 2, v[0].y - (v[1].y + v[2].y) / 2);
            if (v->r == colGold.r && std::fabs(v->x - x) < 0.01f && std::fabs(v->y - y) < 0.01f &&
                std::fabs(side - 18.0f * s) < 0.01f && std::fabs(height - 18.0f * s) < 0.01f &&
                std::fabs((left.x + right.x) / 2 - fromX) < 0.01f &&
                std::fabs((left.y + right.y) / 2 - fromY) < 0.01f &&
                std::fabs(std::hypot(left.x - right.x, left.y - right.y) - 4.0f * s) < 0.01f)
                return true;
        }
        return false;
    }
};

TEST_F(TutorialTest, WithoutATourNothingIsDrawn) {
    for (const int step : {-1, -5, -2147483647}) {
        show(step);
        EXPECT_FALSE(says("Tutorial"));
        EXPECT_EQ(app.tutorialStep, step);
    }
    EXPECT_FALSE(app.settings.tutorialDone);
}

TEST_F(TutorialTest, TheFirstAndTheLastCardStandInTheMiddleOfADimWindow) {
    for (const int step : {0, 6}) {
        show(step);
        EXPECT_TRUE(drew({0, 0, 1280, 720}, DIM));
        expectCard({400, 255, 480, 210});
    }
}

TEST_F(TutorialTest, CategoryCardsStandToTheRightOfTheirButton) {
    show(1); // roads
    expectHole({12, 94, 228, 46});
    expectCard({304, 70, 480, 210});
    EXPECT_TRUE(pointsFrom(304, 175, 240, 117));
    show(2); // zones
    expectHole({12, 132, 228, 46});
    expectCard({304, 70, 480, 210});
    EXPECT_TRUE(pointsFrom(304, 175, 240, 155));
    show(3); // utilities
    expectHole({12, 208, 228, 46});
    expectCard({304, 126, 480, 210});
    EXPECT_TRUE(pointsFrom(304, 231, 240, 231));
}

TEST_F(TutorialTest, TheBarsCardStandsBelowIt) {
    show(4);
    EXPECT_TRUE(drew({-6, -6, 1292, 2.5f}, colGold));
    EXPECT_TRUE(drew({0, 50, 1280, 670}, DIM));
    expectCard({400, 114, 480, 210});
    EXPECT_TRUE(pointsFrom(640, 114, 640, 50));
}

TEST_F(TutorialTest, TheMissionsCardStandsAboveIt) {
    show(5);
    expectHole({6, 638, 372, 80});
    expectCard({32, 364, 480, 210});
    EXPECT_TRUE(pointsFrom(272, 574, 192, 638));
}

TEST_F(TutorialTest, EveryStepHasItsText) {
    for (int step = 0; step <= 6; step++) {
        show(step);
        std::string said;
        float lowest = 0.0f;
        for (const Label& text : texts())
            if (text.rect.x == app.tutorialCard.x + 20.0f && text.size == 18) {
                said += text.words;
                lowest = std::max(lowest, text.rect.y + text.rect.h);
            }
        EXPECT_EQ(said, tr(STR_TUTORIAL_1 + step));
        EXPECT_LE(lowest, app.tutorialCard.y + 44.0f + 96.0f + 0.5f);
    }
}

TEST_F(TutorialTest, NextGoesOnToTheLastStepWhereFinishIsTheOnlyWay) {
    show(0);
    for (int step = 0; step < 6; step++) {
        EXPECT_EQ(app.tutorialStep, step);
        EXPECT_EQ(look(skipButton()), NORMAL);
        EXPECT_EQ(look(nextButton()), PRIMARY);
        EXPECT_TRUE(says("Next"));
        click(nextButton());
    }
    EXPECT_EQ(app.tutorialStep, 6);
    EXPECT_EQ(look(skipButton()), DISABLED);
    EXPECT_TRUE(says("Finish"));
    click(skipButton());
    EXPECT_EQ(app.tutorialStep, 6);
    EXPECT_FALSE(app.settings.tutorialDone);
    click(nextButton());
    EXPECT_EQ(app.tutorialStep, -1);
    EXPECT_TRUE(app.settings.tutorialDone);
    EXPECT_EQ(app.tutorialCard.w, 0.0f);
}

TEST_F(TutorialTest, SkippingIsForGood) {
    show(0);
    click(skipButton());
    EXPECT_EQ(app.tutorialStep, -1);
    EXPECT_EQ(app.tutorialCard.h, 0.0f);
    Settings saved;
    ASSERT_TRUE(loadSettings(saved, app.settingsPath));
    EXPECT_TRUE(saved.tutorialDone);
    newCity(app);
    EXPECT_EQ(app.tutorialStep, -1);
}

TEST_F(TutorialTest, ANewCityStartsTheTourUntilItIsDone) {
    newCity(app);
    EXPECT_EQ(app.tutorialStep, 0);
}

TEST_F(TutorialTest, AStepBeyondTheLastFinishesInTheNextFrameAndSaves) {
    show(7);
    EXPECT_FALSE(says("Tutorial"));
    EXPECT_EQ(app.tutorialStep, -1);
    Settings saved;
    ASSERT_TRUE(loadSettings(saved, app.settingsPath));
    EXPECT_TRUE(saved.tutorialDone);
}

TEST_F(TutorialTest, InANarrowWindowTheCardIsHeldInsideAndMayCoverItsTarget) {
    for (const int width : {519, 500, 300}) {
        resize(width, 720);
        show(1);
        EXPECT_FLOAT_EQ(app.tutorialCard.w, static_cast<float>(width) - 40.0f);
        EXPECT_FLOAT_EQ(app.tutorialCard.x, 20.0f);
    }
    resize(540, 720);
    show(1);
    EXPECT_FLOAT_EQ(app.tutorialCard.w, 480.0f);
    EXPECT_FLOAT_EQ(app.tutorialCard.x, 40.0f);
}

TEST_F(TutorialTest, InALowWindowTheCardIsHeldAboveTheBottom) {
    resize(1280, 480); // the scale is 0.75
    show(3);
    EXPECT_FLOAT_EQ(app.tutorialCard.y, 126.0f * 0.75f);
    resize(1280, 340);
    show(3); // raised to 70 first, and then held
    EXPECT_FLOAT_EQ(app.tutorialCard.y, 340.0f - 330.0f * 0.75f);
}

// The button of the utilities, at 214 of 720: in the upper half of this window, and in the lower one.
TEST_F(TutorialTest, InAVeryLowWindowTheCardStandsAboveItsButton) {
    resize(1280, 321);
    show(3);
    EXPECT_FLOAT_EQ(app.tutorialCard.x, 304.0f * 0.75f);
    resize(1280, 320);
    show(3);
    EXPECT_FLOAT_EQ(app.tutorialCard.x, 38.0f * 0.75f);
    EXPECT_FLOAT_EQ(app.tutorialCard.y, (214.0f - 210.0f - 70.0f) * 0.75f);
}

// So low that the mission block stands where the top bar ends.
TEST_F(TutorialTest, ATargetCountsAsThatOfTheTopAboveSixty) {
    resize(1280, 102);
    show(5);
    EXPECT_FLOAT_EQ(app.tutorialCard.x, (12.0f + 360.0f + 70.0f) * 0.75f); // to its right
    resize(1280, 101);
    show(5);
    EXPECT_FLOAT_EQ(app.tutorialCard.x, (1280.0f - 360.0f) / 2.0f); // below it
}

TEST_F(TutorialTest, AnArrowOfAPixelIsNotDrawn) {
    resize(741, 720); // the card is pushed from the right towards its button
    show(3);
    EXPECT_FLOAT_EQ(app.tutorialCard.x, 241.0f);
    EXPECT_FALSE(pointsFrom(241, 231, 240, 231));
    resize(742, 720);
    show(3);
    EXPECT_TRUE(pointsFrom(242, 231, 240, 231));
    resize(776, 754);
    show(3);
    const float scale = hudLayout(776, 754).scale;
    EXPECT_NEAR(app.tutorialCard.x - 240.0f * scale, 1.056f, 0.001f); // just long enough
    EXPECT_TRUE(pointsFrom(app.tutorialCard.x, 231.0f * scale, 240.0f * scale, 231.0f * scale));
}

TEST_F(TutorialTest, TheInterfaceBelowWorksAsUsual) {
    show(1);
    click(126, 117); // the highlighted button
    EXPECT_EQ(app.currentCategory, 1);
    click(126, 155); // a dimmed one
    EXPECT_EQ(app.currentCategory, 2);
    EXPECT_EQ(app.tutorialStep, 1);
}

TEST_F(TutorialTest, WhatTheCardCoversIsDead) {
    show(0);
    expectCoveredCategoryIsDead(5);
}

TEST_F(TutorialTest, ItGoesOnUnderThePauseMenu) {
    newCity(app);
    draw();
    click(nextButton());
    press(KEY_ESC);
    EXPECT_TRUE(app.paused);
    draw();
    EXPECT_TRUE(says("Tutorial"));
    EXPECT_TRUE(says("Paused"));
    clickOn("Resume");
    EXPECT_FALSE(app.paused);
    EXPECT_EQ(app.tutorialStep, 1);
    click(nextButton());
    EXPECT_EQ(app.tutorialStep, 2);
}
