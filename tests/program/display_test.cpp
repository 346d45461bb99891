#include "program/display.h"

#include "program/talking_sdl.h"

#include <gtest/gtest.h>

#include <string>

static void expectPlace(const SDL_Rect& place, const SDL_Rect& expected) {
    EXPECT_EQ(place.x, expected.x);
    EXPECT_EQ(place.y, expected.y);
    EXPECT_EQ(place.w, expected.w);
    EXPECT_EQ(place.h, expected.h);
}

TEST(Display, AWindowThatFitsStandsInTheMiddle) {
    const SDL_Rect display = {0, 0, 1920, 1080};
    expectPlace(placeInside(display, display, 1600, 900), {160, 90, 1600, 900});
}

TEST(Display, AWindowThatDoesNotFitIsHeldToItsRoom) {
    const SDL_Rect display = {0, 0, 1366, 768};
    const SDL_Rect room = {1, 22, 1364, 701}; // a frame, and a bar below
    expectPlace(placeInside(display, room, 1600, 900), {1, 22, 1364, 701});
    expectPlace(placeInside(display, room, 1280, 720), {43, 22, 1280, 701});
}

TEST(Display, BarsMoveAWindowOutOfTheMiddle) {
    const SDL_Rect display = {0, 0, 1920, 1080};
    expectPlace(placeInside(display, {400, 0, 1520, 1080}, 1280, 720), {400, 180, 1280, 720});
    expectPlace(placeInside(display, {0, 0, 1920, 800}, 1280, 720), {320, 80, 1280, 720});
}

TEST(Display, EveryDisplayHasItsOwnMiddle) {
    const SDL_Rect display = {1920, -300, 1280, 1024};
    expectPlace(placeInside(display, {1920, -260, 1280, 984}, 1280, 720), {1920, -148, 1280, 720});
}

TEST(Display, PicturesOfUnseenWindowsKeepTheSizeOfTheSettings) {
    ASSERT_EQ(SDL_InitSubSystem(SDL_INIT_VIDEO), 0) << SDL_GetError();
    Settings settings;
    settings.resolution = 2; // SDL's offscreen display is smaller
    const SDL_Rect place = windowPlace(settings, 0, nullptr);
    EXPECT_EQ(place.w, 1920);
    EXPECT_EQ(place.h, 1080);
    SDL_QuitSubSystem(SDL_INIT_VIDEO);
}

// --- Windows on a display that players see

// While this window stands, the driver stays loaded: to the end, so that the leak checker can tell what the
// driver keeps from what is ours.
static void keepDriver() {
    SDL_InitSubSystem(SDL_INIT_VIDEO);
    [[maybe_unused]] static SDL_Window* const kept =
        SDL_CreateWindow("", 0, 0, 64, 64, SDL_WINDOW_OPENGL | SDL_WINDOW_HIDDEN);
}

class SeenDisplay : public testing::Test {
protected:
    SeenDisplay() {
        keepDriver();
        SDL_InitSubSystem(SDL_INIT_VIDEO);
        window = SDL_CreateWindow("", 0, 0, 64, 64, SDL_WINDOW_OPENGL);
        context = SDL_GL_CreateContext(window);
        talkingSdl() = {};
        talkingSdl().display = {0, 0, 1920, 1080};
        talkingSdl().room = {0, 30, 1920, 1050}; // below a bar
        talkingSdl().frameLeft = 4;
        talkingSdl().frameAbove = 20;
        talkingSdl().frameRight = 5;
        talkingSdl().frameBelow = 6;
    }
    ~SeenDisplay() override {
        talkingSdl() = {};
        SDL_GL_DeleteContext(context);
        SDL_DestroyWindow(window);
        SDL_QuitSubSystem(SDL_INIT_VIDEO);
    }
    // All that SDL was asked for, in order.
    std::string applied() {
        talkingSdl().said.clear();
        applyDisplayMode(window, settings);
        return talkingSdl().said;
    }

    SDL_Window* window;
    SDL_GLContext context;
    Settings settings; // 1600 by 900
};

TEST_F(SeenDisplay, OnlyWhatIsSeenCounts) {
    EXPECT_FALSE(isUnseen());
    talkingSdl().display = {};
    EXPECT_TRUE(isUnseen());
}

TEST_F(SeenDisplay, TheFrameHasItsRoomToo) {
    settings.resolution = 2;
    expectPlace(windowPlace(settings, 0, window), {4, 50, 1911, 1024});
    expectPlace(windowPlace(settings, 0, nullptr), {0, 30, 1920, 1050}); // before there is a frame
}

TEST_F(SeenDisplay, TheWindowStandsOnItsDisplay) {
    expectPlace(windowPlace(settings, 0, window), {160, 90, 1600, 900});
    expectPlace(windowPlace(settings, 1, window), {2080, 90, 1600, 900});
}

TEST_F(SeenDisplay, WhereNobodyKnowsTheRoomTheSystemPlacesTheWindow) {
    talkingSdl().room = {};
    const SDL_Rect somewhere = {SDL_WINDOWPOS_CENTERED, SDL_WINDOWPOS_CENTERED, 1600, 900};
    expectPlace(windowPlace(settings, 0, window), somewhere);
    talkingSdl().display.w = 0;
    expectPlace(windowPlace(settings, 0, window), somewhere);
}

TEST_F(SeenDisplay, AWindowTakesTheSizeOfTheSettings) {
    EXPECT_EQ(applied(), "pump\nsize 1600x900\nplace a0 5a\ninterval 1\n");
    settings.vsync = false;
    settings.resolution = 0;
    EXPECT_EQ(applied(), "pump\nsize 1280x720\nplace 140 b4\ninterval 0\n");
}

TEST_F(SeenDisplay, AMaximisedWindowIsRestoredFirst) {
    talkingSdl().moreFlags = SDL_WINDOW_MAXIMIZED;
    EXPECT_EQ(applied(), "pump\nrestore\nsize 1600x900\nplace a0 5a\ninterval 1\n");
}

TEST_F(SeenDisplay, TheFullScreenIsTheDesktops) {
    settings.fullscreen = true;
    EXPECT_EQ(applied(), "fullscreen 1001\ninterval 1\n");
}

// What comes first on the way out of the full screen, before the window is given its size.
static std::string wayOut(const std::string& applied) {
    return applied.substr(0, applied.find("pump\nsize"));
}

TEST_F(SeenDisplay, OnTheWayOutOfTheFullScreenTheFrameIsWaitedForButNotForever) {
    talkingSdl().moreFlags = SDL_WINDOW_FULLSCREEN_DESKTOP;
    talkingSdl().frameAbove = 1; // is one
    EXPECT_EQ(wayOut(applied()), "fullscreen 0\npump\n");
    talkingSdl().framelessLooks = 2;
    EXPECT_EQ(wayOut(applied()), "fullscreen 0\npump\ndelay 10\npump\ndelay 10\npump\n");
    talkingSdl().frameAbove = 0;
    std::string twenty;
    for (int i = 0; i < 20; i++) twenty += "pump\ndelay 10\n";
    EXPECT_EQ(wayOut(applied()), "fullscreen 0\n" + twenty);
    talkingSdl().display = {}; // where no frame is known of, none is waited for
    EXPECT_EQ(wayOut(applied()), "fullscreen 0\npump\n");
}
