#include "sim/missions.h"

#include "sim/expect_exactly.h"

#include <gtest/gtest.h>

#include <algorithm>

static void addMany(City& city, uint8_t kind, int count) {
    for (int i = 0; i < count; i++) addWorkingBuilding(city, i, kind, kind);
}

static void zoneCells(City& city, int count) {
    for (int i = 0; i < count; i++) city.cells[i].zone = ZONE_RESIDENTIAL;
}

static City atMission(int index) {
    City city = flatCity();
    city.missionIndex = index;
    return city;
}

// The city is one step short of its mission, and `step` completes it.
template<class Step> static void expectMetBy(City city, Step step) {
    const int index = city.missionIndex;
    checkMissions(city);
    EXPECT_EQ(city.missionIndex, index);
    EXPECT_EQ(city.money, 150000.0);
    EXPECT_LT(missionProgress(city), 1.0f);
    step(city);
    EXPECT_EQ(missionProgress(city), 1.0f);
    checkMissions(city);
    EXPECT_EQ(city.missionIndex, index + 1);
    EXPECT_EQ(city.money, 165000.0);
}

TEST(Missions, AreSix) { EXPECT_EQ(missionCount(), 6); }

TEST(Missions, FirstStreetsWants20RoadCellsAnd20ZonedCells) {
    City city = atMission(0);
    city.streetCells = 15;
    city.avenueCells = 5;
    zoneCells(city, 19);
    expectMetBy(city, [](City& c) { c.cells[500].zone = ZONE_OFFICES; });
    zoneCells(city, 20);
    city.avenueCells = 4;
    expectMetBy(city, [](City& c) { c.avenueCells = 5; });
}

TEST(Missions, FirstStreetsCountsZonesUnderBuildings) {
    City city = atMission(0);
    city.streetCells = 20;
    zoneCells(city, 20);
    for (int x = 0; x < 20; x++) addBuilding(city, x, 0, KIND_HOMES);
    checkMissions(city);
    EXPECT_EQ(city.missionIndex, 1);
}

TEST(Missions, FirstCitizensWants80) {
    City city = atMission(1);
    city.population = 79;
    expectMetBy(city, [](City& c) { c.population = 80; });
}

TEST(Missions, MainStreetWants10ShopsAnd6Offices) {
    City city = atMission(2);
    addMany(city, KIND_SHOPS, 9);
    addMany(city, KIND_OFFICE_TOWER, 6);
    expectMetBy(city, [](City& c) { addWorkingBuilding(c, 50, 50, KIND_SHOPS); });
    City offices = atMission(2);
    addMany(offices, KIND_SHOPS, 10);
    addMany(offices, KIND_OFFICE_TOWER, 5);
    expectMetBy(offices, [](City& c) { addWorkingBuilding(c, 50, 50, KIND_OFFICE_TOWER); });
}

TEST(Missions, PublicSafetyWantsThreeServicesAnd500Citizens) {
    constexpr uint8_t SERVICES[] = {KIND_POLICE_STATION, KIND_FIRE_STATION, KIND_HOSPITAL};
    for (const uint8_t missing : SERVICES) {
        City city = atMission(3);
        city.population = 500;
        for (const uint8_t kind : SERVICES)
            if (kind != missing) addMany(city, kind, 2);
        expectMetBy(city, [missing](City& c) { addWorkingBuilding(c, 50, 50, missing); });
    }
    City small = atMission(3);
    for (const uint8_t kind : SERVICES) addMany(small, kind, 1);
    small.population = 499;
    expectMetBy(small, [](City& c) { c.population = 500; });
}

TEST(Missions, AHospitalThatDoesNotWorkDoesNotCount) {
    City city = atMission(3);
    city.population = 500;
    for (const uint8_t kind : {KIND_POLICE_STATION, KIND_FIRE_STATION, KIND_HOSPITAL}) addMany(city, kind, 1);
    city.buildings.back().working = 0;
    checkMissions(city);
    EXPECT_EQ(city.missionIndex, 3);
    EXPECT_EQ(missionProgress(city), 0.75f);
}

TEST(Missions, GreenCityWants3ParksCleanRoadsAnd1200Citizens) {
    City city = atMission(4);
    city.population = 1200;
    addMany(city, KIND_PARK, 2);
    expectMetBy(city, [](City& c) { addWorkingBuilding(c, 50, 50, KIND_PARK); });

    addMany(city, KIND_PARK, 1);
    city.population = 1199;
    expectMetBy(city, [](City& c) { c.population = 1200; });

    // The average is over all cells: a quarter of the map as fully polluted road is just too much.
    city.population = 1200;
    layRoads(city, 0, 0, 95, 23);
    std::fill(city.pollution.begin(), city.pollution.end(), 1.0f);
    expectMetBy(city, [](City& c) { c.pollution[0] = 0.5f; });
}

