// Which mark calls for which mesh. That a mesh called for in vain is left alone is held by rebuild_skip_test.
#include "view/world/rebuild.h"

#include "allocation_count.h"
#include "sim/map_generation.h"
#include "view/gl/fake_gl.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <numeric>

constexpr int SUMMER_DAY = 100; // of City::calendarDay
constexpr int WINTER_DAY = 300;

// Meshes by number: chunks 0 to 35, then these.
constexpr int WATER = 36;
constexpr int ROADS = 37;
constexpr int TREES = 38;
constexpr int FIRST_BLOCK = 39;
constexpr int MESHES = FIRST_BLOCK + CHUNK_COUNT;

using Meshes = std::vector<int>;

// Chunks or blocks.
static Meshes oneForEachChunk(int first) {
    Meshes meshes(CHUNK_COUNT);
    std::iota(meshes.begin(), meshes.end(), first);
    return meshes;
}

static Meshes operator+(Meshes meshes, const Meshes& others) {
    meshes.insert(meshes.end(), others.begin(), others.end());
    return meshes;
}

static const Meshes THE_GROUND = oneForEachChunk(0);
static const Meshes THE_BUILDINGS = oneForEachChunk(FIRST_BLOCK);

// A city and its meshes, in a table of GL functions that only counts.
struct Rebuild : testing::Test {
    FakeGl fake;
    WorldMeshes meshes;
    City city;

    Rebuild() {
        generateMap(city, 0);
        city.buildings.emplace_back(); // in a corner, to be seen when it is built
    }

    Mesh& mesh(int number) {
        switch (number) {
        case WATER:
            return meshes.waterMesh;
        case ROADS:
            return meshes.roadMesh;
        case TREES:
            return meshes.treeMesh;
        default:
            return number < CHUNK_COUNT ? meshes.terrainChunks[number]
                                        : meshes.buildingBlocks[number - FIRST_BLOCK];
        }
    }

    // The meshes that this update builds, in its order, be they changed or not.
    Meshes update() {
        for (int i = 0; i < MESHES; i++) mesh(i).fingerprint = 0;
        fake.calls.clear();
        updateWorldMeshes(meshes, city);
        std::map<std::string, int> numbers;
        for (int i = 0; i < MESHES; i++) numbers[glCall("BindVertexArray", mesh(i).vertexArray)] = i;
        Meshes built;
        for (const std::string& call : callsOf(fake, "BindVertexArray"))
            if (numbers.contains(call)) built.push_back(numbers[call]);
        return built;
    }

    bool anyCellDirty() const {
        return std::count(city.cellDirty.begin(), city.cellDirty.end(), 0) != CELL_COUNT;
    }
};

TEST_F(Rebuild, TheFirstUpdateBuildsEverythingInOneOrder) {
    EXPECT_EQ(update(), (THE_GROUND + Meshes{WATER, ROADS, TREES} + THE_BUILDINGS));
    for (const Mesh& chunk : meshes.terrainChunks) EXPECT_EQ(chunk.vertexCount, 1536);
    EXPECT_EQ(meshes.waterMesh.vertexCount, 6);
    EXPECT_GT(meshes.treeMesh.vertexCount, 0);
    EXPECT_FALSE(anyCellDirty());
    EXPECT_FALSE(city.overlayDirty || city.roadsDirty || city.zonesDirty || city.buildingsDirty);
}

TEST_F(Rebuild, AnUpdateWithNothingStaleMakesNoCallAndTakesNothingFromTheHeap) {
    update();
    fake.calls.clear();
    const uint64_t before = allocationCount();
    for (int frame = 0; frame < 10; frame++) updateWorldMeshes(meshes, city);
    EXPECT_EQ(allocationCount(), before);
    EXPECT_TRUE(fake.calls.empty());
}

TEST_F(Rebuild, AMarkedCellInsideAChunkRebuildsItAlone) {
    update();
    for (int chunk = 0; chunk < CHUNK_COUNT; chunk++) {
        markCellDirty(city, chunk % 6 * 16 + 1, chunk / 6 * 16 + 14);
        EXPECT_EQ(update(), Meshes{chunk});
        EXPECT_FALSE(anyCellDirty());
    }
}

TEST_F(Rebuild, AMarkedCellAtABorderRebuildsEveryChunkThatItTouches) {
    update();
    markCellDirty(city, 15, 40);
    EXPECT_EQ(update(), (Meshes{12, 13}));
    markCellDirty(city, 16, 40);
    EXPECT_EQ(update(), (Meshes{12, 13}));
    markCellDirty(city, 40, 16);
    EXPECT_EQ(update(), (Meshes{2, 8}));
    markCellDirty(city, 32, 47);
    EXPECT_EQ(update(), (Meshes{13, 14, 19, 20}));
}

