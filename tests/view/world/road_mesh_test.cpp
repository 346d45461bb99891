#include "view/world/road_mesh.h"

#include "sim/city_helpers.h"
#include "sim/map_generation.h"
#include "view/world/terrain.h"

#include <gtest/gtest.h>

#include <limits>

static MeshBuilder roadsOf(const City& city, int overlayMode = OVERLAY_NORMAL) {
    MeshBuilder builder;
    buildRoadMesh(builder, city, overlayMode);
    return builder;
}

static Vec3 colourUnderTraffic(float load) {
    City city = flatCity();
    layRoads(city, 5, 5, 5, 5);
    city.trafficLoad[cellIndex(5, 5)] = load;
    return roadsOf(city, OVERLAY_TRAFFIC)[0].colour;
}

static void expectNear(const Vec3& seen, const Vec3& expected) {
    EXPECT_NEAR(seen.x, expected.x, 1e-6f);
    EXPECT_NEAR(seen.y, expected.y, 1e-6f);
    EXPECT_NEAR(seen.z, expected.z, 1e-6f);
}

TEST(RoadMesh, AMapWithNoRoadsGivesAnEmptyMesh) { EXPECT_TRUE(roadsOf(flatCity()).empty()); }

TEST(RoadMesh, ARoadCellIsOneQuadJustOverTheGround) {
    City city;
    generateMap(city, 3);
    const int stepX[6] = {0, 1, 1, 0, 1, 0};
    const int stepY[6] = {0, 0, 1, 0, 1, 1};
    for (const auto& [x, y] : {std::pair(0, 0), {95, 95}, {95, 0}, {31, 60}}) {
        for (Cell& cell : city.cells) cell.road = ROAD_NONE;
        layRoads(city, x, y, x, y);
        const MeshBuilder builder = roadsOf(city);
        ASSERT_EQ(builder.size(), 6u);
        for (int i = 0; i < 6; i++) {
            const int cornerX = x + stepX[i];
            const int cornerY = y + stepY[i];
            const float height = city.heights[cornerIndex(cornerX, cornerY)];
            EXPECT_EQ(builder[i].position, (Vec3{8.0f * static_cast<float>(cornerX), height + 0.18f,
                                                 8.0f * static_cast<float>(cornerY)}));
            EXPECT_EQ(builder[i].normal, terrainNormal(city, cornerX, cornerY));
            EXPECT_EQ(builder[i].u, static_cast<float>(stepX[i])); // u along x on every road
            EXPECT_EQ(builder[i].v, static_cast<float>(stepY[i]));
            EXPECT_EQ(builder[i].material, 3.0f);
            EXPECT_EQ(builder[i].emissive, 0.0f);
        }
    }
}

TEST(RoadMesh, CellsFollowRowByRow) {
    City city = flatCity();
    layRoads(city, 7, 3, 8, 4);
    layRoads(city, 2, 4, 2, 4);
    const MeshBuilder builder = roadsOf(city);
    const float expectedX[] = {7, 8, 2, 7, 8};
    const float expectedY[] = {3, 3, 4, 4, 4};
    ASSERT_EQ(builder.size(), 5u * 6u);
    for (int i = 0; i < 5; i++) {
        EXPECT_EQ(builder[i * 6].position.x, 8.0f * expectedX[i]);
        EXPECT_EQ(builder[i * 6].position.z, 8.0f * expectedY[i]);
    }
}

TEST(RoadMesh, StreetsAndAvenuesLookTheSame) {
    City city = flatCity();
    layRoads(city, 5, 5, 5, 5, ROAD_STREET);
    const MeshBuilder street = roadsOf(city);
    for (const int type : {int{ROAD_AVENUE}, 255}) {
        city.cells[cellIndex(5, 5)].road = static_cast<uint8_t>(type);
        const MeshBuilder builder = roadsOf(city);
        ASSERT_EQ(builder.size(), street.size());
        for (size_t i = 0; i < street.size(); i++) EXPECT_EQ(builder[i].colour, street[i].colour);
    }
}

TEST(RoadMesh, TheAsphaltIsDarkGreyAndAlittleDifferentFromCellToCell) {
    City city = flatCity();
    layRoads(city, 5, 5, 6, 5);
    const MeshBuilder builder = roadsOf(city);
    for (int i = 0; i < 2; i++) {
        const float k = hash01(5 + static_cast<uint32_t>(i), 5, 3) * 0.08f + 0.92f;
        for (int v = 0; v < 6; v++) {
            EXPECT_EQ(builder[i * 6 + v].colour, (Vec3{0.27f * k, 0.27f * k, 0.29f * k}));
        }
    }
    EXPECT_FALSE(builder[0].colour == builder[6].colour);
}

TEST(RoadMesh, RoadsDimUnderADataOverlay) {
    City city = flatCity();
    layRoads(city, 5, 5, 5, 5);
    const float k = hash01(5, 5, 3) * 0.08f + 0.55f;
    for (const int overlay : {OVERLAY_POWER, OVERLAY_WATER, OVERLAY_POLLUTION, OVERLAY_HAPPY})
        EXPECT_EQ(roadsOf(city, overlay)[0].colour, (Vec3{0.27f * k, 0.27f * k, 0.29f * k}));
}

TEST(RoadMesh, TrafficColoursRunFromGreenOverYellowToRed) {
    EXPECT_EQ(colourUnderTraffic(0.0f), (Vec3{0.25f, 0.78f, 0.36f}));
    expectNear(colourUnderTraffic(0.25f), {0.60f, 0.79f, 0.28f});
    EXPECT_EQ(colourUnderTraffic(0.5f), (Vec3{0.95f, 0.80f, 0.20f}));
    expectNear(colourUnderTraffic(0.75f), {0.925f, 0.49f, 0.17f});
    expectNear(colourUnderTraffic(1.0f), {0.90f, 0.18f, 0.14f});
}

TEST(RoadMesh, TrafficOutsideItsRangeTakesTheColourOfTheNearestEnd) {
    constexpr float INFINITE = std::numeric_limits<float>::infinity();
    EXPECT_EQ(colourUnderTraffic(-0.001f), (Vec3{0.25f, 0.78f, 0.36f}));
    EXPECT_EQ(colourUnderTraffic(-INFINITE), (Vec3{0.25f, 0.78f, 0.36f}));
    EXPECT_EQ(colourUnderTraffic(1.001f), (Vec3{0.90f, 0.18f, 0.14f}));
    EXPECT_EQ(colourUnderTraffic(INFINITE), (Vec3{0.90f, 0.18f, 0.14f}));
    EXPECT_EQ(colourUnderTraffic(std::numeric_limits<float>::quiet_NaN()), (Vec3{0.25f, 0.78f, 0.36f}));
}

TEST(RoadMesh, AMapFullOfRoadsIsOneQuadACell) {
    City city = flatCity();
    layRoads(city, 0, 0, 95, 95);
    const MeshBuilder roads = roadsOf(city);
    EXPECT_EQ(roads.size(), 9216u * 6u);
    EXPECT_EQ(roads.capacity(), roads.size()) << "room for them is made once";
}
