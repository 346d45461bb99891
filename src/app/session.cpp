#include "app/session.h"

#include "app/hud_layout.h"
#include "app/tools.h"
#include "sim/daily_tick.h"
#include "sim/map_generation.h"
#include "sim/save_file.h"
#include "view/street/street_life_mesh.h"
#include "view/world/rebuild.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <ctime>

// Seconds of game time. The sun and the calendar have a clock of their own, since at the pace of the city's
// days it would be night every 45 seconds.
constexpr float SUN_DAY = 1200.0f;
constexpr float TICK_TIME = 45.0f; // one day of the city

void setSpeed(App& app, int speed) { app.speed = std::clamp(speed, 0, 3); }

void setCurrentOverlay(App& app, int overlay) {
    if (overlay < 0 || overlay >= OVERLAY_COUNT) return;
    app.currentOverlay = static_cast<uint8_t>(overlay);
    setOverlay(app.meshes, overlay);
}

void cycleOverlay(App& app) { setCurrentOverlay(app, (app.currentOverlay + 1) % OVERLAY_COUNT); }

void startTutorial(App& app, int step) {
    app.tutorialStep = step;
    app.tutorialCard = {}; // until the step is drawn
}

static void resetCamera(Camera& camera) {
    camera.target = {MAP_WIDTH / 2, 0.0f, MAP_WIDTH / 2};
    camera.yaw = 0.8f;
    camera.pitch = 0.95f;
    camera.distance = 190.0f;
}

// What a new city and a loaded one have in common: nothing of the old one's is left on the screen.
static void enterCity(App& app) {
    app.paused = false;
    app.currentPanel = PANEL_NONE;
    stopToolInput(app);
    clearSelection(app);
    startTutorial(app, -1);
    resetStreetLife(app.streetLife);
    app.screen = SCREEN_GAME;
    app.lastEventCount = app.city.eventCount;
}

void newCity(App& app) {
    generateMap(app.city, static_cast<uint32_t>(std::time(nullptr)) & 0x7FFFFFFFu);
    setTool(app, TOOL_SELECT);
    setCurrentOverlay(app, OVERLAY_NORMAL);
    resetCamera(app.camera);
    app.speed = 1;
    enterCity(app);
    showCityStatus(app);
    if (!app.settings.tutorialDone) startTutorial(app, 0);
}

void saveGame(App& app) {
    const bool saved = saveCity(app.city, app.savePath);
    app.saveExists = app.saveExists || saved; // a failed one may have left an earlier one whole
    showStatus(app, saved ? STATUS_GAME_SAVED : STATUS_SAVE_FAILED, 0);
}

void loadGame(App& app) {
    if (!loadCity(app.city, app.savePath)) return showStatus(app, STATUS_NO_SAVED_GAME, 0);
    if (!showsCityInPlay(app)) resetCamera(app.camera); // otherwise the menus' view of the woods would stay
    enterCity(app);
    showStatus(app, STATUS_LOADED, 0);
}

// --- Keys

// Esc closes one thing: the menu, a panel, the selection; with nothing open it opens the menu.
static void pressEscape(App& app) {
    if (app.paused)
        app.paused = false;
    else if (app.currentPanel != PANEL_NONE)
        app.currentPanel = PANEL_NONE;
    else if (app.selectedBuilding < 0 && app.selectedCellX < 0)
        app.paused = true;
    else
        clearSelection(app);
}

static void readKeys(App& app, const Input& input) {
    if (input.keysPressed[KEY_SPACE]) setSpeed(app, app.speed == 0 ? 1 : 0);
    if (input.keysPressed[KEY_1]) setSpeed(app, 1);
    if (input.keysPressed[KEY_2]) setSpeed(app, 2);
    if (input.keysPressed[KEY_3]) setSpeed(app, 3);
    const int tool = pressedToolShortcut(input);
    if (tool >= 0) setTool(app, tool);
    if (input.keysPressed[KEY_TAB]) cycleOverlay(app);
    if (input.keysPressed[KEY_F5]) saveGame(app);
}

