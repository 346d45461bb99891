// The title screen, the way into a city. It stands over the slowly turning land.
#pragma once

#include "app/input.h"

struct App;

void drawTitleScreen(App& app, const Input& input);
