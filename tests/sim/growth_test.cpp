#include "sim/expect_exactly.h"
#include "sim/growth.h"
#include "sim/hash.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

constexpr int HOME_X = 20;
constexpr int HOME_Y = 21;

// A street along y = 20 with one row of zoned land below it that everybody wants.
static City zonedCity(uint8_t zone = ZONE_RESIDENTIAL, int x0 = 0, int x1 = GRID_SIZE - 1) {
    City city = flatCity();
    layRoads(city, x0, 20, x1, 20);
    for (int x = x0; x <= x1; x++) city.cells[cellIndex(x, HOME_Y)].zone = zone;
    std::fill(city.landValue.begin(), city.landValue.end(), 0.9f);
    city.demand = {1.0f, 1.0f, 1.0f, 1.0f};
    city.day = 1;
    return city;
}

// How many buildings rise on one wanted cell in a thousand days, each day on empty land.
static int growthsInAThousandDays(City city) {
    const std::vector<Cell> land = city.cells;
    int growths = 0;
    for (city.day = 1; city.day <= 1000; city.day++) {
        growZones(city);
        growths += static_cast<int>(city.buildings.size());
        if (!city.buildings.empty()) city.cells = land;
        city.buildings.clear();
    }
    return growths;
}

static City oneCellCity(uint8_t zone = ZONE_RESIDENTIAL) { return zonedCity(zone, HOME_X, HOME_X); }

static Cell& homeCell(City& city) { return city.cells[cellIndex(HOME_X, HOME_Y)]; }

TEST(Growth, ANewBuildingIsOfItsZonesKindAndStartsAtNothing) {
    for (const uint8_t zone : {ZONE_RESIDENTIAL, ZONE_COMMERCIAL, ZONE_OFFICES, ZONE_INDUSTRIAL}) {
        City city = zonedCity(zone);
        growZones(city);
        ASSERT_FALSE(city.buildings.empty());
        const Building& grown = city.buildings.front();
        EXPECT_EQ(grown.kind, zone - 1);
        EXPECT_EQ(grown.level, 1);
        EXPECT_EQ(grown.progress, 0.0f);
        EXPECT_EQ(grown.happiness, 55.0f);
        EXPECT_EQ(grown.occupants, 0);
        EXPECT_EQ(grown.working, 0);
        EXPECT_EQ(grown.y, HOME_Y);
        EXPECT_EQ(buildingAt(city, grown.x, grown.y), &grown);
        EXPECT_EQ(city.cellDirty[cellIndex(grown.x, grown.y)], 1);
        EXPECT_EQ(city.cells[cellIndex(grown.x, grown.y)].zone, zone);
        EXPECT_EQ(brokenInvariant(city), "wrong road access at " + std::to_string(grown.x) + ",21");
    }
}

TEST(Growth, ChangesTheCellsOfTheNewBuildingsAndNothingMore) {
    City city = zonedCity();
    City grown = city;
    growZones(grown);
    ASSERT_GT(grown.buildings.size(), 5u);
    expectExactly(city, growZones, [&grown](City& c) {
        for (const Building& building : grown.buildings) {
            addBuilding(c, building.x, building.y, KIND_HOMES).progress = 0.0f;
            c.cellDirty[cellIndex(building.x, building.y)] = 1;
        }
    });
}

TEST(Growth, AtMostFourteenBuildingsRiseInADay) {
    City city = zonedCity();
    for (int y = 0; y < GRID_SIZE; y++)
        for (int x = 0; x < GRID_SIZE; x++) {
            city.cells[cellIndex(x, y)].road = y % 2 ? ROAD_NONE : ROAD_STREET;
            city.cells[cellIndex(x, y)].zone = y % 2 ? ZONE_RESIDENTIAL : ZONE_NONE;
        }
    growZones(city);
    EXPECT_EQ(city.buildings.size(), 14u);
    city.day++;
    growZones(city);
    EXPECT_EQ(city.buildings.size(), 28u);
}

