#include "program/program.h"

#include "app/app.h"
#include "app/picking.h"
#include "maintenance/test_build.h"
#include "program/talking_sdl.h"
#include "sim/city_helpers.h"
#include "sim/save_file.h"
#include "temp_dir.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <netinet/in.h>
#include <unistd.h>

// Each start runs in a process of its own, which begins the test anew: it finds the folder that the test has
// made, and ends before the test does.
class ProgramDeathTest : public testing::Test {
protected:
    void SetUp() override {
        testing::GTEST_FLAG(death_test_style) = "threadsafe";
        if (std::getenv(FOLDER)) {
            alarm(120); // a loop that would not end
        } else {
            dir = std::make_unique<TempDir>();
            setenv(FOLDER, dir->path.c_str(), 1);
        }
        folder = std::getenv(FOLDER);
        setenv("HOME", folder.c_str(), 1);
        setenv("XDG_CACHE_HOME", (folder + "/cache").c_str(), 1); // of the graphics driver
        setenv("SDL_AUDIODRIVER", "dummy", 1);
        unsetVariables({"XDG_DATA_HOME", "DISPLAY", "WAYLAND_DISPLAY"});
    }
    void TearDown() override { unsetVariables({FOLDER, "OV_DEMO", "OV_SHOT", "OV_FRAMES", "OV_STATE"}); }

    static void unsetVariables(std::initializer_list<const char*> names) {
        for (const char* name : names) unsetenv(name);
    }
    // A small picture, soon painted, in the preference folder and in the working one.
    void writeSettings(const std::string& more = "") const {
        std::filesystem::create_directories(preferences());
        for (const std::string& path : {preferences(), folder})
            writeText(path + "/settings.ini", "resolution=0\nquality=0\ntutorialDone=1\n" + more);
    }
    std::string preferences() const { return folder + "/.local/share/Orlavane/Orlavane"; }
    // The run ends after so many frames, without a picture.
    static void endAfter(const char* frames) {
        setenv("OV_SHOT", "", 1);
        setenv("OV_FRAMES", frames, 1);
    }

    static constexpr const char* FOLDER = "ORLAVANE_TEST_FOLDER";
    std::unique_ptr<TempDir> dir;
    std::string folder;
};

// Without the leak checker's look: the driver is no longer loaded, so that what it keeps to the end could not
// be told from what is ours.
[[noreturn]] static void leave(int code) {
    std::fflush(nullptr);
    std::_Exit(code);
}

// --- A start that fails ends the process with 1 and says why

static void* loadNothing(const char*) { return nullptr; }

static void* loadAllButTwo(const char* name) {
    if (std::strcmp(name, "glFinish") == 0 || std::strcmp(name, "glReadPixels") == 0) return nullptr;
    return SDL_GL_GetProcAddress(name);
}

static void APIENTRY refuseShader(GLuint, GLenum, GLint* status) { *status = GL_FALSE; }

static void APIENTRY tellWhy(GLuint, GLsizei, GLsizei*, GLchar* log) {
    std::strcpy(log, "0:1: no such language\n");
}

static void* loadBadCompiler(const char* name) {
    if (std::strcmp(name, "glGetShaderiv") == 0) return reinterpret_cast<void*>(&refuseShader);
    if (std::strcmp(name, "glGetShaderInfoLog") == 0) return reinterpret_cast<void*>(&tellWhy);
    return SDL_GL_GetProcAddress(name);
}

TEST_F(ProgramDeathTest, ADriverWithoutTheFunctionsIsRefused) {
    EXPECT_EXIT(leave(runProgram(loadNothing)), testing::ExitedWithCode(1),
                "missing GL function glClearColor\nmissing GL function glClear\n(.|\n)*"
                "missing GL function glReadPixels\n"
                "This computer's graphics driver is missing OpenGL 3.3 functions.\n"
                "Please update the graphics driver.\n");
}

TEST_F(ProgramDeathTest, EveryMissingFunctionIsNamedInOrder) {
    EXPECT_EXIT(
        leave(runProgram(loadAllButTwo)), testing::ExitedWithCode(1),
        "^missing GL function glFinish\nmissing GL function glReadPixels\nThis computer's graphics driver");
}

TEST_F(ProgramDeathTest, ADriverThatCompilesNoShaderEndsTheStartWithItsLog) {
    EXPECT_EXIT(leave(runProgram(loadBadCompiler)), testing::ExitedWithCode(1),
                "^The game could not start.\n\nNo music files found; playing without music\n"
                "(0:1: no such language\n)+");
}

static int talkingRun(GlLoader loader = SDL_GL_GetProcAddress) {
    talkingSdl().talks = true;
    return runProgram(loader);
}

