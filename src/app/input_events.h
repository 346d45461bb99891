// From SDL's events to the Input record.
#pragma once

#include "app/input.h"

#include <SDL.h>

// Drawable pixels per window unit, each axis by itself.
struct PixelRatio {
    float x = 1.0f;
    float y = 1.0f;
};

// 1 on an axis whose window size is not positive.
PixelRatio pixelRatio(int windowWidth, int windowHeight, int drawableWidth, int drawableHeight);

// Clears what happened in the frame before; what is held stays held.
void beginInputFrame(Input& input);

void handleInputEvent(Input& input, const SDL_Event& event, const PixelRatio& ratio);

// Index into the key arrays, -1 for a key that the game does not listen to.
int keyIndex(const SDL_Keysym& keysym);
