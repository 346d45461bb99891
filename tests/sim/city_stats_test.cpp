#include "sim/city_stats.h"

#include <gtest/gtest.h>

static void addBuilding(City& city, uint8_t kind, float progress, bool working) {
    Building building;
    building.kind = kind;
    building.progress = progress;
    building.working = working;
    city.buildings.push_back(building);
}

TEST(CityStats, CountsOnlyFinishedWorkingBuildings) {
    City city;
    addBuilding(city, KIND_PARK, 1.0f, true);
    addBuilding(city, KIND_PARK, 1.0f, true);
    addBuilding(city, KIND_PARK, 1.0f, false);
    addBuilding(city, KIND_PARK, 0.5f, true);
    addBuilding(city, KIND_CONDEMNED, 1.0f, true);
    addBuilding(city, 14, 1.0f, true);
    const CityStats stats = computeStats(city);
    EXPECT_EQ(stats.workingParks, 2);
    EXPECT_EQ(stats.workingBuildings[KIND_PARK], 2);
    EXPECT_EQ(stats.workingBuildings[KIND_HOMES], 0);
}

TEST(CityStats, PollutionCountsRoadCellsButIsSpreadOverTheWholeMap) {
    City city;
    city.cells[0].road = ROAD_STREET;
    city.cells[1].road = ROAD_AVENUE;
    city.pollution[0] = 0.5f;
    city.pollution[1] = 0.25f;
    city.pollution[2] = 1.0f; // no road: does not count
    city.trafficLoad[0] = 1.0f;
    const CityStats stats = computeStats(city);
    EXPECT_FLOAT_EQ(stats.averagePollution, 0.75f / 9216.0f);
    EXPECT_FLOAT_EQ(stats.averageTraffic, 0.5f);
}

TEST(CityStats, WithoutRoadsTheAveragesAreZero) {
    City city;
    city.pollution[5] = 1.0f;
    city.trafficLoad[5] = 1.0f;
    const CityStats stats = computeStats(city);
    EXPECT_EQ(stats.averagePollution, 0.0f);
    EXPECT_EQ(stats.averageTraffic, 0.0f);
}

TEST(CityStats, CopiesEveryFigure) {
    City city;
    city.money = 1.5;
    city.lastIncome = 2.5;
    city.lastExpense = 3.5;
    city.population = 4;
    city.jobs = 5;
    city.employed = 6;
    city.workers = 7;
    city.happiness = 8.5f;
    city.day = 9;
    city.demand = {0.1f, 0.2f, 0.3f, 0.4f};
    city.streetCells = 12; // as the last day counted them, not as the grid is now
    city.avenueCells = 13;
    city.educatedShare = 0.25f;
    city.commuters = 14;
    city.transitRiders = 15;
    city.bankrupt = 1;
    city.allMissionsDone = 2;
    const CityStats stats = computeStats(city);
    EXPECT_EQ(stats.money, 1.5);
    EXPECT_EQ(stats.lastIncome, 2.5);
    EXPECT_EQ(stats.lastExpense, 3.5);
    EXPECT_EQ(stats.population, 4);
    EXPECT_EQ(stats.jobs, 5);
    EXPECT_EQ(stats.employed, 6);
    EXPECT_EQ(stats.workers, 7);
    EXPECT_EQ(stats.happiness, 8.5f);
    EXPECT_EQ(stats.day, 9);
    EXPECT_EQ(stats.demand, city.demand);
    EXPECT_EQ(stats.streetCells, 12);
    EXPECT_EQ(stats.avenueCells, 13);
    EXPECT_EQ(stats.educatedShare, 0.25f);
    EXPECT_EQ(stats.commuters, 14);
    EXPECT_EQ(stats.transitRiders, 15);
    EXPECT_EQ(stats.bankrupt, 1);
    EXPECT_EQ(stats.allMissionsDone, 2);
}

TEST(CityStats, CountsZonesAndDistricts) {
    City city;
    city.cells[10].zone = ZONE_OFFICES;
    city.cells[11].zone = ZONE_RESIDENTIAL;
    city.cells[11].district = 3;
    const CityStats stats = computeStats(city);
    EXPECT_EQ(stats.zonedCells, 2);
    EXPECT_EQ(stats.districtCells, 1);
}

TEST(CityStats, FindsALonelyCellWhereverItLies) {
    for (const int i : {0, 1, 2, 3, 4, 4607, 9214, 9215}) {
        City city;
        city.cells[i].zone = ZONE_OFFICES;
        EXPECT_EQ(computeStats(city).zonedCells, 1) << i;
        city = City();
        city.cells[i].district = 8;
        EXPECT_EQ(computeStats(city).districtCells, 1) << i;
        city = City();
        city.cells[i].road = ROAD_AVENUE;
        city.trafficLoad[i] = 0.5f;
        EXPECT_EQ(computeStats(city).averageTraffic, 0.5f) << i;
    }
}
