#include "view/street/street_life_mesh.h"

#include "allocation_count.h"
#include "sim/city_helpers.h"
#include "sim/map_generation.h"
#include "view/gl/fake_gl.h"

#include <gtest/gtest.h>

#include <algorithm>

constexpr size_t BOX = 30; // vertices

// Drives from cell (10, 10) in the direction of `way`.
static Vehicle vehicleTowards(const CellStep& way) {
    Vehicle vehicle;
    vehicle.fromX = 10;
    vehicle.fromY = 10;
    vehicle.toX = static_cast<int16_t>(10 + way.x);
    vehicle.toY = static_cast<int16_t>(10 + way.y);
    return vehicle;
}

static MeshBuilder meshOf(const City& city, const std::vector<Vehicle>& vehicles) {
    StreetLife life;
    life.vehicles = vehicles;
    MeshBuilder builder;
    buildStreetLifeMesh(builder, city, life);
    return builder;
}

static MeshBuilder meshOf(const Vehicle& vehicle) { return meshOf(flatCity(), {vehicle}); }

struct Extent {
    Vec3 min = {1e9f, 1e9f, 1e9f};
    Vec3 max = {-1e9f, -1e9f, -1e9f};
};

static Extent extentOf(const Vertex* vertices, size_t count = BOX) {
    Extent extent;
    for (size_t i = 0; i < count; i++) {
        const Vec3& p = vertices[i].position;
        extent.min = {std::min(extent.min.x, p.x), std::min(extent.min.y, p.y), std::min(extent.min.z, p.z)};
        extent.max = {std::max(extent.max.x, p.x), std::max(extent.max.y, p.y), std::max(extent.max.z, p.z)};
    }
    return extent;
}

static void expectNear(const Vec3& seen, const Vec3& expected, float tolerance = 1e-4f) {
    EXPECT_NEAR(seen.x, expected.x, tolerance);
    EXPECT_NEAR(seen.y, expected.y, tolerance);
    EXPECT_NEAR(seen.z, expected.z, tolerance);
}

struct BoxRow {
    float along; // the middle of the box, from that of the vehicle
    float side;
    float halfLength;
    float halfWidth;
    float bottom;
    float top;
    Vec3 colour;
    int material;
    float emissive;
};

constexpr Vec3 WHITE_LIGHT = {1.0f, 0.96f, 0.78f};
constexpr Vec3 RED_LIGHT = {0.95f, 0.10f, 0.08f};

static const std::vector<BoxRow> BUS = {
    {0, 0, 2.4f, 1.25f, 0.85f, 3.05f, {0.96f, 0.74f, 0.16f}, MATERIAL_PLAIN, 0.0f},
    {0, 0, 2.25f, 1.28f, 1.45f, 2.45f, {0.55f, 0.70f, 0.82f}, MATERIAL_GLASS, 0.0f},
    {0, 0, 2.3f, 1.2f, 3.05f, 3.18f, {0.90f, 0.90f, 0.94f}, MATERIAL_PLAIN, 0.0f},
    {2.42f, 0.8f, 0.08f, 0.28f, 0.58f, 0.82f, WHITE_LIGHT, MATERIAL_PLAIN, 1.0f},
    {2.42f, -0.8f, 0.08f, 0.28f, 0.58f, 0.82f, WHITE_LIGHT, MATERIAL_PLAIN, 1.0f},
    {-2.42f, 0.8f, 0.08f, 0.28f, 0.58f, 0.82f, RED_LIGHT, MATERIAL_PLAIN, 0.8f},
    {-2.42f, -0.8f, 0.08f, 0.28f, 0.58f, 0.82f, RED_LIGHT, MATERIAL_PLAIN, 0.8f}};

static const std::vector<BoxRow> RED_CAR = {
    {0, 0, 1.35f, 0.62f, 0.25f, 0.90f, {0.85f, 0.15f, 0.13f}, MATERIAL_PLAIN, 0.0f},
    {0, 0, 0.74f, 0.56f, 0.90f, 1.38f, {0.20f, 0.24f, 0.30f}, MATERIAL_GLASS, 0.0f},
    {1.36f, 0.42f, 0.08f, 0.28f, 0.40f, 0.64f, WHITE_LIGHT, MATERIAL_PLAIN, 1.0f},
    {1.36f, -0.42f, 0.08f, 0.28f, 0.40f, 0.64f, WHITE_LIGHT, MATERIAL_PLAIN, 1.0f},
    {-1.36f, 0.42f, 0.08f, 0.28f, 0.40f, 0.64f, RED_LIGHT, MATERIAL_PLAIN, 0.8f},
    {-1.36f, -0.42f, 0.08f, 0.28f, 0.40f, 0.64f, RED_LIGHT, MATERIAL_PLAIN, 0.8f}};

