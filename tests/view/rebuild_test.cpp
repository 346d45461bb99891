#include "view/rebuild.h"

#include "allocation_count.h"
#include "sim/map_generation.h"
#include "view/fake_gl.h"

#include <gtest/gtest.h>

#include <algorithm>

constexpr int SUMMER_DAY = 100; // of City::calendarDay
constexpr int WINTER_DAY = 300;

// A city and its meshes, in a table of GL functions that only counts.
struct Rebuild : testing::Test {
    FakeGl fake;
    WorldMeshes meshes;
    City city;

    Rebuild() { generateMap(city, 0); }

    // Uploads of this update.
    size_t update() {
        fake.calls.clear();
        updateWorldMeshes(meshes, city);
        return callsOf(fake, "BufferData").size();
    }

    // The chunks that this update uploads, by index.
    std::vector<int> updatedChunks() {
        update();
        std::vector<int> chunks;
        for (int i = 0; i < CHUNK_COUNT; i++)
            for (const std::string& call : callsOf(fake, "BindVertexArray"))
                if (call == glCall("BindVertexArray", meshes.terrainChunks[i].vertexArray))
                    chunks.push_back(i);
        return chunks;
    }

    bool anyCellDirty() const {
        return std::count(city.cellDirty.begin(), city.cellDirty.end(), 0) != CELL_COUNT;
    }
};

TEST_F(Rebuild, TheFirstUpdateBuildsTheWholeGroundAndTheWater) {
    EXPECT_EQ(update(), 37u);
    for (const Mesh& chunk : meshes.terrainChunks) EXPECT_EQ(chunk.vertexCount, 1536);
    EXPECT_EQ(meshes.waterMesh.vertexCount, 6);
    EXPECT_FALSE(anyCellDirty());
    EXPECT_EQ(city.overlayDirty, 0);
}

TEST_F(Rebuild, AnUpdateWithNothingStaleMakesNoCallAndTakesNothingFromTheHeap) {
    update();
    fake.calls.clear();
    const uint64_t before = allocationCount();
    for (int frame = 0; frame < 10; frame++) updateWorldMeshes(meshes, city);
    EXPECT_EQ(allocationCount(), before);
    EXPECT_TRUE(fake.calls.empty());
}

TEST_F(Rebuild, AMarkedCellRebuildsItsChunkAlone) {
    update();
    for (int chunk = 0; chunk < CHUNK_COUNT; chunk++) {
        markCellDirty(city, chunk % 6 * 16, chunk / 6 * 16 + 15);
        EXPECT_EQ(updatedChunks(), std::vector<int>{chunk});
        EXPECT_FALSE(anyCellDirty());
        markCellDirty(city, chunk % 6 * 16 + 15, chunk / 6 * 16);
        EXPECT_EQ(updatedChunks(), std::vector<int>{chunk});
    }
}

TEST_F(Rebuild, MarkedCellsOfSeveralChunksRebuildEachOnce) {
    update();
    markCellDirty(city, 15, 40);
    markCellDirty(city, 16, 40);
    markCellDirty(city, 17, 41);
    EXPECT_EQ(updatedChunks(), (std::vector<int>{12, 13}));
}

TEST_F(Rebuild, AnyNonZeroMarkCounts) {
    update();
    city.cellDirty[cellIndex(95, 95)] = 0x80;
    EXPECT_EQ(updatedChunks(), std::vector<int>{35});
}

TEST_F(Rebuild, StaleNumbersRebuildTheWholeGroundOnce) {
    update();
    city.overlayDirty = 1;
    EXPECT_EQ(updatedChunks().size(), 36u);
    EXPECT_EQ(city.overlayDirty, 0);
    EXPECT_EQ(update(), 0u);
}

TEST_F(Rebuild, ANewSeasonRebuildsTheWholeGroundOnceAndMakesTheTreesStale) {
    update();
    city.zonesDirty = 0;
    city.calendarDay = SUMMER_DAY;
    EXPECT_EQ(updatedChunks().size(), 36u);
    EXPECT_TRUE(city.zonesDirty);
    EXPECT_EQ(meshes.lastSeason, 1);
    EXPECT_EQ(update(), 0u);
    city.calendarDay++;
    EXPECT_EQ(update(), 0u);
    city.calendarDay = WINTER_DAY;
    EXPECT_EQ(updatedChunks().size(), 36u);
    EXPECT_EQ(meshes.lastSeason, 3);
}

TEST_F(Rebuild, TheSameOverlayTwiceDoesNothing) {
    update();
    setOverlay(meshes, OVERLAY_NORMAL);
    EXPECT_EQ(meshes.rebuildAll, 0);
    setOverlay(meshes, OVERLAY_POWER);
    EXPECT_EQ(meshes.rebuildAll, 1);
    EXPECT_EQ(updatedChunks().size(), 36u);
    setOverlay(meshes, OVERLAY_POWER);
    EXPECT_EQ(update(), 0u);
}

TEST_F(Rebuild, CyclingThroughTheOverlaysRebuildsTheGroundSixTimes) {
    update();
    for (int i = 1; i <= OVERLAY_COUNT; i++) {
        setOverlay(meshes, i % OVERLAY_COUNT);
        EXPECT_EQ(meshes.overlayMode, i % OVERLAY_COUNT);
        EXPECT_EQ(updatedChunks().size(), 36u);
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

TEST_F(Rebuild, ANewGameRebuildsTheGroundButNotTheWater) {
    update();
    generateMap(city, 77);
    EXPECT_EQ(updatedChunks().size(), 36u);
    EXPECT_EQ(update(), 0u);
    EXPECT_TRUE(callsOf(fake, "BufferData").empty());
}

TEST_F(Rebuild, RoadsTreesAndBuildingsKeepTheirMarksWhileTheGroundIsRebuilt) {
    update();
    EXPECT_TRUE(city.roadsDirty && city.zonesDirty && city.buildingsDirty);
}
