#include "sim/networks.h"

#include "sim/building_kinds.h"

#include <algorithm>
#include <cstdlib>

// What a source serves: buildings, and the half side of its square reach in cells. Zero for other kinds.
struct SourceRow {
    int capacity;
    int reach;
};

static SourceRow powerSource(int kind) {
    switch (kind) {
    case KIND_GAS_POWER_PLANT:
        return {150, 30};
    case KIND_SOLAR_FARM:
        return {45, 16};
    case KIND_WIND_TURBINE:
        return {60, 22};
    default:
        return {0, 0};
    }
}

static SourceRow waterSource(int kind) { return kind == KIND_WATER_PUMP ? SourceRow{130, 20} : SourceRow{}; }

struct Source {
    int x;
    int y;
    int remaining;
    int reach;
};

using SourceList = std::vector<Source>;

static SourceList collectSources(const City& city, SourceRow (*rowOf)(int kind)) {
    SourceList sources;
    for (const Building& building : city.buildings) {
        const SourceRow row = rowOf(building.kind);
        if (row.capacity > 0 && isFinished(building) && building.roadAccess)
            sources.push_back({building.x, building.y, row.capacity, row.reach});
    }
    return sources;
}

static int chebyshev(int x0, int y0, int x1, int y1) {
    return std::max(std::abs(x0 - x1), std::abs(y0 - y1));
}

// Takes one unit of the nearest source that reaches the place and has one left; the first of equals.
static bool takeFromNearest(SourceList& sources, int x, int y) {
    Source* nearest = nullptr;
    int best = 0;
    for (Source& source : sources) {
        const int distance = chebyshev(source.x, source.y, x, y);
        if (distance > source.reach || source.remaining == 0) continue;
        if (nearest && distance >= best) continue;
        nearest = &source;
        best = distance;
    }
    if (!nearest) return false;
    nearest->remaining--;
    return true;
}

// Parks and utilities serve themselves.
static bool needsNoNetwork(int kind) {
    return kind == KIND_PARK || (kind >= KIND_GAS_POWER_PLANT && kind <= KIND_WATER_PUMP);
}

static bool needsWater(int kind) { return kind <= KIND_SCHOOL; }

// Water is taken also by a building that gets no power.
static void serveBuilding(Building& building, SourceList& power, SourceList& water) {
    const bool finished = isFinished(building);
    if (needsNoNetwork(building.kind)) {
        building.powered = building.watered = 1;
        building.working = finished && building.roadAccess;
        return;
    }
    building.powered = finished && takeFromNearest(power, building.x, building.y);
    building.watered =
        !needsWater(building.kind) || (finished && takeFromNearest(water, building.x, building.y));
    building.working = building.powered && building.watered && building.roadAccess;
}

// The reach of every source, also of one that has nothing left to give.
static void drawReach(Grid& field, const SourceList& sources) {
    std::fill(field.begin(), field.end(), 0.0f);
    for (const Source& source : sources) {
        const int x0 = std::max(source.x - source.reach, 0);
        const int x1 = std::min(source.x + source.reach, GRID_SIZE - 1);
        const int y0 = std::max(source.y - source.reach, 0);
        const int y1 = std::min(source.y + source.reach, GRID_SIZE - 1);
        for (int y = y0; y <= y1; y++)
            for (int x = x0; x <= x1; x++) {
                const float distance = static_cast<float>(chebyshev(source.x, source.y, x, y));
                const float value = 1.0f - distance / static_cast<float>(source.reach + 1);
                float& cell = field[cellIndex(x, y)];
                cell = std::max(cell, value);
            }
    }
}

int adjacentRoadCell(const City& city, int x, int y) {
    for (const CellStep& step : NEIGHBOURS)
        if (cellAt(city, x + step.x, y + step.y).road) return cellIndex(x + step.x, y + step.y);
    return -1;
}

void updateRoadAccess(City& city) {
    for (Building& building : city.buildings)
        building.roadAccess = adjacentRoadCell(city, building.x, building.y) >= 0;
}

void updateUtilities(City& city) {
    updateRoadAccess(city);
    SourceList power = collectSources(city, powerSource);
    SourceList water = collectSources(city, waterSource);
    for (Building& building : city.buildings) serveBuilding(building, power, water);
    drawReach(city.powerField, power);
    drawReach(city.waterField, water);
    city.buildingsDirty = city.overlayDirty = 1;
}
