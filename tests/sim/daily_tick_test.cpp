#include "sim/city_helpers.h"
#include "sim/daily_tick.h"
#include "sim/hash.h"
#include "sim/map_generation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

static void tick(City& city, int days) {
    for (int i = 0; i < days; i++) dailyTick(city);
}

TEST(DailyTick, ABankruptCityStandsStillForGood) {
    City city = flatCity();
    city.bankrupt = 1;
    city.keepPlaying = 1;
    const uint64_t before = cityHash(city);
    tick(city, 3);
    EXPECT_EQ(cityHash(city), before);
}

TEST(DailyTick, AfterTheLastMissionTheCityWaitsForThePlayer) {
    City city = flatCity();
    city.allMissionsDone = 1;
    city.missionIndex = 6;
    tick(city, 3);
    EXPECT_EQ(city.day, 0);
    city.keepPlaying = 1;
    tick(city, 3);
    EXPECT_EQ(city.day, 3);
}

TEST(Weather, TheFirstRollComesOnDayFour) {
    City city = flatCity();
    tick(city, 3);
    EXPECT_EQ(city.weatherDaysLeft, 1);
    EXPECT_EQ(city.raining, 0);
    tick(city, 1);
    const uint32_t roll = hashCell(4, 7, city.seed);
    EXPECT_EQ(city.raining, roll % 100 < 30 ? 1 : 0);
    EXPECT_EQ(city.weatherDaysLeft, static_cast<int>((roll >> 8) % 5) + 3);
}

TEST(Weather, LastsThreeToSevenDaysAndRainsThreeTimesInTen) {
    City city = flatCity();
    std::array<int, 8> spells = {};
    int rainy = 0;
    int total = 0;
    for (city.seed = 1; city.seed <= 200; city.seed++) {
        city.day = 0;
        city.money = 1e9;
        city.weatherDaysLeft = 1;
        tick(city, 1);
        ASSERT_EQ(city.raining, hashCell(1, 7, city.seed) % 100 < 30) << "seed " << city.seed;
        spells[city.weatherDaysLeft]++;
        rainy += city.raining;
        total++;
    }
    EXPECT_EQ(spells[0] + spells[1] + spells[2], 0);
    for (int days = 3; days <= 7; days++) EXPECT_GT(spells[days], 5);
    EXPECT_GT(rainy, total / 5);
    EXPECT_LT(rainy, total * 2 / 5);
}

// Days from the first tick until the building is finished.
static int constructionDays(City& city, uint8_t kind) {
    addBuilding(city, 50, 50, kind).progress = 0.0f;
    int days = 0;
    while (city.buildings[0].progress < 1.0f && days < 100) {
        dailyTick(city);
        days++;
    }
    EXPECT_EQ(city.buildings[0].progress, 1.0f);
    return days;
}

TEST(Construction, TakesTwoDaysForGrownKindsFiveForPowerAndThreeForTheRest) {
    const std::array<int, KIND_COUNT> days = {2, 2, 2, 2, 3, 3, 3, 3, 3, 3, 5, 5, 5, 3};
    for (uint8_t kind = 0; kind < KIND_COUNT; kind++) {
        City city = flatCity();
        EXPECT_EQ(constructionDays(city, kind), days[kind]) << "kind " << int{kind};
    }
}

TEST(Construction, MovesByAHalfAFifthOrAThirdADay) {
    for (uint8_t kind = 0; kind < KIND_COUNT; kind++) {
        City city = flatCity();
        addBuilding(city, 50, 50, kind).progress = 0.0f;
        tick(city, 1);
        const bool isPowerSource = kind >= KIND_GAS_POWER_PLANT && kind <= KIND_WIND_TURBINE;
        EXPECT_EQ(city.buildings[0].progress, isGrownKind(kind) ? 0.5f
                                              : isPowerSource   ? 0.2f
                                                                : 0.33333334f)
            << "kind " << int{kind};
    }
}

