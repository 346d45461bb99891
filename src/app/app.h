// The one record that owns everything, from start-up to the end of the process.
#pragma once

#include "app/input.h"
#include "app/settings.h"
#include "sim/city.h"
#include "view/camera.h"
#include "view/renderer.h"
#include "view/world_meshes.h"

#include <string>

enum Screen : uint8_t {
    SCREEN_LAUNCHER,
    SCREEN_TITLE,
    SCREEN_SETTINGS,
    SCREEN_GAME,
    SCREEN_END
};

struct FrameStats {
    float frameTime = 0.0f; // seconds, of the last frame
    float timer = 0.0f;     // seconds since the last measure
    int32_t frames = 0;     // since the last measure
    float framesPerSecond = 0.0f;
};

struct App {
    Settings settings;

    std::string prefPath; // with a separator at the end
    std::string savePath;
    std::string settingsPath;
    std::string exeDir;
    std::string exePath;

    City city;
    Renderer renderer;
    WorldMeshes meshes;
    Camera camera;

    bool initialised = false;
    Screen screen = SCREEN_LAUNCHER;
    Screen returnScreen = SCREEN_TITLE; // where the settings screen leads back to
    bool saveExists = false;

    FrameStats frameStats;
    uint64_t firstFrameCounter = 0; // performance counter at the first frame, 0 before it
    bool quitRequested = false;
    bool displayDirty = false; // the settings changed something that the window must follow
    uint32_t citySeed = 0;     // of the city in play
};

// Everything that needs the GL context. False fills `error`; after success `error` may hold notes about what
// is missing and can be done without.
bool appInit(App& app, const std::string& prefPath, std::string& error);
void appShutdown(App& app);

// True on the game screen, at its end, and in settings opened from the game: the picture shows the city in
// play.
bool showsCityInPlay(const App& app);
