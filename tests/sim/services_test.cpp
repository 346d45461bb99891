#include "sim/services.h"

#include "sim/city_helpers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

static float distanceTo(int x, int y, int cx, int cy) {
    return static_cast<float>(std::sqrt(static_cast<double>((x - cx) * (x - cx) + (y - cy) * (y - cy))));
}

// Every cell of the grid is what `expected(x, y)` says.
template<class Expected> static void expectGrid(const Grid& grid, Expected expected) {
    for (int y = 0; y < GRID_SIZE; y++)
        for (int x = 0; x < GRID_SIZE; x++) ASSERT_EQ(grid[cellIndex(x, y)], expected(x, y)) << x << "," << y;
}

static bool isZero(const Grid& grid) { return std::count(grid.begin(), grid.end(), 0.0f) == CELL_COUNT; }

// ---- coverage

TEST(Coverage, EachServiceFillsItsOwnGridWithinItsRadius) {
    struct Row {
        int coverage;
        uint8_t kind;
        int radius;
    };
    for (const Row& row :
         {Row{COVERAGE_POLICE, KIND_POLICE_STATION, 14}, Row{COVERAGE_FIRE, KIND_FIRE_STATION, 14},
          Row{COVERAGE_HEALTH, KIND_HOSPITAL, 18}, Row{COVERAGE_EDUCATION, KIND_SCHOOL, 12},
          Row{COVERAGE_PARKS, KIND_PARK, 9}, Row{COVERAGE_TRANSIT, KIND_BUS_DEPOT, 14}}) {
        City city = flatCity();
        addWorkingBuilding(city, 40, 50, row.kind);
        updateCoverage(city);
        const float radius = static_cast<float>(row.radius);
        expectGrid(city.coverage[row.coverage], [&](int x, int y) {
            const float distance = distanceTo(x, y, 40, 50);
            return distance <= radius ? 1.0f - distance / radius : 0.0f;
        });
        for (int other = 0; other < COVERAGE_COUNT; other++)
            EXPECT_TRUE(other == row.coverage || isZero(city.coverage[other])) << other;
    }
}

TEST(Coverage, GrownKindsUtilitiesAndUnknownKindsCoverNothing) {
    City city = flatCity();
    for (const int kind : {0, 1, 2, 3, 10, 11, 12, 13, 14, 255})
        addWorkingBuilding(city, 40, 50, static_cast<uint8_t>(kind));
    updateCoverage(city);
    for (const Grid& grid : city.coverage) EXPECT_TRUE(isZero(grid));
}

TEST(Coverage, TheHighestValueOfSeveralStays) {
    City city = flatCity();
    addWorkingBuilding(city, 10, 10, KIND_PARK);
    addWorkingBuilding(city, 14, 10, KIND_PARK);
    updateCoverage(city);
    EXPECT_EQ(city.coverage[COVERAGE_PARKS][cellIndex(10, 10)], 1.0f);
    EXPECT_EQ(city.coverage[COVERAGE_PARKS][cellIndex(14, 10)], 1.0f);
    EXPECT_EQ(city.coverage[COVERAGE_PARKS][cellIndex(11, 10)], 1.0f - 1.0f / 9.0f);
}

TEST(Coverage, ABuildingThatDoesNotWorkCoversNothing) {
    City city = flatCity();
    addBuilding(city, 40, 50, KIND_PARK);
    updateCoverage(city);
    EXPECT_TRUE(isZero(city.coverage[COVERAGE_PARKS]));
}

TEST(Coverage, IsMadeAnewEachTime) {
    City city = flatCity();
    addWorkingBuilding(city, 40, 50, KIND_SCHOOL);
    city.coverage[6][5] = city.coverage[7][9] = city.coverage[COVERAGE_FIRE][0] = 0.5f;
    updateCoverage(city);
    EXPECT_FALSE(isZero(city.coverage[COVERAGE_EDUCATION]));
    city.buildings[0].working = 0;
    updateCoverage(city);
    for (const Grid& grid : city.coverage) EXPECT_TRUE(isZero(grid));
}

