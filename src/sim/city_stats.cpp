#include "sim/city_stats.h"

#include <cstring>

// Each frame asks for the figures, and most of the land is in no use: it is passed over in groups of cells.
constexpr int GROUP_SIZE = 4;
static_assert(CELL_COUNT % GROUP_SIZE == 0);

// Zone, terrain, road and district in one.
static uint32_t firstBytes(const Cell& cell) {
    static_assert(offsetof(Cell, district) == 3);
    uint32_t bytes;
    std::memcpy(&bytes, &cell, sizeof bytes);
    return bytes;
}

static bool isInUse(const Cell* group) {
    const Cell looked = {.zone = 0xFF, .terrain = 0, .road = 0xFF, .district = 0xFF};
    const uint32_t bytes =
        firstBytes(group[0]) | firstBytes(group[1]) | firstBytes(group[2]) | firstBytes(group[3]);
    return (bytes & firstBytes(looked)) != 0;
}

CityStats computeStats(const City& city) {
    CityStats stats;
    stats.money = city.money;
    stats.lastIncome = city.lastIncome;
    stats.lastExpense = city.lastExpense;
    stats.population = city.population;
    stats.jobs = city.jobs;
    stats.employed = city.employed;
    stats.workers = city.workers;
    stats.happiness = city.happiness;
    stats.day = city.day;
    stats.demand = city.demand;
    stats.streetCells = city.streetCells;
    stats.avenueCells = city.avenueCells;
    stats.educatedShare = city.educatedShare;
    stats.commuters = city.commuters;
    stats.transitRiders = city.transitRiders;
    stats.bankrupt = city.bankrupt;
    stats.allMissionsDone = city.allMissionsDone;

    for (const Building& building : city.buildings)
        if (building.kind < KIND_COUNT && building.working && isFinished(building))
            stats.workingBuildings[building.kind]++;
    stats.workingParks = stats.workingBuildings[KIND_PARK];

    float pollution = 0.0f;
    float traffic = 0.0f;
    int roadCells = 0;
    for (int group = 0; group < CELL_COUNT; group += GROUP_SIZE) {
        if (!isInUse(&city.cells[group])) continue;
        for (int i = group; i < group + GROUP_SIZE; i++) {
            const Cell& cell = city.cells[i];
            if (cell.district != 0) stats.districtCells++;
            if (cell.zone != ZONE_NONE) stats.zonedCells++;
            if (cell.road == ROAD_NONE) continue;
            roadCells++;
            pollution += city.pollution[i];
            traffic += city.trafficLoad[i];
        }
    }
    stats.averagePollution = pollution / static_cast<float>(CELL_COUNT);
    if (roadCells > 0) stats.averageTraffic = traffic / static_cast<float>(roadCells);
    return stats;
}
