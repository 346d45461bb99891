#include "program/program.h"

#include "app/app.h"
#include "app/update_client.h"
#include "input/input_events.h"
#include "program/capture.h"
#include "program/display.h"
#include "program/frame.h"
#include "program/window_icon.h"

#include <cassert>
#include <cstdio>
#include <cstdlib>
#include <memory>

constexpr const char* PROGRAM_NAME = "Orlavane";
constexpr int REST_TIME = 100; // milliseconds from one look at the update client to the next while minimised

struct Window {
    SDL_Window* window = nullptr;
    SDL_GLContext context = nullptr;
};

// Tells the player why the game cannot run: on the error stream, for whoever started it from a terminal, and
// in a message box.
static void showFailure(SDL_Window* window, const std::string& text) {
    std::fprintf(stderr, "%s\n", text.c_str());
    SDL_ShowSimpleMessageBox(SDL_MESSAGEBOX_ERROR, PROGRAM_NAME, text.c_str(), window);
}

static void closeWindow(Window& window) {
    assert(window.window || !window.context);
    if (window.context) SDL_GL_DeleteContext(window.context);
    if (window.window) SDL_DestroyWindow(window.window);
    SDL_Quit();
}

static void setMultisampling(int buffers, int samples) {
    SDL_GL_SetAttribute(SDL_GL_MULTISAMPLEBUFFERS, buffers);
    SDL_GL_SetAttribute(SDL_GL_MULTISAMPLESAMPLES, samples);
}

static SDL_Window* createWindow(const Settings& settings) {
    const SDL_Rect place = windowPlace(settings, 0, nullptr);
    uint32_t flags = SDL_WINDOW_OPENGL | SDL_WINDOW_RESIZABLE | SDL_WINDOW_ALLOW_HIGHDPI;
    if (settings.fullscreen) flags |= SDL_WINDOW_FULLSCREEN_DESKTOP;
    return SDL_CreateWindow(PROGRAM_NAME, SDL_WINDOWPOS_CENTERED, SDL_WINDOWPOS_CENTERED, place.w, place.h,
                            flags);
}

// Window, context and function table. An old driver may refuse multisampling at either step: the game looks
// coarser without it, and runs. False leaves the reason in `error`.
static bool openWindow(Window& window, const Settings& settings, GlLoader loader, std::string& error) {
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_MAJOR_VERSION, 3);
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_MINOR_VERSION, 3);
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_PROFILE_MASK, SDL_GL_CONTEXT_PROFILE_CORE);
    SDL_GL_SetAttribute(SDL_GL_DOUBLEBUFFER, 1);
    SDL_GL_SetAttribute(SDL_GL_DEPTH_SIZE, 24);
    setMultisampling(1, 4);

    window.window = createWindow(settings);
    if (!window.window) {
        setMultisampling(0, 0);
        window.window = createWindow(settings);
    }
    if (!window.window) {
        error = std::string("Could not create a window: ") + SDL_GetError();
        return false;
    }

    window.context = SDL_GL_CreateContext(window.window);
    if (!window.context) {
        setMultisampling(0, 0);
        window.context = SDL_GL_CreateContext(window.window);
    }
    if (!window.context) {
        error = std::string("OpenGL 3.3 is not available on this computer.\n\n") + SDL_GetError();
        return false;
    }

    if (!loadGlFunctions(loader)) {
        error =
            "This computer's graphics driver is missing OpenGL 3.3 functions.\nPlease update the graphics "
            "driver.";
        return false;
    }
    return true;
}

// False when the player asked the window system to end the program.
static bool readInput(InputReader& reader, SDL_Window* window) {
    SDL_PumpEvents(); // the sizes below are those that the last of them tells
    int windowWidth;
    int windowHeight;
    int drawableWidth;
    int drawableHeight;
    SDL_GetWindowSize(window, &windowWidth, &windowHeight);
    SDL_GL_GetDrawableSize(window, &drawableWidth, &drawableHeight);
    const bool running =
        readInputFrame(reader, pixelRatio(windowWidth, windowHeight, drawableWidth, drawableHeight));
    reader.input.drawableWidth = drawableWidth;
    reader.input.drawableHeight = drawableHeight;
    return running;
}

