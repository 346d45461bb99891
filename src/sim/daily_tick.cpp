#include "sim/daily_tick.h"

#include "sim/building_kinds.h"
#include "sim/finance.h"
#include "sim/growth.h"
#include "sim/hash.h"
#include "sim/missions.h"
#include "sim/networks.h"
#include "sim/numbers.h"
#include "sim/population.h"
#include "sim/services.h"
#include "sim/traffic.h"

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

// What grew by itself is finished in silence: a day's growth could push all other news out of the queue.
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

// Two tests instead of an else: money that is no number, as a loaded file may hold, neither clears the count
// nor adds to it.
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
    updateRoadAccess(city);
    updateUtilities(city);
    updateCoverage(city);
    updateTraffic(city);
    updateLandValue(city);
    updatePopulation(city);
    updateFinance(city);
    countRoads(city);
    growZones(city);
    updateBuildingLevels(city);
    removeCondemnedBuildings(city);
    updateRoadAccess(city);
    updateDemand(city);
    pushHistory(city, city.lastIncome, city.lastExpense, city.population, city.happiness);
    checkBankruptcy(city);
    checkMissions(city);
    updateUtilities(city); // so that others get at once what the abandoned used
}
