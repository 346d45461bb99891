// A long game on a graphics card that draws nothing: does the game grow while it is played?
//
//     long_game [DAYS]
//
// A town lives at speed 3 for so many days, 20,000 unless told, while its player goes through all screens,
// panels, overlays, languages and window sizes, clicks wherever the pointer happens to be, saves and loads.
// Round by round the town is put back as it was; then memory and open files must be as in the rounds before.
// Ends with 1 when they are not.
#include "app/app.h"
#include "app/session.h"
#include "program/capture.h"
#include "program/frame.h"
#include "silent_gl.h"
#include "sim/grown_cities.h"
#include "sim/hash.h"
#include "temp_dir.h"

#include <SDL.h>
#include <malloc.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <iterator>

constexpr float FRAME_TIME = 0.1f; // seconds: the longest step that a frame takes
constexpr int DAY_FRAMES = 150;    // of 45 game seconds at speed 3
constexpr int ROUND_DAYS = 30;
constexpr int FIRST_ROUNDS = 4; // until all has been seen in all window sizes, and the caches are full
constexpr int LOOK_FRAMES = DAY_FRAMES; // what is looked at changes so often
constexpr size_t ROOM = 256 * 1024; // bytes by which rounds may differ: caches and vectors keep what they had
constexpr long ROOM_RESIDENT = 12 << 20; // bytes: a page that was touched once may stay for good

constexpr const char* LOOKS[] = {
    "panel=budget,lang=de",
    "panel=finance,overlay=traffic,lang=fr",
    "panel=stats,overlay=power,lang=ar",
    "panel=none,select=48:48,overlay=water,lang=hi",
    "cat=roads,overlay=pollution,lang=ja",
    "cat=zones,overlay=happy,lang=zh",
    "cat=services,overlay=normal,lang=ru",
    "cat=utilities,dist=40,lang=es",
    "cat=districts,district=3,lang=uk",
    "cat=bulldoze,dist=420,lang=pt",
    "cat=select,select=44:45,lang=it",
    "tool=1,lang=pl",
    "tutorial=0,lang=tr",
    "tutorial=3,lang=en",
    "pause=1,lang=de",
    "screen=settings,lang=ar",
    "screen=title,update=newer,lang=zh",
    "screen=settings,lang=hi",
    "screen=end,lang=ja",
    "launcher=none,update=offline,lang=fr",
    "launcher=files,lang=ru",
    "launcher=saves,lang=en",
    "hour=22,dist=190,focus=48:48,lang=de",
};

struct WindowSize {
    int width; // pixels
    int height;
};
constexpr WindowSize WINDOW_SIZES[] = {{1280, 720}, {640, 360}, {1600, 900}, {2560, 1440}};

struct Holding {
    size_t heap = 0;   // bytes in use
    long resident = 0; // bytes
    long files = 0;    // open
};

static Holding holding() {
    const struct mallinfo2 heap = mallinfo2();
    Holding now = {heap.uordblks + heap.hblkhd, 0, 0};
    long all = 0;
    if (FILE* file = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(file, "%ld %ld", &all, &now.resident) != 2) now.resident = 0;
        std::fclose(file);
    }
    now.resident *= sysconf(_SC_PAGESIZE);
    now.files = std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
    return now;
}

struct LongGame {
    TempDir folder;
    App app;
    Input input;
    City town = townOf5000();
    uint32_t frame = 0;
};

// The town as it was, in the game, in the first window. A change of language closes the fonts of all sizes.
static void putBack(LongGame& game) {
    newCity(game.app);
    game.app.city = game.town;
    applyStateString(game.app, "panel=none,overlay=normal,cat=select,update=current,lang=de,lang=en,speed=3");
    game.app.tutorialStep = -1;
    game.app.paused = false;
    game.input = {};
    game.input.drawableWidth = WINDOW_SIZES[0].width;
    game.input.drawableHeight = WINDOW_SIZES[0].height;
}

