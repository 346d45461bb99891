#include "city_report.h"
#include "sim/city_helpers.h"
#include "temp_dir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <limits>

using testing::HasSubstr;

TEST(CityReport, StatsAreOneObjectInAFixedOrder) {
    City city = flatCity();
    EXPECT_EQ(statsJson(city),
              "{\"day\":0,\"money\":150000,\"lastIncome\":0,\"lastExpense\":0,\"population\":0,\"jobs\":0,"
              "\"employed\":0,\"workers\":0,\"happiness\":60,\"demand\":[0,0,0,0],\"streetCells\":0,"
              "\"avenueCells\":0,\"workingBuildings\":[0,0,0,0,0,0,0,0,0,0,0,0,0,0],\"districtCells\":0,"
              "\"averagePollution\":0,\"averageTraffic\":0,\"workingParks\":0,\"zonedCells\":0,"
              "\"educatedShare\":0,\"commuters\":0,\"transitRiders\":0,\"goodsDemand\":0,\"goodsSupply\":0,"
              "\"goodsRatio\":1,\"bankrupt\":0,\"allMissionsDone\":0,\"missionIndex\":0,"
              "\"missionProgress\":0,\"buildings\":0,\"raining\":0,\"weatherDaysLeft\":4}");
}

TEST(CityReport, EveryFigureStandsUnderItsOwnName) {
    City city = flatCity();
    city.day = 1;
    city.money = -2.1;
    city.lastIncome = 3.5;
    city.lastExpense = 4.5;
    city.population = 5;
    city.jobs = 6;
    city.employed = 7;
    city.workers = 8;
    city.happiness = 9.1f;
    city.demand = {0.1f, -0.25f, 1.0f, -1.0f};
    city.streetCells = 10;
    city.avenueCells = 11;
    addWorkingBuilding(city, 1, 1, KIND_PARK);
    addBuilding(city, 2, 1, KIND_PARK);
    city.cells[0].district = 2;
    city.cells[0].road = ROAD_STREET;
    city.cells[9].zone = ZONE_OFFICES;
    city.trafficLoad[0] = 0.5f;
    city.pollution[0] = 1.0f;
    city.educatedShare = 0.3f;
    city.commuters = 12;
    city.transitRiders = 13;
    city.goodsDemand = 14.5f;
    city.goodsSupply = 15.5f;
    city.goodsRatio = 0.7f;
    city.bankrupt = 200;
    city.allMissionsDone = 3;
    city.missionIndex = 2;
    city.raining = 1;
    city.weatherDaysLeft = 16;
    EXPECT_EQ(
        statsJson(city),
        "{\"day\":1,\"money\":-2.1000000000000001,\"lastIncome\":3.5,\"lastExpense\":4.5,"
        "\"population\":5,\"jobs\":6,\"employed\":7,\"workers\":8,\"happiness\":9.10000038,"
        "\"demand\":[0.100000001,-0.25,1,-1],\"streetCells\":10,\"avenueCells\":11,"
        "\"workingBuildings\":[0,0,0,0,0,0,0,0,1,0,0,0,0,0],\"districtCells\":1,"
        "\"averagePollution\":0.000108506945,\"averageTraffic\":0.5,\"workingParks\":1,\"zonedCells\":1,"
        "\"educatedShare\":0.300000012,\"commuters\":12,\"transitRiders\":13,\"goodsDemand\":14.5,"
        "\"goodsSupply\":15.5,\"goodsRatio\":0.699999988,\"bankrupt\":1,\"allMissionsDone\":1,"
        "\"missionIndex\":2,\"missionProgress\":0,\"buildings\":2,\"raining\":1,\"weatherDaysLeft\":16}");
}

TEST(CityReport, WhatIsNotFiniteIsPrintedAsItIs) {
    City city = flatCity();
    city.money = std::numeric_limits<double>::infinity();
    city.happiness = std::numeric_limits<float>::quiet_NaN();
    EXPECT_THAT(statsJson(city), HasSubstr("\"money\":inf,"));
    EXPECT_THAT(statsJson(city), HasSubstr("\"happiness\":nan,"));
}

TEST(CityReport, FieldsFollowEachOtherInTheFile) {
    const TempDir dir;
    City city = flatCity();
    for (int i = 0; i < COVERAGE_COUNT; i++) city.coverage[i][0] = static_cast<float>(i);
    Grid* grids[] = {&city.trafficLoad, &city.pollution,  &city.landValue,
                     &city.trafficFlow, &city.powerField, &city.waterField};
    for (int i = 0; i < 6; i++) (*grids[i])[0] = static_cast<float>(COVERAGE_COUNT + i);
    city.roadCapacity[0] = 2700;
    city.roadCapacity[CELL_COUNT - 1] = 900;

    ASSERT_TRUE(writeFields(city, dir.file("fields.bin")));
    const std::string bytes = readText(dir.file("fields.bin"));
    ASSERT_EQ(bytes.size(), size_t{15} * CELL_COUNT * 4);
    for (int i = 0; i < 14; i++) {
        float value;
        std::memcpy(&value, bytes.data() + size_t{4} * CELL_COUNT * i, 4);
        EXPECT_EQ(value, static_cast<float>(i));
    }
    EXPECT_EQ(bytes.substr(size_t{14} * CELL_COUNT * 4, 4), std::string("\x8c\x0a\0\0", 4)); // 2700
    EXPECT_EQ(bytes.substr(bytes.size() - 4), std::string("\x84\x03\0\0", 4));               // 900
}

TEST(CityReport, FieldsThatCannotBeWrittenAreFalse) {
    const TempDir dir;
    EXPECT_FALSE(writeFields(City(), dir.path.string()));
}
