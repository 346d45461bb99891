// The game in play: how a city starts, is saved and loaded, and how a frame of the game screen runs. The
// city's time is advanced here and nowhere else.
#pragma once

#include "app/app.h"

// New land from the clock, and the game screen.
void newCity(App& app);
// On failure the screen stays as it is. Both answer in the status line.
void loadGame(App& app);
void saveGame(App& app);

// One frame of the game screen; `dt` in seconds.
void stepGame(App& app, const Input& input, float dt);

void cycleOverlay(App& app);
// By its number; anything that is no Overlay does nothing.
void setCurrentOverlay(App& app, int overlay);
// Held to 0 to 3; 0 stops time.
void setSpeed(App& app, int speed);

// Starts the guided tour at a step, -1 for none.
void startTutorial(App& app, int step);