TEST(Coverage, TheBudgetActsThroughAnExponentAndMayPassOne) {
    City city = flatCity();
    addWorkingBuilding(city, 40, 50, KIND_FIRE_STATION);
    const auto atBudget = [&city](int budget) {
        city.serviceBudget[COVERAGE_FIRE] = budget;
        updateCoverage(city);
        return city.coverage[COVERAGE_FIRE][cellIndex(40, 50)];
    };
    EXPECT_EQ(atBudget(100), 1.0f);
    EXPECT_NEAR(atBudget(50), 0.6598f, 5e-5f);
    EXPECT_NEAR(atBudget(150), 1.2754f, 5e-5f);
}

TEST(Coverage, EachServiceAsksItsOwnBudget) {
    City city = flatCity();
    for (const uint8_t kind :
         {KIND_POLICE_STATION, KIND_FIRE_STATION, KIND_HOSPITAL, KIND_SCHOOL, KIND_PARK, KIND_BUS_DEPOT})
        addWorkingBuilding(city, 40, 50, kind);
    for (int i = COVERAGE_POLICE; i <= COVERAGE_TRANSIT; i++) {
        city.serviceBudget.fill(100);
        city.serviceBudget[i] = 50;
        updateCoverage(city);
        for (int j = COVERAGE_POLICE; j <= COVERAGE_TRANSIT; j++)
            EXPECT_EQ(city.coverage[j][cellIndex(40, 50)] < 1.0f, i == j) << i << " " << j;
    }
}

TEST(Coverage, ABusStopServesThreeCellsAroundItWithoutADepot) {
    City city = flatCity();
    city.cells[cellIndex(20, 30)].busStop = 1;
    updateCoverage(city);
    expectGrid(city.coverage[COVERAGE_TRANSIT], [](int x, int y) {
        const float distance = distanceTo(x, y, 20, 30);
        return distance <= 3.0f ? 0.6f * (1.0f - distance / 3.0f) : 0.0f;
    });
}

TEST(Coverage, AStopUnderADepotsReachKeepsTheHigherValue) {
    City city = flatCity();
    addWorkingBuilding(city, 20, 30, KIND_BUS_DEPOT);
    city.cells[cellIndex(20, 31)].busStop = 1;
    city.cells[cellIndex(30, 30)].busStop = 1;
    city.serviceBudget[COVERAGE_TRANSIT] = 150;
    updateCoverage(city);
    const float factor = city.coverage[COVERAGE_TRANSIT][cellIndex(20, 30)];
    EXPECT_NEAR(factor, 1.2754f, 5e-5f);
    EXPECT_EQ(city.coverage[COVERAGE_TRANSIT][cellIndex(20, 31)], (1.0f - 1.0f / 14.0f) * factor);
    EXPECT_EQ(city.coverage[COVERAGE_TRANSIT][cellIndex(30, 30)], 0.6f * factor);
}

TEST(Coverage, TheMapsEdgeCutsTheDiscOff) {
    City city = flatCity();
    addWorkingBuilding(city, 95, 0, KIND_HOSPITAL);
    updateCoverage(city);
    EXPECT_EQ(city.coverage[COVERAGE_HEALTH][cellIndex(95, 0)], 1.0f);
    EXPECT_EQ(city.coverage[COVERAGE_HEALTH][cellIndex(0, 1)], 0.0f);
    EXPECT_EQ(city.coverage[COVERAGE_HEALTH][cellIndex(78, 0)], 1.0f - 17.0f / 18.0f);
}

// ---- pollution

TEST(Pollution, AGasPlantFoulsTwelveCellsAround) {
    City city = flatCity();
    addWorkingBuilding(city, 40, 50, KIND_GAS_POWER_PLANT);
    updateLandValue(city);
    expectGrid(city.pollution, [](int x, int y) {
        const float distance = distanceTo(x, y, 40, 50);
        return distance <= 12.0f ? (1.0f - distance / 12.0f) * 0.9f : 0.0f;
    });
}

TEST(Pollution, AFactoryFoulsFourCellsAroundByItsLevel) {
    for (const uint8_t level : {1, 2, 3}) {
        City city = flatCity();
        addWorkingBuilding(city, 40, 50, KIND_FACTORY, level);
        updateLandValue(city);
        expectGrid(city.pollution, [level](int x, int y) {
            const float distance = distanceTo(x, y, 40, 50);
            return distance <= 4.0f ? (1.0f - distance / 4.0f) * (static_cast<float>(level) * 0.22f) : 0.0f;
        });
    }
}