// The whole map is wanted, so that the first building stands close behind the place where the walk starts.
static int firstGrowth(int day) {
    City city = zonedCity();
    for (int i = 0; i < CELL_COUNT; i++) {
        const bool street = (i / GRID_SIZE) % 2 == 0;
        city.cells[i].road = street ? ROAD_STREET : ROAD_NONE;
        city.cells[i].zone = street ? ZONE_NONE : ZONE_RESIDENTIAL;
    }
    city.day = day;
    growZones(city);
    const Building& first = city.buildings.front();
    return cellIndex(first.x, first.y);
}

TEST(Growth, TheWalkStartsAtThirtySevenCellsTimesTheDayAndWrapsAround) {
    EXPECT_GE(firstGrowth(1), 37);
    EXPECT_LT(firstGrowth(1), 37 + 3 * GRID_SIZE);
    EXPECT_GE(firstGrowth(100), 3700);
    EXPECT_LT(firstGrowth(100), 3700 + 3 * GRID_SIZE);
    EXPECT_GE(firstGrowth(249), 9213 - 9216 + 96)
        << "9213 is the end of the map: the walk goes on at its top";
    EXPECT_LT(firstGrowth(250), 9250 - 9216 + 3 * GRID_SIZE);
}

TEST(Growth, TheWalkReachesTheFirstAndTheLastCellOfTheMap) {
    for (const auto& [x, y, roadX] : {std::array{0, 0, 1}, {95, 95, 94}}) {
        City city = oneCellCity();
        homeCell(city).zone = ZONE_NONE;
        city.cells[cellIndex(x, y)].zone = ZONE_RESIDENTIAL;
        layRoads(city, roadX, y, roadX, y);
        EXPECT_GT(growthsInAThousandDays(city), 0) << x;
    }
}

TEST(Growth, AWalkThatStartsBelowZeroWrapsAroundToo) {
    // 37 times this day wraps around to a negative number.
    const int day = 100000000;
    const int start = (static_cast<int32_t>(3700000000u) % CELL_COUNT + CELL_COUNT) % CELL_COUNT;
    EXPECT_GE(firstGrowth(day), start);
    EXPECT_LT(firstGrowth(day), start + 3 * GRID_SIZE);
}

TEST(Growth, LandThatIsTakenOrWildDoesNotGrow) {
    ASSERT_GT(growthsInAThousandDays(oneCellCity()), 100);
    const auto never = [](void (*spoil)(Cell&)) {
        City city = oneCellCity();
        spoil(homeCell(city));
        return growthsInAThousandDays(city) == 0;
    };
    EXPECT_TRUE(never([](Cell& cell) { cell.zone = ZONE_NONE; }));
    EXPECT_TRUE(never([](Cell& cell) { cell.road = ROAD_STREET; }));
    EXPECT_TRUE(never([](Cell& cell) { cell.hasTrees = 1; }));
    EXPECT_TRUE(never([](Cell& cell) { cell.terrain = TERRAIN_ROCK; }));
    EXPECT_TRUE(never([](Cell& cell) { cell.terrain = TERRAIN_WATER; }));
    EXPECT_TRUE(never([](Cell& cell) { cell.zone = 5; })) << "no such zone";
    EXPECT_FALSE(never([](Cell& cell) { cell.terrain = TERRAIN_SAND; }));
    EXPECT_FALSE(never([](Cell& cell) { cell.terrain = TERRAIN_WOODLAND; }));
}

TEST(Growth, ACellWithABuildingDoesNotGrowAgain) {
    City city = oneCellCity();
    addBuilding(city, HOME_X, HOME_Y, KIND_HOMES);
    for (city.day = 1; city.day <= 100; city.day++) growZones(city);
    EXPECT_EQ(city.buildings.size(), 1u);
}