// The vehicle stands at the centre of cell (10, 10), in the lane at 1.9 to its right, on flat ground.
static void expectBoxes(const MeshBuilder& builder, const std::vector<BoxRow>& rows, const CellStep& way) {
    ASSERT_EQ(builder.size(), rows.size() * BOX);
    const Vec3 ahead = {static_cast<float>(way.x), 0.0f, static_cast<float>(way.y)};
    const Vec3 aside = {-ahead.z, 0.0f, ahead.x};
    const Vec3 middle = Vec3{84.0f, 10.2f, 84.0f} + aside * 1.9f;
    for (size_t i = 0; i < rows.size(); i++) {
        SCOPED_TRACE(i);
        const BoxRow& row = rows[i];
        const Vec3 centre = middle + ahead * row.along + aside * row.side;
        const Vec3 reach = ahead * row.halfLength + aside * row.halfWidth;
        const Vec3 half = {std::abs(reach.x), 0.0f, std::abs(reach.z)};
        const Extent extent = extentOf(&builder[i * BOX]);
        expectNear(extent.min, centre - half + Vec3{0.0f, row.bottom, 0.0f});
        expectNear(extent.max, centre + half + Vec3{0.0f, row.top, 0.0f});
        for (size_t v = i * BOX; v < (i + 1) * BOX; v++) {
            EXPECT_EQ(builder[v].colour, row.colour);
            EXPECT_EQ(builder[v].material, static_cast<float>(row.material));
            EXPECT_EQ(builder[v].emissive, row.emissive);
        }
    }
}

TEST(StreetLifeMesh, ABusIsABodyWithWindowsARoofAndFourLamps) {
    for (const CellStep& way : NEIGHBOURS) {
        Vehicle bus = vehicleTowards(way);
        bus.isBus = 1;
        expectBoxes(meshOf(bus), BUS, way);
    }
}

TEST(StreetLifeMesh, ACarIsABodyWithACabinAndFourLamps) {
    for (const CellStep& way : NEIGHBOURS) expectBoxes(meshOf(vehicleTowards(way)), RED_CAR, way);
}

TEST(StreetLifeMesh, ACarHasOneOfSevenColours) {
    const Vec3 colours[7] = {{0.85f, 0.15f, 0.13f}, {0.92f, 0.92f, 0.94f}, {0.12f, 0.14f, 0.18f},
                             {0.20f, 0.42f, 0.78f}, {0.55f, 0.56f, 0.60f}, {0.95f, 0.78f, 0.15f},
                             {0.25f, 0.62f, 0.35f}};
    Vehicle car = vehicleTowards({1, 0});
    for (int i = 0; i < 7; i++) {
        car.colourIndex = static_cast<uint8_t>(i);
        const MeshBuilder builder = meshOf(car);
        EXPECT_EQ(builder[0].colour, colours[i]);
        EXPECT_EQ(builder[BOX].colour, (Vec3{0.20f, 0.24f, 0.30f}));
    }
    car.colourIndex = 255; // no such colour: any will do
    EXPECT_EQ(meshOf(car).size(), RED_CAR.size() * BOX);
}

// A face is flat, looks away from the middle of its box, and covers the whole side.
TEST(StreetLifeMesh, EveryBoxHasBothEndsBothSidesAndATopButNoFloor) {
    for (const CellStep& way : NEIGHBOURS) {
        const MeshBuilder builder = meshOf(vehicleTowards(way));
        for (size_t box = 0; box < builder.size(); box += BOX) {
            const Extent extent = extentOf(&builder[box]);
            const Vec3 centre = (extent.min + extent.max) * 0.5f;
            const Vec3 size = extent.max - extent.min;
            Vec3 normalSum;
            for (size_t face = box; face < box + BOX; face += 6) {
                const Vec3 normal = builder[face].normal;
                normalSum = normalSum + normal;
                EXPECT_FLOAT_EQ(length(normal), 1.0f);
                float area = 0.0f;
                for (size_t v = face; v < face + 6; v++) {
                    EXPECT_EQ(builder[v].normal, normal);
                    const float reach = dot(builder[v].position - centre, normal);
                    EXPECT_NEAR(reach, std::abs(dot(size, normal)) * 0.5f, 1e-4f);
                }
                for (size_t v = face; v < face + 6; v += 3)
                    area += length(cross(builder[v + 1].position - builder[v].position,
                                         builder[v + 2].position - builder[v].position)) /
                            2.0f;
                const float volume = size.x * size.y * size.z;
                EXPECT_NEAR(area, volume / std::abs(dot(size, normal)), 1e-3f);
            }
            expectNear(normalSum, {0.0f, 1.0f, 0.0f}, 1e-6f);
        }
    }
}

