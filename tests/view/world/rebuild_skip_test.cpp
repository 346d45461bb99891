// A mark may be raised although nothing that a mesh shows has changed. Then nothing is built and uploaded,
// and still every mesh shows what it would show if each mark were followed.
#include "view/world/rebuild.h"

#include "allocation_count.h"
#include "sim/build_tools.h"
#include "sim/calendar.h"
#include "sim/city_helpers.h"
#include "sim/map_generation.h"
#include "sim/networks.h"
#include "view/gl/graphics_memory.h"
#include "view/models/model_helpers.h"
#include "view/world/road_mesh.h"
#include "view/world/terrain.h"
#include "view/world/trees.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

// Follows every mark by building afresh, as the marks alone would have it.
struct PlainMeshes {
    std::array<MeshBuilder, CHUNK_COUNT> chunks;
    MeshBuilder roads;
    MeshBuilder trees;
    std::array<MeshBuilder, CHUNK_COUNT> blocks;
    int overlayMode = OVERLAY_NORMAL;
    bool overlayChanged = false;
    int lastSeason = 0;
};

// On the chunk or right beside it.
static bool anyMark(const City& city, int chunk) {
    for (int y = -1; y <= CHUNK_SIZE; y++)
        for (int x = -1; x <= CHUNK_SIZE; x++) {
            const int cellX = chunk % CHUNK_ROW * CHUNK_SIZE + x;
            const int cellY = chunk / CHUNK_ROW * CHUNK_SIZE + y;
            if (inMap(cellX, cellY) && city.cellDirty[cellIndex(cellX, cellY)]) return true;
        }
    return false;
}

static void followMarks(PlainMeshes& plain, City& city) {
    const bool newSeason = season(city) != plain.lastSeason;
    const bool all = newSeason || plain.overlayChanged || city.overlayDirty;
    for (int chunk = 0; chunk < CHUNK_COUNT; chunk++)
        if (all || anyMark(city, chunk)) {
            plain.chunks[chunk].clear();
            buildTerrainChunk(plain.chunks[chunk], city, plain.overlayMode, chunk);
        }
    if (all || city.roadsDirty) {
        plain.roads.clear();
        buildRoadMesh(plain.roads, city, plain.overlayMode);
    }
    if (newSeason || city.zonesDirty) {
        plain.trees.clear();
        buildTreeMesh(plain.trees, city);
    }
    if (city.buildingsDirty) plain.blocks = buildingBlocksOf(city);
    plain.lastSeason = season(city);
    plain.overlayChanged = false;
    std::fill(city.cellDirty.begin(), city.cellDirty.end(), uint8_t{0});
    city.overlayDirty = city.roadsDirty = city.zonesDirty = city.buildingsDirty = 0;
}

struct RebuildSkip : testing::Test {
    GraphicsMemory memory;
    WorldMeshes meshes;
    City city;

    RebuildSkip() {
        generateMap(city, 0);
        city.money = 1e9;
        update();
    }

    // Uploads of this update.
    int update() {
        memory.uploads = 0;
        updateWorldMeshes(meshes, city);
        return memory.uploads;
    }

    void raiseEveryMark() {
        std::fill(city.cellDirty.begin(), city.cellDirty.end(), uint8_t{1});
        city.overlayDirty = city.roadsDirty = city.zonesDirty = city.buildingsDirty = 1;
    }

    // Level dry land, which takes any tool.
    CellStep buildableCell() const {
        for (int y = 40; y < GRID_SIZE; y++)
            for (int x = 40; x < GRID_SIZE; x++) {
                const Cell& cell = city.cells[cellIndex(x, y)];
                if (canPlaceBuilding(city, x, y, KIND_PARK, nullptr) && cell.terrain == TERRAIN_GRASS &&
                    !cell.hasTrees && x % 16 > 1 && x % 16 < 14 && y % 16 > 1 && y % 16 < 14)
                    return {x, y};
            }
        return {-1, -1};
    }
};

TEST_F(RebuildSkip, MarksWithoutAChangeUploadNothingAndAreCleared) {
    raiseEveryMark();
    EXPECT_EQ(update(), 0);
    EXPECT_EQ(std::count(city.cellDirty.begin(), city.cellDirty.end(), 0), CELL_COUNT);
    EXPECT_FALSE(city.overlayDirty || city.roadsDirty || city.zonesDirty || city.buildingsDirty);
}

