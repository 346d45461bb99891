#include "sim/networks.h"

#include "sim/city_helpers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <initializer_list>
#include <limits>

// A road along row 10; buildings of the tests stand in rows 9 and 11.
static City cityWithARoad() {
    City city = flatCity();
    layRoads(city, 0, 10, GRID_SIZE - 1, 10);
    return city;
}

static std::array<int, 3> served(const Building& building) {
    return {building.powered, building.watered, building.working};
}

using Flags = std::array<int, 3>; // powered, watered, working

TEST(RoadAccess, IsARoadOnOneOfTheFourNeighbours) {
    const int steps[][2] = {{1, 0}, {-1, 0}, {0, 1}, {0, -1}};
    for (const auto& step : steps) {
        City city = flatCity();
        addBuilding(city, 20, 20, KIND_HOMES);
        updateRoadAccess(city);
        EXPECT_EQ(city.buildings[0].roadAccess, 0);
        city.cells[cellIndex(20 + step[0], 20 + step[1])].road = ROAD_AVENUE;
        updateRoadAccess(city);
        EXPECT_EQ(city.buildings[0].roadAccess, 1);
    }
}

TEST(RoadAccess, NeitherTheOwnCellNorADiagonalCounts) {
    City city = flatCity();
    addBuilding(city, 20, 20, KIND_HOMES);
    for (const int y : {19, 21})
        for (const int x : {19, 21}) city.cells[cellIndex(x, y)].road = ROAD_STREET;
    city.cells[cellIndex(20, 20)].road = ROAD_STREET;
    updateRoadAccess(city);
    EXPECT_EQ(city.buildings[0].roadAccess, 0);
}

TEST(RoadAccess, TheMapDoesNotWrapAround) {
    City city = flatCity();
    addBuilding(city, 95, 20, KIND_HOMES);
    city.cells[cellIndex(0, 21)].road = ROAD_STREET; // the next cell in memory
    updateRoadAccess(city);
    EXPECT_EQ(city.buildings[0].roadAccess, 0);
}

TEST(AdjacentRoadCell, TakesTheFirstInItsOrder) {
    City city = flatCity();
    EXPECT_EQ(adjacentRoadCell(city, 20, 20), -1);
    const int steps[][2] = {{0, -1}, {0, 1}, {-1, 0}, {1, 0}}; // the later found, the earlier asked
    for (const auto& step : steps) {
        const int cell = cellIndex(20 + step[0], 20 + step[1]);
        city.cells[cell].road = ROAD_STREET;
        EXPECT_EQ(adjacentRoadCell(city, 20, 20), cell);
    }
}

TEST(AdjacentRoadCell, OffTheMapFindsOnlyTheMapsEdge) {
    City city = flatCity();
    layRoads(city, 0, 0, 95, 95);
    EXPECT_EQ(adjacentRoadCell(city, 96, 5), cellIndex(95, 5));
    EXPECT_EQ(adjacentRoadCell(city, 5, -1), cellIndex(5, 0));
    EXPECT_EQ(adjacentRoadCell(city, 97, 5), -1);
    EXPECT_EQ(adjacentRoadCell(city, 32767, -32768), -1);
}

TEST(Utilities, AHomeWorksWithPowerWaterAndARoad) {
    City city = cityWithARoad();
    addBuilding(city, 20, 9, KIND_HOMES);
    addBuilding(city, 21, 9, KIND_WIND_TURBINE);
    addBuilding(city, 22, 9, KIND_WATER_PUMP);
    addBuilding(city, 20, 5, KIND_HOMES); // served, but off the road
    updateUtilities(city);
    EXPECT_EQ(served(city.buildings[0]), (Flags{1, 1, 1}));
    EXPECT_EQ(served(city.buildings[3]), (Flags{1, 1, 0}));
}

