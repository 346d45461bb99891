// What a frame costs on the processor while the player builds: traffic, and the meshes that became stale.
#include "silent_gl.h"
#include "sim/build_tools.h"
#include "sim/grown_cities.h"
#include "sim/map_generation.h"
#include "view/street/street_life_mesh.h"
#include "view/world/rebuild.h"
#include "view/world/road_mesh.h"
#include "view/world/trees.h"

#include <benchmark/benchmark.h>

// --- The cities

static const City& fullMap() {
    static const City city = bigCity();
    return city;
}

static StreetLife busyStreets(const City& city) {
    StreetLife life;
    for (int i = 0; i < 300; i++) updateStreetLife(life, city, 0.12f, 5000);
    return life;
}

// --- Traffic

static void BM_updateStreetLife(benchmark::State& state) {
    const City& city = fullMap();
    StreetLife life = busyStreets(city);
    for (auto _ : state) updateStreetLife(life, city, 1.0f / 60.0f, 5000);
    state.counters["vehicles"] = static_cast<double>(life.vehicles.size());
}
BENCHMARK(BM_updateStreetLife)->Unit(benchmark::kMicrosecond);

static void BM_buildStreetLifeMesh(benchmark::State& state) {
    openGraphics();
    const City& city = fullMap();
    const StreetLife life = busyStreets(city);
    WorldMeshes meshes;
    for (auto _ : state) buildStreetLifeMesh(meshes, city, life);
    state.counters["vehicles"] = static_cast<double>(life.vehicles.size());
}
BENCHMARK(BM_buildStreetLifeMesh)->Unit(benchmark::kMicrosecond);

// --- Meshes

static void BM_buildRoadMesh(benchmark::State& state) {
    const City& city = fullMap();
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
    City city = fullMap();
    WorldMeshes meshes;

    Updates() {
        openGraphics();
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
        for (float& height : updates.city.heights) height += 1.0f;
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

// A street cell through woods and zones: chunk, roads and trees change at once.
static void BM_updateStreetThroughTheWoods(benchmark::State& state) {
    Updates updates;
    City& city = updates.city;
    generateMap(city, 0);
    Cell& cell = city.cells[cellIndex(16, 16)];
    for (auto _ : state) {
        cell.road ^= ROAD_STREET;
        cell.hasTrees = cell.road == ROAD_NONE;
        cell.zone = cell.road == ROAD_NONE ? ZONE_RESIDENTIAL : ZONE_NONE;
        markCellDirty(city, 16, 16);
        raiseMarks(city);
        updateWorldMeshes(updates.meshes, city);
    }
}
BENCHMARK(BM_updateStreetThroughTheWoods)->Unit(benchmark::kMicrosecond);

// The tool, the networks, the traffic and the meshes, with a street cell laid or taken away each frame.
static void BM_frameOfAStreetDrag(benchmark::State& state) {
    Updates updates;
    City& city = updates.city;
    StreetLife life = busyStreets(city);
    const auto street = std::find_if(city.cells.begin(), city.cells.end(), [](const Cell& cell) {
        return cell.road == ROAD_STREET && !cell.busStop;
    });
    const int index = static_cast<int>(street - city.cells.begin());
    const int x = index % GRID_SIZE;
    const int y = index / GRID_SIZE;
    city.money = 1e12;
    for (auto _ : state) {
        const bool changed = street->road ? bulldoze(city, x, y) : placeRoad(city, x, y, ROAD_STREET);
        if (!changed) state.SkipWithError("the tool refused");
        updateStreetLife(life, city, 1.0f / 60.0f, 5000);
        updateWorldMeshes(updates.meshes, city);
        buildStreetLifeMesh(updates.meshes, city, life);
    }
    state.counters["buildings"] = static_cast<double>(city.buildings.size());
}
BENCHMARK(BM_frameOfAStreetDrag)->Unit(benchmark::kMicrosecond);