TEST_F(RebuildSkip, MarksWithoutAChangeTakeNothingFromTheHeap) {
    city.buildings.resize(3);
    city.buildingsDirty = 1;
    update();
    const uint64_t before = allocationCount();
    raiseEveryMark();
    updateWorldMeshes(meshes, city);
    EXPECT_EQ(allocationCount(), before);
}

TEST_F(RebuildSkip, TheNetworksPassMakesNoGroundAnew) {
    updateUtilities(city);
    EXPECT_TRUE(city.overlayDirty);
    EXPECT_EQ(update(), 0);
}

TEST_F(RebuildSkip, AStreetOnBareGrassUploadsTheRoadsAlone) {
    const CellStep cell = buildableCell();
    ASSERT_TRUE(placeRoad(city, cell.x, cell.y, ROAD_STREET));
    EXPECT_EQ(update(), 1);
    EXPECT_EQ(meshes.roadMesh.vertexCount, 6);
    ASSERT_TRUE(placeRoad(city, cell.x, cell.y, ROAD_AVENUE)); // looks the same
    EXPECT_EQ(update(), 0);
    ASSERT_TRUE(bulldoze(city, cell.x, cell.y));
    EXPECT_EQ(update(), 1);
    EXPECT_EQ(meshes.roadMesh.vertexCount, 0);
}

TEST_F(RebuildSkip, AZoneUploadsItsChunkAlone) {
    const CellStep cell = buildableCell();
    ASSERT_TRUE(setZone(city, cell.x, cell.y, ZONE_OFFICES));
    EXPECT_EQ(update(), 1);
    ASSERT_TRUE(setZone(city, cell.x, cell.y, ZONE_NONE));
    EXPECT_EQ(update(), 1);
}

TEST_F(RebuildSkip, ADistrictUploadsEveryChunkThatItsCellTouches) {
    ASSERT_TRUE(setDistrict(city, 40, 40, 3)); // inside its chunk
    EXPECT_EQ(update(), 1);
    ASSERT_TRUE(setDistrict(city, 15, 40, 3)); // at the border to the next
    EXPECT_EQ(update(), 2);
    ASSERT_TRUE(setDistrict(city, 16, 16, 3)); // where four meet
    EXPECT_EQ(update(), 4);
}

TEST_F(RebuildSkip, FellingTreesUploadsTheTrees) {
    const auto wooded = std::find_if(city.cells.begin(), city.cells.end(),
                                     [](const Cell& cell) { return cell.hasTrees != 0; });
    ASSERT_NE(wooded, city.cells.end());
    const int trees = meshes.treeMesh.vertexCount;
    wooded->hasTrees = 0;
    EXPECT_EQ(update(), 0); // nothing is marked yet
    city.zonesDirty = 1;
    EXPECT_EQ(update(), 1);
    EXPECT_EQ(meshes.treeMesh.vertexCount, trees - 36);
}

TEST_F(RebuildSkip, NewNumbersUploadWhatShowsThemAndNoMore) {
    layRoads(city, 40, 40, 60, 40);
    city.roadsDirty = 1;
    update();
    const auto changeNumbers = [&](float value) {
        for (Grid* grid :
             {&city.powerField, &city.waterField, &city.pollution, &city.landValue, &city.trafficLoad})
            (*grid)[cellIndex(40, 40)] = value;
        city.overlayDirty = 1;
    };
    const int uploadsByOverlay[OVERLAY_COUNT] = {0, 1, 1, 1, 1, 1};
    for (int overlay = 0; overlay < OVERLAY_COUNT; overlay++) {
        setOverlay(meshes, overlay);
        update();
        changeNumbers(static_cast<float>(overlay) * 0.1f + 0.05f);
        EXPECT_EQ(update(), uploadsByOverlay[overlay]) << overlay;
    }
}

TEST_F(RebuildSkip, ANewOverlayUploadsGroundAndRoadsEachTime) {
    for (int i = 1; i <= OVERLAY_COUNT; i++) {
        setOverlay(meshes, i % OVERLAY_COUNT);
        EXPECT_EQ(update(), CHUNK_COUNT + 1);
    }
}

