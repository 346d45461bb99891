// The one record that owns everything, from start-up to the end of the process.
#pragma once

#include "app/settings.h"
#include "audio/audio_engine.h"
#include "input/input.h"
#include "maintenance/game_files.h"
#include "maintenance/update_task.h"
#include "sim/city_stats.h"
#include "ui/layer/ui_batch.h"
#include "view/picture/camera.h"
#include "view/picture/renderer.h"
#include "view/street/street_life.h"
#include "view/world/world_meshes.h"

#include <memory>
#include <string>
#include <vector>

enum Screen : uint8_t {
    SCREEN_LAUNCHER,
    SCREEN_TITLE,
    SCREEN_SETTINGS,
    SCREEN_GAME,
    SCREEN_END
};

enum LauncherPage : uint8_t {
    LAUNCHER_MAIN,
    LAUNCHER_FILES,
    LAUNCHER_DELETE_SAVE, // asks
    LAUNCHER_UNINSTALL    // asks
};

enum Panel : uint8_t {
    PANEL_NONE,
    PANEL_BUDGET,
    PANEL_FINANCE,
    PANEL_STATISTICS
};

struct FrameStats {
    float frameTime = 0.0f; // seconds, of the last frame
    float timer = 0.0f;     // seconds since the last measure
    int32_t frames = 0;     // since the last measure
    float framesPerSecond = 0.0f;
};

struct App {
    Settings settings;

    std::string savePath;
    std::string settingsPath;
    std::string exeDir;
    std::string exePath; // under the name of an installed game, whatever this one is called

    City city;
    CityStats cityStats; // of the frame: drawGameScreen counts once for all that it draws
    Renderer renderer;
    WorldMeshes meshes;
    Camera camera;
    StreetLife streetLife;
    AudioEngine audio;
    MusicMode musicMode = MUSIC_OFF; // last asked for
    FontSystem fonts;
    Ui ui;
    GLuint logoTexture = 0;
    int32_t logoWidth = 0; // pixels
    int32_t logoHeight = 0;

    bool initialised = false;
    Screen screen = SCREEN_LAUNCHER;
    Screen returnScreen = SCREEN_TITLE; // where the settings screen leads back to
    bool saveExists = false;
    bool paused = false; // the pause menu is open
    LauncherPage launcherPage = LAUNCHER_MAIN;
    int32_t tutorialStep = -1; // -1 while the guided tour does not run
    UiRect tutorialCard = {};  // of the running step, all zero after the tour

    uint8_t currentTool = 0;                 // Tool
    uint8_t currentCategory = 0;             // ToolCategory
    uint8_t currentOverlay = OVERLAY_NORMAL; // Overlay
    uint8_t currentPanel = PANEL_NONE;       // Panel
    int32_t paintDistrict = 0; // 1 to 8; 0 until the player has chosen one, and then the brush clears
    int32_t speed = 1;         // 0 to 3, 0 stops time
    float dayTimer = 0.0f;     // game seconds towards the next daily tick; a new city and a load keep them

    int32_t hoverX = -1; // the cell under the mouse while hoverValid
    int32_t hoverY = -1;
    bool hoverValid = false;
    bool dragging = false;
    int32_t dragStartX = 0;
    int32_t dragStartY = 0;
    int32_t dragLastX = 0;
    int32_t dragLastY = 0;
    bool rightDragOnHud = false; // the held button went down on the interface
    bool middleDragOnHud = false;

    int32_t selectedBuilding = -1;     // index into City::buildings, -1 for none
    int32_t selectedBuildingCell = -1; // where it stands, since indices move when another one goes
    int32_t selectedCellX = -1;
    int32_t selectedCellY = -1;

    uint8_t statusId = 0; // the status line
    uint32_t statusArg = 0;
    float statusTimer = 0.0f;    // seconds it is still shown
    uint32_t lastEventCount = 0; // City::eventCount when its news was shown

    UpdateState updateState = UPDATE_IDLE;
    UpdateManifest updateManifest;          // the last one accepted
    std::shared_ptr<UpdateTask> updateTask; // null while none runs
    std::vector<GameFile> gameFiles;        // empty until the launcher shows them

    FrameStats frameStats;
    uint64_t firstFrameCounter = 0; // performance counter at the first frame, 0 before it
    bool quitRequested = false;
    bool displayDirty = false; // the settings changed something that the window must follow
};

// Everything that needs the GL context. `prefPath`, the folder of save and settings, ends with a separator.
// False fills `error`; after success `error` may hold notes about what is missing and can be done without.
bool appInit(App& app, const std::string& prefPath, std::string& error);
// Also after an appInit that failed.
void appShutdown(App& app);

// The player's choice of a language, 0 to LANGUAGE_COUNT - 1: all texts change at once.
void chooseLanguage(App& app, int language);

// Makes the volumes of the settings heard, after every change of them.
void applyVolumes(App& app);

// True on the game screen, at its end, and in settings opened from the game: the picture shows the city in
// play.
bool showsCityInPlay(const App& app);
