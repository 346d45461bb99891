#include "screens/game/game_screen.h"

#include "allocation_count.h"
#include "app/session.h"
#include "app/tools.h"
#include "screens/hud_fixture.h"
#include "screens/stats_count.h"
#include "sim/hash.h"
#include "sim/missions.h"
#include "sim/random_city.h"

#include <cmath>
#include <limits>

class GameScreenTest : public HudTest {
protected:
    // Every view of the right panel, the menu and the tour.
    void drawEveryView() {
        for (int category = 0; category < CATEGORY_COUNT; category++) {
            setCategory(app, category);
            draw();
        }
        for (const Panel panel : {PANEL_BUDGET, PANEL_FINANCE, PANEL_STATISTICS, PANEL_NONE}) {
            app.currentPanel = panel;
            draw();
        }
        for (size_t i = 0; i < std::min<size_t>(app.city.buildings.size(), 6); i++) {
            app.selectedBuilding = static_cast<int>(i);
            draw();
        }
        app.selectedBuilding = -1;
        app.selectedCellX = app.selectedCellY = 48;
        draw();
        clearSelection(app);
        for (int step = 0; step <= 6; step++) {
            startTutorial(app, step);
            draw();
        }
        startTutorial(app, -1);
        app.paused = true;
        draw();
        app.paused = false;
        app.screen = SCREEN_END;
        draw();
        app.screen = SCREEN_GAME;
    }

    void expectEveryVertexFinite() {
        for (const UiVertex& vertex : app.ui.vertices) {
            ASSERT_TRUE(std::isfinite(vertex.x));
            ASSERT_TRUE(std::isfinite(vertex.y));
        }
    }
};

TEST_F(GameScreenTest, FromBackToFront) {
    app.paused = true;
    app.currentOverlay = OVERLAY_TRAFFIC;
    startTutorial(app, 0);
    draw();
    const std::vector<std::string> order = {"Menu", "Select", "City", "Low", "Tutorial", "Paused"};
    size_t next = 0;
    for (const Label& text : texts())
        if (next < order.size() && text.words == order[next]) next++;
    EXPECT_EQ(next, order.size());
}

TEST_F(GameScreenTest, UnderThePauseMenuEveryPartStillResponds) {
    app.paused = true;
    clickOn("Zones");
    EXPECT_EQ(app.currentCategory, CATEGORY_ZONES);
    clickOn("Budget");
    click({1226, 110, 30, 30}); // more tax
    EXPECT_EQ(app.city.taxRate[0], 110);
    clickOn("X");
    EXPECT_EQ(app.currentPanel, PANEL_NONE);
    clickOn("3");
    EXPECT_EQ(app.speed, 3);
    EXPECT_TRUE(app.paused);
    EXPECT_TRUE(says("Paused"));
}

TEST_F(GameScreenTest, TheFrameRateIsShownOnRequest) {
    app.frameStats.framesPerSecond = 59.6f;
    draw();
    EXPECT_FALSE(says("FPS 60"));
    app.settings.showFps = true;
    draw();
    expectText("FPS 60", 1268, 694, 16, {1.0f, 1.0f, 0.7f, 1.0f}, ALIGN_RIGHT);
}

TEST_F(GameScreenTest, EveryWindowSizeIsSurvived) {
    for (const auto& [width, height] : {std::pair{1, 1},
                                        {0, 0},
                                        {-5, -5},
                                        {8000, 300},
                                        {300, 8000},
                                        {1, 2000},
                                        {2000, 1},
                                        {800, 600},
                                        {2560, 1440}}) {
        resize(width, height);
        drawEveryView();
        expectEveryVertexFinite();
    }
}

TEST_F(GameScreenTest, AllMeasuresGrowWithTheWindow) {
    draw();
    const auto small = rects();
    resize(2560, 1440);
    draw();
    const auto large = rects();
    ASSERT_EQ(small.size(), large.size());
    int doubled = 0;
    for (size_t i = 0; i < small.size(); i++)
        doubled += std::fabs(large[i].rect.y - 2.0f * small[i].rect.y) < 0.01f;
    EXPECT_GT(doubled, static_cast<int>(small.size()) / 3); // but for the corners and frames of buttons
    EXPECT_TRUE(drew({0, 1440 - 168, 2560, 168}, {0.075f, 0.07f, 0.065f, 0.96f}));
}

TEST_F(GameScreenTest, ASteadyFrameTakesNoMemory) {
    app.city = wildCity(3);
    app.currentOverlay = OVERLAY_WATER;
    app.settings.showFps = true;
    for (int round = 0; round < 2; round++) drawEveryView();
    const uint64_t before = allocationCount();
    drawEveryView();
    EXPECT_EQ(allocationCount(), before);
}

