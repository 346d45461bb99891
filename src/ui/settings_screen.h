// The options, opened from the title screen or from the pause menu. A change takes effect and is saved at
// once; there is nothing to apply and nothing to cancel.
#pragma once

#include "app/input.h"

struct App;

void drawOptionsScreen(App& app, const Input& input);