// A run that takes a picture needs its frames, seen or not.
static bool mayRest(SDL_Window* window, const Capture& capture) {
    return (SDL_GetWindowFlags(window) & SDL_WINDOW_MINIMIZED) != 0 && !capture.shotPath;
}

static void runLoop(App& app, Capture& capture, SDL_Window* window) {
    const double frequency = static_cast<double>(SDL_GetPerformanceFrequency());
    uint64_t previous = SDL_GetPerformanceCounter();
    InputReader reader;
    const Input& input = reader.input;
    for (bool running = true; running;) {
        running = readInput(reader, window);

        const uint64_t now = SDL_GetPerformanceCounter();
        const float dt = static_cast<float>(static_cast<double>(now - previous) / frequency);
        previous = now;
        if (mayRest(window, capture)) {
            if (!restFrame(app)) running = false;
            SDL_WaitEventTimeout(nullptr, REST_TIME); // until the window is back, or anything else happens
            continue;
        }
        if (!stepFrame(app, input, dt)) running = false;

        // Before the swap, because after it nobody knows what the back buffer holds.
        if (captureFrame(capture, input.drawableWidth, input.drawableHeight)) running = false;
        if (app.displayDirty) {
            app.displayDirty = false;
            applyDisplayMode(window, app.settings);
        }
        SDL_GL_SwapWindow(window);
    }
}

static std::string preferenceFolder() {
    char* path = SDL_GetPrefPath(PROGRAM_NAME, PROGRAM_NAME);
    if (!path) return "./";
    std::string folder = path;
    SDL_free(path);
    return folder;
}

// SDL falls back on drivers that show nothing to anyone. They are for unattended runs, which ask for them by
// name; a player without a display must be told.
static bool startSdl() {
    if (SDL_Init(SDL_INIT_VIDEO | SDL_INIT_EVENTS) != 0) return false;
    const char* wanted = SDL_GetHint(SDL_HINT_VIDEODRIVER);
    if (!isUnseen() || (wanted && wanted[0] != '\0')) return true;
    SDL_Quit();
    SDL_SetError("there is no display");
    return false;
}

// A worker that is at the network cannot be waited for, and would not survive what libraries clear away on
// the usual way out.
[[noreturn]] static void endProcess() {
    std::fflush(nullptr);
    std::_Exit(0);
}

int runProgram(GlLoader loader) {
    if (!startSdl()) {
        showFailure(nullptr, std::string("SDL could not start: ") + SDL_GetError());
        return 1;
    }
    const std::string prefPath = preferenceFolder();
    Settings settings; // of the window, which must stand before the App can be set up and reads them again
    loadSettings(settings, prefPath + "settings.ini");

    Window window;
    std::string error;
    if (!openWindow(window, settings, loader, error)) {
        showFailure(window.window, error);
        closeWindow(window);
        return 1;
    }
    applyDisplayMode(window.window, settings);
    setWindowIcon(window.window);

    const auto app = std::make_unique<App>();
    std::string notes;
    if (!appInit(*app, prefPath, notes)) {
        showFailure(window.window, "The game could not start.\n\n" + notes);
        appShutdown(*app);
        closeWindow(window);
        return 1;
    }
    if (!notes.empty()) std::fprintf(stderr, "%s", notes.c_str());

    int width;
    int height;
    SDL_GL_GetDrawableSize(window.window, &width, &height);
    Capture capture = applyCaptureHooks(*app, width, height);
    runLoop(*app, capture, window.window);

    appShutdown(*app);
    closeWindow(window);
    if (updateUnderWay(*app)) endProcess();
    return 0;
}
