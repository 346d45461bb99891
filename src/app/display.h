// The window's size and mode, and the swap interval.
#pragma once

#include "app/settings.h"

#include <SDL.h>

// Makes the window follow the settings; its context must be current.
void applyDisplayMode(SDL_Window* window, const Settings& settings);