TEST(Construction, WhatThePlayerPlacedAnnouncesItselfWhatGrewDoesNot) {
    for (uint8_t kind = 0; kind < KIND_COUNT; kind++) {
        City city = flatCity();
        constructionDays(city, kind);
        tick(city, 3);
        if (isGrownKind(kind)) {
            EXPECT_EQ(city.eventCount, 0u);
            continue;
        }
        ASSERT_EQ(city.eventCount, 1u);
        EXPECT_EQ(city.events[0].id, STATUS_FINISHED);
        EXPECT_EQ(city.events[0].arg, kind);
    }
}

TEST(Construction, AFinishedPowerPlantServesOnTheSameDay) {
    City city = flatCity();
    layRoads(city, 40, 49, 60, 49);
    addBuilding(city, 50, 50, KIND_GAS_POWER_PLANT).progress = 0.0f;
    addBuilding(city, 52, 50, KIND_WATER_PUMP);
    addBuilding(city, 54, 50, KIND_SCHOOL);
    tick(city, 4);
    EXPECT_EQ(city.buildings[2].working, 0);
    tick(city, 1);
    EXPECT_EQ(city.buildings[2].working, 1);
    EXPECT_GT(city.coverage[COVERAGE_EDUCATION][cellIndex(54, 50)], 0.0f);
    EXPECT_EQ(city.jobs, 22 + 6 + 25);
}

TEST(DailyTick, CountsTheRoadsOfTheDay) {
    City city = flatCity();
    layRoads(city, 10, 10, 16, 10);
    layRoads(city, 10, 11, 12, 11, ROAD_AVENUE);
    layRoads(city, 10, 20, 12, 20, 3);
    tick(city, 1);
    EXPECT_EQ(city.streetCells, 7);
    EXPECT_EQ(city.avenueCells, 3);
}

TEST(DailyTick, TheChartsShowTheDayThatEnds) {
    City city = flatCity();
    layRoads(city, 10, 10, 19, 10);
    tick(city, 2);
    ASSERT_EQ(city.historyCount, 2);
    EXPECT_EQ(city.history[HISTORY_EXPENSES][1], static_cast<float>(city.lastExpense));
    EXPECT_EQ(city.history[HISTORY_HAPPINESS][1], 60.0f);
}

TEST(DailyTick, GrowthSeesYesterdaysDemand) {
    City city = flatCity();
    layRoads(city, 0, 20, 95, 20);
    for (int x = 0; x < GRID_SIZE; x++) {
        city.cells[cellIndex(x, 21)].zone = ZONE_RESIDENTIAL;
        city.cells[cellIndex(x, 19)].zone = ZONE_RESIDENTIAL;
    }
    City eager = city;
    eager.demand[0] = 1.0f;
    tick(city, 1);
    tick(eager, 1);
    EXPECT_GT(eager.buildings.size(), city.buildings.size());
    EXPECT_EQ(eager.demand, city.demand) << "today's demand counts for tomorrow";
}

TEST(DailyTick, ANewBuildingHasItsRoadAndAGoneOneIsGoneByTheEvening) {
    City city = flatCity();
    layRoads(city, 0, 20, 95, 20);
    for (int x = 0; x < GRID_SIZE; x++) city.cells[cellIndex(x, 21)].zone = ZONE_INDUSTRIAL;
    city.demand = {1.0f, 1.0f, 1.0f, 1.0f};
    addBuilding(city, 50, 60, KIND_HOMES).unhappyDays = 1000;
    tick(city, 1);
    ASSERT_FALSE(city.buildings.empty());
    for (const Building& building : city.buildings) {
        EXPECT_EQ(building.kind, KIND_FACTORY);
        EXPECT_EQ(building.roadAccess, 1);
    }
    EXPECT_EQ(brokenInvariant(city), "");
}

