#include "app/app.h"

#include "maintenance/platform.h"
#include "sim/map_generation.h"

#include <SDL.h>

#include <cstdio>

static bool canBeRead(const std::string& path) {
    std::FILE* file = std::fopen(path.c_str(), "rb");
    if (file) std::fclose(file);
    return file != nullptr;
}

static std::string programFolder() {
    char* base = SDL_GetBasePath();
    if (!base) return "./";
    std::string folder = base;
    SDL_free(base);
    return folder;
}

bool appInit(App& app, const std::string& prefPath, std::string& error) {
    app.prefPath = prefPath;
    app.savePath = prefPath + "savegame.ovw";
    app.settingsPath = prefPath + "settings.ini";
    loadSettings(app.settings, app.settingsPath);
    app.saveExists = canBeRead(app.savePath);

    if (!initRenderer(app.renderer, &error)) return false;

    generateMap(app.city, 0); // the land behind the menus is always the same
    app.camera.target = {MAP_WIDTH / 2, 0.0f, MAP_WIDTH / 2};
    app.exeDir = programFolder();
    app.exePath = app.exeDir + EXECUTABLE_NAME;
    app.screen = SCREEN_LAUNCHER;
    app.initialised = true;
    updateStartCheck(app);
    return true;
}

static void destroyMeshes(WorldMeshes& meshes) {
    for (Mesh& chunk : meshes.terrainChunks) destroyMesh(chunk);
    for (Mesh* mesh : {&meshes.roadMesh, &meshes.buildingMesh, &meshes.treeMesh, &meshes.waterMesh,
                       &meshes.hoverMesh, &meshes.streetLifeMesh})
        destroyMesh(*mesh);
}

void appShutdown(App& app) {
    destroyMeshes(app.meshes);
    destroyRenderer(app.renderer);
}

bool showsCityInPlay(const App& app) {
    return app.screen == SCREEN_GAME || app.screen == SCREEN_END ||
           (app.screen == SCREEN_SETTINGS && app.returnScreen == SCREEN_GAME);
}

bool pointerOverHud(const App& app, const Input&) { return app.screen != SCREEN_GAME || app.paused; }
