// Where chunks of the ground meet, each draws the common corners in its own mesh. They must look the same in
// all of them, or a ruler-straight edge shows on the land.
#include "sim/build_tools.h"
#include "sim/city_helpers.h"
#include "view/gl/graphics_memory.h"
#include "view/world/rebuild.h"

#include <gtest/gtest.h>

#include <functional>

struct GroundSeams : testing::Test {
    GraphicsMemory memory;
    WorldMeshes meshes;
    City city = flatCity();

    GroundSeams() {
        city.money = 1e9;
        updateWorldMeshes(meshes, city);
    }

    // "x, y" of the first corner that two chunks draw in different ways, empty when there is none.
    std::string findSeam() {
        std::vector<const Vertex*> corners(CORNER_COUNT);
        for (const Mesh& chunk : meshes.terrainChunks)
            for (const Vertex& vertex : memory.buffers[chunk.vertexBuffer]) {
                const int x = static_cast<int>(vertex.position.x / CELL_WIDTH);
                const int y = static_cast<int>(vertex.position.z / CELL_WIDTH);
                const Vertex*& first = corners[cornerIndex(x, y)];
                if (!first) first = &vertex;
                if (vertex.colour != first->colour || vertex.normal != first->normal)
                    return std::to_string(x) + ", " + std::to_string(y);
            }
        return {};
    }

    // A frame each on the corners of every chunk and the middles of its sides.
    void expectNoSeamAfter(const std::function<bool(int x, int y)>& useTool) {
        constexpr int PLACES[][2] = {{0, 0}, {7, 0}, {15, 0}, {0, 7}, {15, 7}, {0, 15}, {7, 15}, {15, 15}};
        for (int chunk = 0; chunk < CHUNK_COUNT; chunk++)
            for (const auto& place : PLACES) {
                const int x = chunk % CHUNK_ROW * CHUNK_SIZE + place[0];
                const int y = chunk / CHUNK_ROW * CHUNK_SIZE + place[1];
                ASSERT_TRUE(useTool(x, y)) << x << ", " << y;
                updateWorldMeshes(meshes, city);
                ASSERT_EQ(findSeam(), "") << "after " << x << ", " << y;
            }
    }
};

TEST_F(GroundSeams, NoneAfterZoningAndBulldozingZones) {
    for (const int zone : {ZONE_RESIDENTIAL, ZONE_COMMERCIAL, ZONE_OFFICES, ZONE_INDUSTRIAL})
        expectNoSeamAfter([&](int x, int y) { return setZone(city, x, y, zone); });
    expectNoSeamAfter([&](int x, int y) { return bulldoze(city, x, y); });
}

TEST_F(GroundSeams, NoneAfterPaintingAndClearingDistricts) {
    expectNoSeamAfter([&](int x, int y) { return setDistrict(city, x, y, 3); });
    expectNoSeamAfter([&](int x, int y) { return setDistrict(city, x, y, 0); });
}

TEST_F(GroundSeams, NoneAfterStreetsOverZonesBusStopsAndTheirRemoval) {
    for (int y = 0; y < GRID_SIZE; y++)
        for (int x = 0; x < GRID_SIZE; x++) setZone(city, x, y, ZONE_INDUSTRIAL);
    updateWorldMeshes(meshes, city);
    expectNoSeamAfter([&](int x, int y) { return placeRoad(city, x, y, ROAD_STREET); });
    expectNoSeamAfter([&](int x, int y) { return placeRoad(city, x, y, ROAD_AVENUE); });
    expectNoSeamAfter([&](int x, int y) { return placeBusStop(city, x, y); });
    expectNoSeamAfter([&](int x, int y) { return bulldoze(city, x, y); });
    expectNoSeamAfter([&](int x, int y) { return bulldoze(city, x, y); });
}

TEST_F(GroundSeams, NoneAfterBuildingsAndTheirRemoval) {
    expectNoSeamAfter([&](int x, int y) { return placeBuilding(city, x, y, KIND_PARK); });
    expectNoSeamAfter([&](int x, int y) { return bulldoze(city, x, y); });
}
