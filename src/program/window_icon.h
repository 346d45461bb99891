// The icon of the game's window: the logo.
#pragma once

#include <SDL.h>

// The logo at the size that title bars and switchers scale well. The caller frees it; nullptr when SDL has no
// room for it.
SDL_Surface* makeWindowIcon();

// Takes a millisecond or two. Where windows have no icons, nothing happens.
void setWindowIcon(SDL_Window* window);