TEST(Utilities, WithoutPowerOrWithoutWaterAHomeDoesNotWork) {
    City dry = cityWithARoad();
    addBuilding(dry, 20, 9, KIND_HOMES);
    addBuilding(dry, 21, 9, KIND_WIND_TURBINE);
    updateUtilities(dry);
    EXPECT_EQ(served(dry.buildings[0]), (Flags{1, 0, 0}));

    City dark = cityWithARoad();
    addBuilding(dark, 20, 9, KIND_HOMES);
    addBuilding(dark, 21, 9, KIND_WATER_PUMP);
    updateUtilities(dark);
    EXPECT_EQ(served(dark.buildings[0]), (Flags{0, 1, 0}));
}

TEST(Utilities, ParksAndUtilitiesNeedOnlyARoad) {
    for (const uint8_t kind :
         {KIND_PARK, KIND_GAS_POWER_PLANT, KIND_SOLAR_FARM, KIND_WIND_TURBINE, KIND_WATER_PUMP}) {
        City city = cityWithARoad();
        addBuilding(city, 20, 9, kind);
        addBuilding(city, 20, 5, kind);
        addBuilding(city, 21, 9, kind).progress = 0.9f;
        updateUtilities(city);
        EXPECT_EQ(served(city.buildings[0]), (Flags{1, 1, 1}));
        EXPECT_EQ(served(city.buildings[1]), (Flags{1, 1, 0}));
        EXPECT_EQ(served(city.buildings[2]), (Flags{1, 1, 0}));
    }
}

TEST(Utilities, ABusDepotNeedsNoWater) {
    City city = cityWithARoad();
    addBuilding(city, 20, 9, KIND_BUS_DEPOT);
    addBuilding(city, 21, 9, KIND_WIND_TURBINE);
    updateUtilities(city);
    EXPECT_EQ(served(city.buildings[0]), (Flags{1, 1, 1}));
}

TEST(Utilities, UnderConstructionOnlyKindsAboveTheSchoolAreWatered) {
    City city = cityWithARoad();
    addBuilding(city, 21, 9, KIND_WIND_TURBINE);
    addBuilding(city, 22, 9, KIND_WATER_PUMP);
    for (int kind = KIND_HOMES; kind <= KIND_BUS_DEPOT; kind++)
        if (kind != KIND_PARK) addBuilding(city, 30 + kind, 9, static_cast<uint8_t>(kind)).progress = 0.99f;
    updateUtilities(city);
    for (size_t i = 2; i < city.buildings.size(); i++) {
        const int watered = city.buildings[i].kind == KIND_BUS_DEPOT;
        EXPECT_EQ(served(city.buildings[i]), (Flags{0, watered, 0})) << i;
    }
}

// ---- capacity

static int countPowered(const City& city, int first) {
    int count = 0;
    for (size_t i = first; i < city.buildings.size(); i++) count += city.buildings[i].powered;
    return count;
}

TEST(Utilities, EverySourceServesItsCapacityAndTheOldestBuildingsWin) {
    struct Row {
        uint8_t kind;
        int capacity;
    };
    for (const Row& row : {Row{KIND_GAS_POWER_PLANT, 150}, Row{KIND_SOLAR_FARM, 45},
                           Row{KIND_WIND_TURBINE, 60}, Row{KIND_WATER_PUMP, 130}}) {
        City city = flatCity();
        addBuilding(city, 48, 48, row.kind);
        city.cells[cellIndex(48, 49)].road = ROAD_STREET;
        for (int y = 40; (city.buildings.size()) < static_cast<size_t>(row.capacity) + 3; y++)
            for (int x = 40; x < 48; x++) addBuilding(city, x, y, KIND_SHOPS);
        updateUtilities(city);
        for (size_t i = 1; i < city.buildings.size(); i++) {
            const Building& shop = city.buildings[i];
            const int got = row.kind == KIND_WATER_PUMP ? shop.watered : shop.powered;
            ASSERT_EQ(got, i <= static_cast<size_t>(row.capacity)) << int{row.kind} << " building " << i;
        }
        // The overlay shows the reach all the same.
        const Grid& field = row.kind == KIND_WATER_PUMP ? city.waterField : city.powerField;
        const Building& last = city.buildings.back();
        EXPECT_GT(field[cellIndex(last.x, last.y)], 0.0f);
    }
}

