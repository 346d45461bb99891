#include "sim/city_helpers.h"
#include "sim/city_stats.h"
#include "sim/daily_tick.h"
#include "sim/map_generation.h"
#include "sim/networks.h"
#include "sim/save_file.h"
#include "sim/services.h"
#include "sim/traffic.h"
#include "temp_dir.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>

// Where things lie in a file of version 3.
constexpr size_t VERSION_AT = 4;
constexpr size_t TAX_AT = 112;
constexpr size_t BUDGET_AT = 128;
constexpr size_t DISTRICT_TAX_AT = 160;
constexpr size_t MISSION_AT = 205;
constexpr size_t CALENDAR_AT = 223;
constexpr size_t HISTORY_COUNT_AT = 227;
constexpr size_t HEIGHT_COUNT_AT = 1191;
constexpr size_t CELL_COUNT_AT = 38831;
constexpr size_t CELLS_AT = 38835;
constexpr size_t BUILDING_COUNT_AT = 149427;
constexpr size_t BUILDINGS_AT = 149431;

using Bytes = std::vector<uint8_t>;

template<class T> static T valueAt(const Bytes& bytes, size_t offset) {
    T value;
    std::memcpy(&value, bytes.data() + offset, sizeof value);
    return value;
}

template<class T> static Bytes patched(Bytes bytes, size_t offset, T value) {
    std::memcpy(bytes.data() + offset, &value, sizeof value);
    return bytes;
}

static bool decode(City& city, const Bytes& bytes) { return decodeCity(city, bytes.data(), bytes.size()); }

// A town of 25 days with a bit of everything, and people on its roads.
static City livelyTown() {
    City city;
    generateMap(city, 77);
    layRoads(city, 40, 48, 56, 48);
    layRoads(city, 48, 42, 48, 47, ROAD_AVENUE);
    city.cells[cellIndex(45, 48)].busStop = 1;
    addBuilding(city, 49, 43, KIND_GAS_POWER_PLANT);
    addBuilding(city, 49, 44, KIND_WATER_PUMP);
    addBuilding(city, 49, 45, KIND_BUS_DEPOT);
    for (int x = 40; x <= 47; x++) {
        city.cells[cellIndex(x, 49)].zone = ZONE_RESIDENTIAL;
        city.cells[cellIndex(x, 47)].zone = ZONE_COMMERCIAL;
        city.cells[cellIndex(x, 47)].district = 3;
        city.cells[cellIndex(x + 9, 49)].zone = ZONE_INDUSTRIAL;
    }
    city.districtPolicy[3] = POLICY_TRANSIT_FIRST;
    for (int day = 0; day < 25; day++) dailyTick(city);
    return city;
}

// The same town as a load leaves it: the passes have seen what the last day built.
static City settledTown() {
    City town = livelyTown();
    updateUtilities(town);
    updateCoverage(town);
    updateTraffic(town); // the saved day draws the same commutes
    updateLandValue(town);
    return town;
}

static bool sameCity(const City& a, const City& b) {
    return encodeCity(a) == encodeCity(b) && cityHashes(a) == cityHashes(b) && a.statusId == b.statusId &&
           a.statusArg == b.statusArg;
}

