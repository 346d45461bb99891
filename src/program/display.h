// The window's size and mode, and the swap interval.
#pragma once

#include "app/settings.h"

#include <SDL.h>

// True with SDL's drivers that show nothing to anyone.
bool isUnseen();

// Where the inside of a window of the wanted size stands: in the middle of the display, as far as its room
// there allows, and no larger than the room.
SDL_Rect placeInside(const SDL_Rect& display, const SDL_Rect& room, int width, int height);

// The place of the settings' window on a display, without a frame while `window` is null.
SDL_Rect windowPlace(const Settings& settings, int display, SDL_Window* window);

// Makes the window follow the settings; its context must be current.
void applyDisplayMode(SDL_Window* window, const Settings& settings);
