#include "program/window_icon.h"

#include "ui/logo/logo.h"

#include <cassert>

constexpr int ICON_SIZE = 64;

SDL_Surface* makeWindowIcon() {
    SDL_Surface* icon = SDL_CreateRGBSurfaceWithFormat(0, ICON_SIZE, ICON_SIZE, 32, SDL_PIXELFORMAT_RGBA32);
    if (!icon) return nullptr;
    std::vector<uint8_t> pixels;
    paintLogo(ICON_SIZE, pixels);
    assert(pixels.size() == ICON_SIZE * ICON_SIZE * 4);
    SDL_ConvertPixels(ICON_SIZE, ICON_SIZE, SDL_PIXELFORMAT_RGBA32, pixels.data(), ICON_SIZE * 4,
                      SDL_PIXELFORMAT_RGBA32, icon->pixels, icon->pitch);
    return icon;
}

void setWindowIcon(SDL_Window* window) {
    SDL_Surface* icon = makeWindowIcon();
    if (!icon) return;
    SDL_SetWindowIcon(window, icon); // which keeps a copy
    SDL_FreeSurface(icon);
}