TEST(SaveFile, FieldsLieWhereToolWritersExpectThem) {
    City city;
    city.seed = 0xA1B2C3D4;
    city.day = 11;
    city.hourOfDay = 12.5f;
    city.money = 13.25;
    city.lastIncome = 14.5;
    city.lastExpense = 15.5;
    city.population = 16;
    city.workers = 17;
    city.happiness = 18.5f;
    city.goodsRatio = 0.75f;
    city.streetCells = 19;
    city.transitRiders = 20;
    city.demand = {0.25f, 0.5f, 0.75f, -1.0f};
    city.taxRate = {21, 22, 23, 24};
    city.serviceBudget[7] = 57;
    city.districtTax[8] = 2;
    city.districtPolicy[8] = POLICY_NO_TRUCKS;
    city.missionIndex = 5;
    city.allMissionsDone = 1;
    city.bankrupt = 1;
    city.daysBelowZero = 25;
    city.raining = 1;
    city.weatherDaysLeft = 26;
    city.calendarDay = 27;
    city.historyCount = 28;
    city.history[HISTORY_HAPPINESS][59] = 29.5f;
    city.heights[9408] = 30.5f;
    city.cells[9215].district = 7;
    city.cells[9215].buildingIndex = 31;
    city.buildings.resize(2);
    city.buildings[1].kind = KIND_PARK;
    city.buildings[1].x = 32;
    city.buildings[1].y = -33;
    city.buildings[1].occupants = 34;
    city.buildings[1].pollutionHere = 35.5f;

    const Bytes bytes = encodeCity(city);
    ASSERT_EQ(bytes.size(), BUILDINGS_AT + 2 * 44);
    EXPECT_EQ(std::memcmp(bytes.data(), "OVW2", 4), 0);
    EXPECT_EQ(valueAt<uint32_t>(bytes, 4), 3u);
    EXPECT_EQ(valueAt<uint32_t>(bytes, 8), 0xA1B2C3D4u);
    EXPECT_EQ(valueAt<int32_t>(bytes, 12), 11);
    EXPECT_EQ(valueAt<float>(bytes, 16), 12.5f);
    EXPECT_EQ(valueAt<double>(bytes, 20), 13.25);
    EXPECT_EQ(valueAt<double>(bytes, 28), 14.5);
    EXPECT_EQ(valueAt<double>(bytes, 36), 15.5);
    EXPECT_EQ(valueAt<int32_t>(bytes, 44), 16);
    EXPECT_EQ(valueAt<int32_t>(bytes, 56), 17);
    EXPECT_EQ(valueAt<float>(bytes, 60), 18.5f);
    EXPECT_EQ(valueAt<float>(bytes, 76), 0.75f);
    EXPECT_EQ(valueAt<int32_t>(bytes, 80), 19);
    EXPECT_EQ(valueAt<int32_t>(bytes, 92), 20);
    EXPECT_EQ(valueAt<float>(bytes, 108), -1.0f);
    EXPECT_EQ(valueAt<int32_t>(bytes, 124), 24);
    EXPECT_EQ(valueAt<int32_t>(bytes, 156), 57);
    EXPECT_EQ(valueAt<int32_t>(bytes, 192), 2);
    EXPECT_EQ(bytes[204], POLICY_NO_TRUCKS);
    EXPECT_EQ(valueAt<int32_t>(bytes, 205), 5);
    EXPECT_EQ(bytes[209], 1);
    EXPECT_EQ(bytes[210], 1);
    EXPECT_EQ(valueAt<int32_t>(bytes, 211), 25);
    EXPECT_EQ(valueAt<int32_t>(bytes, 215), 1);
    EXPECT_EQ(valueAt<int32_t>(bytes, 219), 26);
    EXPECT_EQ(valueAt<int32_t>(bytes, 223), 27);
    EXPECT_EQ(valueAt<int32_t>(bytes, 227), 28);
    EXPECT_EQ(valueAt<float>(bytes, 1187), 29.5f);
    EXPECT_EQ(valueAt<uint32_t>(bytes, HEIGHT_COUNT_AT), 9409u);
    EXPECT_EQ(valueAt<float>(bytes, 38827), 30.5f);
    EXPECT_EQ(valueAt<uint32_t>(bytes, CELL_COUNT_AT), 9216u);
    EXPECT_EQ(bytes[149415 + 3], 7);
    EXPECT_EQ(valueAt<int32_t>(bytes, 149415 + 8), 31);
    EXPECT_EQ(valueAt<uint32_t>(bytes, BUILDING_COUNT_AT), 2u);
    EXPECT_EQ(bytes[149475], KIND_PARK);
    EXPECT_EQ(valueAt<int16_t>(bytes, 149475 + 2), 32);
    EXPECT_EQ(valueAt<int16_t>(bytes, 149475 + 4), -33);
    EXPECT_EQ(valueAt<int32_t>(bytes, 149475 + 16), 34);
    EXPECT_EQ(valueAt<float>(bytes, 149475 + 40), 35.5f);
}

TEST(SaveFile, ComesBackEqualAlsoIntoARecordInUse) {
    const TempDir dir;
    const City town = settledTown();
    ASSERT_GT(town.population, 20);
    ASSERT_TRUE(saveCity(town, dir.file("town.ovw")));

    City fresh;
    City used;
    generateMap(used, 5);
    used.keepPlaying = 1;
    addBuilding(used, 3, 3, KIND_PARK);
    for (Grid& grid : used.coverage) grid.assign(CELL_COUNT, 0.5f);
    used.trafficFlow.assign(CELL_COUNT, 7.0f);
    for (City* city : {&fresh, &used}) {
        ASSERT_TRUE(loadCity(*city, dir.file("town.ovw")));
        EXPECT_EQ(city->keepPlaying, 0);
        city->eventCount = 1;
    }
    EXPECT_TRUE(sameCity(fresh, used));
    EXPECT_TRUE(encodeCity(fresh) == encodeCity(town));
    EXPECT_EQ(brokenInvariant(fresh), "");
}