TEST(Missions, MetropolisWants5000CitizensAt60Percent) {
    City city = atMission(5);
    city.population = 4999;
    city.happiness = 60.0f;
    expectMetBy(city, [](City& c) { c.population = 5000; });
    city.population = 5000;
    city.happiness = 59.9f;
    expectMetBy(city, [](City& c) { c.happiness = 60.0f; });
}

TEST(MissionProgress, IsTheTablesMeanOfItsParts) {
    City streets = atMission(0);
    streets.streetCells = 10;
    zoneCells(streets, 400);
    EXPECT_EQ(missionProgress(streets), 0.75f);

    City citizens = atMission(1);
    citizens.population = 20;
    EXPECT_EQ(missionProgress(citizens), 0.25f);

    City mainStreet = atMission(2);
    addMany(mainStreet, KIND_SHOPS, 20);
    addMany(mainStreet, KIND_OFFICE_TOWER, 3);
    EXPECT_EQ(missionProgress(mainStreet), 0.75f);

    City safety = atMission(3);
    addMany(safety, KIND_HOSPITAL, 3);
    safety.population = 250;
    EXPECT_EQ(missionProgress(safety), 0.375f);

    City green = atMission(4);
    EXPECT_FLOAT_EQ(missionProgress(green), 1.0f / 3.0f);
    green.population = 600;
    EXPECT_FLOAT_EQ(missionProgress(green), 0.5f);

    City metropolis = atMission(5);
    metropolis.population = 2500;
    metropolis.happiness = 90.0f;
    EXPECT_EQ(missionProgress(metropolis), 0.75f);
}

TEST(MissionProgress, RisesWithEachOfItsParts) {
    City streets = atMission(0);
    streets.avenueCells = 10;
    EXPECT_EQ(missionProgress(streets), 0.25f);
    zoneCells(streets, 5);
    EXPECT_EQ(missionProgress(streets), 0.375f);

    City mainStreet = atMission(2);
    addMany(mainStreet, KIND_SHOPS, 5);
    EXPECT_EQ(missionProgress(mainStreet), 0.25f);

    for (const uint8_t kind : {KIND_POLICE_STATION, KIND_FIRE_STATION, KIND_HOSPITAL}) {
        City safety = atMission(3);
        addMany(safety, kind, 1);
        EXPECT_EQ(missionProgress(safety), 0.25f);
    }

    City green = atMission(4);
    layRoads(green, 0, 0, 95, 23);
    std::fill(green.pollution.begin(), green.pollution.end(), 1.0f); // 0.25 is not clean
    EXPECT_EQ(missionProgress(green), 0.0f);
    addMany(green, KIND_PARK, 1);
    EXPECT_FLOAT_EQ(missionProgress(green), 1.0f / 9.0f);

    City metropolis = atMission(5);
    metropolis.happiness = 30.0f;
    EXPECT_EQ(missionProgress(metropolis), 0.25f);
}

TEST(MissionProgress, IsOneWhenAllAreDone) {
    EXPECT_EQ(missionProgress(atMission(6)), 1.0f);
    EXPECT_EQ(missionProgress(atMission(7)), 1.0f);
}

TEST(Missions, TheRewardIsAnnounced) {
    City city = atMission(1);
    city.population = 80;
    expectExactly(city, checkMissions, [](City& c) {
        c.missionIndex = 2;
        c.money = 165000.0;
        postEvent(c, STATUS_MISSION_COMPLETE, 15000);
    });
}

TEST(Missions, TwoMetOnOneDayCompleteOnConsecutiveDays) {
    City city = atMission(0);
    city.streetCells = 20;
    zoneCells(city, 20);
    city.population = 80;
    checkMissions(city);
    EXPECT_EQ(city.missionIndex, 1);
    checkMissions(city);
    EXPECT_EQ(city.missionIndex, 2);
    checkMissions(city);
    EXPECT_EQ(city.missionIndex, 2);
}

TEST(Missions, TheLastOneEndsTheGameOnce) {
    City city = atMission(5);
    city.population = 5000;
    checkMissions(city);
    EXPECT_EQ(city.missionIndex, 6);
    EXPECT_EQ(city.allMissionsDone, 1);
    ASSERT_EQ(city.events.size(), 2u);
    EXPECT_EQ(city.events[0].id, STATUS_ALL_MISSIONS_COMPLETE);
    EXPECT_EQ(city.events[0].arg, 0u);
    EXPECT_EQ(city.events[1].id, STATUS_MISSION_COMPLETE);
    checkMissions(city);
    EXPECT_EQ(city.eventCount, 2u);
    EXPECT_EQ(city.money, 165000.0);
}

TEST(Missions, ASaveWithAllSixDoneButNoFlagGetsTheFlag) {
    City city = atMission(6);
    checkMissions(city);
    EXPECT_EQ(city.allMissionsDone, 1);
    ASSERT_EQ(city.events.size(), 1u);
    EXPECT_EQ(city.events[0].id, STATUS_ALL_MISSIONS_COMPLETE);
    EXPECT_EQ(city.money, 150000.0);
}