TEST_F(GameScreenTest, StatisticsAreComputedOnceAFrame) {
    const auto times = [&] {
        const int before = statsComputed();
        draw();
        return statsComputed() - before;
    };
    EXPECT_EQ(times(), 1); // top bar, mission and the city overview
    for (const Panel panel : {PANEL_BUDGET, PANEL_FINANCE, PANEL_STATISTICS}) {
        app.currentPanel = panel;
        EXPECT_EQ(times(), 1) << panel;
    }
    app.currentPanel = PANEL_NONE;
    setCategory(app, CATEGORY_DISTRICTS);
    EXPECT_EQ(times(), 1);
    app.selectedCellX = app.selectedCellY = 48;
    EXPECT_EQ(times(), 1);
    app.paused = true;
    EXPECT_EQ(times(), 1);
    app.screen = SCREEN_END;
    EXPECT_EQ(times(), 2);
}

TEST_F(GameScreenTest, AnEmptyCityInEveryView) {
    app.city = City();
    drawEveryView();
    expectEveryVertexFinite();
    EXPECT_TRUE(says("Money 150000"));
}

TEST_F(GameScreenTest, CitiesOfWildSavesInEveryView) {
    for (uint32_t salt = 0; salt < 6; salt++) {
        app.city = wildCity(salt);
        for (const int height : {300, 720, 1440}) {
            resize(1280, height);
            drawEveryView();
            expectEveryVertexFinite();
        }
    }
}

TEST_F(GameScreenTest, EveryNumberAtItsWorst) {
    constexpr double INF = std::numeric_limits<double>::infinity();
    for (const double wild : {1e300, -1e300, INF, -INF, std::nan(""), 3e9, -3e9}) {
        City& city = app.city;
        const auto single = static_cast<float>(std::isfinite(wild) ? std::clamp(wild, -3e38, 3e38) : wild);
        const int whole = wild > 0.0 ? 2147483647 : -2147483647 - 1;
        city.money = city.lastIncome = city.lastExpense = wild;
        city.population = city.jobs = city.workers = city.employed = city.commuters = city.transitRiders =
            whole;
        city.streetCells = city.avenueCells = city.day = city.calendarDay = city.raining = whole;
        city.happiness = city.educatedShare = single;
        city.demand.fill(single);
        for (auto& row : city.history) row.fill(single);
        city.historyCount = HISTORY_LENGTH;
        for (Grid* grid :
             {&city.trafficLoad, &city.pollution, &city.landValue, &city.powerField, &city.waterField})
            grid->assign(CELL_COUNT, single);
        for (int mission = 0; mission <= missionCount(); mission++) {
            city.missionIndex = mission;
            drawEveryView();
            expectEveryVertexFinite();
        }
    }
}

TEST_F(GameScreenTest, AHandThatClicksEverywhereBreaksNothing) {
    app.city = wildCity(1);
    const auto roll = [](int click, int salt, int below) {
        return static_cast<int>(hashCell(static_cast<uint32_t>(click), static_cast<uint32_t>(salt), 7) %
                                static_cast<uint32_t>(below));
    };
    for (int i = 0; i < 1500; i++) {
        if (i % 100 == 0) resize(600 + roll(i, 1, 1400), 300 + roll(i, 2, 900));
        click(static_cast<float>(roll(i, 3, std::max(input.drawableWidth, 1))),
              static_cast<float>(roll(i, 4, std::max(input.drawableHeight, 1))));
        if (roll(i, 5, 4) == 0) selectCell(app, roll(i, 6, GRID_SIZE), roll(i, 7, GRID_SIZE));
        if (roll(i, 8, 50) == 0) startTutorial(app, roll(i, 9, 9));
        if (app.screen != SCREEN_GAME) app.screen = roll(i, 10, 2) == 0 ? SCREEN_GAME : SCREEN_END;
        ASSERT_LT(app.currentCategory, CATEGORY_COUNT);
        ASSERT_LT(app.currentTool, TOOL_COUNT);
        ASSERT_LT(app.currentOverlay, OVERLAY_COUNT);
        ASSERT_LE(app.currentPanel, PANEL_STATISTICS);
        ASSERT_TRUE(app.speed >= 0 && app.speed <= 3);
        ASSERT_LE(app.tutorialStep, 8);
    }
    for (const Voice& voice : app.audio.voices) EXPECT_FALSE(voice.active); // no button of the game sounds
}