TEST(DailyTick, EveryRuleHoldsAtTheEndOfEachDayOfAGrowingTown) {
    City city;
    generateMap(city, 5);
    layRoads(city, 41, 48, 55, 48);
    for (int x = 41; x <= 55; x++) {
        city.cells[cellIndex(x, 47)].zone = ZONE_RESIDENTIAL;
        city.cells[cellIndex(x, 49)].zone = static_cast<uint8_t>(1 + x % 4);
    }
    city.cells[cellIndex(41, 47)].zone = city.cells[cellIndex(55, 47)].zone = ZONE_NONE;
    addBuilding(city, 41, 47, KIND_WIND_TURBINE);
    addBuilding(city, 55, 47, KIND_WATER_PUMP);
    for (int day = 0; day < 200; day++) {
        dailyTick(city);
        ASSERT_EQ(brokenInvariant(city), "") << "day " << city.day;
    }
    EXPECT_GT(city.population, 50);
}

// --- the order of the day: each step sees what those before it left, and nothing of those behind it --------

TEST(OrderOfTheDay, TheWeatherIsRolledForTheNewDayAndFeltAtOnce) {
    City wet = flatCity();
    addBuilding(wet, 50, 50, KIND_PARK);
    wet.day = 7;
    wet.weatherDaysLeft = 1;
    const auto rainsOn = [&wet](uint32_t day) { return hashCell(day, 7, wet.seed) % 100 < 30; };
    while (rainsOn(7) || !rainsOn(8)) wet.seed++;
    City dry = wet;
    dry.weatherDaysLeft = 2;
    tick(wet, 1);
    tick(dry, 1);
    EXPECT_EQ(wet.raining, 1);
    EXPECT_NEAR(dry.buildings[0].happiness - wet.buildings[0].happiness, 0.4f, 1e-4f);
}

TEST(OrderOfTheDay, WhatIsFinishedTodayServesAndRaisesItsLandAndPleasesToday) {
    City city = flatCity();
    layRoads(city, 50, 49, 50, 49);
    Building& park = addBuilding(city, 50, 50, KIND_PARK);
    park.progress = 0.9f;
    // All of yesterday's fields are wrong.
    park.congestion = 1.0f;
    for (Grid& grid : city.coverage) std::fill(grid.begin(), grid.end(), 1.0f);
    for (Grid* grid : {&city.trafficLoad, &city.pollution, &city.landValue})
        std::fill(grid->begin(), grid->end(), 1.0f);
    tick(city, 1);
    EXPECT_EQ(city.buildings[0].working, 1);
    EXPECT_EQ(city.coverage[COVERAGE_PARKS][cellIndex(50, 50)], 1.0f);
    EXPECT_EQ(city.coverage[COVERAGE_POLICE][cellIndex(50, 50)], 0.0f);
    EXPECT_EQ(city.landValue[cellIndex(50, 50)], 0.45f + 0.25f + 0.08f);
    EXPECT_FLOAT_EQ(city.buildings[0].happiness, 60.0f + (55.0f + 12.0f + 0.38f * 20.0f - 60.0f) * 0.2f);
}

TEST(OrderOfTheDay, ThoseWhoMoveInTodayPayTodayAndDriveTomorrow) {
    City city = flatCity();
    layRoads(city, 50, 49, 52, 49);
    addBuilding(city, 50, 50, KIND_WIND_TURBINE);
    addBuilding(city, 51, 50, KIND_WATER_PUMP);
    addBuilding(city, 52, 50, KIND_HOMES).occupants = 5; // served since this morning
    city.workers = city.population = 1000;
    city.lastIncome = city.lastExpense = 1000.0;
    tick(city, 1);
    EXPECT_EQ(city.buildings[2].occupants, 6);
    EXPECT_EQ(city.commuters, 3);
    EXPECT_EQ(city.population, 5);
    EXPECT_EQ(city.lastIncome, 3.0);
    EXPECT_EQ(city.demand[0], (4.0f + 6.0f - 3.0f) / 303.0f) << "two places of work and today's workers";
    ASSERT_EQ(city.historyCount, 1);
    EXPECT_EQ(city.history[HISTORY_INCOME][0], 3.0f);
    EXPECT_EQ(city.history[HISTORY_EXPENSES][0], static_cast<float>(40 + 55 + 0.5 + 3 * 0.6));
    EXPECT_EQ(city.history[HISTORY_POPULATION][0], 5.0f);
    EXPECT_FLOAT_EQ(city.history[HISTORY_HAPPINESS][0], city.buildings[2].happiness);
}

