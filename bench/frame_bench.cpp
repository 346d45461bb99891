// What a player feels: the frames in which a city changes, of the whole game in a real OpenGL context,
// uploads and drawing included. Prints a table for each city.
//
//     frame_bench [RUNS]
//
// Runs on SDL's offscreen driver unless SDL_VIDEODRIVER says otherwise.
#include "app/app.h"
#include "app/picking.h"
#include "app/session.h"
#include "app/tools.h"
#include "program/frame.h"
#include "sim/build_tools.h"
#include "sim/grown_cities.h"

#include <SDL.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>

constexpr int WIDTH = 800; // pixels: few, so that a software rasteriser comes to an end
constexpr int HEIGHT = 450;
constexpr float FRAME_TIME = 1.0f / 60.0f; // seconds
constexpr int DAYS = 30;
constexpr int SUMMER_DAY = 100; // of City::calendarDay
constexpr int WINTER_DAY = 300;

// --- What a frame costs

struct FrameCost {
    double update = 0.0;  // ms of the calling thread until drawing begins: the city's rules, meshes, uploads
    double thread = 0.0;  // ms of the calling thread in the whole frame, the driver's part included
    double process = 0.0; // ms of all threads: a software rasteriser draws in threads of its own
    uint64_t bytes = 0;   // of meshes sent
};

// The frame being measured. Its drawing begins with the first clear.
struct FrameWatch {
    FrameCost cost;
    double threadStart = 0.0;
    bool drawing = false;
    GlFunctions real; // what the calls are passed on to
};
static FrameWatch watch;

static double milliseconds(clockid_t clock) {
    timespec time;
    clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) * 1e-6;
}

static void APIENTRY watchClear(GLbitfield buffers) {
    if (!watch.drawing) watch.cost.update = milliseconds(CLOCK_THREAD_CPUTIME_ID) - watch.threadStart;
    watch.drawing = true;
    watch.real.Clear(buffers);
}

static void countBytes(GLsizeiptr size) {
    if (!watch.drawing) watch.cost.bytes += static_cast<uint64_t>(size);
}

static void APIENTRY watchData(GLenum target, GLsizeiptr size, const void* data, GLenum usage) {
    countBytes(size);
    watch.real.BufferData(target, size, data, usage);
}

static void APIENTRY watchSubData(GLenum target, GLintptr offset, GLsizeiptr size, const void* data) {
    countBytes(size);
    watch.real.BufferSubData(target, offset, size, data);
}

static void watchCalls() {
    watch.real = gl;
    gl.Clear = watchClear;
    gl.BufferData = watchData;
    gl.BufferSubData = watchSubData;
}

// --- The game

struct Game {
    SDL_Window* window = nullptr;
    App app;
    Input input;
    std::vector<FrameCost> frames; // since the last show
};

static bool openGame(Game& game) {
    SDL_setenv("SDL_VIDEODRIVER", "offscreen", 0);
    SDL_setenv("SDL_AUDIODRIVER", "dummy", 0);
    if (SDL_Init(SDL_INIT_VIDEO | SDL_INIT_EVENTS) != 0) return false;
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_MAJOR_VERSION, 3);
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_MINOR_VERSION, 3);
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_PROFILE_MASK, SDL_GL_CONTEXT_PROFILE_CORE);
    SDL_GL_SetAttribute(SDL_GL_DEPTH_SIZE, 24);
    SDL_GL_SetAttribute(SDL_GL_MULTISAMPLEBUFFERS, 1);
    SDL_GL_SetAttribute(SDL_GL_MULTISAMPLESAMPLES, 4);
    game.window = SDL_CreateWindow("Orlavane", 0, 0, WIDTH, HEIGHT, SDL_WINDOW_OPENGL);
    if (!game.window || !SDL_GL_CreateContext(game.window) || !loadGlFunctions()) return false;
    SDL_GL_SetSwapInterval(0);
    std::string notes;
    if (!appInit(game.app, "no such folder/", notes)) return false;
    game.input.drawableWidth = WIDTH;
    game.input.drawableHeight = HEIGHT;
    watchCalls();
    return true;
}

static void runFrame(
    Game& game, const std::function<void()>& change = [] {}) {
    watch.cost = {};
    watch.drawing = false;
    const double processStart = milliseconds(CLOCK_PROCESS_CPUTIME_ID);
    watch.threadStart = milliseconds(CLOCK_THREAD_CPUTIME_ID);
    change();
    stepFrame(game.app, game.input, FRAME_TIME);
    SDL_GL_SwapWindow(game.window);
    gl.Finish();
    watch.cost.thread = milliseconds(CLOCK_THREAD_CPUTIME_ID) - watch.threadStart;
    watch.cost.process = milliseconds(CLOCK_PROCESS_CPUTIME_ID) - processStart;
    game.frames.push_back(watch.cost);
    game.input.leftPressed = game.input.leftReleased = 0;
}

// A stopped game on the middle of the city, with everything drawn.
static void show(Game& game, const City& city) {
    newCity(game.app);
    game.app.tutorialStep = -1;
    game.app.city = city;
    setSpeed(game.app, 0);
    game.input.mouseX = WIDTH / 2.0f; // on the land, and at no edge
    game.input.mouseY = HEIGHT / 2.0f;
    for (int frame = 0; frame < 3; frame++) runFrame(game);
    game.frames.clear();
}

