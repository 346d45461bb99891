// The building meshes: what they cost from nothing, after one change, and on a day on which nothing changed.
// The graphics card copies what it is sent, and no more.
#include "silent_gl.h"
#include "sim/daily_tick.h"
#include "sim/grown_cities.h"
#include "view/world/building_mesh.h"

#include <benchmark/benchmark.h>

static const City& grownCity(const benchmark::State& state) {
    static const City town = townOf5000();
    static const City big = bigCity();
    return state.range(0) ? big : town;
}

static WorldMeshes shownMeshes(const City& city) {
    openGraphics();
    WorldMeshes meshes;
    buildBuildingMeshes(meshes, city);
    return meshes;
}

static void fromNothing(benchmark::State& state) {
    const City& city = grownCity(state);
    WorldMeshes meshes = shownMeshes(city);
    for (auto _ : state) {
        for (Mesh& block : meshes.buildingBlocks) block.fingerprint = 0;
        buildBuildingMeshes(meshes, city);
    }
    double vertices = 0.0;
    for (const Mesh& block : meshes.buildingBlocks) vertices += block.vertexCount;
    state.counters["buildings"] = static_cast<double>(city.buildings.size());
    state.counters["vertices"] = vertices;
    state.counters["bytes"] = vertices * sizeof(Vertex);
}

// The building in the middle of the list gains and loses a level.
static void oneLevelChanged(benchmark::State& state) {
    City city = grownCity(state);
    WorldMeshes meshes = shownMeshes(city);
    Building& building = city.buildings[city.buildings.size() / 2];
    building.kind = KIND_HOMES;
    for (auto _ : state) {
        building.level = building.level == 2 ? 3 : 2;
        buildBuildingMeshes(meshes, city);
    }
}

// What a day of the running city costs the view.
static void oneDayPassed(benchmark::State& state) {
    City city = grownCity(state);
    WorldMeshes meshes = shownMeshes(city);
    for (auto _ : state) {
        state.PauseTiming();
        dailyTick(city);
        state.ResumeTiming();
        buildBuildingMeshes(meshes, city);
    }
}

static void nothingChanged(benchmark::State& state) {
    const City& city = grownCity(state);
    WorldMeshes meshes = shownMeshes(city);
    for (auto _ : state) buildBuildingMeshes(meshes, city);
}

// One model alone: its time and its vertices.
static void oneModel(benchmark::State& state) {
    BuildingLook look;
    look.x = look.y = 48;
    look.kind = static_cast<uint8_t>(state.range(0));
    look.level = static_cast<uint8_t>(state.range(1));
    look.progress = static_cast<float>(state.range(2)) / 100.0f;
    MeshBuilder builder;
    for (auto _ : state) {
        builder.clear();
        addBuildingLook(builder, look);
        benchmark::DoNotOptimize(builder.data());
    }
    state.counters["vertices"] = static_cast<double>(builder.size());
}

static void everyModel(benchmark::internal::Benchmark* benchmark) {
    benchmark->ArgNames({"kind", "level", "progress"});
    for (int kind = KIND_HOMES; kind < KIND_COUNT; kind++)
        for (int level = 1; level <= (kind <= KIND_FACTORY ? 3 : 1); level++)
            benchmark->Args({kind, level, 100});
    for (const int progress : {0, 30, 90})
        for (const int kind : {KIND_HOMES, KIND_OFFICE_TOWER}) benchmark->Args({kind, 3, progress});
}

BENCHMARK(oneModel)->Apply(everyModel);
BENCHMARK(fromNothing)->ArgName("big")->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);
BENCHMARK(oneLevelChanged)->ArgName("big")->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);
BENCHMARK(oneDayPassed)->ArgName("big")->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond)->Iterations(20);
BENCHMARK(nothingChanged)->ArgName("big")->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);
