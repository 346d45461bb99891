// Every length of the screens is counted at a window 720 high: twice that is the same picture, twice as
// large.
#include "app/game_fixture.h"
#include "app/session.h"
#include "app/tools.h"
#include "screens/drawn_calls.h"
#include "screens/game/game_screen.h"
#include "screens/menus/end_screen.h"
#include "screens/menus/launcher.h"
#include "screens/menus/settings_screen.h"
#include "screens/menus/title_screen.h"
#include "sim/city_helpers.h"

#include <cmath>

constexpr UiColor BUTTON_SHADOW = {0.0f, 0.0f, 0.0f, 0.35f};

static bool same(UiColor a, UiColor b) { return a.r == b.r && a.g == b.g && a.b == b.b && a.a == b.a; }

// What does not grow: the shadow of a button lies two pixels lower, and the pieces of the legend's bar
// overlap by one.
static float plainPart(const DrawnCall& small, size_t i) {
    constexpr float LEGEND_Y = 720.0f - 84.0f + 35.0f;
    if (small.what == "round" && same(small.color, BUTTON_SHADOW) && i == 1) return 2.0f;
    if (small.what == "rect" && small.lengths[1] == LEGEND_Y && i == 2) return 1.0f;
    return 0.0f;
}

// Corners, frames and paddings of buttons and bars are the same in every window, and so is the gap between
// the lines of the launcher.
static bool isPlain(const DrawnCall& call, float detail) {
    if (call.what == "round") return detail == 6.0f || detail == 4.0f;
    if (call.what == "frame") return detail == 1.5f || detail == 1.0f;
    return call.what.starts_with("text") && (detail == 8.0f || detail == 1.0f);
}

static void expectTwice(const DrawnCall& small, const DrawnCall& large) {
    ASSERT_EQ(large.what, small.what);
    ASSERT_EQ(large.lengths.size(), small.lengths.size());
    EXPECT_TRUE(same(large.color, small.color));
    for (size_t i = 0; i < small.lengths.size(); i++) {
        const float plain = plainPart(small, i);
        EXPECT_NEAR(large.lengths[i] - plain, 2.0f * (small.lengths[i] - plain), 0.01f)
            << small.what << ", length " << i << " of " << small.lengths[0] << ", " << small.lengths[1];
    }
    for (size_t i = 0; i < small.details.size(); i++)
        EXPECT_TRUE(large.details[i] == 2.0f * small.details[i] ||
                    (large.details[i] == small.details[i] && isPlain(small, small.details[i])))
            << small.what << " " << large.details[i] << " for " << small.details[i];
}

class Scale : public GameTest {
protected:
    std::vector<DrawnCall> callsAt(int width, int height, void (*screen)(App& app, const Input& input)) {
        input.drawableWidth = width;
        input.drawableHeight = height;
        input.mouseX = input.mouseY = -1000.0f;
        uiBeginFrame(app.ui, width, height, input);
        takeDrawnCalls();
        screen(app, input);
        return takeDrawnCalls();
    }

    // Also in a window in which cards and bars are held to their edges.
    void expectTwiceAsLarge(const std::string& view,
                            void (*screen)(App& app, const Input& input) = drawGameScreen) {
        for (const int width : {1280, 960, 480}) {
            SCOPED_TRACE(view + " " + std::to_string(width) + " wide");
            const auto small = callsAt(width, 720, screen);
            const auto large = callsAt(2 * width, 1440, screen);
            ASSERT_EQ(large.size(), small.size());
            ASSERT_GT(small.size(), 10u);
            for (size_t i = 0; i < small.size(); i++) expectTwice(small[i], large[i]);
        }
    }
};

TEST_F(Scale, TheMenusGrowWithTheWindow) {
    app.saveExists = true;
    app.logoTexture = 1;
    app.updateState = UPDATE_NEWER;
    expectTwiceAsLarge("title", drawTitleScreen);
    expectTwiceAsLarge("options", drawOptionsScreen);
    app.gameFiles.assign(30, {"music1.mp3", 1024, 1});
    for (const LauncherPage page :
         {LAUNCHER_MAIN, LAUNCHER_FILES, LAUNCHER_DELETE_SAVE, LAUNCHER_UNINSTALL}) {
        app.launcherPage = page;
        expectTwiceAsLarge("launcher page " + std::to_string(page), drawLauncher);
    }
}

TEST_F(Scale, TheBarsAndToolsGrowWithTheWindow) {
    app.settings.showFps = true;
    app.city.raining = 1;
    showStatus(app, STATUS_BANKRUPT, 0);
    for (int category = 0; category < CATEGORY_COUNT; category++) {
        setCategory(app, category);
        expectTwiceAsLarge("category " + std::to_string(category));
    }
    for (int overlay = 0; overlay < OVERLAY_COUNT; overlay++) {
        app.currentOverlay = static_cast<uint8_t>(overlay);
        expectTwiceAsLarge("overlay " + std::to_string(overlay));
    }
}

TEST_F(Scale, ThePanelsGrowWithTheWindow) {
    app.city.historyCount = 60;
    for (auto& row : app.city.history)
        for (size_t day = 0; day < row.size(); day++) row[day] = static_cast<float>(day * 37 % 60);
    for (const Panel panel : {PANEL_BUDGET, PANEL_FINANCE, PANEL_STATISTICS}) {
        app.currentPanel = panel;
        expectTwiceAsLarge("panel " + std::to_string(panel));
    }
    app.currentPanel = PANEL_NONE;
    for (const uint8_t kind : {0, 2, 4, 9, 13})
        for (const float progress : {0.5f, 1.0f}) {
            app.city.buildings.clear();
            addBuilding(app.city, 40, 40, kind);
            app.city.buildings.front().progress = progress;
            app.selectedBuilding = 0;
            expectTwiceAsLarge("building of kind " + std::to_string(kind));
        }
    app.selectedBuilding = -1;
    app.selectedCellX = app.selectedCellY = 48;
    expectTwiceAsLarge("cell");
    clearSelection(app);
    app.paintDistrict = 3;
    setCategory(app, CATEGORY_DISTRICTS);
    expectTwiceAsLarge("district");
}

TEST_F(Scale, TheTourThePauseAndTheEndGrowWithTheWindow) {
    for (int step = 0; step <= 6; step++) {
        startTutorial(app, step);
        expectTwiceAsLarge("tour " + std::to_string(step));
    }
    startTutorial(app, -1);
    app.paused = true;
    expectTwiceAsLarge("pause");
    app.paused = false;
    app.screen = SCREEN_END;
    for (const uint8_t bankrupt : {0, 1}) {
        app.city.bankrupt = bankrupt;
        app.city.allMissionsDone = !bankrupt;
        expectTwiceAsLarge("end", drawEndScreen);
    }
    app.settings.showFps = true;
    const auto small = callsAt(1280, 720, drawFpsLabel);
    const auto large = callsAt(2560, 1440, drawFpsLabel);
    ASSERT_EQ(small.size(), 1u);
    ASSERT_EQ(large.size(), 1u);
    expectTwice(small[0], large[0]);
}
