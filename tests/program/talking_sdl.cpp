#include "program/talking_sdl.h"

#include <cstdarg>
#include <cstdio>
#include <utility>

#include <dlfcn.h>

TalkingSdl& talkingSdl() {
    static TalkingSdl sdl;
    return sdl;
}

__attribute__((format(printf, 1, 2))) static void say(const char* format, ...) {
    char text[1024];
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    talkingSdl().said += text;
    if (talkingSdl().talks) std::fputs(text, stderr);
}

// The library's own function of the same name.
template<typename Function> static Function* real(Function*, const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}
#define REAL(name) static const auto real_ = real(&(name), #name)

static bool refuses(int& refusals) {
    if (refusals == 0) return false;
    refusals--;
    SDL_SetError("refused");
    return true;
}

static int placeOf(SDL_Rect rect, int display, SDL_Rect* answer) {
    *answer = rect;
    answer->x += display * talkingSdl().display.w;
    return rect.w > 0 && display < talkingSdl().displays ? 0 : -1;
}

// Found before SDL's own, which most of them hand on to.
extern "C" {

// --- The display

const char* SDL_GetCurrentVideoDriver() {
    REAL(SDL_GetCurrentVideoDriver);
    return talkingSdl().display.w > 0 ? "x11" : real_();
}

int SDL_GetDisplayBounds(int display, SDL_Rect* bounds) {
    return placeOf(talkingSdl().display, display, bounds);
}

int SDL_GetDisplayUsableBounds(int display, SDL_Rect* room) {
    return placeOf(talkingSdl().room, display, room);
}

// --- The window

SDL_Window* SDL_CreateWindow(const char* title, int x, int y, int width, int height, Uint32 flags) {
    REAL(SDL_CreateWindow);
    say("window %s %x %x %dx%d flags %x\n", title, x, y, width, height, flags);
    return refuses(talkingSdl().windowRefusals) ? nullptr : real_(title, x, y, width, height, flags);
}

void SDL_DestroyWindow(SDL_Window* window) {
    REAL(SDL_DestroyWindow);
    say("window destroyed\n");
    real_(window);
}

void SDL_SetWindowSize(SDL_Window* window, int width, int height) {
    REAL(SDL_SetWindowSize);
    say("size %dx%d\n", width, height);
    real_(window, width, height);
}

void SDL_SetWindowPosition(SDL_Window* window, int x, int y) {
    REAL(SDL_SetWindowPosition);
    say("place %x %x\n", x, y);
    real_(window, x, y);
}

int SDL_SetWindowFullscreen(SDL_Window* window, Uint32 flags) {
    REAL(SDL_SetWindowFullscreen);
    say("fullscreen %x\n", flags);
    return real_(window, flags);
}

void SDL_RestoreWindow(SDL_Window*) { say("restore\n"); }

void SDL_SetWindowIcon(SDL_Window* window, SDL_Surface* icon) {
    say("icon %dx%d%s\n", icon->w, icon->h, window ? "" : " without a window");
}

Uint32 SDL_GetWindowFlags(SDL_Window* window) {
    REAL(SDL_GetWindowFlags);
    return real_(window) | talkingSdl().moreFlags;
}

int SDL_GetWindowBordersSize(SDL_Window*, int* above, int* left, int* below, int* right) {
    TalkingSdl& sdl = talkingSdl();
    const bool framed = sdl.framelessLooks == 0 || sdl.framelessLooks-- == 0;
    if (above) *above = framed ? sdl.frameAbove : 0;
    if (left) *left = sdl.frameLeft;
    if (below) *below = sdl.frameBelow;
    if (right) *right = sdl.frameRight;
    return sdl.display.w > 0 ? 0 : -1;
}

int SDL_ShowSimpleMessageBox(Uint32 flags, const char* title, const char* message, SDL_Window* window) {
    say("box %x %s over %s: %s\n", flags, title, window ? "the window" : "nothing", message);
    return 0;
}

// --- Its picture

SDL_GLContext SDL_GL_CreateContext(SDL_Window* window) {
    REAL(SDL_GL_CreateContext);
    say("context\n");
    return refuses(talkingSdl().contextRefusals) ? nullptr : real_(window);
}

void SDL_GL_DeleteContext(SDL_GLContext context) {
    REAL(SDL_GL_DeleteContext);
    say("context deleted\n");
    real_(context);
}

int SDL_GL_SetAttribute(SDL_GLattr attribute, int value) {
    REAL(SDL_GL_SetAttribute);
    say("attribute %d = %d\n", attribute, value);
    return real_(attribute, value);
}

int SDL_GL_SetSwapInterval(int interval) {
    say("interval %d\n", interval);
    return 0;
}

void SDL_GL_SwapWindow(SDL_Window* window) {
    REAL(SDL_GL_SwapWindow);
    say("swap\n");
    real_(window);
}

void SDL_GL_GetDrawableSize(SDL_Window* window, int* width, int* height) {
    SDL_GetWindowSize(window, width, height);
    *width *= talkingSdl().pixelsX;
    *height *= talkingSdl().pixelsY;
}

// --- The rest

Uint64 SDL_GetPerformanceCounter() {
    REAL(SDL_GetPerformanceCounter);
    static Uint64 counter = real_();
    if (talkingSdl().clockStep == 0.0) return real_();
    const auto frequency = static_cast<double>(SDL_GetPerformanceFrequency());
    return counter += static_cast<Uint64>(talkingSdl().clockStep * frequency);
}

void SDL_PumpEvents() {
    REAL(SDL_PumpEvents);
    say("pump\n");
    real_();
}

int SDL_WaitEventTimeout(SDL_Event* event, int timeout) {
    REAL(SDL_WaitEventTimeout);
    say("wait %d\n", timeout);
    if (--talkingSdl().waitsUntilQuit == 0) {
        SDL_Event quit = {};
        quit.type = SDL_QUIT;
        SDL_PushEvent(&quit);
    }
    return real_(event, timeout);
}

void SDL_Delay(Uint32 milliseconds) { say("delay %u\n", milliseconds); }

void SDL_Quit() {
    REAL(SDL_Quit);
    say("quit\n");
    real_();
}
}
