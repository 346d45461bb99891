#include "app/upkeep.h"

#include "maintenance/files.h"
#include "maintenance/platform.h"
#include "maintenance/uninstall.h"

void refreshGameFiles(App& app) { app.gameFiles = listFiles(app.exeDir); }

void deleteSave(App& app) {
    deleteFile(app.savePath);
    app.saveExists = fileExists(app.savePath);
}

void uninstallGame(App& app) {
    if (!isGameFolder(app.exeDir, PATH_SEPARATORS) || !fileExists(app.exePath)) return;
    if (startRemoval(app.exeDir)) app.quitRequested = true;
}
