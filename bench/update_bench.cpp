// What the update client and the launcher's file list cost, and what a frame costs while a server keeps the
// worker waiting: it must be the same as without one.
#include "app/update_client.h"
#include "maintenance/sha256.h"
#include "maintenance/test_build.h"
#include "maintenance/web_server.h"
#include "program/frame.h"
#include "view/gl/gl.h"

#include <benchmark/benchmark.h>

#include <SDL.h>

#include <algorithm>
#include <cstdlib>

constexpr int WIDTH = 320; // pixels: small, so that a frame is short and any wait stands out
constexpr int HEIGHT = 200;

static void benchSha256(benchmark::State& state) {
    const std::string data(1 << 20, 'x');
    for (auto _ : state) benchmark::DoNotOptimize(sha256Text(data));
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(data.size()));
}
BENCHMARK(benchSha256)->Unit(benchmark::kMillisecond);

static void benchParseManifest(benchmark::State& state) {
    UpdateManifest manifest;
    const std::string text = R"({"version": "0.3", "date": "2027-01-01", "sha256": ")" + sha256Text("") +
                             R"(", "file": "Orlavane-setup.exe"})";
    for (auto _ : state) benchmark::DoNotOptimize(parseManifest(text, manifest));
}
BENCHMARK(benchParseManifest);

static void benchUpdatePoll(benchmark::State& state) {
    App app;
    app.updateTask = std::make_shared<UpdateTask>();
    for (auto _ : state) {
        updatePoll(app);
        benchmark::DoNotOptimize(app.updateState);
    }
}
BENCHMARK(benchUpdatePoll);

static void benchListFiles(benchmark::State& state) {
    const TempDir dir;
    for (int64_t i = 0; i < state.range(0); i++) writeText(dir.file("file" + std::to_string(i)), "x");
    for (auto _ : state) benchmark::DoNotOptimize(listFiles(dir.path.string()));
}
BENCHMARK(benchListFiles)->Arg(20)->Arg(10000)->Unit(benchmark::kMillisecond);

static SDL_Window* openWindow() {
    setenv("SDL_VIDEODRIVER", "offscreen", 0);
    SDL_Init(SDL_INIT_VIDEO);
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_MAJOR_VERSION, 3);
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_MINOR_VERSION, 3);
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_PROFILE_MASK, SDL_GL_CONTEXT_PROFILE_CORE);
    SDL_Window* window = SDL_CreateWindow("bench", 0, 0, WIDTH, HEIGHT, SDL_WINDOW_OPENGL);
    SDL_GL_CreateContext(window);
    loadGlFunctions(SDL_GL_GetProcAddress);
    return window;
}

struct ServerCase {
    const char* name;
    const char* address; // a path of the odd server, or a whole address
};

static constexpr ServerCase SERVERS[] = {{"no server", ""},
                                         {"a silent server", "/silence"},
                                         {"a byte a second", "/drip/1000"},
                                         {"a name that does not resolve", "http://no-such-name.invalid/m"}};

// Frames of the launcher from the start on, each with its picture finished.
static void benchFrame(benchmark::State& state) {
    static SDL_Window* window = openWindow();
    const ServerCase& serverCase = SERVERS[state.range(0)];
    auto server = std::make_unique<WebServer>();
    const std::string address = serverCase.address;
    setManifestUrl(address.starts_with('/') ? server->url(address) : address);
    const TempDir dir;
    App app;
    std::string error;
    if (!appInit(app, dir.path.string() + "/", error)) return state.SkipWithError(error.c_str());

    const std::shared_ptr<UpdateTask> task = app.updateTask;

    Input input;
    input.drawableWidth = WIDTH;
    input.drawableHeight = HEIGHT;
    for (int i = 0; i < 10; i++) stepFrame(app, input, 0.01f); // the first ones build meshes and compile
    gl.Finish();
    std::vector<double> times;
    for (auto _ : state) {
        const uint64_t start = SDL_GetPerformanceCounter();
        stepFrame(app, input, 0.01f);
        gl.Finish();
        SDL_GL_SwapWindow(window);
        times.push_back(1000.0 * static_cast<double>(SDL_GetPerformanceCounter() - start) /
                        static_cast<double>(SDL_GetPerformanceFrequency()));
    }
    std::sort(times.begin(), times.end());
    state.SetLabel(serverCase.name);
    state.counters["median_ms"] = times[times.size() / 2];
    state.counters["p99_ms"] = times[times.size() * 99 / 100];
    state.counters["longest_ms"] = times.back();
    state.counters["state"] = app.updateState;
    appShutdown(app);
    server.reset(); // and the worker has nothing more to wait for
    while (task && task->done == 0) SDL_Delay(1);
}
BENCHMARK(benchFrame)->DenseRange(0, 3)->Iterations(400)->Unit(benchmark::kMillisecond);
