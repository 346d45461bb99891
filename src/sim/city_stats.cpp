#include "sim/city_stats.h"

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
    for (int i = 0; i < CELL_COUNT; i++) {
        const Cell& cell = city.cells[i];
        stats.districtCells += cell.district != 0;
        stats.zonedCells += cell.zone != ZONE_NONE;
        if (cell.road == ROAD_NONE) continue;
        roadCells++;
        pollution += city.pollution[i];
        traffic += city.trafficLoad[i];
    }
    stats.averagePollution = pollution / static_cast<float>(CELL_COUNT);
    if (roadCells > 0) stats.averageTraffic = traffic / static_cast<float>(roadCells);
    return stats;
}
