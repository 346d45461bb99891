// One frame of the application: what each screen runs and what it draws.
#pragma once

#include "app/app.h"

// `dt` in seconds. False when the loop must end.
bool stepFrame(App& app, const Input& input, float dt);