TEST(OrderOfTheDay, AHigherLevelIsReachedByTodaysHappinessAsksForWorkersTodayAndCostsTomorrow) {
    City city = flatCity();
    layRoads(city, 50, 49, 53, 49);
    addBuilding(city, 50, 50, KIND_SHOPS).happiness = 61.9f;
    addBuilding(city, 51, 50, KIND_PARK);
    addBuilding(city, 52, 50, KIND_WIND_TURBINE);
    addBuilding(city, 53, 50, KIND_WATER_PUMP);
    const auto roll = [&city] {
        return hashUnit(50 * 13 + static_cast<uint32_t>(city.day) + 1, 50, city.seed + 77);
    };
    while (roll() >= 0.05f) city.day++;
    tick(city, 1);
    ASSERT_EQ(city.buildings[0].level, 2);
    EXPECT_EQ(city.jobs, 4 + 2 + 4 + 6);
    EXPECT_EQ(city.demand[0], (16.0f + 2.0f + 4.0f + 6.0f) / 300.0f);
    EXPECT_EQ(city.lastExpense, 0.5 + 6 + 40 + 55 + 0.6 + 0.6 + 0.6 + 0.6);
}

TEST(OrderOfTheDay, TheLandOfABuildingThatFallsStaysEmptyUntilTomorrow) {
    City bare = flatCity();
    layRoads(bare, 50, 49, 50, 49);
    bare.cells[cellIndex(50, 50)].zone = ZONE_RESIDENTIAL;
    bare.demand[0] = 1.0f;
    const auto roll = [&bare] {
        const uint32_t tomorrow = static_cast<uint32_t>(bare.day) + 1;
        return hashUnit(50 * 31 + tomorrow, 50, tomorrow * 97 + bare.seed);
    };
    while (roll() >= 0.1f) bare.day++;
    City built = bare;
    addBuilding(built, 50, 50, KIND_HOMES).unhappyDays = 1000;
    tick(bare, 1);
    tick(built, 1);
    EXPECT_EQ(bare.buildings.size(), 1u);
    EXPECT_TRUE(built.buildings.empty());
}

// The farm serves 45 of the 46, until the first one falls.
TEST(OrderOfTheDay, WhatTheAbandonedUsedServesOthersInTheEveningAndCountsTomorrow) {
    City city = flatCity();
    layRoads(city, 32, 49, 64, 49);
    addBuilding(city, 48, 50, KIND_SOLAR_FARM);
    addBuilding(city, 49, 50, KIND_WATER_PUMP);
    addBuilding(city, 47, 50, KIND_HOMES).unhappyDays = 1000;
    for (int i = 0; i < 45; i++) {
        const uint8_t kind = i < 29 ? KIND_BUS_DEPOT : i < 35 ? KIND_OFFICE_TOWER : KIND_SHOPS;
        addBuilding(city, i < 30 ? 34 + i : 20 + i, i < 30 ? 48 : 50, kind);
    }
    city.missionIndex = 2; // 10 shops and 6 offices
    tick(city, 1);
    ASSERT_EQ(city.buildings.size(), 47u);
    for (const Building& building : city.buildings) EXPECT_EQ(building.working, 1);
    EXPECT_EQ(city.jobs, 5 + 6 + 29 * 12 + 6 * 8 + 9 * 4);
    EXPECT_EQ(city.demand[0], 1.0f);
    EXPECT_EQ(city.demand[1], -36.0f / 300.0f);
    EXPECT_EQ(city.missionIndex, 2);
    tick(city, 1);
    EXPECT_EQ(city.jobs, 5 + 6 + 29 * 12 + 6 * 8 + 10 * 4);
    EXPECT_EQ(city.missionIndex, 3);
}

