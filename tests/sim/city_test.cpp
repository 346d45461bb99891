#include "sim/building_kinds.h"
#include "sim/city.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

// A plane that rises by one world unit a cell in x and two in y.
static City slopedCity() {
    City city;
    for (int y = 0; y < CORNER_SIDE; y++)
        for (int x = 0; x < CORNER_SIDE; x++)
            city.heights[cornerIndex(x, y)] = static_cast<float>(x) + 2.0f * static_cast<float>(y);
    return city;
}

TEST(City, MapRunsFrom0To95) {
    EXPECT_TRUE(inMap(0, 0));
    EXPECT_TRUE(inMap(95, 95));
    EXPECT_FALSE(inMap(-1, 0));
    EXPECT_FALSE(inMap(0, -1));
    EXPECT_FALSE(inMap(96, 0));
    EXPECT_FALSE(inMap(0, 96));
    EXPECT_EQ(cellIndex(3, 2), 195);
}

TEST(City, ANewRecordStandsAtTheStartOfAGame) {
    const City city;
    EXPECT_EQ(city.money, 150000.0);
    EXPECT_EQ(city.happiness, 60.0f);
    EXPECT_EQ(city.goodsRatio, 1.0f);
    EXPECT_EQ(city.hourOfDay, 9.0f);
    EXPECT_EQ(city.weatherDaysLeft, 4);
    for (const int rate : city.taxRate) EXPECT_EQ(rate, 100);
    for (const int budget : city.serviceBudget) EXPECT_EQ(budget, 100);
    for (const int level : city.districtTax) EXPECT_EQ(level, 1);
    for (const Cell& cell : city.cells) ASSERT_EQ(cell.buildingIndex, -1);
}

TEST(City, HeightIsBilinearBetweenCorners) {
    const City city = slopedCity();
    EXPECT_FLOAT_EQ(heightAt(city, 0.0f, 0.0f), 0.0f);
    EXPECT_FLOAT_EQ(heightAt(city, 8.0f, 16.0f), 5.0f);
    EXPECT_FLOAT_EQ(heightAt(city, 12.0f, 4.0f), 1.5f + 1.0f);
    EXPECT_FLOAT_EQ(heightAt(city, 0.25f, 0.0f), 0.25f / 8.0f);
}

TEST(City, HeightOffTheMapIsHeldToItsEdge) {
    const City city = slopedCity();
    const float corner = 95.999f * 3.0f;
    EXPECT_FLOAT_EQ(heightAt(city, -50.0f, -1.0f), 0.0f);
    EXPECT_NEAR(heightAt(city, 768.0f, 768.0f), corner, 1e-3f);
    EXPECT_NEAR(heightAt(city, 1e30f, 5000.0f), corner, 1e-3f);
    EXPECT_TRUE(std::isfinite(heightAt(city, std::nanf(""), std::numeric_limits<float>::infinity())));
}

TEST(City, SlopeIsTheSpreadOfTheCornersOverTheWidth) {
    const City city = slopedCity();
    EXPECT_FLOAT_EQ(cellAverageHeight(city, 1, 1), 4.5f);
    EXPECT_FLOAT_EQ(cellSlope(city, 1, 1), 3.0f / 8.0f);
}

TEST(City, EachOfTheFourCornersCounts) {
    for (const auto& [x, y] : {std::pair{40, 50}, {41, 50}, {40, 51}, {41, 51}}) {
        City city;
        city.heights[cornerIndex(x, y)] = 2.0f;
        for (int cellY = 48; cellY <= 52; cellY++)
            for (int cellX = 38; cellX <= 42; cellX++) {
                const bool touches = (cellX == x || cellX == x - 1) && (cellY == y || cellY == y - 1);
                EXPECT_EQ(cellAverageHeight(city, cellX, cellY), touches ? 0.5f : 0.0f);
                EXPECT_EQ(cellSlope(city, cellX, cellY), touches ? 0.25f : 0.0f);
            }
    }
}

TEST(City, MarkingACellOffTheMapMarksNothing) {
    City city;
    markCellDirty(city, -1, 5);
    markCellDirty(city, 5, 96);
    EXPECT_EQ(std::count(city.cellDirty.begin(), city.cellDirty.end(), 1), 0);
    markCellDirty(city, 95, 0);
    EXPECT_EQ(city.cellDirty[95], 1);
    EXPECT_EQ(std::count(city.cellDirty.begin(), city.cellDirty.end(), 1), 1);
}

TEST(City, AnIndexOutsideTheListCountsAsNoBuilding) {
    City city;
    city.buildings.resize(1);
    city.cells[cellIndex(4, 4)].buildingIndex = 0;
    city.cells[cellIndex(5, 4)].buildingIndex = 1;
    city.cells[cellIndex(6, 4)].buildingIndex = -7;
    EXPECT_EQ(buildingAt(city, 4, 4), &city.buildings[0]);
    EXPECT_EQ(buildingAt(city, 5, 4), nullptr);
    EXPECT_EQ(buildingAt(city, 6, 4), nullptr);
    EXPECT_EQ(buildingAt(city, 96, 4), nullptr);
}

TEST(City, OffTheMapLiesEmptyLand) {
    City city;
    for (Cell& cell : city.cells) cell.road = cell.district = 1;
    EXPECT_EQ(&cellAt(city, 95, 95), &city.cells[CELL_COUNT - 1]);
    for (const auto& [x, y] : {std::pair{-1, 0}, {0, -1}, {96, 0}, {0, 96}, {32767, -32768}}) {
        EXPECT_EQ(cellAt(city, x, y).road, ROAD_NONE);
        EXPECT_EQ(cellAt(city, x, y).buildingIndex, -1);
        EXPECT_EQ(districtAt(city, x, y), 0);
        EXPECT_EQ(fieldAt(Grid(CELL_COUNT, 0.5f), x, y), 0.0f);
    }
}