TEST_F(ProgramDeathTest, AFailedStartShowsABoxAndClosesWhatItHadOpened) {
    EXPECT_EXIT(leave(talkingRun(loadAllButTwo)), testing::ExitedWithCode(1),
                "box 10 Orlavane over the window: This computer's graphics driver is missing OpenGL 3.3 "
                "functions.\nPlease update the graphics driver.\ncontext deleted\nwindow destroyed\nquit\n$");
    EXPECT_EXIT(leave(talkingRun(loadBadCompiler)), testing::ExitedWithCode(1),
                "box 10 Orlavane over the window: The game could not start.\n\n(.|\n)*"
                "context deleted\nwindow destroyed\nquit\n$");
}

TEST_F(ProgramDeathTest, WithoutAVideoDriverOrADisplaySdlCannotStart) {
    const auto start = [](const char* driver) {
        setenv("SDL_VIDEODRIVER", driver, 1);
        return talkingRun();
    };
    EXPECT_EXIT(leave(start("nonsense")), testing::ExitedWithCode(1),
                "^SDL could not start: .+\nbox 10 Orlavane over nothing: SDL could not start: .+\n$");
    // Left to itself SDL takes a driver that shows nothing, and is closed again.
    EXPECT_EXIT(leave(start("")), testing::ExitedWithCode(1),
                "quit\nSDL could not start: there is no display\n"
                "box 10 Orlavane over nothing: SDL could not start: there is no display\n$");
}

TEST_F(ProgramDeathTest, AWindowOrAContextThatIsRefusedTwiceEndsTheStart) {
    const auto start = [](int windows, int contexts) {
        talkingSdl().windowRefusals = windows;
        talkingSdl().contextRefusals = contexts;
        return talkingRun();
    };
    EXPECT_EXIT(leave(start(2, 0)), testing::ExitedWithCode(1),
                "box 10 Orlavane over nothing: Could not create a window: refused\nquit\n$");
    EXPECT_EXIT(leave(start(0, 2)), testing::ExitedWithCode(1),
                "box 10 Orlavane over the window: OpenGL 3.3 is not available on this computer.\n\nrefused\n"
                "window destroyed\nquit\n$");
}

// --- One that succeeds

// What the player's hands do: it waits in SDL's queue when the loop begins.
static std::vector<SDL_Event>& hands() {
    static std::vector<SDL_Event> events;
    return events;
}

static void* loadAndPlay(const char* name) {
    for (SDL_Event& event : std::exchange(hands(), {})) SDL_PushEvent(&event);
    return SDL_GL_GetProcAddress(name);
}

static void press(SDL_Keycode key) {
    SDL_Event event = {};
    event.key.keysym.sym = key;
    event.type = SDL_KEYDOWN;
    event.key.state = SDL_PRESSED;
    hands().push_back(event);
    event.type = SDL_KEYUP;
    event.key.state = SDL_RELEASED;
    hands().push_back(event);
}

static void click(int x, int y) {
    SDL_Event event = {};
    event.button.button = SDL_BUTTON_LEFT;
    event.button.x = x;
    event.button.y = y;
    event.type = SDL_MOUSEBUTTONDOWN;
    event.button.state = SDL_PRESSED;
    hands().push_back(event);
    event.type = SDL_MOUSEBUTTONUP;
    event.button.state = SDL_RELEASED;
    hands().push_back(event);
}

static void leave() {
    SDL_Event event = {};
    event.type = SDL_QUIT;
    hands().push_back(event);
}

// Attributes by their numbers: version 3.3, core profile, two buffers, 24 bits of depth, four samples.
static const std::string ATTRIBUTES =
    "attribute 17 = 3\nattribute 18 = 3\nattribute 21 = 1\nattribute 5 = 1\nattribute 6 = 24\n"
    "attribute 13 = 1\nattribute 14 = 4\n";
static const std::string WITHOUT_SAMPLES = "attribute 13 = 0\nattribute 14 = 0\n";
static const std::string WINDOW = "window Orlavane 2fff0000 2fff0000 1280x720 flags 2022\n";
static const std::string SHOWN = "pump\nsize 1280x720\nplace 2fff0000 2fff0000\ninterval 1\nicon 64x64\n"
                                 "No music files found; playing without music\n";
static const std::string FRAME = "pump\nswap\n";
static const std::string CLOSED = "context deleted\nwindow destroyed\nquit\n$";

TEST_F(ProgramDeathTest, TheWindowOpensByTheSettingsAndClosesAtTheEnd) {
    writeSettings();
    endAfter("2");
    EXPECT_EXIT(leave(talkingRun()), testing::ExitedWithCode(0),
                "^" + ATTRIBUTES + WINDOW + "context\n" + SHOWN + FRAME + FRAME + CLOSED);
}

