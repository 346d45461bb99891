#include "view/world/building_mesh.h"

#include "sim/city_helpers.h"
#include "sim/hash.h"
#include "sim/map_generation.h"
#include "sim/networks.h"
#include "sim/save_file.h"
#include "view/gl/graphics_memory.h"
#include "view/models/model_helpers.h"

// A town of every kind and level on the corner of four blocks, with sites and bus stops.
static City town() {
    City city = flatCity();
    for (int i = 0; i < 30; i++) {
        const uint8_t kind = static_cast<uint8_t>(i % KIND_COUNT);
        Building& building =
            addBuilding(city, 27 + i % 10, 30 + i / 10, kind, static_cast<uint8_t>(1 + i % 3));
        if (i % 5 == 0) building.progress = 0.4f;
    }
    for (int x = 20; x < 40; x += 2) city.cells[cellIndex(x, 40)].busStop = 1;
    return city;
}

struct BuildingBlocks : testing::Test {
    GraphicsMemory memory;
    WorldMeshes meshes;
    City city = town();

    // Uploads of this update.
    int update() {
        memory.uploads = 0;
        buildBuildingMeshes(meshes, city);
        return memory.uploads;
    }

    // The first block that shows anything else than a build from nothing, -1 when there is none.
    int wrongBlock() const {
        const auto expected = buildingBlocksOf(city);
        for (int block = 0; block < CHUNK_COUNT; block++)
            if (!shows(memory, meshes.buildingBlocks[block], expected[block])) return block;
        return -1;
    }
};

TEST_F(BuildingBlocks, FirstShowTheWholeCity) {
    EXPECT_EQ(update(), CHUNK_COUNT);
    EXPECT_EQ(wrongBlock(), -1);
    size_t vertexCount = 0;
    for (const Mesh& block : meshes.buildingBlocks) vertexCount += static_cast<size_t>(block.vertexCount);
    EXPECT_EQ(vertexCount, buildingsOf(city).size());
}

TEST_F(BuildingBlocks, BusStopsAndBuildingsBelongToTheBlockOfTheirCell) {
    city = flatCity();
    addBuilding(city, 15, 31, KIND_SCHOOL);
    addBuilding(city, 16, 31, KIND_PARK);
    addBuilding(city, 95, 95, KIND_HOMES).progress = 0.5f;
    city.cells[cellIndex(16, 32)].busStop = 1;
    update();
    EXPECT_EQ(wrongBlock(), -1);
    for (int block = 0; block < CHUNK_COUNT; block++) {
        const bool isFilled = block == 6 || block == 7 || block == 13 || block == 35;
        EXPECT_EQ(meshes.buildingBlocks[block].vertexCount > 0, isFilled) << block;
    }
}

TEST_F(BuildingBlocks, ACityWithNothingInItStillMakesItsMeshes) {
    city = flatCity();
    update();
    for (const Mesh& block : meshes.buildingBlocks) {
        EXPECT_NE(block.vertexArray, 0u);
        EXPECT_EQ(block.vertexCount, 0);
    }
}

TEST_F(BuildingBlocks, NothingIsUploadedWhenNothingLooksDifferent) {
    update();
    updateUtilities(city); // calls the buildings stale whatever it finds
    EXPECT_TRUE(city.buildingsDirty);
    city.buildings[3].happiness = 10.0f;
    city.buildings[3].powered = 0;
    city.heights[0] = 99.0f; // nothing stands there
    EXPECT_EQ(update(), 0);
}

TEST_F(BuildingBlocks, FollowEveryKindOfChangeInTheBlockWhereItHappens) {
    update();
    const auto expectShown = [&](int blocks, const char* change) {
        EXPECT_EQ(update(), blocks) << change;
        EXPECT_EQ(wrongBlock(), -1) << change;
        EXPECT_EQ(update(), 0) << change;
    };

    addBuilding(city, 50, 50, KIND_SCHOOL).progress = 0.0f;
    expectShown(1, "a new site");
    city.buildings.back().progress = 0.5f;
    expectShown(1, "a site that grows");
    city.buildings.back().progress = 1.0f;
    expectShown(1, "a finished building");
    city.buildings[14].level = 1;
    expectShown(1, "a level changed");
    city.buildings[14].kind = KIND_WATER_PUMP;
    expectShown(1, "another building on the cell");
    city.buildings.erase(city.buildings.begin() + 20);
    expectShown(1, "a bulldozed building");
    city.buildings.erase(city.buildings.begin());
    expectShown(1, "the first building gone");
    city.buildings.pop_back();
    expectShown(1, "the last building gone");
    city.cells[cellIndex(25, 41)].busStop = 1;
    expectShown(1, "a new bus stop");
    city.cells[cellIndex(20, 40)].busStop = 0;
    expectShown(1, "a bus stop gone");
    city.heights[cornerIndex(32, 32)] = 12.0f;
    expectShown(4, "four cells of another height");
    city.buildings[5].kind = KIND_CONDEMNED;
    expectShown(1, "a condemned building");
    std::swap(city.buildings[0], city.buildings[1]);
    expectShown(1, "another order");
    city.buildings[0].x += CHUNK_SIZE;
    expectShown(2, "another block");
}