TEST(Growth, ACellThatPointsOutsideTheListIsEmptyLand) {
    City city = oneCellCity();
    homeCell(city).buildingIndex = 1000;
    EXPECT_EQ(growthsInAThousandDays(city), growthsInAThousandDays(oneCellCity()));
}

TEST(Growth, OnlyLandBesideARoadGrows) {
    for (const CellStep& step : NEIGHBOURS) {
        City city = oneCellCity();
        layRoads(city, HOME_X, 20, HOME_X, 20, ROAD_NONE);
        EXPECT_EQ(growthsInAThousandDays(city), 0);
        city.cells[cellIndex(HOME_X + step.x, HOME_Y + step.y)].road = ROAD_AVENUE;
        EXPECT_GT(growthsInAThousandDays(city), 0);
    }
    City city = oneCellCity();
    layRoads(city, HOME_X, 20, HOME_X, 20, ROAD_NONE);
    layRoads(city, HOME_X + 1, 20, HOME_X + 1, 20);
    EXPECT_EQ(growthsInAThousandDays(city), 0) << "a road across the corner is no neighbour";
}

TEST(Growth, EachZoneAsksForAMinimumOfLandValue) {
    const std::array<float, 4> minimum = {0.28f, 0.30f, 0.36f, 0.22f};
    for (int zone = 0; zone < 4; zone++) {
        City city = oneCellCity(static_cast<uint8_t>(zone + 1));
        city.landValue[cellIndex(HOME_X, HOME_Y)] = minimum[zone];
        EXPECT_GT(growthsInAThousandDays(city), 0);
        city.landValue[cellIndex(HOME_X, HOME_Y)] = std::nextafterf(minimum[zone], 0.0f);
        EXPECT_EQ(growthsInAThousandDays(city), 0);
    }
}

TEST(Growth, BelowAQuarterOfRefusalNothingGrows) {
    City city = oneCellCity();
    city.demand[0] = -0.2f;
    EXPECT_GT(growthsInAThousandDays(city), 0);
    city.demand[0] = -0.25f;
    EXPECT_EQ(growthsInAThousandDays(city), 0);
    city.demand[0] = -0.4f;
    EXPECT_EQ(growthsInAThousandDays(city), 0);
    city.demand[0] = -0.6f;
    EXPECT_EQ(growthsInAThousandDays(city), 0);
}

TEST(Growth, EachZoneLooksAtItsOwnDemand) {
    for (int zone = 0; zone < 4; zone++) {
        City city = oneCellCity(static_cast<uint8_t>(zone + 1));
        city.demand = {-1.0f, -1.0f, -1.0f, -1.0f};
        EXPECT_EQ(growthsInAThousandDays(city), 0);
        city.demand[zone] = 1.0f;
        EXPECT_GT(growthsInAThousandDays(city), 0);
    }
}

// What one cell does each day for a thousand days, against the roll and the chance written out.
static void expectGrowthByRoll(City city, float chance) {
    for (city.day = 1; city.day <= 1000; city.day++) {
        growZones(city);
        const uint32_t day = static_cast<uint32_t>(city.day);
        const float roll = hashUnit(HOME_X * 31 + day, HOME_Y, day * 97 + city.seed);
        ASSERT_EQ(city.buildings.size(), roll < chance ? 1u : 0u) << "day " << day;
        city.buildings.clear();
        homeCell(city).buildingIndex = -1;
    }
}

TEST(Growth, TheChanceFollowsDemandAndLandValue) {
    City city = oneCellCity();
    city.seed = 4242;
    city.landValue[cellIndex(HOME_X, HOME_Y)] = 0.5f;
    city.demand[0] = 0.5f;
    expectGrowthByRoll(city, 0.75f * 0.1f * 1.1f);
}

TEST(Growth, TheChanceMayBeAsSmallAsItComes) {
    City city = oneCellCity();
    city.landValue[cellIndex(HOME_X, HOME_Y)] = 0.4f;
    city.demand[0] = -0.2f;
    expectGrowthByRoll(city, 0.05f * 0.1f * 1.0f);
}

