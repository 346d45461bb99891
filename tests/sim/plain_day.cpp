#include "sim/building_kinds.h"
#include "sim/finance.h"
#include "sim/growth.h"
#include "sim/hash.h"
#include "sim/missions.h"
#include "sim/networks.h"
#include "sim/numbers.h"
#include "sim/plain_rules.h"

namespace plain {

// Indexed like City::demand.
static constexpr float MINIMUM_LAND_VALUE[4] = {0.28f, 0.30f, 0.36f, 0.22f};

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

static constexpr int BANKRUPTCY_DAYS = 10;

static bool standsStill(const City& city) {
    return city.bankrupt || (city.allMissionsDone && !city.keepPlaying);
}

static void updateWeather(City& city) {
    city.weatherDaysLeft = saturated(int64_t{city.weatherDaysLeft} - 1);
    if (city.weatherDaysLeft >= 1) return;

    const uint32_t roll = hashCell(static_cast<uint32_t>(city.day), 7, city.seed);
    city.raining = roll % 100 < 30 ? 1 : 0;
    city.weatherDaysLeft = static_cast<int32_t>((roll >> 8) % 5) + 3;
}

static float dailyProgress(int kind) {
    if (isGrownKind(kind)) return 0.5f;
    const bool isPowerSource =
        kind == KIND_GAS_POWER_PLANT || kind == KIND_SOLAR_FARM || kind == KIND_WIND_TURBINE;
    return isPowerSource ? 0.2f : 0.33333334f;
}

// What the player placed announces that it is finished; what grew by itself does not.
static void updateConstruction(City& city) {
    for (Building& building : city.buildings) {
        if (!(building.progress < 1.0f)) continue;
        building.progress += dailyProgress(building.kind);
        if (!isFinished(building)) continue;
        building.progress = 1.0f;
        if (!isGrownKind(building.kind)) postEvent(city, STATUS_FINISHED, building.kind);
    }
}

static void countRoads(City& city) {
    city.streetCells = 0;
    city.avenueCells = 0;
    for (const Cell& cell : city.cells) {
        if (cell.road == ROAD_STREET) city.streetCells++;
        if (cell.road == ROAD_AVENUE) city.avenueCells++;
    }
}

static void checkBankruptcy(City& city) {
    if (city.money >= 0.0) city.daysBelowZero = 0;
    if (!(city.money < 0.0)) return;

    city.daysBelowZero = saturated(int64_t{city.daysBelowZero} + 1);
    if (city.daysBelowZero < BANKRUPTCY_DAYS) return;
    city.bankrupt = 1;
    postEvent(city, STATUS_BANKRUPT, 0);
}

void dailyTick(City& city) {
    if (standsStill(city)) return;

    city.day = static_cast<int32_t>(static_cast<uint32_t>(city.day) + 1);
    updateWeather(city);
    updateConstruction(city);
    plain::updateRoadAccess(city);
    plain::updateUtilities(city);
    plain::updateCoverage(city);
    plain::updateTraffic(city);
    plain::updateLandValue(city);
    plain::updatePopulation(city);
    updateFinance(city);
    countRoads(city);
    plain::growZones(city);
    updateBuildingLevels(city);
    plain::removeCondemnedBuildings(city);
    plain::updateRoadAccess(city);
    plain::updateDemand(city);
    pushHistory(city, city.lastIncome, city.lastExpense, city.population, city.happiness);
    checkBankruptcy(city);
    checkMissions(city);
    plain::updateUtilities(city);
}

} // namespace plain
