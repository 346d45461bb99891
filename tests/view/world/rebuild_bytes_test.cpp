// What a large city sends to the graphics card. On a full map the buildings alone are 130 MB and more:
// sending them all because one of them changed would stop the picture for a third of a second.
#include "view/world/rebuild.h"

#include "sim/build_tools.h"
#include "sim/daily_tick.h"
#include "sim/grown_cities.h"
#include "view/gl/graphics_memory.h"
#include "view/models/model_helpers.h"
#include "view/world/building_mesh.h"

#include <gtest/gtest.h>

#include <algorithm>

constexpr uint64_t CHUNK_BYTES = 1536 * sizeof(Vertex);
constexpr uint64_t MEGABYTE = 1000 * 1000;

struct FullMap : testing::Test {
    GraphicsMemory memory;
    WorldMeshes meshes;
    City city;

    FullMap() {
        static const City grown = bigCity();
        city = grown;
        update();
    }

    // Bytes of this frame.
    uint64_t updateOnce() {
        memory.bytesSent = 0;
        updateWorldMeshes(meshes, city);
        return memory.bytesSent;
    }

    // Bytes until nothing is stale.
    uint64_t update() {
        uint64_t sent = updateOnce();
        for (int frame = 1; city.buildingsDirty && frame < CHUNK_COUNT; frame++) sent += updateOnce();
        return sent;
    }

    uint64_t blockBytes(int block) const {
        return static_cast<uint64_t>(meshes.buildingBlocks[block].vertexCount) * sizeof(Vertex);
    }

    uint64_t largestBlock() const {
        uint64_t largest = 0;
        for (int block = 0; block < CHUNK_COUNT; block++) largest = std::max(largest, blockBytes(block));
        return largest;
    }

    void changeEveryBuilding() {
        for (Building& building : city.buildings) building.level = building.level == 1 ? 2 : 1;
        city.buildingsDirty = 1;
    }

    void expectBlocksOfTheCity() const {
        const auto expected = buildingBlocksOf(city);
        for (int block = 0; block < CHUNK_COUNT; block++)
            EXPECT_TRUE(shows(memory, meshes.buildingBlocks[block], expected[block])) << block;
    }

    static int blockOf(int x, int y) { return y / CHUNK_SIZE * CHUNK_ROW + x / CHUNK_SIZE; }
};

TEST_F(FullMap, NoBlockIsLargerThan16Megabytes) {
    uint64_t all = 0;
    for (int block = 0; block < CHUNK_COUNT; block++) {
        EXPECT_LT(blockBytes(block), 16 * MEGABYTE) << block;
        all += blockBytes(block);
    }
    EXPECT_GT(all, 130 * MEGABYTE);
}

TEST_F(FullMap, OneChangedBuildingSendsItsBlock) {
    for (Building& building : city.buildings) {
        if (&building - city.buildings.data() > 40) break;
        building.level = building.level == 1 ? 2 : 1;
        building.kind = KIND_HOMES;
        city.buildingsDirty = 1;
        const uint64_t sent = update();
        EXPECT_EQ(sent, blockBytes(blockOf(building.x, building.y)));
    }
}

TEST_F(FullMap, ADaySendsTheBlocksThatChangedAndADayWithoutVisibleChangeNothing) {
    int quietDays = 0;
    for (int day = 0; day < 20; day++) {
        std::array<MeshBuilder, CHUNK_COUNT> before;
        for (int block = 0; block < CHUNK_COUNT; block++)
            before[block] = memory.buffers[meshes.buildingBlocks[block].vertexBuffer];
        dailyTick(city);
        EXPECT_TRUE(city.buildingsDirty && city.overlayDirty);
        const uint64_t sent = update();

        uint64_t changed = 0;
        for (int block = 0; block < CHUNK_COUNT; block++)
            if (!shows(memory, meshes.buildingBlocks[block], before[block])) changed += blockBytes(block);
        EXPECT_EQ(sent, changed) << day;
        quietDays += changed == 0;
    }
    EXPECT_GT(quietDays, 0);
    EXPECT_LT(quietDays, 20);
}

TEST_F(FullMap, AZonedCellSendsItsChunkAndThoseRightBesideIt) {
    const struct {
        int x;
        int y;
        uint64_t chunks;
    } cells[] = {{40, 40, 1}, {47, 40, 2}, {40, 48, 2}, {47, 47, 4}};
    for (const auto& [x, y, chunks] : cells) {
        while (bulldoze(city, x, y)) {
        }
        update();
        ASSERT_TRUE(setZone(city, x, y, ZONE_OFFICES));
        EXPECT_EQ(update(), chunks * CHUNK_BYTES) << x << ", " << y;
    }
}

TEST_F(FullMap, ABulldozedBuildingSendsItsBlock) {
    const Building building = city.buildings.front();
    ASSERT_TRUE(bulldoze(city, building.x, building.y));
    const uint64_t sent = update();
    EXPECT_EQ(sent, blockBytes(blockOf(building.x, building.y)));
}

TEST_F(FullMap, ALargeChangeIsSpreadOverFramesAndEndsAsTheCityIs) {
    changeEveryBuilding();
    std::vector<uint64_t> frames;
    while (city.buildingsDirty && frames.size() <= CHUNK_COUNT) frames.push_back(updateOnce());

    for (const uint64_t sent : frames) EXPECT_LT(sent, BUILDING_BYTES_A_FRAME + largestBlock());
    EXPECT_GT(frames.size(), 10u);
    EXPECT_LE(frames.size(), size_t{CHUNK_COUNT});
    expectBlocksOfTheCity();
    EXPECT_EQ(updateOnce(), 0u);
}

TEST_F(FullMap, NewLandStandsWholeInItsFirstFrame) {
    changeEveryBuilding();
    std::fill(city.cellDirty.begin(), city.cellDirty.end(), uint8_t{1});
    updateOnce();
    EXPECT_FALSE(city.buildingsDirty);
    expectBlocksOfTheCity();
}