TEST(SaveFile, TheDerivedFieldsAreRebuiltByTheDailyPasses) {
    City loaded;
    ASSERT_TRUE(decode(loaded, encodeCity(livelyTown())));
    const City town = settledTown();
    EXPECT_EQ(cityHashes(loaded).services, cityHashes(town).services);
    EXPECT_EQ(cityHashes(loaded).traffic, cityHashes(town).traffic);
    EXPECT_EQ(cityHashes(loaded).buildings, cityHashes(town).buildings);
}

TEST(SaveFile, ALoadedCityLivesOnAsTheSavedOneWould) {
    City town = livelyTown();
    City loaded;
    ASSERT_TRUE(decode(loaded, encodeCity(town)));
    for (int day = 0; day < 30; day++) {
        dailyTick(town);
        dailyTick(loaded);
    }
    EXPECT_TRUE(encodeCity(loaded) == encodeCity(town));
}

TEST(SaveFile, ALoadAnnouncesItselfAndMarksEverythingStale) {
    City city;
    generateMap(city, 1);
    city.eventCount = 90;
    city.cellDirty.assign(CELL_COUNT, 0);
    city.roadsDirty = city.buildingsDirty = city.zonesDirty = city.overlayDirty = 0;
    ASSERT_TRUE(decode(city, encodeCity(livelyTown())));
    ASSERT_EQ(city.events.size(), 1u);
    EXPECT_EQ(city.events[0].id, STATUS_LOADED);
    EXPECT_EQ(city.events[0].arg, 0u);
    EXPECT_EQ(city.eventCount, 91u);
    EXPECT_EQ(city.statusId, STATUS_LOADED);
    EXPECT_EQ(city.statusArg, 0u);
    EXPECT_TRUE(city.roadsDirty && city.buildingsDirty && city.zonesDirty && city.overlayDirty);
    for (const uint8_t dirty : city.cellDirty) ASSERT_EQ(dirty, 1);
}

TEST(SaveFile, AVersion2FileLoadsWithCalendarDayZero) {
    City town = settledTown();
    town.calendarDay = 400;
    Bytes bytes = patched<uint32_t>(encodeCity(town), VERSION_AT, 2);
    bytes.erase(bytes.begin() + CALENDAR_AT, bytes.begin() + CALENDAR_AT + 4);
    City city;
    city.calendarDay = 77;
    ASSERT_TRUE(decode(city, bytes));
    EXPECT_EQ(city.calendarDay, 0);
    city.calendarDay = 400;
    EXPECT_TRUE(encodeCity(city) == encodeCity(town));

    bytes.pop_back();
    EXPECT_FALSE(decode(city, bytes));
}

TEST(SaveFile, AVersion2FileMayHoldNoBuilding) {
    Bytes bytes = patched<uint32_t>(encodeCity(City()), VERSION_AT, 2);
    bytes.erase(bytes.begin() + CALENDAR_AT, bytes.begin() + CALENDAR_AT + 4);
    City city;
    EXPECT_TRUE(decode(city, bytes));
}

TEST(SaveFile, ABankruptCityComesBackBankrupt) {
    City city;
    city.bankrupt = 1;
    city.daysBelowZero = 10;
    const Bytes bytes = encodeCity(city);
    City loaded;
    ASSERT_TRUE(decode(loaded, bytes));
    EXPECT_EQ(loaded.bankrupt, 1);
    dailyTick(loaded);
    EXPECT_EQ(loaded.day, 0);
}

TEST(SaveFile, ACityThatWentOnAfterItsMissionsStopsAgain) {
    City city;
    city.missionIndex = 6;
    city.allMissionsDone = 1;
    city.keepPlaying = 1;
    City loaded;
    loaded.keepPlaying = 1;
    ASSERT_TRUE(decode(loaded, encodeCity(city)));
    EXPECT_EQ(loaded.keepPlaying, 0);
    dailyTick(loaded);
    EXPECT_EQ(loaded.day, 0);
}

