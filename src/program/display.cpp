#include "program/display.h"

#include "maintenance/platform.h"

#include <algorithm>
#include <cassert>
#include <string_view>

bool isUnseen() {
    assert(SDL_WasInit(SDL_INIT_VIDEO)); // without it there is no driver to ask for
    const std::string_view driver = SDL_GetCurrentVideoDriver();
    return driver == "offscreen" || driver == "dummy" || driver == "evdev";
}

SDL_Rect placeInside(const SDL_Rect& display, const SDL_Rect& room, int width, int height) {
    const int w = std::min(width, room.w);
    const int h = std::min(height, room.h);
    return {std::clamp(display.x + (display.w - w) / 2, room.x, room.x + room.w - w),
            std::clamp(display.y + (display.h - h) / 2, room.y, room.y + room.h - h), w, h};
}

SDL_Rect windowPlace(const Settings& settings, int display, SDL_Window* window) {
    int width;
    int height;
    resolutionSize(settings, width, height);
    SDL_Rect bounds;
    SDL_Rect room; // what bars of the system leave, less the frame
    // An unseen display is no limit, because a picture must have the size that was asked for.
    if (isUnseen() || SDL_GetDisplayBounds(display, &bounds) != 0 ||
        SDL_GetDisplayUsableBounds(display, &room) != 0)
        return {SDL_WINDOWPOS_CENTERED, SDL_WINDOWPOS_CENTERED, width, height};

    int above = 0;
    int left = 0;
    int below = 0;
    int right = 0;
    if (window) SDL_GetWindowBordersSize(window, &above, &left, &below, &right);
    room = {room.x + left, room.y + above, room.w - left - right, room.h - above - below};
    return placeInside(bounds, room, width, height);
}

// A window manager gives the frame back a moment later, or never where windows have none.
static void leaveFullscreen(SDL_Window* window) {
    SDL_SetWindowFullscreen(window, 0);
    for (int tries = 0; tries < 20; tries++) {
        SDL_PumpEvents();
        int above = 0;
        if (SDL_GetWindowBordersSize(window, &above, nullptr, nullptr, nullptr) != 0 || above > 0) return;
        SDL_Delay(10);
    }
}

static void applyWindowedMode(SDL_Window* window, const Settings& settings) {
    if (SDL_GetWindowFlags(window) & SDL_WINDOW_FULLSCREEN) leaveFullscreen(window);
    SDL_PumpEvents(); // they tell of the frame, and whether the window is maximised
    // A maximised window is not given another size.
    if (SDL_GetWindowFlags(window) & SDL_WINDOW_MAXIMIZED) SDL_RestoreWindow(window);
    const SDL_Rect place = windowPlace(settings, SDL_GetWindowDisplayIndex(window), window);
    SDL_SetWindowSize(window, place.w, place.h);
    SDL_SetWindowPosition(window, place.x, place.y);
}

void applyDisplayMode(SDL_Window* window, const Settings& settings) {
    assert(SDL_GL_GetCurrentWindow() == window);
    if (settings.fullscreen)
        SDL_SetWindowFullscreen(window, SDL_WINDOW_FULLSCREEN_DESKTOP);
    else
        applyWindowedMode(window, settings);
    confirmWindowSize(window);
    SDL_GL_SetSwapInterval(settings.vsync ? 1 : 0);
}
