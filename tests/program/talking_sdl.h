// SDL's functions that reach the display: they say what they are asked, and know displays that this computer
// lacks. What a start in a process of its own says is read on its error stream.
#pragma once

#include <SDL.h>

#include <string>

struct TalkingSdl {
    bool talks = false; // on the error stream, too
    std::string said;
    int windowRefusals = 0; // so many windows, and then contexts, cannot be made
    int contextRefusals = 0;
    int waitsUntilQuit = 0; // the player leaves in this wait for an event; 0 for never
    uint32_t moreFlags = 0; // of every window
    int pixelsX = 1;        // drawable pixels per unit of the window
    int pixelsY = 1;
    double clockStep =
        0.0; // seconds from one look at the performance counter to the next, 0 for the real ones

    // A display that players see stands in for the unseen one unless it is empty, each next one to its right.
    SDL_Rect display = {};
    int displays = 2;
    SDL_Rect room = {}; // what bars leave of it, empty when nobody knows
    int frameLeft = 0;  // of windows
    int frameAbove = 0;
    int frameRight = 0;
    int frameBelow = 0;
    int framelessLooks = 0; // so often a window has no frame yet
};

TalkingSdl& talkingSdl();