TEST_F(BuildingBlocks, ANewCityLeavesNothingOfTheOldOne) {
    update();
    city = flatCity();
    EXPECT_EQ(update(), 4);
    EXPECT_EQ(wrongBlock(), -1);
    city = town();
    EXPECT_EQ(update(), 4);
    EXPECT_EQ(wrongBlock(), -1);
}

TEST_F(BuildingBlocks, ADestroyedMeshIsUploadedAnew) {
    update();
    destroyMesh(meshes.buildingBlocks[7]);
    EXPECT_EQ(update(), 1);
    EXPECT_EQ(wrongBlock(), -1);
}

static void editAtRandom(City& city, uint32_t step) {
    uint32_t drawn = 0;
    const auto draw = [&] { return hashCell(step, drawn++, 4242); };
    const uint32_t count = static_cast<uint32_t>(city.buildings.size());
    for (uint32_t edit = draw() % 4 + 1; edit > 0; edit--) {
        const uint32_t at = draw() % (count > 8 ? count - 8 : 1);
        Building& building = city.buildings[at];
        switch (draw() % 8) {
        case 0:
            building.level = static_cast<uint8_t>(draw() % 4);
            break;
        case 1:
            building.progress = static_cast<float>(draw() % 5) * 0.25f;
            break;
        case 2:
            building.kind = static_cast<uint8_t>(draw() % 16);
            break;
        case 3:
            city.buildings.erase(city.buildings.begin() + at);
            return;
        case 4:
            city.cells[draw() % CELL_COUNT].busStop ^= 1;
            break;
        case 5:
            city.heights[draw() % CORNER_COUNT] += 0.5f;
            break;
        case 6: // as a wild save may have it
            building.x = static_cast<int16_t>(draw() % 100 - 2);
            building.y = static_cast<int16_t>(draw() % 100 - 2);
            break;
        default: {
            const int x = static_cast<int>(draw() % GRID_SIZE);
            const int y = static_cast<int>(draw() % GRID_SIZE);
            addBuilding(city, x, y, static_cast<uint8_t>(draw() % KIND_COUNT)).progress = 0.0f;
            return;
        }
        }
    }
}

TEST_F(BuildingBlocks, AfterAnyCourseOfEditsTheBytesAreThoseOfABuildFromNothing) {
    for (uint32_t step = 0; step < 150; step++) {
        editAtRandom(city, step);
        update();
        ASSERT_EQ(wrongBlock(), -1) << "step " << step;
    }
}

TEST_F(BuildingBlocks, AMillionWildRecordsAreDrawnWithoutHarm) {
    city.buildings.resize(1000000);
    for (uint32_t i = 0; i < city.buildings.size(); i++) {
        Building& building = city.buildings[i];
        building.kind = static_cast<uint8_t>(hashCell(i, 1, 0));
        building.level = static_cast<uint8_t>(hashCell(i, 2, 0));
        building.x = static_cast<int16_t>(hashCell(i, 3, 0));
        building.y = static_cast<int16_t>(hashCell(i, 4, 0));
        building.progress = i % 3 == 0 ? 0.5f : 1.0f;
    }
    update();
    EXPECT_EQ(wrongBlock(), -1);
}

TEST(BuildingMesh, TheSameMeshStandsAfterASaveAndALoad) {
    City city;
    generateMap(city, 7);
    for (int i = 0; i < 42; i++) {
        Building& building =
            addBuilding(city, 10 + i * 2, 30, static_cast<uint8_t>(i % KIND_COUNT), 1 + i % 3);
        if (i % 4 == 0) building.progress = 0.3f;
    }
    city.cells[cellIndex(50, 31)].road = ROAD_STREET;
    city.cells[cellIndex(50, 31)].busStop = 1;
    const std::vector<uint8_t> save = encodeCity(city);
    City loaded;
    ASSERT_TRUE(decodeCity(loaded, save.data(), save.size()));
    EXPECT_GT(buildingsOf(city).size(), 10000u);
    EXPECT_TRUE(isSame(buildingsOf(city), buildingsOf(loaded)));
}
