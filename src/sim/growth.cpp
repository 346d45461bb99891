#include "sim/growth.h"

#include "sim/building_kinds.h"
#include "sim/hash.h"
#include "sim/networks.h"
#include "sim/numbers.h"

constexpr int CONDEMNED_UNSERVED_DAYS = 8;
constexpr int CONDEMNED_UNHAPPY_DAYS = 30;

// Indexed like City::demand.
constexpr float MINIMUM_LAND_VALUE[4] = {0.28f, 0.30f, 0.36f, 0.22f};

static uint32_t bits(int32_t value) { return static_cast<uint32_t>(value); }

static bool canGrow(const City& city, int x, int y) {
    const Cell& cell = city.cells[cellIndex(x, y)];
    if (cell.zone == ZONE_NONE || cell.zone > ZONE_INDUSTRIAL) return false;
    if (cell.road != ROAD_NONE || cell.hasTrees || buildingAt(city, x, y)) return false;
    if (cell.terrain == TERRAIN_ROCK || cell.terrain == TERRAIN_WATER) return false;
    return adjacentRoadCell(city, x, y) >= 0;
}

// 0 where the land is too poor or nobody asks for the zone.
static float growthChance(const City& city, int cellIndex) {
    const int zone = city.cells[cellIndex].zone - 1;
    const float demand = city.demand[zone];
    const float landValue = city.landValue[cellIndex];
    if (landValue < MINIMUM_LAND_VALUE[zone] || demand < -0.5f) return 0.0f;

    float chance = (demand + 0.25f) * 0.1f * (landValue + 0.6f);
    if (city.raining) chance *= 0.8f;
    return hold(chance, 0.0f, 0.3f);
}

static float growthRoll(const City& city, int x, int y) {
    const uint32_t day = bits(city.day);
    return hashUnit(bits(x) * 31 + day, bits(y), day * 97 + city.seed);
}

static void growBuilding(City& city, int x, int y) {
    Building building;
    building.kind = static_cast<uint8_t>(city.cells[cellIndex(x, y)].zone - 1);
    building.x = static_cast<int16_t>(x);
    building.y = static_cast<int16_t>(y);
    building.happiness = 55.0f;
    city.cells[cellIndex(x, y)].buildingIndex = static_cast<int32_t>(city.buildings.size());
    city.buildings.push_back(building);
    markCellDirty(city, x, y);
}

void growZones(City& city) {
    // The walk starts elsewhere each day, so that the daily limit favours no corner of the map.
    const int start = static_cast<int32_t>(bits(city.day) * 37) % CELL_COUNT;
    int grown = 0;
    for (int step = 0; step < CELL_COUNT && grown < DAILY_GROWTH_LIMIT; step++) {
        const int index = (start + CELL_COUNT + step) % CELL_COUNT;
        const int x = index % GRID_SIZE;
        const int y = index / GRID_SIZE;
        if (!canGrow(city, x, y)) continue;
        if (!(growthRoll(city, x, y) < growthChance(city, index))) continue;
        growBuilding(city, x, y);
        grown++;
    }
}

static float levelRoll(const City& city, const Building& building) {
    return hashUnit(bits(building.x) * 13 + bits(city.day), bits(building.y), city.seed + 77);
}

static bool levelsUp(const City& city, const Building& building) {
    return fieldAt(city.landValue, building.x, building.y) >= 0.45f && building.level < 3 &&
           city.demand[building.kind] >= -0.1f && levelRoll(city, building) < 0.05f;
}

static bool levelsDown(const City& city, const Building& building) {
    return building.level >= 2 && levelRoll(city, building) < 0.03f;
}

static void updateLevel(City& city, Building& building) {
    if (building.working && building.happiness >= 62.0f) {
        if (!levelsUp(city, building)) return;
        building.level++;
        city.buildingsDirty = 1;
    } else if (building.happiness < 25.0f) {
        if (!levelsDown(city, building)) return;
        building.level--;
        city.buildingsDirty = 1;
    }
}

void updateBuildingLevels(City& city) {
    for (Building& building : city.buildings) {
        if (!isFinished(building) || !isGrownKind(building.kind)) continue;
        updateLevel(city, building);
        if (building.unservedDays < CONDEMNED_UNSERVED_DAYS && building.unhappyDays < CONDEMNED_UNHAPPY_DAYS)
            continue;
        postEvent(city, STATUS_ABANDONED, building.kind);
        building.kind = KIND_CONDEMNED;
    }
}

void removeCondemnedBuildings(City& city) {
    std::vector<int32_t> newIndex(city.buildings.size(), -1);
    int32_t kept = 0;
    for (size_t i = 0; i < city.buildings.size(); i++) {
        if (city.buildings[i].kind == KIND_CONDEMNED) continue;
        newIndex[i] = kept;
        city.buildings[kept++] = city.buildings[i];
    }
    if (kept == static_cast<int32_t>(city.buildings.size())) return;

    city.buildings.resize(kept);
    for (Cell& cell : city.cells)
        if (cell.buildingIndex >= 0 && cell.buildingIndex < static_cast<int32_t>(newIndex.size()))
            cell.buildingIndex = newIndex[cell.buildingIndex];
    city.buildingsDirty = 1;
    city.overlayDirty = 1;
}