TEST(StreetLifeMesh, AVehicleGoesStraightFromCentreToCentreInItsLane) {
    for (const int lane : {1, -1})
        for (const float t : {0.0f, 0.25f, 0.9f}) {
            Vehicle car = vehicleTowards({0, 1});
            car.t = t;
            car.lane = static_cast<int8_t>(lane);
            const Extent body = extentOf(meshOf(car).data());
            const Vec3 middle = (body.min + body.max) * 0.5f;
            EXPECT_NEAR(middle.x, 84.0f - 1.9f * static_cast<float>(lane), 1e-4f);
            EXPECT_NEAR(middle.z, 84.0f + 8.0f * t, 1e-4f);
        }
}

TEST(StreetLifeMesh, AVehicleRidesJustOverTheGroundBelowItsMiddle) {
    City city;
    generateMap(city, 7);
    for (int i = 0; i < GRID_SIZE - 1; i++) {
        Vehicle car;
        car.fromX = static_cast<int16_t>(i);
        car.fromY = static_cast<int16_t>(GRID_SIZE - 1 - i);
        car.toX = static_cast<int16_t>(i + 1);
        car.toY = car.fromY;
        car.t = 0.3f;
        const Extent body = extentOf(meshOf(city, {car}).data());
        const Vec3 middle = (body.min + body.max) * 0.5f;
        EXPECT_NEAR(body.min.y, heightAt(city, middle.x, middle.z) + 0.2f + 0.25f, 1e-3f);
    }
}

TEST(StreetLifeMesh, AVehicleThatGoesNowhereLooksAlongX) {
    expectBoxes(meshOf(vehicleTowards({0, 0})), RED_CAR, {1, 0});
}

TEST(StreetLifeMesh, VehiclesFollowInTheirOrderWithoutTheDead) {
    Vehicle bus = vehicleTowards({1, 0});
    bus.isBus = 1;
    Vehicle dead = bus;
    dead.dead = 1;
    const Vehicle car = vehicleTowards({1, 0});
    const MeshBuilder builder = meshOf(flatCity(), {car, dead, bus});
    ASSERT_EQ(builder.size(), (RED_CAR.size() + BUS.size()) * BOX);
    EXPECT_EQ(builder[0].colour, RED_CAR[0].colour);
    EXPECT_EQ(builder[RED_CAR.size() * BOX].colour, BUS[0].colour);
}

TEST(StreetLifeMesh, VehiclesFarOffTheMapAreDrawnWithoutHarm) {
    Vehicle car = vehicleTowards({1, 0});
    car.fromX = -32768;
    car.toY = 32767;
    for (const Vertex& vertex : meshOf(car)) EXPECT_TRUE(std::isfinite(length(vertex.position)));
}

TEST(StreetLifeMesh, EmptyStreetsGiveAnEmptyMesh) { EXPECT_TRUE(meshOf(flatCity(), {}).empty()); }

TEST(StreetLifeMesh, IsUploadedEachFrameIntoTheSameStorage) {
    FakeGl fake;
    const City city = flatCity();
    WorldMeshes meshes;
    StreetLife life;
    life.vehicles.assign(3, vehicleTowards({1, 0}));
    buildStreetLifeMesh(meshes, city, life);
    EXPECT_EQ(meshes.streetLifeMesh.vertexCount, static_cast<int>(3 * RED_CAR.size() * BOX));
    life.vehicles.pop_back();
    fake.calls.clear();
    buildStreetLifeMesh(meshes, city, life);
    EXPECT_EQ(callsOf(fake, "BufferSubData").size(), 1u);
    EXPECT_TRUE(callsOf(fake, "BufferData").empty());
    EXPECT_EQ(meshes.streetLifeMesh.vertexCount, static_cast<int>(2 * RED_CAR.size() * BOX));
}

TEST(StreetLifeMesh, ASteadyFrameTakesNothingFromTheHeap) {
    FakeGl fake;
    fake.recording = false;
    const City city = flatCity();
    WorldMeshes meshes;
    StreetLife life;
    life.vehicles.assign(VEHICLE_LIMIT, vehicleTowards({1, 0}));
    buildStreetLifeMesh(meshes, city, life);
    const uint64_t before = allocationCount();
    for (int frame = 0; frame < 10; frame++) buildStreetLifeMesh(meshes, city, life);
    EXPECT_EQ(allocationCount(), before);
}