TEST(Utilities, UnderConstructionNothingIsTaken) {
    City city = cityWithARoad();
    addBuilding(city, 30, 9, KIND_SOLAR_FARM);
    for (int x = 20; x < 30; x++) addBuilding(city, x, 9, KIND_HOMES).progress = 0.5f;
    for (int i = 0; i < 45; i++) addBuilding(city, 20 + i % 15, 12 + i / 15, KIND_HOMES);
    updateUtilities(city);
    EXPECT_EQ(countPowered(city, 1), 45);
    EXPECT_EQ(countPowered(city, 11), 45);
}

TEST(Utilities, WaterIsTakenAlsoWithoutPower) {
    City city = flatCity();
    addBuilding(city, 48, 48, KIND_WATER_PUMP);
    city.cells[cellIndex(48, 49)].road = ROAD_STREET;
    for (int i = 0; i < 131; i++) addBuilding(city, 32 + i % 16, 40 + i / 16, KIND_HOMES);
    updateUtilities(city);
    EXPECT_EQ(city.buildings[130].powered, 0);
    EXPECT_EQ(city.buildings[130].watered, 1);
    EXPECT_EQ(city.buildings[131].watered, 0);
}

TEST(Utilities, ADepotTakesNoWaterFromOthers) {
    City city = flatCity();
    addBuilding(city, 48, 48, KIND_WATER_PUMP);
    city.cells[cellIndex(48, 49)].road = ROAD_STREET;
    for (int i = 0; i < 40; i++) addBuilding(city, 32 + i % 16, 50 + i / 16, KIND_BUS_DEPOT);
    for (int i = 0; i < 130; i++) addBuilding(city, 32 + i % 16, 40 + i / 16, KIND_HOMES);
    updateUtilities(city);
    EXPECT_EQ(city.buildings.back().watered, 1);
}

// ---- which source

// Solar farms of 45 buildings each on row 32, in this order.
static City cityOfFarms(std::initializer_list<int> columns) {
    City city = flatCity();
    for (const int x : columns) {
        addBuilding(city, x, 32, KIND_SOLAR_FARM);
        city.cells[cellIndex(x, 33)].road = ROAD_STREET;
    }
    return city;
}

// True when 45 more buildings that only this farm reaches all get power. The farms stand at 40 and 60.
static bool isUntouched(City city, int farm) {
    const int first = static_cast<int>(city.buildings.size());
    for (int i = 0; i < 45; i++)
        addBuilding(city, (farm == 40 ? 30 : 62) + i % 9, 28 + i / 9, KIND_BUS_DEPOT);
    updateUtilities(city);
    return countPowered(city, first) == 45;
}

TEST(Utilities, TheNearestSourceServes) {
    City city = cityOfFarms({40, 60});
    addBuilding(city, 51, 32, KIND_BUS_DEPOT);
    EXPECT_TRUE(isUntouched(city, 40));
    EXPECT_FALSE(isUntouched(city, 60));
}

TEST(Utilities, OfTwoAsNearTheFirstInTheListServes) {
    City city = cityOfFarms({60, 40});
    addBuilding(city, 50, 32, KIND_BUS_DEPOT);
    EXPECT_FALSE(isUntouched(city, 60));
    EXPECT_TRUE(isUntouched(city, 40));
}

TEST(Utilities, DistanceIsTheLargerOfTheTwoDifferences) {
    City city = cityOfFarms({60, 40});
    addBuilding(city, 48, 44, KIND_BUS_DEPOT); // 8 or 12 columns away, but 12 rows from both
    EXPECT_FALSE(isUntouched(city, 60));
    EXPECT_TRUE(isUntouched(city, 40));
}