TEST(Pollution, ASmokeFreeDistrictLeavesFourTenths) {
    City city = flatCity();
    addWorkingBuilding(city, 40, 50, KIND_FACTORY, 2);
    city.cells[cellIndex(40, 50)].district = 3;
    city.districtPolicy[3] = POLICY_NO_TRUCKS | POLICY_TRANSIT_FIRST;
    city.districtPolicy[4] = POLICY_SMOKE_FREE;
    updateLandValue(city);
    EXPECT_EQ(city.pollution[cellIndex(40, 50)], 0.44f);
    city.districtPolicy[3] = POLICY_SMOKE_FREE;
    updateLandValue(city);
    EXPECT_EQ(city.pollution[cellIndex(40, 50)], 0.44f * 0.4f);
}

TEST(Pollution, NoDistrictHasNoPolicy) {
    City city = flatCity();
    addWorkingBuilding(city, 40, 50, KIND_FACTORY, 2);
    city.districtPolicy[0] = POLICY_SMOKE_FREE;
    updateLandValue(city);
    EXPECT_EQ(city.pollution[cellIndex(40, 50)], 0.44f);
}

TEST(Pollution, AddsUpAndIsHeldAtOne) {
    City city = flatCity();
    for (const int x : {40, 41}) addWorkingBuilding(city, x, 50, KIND_GAS_POWER_PLANT);
    addWorkingBuilding(city, 60, 50, KIND_FACTORY);
    addWorkingBuilding(city, 60, 52, KIND_FACTORY);
    addBuilding(city, 60, 51, KIND_FACTORY, 3); // stands still
    updateLandValue(city);
    EXPECT_EQ(city.pollution[cellIndex(40, 50)], 1.0f);
    EXPECT_EQ(city.pollution[cellIndex(60, 51)], 0.75f * 0.22f + 0.75f * 0.22f);
}

TEST(Pollution, TrafficFoulsRoadsOnly) {
    City city = flatCity();
    city.cells[cellIndex(5, 5)].road = ROAD_STREET;
    city.trafficLoad[cellIndex(5, 5)] = 0.5f;
    city.trafficLoad[cellIndex(9, 9)] = 0.5f;
    updateLandValue(city);
    EXPECT_EQ(city.pollution[cellIndex(5, 5)], 0.5f * 0.35f);
    EXPECT_EQ(city.pollution[cellIndex(9, 9)], 0.0f);
}

TEST(Pollution, IsCopiedToEveryBuilding) {
    City city = flatCity();
    addWorkingBuilding(city, 40, 50, KIND_GAS_POWER_PLANT);
    addBuilding(city, 44, 50, KIND_HOMES);
    addBuilding(city, 80, 50, KIND_HOMES).pollutionHere = 0.7f;
    updateLandValue(city);
    EXPECT_EQ(city.buildings[0].pollutionHere, 0.9f);
    EXPECT_EQ(city.buildings[1].pollutionHere, city.pollution[cellIndex(44, 50)]);
    EXPECT_EQ(city.buildings[2].pollutionHere, 0.0f);
}

// ---- land value

TEST(LandValue, StartsWithTheTerrain) {
    constexpr float BASES[] = {0.45f, 0.55f, 0.2f, 0.05f, 0.4f};
    for (int terrain = TERRAIN_GRASS; terrain <= TERRAIN_SAND; terrain++) {
        City city = flatCity();
        city.cells[0].terrain = static_cast<uint8_t>(terrain);
        updateLandValue(city);
        EXPECT_EQ(city.landValue[0], BASES[terrain]);
    }
}

TEST(LandValue, RisesWithCoverage) {
    City city = flatCity();
    const int cell = cellIndex(30, 30);
    const auto valueWith = [&](int service) {
        for (Grid& grid : city.coverage) grid[cell] = 0.0f;
        city.coverage[service][cell] = 0.5f;
        updateLandValue(city);
        return city.landValue[cell];
    };
    EXPECT_FLOAT_EQ(valueWith(COVERAGE_PARKS), 0.45f + 0.125f);
    EXPECT_FLOAT_EQ(valueWith(COVERAGE_EDUCATION), 0.45f + 0.05f);
    EXPECT_FLOAT_EQ(valueWith(COVERAGE_POLICE), 0.45f + 0.04f);
    EXPECT_FLOAT_EQ(valueWith(COVERAGE_FIRE), 0.45f + 0.04f);
    EXPECT_FLOAT_EQ(valueWith(COVERAGE_HEALTH), 0.45f + 0.04f);
    EXPECT_FLOAT_EQ(valueWith(COVERAGE_TRANSIT), 0.45f);
}