TEST(Growth, RainSlowsGrowth) {
    City city = oneCellCity();
    city.landValue[cellIndex(HOME_X, HOME_Y)] = 0.5f;
    city.demand[0] = 0.75f;
    city.raining = 1;
    expectGrowthByRoll(city, 0.1f * 1.1f * 0.8f);
}

TEST(Growth, TheChanceIsHeldToThirtyPercent) {
    City city = oneCellCity();
    city.landValue[cellIndex(HOME_X, HOME_Y)] = 100.0f;
    expectGrowthByRoll(city, 0.3f);
}

TEST(Growth, ADemandThatIsNoNumberGrowsNothing) {
    City city = oneCellCity();
    city.demand[0] = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(growthsInAThousandDays(city), 0);
}

// --- levels ---------------------------------------------------------------------------------------------

static float levelRoll(int x, int y, int day, uint32_t seed) {
    return hashUnit(static_cast<uint32_t>(x * 13 + day), static_cast<uint32_t>(y), seed + 77);
}

// The first day on which the roll of the building at HOME_X, HOME_Y is below `limit`.
static int luckyDay(float limit) {
    int day = 1;
    while (!(levelRoll(HOME_X, HOME_Y, day, 0) < limit)) day++;
    return day;
}

// A working home of level 2 on the first day on which both levelling up and down would come true.
static City levelCity() {
    City city = flatCity();
    Building& home = addWorkingBuilding(city, HOME_X, HOME_Y, KIND_HOMES, 2);
    home.happiness = 70.0f;
    std::fill(city.landValue.begin(), city.landValue.end(), 0.6f);
    city.day = luckyDay(0.03f);
    return city;
}

static int levelAfter(City city, void (*change)(City&, Building&)) {
    change(city, city.buildings[0]);
    updateBuildingLevels(city);
    return city.buildings[0].level;
}

TEST(Levels, AHappyBuildingOnGoodLandRises) {
    City city = levelCity();
    updateBuildingLevels(city);
    EXPECT_EQ(city.buildings[0].level, 3);
    EXPECT_EQ(city.buildingsDirty, 1);
}

TEST(Levels, OfABuildingChangeNothingElse) {
    City city = levelCity();
    addWorkingBuilding(city, HOME_X + 1, HOME_Y, KIND_HOMES, 3).happiness = 70.0f;
    addWorkingBuilding(city, HOME_X + 2, HOME_Y, KIND_SCHOOL).happiness = 70.0f;
    expectExactly(city, updateBuildingLevels, [](City& c) {
        c.buildings[0].level = 3;
        c.buildingsDirty = 1;
    });
    city.buildings[1].unhappyDays = 30;
    expectExactly(city, updateBuildingLevels, [](City& c) {
        c.buildings[1].kind = KIND_CONDEMNED;
        postEvent(c, STATUS_ABANDONED, KIND_HOMES);
    });
    expectExactly(city, removeCondemnedBuildings, [](City& c) {
        c.buildings.erase(c.buildings.begin() + 1);
        c.cells[cellIndex(HOME_X + 1, HOME_Y)].buildingIndex = -1;
        c.cells[cellIndex(HOME_X + 2, HOME_Y)].buildingIndex = 1;
        c.overlayDirty = 1;
    });
}