TEST(Utilities, AnEmptySourceLeavesTheBuildingToTheNext) {
    City city = cityOfFarms({40, 60});
    for (int i = 0; i < 45; i++) addBuilding(city, 30 + i % 9, 28 + i / 9, KIND_BUS_DEPOT);
    addBuilding(city, 46, 32, KIND_BUS_DEPOT);
    EXPECT_FALSE(isUntouched(city, 60));
    updateUtilities(city);
    EXPECT_EQ(city.buildings.back().powered, 1);
}

TEST(Utilities, EverySourceServesToTheEdgeOfItsSquareAndNoFarther) {
    for (const auto& [kind, reach] : {std::pair{KIND_GAS_POWER_PLANT, 30},
                                      {KIND_SOLAR_FARM, 16},
                                      {KIND_WIND_TURBINE, 22},
                                      {KIND_WATER_PUMP, 20}}) {
        City city = flatCity();
        addBuilding(city, 48, 48, kind);
        city.cells[cellIndex(48, 49)].road = ROAD_STREET;
        for (const int distance : {reach, reach + 1})
            for (const auto& [x, y] : {std::pair{-1, -1}, {1, 1}, {-1, 0}, {1, 0}, {0, -1}, {0, 1}})
                addBuilding(city, 48 + x * distance, 48 + y * distance, KIND_SCHOOL);
        updateUtilities(city);
        const Grid& field = kind == KIND_WATER_PUMP ? city.waterField : city.powerField;
        for (size_t i = 1; i < city.buildings.size(); i++) {
            const Building& school = city.buildings[i];
            EXPECT_EQ(kind == KIND_WATER_PUMP ? school.watered : school.powered, i <= 6) << kind << " " << i;
            EXPECT_EQ(field[cellIndex(school.x, school.y)] > 0.0f, i <= 6) << kind << " " << i;
        }
    }
}

TEST(Utilities, ASourceWithoutARoadOrUnderConstructionServesNobody) {
    City city = cityOfFarms({40});
    addBuilding(city, 41, 32, KIND_BUS_DEPOT);
    city.buildings[0].progress = 0.99f;
    updateUtilities(city);
    EXPECT_EQ(city.buildings[1].powered, 0);
    EXPECT_EQ(city.powerField[cellIndex(40, 32)], 0.0f);
    city.buildings[0].progress = 1.0f;
    city.cells[cellIndex(40, 33)].road = ROAD_NONE;
    updateUtilities(city);
    EXPECT_EQ(city.buildings[1].powered, 0);
    EXPECT_EQ(city.powerField[cellIndex(40, 32)], 0.0f);
}

// ---- fields

TEST(ReachFields, FallFromOneAtTheSourceByEqualSteps) {
    City city = flatCity();
    addBuilding(city, 48, 48, KIND_SOLAR_FARM);
    city.cells[cellIndex(48, 49)].road = ROAD_STREET;
    updateUtilities(city);
    for (int y = 0; y < GRID_SIZE; y++)
        for (int x = 0; x < GRID_SIZE; x++) {
            const int distance = std::max(std::abs(x - 48), std::abs(y - 48));
            const float expected = distance > 16 ? 0.0f : 1.0f - static_cast<float>(distance) / 17.0f;
            ASSERT_EQ(city.powerField[cellIndex(x, y)], expected) << x << "," << y;
        }
    EXPECT_EQ(std::count(city.waterField.begin(), city.waterField.end(), 0.0f), CELL_COUNT);
}

