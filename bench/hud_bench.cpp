// What the interface of the game costs a frame on the processor, from the first shape to the flush, with each
// view of the right panel. The graphics card is a table of functions that draws nothing.
#include "app/app.h"
#include "app/tools.h"
#include "screens/game/game_screen.h"
#include "screens/menus/end_screen.h"
#include "sim/city_stats.h"
#include "sim/grown_cities.h"
#include "view/gl/gl.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <type_traits>

// --- The graphics card

template<typename Result, typename... Arguments> static Result APIENTRY doNothing(Arguments...) {
    if constexpr (!std::is_void_v<Result>) return Result();
}

template<typename Result, typename... Arguments> static void silence(Result(APIENTRY*& slot)(Arguments...)) {
    slot = doNothing<Result, Arguments...>;
}

static void APIENTRY giveName(GLsizei, GLuint* name) {
    static GLuint last = 0;
    *name = ++last;
}

static void openGraphics() {
#define SILENCE_FUNCTION(name) silence(gl.name);
    GL_FUNCTIONS(SILENCE_FUNCTION)
#undef SILENCE_FUNCTION
    gl.GenTextures = giveName; // a text without one counts as not drawn
}

// --- The game

static App& game() {
    static App app;
    if (app.ui.fonts) return app;
    openGraphics();
    fontsInit(app.fonts, nullptr);
    app.ui.fonts = &app.fonts;
    app.city = townOf5000();
    app.screen = SCREEN_GAME;
    return app;
}

static void resetView(App& app) {
    app.currentPanel = PANEL_NONE;
    app.currentOverlay = OVERLAY_TRAFFIC;
    app.tutorialStep = -1;
    app.paused = false;
    app.paintDistrict = 1;
    clearSelection(app);
    setCategory(app, CATEGORY_SERVICES);
    showStatus(app, STATUS_BANKRUPT, 0); // a message that wraps
}

static void drawFrame(App& app, const Input& input, bool end) {
    uiBeginFrame(app.ui, input.drawableWidth, input.drawableHeight, input);
    drawGameScreen(app, input);
    if (end) drawEndScreen(app, input);
    uiFlush(app.ui);
}

static void measure(benchmark::State& state, void (*prepare)(App& app), bool end = false) {
    App& app = game();
    resetView(app);
    prepare(app);
    Input input;
    input.drawableWidth = 1920;
    input.drawableHeight = 1080;
    drawFrame(app, input, end); // fills the caches
    for (auto _ : state) drawFrame(app, input, end);
    state.counters["vertices"] = static_cast<double>(app.ui.vertices.size());
    state.counters["draws"] = static_cast<double>(app.ui.commands.size());
}

static void selectFirstBuilding(App& app) {
    const Building& building = app.city.buildings.front();
    selectCell(app, building.x, building.y);
}

static void selectFirstRoad(App& app) {
    const auto& cells = app.city.cells;
    const auto road =
        std::find_if(cells.begin(), cells.end(), [](const Cell& cell) { return cell.road != 0; });
    const int index = static_cast<int>(road - cells.begin());
    selectCell(app, index % GRID_SIZE, index / GRID_SIZE);
}

// --- The views

static void BM_cityOverview(benchmark::State& state) {
    measure(state, [](App&) {});
}
static void BM_budgetPanel(benchmark::State& state) {
    measure(state, [](App& app) { app.currentPanel = PANEL_BUDGET; });
}
static void BM_financePanel(benchmark::State& state) {
    measure(state, [](App& app) { app.currentPanel = PANEL_FINANCE; });
}
static void BM_statisticsPanel(benchmark::State& state) {
    measure(state, [](App& app) { app.currentPanel = PANEL_STATISTICS; });
}
static void BM_buildingInspector(benchmark::State& state) { measure(state, selectFirstBuilding); }
static void BM_cellInspector(benchmark::State& state) { measure(state, selectFirstRoad); }
static void BM_districtPanel(benchmark::State& state) {
    measure(state, [](App& app) { setCategory(app, CATEGORY_DISTRICTS); });
}
static void BM_tutorialCard(benchmark::State& state) {
    measure(state, [](App& app) { app.tutorialStep = 2; });
}
static void BM_pauseMenu(benchmark::State& state) {
    measure(state, [](App& app) { app.paused = true; });
}
static void BM_endScreen(benchmark::State& state) {
    measure(
        state, [](App&) {}, true);
}
BENCHMARK(BM_cityOverview)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_budgetPanel)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_financePanel)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_statisticsPanel)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_buildingInspector)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_cellInspector)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_districtPanel)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_tutorialCard)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_pauseMenu)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_endScreen)->Unit(benchmark::kMicrosecond);

// Once in every frame, for the bars, the mission and the views.
static void BM_computeStats(benchmark::State& state) {
    const App& app = game();
    for (auto _ : state) benchmark::DoNotOptimize(computeStats(app.city));
}
BENCHMARK(BM_computeStats)->Unit(benchmark::kMicrosecond);