TEST(Levels, RisingNeedsEveryCondition) {
    const City city = levelCity();
    const auto after = [&city](void (*change)(City&, Building&)) { return levelAfter(city, change); };
    EXPECT_EQ(after([](City&, Building& b) { b.happiness = 62.0f; }), 3);
    EXPECT_EQ(after([](City&, Building& b) { b.happiness = 61.9f; }), 2);
    EXPECT_EQ(after([](City&, Building& b) { b.working = 0; }), 2);
    EXPECT_EQ(after([](City&, Building& b) { b.progress = 0.9f; }), 2);
    EXPECT_EQ(after([](City&, Building& b) { b.level = 3; }), 3);
    EXPECT_EQ(after([](City& c, Building&) { c.landValue[cellIndex(HOME_X, HOME_Y)] = 0.45f; }), 3);
    EXPECT_EQ(after([](City& c, Building&) { c.landValue[cellIndex(HOME_X, HOME_Y)] = 0.449f; }), 2);
    EXPECT_EQ(after([](City& c, Building&) { c.demand[0] = -0.1f; }), 3);
    EXPECT_EQ(after([](City& c, Building&) { c.demand[0] = -0.101f; }), 2);
    EXPECT_EQ(after([](City& c, Building&) { c.day++; }), 2) << "the roll of the next day is against it";
}

TEST(Levels, EveryGrownKindLooksAtItsOwnDemand) {
    for (uint8_t kind = KIND_HOMES; kind <= KIND_FACTORY; kind++) {
        City city = levelCity();
        city.demand = {-1.0f, -1.0f, -1.0f, -1.0f};
        city.buildings[0].kind = kind;
        updateBuildingLevels(city);
        EXPECT_EQ(city.buildings[0].level, 2);
        city.demand[kind] = 0.0f;
        updateBuildingLevels(city);
        EXPECT_EQ(city.buildings[0].level, 3);
    }
}

TEST(Levels, ABuildingRisesOnDaysWhenTheRollIsBelowFivePercent) {
    City city = levelCity();
    city.seed = 99;
    for (city.day = 1; city.day <= 400; city.day++) {
        city.buildings[0].level = 2;
        updateBuildingLevels(city);
        ASSERT_EQ(city.buildings[0].level, levelRoll(HOME_X, HOME_Y, city.day, 99) < 0.05f ? 3 : 2);
    }
}

TEST(Levels, AnUnhappyBuildingSinksOnDaysWhenTheRollIsBelowThreePercent) {
    City city = levelCity();
    city.buildings[0].happiness = 24.9f;
    for (city.day = 1; city.day <= 400; city.day++) {
        city.buildings[0].level = 2;
        city.buildingsDirty = 0;
        updateBuildingLevels(city);
        const bool sinks = levelRoll(HOME_X, HOME_Y, city.day, 0) < 0.03f;
        ASSERT_EQ(city.buildings[0].level, sinks ? 1 : 2);
        ASSERT_EQ(city.buildingsDirty, sinks ? 1 : 0);
    }
}

TEST(Levels, SinkingNeedsUnhappinessAndALevelToLose) {
    const City city = levelCity();
    const auto after = [&city](void (*change)(City&, Building&)) { return levelAfter(city, change); };
    EXPECT_EQ(after([](City&, Building& b) { b.happiness = 25.0f; }), 2);
    EXPECT_EQ(after([](City&, Building& b) { b.happiness = 24.0f; }), 1);
    EXPECT_EQ(after([](City&, Building& b) { b.happiness = 24.0f, b.working = 0; }), 1);
    EXPECT_EQ(after([](City&, Building& b) { b.happiness = 24.0f, b.level = 1; }), 1);
}

TEST(Levels, ServicesHaveNoLevelsAndAreNeverAbandoned) {
    City city = levelCity();
    for (uint8_t kind = KIND_POLICE_STATION; kind < KIND_COUNT; kind++) {
        city.buildings[0].kind = kind;
        city.buildings[0].level = 1;
        city.buildings[0].unhappyDays = 1000;
        updateBuildingLevels(city);
        EXPECT_EQ(city.buildings[0].kind, kind);
        EXPECT_EQ(city.buildings[0].level, 1);
    }
}

// --- abandonment ----------------------------------------------------------------------------------------