TEST(ReachFields, ReachTheMapsCornersAndStopThere) {
    for (const auto& [x, y] : {std::pair{0, 0}, {95, 0}, {0, 95}, {95, 95}}) {
        City city = flatCity();
        addBuilding(city, x, y, KIND_WATER_PUMP);
        city.cells[cellIndex(x, y == 0 ? 1 : 94)].road = ROAD_STREET;
        updateUtilities(city);
        EXPECT_EQ(city.waterField[cellIndex(x, y)], 1.0f);
        EXPECT_EQ(CELL_COUNT - std::count(city.waterField.begin(), city.waterField.end(), 0.0f), 21 * 21);
    }
}

TEST(ReachFields, OverlappingSourcesLeaveTheHigherValueAndTheMapCutsThemOff) {
    City city = flatCity();
    for (const int x : {0, 10}) {
        addBuilding(city, x, 0, KIND_WATER_PUMP);
        city.cells[cellIndex(x, 1)].road = ROAD_STREET;
    }
    updateUtilities(city);
    EXPECT_EQ(city.waterField[cellIndex(0, 0)], 1.0f);
    EXPECT_EQ(city.waterField[cellIndex(10, 0)], 1.0f);
    EXPECT_EQ(city.waterField[cellIndex(4, 0)], 1.0f - 4.0f / 21.0f);
    EXPECT_EQ(city.waterField[cellIndex(6, 0)], 1.0f - 4.0f / 21.0f);
    EXPECT_EQ(city.waterField[cellIndex(30, 20)], 1.0f - 20.0f / 21.0f);
    EXPECT_EQ(city.waterField[cellIndex(31, 20)], 0.0f);
    EXPECT_EQ(city.waterField[cellIndex(95, 0)], 0.0f);
    EXPECT_EQ(city.powerField[cellIndex(0, 0)], 0.0f);
}

TEST(Utilities, MarkBuildingsAndOverlayStale) {
    City city;
    updateUtilities(city);
    EXPECT_TRUE(city.buildingsDirty && city.overlayDirty && !city.roadsDirty && !city.zonesDirty);
}

TEST(Utilities, KindsThatDoNotExistTakePowerButNoWater) {
    for (const int kind : {14, 200, 255}) {
        City city = cityWithARoad();
        addBuilding(city, 20, 9, static_cast<uint8_t>(kind));
        addBuilding(city, 21, 9, KIND_SOLAR_FARM);
        updateUtilities(city);
        EXPECT_EQ(served(city.buildings[0]), (Flags{1, 1, 1}));
        for (int i = 0; i < 45; i++) addBuilding(city, 10 + i % 10, 12 + i / 10, KIND_BUS_DEPOT);
        updateUtilities(city);
        EXPECT_EQ(countPowered(city, 2), 44);
    }
}

TEST(Utilities, BuildingsFarOffTheMapAreServedByNobodyAndServeNobody) {
    City city = cityWithARoad();
    for (const int16_t place : {int16_t{-32768}, int16_t{-2}, int16_t{97}, int16_t{32767}})
        for (int kind = KIND_HOMES; kind < KIND_COUNT; kind++) {
            Building& building = addBuilding(city, 5, 5, static_cast<uint8_t>(kind));
            building.x = place;
            building.y = static_cast<int16_t>(-place);
        }
    updateUtilities(city);
    for (const Building& building : city.buildings) {
        EXPECT_EQ(building.roadAccess, 0);
        EXPECT_EQ(building.working, 0);
    }
    EXPECT_EQ(std::count(city.powerField.begin(), city.powerField.end(), 0.0f), CELL_COUNT);
}

TEST(Utilities, AProgressThatIsNoNumberCountsAsUnfinished) {
    City city = cityWithARoad();
    addBuilding(city, 21, 9, KIND_SOLAR_FARM).progress = std::numeric_limits<float>::quiet_NaN();
    addBuilding(city, 20, 9, KIND_BUS_DEPOT);
    updateUtilities(city);
    EXPECT_EQ(city.buildings[0].working, 0);
    EXPECT_EQ(city.buildings[1].powered, 0);
}
