#include "sim/networks.h"

#include "sim/building_kinds.h"

#include <algorithm>
#include <cstdlib>
#include <tuple>

// What a source serves: buildings, and the half side of its square reach in cells.
struct SourceRow {
    int kind;
    int capacity;
    int reach;
};

static constexpr std::array<SourceRow, 4> SOURCE_ROWS = {{
    {KIND_GAS_POWER_PLANT, 150, 30},
    {KIND_SOLAR_FARM, 45, 16},
    {KIND_WIND_TURBINE, 60, 22},
    {KIND_WATER_PUMP, 130, 20},
}};

static bool isSource(int kind) { return kind >= KIND_GAS_POWER_PLANT && kind <= KIND_WATER_PUMP; }
static bool isWaterSource(int kind) { return kind == KIND_WATER_PUMP; }
static const SourceRow& sourceRow(int kind) { return SOURCE_ROWS[kind - KIND_GAS_POWER_PLANT]; }

static int chebyshev(int x0, int y0, int x1, int y1) {
    return std::max(std::abs(x0 - x1), std::abs(y0 - y1));
}

// Takes memory for as many sources as there are buildings, so that a day on which one is finished takes none.
static void reserveSources(NetworkMemory& memory, size_t count) {
    memory.sources.reserve(count);
    for (NetworkReach* reach : {&memory.power, &memory.water}) {
        reach->piles.reserve(count);
        reach->heads.reserve(count);
    }
}

// Lists the active sources with all that they have to give. True if they are others than in the run before.
static bool collectSources(City& city) {
    std::vector<NetworkSource>& sources = city.networkMemory.sources;
    size_t count = 0;
    bool changed = false;
    for (const Building& building : city.buildings) {
        if (!isSource(building.kind) || !isFinished(building) || !building.roadAccess) continue;
        if (count == sources.size()) sources.emplace_back();
        NetworkSource& source = sources[count++];
        changed |= source.x != building.x || source.y != building.y || source.kind != building.kind;
        source.x = building.x;
        source.y = building.y;
        source.kind = building.kind;
        source.remaining = sourceRow(building.kind).capacity;
    }
    changed |= count != sources.size();
    sources.resize(count);
    return changed;
}

static void buildPiles(std::vector<NetworkSource>& sources, bool water, NetworkReach& reach) {
    std::vector<int32_t>& sorted = reach.heads;
    sorted.clear();
    for (size_t i = 0; i < sources.size(); i++)
        if (isWaterSource(sources[i].kind) == water) sorted.push_back(static_cast<int32_t>(i));
    const auto place = [&sources](int32_t i) {
        return std::tuple(sources[i].y, sources[i].x, sources[i].kind);
    };
    std::sort(sorted.begin(), sorted.end(), [&place](int32_t a, int32_t b) {
        return std::tuple_cat(place(a), std::tuple(a)) < std::tuple_cat(place(b), std::tuple(b));
    });

    reach.piles.clear();
    for (size_t i = 0; i < sorted.size(); i++) {
        sources[sorted[i]].next = -1;
        if (i > 0 && place(sorted[i - 1]) == place(sorted[i]))
            sources[sorted[i - 1]].next = sorted[i];
        else
            reach.piles.push_back(sorted[i]);
    }
}