TEST(LandValue, ARoadBesideTheCellHelpsOnceAndTheCellsOwnRoadDoesNot) {
    City city = flatCity();
    city.cells[cellIndex(30, 30)].road = ROAD_STREET;
    city.cells[cellIndex(32, 30)].road = ROAD_AVENUE;
    updateLandValue(city);
    EXPECT_EQ(city.landValue[cellIndex(30, 30)], 0.45f);
    for (const auto& [x, y] : {std::pair{29, 30}, {31, 30}, {30, 29}, {30, 31}})
        EXPECT_EQ(city.landValue[cellIndex(x, y)], 0.45f + 0.08f);
    EXPECT_EQ(city.landValue[cellIndex(29, 29)], 0.45f);
}

TEST(LandValue, TheRoadOfTheNextRowIsNoNeighbour) {
    City city = flatCity();
    city.cells[cellIndex(0, 31)].road = ROAD_STREET;
    updateLandValue(city);
    EXPECT_EQ(city.landValue[cellIndex(95, 30)], 0.45f);
}

TEST(LandValue, FallsWithPollutionAndTraffic) {
    City city = flatCity();
    const int cell = cellIndex(30, 30);
    addWorkingBuilding(city, 30, 30, KIND_FACTORY);
    city.trafficLoad[cell] = 0.5f; // no road: the load counts, its smoke does not
    updateLandValue(city);
    EXPECT_EQ(city.landValue[cell], 0.45f - 0.22f * 0.4f - 0.5f * 0.2f);
}

TEST(LandValue, IsHeldToZeroAndOne) {
    City city = flatCity();
    city.cells[0].terrain = TERRAIN_WATER;
    city.trafficLoad[0] = 1.0f;
    for (Grid& grid : city.coverage) grid[1] = 1.5f;
    city.cells[1].terrain = TERRAIN_WOODLAND;
    updateLandValue(city);
    EXPECT_EQ(city.landValue[0], 0.0f);
    EXPECT_EQ(city.landValue[1], 1.0f);
}

TEST(LandValue, MarksTheOverlayStale) {
    City city;
    updateLandValue(city);
    EXPECT_TRUE(city.overlayDirty && !city.buildingsDirty && !city.roadsDirty && !city.zonesDirty);
}

// ---- cities that no rule could have made

TEST(ServicesOfAWildCity, BuildingsOffTheMapSpreadOnlyWhatReachesIt) {
    City city = flatCity();
    for (const uint8_t kind : {KIND_PARK, KIND_GAS_POWER_PLANT, KIND_FACTORY}) {
        addWorkingBuilding(city, -2, 10, kind, 255);
        addWorkingBuilding(city, 32767, -32768, kind, 255);
        addWorkingBuilding(city, -32768, 32767, kind, 255);
    }
    updateCoverage(city);
    updateLandValue(city);
    EXPECT_EQ(city.coverage[COVERAGE_PARKS][cellIndex(0, 10)], 1.0f - 2.0f / 9.0f);
    EXPECT_EQ(city.pollution[cellIndex(0, 10)], 1.0f);
    EXPECT_EQ(city.pollution[cellIndex(0, 30)], 0.0f);
    for (const Building& building : city.buildings) EXPECT_EQ(building.pollutionHere, 0.0f);
}

TEST(ServicesOfAWildCity, UnknownTerrainAndDistrictsCountAsNone) {
    City city = flatCity();
    city.cells[0].terrain = 77;
    city.cells[cellIndex(40, 50)].district = 200;
    addWorkingBuilding(city, 40, 50, KIND_FACTORY);
    city.districtPolicy.fill(POLICY_SMOKE_FREE);
    updateLandValue(city);
    EXPECT_EQ(city.landValue[0], 0.45f);
    EXPECT_EQ(city.pollution[cellIndex(40, 50)], 0.22f);
}