TEST(City, ADistrictThatDoesNotExistCountsAsNone) {
    City city;
    city.cells[0].district = 8;
    city.cells[1].district = 9;
    city.cells[2].district = 255;
    EXPECT_EQ(districtAt(city, 0, 0), 8);
    EXPECT_EQ(districtAt(city, 1, 0), 0);
    EXPECT_EQ(districtAt(city, 2, 0), 0);
}

TEST(City, TheSeventhEventDropsTheOldestWhileTheCountGoesOn) {
    City city;
    for (uint32_t i = 1; i <= 7; i++) postEvent(city, STATUS_FINISHED, i);
    ASSERT_EQ(city.events.size(), 6u);
    EXPECT_EQ(city.events.front().arg, 7u);
    EXPECT_EQ(city.events.back().arg, 2u);
    EXPECT_EQ(city.eventCount, 7u);
}

// Their texts are found by the number.
TEST(City, StatusesAreNumberedFromOneWithoutAGap) {
    constexpr StatusId IN_ORDER[] = {STATUS_WELCOME,
                                     STATUS_LOADED,
                                     STATUS_NO_ROAD_HERE,
                                     STATUS_NO_MONEY_FOR_ROAD,
                                     STATUS_AVENUE_BUILT,
                                     STATUS_STREET_BUILT,
                                     STATUS_ZONED,
                                     STATUS_ROCK_NOT_ZONED,
                                     STATUS_PAINTED,
                                     STATUS_CLEARED,
                                     STATUS_NO_MONEY,
                                     STATUS_OUTSIDE_MAP,
                                     STATUS_ON_WATER,
                                     STATUS_TOO_STEEP,
                                     STATUS_OCCUPIED,
                                     STATUS_ROAD_HERE,
                                     STATUS_BUS_STOP_NEEDS_ROAD,
                                     STATUS_BUS_STOP_BUILT,
                                     STATUS_NOTHING_HERE,
                                     STATUS_ZONED_HERE,
                                     STATUS_CONSTRUCTION_STARTED,
                                     STATUS_DEMOLISHED,
                                     STATUS_ROAD_REMOVED,
                                     STATUS_ZONE_REMOVED,
                                     STATUS_DISTRICT_PAINTED,
                                     STATUS_DISTRICT_CLEARED,
                                     STATUS_BUS_STOP_REMOVED,
                                     STATUS_FINISHED,
                                     STATUS_ABANDONED,
                                     STATUS_BANKRUPT,
                                     STATUS_MISSION_COMPLETE,
                                     STATUS_ALL_MISSIONS_COMPLETE,
                                     STATUS_GAME_SAVED,
                                     STATUS_SAVE_FAILED,
                                     STATUS_NO_SAVED_GAME};
    int number = 1;
    for (const StatusId id : IN_ORDER) EXPECT_EQ(id, number++);
}

TEST(BuildingKinds, HomesEmployNobodyAtAnyLevel) {
    for (int level = 0; level <= 255; level++) EXPECT_EQ(jobPlaces(KIND_HOMES, level), 0);
}

TEST(BuildingKinds, JobsOfGrownKindsGrowWithTheSquareOfTheLevel) {
    EXPECT_EQ(jobPlaces(KIND_SHOPS, 1), 4);
    EXPECT_EQ(jobPlaces(KIND_SHOPS, 3), 36);
    EXPECT_EQ(jobPlaces(KIND_OFFICE_TOWER, 2), 32);
    EXPECT_EQ(jobPlaces(KIND_FACTORY, 3), 72);
    EXPECT_EQ(jobPlaces(KIND_FACTORY, 1), 8);
    EXPECT_EQ(jobPlaces(14, 1), 0);
    EXPECT_EQ(jobPlaces(255, 3), 0);
    EXPECT_EQ(jobPlaces(-1, 3), 0);
}

TEST(BuildingKinds, PlacedKindsEmployTheirNumber) {
    constexpr int PLACES[] = {14, 14, 40, 25, 2, 12, 22, 5, 4, 6};
    for (int kind = KIND_POLICE_STATION; kind <= KIND_WATER_PUMP; kind++)
        EXPECT_EQ(jobPlaces(kind, 1), PLACES[kind - KIND_POLICE_STATION]) << kind;
}

TEST(BuildingKinds, CostsAndCapacities) {
    EXPECT_EQ(roadCost(ROAD_STREET), 80);
    EXPECT_EQ(roadCost(ROAD_AVENUE), 240);
    constexpr int COSTS[] = {4000,  6000, 9000,  7000,  15000, 15000, 40000,
                             25000, 6000, 30000, 60000, 35000, 30000, 25000};
    for (int kind = KIND_HOMES; kind <= KIND_WATER_PUMP; kind++) {
        EXPECT_EQ(buildingCost(kind, 0), COSTS[kind]) << kind;
        EXPECT_EQ(buildingCost(kind, 1), COSTS[kind]) << kind;
        EXPECT_EQ(buildingCost(kind, 3), 3 * COSTS[kind]) << kind;
    }
    EXPECT_EQ(buildingCost(-1, 1), 0);
    EXPECT_EQ(buildingCost(14, 1), 0);
    EXPECT_EQ(homeCapacity(1), 8);
    EXPECT_EQ(homeCapacity(2), 30);
    EXPECT_EQ(homeCapacity(3), 80);
    EXPECT_EQ(homeCapacity(200), 80);
}
