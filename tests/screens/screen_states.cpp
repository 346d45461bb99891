#include "screens/screen_states.h"

#include "app/session.h"
#include "app/tools.h"
#include "screens/game/bottom_bar.h"
#include "screens/game/game_screen.h"
#include "screens/game/right_panel.h"
#include "screens/game/tool_panel.h"
#include "screens/game/top_bar.h"
#include "screens/game/tutorial.h"
#include "screens/menus/end_screen.h"
#include "screens/menus/launcher.h"
#include "screens/menus/pause_menu.h"
#include "screens/menus/settings_screen.h"
#include "screens/menus/title_screen.h"
#include "sim/city_helpers.h"

static void topBar(App& app, const Input&) { drawTopBar(app); }
static void toolPanel(App& app, const Input&) { drawToolPanel(app); }
static void bottomBar(App& app, const Input&) { drawBottomBar(app); }

static void select(App& app, uint8_t kind, float progress = 1.0f) {
    addWorkingBuilding(app.city, 40, 40, kind).progress = progress;
    app.selectedBuilding = 0;
}

// An open panel stands in front of a selection.
static void open(App& app, Panel panel) {
    select(app, KIND_SCHOOL);
    app.currentPanel = panel;
}

static void fillHistory(City& city, int days) {
    city.historyCount = days;
    for (auto& row : city.history)
        for (size_t day = 0; day < row.size(); day++) row[day] = static_cast<float>(day * 37 % 60);
}

// The mission, 32 cells of colour, a name and two ends.
static constexpr const char* LEGEND = "bar 1, fitting 2, frame 1, rect 34, text 7";
static constexpr const char* TOUR_WITH_TARGET =
    "button 2, frame 2, line 1, paragraph 1, rect 4, round 1, text 1, triangle 1";