TEST(SaveFile, DistrictTaxesAreReducedToTheThreeLevels) {
    const Bytes bytes = encodeCity(City());
    const std::pair<int32_t, int32_t> levels[] = {
        {0, 0}, {2, 2}, {3, 0}, {5, 2}, {-1, 2}, {-2, 1}, {-3, 0}, {2147483647, 1}, {-2147483647 - 1, 1}};
    for (const auto& [stored, level] : levels) {
        City city;
        ASSERT_TRUE(decode(city, patched(bytes, DISTRICT_TAX_AT + 4, stored)));
        EXPECT_EQ(city.districtTax[1], level) << stored;
        EXPECT_EQ(city.districtTax[2], 1);
    }
}

TEST(SaveFile, PaddingIsZeroAndStaysAsALoadFoundIt) {
    Bytes bytes = encodeCity(settledTown());
    for (size_t at = CELLS_AT; at < BUILDING_COUNT_AT; at += 12)
        ASSERT_EQ(valueAt<uint16_t>(bytes, at + 6), 0);
    for (size_t at = BUILDINGS_AT; at < bytes.size(); at += 44)
        ASSERT_EQ(valueAt<uint16_t>(bytes, at + 6), 0);

    bytes = patched<uint16_t>(bytes, CELLS_AT + 6, 0xBEEF);
    bytes = patched<uint16_t>(bytes, BUILDINGS_AT + 6, 0xCAFE);
    City city;
    ASSERT_TRUE(decode(city, bytes));
    EXPECT_TRUE(encodeCity(city) == bytes);
}

TEST(SaveFile, WhatLiesBehindTheLastRecordIsNotLookedAt) {
    Bytes bytes = encodeCity(settledTown());
    const Bytes exact = bytes;
    bytes.insert(bytes.end(), 100, 0xEE);
    City city;
    ASSERT_TRUE(decode(city, bytes));
    EXPECT_TRUE(encodeCity(city) == exact);
}

// Refusals leave the city in play as it was, to the last byte.

struct SaveRefusal : testing::Test {
    City city = livelyTown();
    const City before = city;
    const Bytes valid = encodeCity(City());

    template<class T> void expectRefused(size_t offset, T value) {
        EXPECT_FALSE(decode(city, patched(valid, offset, value))) << value << " at " << offset;
    }
    template<class T> void expectLoads(size_t offset, T value) {
        City other;
        EXPECT_TRUE(decode(other, patched(valid, offset, value))) << value << " at " << offset;
    }
    void TearDown() override { EXPECT_TRUE(sameCity(city, before)); }
};

TEST_F(SaveRefusal, AFileCutAtAnyByte) {
    const Bytes bytes = encodeCity(before);
    ASSERT_GT(before.buildings.size(), 10u);
    for (size_t size = 0; size < bytes.size(); size++) {
        // A copy of exactly this size, so that a sanitizer sees a read past its end.
        const bool sampled = size % 997 == 0 || size >= BUILDING_COUNT_AT;
        const Bytes cut = sampled ? Bytes(bytes.begin(), bytes.begin() + size) : Bytes();
        ASSERT_FALSE(decodeCity(city, sampled ? cut.data() : bytes.data(), size)) << size;
    }
}

TEST_F(SaveRefusal, AVersion2FileCutAtTheEndOfEachPart) {
    Bytes bytes = patched<uint32_t>(encodeCity(before), VERSION_AT, 2);
    bytes.erase(bytes.begin() + CALENDAR_AT, bytes.begin() + CALENDAR_AT + 4);
    for (size_t size = BUILDING_COUNT_AT - 8; size < bytes.size(); size++)
        ASSERT_FALSE(decodeCity(city, bytes.data(), size)) << size;
}

TEST_F(SaveRefusal, AWrongLetterOfTheMagic) {
    for (size_t i = 0; i < 4; i++) expectRefused<uint8_t>(i, valid[i] ^ 0x20);
}

TEST_F(SaveRefusal, EveryVersionBut2And3) {
    for (const uint32_t version : {0u, 1u, 4u, 5u, 0x03000000u, 0xFFFFFFFFu})
        expectRefused(VERSION_AT, version);
    expectRefused(VERSION_AT, 2u); // a file of version 3 that says 2 has its counts elsewhere
}

TEST_F(SaveRefusal, AHistoryOutside0To60) {
    for (const int32_t count :
         {-1, 61, std::numeric_limits<int32_t>::min(), std::numeric_limits<int32_t>::max()})
        expectRefused(HISTORY_COUNT_AT, count);
    expectLoads(HISTORY_COUNT_AT, 60);
}

TEST_F(SaveRefusal, EveryOtherNumberOfHeightsAndCells) {
    for (const uint32_t count : {0u, 1u, 9408u, 9410u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu})
        expectRefused(HEIGHT_COUNT_AT, count);
    for (const uint32_t count : {0u, 1u, 9215u, 9217u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu})
        expectRefused(CELL_COUNT_AT, count);
}

