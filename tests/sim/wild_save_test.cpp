// Saves that load by the rules and hold what no game would write. Whatever runs afterwards must stay within
// memory and end; the sanitizer build is what gives these tests their teeth.
#include "sim/city_helpers.h"
#include "sim/daily_tick.h"
#include "sim/exercise_city.h"
#include "sim/hash.h"
#include "sim/map_generation.h"
#include "sim/save_file.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>

constexpr int32_t I32_MIN = std::numeric_limits<int32_t>::min();
constexpr int32_t I32_MAX = std::numeric_limits<int32_t>::max();

static City smallTown() {
    City city;
    generateMap(city, 3);
    layRoads(city, 40, 48, 56, 48);
    addBuilding(city, 45, 49, KIND_GAS_POWER_PLANT);
    addBuilding(city, 46, 49, KIND_WATER_PUMP);
    addBuilding(city, 47, 49, KIND_BUS_DEPOT);
    city.cells[cellIndex(48, 48)].busStop = 1;
    for (int x = 40; x <= 56; x++) {
        city.cells[cellIndex(x, 47)].zone = static_cast<uint8_t>(1 + x % 4);
        addBuilding(city, x, 46, static_cast<uint8_t>(x % 4), 2).occupants = 9;
    }
    return city;
}

static void expectLivesOn(const City& wild, uint32_t salt, const char* what) {
    const std::vector<uint8_t> bytes = encodeCity(wild);
    City city;
    ASSERT_TRUE(decodeCity(city, bytes.data(), bytes.size())) << what;
    EXPECT_TRUE(exerciseCity(city, salt)) << what;
}

TEST(WildSave, BuildingIndicesThatPointNowhere) {
    for (const int32_t index : {-2, 20, 21, 1000000, I32_MIN, I32_MAX}) {
        City city = smallTown();
        for (Cell& cell : city.cells) cell.buildingIndex = index;
        expectLivesOn(city, 1, "index");
    }
}

TEST(WildSave, AllCellsPointAtOneBuilding) {
    City city = smallTown();
    for (Cell& cell : city.cells) cell.buildingIndex = 0;
    expectLivesOn(city, 2, "one building");
}

TEST(WildSave, CellsWithNumbersThatMeanNothing) {
    City city = smallTown();
    for (int i = 0; i < CELL_COUNT; i++) {
        const uint32_t hash = hashCell(static_cast<uint32_t>(i), 1, 2);
        Cell& cell = city.cells[i];
        cell.zone = static_cast<uint8_t>(hash);
        cell.terrain = static_cast<uint8_t>(hash >> 8);
        cell.road = static_cast<uint8_t>(hash >> 16 & 1 ? hash >> 17 : 0);
        cell.district = static_cast<uint8_t>(hash >> 24);
        cell.hasTrees = cell.busStop = 255;
    }
    expectLivesOn(city, 3, "cells");
}

TEST(WildSave, BuildingsOffTheMapOfEveryKindAndLevel) {
    City city = smallTown();
    constexpr int16_t PLACES[] = {-32768, -100, -1, 0, 95, 96, 300, 32767};
    for (int kind = 0; kind < 256; kind += 1)
        for (const int16_t place : PLACES) {
            Building& building = addWorkingBuilding(city, place, place / 2, static_cast<uint8_t>(kind),
                                                    static_cast<uint8_t>(kind * 37 + place));
            building.occupants = kind % 2 ? I32_MAX : I32_MIN;
        }
    expectLivesOn(city, 4, "off the map");
}

TEST(WildSave, FiguresAtTheEndsOfTheirRange) {
    for (const int32_t end : {I32_MIN, -1, I32_MAX}) {
        City city = smallTown();
        city.day = city.calendarDay = end;
        city.population = city.jobs = city.employed = city.workers = end;
        city.commuters = city.transitRiders = end;
        city.streetCells = city.avenueCells = end;
        city.daysBelowZero = city.raining = city.weatherDaysLeft = end;
        for (Building& building : city.buildings)
            building.occupants = building.unservedDays = building.unhappyDays = end;
        expectLivesOn(city, 5, "ends");
    }
}

TEST(WildSave, NumbersThatAreNone) {
    for (const float wild :
         {std::nanf(""), std::numeric_limits<float>::infinity(), -std::numeric_limits<float>::infinity(),
          std::numeric_limits<float>::max(), std::numeric_limits<float>::denorm_min()}) {
        City city = smallTown();
        city.hourOfDay = city.happiness = city.educatedShare = wild;
        city.goodsDemand = city.goodsSupply = city.goodsRatio = wild;
        city.demand.fill(wild);
        for (auto& row : city.history) row.fill(wild);
        city.heights.assign(CORNER_COUNT, wild);
        city.money = city.lastIncome = city.lastExpense = static_cast<double>(wild);
        expectLivesOn(city, 6, "land and city");
        for (Building& building : city.buildings) {
            building.progress = building.happiness = building.staffing = wild;
            building.congestion = building.pollutionHere = wild;
        }
        expectLivesOn(city, 7, "buildings");
    }
}

TEST(WildSave, MoneyWithoutEnd) {
    for (const double money :
         {std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(),
          std::numeric_limits<double>::quiet_NaN(), 1e308, -1e308}) {
        City city = smallTown();
        city.money = money;
        expectLivesOn(city, 8, "money");
    }
}

// Asked one by one, every home and every source, the piles would take minutes.
TEST(WildSave, PilesOfPlantsPumpsAndHomesAreServedWithinASecond) {
    City city = smallTown();
    while (city.buildings.size() < 200000) {
        const int kinds[] = {KIND_HOMES, KIND_GAS_POWER_PLANT, KIND_HOMES, KIND_WATER_PUMP};
        const size_t i = city.buildings.size();
        addBuilding(city, 40 + static_cast<int>(i % 17), 47, static_cast<uint8_t>(kinds[i % 4])).occupants =
            1;
    }
    const std::vector<uint8_t> bytes = encodeCity(city);
    ASSERT_TRUE(decodeCity(city, bytes.data(), bytes.size()));
    dailyTick(city);
    EXPECT_EQ(city.day, 1);
    EXPECT_GT(city.population, 0);
}

TEST(WildSave, RandomBytesInEveryPart) {
    std::vector<uint8_t> town = encodeCity(smallTown());
    constexpr uint32_t PARTS[][2] = {{8, 1191}, {8, 112}, {1195, 38831}, {38835, 149427}, {149431, 150311}};
    ASSERT_EQ(town.size(), 150311u);
    int loads = 0;
    for (uint32_t round = 0; round < 150; round++) {
        std::vector<uint8_t> bytes = town;
        const auto& part = PARTS[round % 5];
        const uint32_t patches = 1 + hashCell(round, 0, 1) % 200;
        for (uint32_t i = 0; i < patches; i++) {
            const uint32_t at = part[0] + hashCell(round, i, 2) % (part[1] - part[0]);
            bytes[at] = static_cast<uint8_t>(hashCell(round, i, 3));
        }
        City city;
        if (!decodeCity(city, bytes.data(), bytes.size())) continue;
        loads++;
        EXPECT_TRUE(exerciseCity(city, round)) << round;
    }
    EXPECT_GT(loads, 100);
}
