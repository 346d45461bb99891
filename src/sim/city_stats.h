// A snapshot of the city for panels and missions.
#pragma once

#include "sim/building_kinds.h"
#include "sim/city.h"

struct CityStats {
    double money = 0.0;
    double lastIncome = 0.0;
    double lastExpense = 0.0;
    int32_t population = 0;
    int32_t jobs = 0;
    int32_t employed = 0;
    int32_t workers = 0;
    float happiness = 0.0f;
    int32_t day = 0;
    std::array<float, 4> demand = {};
    int32_t streetCells = 0; // as the last day counted them
    int32_t avenueCells = 0;
    std::array<int32_t, KIND_COUNT> workingBuildings = {}; // finished and working
    int32_t districtCells = 0;
    // Pollution of the road cells only, over all cells of the map: deliberately lenient.
    float averagePollution = 0.0f;
    float averageTraffic = 0.0f; // over road cells, 0 without roads
    int32_t workingParks = 0;
    int32_t zonedCells = 0;
    float educatedShare = 0.0f;
    int32_t commuters = 0;
    int32_t transitRiders = 0;
    uint8_t bankrupt = 0;
    uint8_t allMissionsDone = 0;
};

CityStats computeStats(const City& city);
