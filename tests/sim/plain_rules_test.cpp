// The game's passes leave the same bytes as their plain forms, whatever happened in between.
#include "sim/plain_rules.h"

#include "sim/city_helpers.h"
#include "sim/daily_tick.h"
#include "sim/grown_cities.h"
#include "sim/growth.h"
#include "sim/map_generation.h"
#include "sim/networks.h"
#include "sim/population.h"
#include "sim/random_city.h"
#include "sim/services.h"
#include "sim/traffic.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

// Runs every pass in both forms, in the order of a day, and expects the same city after each.
static void expectSamePasses(City& city, const std::string& when) {
    City plainCity = city;
    updateUtilities(city);
    plain::updateUtilities(plainCity);
    ASSERT_EQ(cityHashes(city), cityHashes(plainCity)) << "utilities, " << when;
    updateCoverage(city);
    plain::updateCoverage(plainCity);
    ASSERT_EQ(cityHashes(city), cityHashes(plainCity)) << "coverage, " << when;
    updateTraffic(city);
    plain::updateTraffic(plainCity);
    ASSERT_EQ(cityHashes(city), cityHashes(plainCity)) << "traffic, " << when;
    updateLandValue(city);
    plain::updateLandValue(plainCity);
    ASSERT_EQ(cityHashes(city), cityHashes(plainCity)) << "land value, " << when;
    updatePopulation(city);
    plain::updatePopulation(plainCity);
    ASSERT_EQ(cityHashes(city), cityHashes(plainCity)) << "population, " << when;
    growZones(city);
    plain::growZones(plainCity);
    ASSERT_EQ(cityHashes(city), cityHashes(plainCity)) << "growth, " << when;
    removeCondemnedBuildings(city);
    plain::removeCondemnedBuildings(plainCity);
    ASSERT_EQ(cityHashes(city), cityHashes(plainCity)) << "clean-up, " << when;
    updateDemand(city);
    plain::updateDemand(plainCity);
    ASSERT_EQ(cityHashes(city), cityHashes(plainCity)) << "demand, " << when;
}

static void finishAll(City& city) {
    for (Building& building : city.buildings) building.progress = 1.0f;
}

TEST(FastPasses, EqualThePlainOnesInAGrownTown) {
    City city = townOf5000();
    ASSERT_GT(city.population, 4500);
    expectSamePasses(city, "as grown");
    for (const int budget : {50, 90, 150}) {
        city.serviceBudget.fill(budget);
        expectSamePasses(city, "budget " + std::to_string(budget));
    }
    city.districtPolicy.fill(POLICY_SMOKE_FREE);
    expectSamePasses(city, "smoke free");
}

TEST(FastPasses, EqualThePlainOnesDayByDay) {
    City city = gridCity(3, 3, 0);
    City plainCity = city;
    for (int day = 1; day <= 150; day++) {
        dailyTick(city);
        plain::dailyTick(plainCity);
        ASSERT_EQ(cityHashes(city), cityHashes(plainCity)) << "day " << day;
    }
    EXPECT_GT(city.population, 3000);
}

TEST(FastPasses, EqualThePlainOnesAfterEveryUseOfATool) {
    City city;
    generateMap(city, 7);
    city.money = 1e9;
    for (uint32_t step = 0; step < 600; step++) {
        operate(city, step);
        City again = city;
        plain::updateUtilities(again);
        ASSERT_EQ(cityHashes(again).buildings, cityHashes(city).buildings) << "step " << step;
        if (step % 10 != 0) continue;
        if (step % 50 == 0) finishAll(city);
        ASSERT_NO_FATAL_FAILURE(expectSamePasses(city, "step " + std::to_string(step)));
    }
}

// Sources run dry one after the other, and each building beyond must find the next nearest.
TEST(FastPasses, EqualThePlainOnesInAShortage) {
    City city = flatCity();
    layRoads(city, 0, 40, 95, 40);
    for (int i = 0; i < 6; i++) {
        addBuilding(city, 20 + 4 * i, 39, KIND_SOLAR_FARM);
        addBuilding(city, 22 + 4 * i, 39, i % 2 ? KIND_WIND_TURBINE : KIND_WATER_PUMP);
    }
    for (int i = 0; i < 1200; i++) addBuilding(city, 10 + i * 7 % 60, 41 + i / 60, KIND_HOMES);
    expectSamePasses(city, "shortage");
    EXPECT_EQ(std::count_if(city.buildings.begin() + 12, city.buildings.end(),
                            [](const Building& home) { return home.powered; }),
              6 * 45 + 3 * 60);
    std::reverse(city.buildings.begin(), city.buildings.end());
    expectSamePasses(city, "the young first");
}

