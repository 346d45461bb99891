#include "sim/networks.h"

#include "sim/building_kinds.h"

#include <algorithm>
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
static const SourceRow& sourceRow(int kind) { return SOURCE_ROWS[kind - KIND_GAS_POWER_PLANT]; }

static int chebyshev(int x0, int y0, int x1, int y1) {
    return std::max(std::abs(x0 - x1), std::abs(y0 - y1));
}

// Lists the active sources with all that they have to give. True if they are others than in the run before.
static bool collectSources(City& city) {
    std::vector<NetworkSource>& sources = city.networkMemory.sources;
    sources.reserve(city.buildings.size()); // so that a source that is finished takes no memory
    size_t count = 0;
    bool changed = false;
    for (const Building& building : city.buildings) {
        if (!isSource(building.kind) || !isFinished(building) || !building.roadAccess) continue;
        if (count == sources.size()) sources.emplace_back();
        NetworkSource& source = sources[count++];
        changed |= source.x != building.x || source.y != building.y || source.kind != building.kind;
        source = {building.x, building.y, building.kind, sourceRow(building.kind).capacity};
    }
    changed |= count != sources.size();
    sources.resize(count);
    return changed;
}

// Draws the reach of the sources of one network, also of those that have nothing left to give, and finds
// the nearest to each cell, the first of equals.
static void drawReach(const std::vector<NetworkSource>& sources, bool water, Grid& field,
                      PerCell<int32_t>& nearest) {
    std::array<uint8_t, CELL_COUNT> best;
    best.fill(255);
    std::fill(field.begin(), field.end(), 0.0f);
    std::fill(nearest.begin(), nearest.end(), -1);
    for (size_t i = 0; i < sources.size(); i++) {
        const NetworkSource& source = sources[i];
        if (isWaterSource(source.kind) != water) continue;
        const int reach = sourceRow(source.kind).reach;
        const int x0 = std::max(source.x - reach, 0);
        const int x1 = std::min(source.x + reach, GRID_SIZE - 1);
        const int y0 = std::max(source.y - reach, 0);
        const int y1 = std::min(source.y + reach, GRID_SIZE - 1);
        for (int y = y0; y <= y1; y++)
            for (int x = x0; x <= x1; x++) {
                const int cell = cellIndex(x, y);
                const int distance = chebyshev(source.x, source.y, x, y);
                const float value = 1.0f - static_cast<float>(distance) / static_cast<float>(reach + 1);
                field[cell] = std::max(field[cell], value);
                if (distance >= best[cell]) continue;
                best[cell] = static_cast<uint8_t>(distance);
                nearest[cell] = static_cast<int32_t>(i);
            }
    }
}

static void updateSources(City& city) {
    NetworkMemory& memory = city.networkMemory;
    if (!collectSources(city)) return;
    drawReach(memory.sources, false, memory.powerField, memory.nearestPower);
    drawReach(memory.sources, true, memory.waterField, memory.nearestWater);
}

// The nearest source of the network that reaches the place and has something left, the first of equals;
// nullptr for none.
static NetworkSource* searchSource(std::vector<NetworkSource>& sources, bool water, int x, int y) {
    NetworkSource* nearest = nullptr;
    int best = 0;
    for (NetworkSource& source : sources) {
        if (source.remaining == 0 || isWaterSource(source.kind) != water) continue;
        const int distance = chebyshev(source.x, source.y, x, y);
        if (distance > sourceRow(source.kind).reach || (nearest && distance >= best)) continue;
        nearest = &source;
        best = distance;
    }
    return nearest;
}

// Takes one unit for the building. Most find their nearest source still full enough; only the others search.
static bool takeUnit(std::vector<NetworkSource>& sources, bool water, const PerCell<int32_t>& nearest,
                     const Building& building) {
    NetworkSource* source = nullptr;
    if (inMap(building.x, building.y)) {
        const int index = nearest[cellIndex(building.x, building.y)];
        if (index < 0) return false;
        source = &sources[index];
    }
    if (!source || source->remaining == 0) source = searchSource(sources, water, building.x, building.y);
    if (!source) return false;
    source->remaining--;
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
    building.powered = finished && takeUnit(memory.sources, false, memory.nearestPower, building);
    building.watered = !needsWater(building.kind) ||
                       (finished && takeUnit(memory.sources, true, memory.nearestWater, building));
    building.working = building.powered && building.watered && building.roadAccess;
}

int adjacentRoadCell(const City& city, int x, int y) {
    for (const CellStep& step : NEIGHBOURS)
        if (cellAt(city, x + step.x, y + step.y).road) return cellIndex(x + step.x, y + step.y);
    return -1;
}

bool touchesRoad(const City& city, int x, int y) {
    if (x < 1 || y < 1 || x >= GRID_SIZE - 1 || y >= GRID_SIZE - 1) return adjacentRoadCell(city, x, y) >= 0;
    const Cell* cell = &city.cells[cellIndex(x, y)];
    return cell[1].road || cell[-1].road || cell[GRID_SIZE].road || cell[-GRID_SIZE].road;
}

void updateRoadAccess(City& city) {
    for (Building& building : city.buildings) building.roadAccess = touchesRoad(city, building.x, building.y);
}

void updateUtilities(City& city) {
    updateRoadAccess(city);
    updateSources(city);
    for (Building& building : city.buildings) serveBuilding(city.networkMemory, building);
    city.powerField = city.networkMemory.powerField;
    city.waterField = city.networkMemory.waterField;
    city.buildingsDirty = city.overlayDirty = 1;
}
