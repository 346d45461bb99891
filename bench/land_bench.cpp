// The land: made from a seed, turned into meshes, looked at and pointed at.
#include "app/picking.h"
#include "sim/map_generation.h"
#include "view/world/terrain.h"

#include <benchmark/benchmark.h>

static City generated() {
    City city;
    generateMap(city, 0);
    return city;
}

static void BM_generateMap(benchmark::State& state) {
    City city;
    for (auto _ : state) {
        generateMap(city, 0);
        benchmark::DoNotOptimize(city.heights.data());
    }
}
BENCHMARK(BM_generateMap)->Unit(benchmark::kMicrosecond);

static void BM_buildTerrainChunk(benchmark::State& state) {
    const City city = generated();
    const int overlay = static_cast<int>(state.range(0));
    for (auto _ : state) {
        MeshBuilder builder;
        buildTerrainChunk(builder, city, overlay, 14);
        benchmark::DoNotOptimize(builder.data());
    }
}
BENCHMARK(BM_buildTerrainChunk)
    ->Arg(OVERLAY_NORMAL)
    ->Arg(OVERLAY_TRAFFIC)
    ->Arg(OVERLAY_POLLUTION)
    ->Unit(benchmark::kMicrosecond);

static void BM_buildWholeTerrain(benchmark::State& state) {
    const City city = generated();
    for (auto _ : state)
        for (int chunk = 0; chunk < CHUNK_COUNT; chunk++) {
            MeshBuilder builder;
            buildTerrainChunk(builder, city, OVERLAY_NORMAL, chunk);
            benchmark::DoNotOptimize(builder.data());
        }
}
BENCHMARK(BM_buildWholeTerrain)->Unit(benchmark::kMicrosecond);

static void BM_pickCell(benchmark::State& state) {
    App app;
    app.city = generated();
    app.screen = SCREEN_GAME;
    app.camera.pitch = 0.95f;
    app.camera.distance = static_cast<float>(state.range(0));
    Input input;
    input.drawableWidth = 1280;
    input.drawableHeight = 720;
    input.mouseX = 500;
    input.mouseY = 300;
    for (auto _ : state) {
        int x;
        int y;
        benchmark::DoNotOptimize(pickCell(app, input, x, y));
    }
}
BENCHMARK(BM_pickCell)->ArgName("distance")->Arg(40)->Arg(190)->Arg(420);

// At aspect 10 the view never fits on the map, and the distance goes all the way in.
static void BM_clampCamera(benchmark::State& state) {
    const float aspect = static_cast<float>(state.range(0)) / 10.0f;
    for (auto _ : state) {
        Camera camera;
        camera.pitch = 0.52f;
        camera.distance = 420.0f;
        clampCamera(camera, aspect);
        benchmark::DoNotOptimize(camera);
    }
}
BENCHMARK(BM_clampCamera)->ArgName("aspect*10")->Arg(16)->Arg(100);
