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

TEST(CityStats, CountsZonesAndDistrictsAndCopiesTheRest) {
    City city;
    city.cells[10].zone = ZONE_OFFICES;
    city.cells[11].zone = ZONE_RESIDENTIAL;
    city.cells[11].district = 3;
    city.streetCells = 12; // as the last day counted them, not as the grid is now
    city.avenueCells = 4;
    city.population = 77;
    city.money = -5.5;
    city.demand = {0.1f, 0.2f, 0.3f, 0.4f};
    city.bankrupt = 1;
    const CityStats stats = computeStats(city);
    EXPECT_EQ(stats.zonedCells, 2);
    EXPECT_EQ(stats.districtCells, 1);
    EXPECT_EQ(stats.streetCells, 12);
    EXPECT_EQ(stats.avenueCells, 4);
    EXPECT_EQ(stats.population, 77);
    EXPECT_EQ(stats.money, -5.5);
    EXPECT_EQ(stats.demand, city.demand);
    EXPECT_EQ(stats.bankrupt, 1);
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
