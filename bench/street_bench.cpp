// What a frame costs on the processor while the player builds: traffic, and the meshes that became stale. The
// graphics card is a table of functions that copies what it is given, as a driver does, and draws nothing.
#include "sim/build_tools.h"
#include "sim/map_generation.h"
#include "view/gl.h"
#include "view/rebuild.h"
#include "view/road_mesh.h"
#include "view/street_life_mesh.h"
#include "view/trees.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstring>
#include <type_traits>

// --- The graphics card

template<typename Function> struct Silent;
template<typename Result, typename... Arguments> struct Silent<Result(APIENTRY*)(Arguments...)> {
    static Result APIENTRY call(Arguments...) {
        if constexpr (!std::is_void_v<Result>) return Result{};
    }
};

static void APIENTRY copyData(GLenum, GLsizeiptr size, const void* data, GLenum) {
    static std::vector<uint8_t> store;
    store.resize(std::max(store.size(), static_cast<size_t>(size)));
    if (size > 0) std::memcpy(store.data(), data, static_cast<size_t>(size));
}

static void APIENTRY copySubData(GLenum target, GLintptr, GLsizeiptr size, const void* data) {
    copyData(target, size, data, 0);
}

static void silenceGraphics() {
#define GL_SILENCE(name) gl.name = Silent<decltype(gl.name)>::call;
    GL_FUNCTIONS(GL_SILENCE)
#undef GL_SILENCE
    gl.BufferData = copyData;
    gl.BufferSubData = copySubData;
}

// --- The cities

// A whole map of blocks, every free cell built on. The west keeps its woods.
static City bigCity() {
    City city;
    generateMap(city, 0);
    city.money = 1e12;
    for (int y = 0; y < GRID_SIZE; y++)
        for (int x = 24; x < GRID_SIZE; x++) {
            if (x % 8 == 0 || y % 3 == 0) {
                Cell& cell = city.cells[cellIndex(x, y)];
                cell.road = ROAD_STREET;
                cell.hasTrees = 0;
            } else {
                placeBuilding(city, x, y, KIND_PARK);
            }
        }
    city.cells[cellIndex(24, 24)].busStop = 1;
    return city;
}

static StreetLife busyStreets(const City& city) {
    StreetLife life;
    for (int i = 0; i < 300; i++) updateStreetLife(life, city, 0.12f, 5000);
    return life;
}

// --- Traffic

static void BM_updateStreetLife(benchmark::State& state) {
    const City city = bigCity();
    StreetLife life = busyStreets(city);
    for (auto _ : state) updateStreetLife(life, city, 1.0f / 60.0f, 5000);
    state.counters["vehicles"] = static_cast<double>(life.vehicles.size());
}
BENCHMARK(BM_updateStreetLife)->Unit(benchmark::kMicrosecond);

static void BM_buildStreetLifeMesh(benchmark::State& state) {
    silenceGraphics();
    const City city = bigCity();
    const StreetLife life = busyStreets(city);
    WorldMeshes meshes;
    for (auto _ : state) buildStreetLifeMesh(meshes, city, life);
    state.counters["vehicles"] = static_cast<double>(life.vehicles.size());
}
BENCHMARK(BM_buildStreetLifeMesh)->Unit(benchmark::kMicrosecond);

// --- Meshes

static void BM_buildRoadMesh(benchmark::State& state) {
    const City city = bigCity();
    for (auto _ : state) {
        MeshBuilder builder;
        buildRoadMesh(builder, city, OVERLAY_NORMAL);
        benchmark::DoNotOptimize(builder.data());
        state.counters["roads"] = static_cast<double>(builder.size() / 6);
    }
}
BENCHMARK(BM_buildRoadMesh)->Unit(benchmark::kMicrosecond);

static void BM_buildTreeMesh(benchmark::State& state) {
    City city;
    generateMap(city, 0);
    for (auto _ : state) {
        MeshBuilder builder;
        buildTreeMesh(builder, city);
        benchmark::DoNotOptimize(builder.data());
        state.counters["trees"] = static_cast<double>(builder.size() / 36);
    }
}
BENCHMARK(BM_buildTreeMesh)->Unit(benchmark::kMicrosecond);

// --- Whole updates

struct Updates {
    City city = bigCity();
    WorldMeshes meshes;

    Updates() {
        silenceGraphics();
        updateWorldMeshes(meshes, city);
    }
};

static void raiseMarks(City& city) {
    city.overlayDirty = city.roadsDirty = city.zonesDirty = city.buildingsDirty = 1;
}

static void BM_updateNothingStale(benchmark::State& state) {
    Updates updates;
    for (auto _ : state) updateWorldMeshes(updates.meshes, updates.city);
}
BENCHMARK(BM_updateNothingStale)->Unit(benchmark::kMicrosecond);

// What the networks pass leaves behind when it changed nothing.
static void BM_updateStaleWithoutChange(benchmark::State& state) {
    Updates updates;
    for (auto _ : state) {
        raiseMarks(updates.city);
        updateWorldMeshes(updates.meshes, updates.city);
    }
}
BENCHMARK(BM_updateStaleWithoutChange)->Unit(benchmark::kMicrosecond);

static void BM_updateEverythingChanged(benchmark::State& state) {
    Updates updates;
    for (auto _ : state) {
        for (float& height : updates.city.heights) height = -height;
        raiseMarks(updates.city);
        updateWorldMeshes(updates.meshes, updates.city);
    }
}
BENCHMARK(BM_updateEverythingChanged)->Unit(benchmark::kMicrosecond);

static void BM_updateOneZone(benchmark::State& state) {
    Updates updates;
    City& city = updates.city;
    for (auto _ : state) {
        city.cells[cellIndex(15, 15)].zone ^= ZONE_RESIDENTIAL;
        markCellDirty(city, 15, 15);
        city.zonesDirty = 1;
        updateWorldMeshes(updates.meshes, city);
    }
}
BENCHMARK(BM_updateOneZone)->Unit(benchmark::kMicrosecond);

// A frame of a street drag through the woods and its zones, without the rules: one cell laid or taken away.
static void BM_frameOfAStreetDrag(benchmark::State& state) {
    Updates updates;
    City& city = updates.city;
    StreetLife life = busyStreets(city);
    Cell& cell = city.cells[cellIndex(16, 16)];
    for (auto _ : state) {
        cell.road ^= ROAD_STREET;
        cell.hasTrees = cell.road == ROAD_NONE;
        cell.zone = cell.road == ROAD_NONE ? ZONE_RESIDENTIAL : ZONE_NONE;
        markCellDirty(city, 16, 16);
        raiseMarks(city);
        updateStreetLife(life, city, 1.0f / 60.0f, 5000);
        updateWorldMeshes(updates.meshes, city);
        buildStreetLifeMesh(updates.meshes, city, life);
    }
    state.counters["buildings"] = static_cast<double>(city.buildings.size());
}
BENCHMARK(BM_frameOfAStreetDrag)->Unit(benchmark::kMicrosecond);