// Only a loaded file can pile sources up on one cell. Piles at equal distances take turns by their place in
// the list.
TEST(FastPasses, EqualThePlainOnesWithPilesOfSources) {
    City city = flatCity();
    layRoads(city, 30, 40, 70, 40);
    for (int i = 0; i < 40; i++) {
        const uint8_t kind = static_cast<uint8_t>(KIND_GAS_POWER_PLANT + i * 5 % 7 % 4);
        addBuilding(city, 40 + i * 3 % 5 * 5, 39 + i % 2 * 2, kind);
        for (int home = 0; home < 90; home++) addBuilding(city, 35 + home % 30, 42 + i % 12, KIND_HOMES);
        ASSERT_NO_FATAL_FAILURE(expectSamePasses(city, "source " + std::to_string(i)));
    }
    EXPECT_TRUE(std::any_of(city.buildings.begin(), city.buildings.end(),
                            [](const Building& building) { return !building.powered; }));
}

TEST(FastPasses, EqualThePlainOnesInWildCities) {
    for (uint32_t salt = 0; salt < 12; salt++) {
        City city = wildCity(salt);
        updateCoverage(city); // with the flags as they stand in the record
        for (uint32_t step = 0; step < 60; step++) {
            operate(city, step * 31 + salt);
            if (step % 6 != 0) continue;
            ASSERT_NO_FATAL_FAILURE(expectSamePasses(city, "city " + std::to_string(salt)));
        }
    }
}

// ---- nothing that changes behind the back of a pass makes its result stale

static Building& firstOf(City& city, int kind) {
    return *std::find_if(city.buildings.begin(), city.buildings.end(),
                         [kind](const Building& building) { return building.kind == kind; });
}

TEST(FastPasses, SeeEveryEditOfTheRecord) {
    const City town = townOf5000();
    const auto expectSeen = [&town](const char* what, auto edit) {
        City city = town;
        edit(city);
        ASSERT_NO_FATAL_FAILURE(expectSamePasses(city, what));
    };
    for (int kind = KIND_POLICE_STATION; kind < KIND_COUNT; kind++) {
        expectSeen("moved", [kind](City& city) { firstOf(city, kind).x += 3; });
        expectSeen("off the map", [kind](City& city) { firstOf(city, kind).y = -1; });
        expectSeen("another kind", [kind](City& city) { firstOf(city, kind).kind = KIND_SOLAR_FARM; });
        expectSeen("unfinished", [kind](City& city) { firstOf(city, kind).progress = 0.5f; });
        expectSeen("erased", [kind](City& city) { city.buildings.erase(city.buildings.begin() + kind); });
    }
    expectSeen("no roads", [](City& city) {
        for (Cell& cell : city.cells) cell.road = ROAD_NONE;
    });
    expectSeen("stops", [](City& city) {
        for (Cell& cell : city.cells) cell.busStop = !cell.busStop;
    });
    expectSeen("no buildings", [](City& city) { city.buildings.clear(); });
    expectSeen("fields", [](City& city) {
        for (Grid& grid : city.coverage) std::fill(grid.begin(), grid.end(), 0.7f);
        for (Grid* grid : {&city.powerField, &city.waterField, &city.pollution, &city.landValue})
            std::fill(grid->begin(), grid->end(), 0.7f);
    });
    expectSeen("another map", [](City& city) { generateMap(city, 9); });
}

TEST(FastPasses, ServicesOffTheMapReachAsFarAsThePlainOnes) {
    for (const int x : {-1, -2, -17, -18, -19, -300, 96, 113, 114, 32767}) {
        City city = flatCity();
        for (int kind = KIND_POLICE_STATION; kind <= KIND_GAS_POWER_PLANT; kind++) {
            addWorkingBuilding(city, x, 40, static_cast<uint8_t>(kind));
            addWorkingBuilding(city, 60, x, static_cast<uint8_t>(kind));
        }
        City plainCity = city;
        updateCoverage(city);
        plain::updateCoverage(plainCity);
        updateLandValue(city);
        plain::updateLandValue(plainCity);
        EXPECT_EQ(cityHashes(city), cityHashes(plainCity)) << x;
    }
}
