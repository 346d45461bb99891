#include "sim/city.h"

#include "sim/building_kinds.h"

#include <algorithm>
#include <cassert>

// Splits a world coordinate into a cell and the fraction inside it. Written so that NaN lands on the map.
static int cellOf(float world, float& fraction) {
    float cell = world / CELL_WIDTH;
    if (!(cell > 0.0f)) cell = 0.0f;
    if (cell > 95.999f) cell = 95.999f;
    const int whole = static_cast<int>(cell);
    assert(whole >= 0 && whole < GRID_SIZE);
    fraction = cell - static_cast<float>(whole);
    return whole;
}

float heightAt(const City& city, float worldX, float worldY) {
    float fx;
    float fy;
    const int x = cellOf(worldX, fx);
    const int y = cellOf(worldY, fy);
    const float* row = &city.heights[cornerIndex(x, y)];
    const float* next = row + CORNER_SIDE;
    const float top = row[0] + (row[1] - row[0]) * fx;
    const float bottom = next[0] + (next[1] - next[0]) * fx;
    return top + (bottom - top) * fy;
}

float cellAverageHeight(const City& city, int x, int y) {
    assert(inMap(x, y));
    const float* row = &city.heights[cornerIndex(x, y)];
    return (row[0] + row[1] + row[CORNER_SIDE] + row[CORNER_SIDE + 1]) / 4.0f;
}

float cellSlope(const City& city, int x, int y) {
    assert(inMap(x, y));
    const float* row = &city.heights[cornerIndex(x, y)];
    const auto [low, high] = std::minmax({row[0], row[1], row[CORNER_SIDE], row[CORNER_SIDE + 1]});
    return (high - low) / CELL_WIDTH;
}

const Cell& cellAt(const City& city, int x, int y) {
    static constexpr Cell emptyLand;
    return inMap(x, y) ? city.cells[cellIndex(x, y)] : emptyLand;
}

float fieldAt(const Grid& grid, int x, int y) {
    assert(grid.size() == CELL_COUNT);
    return inMap(x, y) ? grid[cellIndex(x, y)] : 0.0f;
}

int districtAt(const City& city, int x, int y) {
    const int district = cellAt(city, x, y).district;
    return district < DISTRICT_COUNT ? district : 0;
}

bool hasPolicy(const City& city, int x, int y, DistrictPolicy policy) {
    const int district = districtAt(city, x, y);
    return district > 0 && (city.districtPolicy[district] & policy) != 0;
}

void markCellDirty(City& city, int x, int y) {
    if (inMap(x, y)) city.cellDirty[cellIndex(x, y)] = 1;
}

const Building* buildingAt(const City& city, int x, int y) {
    if (!inMap(x, y)) return nullptr;
    const int index = city.cells[cellIndex(x, y)].buildingIndex;
    if (index < 0 || index >= static_cast<int>(city.buildings.size())) return nullptr;
    return &city.buildings[index];
}

void setStatus(City& city, StatusId id, uint32_t arg) {
    assert(id >= STATUS_WELCOME && id <= STATUS_NO_SAVED_GAME);
    city.statusId = id;
    city.statusArg = arg;
}

void postEvent(City& city, StatusId id, uint32_t arg) {
    assert(city.events.size() <= EVENT_LIMIT);
    city.eventCount++;
    city.events.insert(city.events.begin(), GameEvent{id, arg});
    if (city.events.size() > EVENT_LIMIT) city.events.resize(EVENT_LIMIT);
}

int homeCapacity(int level) { return level <= 1 ? 8 : level == 2 ? 30 : 80; }

int roadCost(int type) { return type == ROAD_AVENUE ? 240 : 80; }

int buildingCost(int kind, int level) {
    if (kind < 0 || kind >= KIND_COUNT) return 0;
    return BUILDING_KINDS[kind].cost * std::max(level, 1);
}