TEST_F(ProgramDeathTest, TheWindowOpensNoLargerThanTheFirstDisplay) {
    writeSettings();
    endAfter("1");
    const auto start = [] {
        talkingSdl().display = talkingSdl().room = {0, 0, 1024, 700};
        talkingSdl().displays = 1;
        return talkingRun();
    };
    EXPECT_EXIT(leave(start()), testing::ExitedWithCode(0),
                "window Orlavane 2fff0000 2fff0000 1024x700 flags");
}

TEST_F(ProgramDeathTest, ADriverWithoutMultisamplingStartsTheGameAllTheSame) {
    writeSettings();
    endAfter("1");
    const auto start = [](int windows, int contexts) {
        talkingSdl().windowRefusals = windows;
        talkingSdl().contextRefusals = contexts;
        return talkingRun();
    };
    EXPECT_EXIT(leave(start(1, 0)), testing::ExitedWithCode(0),
                "^" + ATTRIBUTES + WINDOW + WITHOUT_SAMPLES + WINDOW + "context\n" + SHOWN + FRAME + CLOSED);
    EXPECT_EXIT(leave(start(0, 1)), testing::ExitedWithCode(0),
                "^" + ATTRIBUTES + WINDOW + "context\n" + WITHOUT_SAMPLES + "context\n" + SHOWN + FRAME +
                    CLOSED);
}

TEST_F(ProgramDeathTest, AFullScreenIsOpenedAsOneAndTheIntervalFollowsVsync) {
    writeSettings("fullscreen=1\nvsync=0\n");
    endAfter("1");
    EXPECT_EXIT(leave(talkingRun()), testing::ExitedWithCode(0),
                "window Orlavane 2fff0000 2fff0000 1280x720 flags 3023\ncontext\nfullscreen 1001\ninterval "
                "0\nicon 64x64\n");
}

TEST_F(ProgramDeathTest, ThePlayersWishToLeaveEndsTheRunAfterItsFrame) {
    writeSettings();
    const auto start = [] {
        leave();
        return talkingRun(loadAndPlay);
    };
    EXPECT_EXIT(leave(start()), testing::ExitedWithCode(0), SHOWN + FRAME + CLOSED);
}

TEST_F(ProgramDeathTest, F11ChangesTheWindowAfterItsFrameAndOnce) {
    writeSettings();
    endAfter("3");
    const auto start = [] {
        press(SDLK_F11);
        return talkingRun(loadAndPlay);
    };
    EXPECT_EXIT(leave(start()), testing::ExitedWithCode(0),
                SHOWN + "pump\nfullscreen 1001\ninterval 1\nswap\n" + FRAME + FRAME + CLOSED);
    Settings settings;
    ASSERT_TRUE(loadSettings(settings, preferences() + "/settings.ini"));
    EXPECT_TRUE(settings.fullscreen);
}

TEST_F(ProgramDeathTest, AMinimisedGameDrawsNothingUnlessAPictureIsWanted) {
    writeSettings();
    const auto start = [] {
        talkingSdl().moreFlags = SDL_WINDOW_MINIMIZED;
        leave();
        return talkingRun(loadAndPlay);
    };
    EXPECT_EXIT(leave(start()), testing::ExitedWithCode(0), SHOWN + "pump\nwait 100\n" + CLOSED);
    endAfter("2");
    const auto startWithPicture = [] {
        talkingSdl().moreFlags = SDL_WINDOW_MINIMIZED;
        return talkingRun();
    };
    EXPECT_EXIT(leave(startWithPicture()), testing::ExitedWithCode(0), SHOWN + FRAME + FRAME + CLOSED);
}

TEST_F(ProgramDeathTest, AMinimisedGameRestsUntilThePlayerLeaves) {
    writeSettings();
    const auto start = [] {
        talkingSdl().moreFlags = SDL_WINDOW_MINIMIZED;
        talkingSdl().waitsUntilQuit = 2;
        return talkingRun(loadAndPlay);
    };
    EXPECT_EXIT(leave(start()), testing::ExitedWithCode(0), SHOWN + "(pump\nwait 100\n){3}" + CLOSED);
}

TEST_F(ProgramDeathTest, APictureHasTheWindowsSize) {
    writeSettings();
    const std::string path = folder + "/shot.bmp";
    endAfter("1");
    setenv("OV_SHOT", path.c_str(), 1);
    EXPECT_EXIT(leave(runProgram()), testing::ExitedWithCode(0), "");
    SDL_Surface* picture = SDL_LoadBMP(path.c_str());
    ASSERT_NE(picture, nullptr);
    EXPECT_EQ(picture->w, 1280);
    EXPECT_EQ(picture->h, 720);
    const auto* bytes = static_cast<const uint8_t*>(picture->pixels);
    EXPECT_NE(*std::max_element(bytes, bytes + picture->h * picture->pitch), 0);
    SDL_FreeSurface(picture);
}