TEST(OrderOfTheDay, BillsBankruptACityBeforeAMissionOfTheSameDayCouldSaveIt) {
    City city = flatCity();
    layRoads(city, 10, 10, 29, 10); // 12 a day, and counted today
    for (int x = 10; x < 30; x++) city.cells[cellIndex(x, 40)].zone = ZONE_OFFICES;
    city.money = 2.0;
    city.daysBelowZero = 9;
    tick(city, 1);
    EXPECT_EQ(city.bankrupt, 1);
    EXPECT_EQ(city.daysBelowZero, 10);
    EXPECT_EQ(city.missionIndex, 1);
    EXPECT_NEAR(city.money, 2.0 - 12.0 + 15000.0, 1e-9);
    ASSERT_EQ(city.events.size(), 2u);
    EXPECT_EQ(city.events[0].id, STATUS_MISSION_COMPLETE);
    EXPECT_EQ(city.events[1].id, STATUS_BANKRUPT);
}

TEST(OrderOfTheDay, AMissionIsMetByThePeopleOfToday) {
    City city = flatCity();
    layRoads(city, 50, 49, 52, 49);
    addBuilding(city, 50, 50, KIND_WIND_TURBINE);
    addBuilding(city, 51, 50, KIND_WATER_PUMP);
    addBuilding(city, 52, 50, KIND_HOMES, 3).occupants = 80;
    city.missionIndex = 1;
    tick(city, 1);
    EXPECT_EQ(city.missionIndex, 2);
}

// --- bankruptcy -----------------------------------------------------------------------------------------

TEST(Bankruptcy, NineDaysBelowZeroAreForgiven) {
    City city = flatCity();
    city.money = -5.0;
    tick(city, 9);
    EXPECT_EQ(city.daysBelowZero, 9);
    city.money = 0.0;
    tick(city, 1);
    EXPECT_EQ(city.daysBelowZero, 0);
    city.money = -5.0;
    tick(city, 9);
    EXPECT_EQ(city.bankrupt, 0);
}

TEST(Bankruptcy, TheTenthDayInARowEndsTheGameOnce) {
    City city = flatCity();
    city.money = -5.0;
    tick(city, 10);
    EXPECT_EQ(city.bankrupt, 1);
    EXPECT_EQ(city.day, 10);
    ASSERT_EQ(city.eventCount, 1u);
    EXPECT_EQ(city.events[0].id, STATUS_BANKRUPT);
    EXPECT_EQ(city.events[0].arg, 0u);
    city.money = 1e6;
    tick(city, 5);
    EXPECT_EQ(city.day, 10);
    EXPECT_EQ(city.eventCount, 1u);
}

TEST(Bankruptcy, ACityThatOnlySpendsRunsOutOfMoneyAndIsClosed) {
    City city = flatCity();
    city.money = 1000.0;
    layRoads(city, 40, 49, 60, 49);
    for (const uint8_t kind : {KIND_GAS_POWER_PLANT, KIND_WATER_PUMP, KIND_HOSPITAL, KIND_SCHOOL})
        addBuilding(city, 40 + kind, 50, kind);
    tick(city, 100);
    EXPECT_EQ(city.bankrupt, 1);
    // 385 of upkeep and 12.60 for the street leave 205 after two days, so that the third is the first below
    // 0.
    EXPECT_EQ(city.day, 12);
    EXPECT_LT(city.money, 0.0);
}

// --- wild saves -----------------------------------------------------------------------------------------

