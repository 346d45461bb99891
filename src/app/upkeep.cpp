#include "app/upkeep.h"

#include "maintenance/files.h"
#include "maintenance/platform.h"
#include "maintenance/uninstall.h"

void refreshGameFiles(App& app) { app.gameFiles = listFiles(app.exeDir); }

void deleteSave(App& app) {
    deleteFile(app.savePath);
    app.saveExists = fileExists(app.savePath);
}

// A game that was started from a build folder or among downloads must not take those with it.
void uninstallGame(App& app) {
    if (!isGameFolder(app.exeDir, PATH_SEPARATORS) || !fileExists(app.exePath)) return;
    if (startRemoval(app.exeDir)) app.quitRequested = true;
}
