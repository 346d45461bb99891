// From SDL's events to the Input record.
//
//     InputReader reader;
//     while (readInputFrame(reader, ratio)) step(reader.input);
#pragma once

#include "input/input.h"

#include <SDL.h>

// The input of the frame, and what it takes to make the next one of it.
struct InputReader {
    Input input;
    float pointerX = POINTER_NOWHERE; // where it was seen last, drawable pixels
    float pointerY = POINTER_NOWHERE;
    bool pointerInside = false; // the window
    bool windowFocused = true;  // until another window is
    bool focusCame = false;     // this frame
};

// Drawable pixels per window unit, each axis by itself.
struct PixelRatio {
    float x = 1.0f;
    float y = 1.0f;
};

// 1 on an axis whose window size is not positive.
PixelRatio pixelRatio(int windowWidth, int windowHeight, int drawableWidth, int drawableHeight);

// What happened since the frame before, of the events that SDL_PumpEvents has gathered. A frame ends with a
// mouse button that goes down or up, and what comes after it waits for the next one, so that no click is
// lost to another and each acts where the pointer was. False when the player asked the window system to end
// the program.
bool readInputFrame(InputReader& reader, const PixelRatio& ratio);

// The steps of readInputFrame.
// Clears what happened in the frame before; what is held stays held.
void beginInputFrame(InputReader& reader);
void handleInputEvent(InputReader& reader, const SDL_Event& event, const PixelRatio& ratio);
// Puts the pointer where it is, or nowhere: outside the window, or while another has the focus, unless a
// button that went down inside is held or just came up, so that a drag goes on beyond the border.
void endInputFrame(InputReader& reader);

// Index into the key arrays, -1 for a key that the game does not listen to.
int keyIndex(const SDL_Keysym& keysym);
