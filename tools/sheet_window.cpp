#include "sheet_window.h"

#include "view/gl/gl.h"

bool openSheetWindow(const char* title, int width, int height) {
    if (SDL_Init(SDL_INIT_VIDEO) != 0) return false;
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_MAJOR_VERSION, 3);
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_MINOR_VERSION, 3);
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_PROFILE_MASK, SDL_GL_CONTEXT_PROFILE_CORE);
    SDL_GL_SetAttribute(SDL_GL_DEPTH_SIZE, 24);
    SDL_Window* window = SDL_CreateWindow(title, 0, 0, width, height, SDL_WINDOW_OPENGL | SDL_WINDOW_HIDDEN);
    return window && SDL_GL_CreateContext(window) && loadGlFunctions();
}

bool saveSheet(const std::vector<uint8_t>& rgb, int width, int height, const char* path) {
    std::vector<uint8_t> pixels = rgb; // SDL takes no constant ones
    SDL_Surface* surface = SDL_CreateRGBSurfaceWithFormatFrom(pixels.data(), width, height, 24, width * 3,
                                                              SDL_PIXELFORMAT_RGB24);
    const bool saved = surface && SDL_SaveBMP(surface, path) == 0;
    SDL_FreeSurface(surface);
    return saved;
}
