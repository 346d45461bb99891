#include "sim/plain_rules.h"

#include "sim/building_kinds.h"
#include "sim/networks.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace plain {

// What a source serves: buildings, and the half side of its square reach in cells. Zero for other kinds.
struct PlainSourceRow {
    int capacity;
    int reach;
};

static PlainSourceRow powerSource(int kind) {
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

static PlainSourceRow waterSource(int kind) {
    return kind == KIND_WATER_PUMP ? PlainSourceRow{130, 20} : PlainSourceRow{};
}

struct Source {
    int x;
    int y;
    int remaining;
    int reach;
};

using SourceList = std::vector<Source>;

static SourceList collectSources(const City& city, PlainSourceRow (*rowOf)(int kind)) {
    SourceList sources;
    for (const Building& building : city.buildings) {
        const PlainSourceRow row = rowOf(building.kind);
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

void updateRoadAccess(City& city) {
    for (Building& building : city.buildings)
        building.roadAccess = adjacentRoadCell(city, building.x, building.y) >= 0;
}

void updateUtilities(City& city) {
    plain::updateRoadAccess(city);
    SourceList power = collectSources(city, powerSource);
    SourceList water = collectSources(city, waterSource);
    for (Building& building : city.buildings) serveBuilding(building, power, water);
    drawReach(city.powerField, power);
    drawReach(city.waterField, water);
    city.buildingsDirty = city.overlayDirty = 1;
}

struct CoverageRow {
    int coverage; // grid, which is also the entry of the budget
    int kind;
    int radius;
};

static constexpr std::array<CoverageRow, 6> COVERAGE_ROWS = {{
    {COVERAGE_POLICE, KIND_POLICE_STATION, 14},
    {COVERAGE_FIRE, KIND_FIRE_STATION, 14},
    {COVERAGE_HEALTH, KIND_HOSPITAL, 18},
    {COVERAGE_EDUCATION, KIND_SCHOOL, 12},
    {COVERAGE_PARKS, KIND_PARK, 9},
    {COVERAGE_TRANSIT, KIND_BUS_DEPOT, 14},
}};
static constexpr int BUS_STOP_RADIUS = 3;
static constexpr int GAS_PLANT_RADIUS = 12;
static constexpr int FACTORY_RADIUS = 4;

// A budget works through this exponent, so that twice the money does not reach twice as far.
static float budgetFactor(const City& city, int index) {
    const float share = static_cast<float>(city.serviceBudget[index]) / 100.0f;
    return static_cast<float>(std::pow(static_cast<double>(share), 0.6));
}

// Calls visit(cell, 1 - d / radius) for every cell on the map within Euclidean distance `radius`.
template<class Visit> static void forEachCellAround(int centreX, int centreY, int radius, Visit visit) {
    const int x0 = std::max(centreX - radius, 0);
    const int x1 = std::min(centreX + radius, GRID_SIZE - 1);
    const int y0 = std::max(centreY - radius, 0);
    const int y1 = std::min(centreY + radius, GRID_SIZE - 1);
    for (int y = y0; y <= y1; y++)
        for (int x = x0; x <= x1; x++) {
            const int dx = x - centreX;
            const int dy = y - centreY;
            const float distance = static_cast<float>(std::sqrt(static_cast<double>(dx * dx + dy * dy)));
            if (distance <= static_cast<float>(radius))
                visit(cellIndex(x, y), 1.0f - distance / static_cast<float>(radius));
        }
}

static void spreadCoverage(Grid& grid, int x, int y, int radius, float strength, float factor) {
    forEachCellAround(x, y, radius, [&](int cell, float nearness) {
        grid[cell] = std::max(grid[cell], strength * nearness * factor);
    });
}

void updateCoverage(City& city) {
    for (Grid& grid : city.coverage) std::fill(grid.begin(), grid.end(), 0.0f);

    for (const CoverageRow& row : COVERAGE_ROWS) {
        const float factor = budgetFactor(city, row.coverage);
        for (const Building& building : city.buildings)
            if (building.kind == row.kind && building.working)
                spreadCoverage(city.coverage[row.coverage], building.x, building.y, row.radius, 1.0f, factor);
    }

    // A stop serves its surroundings without a depot too.
    const float factor = budgetFactor(city, COVERAGE_TRANSIT);
    for (int y = 0; y < GRID_SIZE; y++)
        for (int x = 0; x < GRID_SIZE; x++)
            if (city.cells[cellIndex(x, y)].busStop)
                spreadCoverage(city.coverage[COVERAGE_TRANSIT], x, y, BUS_STOP_RADIUS, 0.6f, factor);
}

static float factorySmoke(const City& city, const Building& factory) {
    const float strength = static_cast<float>(factory.level) * 0.22f;
    return hasPolicy(city, factory.x, factory.y, POLICY_SMOKE_FREE) ? strength * 0.4f : strength;
}

static void spreadPollution(City& city, const Building& source, int radius, float strength) {
    forEachCellAround(source.x, source.y, radius,
                      [&](int cell, float nearness) { city.pollution[cell] += nearness * strength; });
}

static void updatePollution(City& city) {
    std::fill(city.pollution.begin(), city.pollution.end(), 0.0f);
    for (const Building& building : city.buildings) {
        if (!building.working) continue;
        if (building.kind == KIND_GAS_POWER_PLANT)
            spreadPollution(city, building, GAS_PLANT_RADIUS, 0.9f);
        else if (building.kind == KIND_FACTORY)
            spreadPollution(city, building, FACTORY_RADIUS, factorySmoke(city, building));
    }
    for (int i = 0; i < CELL_COUNT; i++) {
        if (city.cells[i].road) city.pollution[i] += city.trafficLoad[i] * 0.35f;
        city.pollution[i] = std::clamp(city.pollution[i], 0.0f, 1.0f);
    }
}

static float terrainValue(int terrain) {
    constexpr std::array<float, 5> VALUES = {0.45f, 0.55f, 0.2f, 0.05f, 0.4f};
    return terrain < static_cast<int>(VALUES.size()) ? VALUES[terrain] : VALUES[TERRAIN_GRASS];
}

static float computeLandValue(const City& city, int x, int y) {
    const int i = cellIndex(x, y);
    const auto coverage = [&city, i](int service) { return city.coverage[service][i]; };
    float value = terrainValue(city.cells[i].terrain);
    value += coverage(COVERAGE_PARKS) * 0.25f;
    value += coverage(COVERAGE_EDUCATION) * 0.1f;
    value += (coverage(COVERAGE_POLICE) + coverage(COVERAGE_FIRE) + coverage(COVERAGE_HEALTH)) * 0.08f;
    if (adjacentRoadCell(city, x, y) >= 0) value += 0.08f;
    value -= city.pollution[i] * 0.4f;
    value -= city.trafficLoad[i] * 0.2f;
    return std::clamp(value, 0.0f, 1.0f);
}

void updateLandValue(City& city) {
    updatePollution(city);
    for (int y = 0; y < GRID_SIZE; y++)
        for (int x = 0; x < GRID_SIZE; x++) city.landValue[cellIndex(x, y)] = computeLandValue(city, x, y);
    for (Building& building : city.buildings)
        building.pollutionHere = fieldAt(city.pollution, building.x, building.y);
    city.overlayDirty = 1;
}

} // namespace plain