// Draws the reach of every source, also of one that has nothing left to give, and finds the nearest to each
// cell, the first in the list of equals.
static void drawReach(const std::vector<NetworkSource>& sources, NetworkReach& reach) {
    std::array<uint8_t, CELL_COUNT> best;
    best.fill(255);
    std::fill(reach.field.begin(), reach.field.end(), 0.0f);
    std::fill(reach.nearest.begin(), reach.nearest.end(), -1);
    for (const int32_t pile : reach.piles) {
        const NetworkSource& source = sources[pile];
        const int radius = sourceRow(source.kind).reach;
        const int x0 = std::max(source.x - radius, 0);
        const int x1 = std::min(source.x + radius, GRID_SIZE - 1);
        const int y0 = std::max(source.y - radius, 0);
        const int y1 = std::min(source.y + radius, GRID_SIZE - 1);
        for (int y = y0; y <= y1; y++)
            for (int x = x0; x <= x1; x++) {
                const int cell = cellIndex(x, y);
                const int distance = chebyshev(source.x, source.y, x, y);
                const float value = 1.0f - static_cast<float>(distance) / static_cast<float>(radius + 1);
                reach.field[cell] = std::max(reach.field[cell], value);
                if (distance > best[cell] || (distance == best[cell] && pile > reach.nearest[cell])) continue;
                best[cell] = static_cast<uint8_t>(distance);
                reach.nearest[cell] = pile;
            }
    }
}

static void updateSources(City& city) {
    NetworkMemory& memory = city.networkMemory;
    reserveSources(memory, city.buildings.size());
    if (collectSources(city)) {
        buildPiles(memory.sources, false, memory.power);
        buildPiles(memory.sources, true, memory.water);
        drawReach(memory.sources, memory.power);
        drawReach(memory.sources, memory.water);
    }
    memory.power.heads = memory.power.piles;
    memory.water.heads = memory.water.piles;
}

// The nearest source that reaches the place and has something left, the first in the list of equals; -1 for
// none.
static int searchSource(const std::vector<NetworkSource>& sources, NetworkReach& reach, int x, int y) {
    int nearest = -1;
    int best = 0;
    for (int32_t& head : reach.heads) {
        while (head >= 0 && sources[head].remaining == 0) head = sources[head].next;
        if (head < 0) continue;
        const NetworkSource& source = sources[head];
        const int distance = chebyshev(source.x, source.y, x, y);
        if (distance > sourceRow(source.kind).reach) continue;
        if (nearest >= 0 && (distance > best || (distance == best && head > nearest))) continue;
        nearest = head;
        best = distance;
    }
    return nearest;
}

// Takes one unit for the building. Most find the nearest source of their cell still full enough; only the
// others search.
static bool takeUnit(std::vector<NetworkSource>& sources, NetworkReach& reach, const Building& building) {
    const bool onMap = inMap(building.x, building.y);
    int source = onMap ? reach.nearest[cellIndex(building.x, building.y)] : -1;
    if (onMap && source < 0) return false;
    if (!onMap || sources[source].remaining == 0)
        source = searchSource(sources, reach, building.x, building.y);
    if (source < 0) return false;
    sources[source].remaining--;
    return true;
}

// Parks and utilities serve themselves.
static bool needsNoNetwork(int kind) { return kind == KIND_PARK || isSource(kind); }

static bool needsWater(int kind) { return kind <= KIND_SCHOOL; }

// Water is taken also by a building that gets no power.
static void serveBuilding(NetworkMemory& memory, Building& building) {
    const bool finished = isFinished(building);
    if (needsNoNetwork(building.kind)) {
        building.powered = building.watered = 1;
        building.working = finished && building.roadAccess;
        return;
    }
    building.powered = finished && takeUnit(memory.sources, memory.power, building);
    building.watered =
        !needsWater(building.kind) || (finished && takeUnit(memory.sources, memory.water, building));
    building.working = building.powered && building.watered && building.roadAccess;
}

int adjacentRoadCell(const City& city, int x, int y) {
    for (const CellStep& step : NEIGHBOURS)
        if (cellAt(city, x + step.x, y + step.y).road) return cellIndex(x + step.x, y + step.y);
    return -1;
}

void updateRoadAccess(City& city) {
    for (Building& building : city.buildings) building.roadAccess = touchesRoad(city, building.x, building.y);
}

void updateUtilities(City& city) {
    updateRoadAccess(city);
    updateSources(city);
    for (Building& building : city.buildings) serveBuilding(city.networkMemory, building);
    city.powerField = city.networkMemory.power.field;
    city.waterField = city.networkMemory.water.field;
    city.buildingsDirty = city.overlayDirty = 1;
}
