// What the launcher does about the game's files: lists them, deletes the saved game, removes the game.
#pragma once

#include "app/app.h"

void refreshGameFiles(App& app);

// Afterwards `saveExists` tells whether it worked.
void deleteSave(App& app);

// Ends the game, or does nothing: in a folder that is not the game's own, in one that the player may not
// remove, or when the script cannot start.
void uninstallGame(App& app);