static bool isAbandoned(int unhappyDays, int unservedDays) {
    City city = levelCity();
    city.buildings[0].kind = KIND_SHOPS;
    city.buildings[0].unhappyDays = unhappyDays;
    city.buildings[0].unservedDays = unservedDays;
    updateBuildingLevels(city);
    const bool abandoned = city.buildings[0].kind == KIND_CONDEMNED;
    EXPECT_EQ(city.eventCount, abandoned ? 1u : 0u);
    if (abandoned) {
        EXPECT_EQ(city.events[0].id, STATUS_ABANDONED);
        EXPECT_EQ(city.events[0].arg, KIND_SHOPS);
    }
    return abandoned;
}

TEST(Abandonment, ThirtyUnhappyDaysCondemnABuilding) {
    EXPECT_FALSE(isAbandoned(29, 0));
    EXPECT_TRUE(isAbandoned(30, 0));
}

TEST(Abandonment, EightUnservedDaysWouldCondemnABuilding) {
    EXPECT_FALSE(isAbandoned(0, 7));
    EXPECT_TRUE(isAbandoned(0, 8));
}

TEST(Abandonment, RemovalKeepsTheOrderAndEveryCellFollows) {
    City city = flatCity();
    layRoads(city, 0, 0, 9, 0);
    for (int x = 0; x < 10; x++) {
        city.cells[cellIndex(x, 1)].zone = ZONE_RESIDENTIAL;
        addWorkingBuilding(city, x, 1, x % 3 == 0 ? KIND_CONDEMNED : KIND_HOMES).occupants = x;
    }
    removeCondemnedBuildings(city);

    ASSERT_EQ(city.buildings.size(), 6u);
    for (size_t i = 1; i < 6; i++) EXPECT_LT(city.buildings[i - 1].occupants, city.buildings[i].occupants);
    for (int x = 0; x < 10; x++) {
        const Building* building = buildingAt(city, x, 1);
        ASSERT_EQ(building == nullptr, x % 3 == 0);
        if (building) {
            EXPECT_EQ(building->occupants, x);
        }
        EXPECT_EQ(city.cells[cellIndex(x, 1)].zone, ZONE_RESIDENTIAL) << "the land can grow again";
    }
    EXPECT_EQ(city.cells[cellIndex(0, 1)].buildingIndex, -1);
    EXPECT_EQ(city.buildingsDirty, 1);
    EXPECT_EQ(city.overlayDirty, 1);
    EXPECT_EQ(brokenInvariant(city), "");
}

TEST(Abandonment, WithNothingCondemnedNothingIsTouched) {
    City city = flatCity();
    addWorkingBuilding(city, 5, 5, KIND_HOMES);
    city.cells[cellIndex(6, 6)].buildingIndex = 77;
    const CityHashes before = cityHashes(city);
    removeCondemnedBuildings(city);
    EXPECT_EQ(cityHashes(city), before);
}

TEST(Abandonment, RemovalReachesEveryCellThatPointsAtTheRecordAndNoWildIndex) {
    City city = flatCity();
    addWorkingBuilding(city, 5, 5, KIND_CONDEMNED);
    addWorkingBuilding(city, 6, 5, KIND_HOMES);
    city.cells[cellIndex(50, 50)].buildingIndex = 0;
    city.cells[cellIndex(51, 50)].buildingIndex = 1;
    city.cells[cellIndex(52, 50)].buildingIndex = 2000000000;
    city.cells[cellIndex(53, 50)].buildingIndex = -2000000000;
    removeCondemnedBuildings(city);
    EXPECT_EQ(city.cells[cellIndex(50, 50)].buildingIndex, -1);
    EXPECT_EQ(city.cells[cellIndex(51, 50)].buildingIndex, 0);
    EXPECT_EQ(buildingAt(city, 52, 50), nullptr);
    EXPECT_EQ(buildingAt(city, 53, 50), nullptr);
}

TEST(WildCities, BuildingsOffTheMapStandOnWorthlessLand) {
    City city = levelCity();
    city.buildings[0].x = -5;
    city.buildings[0].y = 30000;
    for (city.day = 1; city.day < 500; city.day++) updateBuildingLevels(city);
    EXPECT_EQ(city.buildings[0].level, 2);
}
