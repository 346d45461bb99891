#include "sim/city_stats.h"
#include "sim/hash.h"
#include "sim/map_generation.h"

#include <gtest/gtest.h>

#include <cmath>

// FNV-1a over the bytes of the land.
static uint64_t landHash(const City& city) {
    uint64_t hash = 14695981039346656037u;
    const auto feed = [&hash](const void* data, size_t size) {
        for (size_t i = 0; i < size; i++)
            hash = (hash ^ static_cast<const unsigned char*>(data)[i]) * 1099511628211u;
    };
    feed(city.heights.data(), city.heights.size() * sizeof(float));
    feed(city.cells.data(), city.cells.size() * sizeof(Cell));
    return hash;
}

static City generated(uint32_t seed) {
    City city;
    generateMap(city, seed);
    return city;
}

TEST(MapGeneration, TheLandOfASeedIsTheSameBitForBitOnEverySystem) {
    EXPECT_EQ(landHash(generated(0)), 11779873396219928023u);
    EXPECT_EQ(landHash(generated(77)), 2169884289483422181u);
    EXPECT_EQ(landHash(generated(4294967295u)), 12833734750887942767u);
}

TEST(MapGeneration, ARecordInUseGivesTheSameLandAsAFreshOne) {
    City city = generated(5);
    city.cells[100].road = ROAD_AVENUE;
    generateMap(city, 77);
    EXPECT_EQ(landHash(city), landHash(generated(77)));
}

TEST(MapGeneration, TheStartingDiscIsFlatGrassWithoutTrees) {
    for (const uint32_t seed : {0u, 1u, 77u, 123456789u}) {
        const City city = generated(seed);
        for (int y = 0; y < GRID_SIZE; y++)
            for (int x = 0; x < GRID_SIZE; x++) {
                const float distance =
                    std::hypot(static_cast<float>(x) - 47.5f, static_cast<float>(y) - 47.5f);
                if (distance >= 8.5f) continue;
                const Cell& cell = city.cells[cellIndex(x, y)];
                ASSERT_EQ(cell.terrain, TERRAIN_GRASS);
                ASSERT_EQ(cell.hasTrees, 0);
                ASSERT_EQ(cellSlope(city, x, y), 0.0f);
                ASSERT_EQ(cellAverageHeight(city, x, y), 10.0f);
            }
    }
}

TEST(MapGeneration, TerrainFollowsHeightAndSlope) {
    const City city = generated(0);
    int counts[5] = {};
    for (int y = 0; y < GRID_SIZE; y++)
        for (int x = 0; x < GRID_SIZE; x++) {
            const Cell& cell = city.cells[cellIndex(x, y)];
            const float height = cellAverageHeight(city, x, y);
            counts[cell.terrain]++;
            ASSERT_TRUE(cell.terrain != TERRAIN_WATER || height < 5.6f);
            ASSERT_TRUE(cell.terrain != TERRAIN_SAND || (height >= 5.6f && height < 7.2f));
            ASSERT_TRUE(cell.terrain != TERRAIN_ROCK || height > 24.0f || cellSlope(city, x, y) > 1.4f);
            ASSERT_TRUE(!cell.hasTrees || cell.terrain == TERRAIN_WOODLAND);
        }
    for (const int count : counts) EXPECT_GT(count, 0);
}

// Seeds with a cell that lies exactly on a limit.
TEST(MapGeneration, OnALimitTheLandIsTheMilder) {
    const City shore = generated(3786);
    ASSERT_EQ(cellAverageHeight(shore, 13, 35), 5.6f);
    EXPECT_EQ(cellAt(shore, 13, 35).terrain, TERRAIN_SAND);

    const City hill = generated(2990);
    ASSERT_EQ(cellAverageHeight(hill, 8, 85), 24.0f);
    ASSERT_LE(cellSlope(hill, 8, 85), 1.4f);
    EXPECT_EQ(cellAt(hill, 8, 85).terrain, TERRAIN_WOODLAND);

    const City meadow = generated(1065);
    ASSERT_EQ(fractalNoise(82.0f, 51.0f, 0.13f, 3, 1065 + 900), 0.53f);
    EXPECT_EQ(cellAt(meadow, 82, 51).terrain, TERRAIN_GRASS);

    const City glade = generated(5611);
    ASSERT_EQ(hashUnit(7, 59, 5611 + 5), 0.35f);
    EXPECT_EQ(cellAt(glade, 7, 59).terrain, TERRAIN_WOODLAND);
    EXPECT_EQ(cellAt(glade, 7, 59).hasTrees, 0);
}

TEST(MapGeneration, ResetsTheGameButGoesOnWithTheCalendarAndTheEventCount) {
    City city = generated(1);
    city.calendarDay = 400;
    city.money = -7.0;
    city.day = 90;
    city.keepPlaying = 1;
    city.bankrupt = 1;
    city.buildings.resize(3);
    city.taxRate[2] = 180;
    city.history[0][0] = 5.0f;
    city.historyCount = 1;
    generateMap(city, 2);
    EXPECT_EQ(city.calendarDay, 400);
    EXPECT_EQ(city.eventCount, 2u);
    EXPECT_EQ(city.seed, 2u);
    EXPECT_EQ(city.money, 150000.0);
    EXPECT_EQ(city.day, 0);
    EXPECT_EQ(city.keepPlaying, 0);
    EXPECT_EQ(city.bankrupt, 0);
    EXPECT_TRUE(city.buildings.empty());
    EXPECT_EQ(city.taxRate[2], 100);
    EXPECT_EQ(city.history[0][0], 0.0f);
    EXPECT_EQ(city.historyCount, 0);
    for (const float value : city.landValue) ASSERT_EQ(value, 0.5f);
}

TEST(MapGeneration, GreetsAndMarksEverythingStale) {
    const City city = generated(0);
    ASSERT_EQ(city.events.size(), 1u);
    EXPECT_EQ(city.events[0].id, STATUS_WELCOME);
    EXPECT_EQ(city.events[0].arg, 0u);
    EXPECT_EQ(city.statusId, STATUS_WELCOME);
    EXPECT_EQ(city.statusArg, 0u);
    EXPECT_TRUE(city.roadsDirty && city.buildingsDirty && city.zonesDirty && city.overlayDirty);
    for (const uint8_t dirty : city.cellDirty) ASSERT_EQ(dirty, 1);
}