// The launcher is only looked at: a hand that clicks everywhere would remove the game.
static void movePointer(LongGame& game) {
    Input& input = game.input;
    const uint32_t frame = game.frame;
    input.mouseX = hashUnit(frame, 1, 0) * static_cast<float>(input.drawableWidth);
    input.mouseY = hashUnit(frame, 2, 0) * static_cast<float>(input.drawableHeight);
    const bool clicks = game.app.screen != SCREEN_LAUNCHER;
    input.leftPressed = clicks && frame % 4 == 1;
    input.leftReleased = clicks && frame % 4 == 3;
    input.leftHeld = clicks && frame % 4 == 2;
    input.wheel = frame % 8 == 0 ? hashUnit(frame, 3, 0) - 0.5f : 0.0f;
    input.rightHeld = frame / 8 % 5 == 0;
}

static void pressKeys(LongGame& game) {
    std::array<uint8_t, KEY_COUNT>& keys = game.input.keysPressed;
    keys = {};
    if (game.frame % 300 == 0) keys[KEY_F5] = 1;
    if (game.frame % 900 == 0) keys[KEY_F9] = 1;
    if (game.frame % 450 == 0) keys[KEY_F11] = 1;
    keys[game.frame * 7 % KEY_COUNT] = game.frame % 5 == 0;
}

static void playFrame(LongGame& game) {
    App& app = game.app;
    if (game.frame % LOOK_FRAMES == 0) {
        const uint32_t look = game.frame / LOOK_FRAMES;
        const WindowSize& size = WINDOW_SIZES[look % std::size(WINDOW_SIZES)];
        game.input.drawableWidth = size.width;
        game.input.drawableHeight = size.height;
        applyStateString(app, LOOKS[look % std::size(LOOKS)]);
    }
    // Time stands on every other screen: a short look, and back. So it does after a wrong click or key.
    if (game.frame % 8 == 7) {
        app.screen = SCREEN_GAME;
        app.paused = false;
        setSpeed(app, 3);
        if (app.city.bankrupt) app.city = game.town;
        app.city.keepPlaying = 1;
    }
    movePointer(game);
    pressKeys(game);
    stepFrame(app, game.input, FRAME_TIME);
    app.quitRequested = false;
    game.frame++;
}

// What the game holds after a round, with the town back.
static Holding playRound(LongGame& game, int& days) {
    putBack(game);
    for (int frame = 0; frame < ROUND_DAYS * DAY_FRAMES; frame++) {
        const int32_t day = game.app.city.day;
        playFrame(game);
        days += game.app.city.day == day + 1;
    }
    putBack(game);
    for (int frame = 0; frame < 20; frame++) stepFrame(game.app, game.input, FRAME_TIME);
    return holding();
}

static bool hasGrown(const Holding& early, const Holding& late) {
    return late.heap > early.heap + ROOM || late.resident > early.resident + ROOM_RESIDENT ||
           late.files > early.files;
}

static void print(int days, const Holding& now) {
    std::printf("%6d days: heap %8.2f MB, resident %8.2f MB, %ld files open\n", days,
                static_cast<double>(now.heap) * 1e-6, static_cast<double>(now.resident) * 1e-6, now.files);
    std::fflush(stdout);
}

int main(int argc, char** argv) {
    const int wanted = argc > 1 ? std::atoi(argv[1]) : 20'000;
    openGraphics();
    static LongGame game;
    std::string notes;
    if (SDL_Init(SDL_INIT_EVENTS) != 0 || !appInit(game.app, game.folder.path.string() + "/", notes)) {
        std::fprintf(stderr, "could not begin: %s%s\n", notes.c_str(), SDL_GetError());
        return 1;
    }
    int days = 0;
    Holding early;
    Holding late;
    for (int round = 0; days < wanted; round++) {
        late = playRound(game, days);
        if (round < FIRST_ROUNDS) early = late;
        if (round < FIRST_ROUNDS || days >= wanted || round % 50 == 0) print(days, late);
    }
    appShutdown(game.app);
    if (!hasGrown(early, late)) return 0;
    std::printf("the game has grown\n");
    return 1;
}