TEST_F(Rebuild, ACellAtTheEdgeOfTheMapTouchesNothingOnItsOtherSide) {
    update();
    markCellDirty(city, 0, 40);
    EXPECT_EQ(update(), Meshes{12});
    markCellDirty(city, 95, 40);
    EXPECT_EQ(update(), Meshes{17});
    markCellDirty(city, 95, 95);
    EXPECT_EQ(update(), Meshes{35});
}

TEST_F(Rebuild, MarkedCellsOfSeveralChunksRebuildEachOnce) {
    update();
    markCellDirty(city, 14, 40);
    markCellDirty(city, 16, 40);
    markCellDirty(city, 17, 41);
    EXPECT_EQ(update(), (Meshes{12, 13}));
}

TEST_F(Rebuild, AnyNonZeroMarkCounts) {
    update();
    city.cellDirty[cellIndex(95, 95)] = 0x80;
    EXPECT_EQ(update(), Meshes{35});
    city.roadsDirty = 0x80;
    city.zonesDirty = 0x80;
    city.buildingsDirty = 0x80;
    EXPECT_EQ(update(), (Meshes{ROADS, TREES} + THE_BUILDINGS));
}

TEST_F(Rebuild, StaleRoadsRebuildTheRoadsAlone) {
    update();
    city.roadsDirty = 1;
    EXPECT_EQ(update(), Meshes{ROADS});
    EXPECT_EQ(city.roadsDirty, 0);
}

TEST_F(Rebuild, StaleZonesRebuildTheTreesAlone) {
    update();
    city.zonesDirty = 1;
    EXPECT_EQ(update(), Meshes{TREES});
    EXPECT_EQ(city.zonesDirty, 0);
}

TEST_F(Rebuild, StaleBuildingsRebuildTheBuildingsAlone) {
    update();
    city.buildingsDirty = 1;
    EXPECT_EQ(update(), THE_BUILDINGS);
    EXPECT_EQ(city.buildingsDirty, 0);
}

TEST_F(Rebuild, StaleNumbersRebuildGroundAndRoadsOnce) {
    update();
    city.overlayDirty = 1;
    EXPECT_EQ(update(), THE_GROUND + Meshes{ROADS});
    EXPECT_EQ(city.overlayDirty, 0);
    EXPECT_EQ(update(), Meshes{});
}

TEST_F(Rebuild, ANewSeasonRebuildsGroundRoadsAndTreesOnce) {
    update();
    city.calendarDay = SUMMER_DAY;
    EXPECT_EQ(update(), (THE_GROUND + Meshes{ROADS, TREES}));
    EXPECT_EQ(meshes.lastSeason, 1);
    EXPECT_EQ(update(), Meshes{});
    city.calendarDay++;
    EXPECT_EQ(update(), Meshes{});
    city.calendarDay = WINTER_DAY;
    EXPECT_EQ(update(), (THE_GROUND + Meshes{ROADS, TREES}));
    EXPECT_EQ(meshes.lastSeason, 3);
}

TEST_F(Rebuild, TheSameOverlayTwiceDoesNothing) {
    update();
    setOverlay(meshes, OVERLAY_NORMAL);
    EXPECT_EQ(meshes.rebuildAll, 0);
    setOverlay(meshes, OVERLAY_POWER);
    EXPECT_EQ(meshes.rebuildAll, 1);
    EXPECT_EQ(update(), THE_GROUND + Meshes{ROADS});
    setOverlay(meshes, OVERLAY_POWER);
    EXPECT_EQ(update(), Meshes{});
}

TEST_F(Rebuild, CyclingThroughTheOverlaysRebuildsGroundAndRoadsSixTimes) {
    update();
    for (int i = 1; i <= OVERLAY_COUNT; i++) {
        setOverlay(meshes, i % OVERLAY_COUNT);
        EXPECT_EQ(meshes.overlayMode, i % OVERLAY_COUNT);
        EXPECT_EQ(update(), THE_GROUND + Meshes{ROADS});
        EXPECT_EQ(meshes.rebuildAll, 0);
    }
}

TEST_F(Rebuild, AnOverlayThatDoesNotExistChangesNothing) {
    for (const int mode : {-1, 6, 257, 1 << 30}) {
        setOverlay(meshes, mode);
        EXPECT_EQ(meshes.overlayMode, OVERLAY_NORMAL);
        EXPECT_EQ(meshes.rebuildAll, 0);
    }
}

TEST_F(Rebuild, ANewGameRebuildsEverythingButTheWater) {
    update();
    generateMap(city, 77);
    city.buildings.emplace_back();
    EXPECT_EQ(update(), (THE_GROUND + Meshes{ROADS, TREES} + THE_BUILDINGS));
    EXPECT_EQ(update(), Meshes{});
}

TEST_F(Rebuild, AMapWithoutRoadsDrawsNoRoads) {
    update();
    EXPECT_NE(meshes.roadMesh.vertexArray, 0u);
    EXPECT_EQ(meshes.roadMesh.vertexCount, 0);
    fake.calls.clear();
    drawMesh(meshes.roadMesh);
    EXPECT_TRUE(fake.calls.empty());
}
