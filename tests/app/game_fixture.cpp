#include "app/game_fixture.h"

#include "app/picking.h"
#include "app/session.h"
#include "sim/city_helpers.h"

#include <SDL.h>

#include <algorithm>
#include <utility>

#include <dirent.h>
#include <dlfcn.h>
#include <spawn.h>

// --- What the game asks of the system
//
// Found before the libraries' own functions, which they hand on to.

static std::vector<std::string>& calls() {
    static thread_local std::vector<std::string> made;
    return made;
}

template<typename Function> static Function* libraryFunction(Function*, const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

extern "C" std::FILE* fopen(const char* path, const char* mode) {
    static const auto real = libraryFunction(&fopen, "fopen");
    calls().push_back(std::string(mode[0] == 'r' ? "reads " : "writes ") + path);
    return real(path, mode);
}

extern "C" DIR* fdopendir(int descriptor) {
    static const auto real = libraryFunction(&fdopendir, "fdopendir");
    std::error_code unknown;
    const std::string folder = "/proc/self/fd/" + std::to_string(descriptor);
    calls().push_back("lists " + std::filesystem::read_symlink(folder, unknown).string());
    return real(descriptor);
}

extern "C" int posix_spawnp(pid_t* child, const char* file, const posix_spawn_file_actions_t* actions,
                            const posix_spawnattr_t* attributes, char* const words[],
                            char* const variables[]) {
    static const auto real = libraryFunction(&posix_spawnp, "posix_spawnp");
    calls().push_back(std::string("starts ") + file);
    return real(child, file, actions, attributes, words, variables);
}

extern "C" SDL_Thread* SDL_CreateThread(SDL_ThreadFunction function, const char* name, void* data) {
    static const auto real = libraryFunction(&SDL_CreateThread, "SDL_CreateThread");
    calls().push_back(std::string("thread ") + name);
    return real(function, name, data);
}

std::vector<std::string> GameTest::asked() { return std::exchange(calls(), {}); }

// --- The game

// Opened and never started, one for all tests: voices start, and no audio thread plays them to their end.
static uint32_t silentDevice() {
    static const uint32_t device = [] {
        SDL_setenv("SDL_AUDIODRIVER", "dummy", 1);
        SDL_InitSubSystem(SDL_INIT_AUDIO);
        SDL_AudioSpec spec = {};
        spec.freq = 44100;
        spec.format = AUDIO_F32;
        spec.channels = 2;
        spec.samples = 1024;
        spec.callback = [](void*, Uint8*, int) {};
        return SDL_OpenAudioDevice(nullptr, 0, &spec, nullptr, 0);
    }();
    return device;
}

GameTest::GameTest() {
    gl.recording = false;
    app.audio.device = silentDevice();
    app.savePath = folder + "savegame.ovw";
    app.settingsPath = folder + "settings.ini";
    app.settings.tutorialDone = true;
    app.ui.fonts = &app.fonts; // without a font, unless a test takes some
    app.city = flatCity();
    app.screen = SCREEN_GAME;
    app.initialised = true;
    app.camera.target = {384.0f, 0.0f, 384.0f};
    app.camera.yaw = 0.8f;
    app.camera.pitch = 0.95f;
    app.camera.distance = 190.0f;
    input.drawableWidth = 1600;
    input.drawableHeight = 900;
    point(48, 48);
    asked(); // of another test
}

// How often the effect began: its voices stay as they were started.
static int timesStarted(const Voices& voices, SoundEffect effect) {
    AudioEngine reference;
    startEffect(reference.voices, reference.rng, effect);
    const Voice& first = reference.voices[0];
    return static_cast<int>(std::count_if(voices.begin(), voices.end(), [&](const Voice& voice) {
        return voice.active && voice.freqStart == first.freqStart && voice.duration == first.duration;
    }));
}

std::vector<SoundEffect> GameTest::heard() {
    std::vector<SoundEffect> effects;
    for (int effect = 0; effect < SOUND_COUNT; effect++) {
        const auto each = static_cast<SoundEffect>(effect);
        effects.insert(effects.end(), timesStarted(app.audio.voices, each), each);
    }
    app.audio.voices = {};
    return effects;
}

void GameTest::frame(float dt) {
    stepGame(app, input, dt);
    app.camera.previousInput = input;
    input.leftPressed = input.leftReleased = 0;
    input.wheel = 0.0f;
    input.keysPressed.fill(0);
}

void GameTest::press(Key key) {
    input.keysPressed[key] = 1;
    frame();
}

void GameTest::point(int x, int y) {
    FrameParams params;
    buildFrameParams(params, app, input, 0.0f);
    const float worldX = (static_cast<float>(x) + 0.5f) * CELL_WIDTH;
    const float worldZ = (static_cast<float>(y) + 0.5f) * CELL_WIDTH;
    const Vec3 seen = transformPoint(params.viewProj, {worldX, heightAt(app.city, worldX, worldZ), worldZ});
    input.mouseX = (seen.x + 1.0f) / 2.0f * 1600.0f;
    input.mouseY = (1.0f - seen.y) / 2.0f * 900.0f;
}

void GameTest::pointOffTheMap() {
    input.mouseX = 800.0f;
    input.mouseY = -100000.0f;
}

void GameTest::pressAt(int x, int y) {
    point(x, y);
    input.leftPressed = input.leftHeld = 1;
    frame();
}

void GameTest::dragTo(int x, int y) {
    point(x, y);
    frame();
}

void GameTest::releaseAt(int x, int y) {
    point(x, y);
    input.leftHeld = 0;
    input.leftReleased = 1;
    frame();
}

void GameTest::click(int x, int y) {
    pressAt(x, y);
    releaseAt(x, y);
}