TEST_F(ProgramDeathTest, WithoutAPreferenceFolderSettingsAndSaveLieInTheWorkingFolder) {
    writeSettings();
    endAfter("2");
    setenv("OV_DEMO", "1", 1);
    const auto start = [&] {
        unsetenv("HOME");
        if (chdir(folder.c_str()) != 0) return 7;
        press(SDLK_F5);
        press(SDLK_F11);
        return runProgram(loadAndPlay);
    };
    EXPECT_EXIT(leave(start()), testing::ExitedWithCode(0), "");
    Settings settings;
    ASSERT_TRUE(loadSettings(settings, folder + "/settings.ini"));
    EXPECT_TRUE(settings.fullscreen);
    EXPECT_EQ(settings.resolution, 0); // it was read there, too
    City city;
    ASSERT_TRUE(loadCity(city, folder + "/savegame.ovw"));
    EXPECT_EQ(city.day, 60);
    EXPECT_FALSE(std::filesystem::exists(preferences() + "/savegame.ovw"));
}

TEST_F(ProgramDeathTest, TheGameRunsByTheTimeBetweenItsFrames) {
    writeSettings();
    endAfter("3"); // a button's press and release, each in its frame, and the key
    setenv("OV_DEMO", "1", 1);
    setenv("OV_STATE", "speed=3", 1);
    const auto start = [] {
        talkingSdl().clockStep = 0.01; // the loop and the picture look once a frame
        click(640, 5);
        press(SDLK_F5);
        return runProgram(loadAndPlay);
    };
    EXPECT_EXIT(leave(start()), testing::ExitedWithCode(0), "");
    City city;
    ASSERT_TRUE(loadCity(city, preferences() + "/savegame.ovw"));
    EXPECT_NEAR(city.hourOfDay, 9.0f + (0.01f + 0.02f) * 3.0f * 24.0f / 1200.0f, 2e-6f);
}

// On a display with two pixels a unit in the one direction and three in the other.
TEST_F(ProgramDeathTest, TheMousePointsInTheDrawablesPixels) {
    writeSettings();
    endAfter("3"); // the press, the release, the key
    setenv("OV_DEMO", "1", 1);
    setenv("OV_STATE", "tool=1", 1);
    App app;
    app.city = flatCity();
    app.camera.target = {388.0f, 0.0f, 388.0f};
    app.camera.yaw = 0.7f;
    app.camera.pitch = 0.75f;
    app.camera.distance = 150.0f;
    Input input;
    input.drawableWidth = 1280 * 2;
    input.drawableHeight = 720 * 3;
    FrameParams params;
    buildFrameParams(params, app, input, 0.0f);
    const Vec3 seen =
        transformPoint(params.viewProj, {388.0f, 10.0f, 332.0f}); // beside the demo city's roads
    const int x = static_cast<int>((seen.x + 1.0f) / 2.0f * 1280.0f);
    const int y = static_cast<int>((1.0f - seen.y) / 2.0f * 720.0f);
    const auto start = [&] {
        talkingSdl().pixelsX = 2;
        talkingSdl().pixelsY = 3;
        click(x, y);
        press(SDLK_F5);
        return runProgram(loadAndPlay);
    };
    EXPECT_EXIT(leave(start()), testing::ExitedWithCode(0), "");
    City city;
    ASSERT_TRUE(loadCity(city, preferences() + "/savegame.ovw"));
    EXPECT_EQ(city.cells[cellIndex(48, 41)].zone, ZONE_RESIDENTIAL);
}

// A server that takes the call and never answers.
static int silentServer() {
    const int server = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    bind(server, reinterpret_cast<sockaddr*>(&address), size);
    listen(server, 1);
    getsockname(server, reinterpret_cast<sockaddr*>(&address), &size);
    setManifestUrl("http://127.0.0.1:" + std::to_string(ntohs(address.sin_port)) + "/manifest.json");
    return server;
}

TEST_F(ProgramDeathTest, ARunThatEndsWhileAWorkerIsAtTheNetworkTakesItAlong) {
    writeSettings();
    endAfter("1");
    const auto start = [] {
        silentServer();
        runProgram();
        return 7; // the process ended before, or the worker had nothing left to stand on
    };
    EXPECT_EXIT(leave(start()), testing::ExitedWithCode(0), "");
}
