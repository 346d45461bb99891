// One frame of the application: what each screen runs and what it draws.
#pragma once

#include "app/app.h"

// `dt` in seconds. False when the loop must end.
bool stepFrame(App& app, const Input& input, float dt);

// In place of stepFrame while the window is minimised: nothing is drawn and the city stands still, since
// nobody would see it go bankrupt. The update client goes on. False when the loop must end.
bool restFrame(App& app);