TEST_F(RebuildSkip, OtherLandUploadsGroundRoadsAndTrees) {
    generateMap(city, 5);
    EXPECT_EQ(update(), CHUNK_COUNT + 2);
    for (float& height : city.heights) height += 1.0f;
    raiseEveryMark();
    EXPECT_EQ(update(), CHUNK_COUNT + 2);
}

TEST_F(RebuildSkip, ANewSeasonUploadsGroundAndTrees) {
    city.calendarDay = 100;
    EXPECT_EQ(update(), CHUNK_COUNT + 1);
}

// --- Whatever happens to the city, nobody sees that work was left out

struct Player {
    std::mt19937 chance{1};
    int upTo(int limit) { return static_cast<int>(chance() % static_cast<uint32_t>(limit)); }
};

static void playOneMove(Player& player, City& city) {
    const int x = player.upTo(GRID_SIZE);
    const int y = player.upTo(GRID_SIZE);
    switch (player.upTo(10)) {
    case 0:
        for (int i = 0; i < 8; i++) placeRoad(city, x + i, y, 1 + player.upTo(2));
        placeBusStop(city, x, y);
        break;
    case 1:
        for (int i = 0; i < 20; i++) setZone(city, x + i % 5, y + i / 5, player.upTo(5));
        break;
    case 2:
        for (int i = 0; i < 20; i++) setDistrict(city, x + i % 5, y + i / 5, player.upTo(9));
        break;
    case 3:
        placeBuilding(city, x, y, 4 + player.upTo(10));
        for (Building& building : city.buildings) building.progress += 0.25f;
        break;
    case 4:
        for (int i = 0; i < 30; i++) bulldoze(city, x + i % 5, y + i / 5);
        break;
    case 5: // a day's numbers, for better or worse marked
        city.trafficLoad[cellIndex(x, y)] = static_cast<float>(player.upTo(10)) * 0.1f;
        city.pollution[cellIndex(x, y)] = static_cast<float>(player.upTo(10)) * 0.1f;
        city.landValue[cellIndex(y, x)] = static_cast<float>(player.upTo(10)) * 0.1f;
        city.overlayDirty = player.upTo(2) == 0;
        break;
    case 6:
        if (player.upTo(8) == 0) city.calendarDay = player.upTo(365);
        break;
    case 7: // a mark for nothing
        markCellDirty(city, x, y);
        if (player.upTo(2) == 0) city.roadsDirty = city.zonesDirty = 1;
        break;
    case 8: // a change without a mark
        city.cells[cellIndex(x, y)].hasTrees ^= 1;
        break;
    default:
        if (player.upTo(30) == 0) generateMap(city, player.chance());
        city.money = 1e9;
    }
}

TEST_F(RebuildSkip, EveryMeshShowsWhatFollowingEachMarkWouldShow) {
    City plainCity = city;
    PlainMeshes plain;
    plain.overlayChanged = true;
    plainCity.roadsDirty = plainCity.zonesDirty = plainCity.buildingsDirty = 1;
    followMarks(plain, plainCity);
    Player player;
    for (int frame = 0; frame < 120; frame++) {
        Player twin = player;
        for (int move = 0; move < 3; move++) {
            playOneMove(player, city);
            playOneMove(twin, plainCity);
        }
        if (player.upTo(12) == 0) {
            plain.overlayMode = player.upTo(OVERLAY_COUNT);
            plain.overlayChanged = plain.overlayMode != meshes.overlayMode;
            setOverlay(meshes, plain.overlayMode);
        }
        update();
        followMarks(plain, plainCity);
        ASSERT_EQ(cityHash(city), cityHash(plainCity)) << "marks differ after frame " << frame;
        for (int chunk = 0; chunk < CHUNK_COUNT; chunk++)
            ASSERT_TRUE(shows(memory, meshes.terrainChunks[chunk], plain.chunks[chunk]))
                << frame << ' ' << chunk;
        ASSERT_TRUE(shows(memory, meshes.roadMesh, plain.roads)) << frame;
        ASSERT_TRUE(shows(memory, meshes.treeMesh, plain.trees)) << frame;
        for (int block = 0; block < CHUNK_COUNT; block++)
            ASSERT_TRUE(shows(memory, meshes.buildingBlocks[block], plain.blocks[block]))
                << frame << ' ' << block;
    }
}
