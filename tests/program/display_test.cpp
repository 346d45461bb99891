#include "program/display.h"

#include <gtest/gtest.h>

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