TEST(WildCities, EveryCountMayStandAtItsEnd) {
    constexpr int32_t HIGHEST = std::numeric_limits<int32_t>::max();
    constexpr int32_t LOWEST = std::numeric_limits<int32_t>::min();
    for (const int32_t extreme : {HIGHEST, LOWEST}) {
        City city = flatCity();
        layRoads(city, 10, 10, 30, 10);
        city.day = extreme;
        city.weatherDaysLeft = extreme;
        city.daysBelowZero = extreme;
        city.money = -1e12;
        for (uint8_t kind = 0; kind < KIND_COUNT; kind++) {
            Building& building = addBuilding(city, 10 + kind, 11, kind, 255);
            building.occupants = extreme;
            building.unhappyDays = extreme;
            building.unservedDays = extreme;
            building.happiness = -1e30f;
        }
        tick(city, 1);
        EXPECT_EQ(city.day, extreme == HIGHEST ? LOWEST : LOWEST + 1);
        EXPECT_EQ(city.bankrupt, extreme == HIGHEST ? 1 : 0);
        city.bankrupt = 0;
        tick(city, 3);
    }
}

TEST(WildCities, FiguresThatAreNoNumbersPassThroughADay) {
    for (const float wild : {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity(),
                             -std::numeric_limits<float>::infinity()}) {
        City city = flatCity();
        layRoads(city, 10, 10, 30, 10);
        city.demand.fill(wild);
        city.educatedShare = city.goodsDemand = city.goodsSupply = city.goodsRatio = wild;
        for (uint8_t kind = 0; kind < KIND_COUNT; kind++)
            for (const float progress : {wild, 1.0f}) {
                Building& building = addBuilding(city, 10 + kind, 11, kind);
                building.progress = progress;
                building.happiness = building.staffing = building.congestion = wild;
                building.occupants = 5;
            }
        tick(city, 5);
        EXPECT_EQ(city.day, 5);
        for (const float demand : city.demand) EXPECT_TRUE(demand >= -1.0f && demand <= 1.0f);
    }
}

// Every byte of every cell and building is drawn by a hash.
static City scrambledCity(uint32_t seed) {
    City city;
    generateMap(city, seed);
    const auto scramble = [seed](void* data, size_t size, uint32_t salt) {
        for (size_t i = 0; i < size; i++)
            static_cast<uint8_t*>(data)[i] =
                static_cast<uint8_t>(hashCell(static_cast<uint32_t>(i), salt, seed) >> 7);
    };
    for (int i = 0; i < CELL_COUNT; i++) {
        if (hashCell(static_cast<uint32_t>(i), 1, seed) % 3 != 0) continue;
        scramble(&city.cells[i], sizeof(Cell), static_cast<uint32_t>(i) + 10);
        if (i % 2) city.cells[i].buildingIndex %= 500;
        if (i % 3) city.cells[i].zone %= 5;
    }
    city.buildings.resize(400);
    for (size_t i = 0; i < city.buildings.size(); i++) {
        Building& building = city.buildings[i];
        scramble(&building, sizeof(Building), static_cast<uint32_t>(i) + 20000);
        if (i % 2) building.kind %= KIND_COUNT;
        if (i % 4) building.progress = 1.0f;
        if (i % 3) building.x = static_cast<int16_t>(building.x % 100);
        if (i % 3) building.y = static_cast<int16_t>(building.y % 100);
    }
    city.day = static_cast<int32_t>(hashCell(3, 4, seed));
    city.money = seed % 2 ? 1e300 : std::numeric_limits<double>::quiet_NaN();
    return city;
}

TEST(WildCities, AnyBytesInCellsAndBuildingsLiveThroughTheirDays) {
    for (uint32_t seed = 1; seed <= 20; seed++) {
        City city = scrambledCity(seed);
        const int32_t day = city.day;
        tick(city, 10);
        EXPECT_EQ(city.day, static_cast<int32_t>(static_cast<uint32_t>(day) + 10));
        EXPECT_LE(city.population, city.buildings.size() * 80);
    }
}
