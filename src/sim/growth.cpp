#include "sim/growth.h"

#include "sim/building_kinds.h"
#include "sim/hash.h"
#include "sim/networks.h"
#include "sim/numbers.h"

#include <algorithm>
#include <cassert>

static constexpr int CONDEMNED_UNSERVED_DAYS = 8; // only a loaded file brings any: no rule counts them up
static constexpr int CONDEMNED_UNHAPPY_DAYS = 30;

// Indexed like City::demand.
static constexpr float MINIMUM_LAND_VALUE[4] = {0.28f, 0.30f, 0.36f, 0.22f};

// For the hashes, because unsigned products wrap around and signed ones must not.
static uint32_t bits(int32_t value) { return static_cast<uint32_t>(value); }

// Trees in a zone and an index outside the list are a loaded file's. Without its sign, -1 is outside too.
static bool isFree(const City& city, const Cell& cell) {
    const bool hasBuilding = bits(cell.buildingIndex) < city.buildings.size();
    return !hasBuilding && cell.road == ROAD_NONE && !cell.hasTrees && cell.terrain != TERRAIN_ROCK &&
           cell.terrain != TERRAIN_WATER;
}

// The only gate that demand needs: from -0.25 down the growth chance is held to 0, and no roll lies below
// that. It is asked once a zone instead of in every cell, because on most days only some zones are wanted.
static bool isWanted(const City& city, int zone) {
    return zone > ZONE_NONE && zone <= ZONE_INDUSTRIAL && city.demand[zone - 1] + 0.25f > 0.0f;
}

static float growthChance(const City& city, int index) {
    const int zone = city.cells[index].zone - 1;
    assert(zone >= 0 && zone < 4);
    const float landValue = city.landValue[index];
    if (landValue < MINIMUM_LAND_VALUE[zone]) return 0.0f;

    float chance = (city.demand[zone] + 0.25f) * 0.1f * (landValue + 0.6f);
    if (city.raining) chance *= 0.8f;
    return hold(chance, 0.0f, 0.3f);
}

static float growthRoll(const City& city, int index) {
    const uint32_t day = bits(city.day);
    return hashUnit(bits(index % GRID_SIZE) * 31 + day, bits(index / GRID_SIZE), day * 97 + city.seed);
}

static void growBuilding(City& city, int index) {
    Building building;
    building.kind = static_cast<uint8_t>(city.cells[index].zone - 1);
    building.x = static_cast<int16_t>(index % GRID_SIZE);
    building.y = static_cast<int16_t>(index / GRID_SIZE);
    building.happiness = 55.0f;
    city.cells[index].buildingIndex = static_cast<int32_t>(city.buildings.size());
    city.buildings.push_back(building);
    city.cellDirty[index] = 1;
}

static bool growsToday(const City& city, int index) {
    if (!isFree(city, city.cells[index])) return false;
    if (!touchesRoad(city, index % GRID_SIZE, index / GRID_SIZE)) return false;
    return growthRoll(city, index) < growthChance(city, index);
}

void growZones(City& city) {
    std::array<bool, 256> wanted;
    for (int zone = 0; zone < 256; zone++) wanted[zone] = isWanted(city, zone);

    // The walk starts elsewhere each day, so that the daily limit favours no corner of the map.
    const int start = (static_cast<int32_t>(bits(city.day) * 37) % CELL_COUNT + CELL_COUNT) % CELL_COUNT;
    int grown = 0;
    for (const auto& [begin, end] : {std::pair{start, CELL_COUNT}, {0, start}}) {
        for (int i = begin; i < end && grown < DAILY_GROWTH_LIMIT; i++) {
            if (!wanted[city.cells[i].zone] || !growsToday(city, i)) continue;
            growBuilding(city, i);
            grown++;
        }
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

static bool isCondemned(const Building& building) { return building.kind == KIND_CONDEMNED; }

void removeCondemnedBuildings(City& city) {
    if (std::none_of(city.buildings.begin(), city.buildings.end(), isCondemned)) return;

    std::vector<int32_t> newIndex(city.buildings.size());
    int32_t kept = 0;
    for (size_t i = 0; i < city.buildings.size(); i++)
        newIndex[i] = isCondemned(city.buildings[i]) ? -1 : kept++;
    for (Cell& cell : city.cells)
        if (cell.buildingIndex >= 0 && cell.buildingIndex < static_cast<int32_t>(newIndex.size()))
            cell.buildingIndex = newIndex[cell.buildingIndex];
    std::erase_if(city.buildings, isCondemned);
    assert(kept == static_cast<int32_t>(city.buildings.size()));
    city.buildingsDirty = 1;
    city.overlayDirty = 1;
}