// clang-format off
const std::vector<ScreenState>& screenStates() {
    static const std::vector<ScreenState> states = {
        {"launcher", drawLauncher, "button 5, frame 1, gradient 1, picture 1, round 1, text 3",
         [](App&) {}},
        {"launcher with news and a save", drawLauncher,
         "button 5, frame 1, gradient 1, paragraph 1, picture 1, round 1, text 3",
         [](App& app) { app.updateState = UPDATE_NEWER; app.saveExists = true; }},
        {"launcher without files", drawLauncher, "button 2, frame 1, gradient 1, paragraph 1, round 1, text 2",
         [](App& app) { app.launcherPage = LAUNCHER_FILES; }},
        {"launcher with thirty files", drawLauncher,
         "button 2, frame 1, gradient 1, paragraph 1, round 1, text 25",
         [](App& app) { app.launcherPage = LAUNCHER_FILES; app.gameFiles.assign(30, {"music1.mp3", 1024, 1}); }},
        {"deletion", drawLauncher, "button 2, frame 1, gradient 1, paragraph 1, round 1",
         [](App& app) { app.launcherPage = LAUNCHER_DELETE_SAVE; }},
        {"removal", drawLauncher, "button 2, frame 1, gradient 1, paragraph 1, round 1",
         [](App& app) { app.launcherPage = LAUNCHER_UNINSTALL; }},
        {"title", drawTitleScreen, "button 5, gradient 1, picture 1, text 3", [](App&) {}},
        {"title with news", drawTitleScreen, "button 5, gradient 1, picture 1, text 4",
         [](App& app) { app.updateState = UPDATE_NEWER; }},
        {"options", drawOptionsScreen, "button 9, frame 1, gradient 1, round 1, text 13", [](App&) {}},

        {"top bar", topBar, "button 9, rect 2, text 5", [](App&) {}},
        {"top bar in the rain", topBar, "button 9, rect 2, text 6", [](App& app) { app.city.raining = 1; }},
        {"tools: select", toolPanel, "button 7, frame 1, rect 1, round 1",
         [](App& app) { setCategory(app, CATEGORY_SELECT); }},
        {"tools: roads", toolPanel, "button 10, frame 1, rect 1, round 1",
         [](App& app) { setCategory(app, CATEGORY_ROADS); }},
        {"tools: zones", toolPanel, "button 11, frame 1, rect 1, round 1",
         [](App& app) { setCategory(app, CATEGORY_ZONES); }},
        {"tools: services", toolPanel, "button 13, frame 1, rect 1, round 1",
         [](App& app) { setCategory(app, CATEGORY_SERVICES); }},
        {"tools: utilities", toolPanel, "button 11, frame 1, rect 1, round 1",
         [](App& app) { setCategory(app, CATEGORY_UTILITIES); }},
        {"tools: districts", toolPanel, "button 17, frame 1, rect 1, round 1",
         [](App& app) { setCategory(app, CATEGORY_DISTRICTS); }},
        {"tools: bulldoze", toolPanel, "button 7, frame 1, rect 1, round 1",
         [](App& app) { setCategory(app, CATEGORY_BULLDOZE); }},
        {"bottom bar", bottomBar, "bar 1, fitting 2, rect 2, text 4", [](App&) {}},
        {"no mission left", bottomBar, "rect 2, text 1", [](App& app) { app.city.missionIndex = 6; }},
        {"status line", bottomBar, "bar 1, fitting 2, paragraph 1, rect 2, text 4",
         [](App& app) { showStatus(app, STATUS_BANKRUPT, 0); }},
        {"legend: traffic", bottomBar, LEGEND, [](App& app) { app.currentOverlay = OVERLAY_TRAFFIC; }},
        {"legend: power", bottomBar, LEGEND, [](App& app) { app.currentOverlay = OVERLAY_POWER; }},
        {"legend: water", bottomBar, LEGEND, [](App& app) { app.currentOverlay = OVERLAY_WATER; }},
        {"legend: pollution", bottomBar, LEGEND, [](App& app) { app.currentOverlay = OVERLAY_POLLUTION; }},
        {"legend: happiness", bottomBar, LEGEND, [](App& app) { app.currentOverlay = OVERLAY_HAPPY; }},

        {"city", drawRightPanel, "bar 4, frame 1, paragraph 1, round 1, text 14", [](App&) {}},
        {"district", drawRightPanel, "button 4, frame 1, paragraph 1, round 1, text 5",
         [](App& app) { setCategory(app, CATEGORY_DISTRICTS); app.paintDistrict = 3; }},
        {"budget", drawRightPanel, "button 25, frame 1, round 1, text 26",
         [](App& app) { open(app, PANEL_BUDGET); }},
        {"finances", drawRightPanel, "button 1, frame 1, rect 2, round 2, text 12",
         [](App& app) { open(app, PANEL_FINANCE); }},
        {"finances of 60 days", drawRightPanel, "button 1, frame 1, rect 122, round 2, text 12",
         [](App& app) { open(app, PANEL_FINANCE); fillHistory(app.city, 60); }},
        {"statistics", drawRightPanel, "button 1, frame 1, round 1, text 27",
         [](App& app) { open(app, PANEL_STATISTICS); }},
        {"homes", drawRightPanel, "button 1, fitting 1, frame 1, meter 3, round 1, text 10",
         [](App& app) { select(app, KIND_HOMES); }},
        {"homes without service", drawRightPanel, "button 1, fitting 1, frame 1, meter 3, round 1, text 11",
         [](App& app) { select(app, KIND_HOMES); app.city.buildings[0].unservedDays = 3; }},
        {"shops", drawRightPanel, "button 1, fitting 1, frame 1, meter 3, round 1, text 11",
         [](App& app) { select(app, KIND_SHOPS); }},
        {"school", drawRightPanel, "button 1, fitting 1, frame 1, meter 3, round 1, text 10",
         [](App& app) { select(app, KIND_SCHOOL); }},
        {"pump", drawRightPanel, "button 1, fitting 1, frame 1, meter 3, round 1, text 10",
         [](App& app) { select(app, KIND_WATER_PUMP); }},
        {"site of homes", drawRightPanel, "button 1, fitting 1, frame 1, round 1, text 4",
         [](App& app) { select(app, KIND_HOMES, 0.5f); }},
        {"site of a school", drawRightPanel, "button 1, fitting 1, frame 1, round 1, text 3",
         [](App& app) { select(app, KIND_SCHOOL, 0.5f); }},
        {"land", drawRightPanel, "button 1, fitting 1, frame 1, meter 4, round 1, text 4",
         [](App& app) { app.selectedCellX = app.selectedCellY = 48; }},
        {"road", drawRightPanel, "button 1, fitting 1, frame 1, meter 5, round 1, text 5",
         [](App& app) { app.selectedCellX = app.selectedCellY = 48; layRoads(app.city, 48, 48, 48, 48); }},

        {"no tour", drawTutorial, "", [](App&) {}},
        {"tour: welcome", drawTutorial, "button 2, frame 1, paragraph 1, rect 1, round 1, text 1",
         [](App& app) { startTutorial(app, 0); }},
        {"tour: roads", drawTutorial, TOUR_WITH_TARGET, [](App& app) { startTutorial(app, 1); }},
        {"tour: zones", drawTutorial, TOUR_WITH_TARGET, [](App& app) { startTutorial(app, 2); }},
        {"tour: utilities", drawTutorial, TOUR_WITH_TARGET, [](App& app) { startTutorial(app, 3); }},
        {"tour: top bar", drawTutorial, TOUR_WITH_TARGET, [](App& app) { startTutorial(app, 4); }},
        {"tour: mission", drawTutorial, TOUR_WITH_TARGET, [](App& app) { startTutorial(app, 5); }},
        {"tour: end", drawTutorial, "button 2, frame 1, paragraph 1, rect 1, round 1, text 1",
         [](App& app) { startTutorial(app, 6); }},
        {"pause", drawPauseMenu, "button 5, frame 1, rect 1, round 1, text 1",
         [](App& app) { app.paused = true; }},
        {"end of a metropolis", drawEndScreen, "button 3, frame 1, rect 1, round 1, text 3",
         [](App& app) { app.city.allMissionsDone = 1; }},
        {"end of a bankrupt city", drawEndScreen, "button 2, frame 1, rect 1, round 1, text 3",
         [](App& app) { app.city.bankrupt = 1; }},
        {"frame rate", drawFpsLabel, "text 1", [](App& app) { app.settings.showFps = true; }},
        {"no frame rate", drawFpsLabel, "", [](App&) {}},

        // The parts of it as they stand above.
        {"game", drawGameScreen, "bar 5, button 16, fitting 2, frame 2, paragraph 1, rect 5, round 2, text 23",
         [](App&) {}},
        {"game: paused on a tour", drawGameScreen,
         "bar 5, button 23, fitting 2, frame 5, line 1, paragraph 2, rect 10, round 4, text 25, triangle 1",
         [](App& app) { app.paused = true; startTutorial(app, 1); }},
    };
    return states;
}
// clang-format on

GameInState::GameInState(const ScreenState& entered) : state(entered) {
    state.prepare(app);
    app.cityStats = computeStats(app.city);
    app.logoTexture = 1;
    input.mouseX = input.mouseY = -1000.0f;
}

std::vector<DrawnCall> GameInState::callsAt(int width, int height) {
    input.drawableWidth = width;
    input.drawableHeight = height;
    uiBeginFrame(app.ui, width, height, input);
    takeDrawnCalls();
    state.draw(app, input);
    return takeDrawnCalls();
}