TEST_F(SaveRefusal, MoreBuildingsThanTheFileHolds) {
    for (const uint32_t count : {1u, 1000u, 1000000u, 1000001u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu})
        expectRefused(BUILDING_COUNT_AT, count);
}

TEST_F(SaveRefusal, MoreThanAMillionBuildingsEvenIfTheyAreThere) {
    Bytes bytes = patched<uint32_t>(valid, BUILDING_COUNT_AT, SAVED_BUILDING_LIMIT + 1);
    bytes.resize(BUILDINGS_AT + size_t{44} * (SAVED_BUILDING_LIMIT + 1));
    EXPECT_FALSE(decode(city, bytes));
    City other;
    EXPECT_TRUE(decode(other, patched<uint32_t>(bytes, BUILDING_COUNT_AT, SAVED_BUILDING_LIMIT)));
}

TEST_F(SaveRefusal, AMissionOutside0To6) {
    for (const int32_t index :
         {-1, 7, std::numeric_limits<int32_t>::min(), std::numeric_limits<int32_t>::max()})
        expectRefused(MISSION_AT, index);
    expectLoads(MISSION_AT, 6);
}

TEST_F(SaveRefusal, ATaxOutside20To200) {
    for (size_t i = 0; i < 4; i++) {
        for (const int32_t rate : {-100, 0, 19, 201, 210}) expectRefused(TAX_AT + 4 * i, rate);
        expectLoads(TAX_AT + 4 * i, 20);
        expectLoads(TAX_AT + 4 * i, 200);
    }
}

TEST_F(SaveRefusal, ABudgetOutside50To150) {
    for (size_t i = 0; i < 8; i++) {
        for (const int32_t budget : {-100, 0, 49, 151}) expectRefused(BUDGET_AT + 4 * i, budget);
        expectLoads(BUDGET_AT + 4 * i, 50);
        expectLoads(BUDGET_AT + 4 * i, 150);
    }
}

TEST_F(SaveRefusal, WhatIsNoFile) {
    const TempDir dir;
    EXPECT_FALSE(loadCity(city, dir.file("missing.ovw")));
    EXPECT_FALSE(loadCity(city, dir.path.string()));
    EXPECT_FALSE(loadCity(city, ""));
    EXPECT_FALSE(saveCity(city, dir.path.string()));
    EXPECT_FALSE(saveCity(city, dir.file("missing/town.ovw")));
    EXPECT_FALSE(saveCity(city, ""));
#ifdef __linux__
    for (const char* device : {"/dev/null", "/dev/zero", "/dev/full"}) EXPECT_FALSE(loadCity(city, device));
    EXPECT_FALSE(saveCity(city, "/dev/full"));
#endif
}

TEST_F(SaveRefusal, ShortFilesThatPromiseMuchAndLongFilesThatHoldNothing) {
    const TempDir dir;
    const Bytes promise = patched<uint32_t>(valid, BUILDING_COUNT_AT, SAVED_BUILDING_LIMIT);
    writeText(dir.file("promise.ovw"), std::string(promise.begin(), promise.end()));
    EXPECT_FALSE(loadCity(city, dir.file("promise.ovw")));

    writeText(dir.file("empty.ovw"), "");
    EXPECT_FALSE(loadCity(city, dir.file("empty.ovw")));
    std::filesystem::resize_file(dir.file("empty.ovw"), 3000000000u); // sparse: takes no room on the disk
    EXPECT_FALSE(loadCity(city, dir.file("empty.ovw")));
}

TEST(SaveFile, AFailedSaveOfACutFileIsRefusedByTheNextLoad) {
    const TempDir dir;
    City town = livelyTown();
    ASSERT_TRUE(saveCity(town, dir.file("town.ovw")));
    std::filesystem::resize_file(dir.file("town.ovw"), BUILDINGS_AT + 44 * 3 + 7);
    const City before = town;
    EXPECT_FALSE(loadCity(town, dir.file("town.ovw")));
    EXPECT_TRUE(sameCity(town, before));
}

TEST(SaveFile, OverwritesALongerSave) {
    const TempDir dir;
    ASSERT_TRUE(saveCity(livelyTown(), dir.file("slot.ovw")));
    ASSERT_TRUE(saveCity(City(), dir.file("slot.ovw")));
    EXPECT_EQ(std::filesystem::file_size(dir.file("slot.ovw")), BUILDINGS_AT);
}
