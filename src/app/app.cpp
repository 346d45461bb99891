#include "app/app.h"

#include "app/update_client.h"
#include "maintenance/platform.h"
#include "sim/map_generation.h"
#include "ui/logo/logo_texture.h"
#include "ui/words/languages.h"

#include <SDL.h>

#include <cassert>
#include <cstdio>

constexpr int LOGO_SIZE = 256; // pixels

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
    assert(prefPath.ends_with('/') || prefPath.ends_with('\\'));
    app.savePath = prefPath + "savegame.ovw";
    app.settingsPath = prefPath + "settings.ini";
    loadSettings(app.settings, app.settingsPath);
    app.saveExists = canBeRead(app.savePath);

    setCurrentLanguage(app.settings.language < 0 ? preferredLanguage() : app.settings.language);
    fontsInit(app.fonts, &error);
    fontsSetLanguage(app.fonts, currentLanguage());
    audioInit(app.audio, &error);
    audioLoadMusic(app.audio, programFolder(), &error);
    applyVolumes(app);
    if (!uiInit(app.ui, app.fonts, &error)) return false;
    app.logoTexture = makeLogoTexture(LOGO_SIZE, &app.logoWidth, &app.logoHeight);
    if (!initRenderer(app.renderer, &error)) return false;

    generateMap(app.city, 0); // the land behind the menus is always the same
    app.camera.target = {MAP_WIDTH / 2, 0.0f, MAP_WIDTH / 2};
    app.exeDir = programFolder();
    app.exePath = app.exeDir + EXECUTABLE_NAME;
    app.screen = SCREEN_LAUNCHER;
    app.initialised = true;
    deleteFinishedUpdate(app);
    updateStartCheck(app);
    return true;
}

static void destroyMeshes(WorldMeshes& meshes) {
    for (Mesh& chunk : meshes.terrainChunks) destroyMesh(chunk);
    for (Mesh& block : meshes.buildingBlocks) destroyMesh(block);
    for (Mesh* mesh :
         {&meshes.roadMesh, &meshes.treeMesh, &meshes.waterMesh, &meshes.hoverMesh, &meshes.streetLifeMesh})
        destroyMesh(*mesh);
}

void appShutdown(App& app) {
    audioShutdown(app.audio);
    destroyMeshes(app.meshes);
    destroyRenderer(app.renderer);
    if (app.logoTexture) gl.DeleteTextures(1, &app.logoTexture);
    app.logoTexture = 0;
    uiDestroy(app.ui);
    fontsShutdown(app.fonts);
}

void chooseLanguage(App& app, int language) {
    assert(language >= 0 && language < LANGUAGE_COUNT);
    app.settings.language = language;
    setCurrentLanguage(language);
    fontsSetLanguage(app.fonts, language);
    fontsClearRuns(app.fonts);
}

void applyVolumes(App& app) {
    audioSetVolumes(app.audio, static_cast<float>(app.settings.musicVolume) / 100.0f,
                    static_cast<float>(app.settings.sfxVolume) / 100.0f);
}

bool showsCityInPlay(const App& app) {
    return app.screen == SCREEN_GAME || app.screen == SCREEN_END ||
           (app.screen == SCREEN_SETTINGS && app.returnScreen == SCREEN_GAME);
}