static void pointAt(Game& game, int x, int y) {
    FrameParams params;
    buildFrameParams(params, game.app, game.input, 0.0f);
    const float worldX = (static_cast<float>(x) + 0.5f) * CELL_WIDTH;
    const float worldZ = (static_cast<float>(y) + 0.5f) * CELL_WIDTH;
    const Vec3 seen =
        transformPoint(params.viewProj, {worldX, heightAt(game.app.city, worldX, worldZ), worldZ});
    game.input.mouseX = (seen.x + 1.0f) / 2.0f * WIDTH;
    game.input.mouseY = (1.0f - seen.y) / 2.0f * HEIGHT;
}

// As a hand does it: pressed here, moved there within a frame, let go.
static void drag(Game& game, Tool tool, int x0, int y0, int x1, int y1) {
    setTool(game.app, tool);
    pointAt(game, x0, y0);
    game.input.leftPressed = game.input.leftHeld = 1;
    runFrame(game);
    pointAt(game, x1, y1);
    runFrame(game);
    game.input.leftHeld = 0;
    game.input.leftReleased = 1;
    runFrame(game);
    runFrame(game);
}

// --- What changes

constexpr int LEFT = 43; // of a square of 10 by 10 cells in the middle of the map
constexpr int TOP = 43;
constexpr int RIGHT = 52;
constexpr int BOTTOM = 52;
constexpr int STREET_LEFT = 38; // of a row of 20 cells
constexpr int STREET_RIGHT = 57;
constexpr int STREET_ROW = 48;

static City cleared(City city, int x0, int y0, int x1, int y1) {
    for (int y = y0; y <= y1; y++)
        for (int x = x0; x <= x1; x++)
            while (bulldoze(city, x, y)) {
            }
    return city;
}

static void changeNothing(Game& game, const City& city) {
    show(game, city);
    for (int frame = 0; frame < 5; frame++) runFrame(game);
}

static void passDays(Game& game, const City& city) {
    show(game, city);
    for (int day = 0; day < DAYS; day++) {
        setSpeed(game.app, 1);
        game.app.dayTimer = 45.0f; // a whole day
        runFrame(game);
        setSpeed(game.app, 0);
    }
}

static void dragStreet(Game& game, const City& city) {
    show(game, cleared(city, STREET_LEFT, STREET_ROW, STREET_RIGHT, STREET_ROW));
    drag(game, TOOL_STREET, STREET_LEFT, STREET_ROW, STREET_RIGHT, STREET_ROW);
}

static void dragBulldozer(Game& game, const City& city) {
    show(game, city);
    drag(game, TOOL_BULLDOZE, LEFT, TOP, RIGHT, BOTTOM);
}

static void bulldozeEverything(Game& game, const City& city) {
    show(game, city);
    setTool(game.app, TOOL_BULLDOZE);
    runFrame(game, [&] { applyToolRect(game.app, 0, 0, GRID_SIZE - 1, GRID_SIZE - 1); });
}

static void dragZone(Game& game, const City& city) {
    show(game, cleared(city, LEFT, TOP, RIGHT, BOTTOM));
    drag(game, TOOL_RESIDENTIAL_ZONE, LEFT, TOP, RIGHT, BOTTOM);
}

static void cycleOverlays(Game& game, const City& city) {
    show(game, city);
    for (int i = 0; i < OVERLAY_COUNT; i++) runFrame(game, [&] { cycleOverlay(game.app); });
}

static void turnSeasons(Game& game, const City& city) {
    show(game, city);
    for (const int day : {SUMMER_DAY, WINTER_DAY}) runFrame(game, [&] { game.app.city.calendarDay = day; });
}

// --- The table

struct Change {
    const char* name;
    void (*play)(Game& game, const City& city);
};

constexpr Change CHANGES[] = {
    {"nothing changes", changeNothing},
    {"a day, the worst of 30", passDays},
    {"street, 20 cells in one move", dragStreet},
    {"bulldozer, 10 by 10", dragBulldozer},
    {"bulldozer, everything", bulldozeEverything},
    {"zone, 10 by 10", dragZone},
    {"overlay", cycleOverlays},
    {"season", turnSeasons},
};

// The worst frame, each frame as the calmest run had it: others use the machine too.
static FrameCost worstFrame(Game& game, const City& city, const Change& change, int runs) {
    std::vector<FrameCost> least;
    for (int run = 0; run < runs; run++) {
        change.play(game, city);
        if (run == 0) least = game.frames;
        for (size_t i = 0; i < least.size(); i++) {
            least[i].update = std::min(least[i].update, game.frames[i].update);
            least[i].thread = std::min(least[i].thread, game.frames[i].thread);
            least[i].process = std::min(least[i].process, game.frames[i].process);
        }
    }
    return *std::max_element(least.begin(), least.end(),
                             [](const FrameCost& a, const FrameCost& b) { return a.update < b.update; });
}

static void printTable(Game& game, const char* name, const City& city, int runs) {
    std::printf("\n%s: %d citizens, %zu buildings\n\n", name, city.population, city.buildings.size());
    std::printf("| worst frame | until drawing begins | calling thread | all threads | sent "
                "|\n|---|---|---|---|---|\n");
    for (const Change& change : CHANGES) {
        const FrameCost cost = worstFrame(game, city, change, runs);
        std::printf("| %s | %.1f ms | %.0f ms | %.0f ms | %.2f MB |\n", change.name, cost.update, cost.thread,
                    cost.process, static_cast<double>(cost.bytes) * 1e-6);
        std::fflush(stdout);
    }
}

int main(int argc, char** argv) {
    const int runs = argc > 1 ? std::max(std::atoi(argv[1]), 1) : 3;
    static Game game;
    if (!openGame(game)) {
        std::fprintf(stderr, "no OpenGL 3.3: %s\n", SDL_GetError());
        return 1;
    }
    printTable(game, "town", townOf5000(), runs);
    printTable(game, "full map", bigCity(), runs);
    return 0;
}
