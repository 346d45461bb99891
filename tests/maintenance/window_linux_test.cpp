// What the game asks of an X server, and what it tells SDL of the answer.
#include "maintenance/platform.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <SDL.h>
#include <SDL_syswm.h>

using testing::ElementsAre;

struct FakeServer {
    SDL_bool known = SDL_TRUE; // SDL can say what kind of window it is
    SDL_SYSWM_TYPE subsystem = SDL_SYSWM_X11;
    int believedWidth = 800;
    int believedHeight = 600;
    int width = 800;
    int height = 600;
    std::vector<std::string> asked = {};
};

static FakeServer server;
static char display; // its address alone counts
constexpr Window WINDOW = 7;
constexpr Window ROOT_WINDOW = 3;

static void note(const std::string& what) { server.asked.push_back(what); }

static void expectOurs(Display* ofDisplay, Window window = WINDOW) {
    EXPECT_EQ(static_cast<void*>(ofDisplay), &display);
    EXPECT_EQ(window, WINDOW);
}

// Found before those of SDL and X11.
extern "C" {

SDL_bool SDL_GetWindowWMInfo(SDL_Window*, SDL_SysWMinfo* info) {
    EXPECT_EQ(info->version.major, SDL_MAJOR_VERSION); // or SDL knows nothing
    info->subsystem = server.subsystem;
    info->info.x11.display = static_cast<Display*>(static_cast<void*>(&display));
    info->info.x11.window = WINDOW;
    return server.known;
}

void SDL_GetWindowSize(SDL_Window*, int* width, int* height) {
    *width = server.believedWidth;
    *height = server.believedHeight;
}

int XGrabServer(Display* of) {
    expectOurs(of);
    note("grab");
    return 1;
}

int XUngrabServer(Display* of) {
    expectOurs(of);
    note("ungrab");
    return 1;
}

int XSync(Display* of, Bool discard) {
    expectOurs(of);
    EXPECT_FALSE(discard); // of the player's input
    note("sync");
    return 1;
}

Status XGetWindowAttributes(Display* of, Window window, XWindowAttributes* is) {
    expectOurs(of, window);
    *is = {};
    is->width = server.width;
    is->height = server.height;
    is->root = ROOT_WINDOW;
    note("size");
    return 1;
}

Bool XTranslateCoordinates(Display* of, Window from, Window to, int x, int y, int* outX, int* outY,
                           Window* child) {
    expectOurs(of, from);
    EXPECT_EQ(to, ROOT_WINDOW);
    *outX = x + 30;
    *outY = y + 40;
    *child = None;
    return True;
}

Status XSendEvent(Display* of, Window window, Bool propagate, long mask, XEvent* event) {
    expectOurs(of, window);
    EXPECT_FALSE(propagate);
    EXPECT_EQ(mask, StructureNotifyMask);
    const XConfigureEvent& geometry = event->xconfigure;
    EXPECT_EQ(geometry.type, ConfigureNotify);
    EXPECT_EQ(geometry.event, WINDOW);
    EXPECT_EQ(geometry.window, WINDOW);
    note(std::to_string(geometry.width) + " x " + std::to_string(geometry.height) + " at " +
         std::to_string(geometry.x) + ", " + std::to_string(geometry.y));
    return 1;
}
}

static std::vector<std::string> askedWhen(const FakeServer& is) {
    server = is;
    confirmWindowSize(nullptr);
    return server.asked;
}

TEST(WindowSize, ThatIsAsBelievedIsNoNews) {
    EXPECT_THAT(askedWhen({}), ElementsAre("grab", "size", "ungrab", "sync"));
}

TEST(WindowSize, ThatDiffersIsToldAfterTheOneThatSdlBelieves) {
    EXPECT_THAT(askedWhen({.width = 700}),
                ElementsAre("grab", "size", "800 x 600 at 30, 40", "700 x 600 at 30, 40", "ungrab", "sync"));
    EXPECT_THAT(askedWhen({.height = 601}),
                ElementsAre("grab", "size", "800 x 600 at 30, 40", "800 x 601 at 30, 40", "ungrab", "sync"));
}

TEST(WindowSize, OfOtherSystemsIsTheirOwnAffair) {
    EXPECT_THAT(askedWhen({.subsystem = SDL_SYSWM_WAYLAND, .width = 700}), ElementsAre());
    EXPECT_THAT(askedWhen({.known = SDL_FALSE, .width = 700}), ElementsAre());
}