// --- Time

// A loaded file may hold any hour. Far out a float less 24 is the same float, and the loop would never end.
static void advanceSun(City& city, float gameTime) {
    float hour = city.hourOfDay + gameTime * 24.0f / SUN_DAY;
    if (!std::isfinite(hour) || std::fabs(hour) > 1e6f) hour = 0.0f;
    while (hour >= 24.0f) {
        hour -= 24.0f;
        if (city.calendarDay < INT32_MAX) city.calendarDay++;
    }
    city.hourOfDay = hour;
}

static void advanceDays(App& app, float gameTime) {
    const int missionBefore = app.city.missionIndex;
    app.dayTimer += gameTime;
    while (app.dayTimer >= TICK_TIME) {
        app.dayTimer -= TICK_TIME;
        dailyTick(app.city);
        followSelection(app);
        audioPlayEffect(app.audio, SOUND_DAY_BELL);
    }
    if (app.city.missionIndex > missionBefore) audioPlayEffect(app.audio, SOUND_MISSION);
}

// Game seconds of this frame.
static float advanceTime(App& app, float dt) {
    assert(app.speed >= 0 && app.speed <= 3);
    if (app.paused || app.speed == 0) return 0.0f;
    const float gameTime = static_cast<float>(app.speed) * dt;
    advanceSun(app.city, gameTime);
    advanceDays(app, gameTime);
    return gameTime;
}

// Of the last day in the charts, 0 before the first. A loaded chart may hold what no int can.
static int lastPopulation(const City& city) {
    if (city.historyCount <= 0) return 0;
    const float people = city.history[HISTORY_POPULATION][std::min(city.historyCount, HISTORY_LENGTH) - 1];
    return people > 0.0f ? static_cast<int>(std::min(people, 1e9f)) : 0;
}

// Asks the count, because a full list of events grows no longer with one more.
static void showNews(App& app) {
    if (app.city.eventCount == app.lastEventCount) return;
    app.lastEventCount = app.city.eventCount;
    if (!app.city.events.empty()) showStatus(app, app.city.events.front().id, app.city.events.front().arg);
}

static void endGame(App& app) {
    assert(app.screen == SCREEN_GAME);
    app.screen = SCREEN_END;
    clearSelection(app);
    stopToolInput(app);
}

// What the camera may know of the mouse: no wheel over the interface, and no drag that began there. The pan
// at the window's edges goes on, since the bars fill two of them.
static Input cameraInput(App& app, const Input& input) {
    const bool overHud = pointerOverHud(app, input);
    if (!app.camera.previousInput.rightHeld) app.rightDragOnHud = overHud;
    if (!app.camera.previousInput.middleHeld) app.middleDragOnHud = overHud;
    Input seen = input;
    if (overHud) seen.wheel = 0.0f;
    if (app.rightDragOnHud) seen.rightHeld = 0;
    if (app.middleDragOnHud) seen.middleHeld = 0;
    return seen;
}

void stepGame(App& app, const Input& input, float dt) {
    if (input.keysPressed[KEY_ESC]) pressEscape(app);
    if (!app.paused) readKeys(app, input);
    if (input.keysPressed[KEY_F9]) loadGame(app); // in the menu too, which a load closes
    updateCamera(app.camera, cameraInput(app, input), dt);
    const float gameTime = advanceTime(app, dt);
    updateStreetLife(app.streetLife, app.city, gameTime, lastPopulation(app.city));
    updateWorldMeshes(app.meshes, app.city);
    buildStreetLifeMesh(app.meshes, app.city, app.streetLife);
    if (app.statusTimer > 0.0f) app.statusTimer -= dt;
    showNews(app);
    if (app.paused)
        stopToolInput(app);
    else
        updateToolInput(app, input);

    const City& city = app.city;
    if (city.bankrupt || (city.allMissionsDone && !city.keepPlaying)) endGame(app);
}
