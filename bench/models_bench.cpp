// The building mesh: what it costs from nothing, after one change, and on a day on which nothing changed.
#include "sim/daily_tick.h"
#include "sim/grown_cities.h"
#include "view/building_mesh.h"
#include "view/building_mesh_cache.h"

#include <benchmark/benchmark.h>

static const City& grownCity(const benchmark::State& state) {
    static const City town = townOf5000();
    static const City big = bigCity();
    return state.range(0) ? big : town;
}

static void countVertices(benchmark::State& state, const City& city) {
    MeshBuilder builder;
    buildBuildingMesh(builder, city);
    state.counters["buildings"] = static_cast<double>(city.buildings.size());
    state.counters["vertices"] = static_cast<double>(builder.size());
    state.counters["bytes"] = static_cast<double>(builder.size() * sizeof(Vertex));
}

static void fromNothing(benchmark::State& state) {
    const City& city = grownCity(state);
    for (auto _ : state) {
        BuildingMeshCache cache;
        benchmark::DoNotOptimize(updateBuildingMeshCache(cache, city));
    }
    countVertices(state, city);
}

// The building in the middle of the list gains and loses a level, so that all behind it moves.
static void oneLevelChanged(benchmark::State& state) {
    City city = grownCity(state);
    BuildingMeshCache cache;
    updateBuildingMeshCache(cache, city);
    Building& building = city.buildings[city.buildings.size() / 2];
    building.kind = KIND_HOMES;
    for (auto _ : state) {
        building.level = building.level == 2 ? 3 : 2;
        benchmark::DoNotOptimize(updateBuildingMeshCache(cache, city));
    }
}

// What a day of the running city costs the view.
static void oneDayPassed(benchmark::State& state) {
    City city = grownCity(state);
    BuildingMeshCache cache;
    updateBuildingMeshCache(cache, city);
    for (auto _ : state) {
        state.PauseTiming();
        dailyTick(city);
        state.ResumeTiming();
        benchmark::DoNotOptimize(updateBuildingMeshCache(cache, city));
    }
}

// Level changes at both ends of the list, so that everything between them is copied.
static void scatteredLevelsChanged(benchmark::State& state) {
    City city = grownCity(state);
    BuildingMeshCache cache;
    updateBuildingMeshCache(cache, city);
    for (auto _ : state) {
        for (size_t i = 0; i < city.buildings.size(); i += city.buildings.size() / 8)
            city.buildings[i].level = city.buildings[i].level == 2 ? 3 : 2;
        benchmark::DoNotOptimize(updateBuildingMeshCache(cache, city));
    }
}

static void nothingChanged(benchmark::State& state) {
    const City& city = grownCity(state);
    BuildingMeshCache cache;
    updateBuildingMeshCache(cache, city);
    for (auto _ : state) benchmark::DoNotOptimize(updateBuildingMeshCache(cache, city));
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
BENCHMARK(scatteredLevelsChanged)->ArgName("big")->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);
BENCHMARK(oneDayPassed)->ArgName("big")->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond)->Iterations(20);
BENCHMARK(nothingChanged)->ArgName("big")->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);
