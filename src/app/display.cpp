#include "app/display.h"

void applyDisplayMode(SDL_Window* window, const Settings& settings) {
    if (settings.fullscreen) {
        SDL_SetWindowFullscreen(window, SDL_WINDOW_FULLSCREEN_DESKTOP);
    } else {
        int width;
        int height;
        resolutionSize(settings, width, height);
        SDL_SetWindowFullscreen(window, 0);
        SDL_SetWindowSize(window, width, height);
        SDL_SetWindowPosition(window, SDL_WINDOWPOS_CENTERED, SDL_WINDOWPOS_CENTERED);
    }
    SDL_GL_SetSwapInterval(settings.vsync ? 1 : 0);
}
