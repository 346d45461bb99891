#include "program/frame.h"

#include "app/picking.h"
#include "app/session.h"
#include "app/update_client.h"
#include "screens/game/game_screen.h"
#include "screens/menus/end_screen.h"
#include "screens/menus/launcher.h"
#include "screens/menus/settings_screen.h"
#include "screens/menus/title_screen.h"
#include "ui/layer/ui_widgets.h"
#include "view/world/rebuild.h"

#include <SDL.h>

#include <algorithm>
#include <cassert>

// A stall must not advance the city by more than this many seconds in one frame. The frame rate is measured
// by it too, so that it never reads less than 10.
constexpr float LONGEST_STEP = 0.1f;
constexpr float MEASURE_TIME = 0.5f; // seconds

static void updateFrameStats(FrameStats& stats, float dt) {
    stats.frameTime = dt;
    stats.timer += dt;
    stats.frames++;
    if (stats.timer < MEASURE_TIME) return;
    stats.framesPerSecond = static_cast<float>(stats.frames) / stats.timer;
    stats.timer = 0.0f;
    stats.frames = 0;
}

// The options opened from the game keep its music; the end of a game is back among the menus.
static MusicMode wantedMusicMode(const App& app) {
    const bool inGame =
        app.screen == SCREEN_GAME || (app.screen == SCREEN_SETTINGS && app.returnScreen == SCREEN_GAME);
    return inGame ? MUSIC_GAME : MUSIC_MENU;
}

// Asks for a mode once, because each asking waits for the audio thread.
static void chooseMusic(App& app) {
    const MusicMode mode = wantedMusicMode(app);
    if (mode == app.musicMode) return;
    audioSetMusicMode(app.audio, mode);
    app.musicMode = mode;
}

// The slowly turning land behind the menus.
static void updateTitleView(App& app, float dt) {
    Camera& camera = app.camera;
    camera.target = {384.0f, 0.0f, 384.0f};
    camera.yaw += 0.04f * dt;
    camera.pitch = 0.55f;
    camera.distance = 330.0f;
    updateWorldMeshes(app.meshes, app.city);
}

static void stepScreen(App& app, const Input& input, float dt) {
    switch (app.screen) {
    case SCREEN_GAME:
        stepGame(app, input, dt);
        break;
    case SCREEN_END:
        updateWorldMeshes(app.meshes, app.city);
        break;
    case SCREEN_SETTINGS:
        if (app.returnScreen == SCREEN_GAME)
            updateWorldMeshes(app.meshes, app.city);
        else
            updateTitleView(app, dt);
        break;
    case SCREEN_LAUNCHER:
        if (input.keysPressed[KEY_ESC]) app.launcherPage = LAUNCHER_MAIN;
        [[fallthrough]];
    case SCREEN_TITLE:
        updateTitleView(app, dt);
        break;
    }
}

// Of the performance counter since the first call, so that a float keeps its precision on a computer that has
// been up for weeks.
static float secondsSinceStart(App& app) {
    const uint64_t now = SDL_GetPerformanceCounter();
    if (app.firstFrameCounter == 0) app.firstFrameCounter = now;
    return static_cast<float>(static_cast<double>(now - app.firstFrameCounter) /
                              static_cast<double>(SDL_GetPerformanceFrequency()));
}

static void drawPicture(App& app, const Input& input) {
    FrameParams params;
    buildFrameParams(params, app, input, secondsSinceStart(app));
    renderFrame(app.renderer, params, app.meshes);
}

static void drawScreen(App& app, const Input& input) {
    switch (app.screen) {
    case SCREEN_LAUNCHER:
        drawLauncher(app, input);
        break;
    case SCREEN_TITLE:
        drawTitleScreen(app, input);
        break;
    case SCREEN_SETTINGS:
        if (app.returnScreen == SCREEN_GAME) {
            drawGameScreen(app, input);
            uiDimWindow(app.ui, 0.35f);
        }
        drawOptionsScreen(app, input);
        break;
    case SCREEN_GAME:
        drawGameScreen(app, input);
        break;
    case SCREEN_END:
        drawGameScreen(app, input);
        drawEndScreen(app, input);
        break;
    }
}

static void drawInterface(App& app, const Input& input) {
    drawScreen(app, input);
    drawFpsLabel(app, input);
}

bool stepFrame(App& app, const Input& input, float dt) {
    assert(dt >= 0.0f);
    dt = std::min(dt, LONGEST_STEP);
    updateFrameStats(app.frameStats, dt);
    if (!app.initialised) return true;

    if (input.keysPressed[KEY_F11]) {
        app.settings.fullscreen = !app.settings.fullscreen;
        saveSettings(app.settings, app.settingsPath);
        app.displayDirty = true;
    }
    updatePoll(app);
    chooseMusic(app);
    stepScreen(app, input, dt);
    drawPicture(app, input);
    uiBeginFrame(app.ui, input.drawableWidth, input.drawableHeight, input);
    drawInterface(app, input);
    uiFlush(app.ui);

    app.camera.previousInput = input;
    return !app.quitRequested;
}

bool restFrame(App& app) {
    updatePoll(app);
    return !app.quitRequested;
}
