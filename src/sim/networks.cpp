#include "sim/networks.h"

#include "sim/building_kinds.h"

#include <algorithm>
#include <cassert>
#include <cstdlib>

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

static const SourceRow& sourceRow(int kind) {
    assert(isSource(kind) && SOURCE_ROWS[kind - KIND_GAS_POWER_PLANT].kind == kind);
    return SOURCE_ROWS[kind - KIND_GAS_POWER_PLANT];
}

static int chebyshev(int x0, int y0, int x1, int y1) {
    return std::max(std::abs(x0 - x1), std::abs(y0 - y1));
}

// Lists the active sources, all of them full. Not by `working`, which is still that of the last run.
static void collectSources(City& city) {
    city.memory.power.sources.clear();
    city.memory.water.sources.clear();
    for (const Building& building : city.buildings) {
        if (!isSource(building.kind) || !isFinished(building) || !building.roadAccess) continue;
        const SourceRow& row = sourceRow(building.kind);
        NetworkMemory& network = isWaterSource(building.kind) ? city.memory.water : city.memory.power;
        network.sources.push_back({building.x, building.y, row.reach, row.capacity});
    }
}

// Draws the reach of every source and finds the nearest to each cell, unless these are the sources of the
// last run. What they have left plays no part, so that a dark building within a reach tells the player that
// capacity is short.
static void drawReach(NetworkMemory& network) {
    if (network.drawn == network.sources) return;
    network.drawn = network.sources;

    std::array<int32_t, CELL_COUNT> best;
    best.fill(GRID_SIZE);
    std::fill(network.field.begin(), network.field.end(), 0.0f);
    std::fill(network.nearest.begin(), network.nearest.end(), -1);
    for (size_t i = 0; i < network.sources.size(); i++) {
        const NetworkSource& source = network.sources[i];
        const int x0 = std::max(source.x - source.reach, 0);
        const int x1 = std::min(source.x + source.reach, GRID_SIZE - 1);
        const int y0 = std::max(source.y - source.reach, 0);
        const int y1 = std::min(source.y + source.reach, GRID_SIZE - 1);
        for (int y = y0; y <= y1; y++)
            for (int x = x0; x <= x1; x++) {
                const int cell = cellIndex(x, y);
                const int distance = chebyshev(source.x, source.y, x, y);
                // Over one more than the reach, so that its last cell is not as dark as the unreached.
                const float value =
                    1.0f - static_cast<float>(distance) / static_cast<float>(source.reach + 1);
                network.field[cell] = std::max(network.field[cell], value);
                if (distance >= best[cell]) continue;
                best[cell] = distance;
                network.nearest[cell] = static_cast<int32_t>(i);
            }
    }
}

// The nearest source that reaches the place and has something left, the first of equals; nullptr for none. No
// source is nearer than `least`, so that the first as near as that ends the search.
static NetworkSource* searchSource(std::vector<NetworkSource>& sources, int x, int y, int least) {
    NetworkSource* nearest = nullptr;
    int best = 0;
    for (NetworkSource& source : sources) {
        if (source.remaining == 0) continue;
        const int distance = chebyshev(source.x, source.y, x, y);
        if (distance > source.reach || (nearest && distance >= best)) continue;
        assert(distance >= least);
        nearest = &source;
        best = distance;
        if (best == least) break;
    }
    return nearest;
}

// Most buildings find the nearest source of their cell still full enough; only the others search.
static NetworkSource* findSource(NetworkMemory& network, int x, int y) {
    assert(network.drawn.size() == network.sources.size()); // otherwise `nearest` is of another run
    int least = 0;
    if (inMap(x, y)) {
        const int nearest = network.nearest[cellIndex(x, y)];
        if (nearest < 0) return nullptr;
        NetworkSource& source = network.sources[nearest];
        if (source.remaining > 0) return &source;
        least = chebyshev(source.x, source.y, x, y);
    }
    return searchSource(network.sources, x, y, least);
}

static bool takeUnit(NetworkMemory& network, const Building& building) {
    NetworkSource* source = findSource(network, building.x, building.y);
    if (!source) return false;
    assert(source->remaining > 0 && chebyshev(source->x, source->y, building.x, building.y) <= source->reach);
    source->remaining--;
    return true;
}

static bool needsNoNetwork(int kind) { return kind == KIND_PARK || isSource(kind); }

static bool needsWater(int kind) { return kind <= KIND_SCHOOL; }

// Water is taken also by a building that gets no power, so that a lack of one moves nothing in the other.
static void serveBuilding(City& city, Building& building) {
    const bool finished = isFinished(building);
    if (needsNoNetwork(building.kind)) {
        building.powered = building.watered = 1;
        building.working = finished && building.roadAccess;
        return;
    }
    building.powered = finished && takeUnit(city.memory.power, building);
    building.watered = !needsWater(building.kind) || (finished && takeUnit(city.memory.water, building));
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
    collectSources(city);
    drawReach(city.memory.power);
    drawReach(city.memory.water);
    // In their order, so that the older building keeps what is short.
    for (Building& building : city.buildings) serveBuilding(city, building);
    city.powerField = city.memory.power.field;
    city.waterField = city.memory.water.field;
    city.buildingsDirty = city.overlayDirty = 1;
}
