#include "view/world/terrain.h"

#include "sim/calendar.h"
#include "sim/hash.h"
#include "sim/map_generation.h"
#include "view/gl/fake_gl.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <limits>

constexpr int SPRING_DAY = 0; // of City::calendarDay
constexpr int SUMMER_DAY = 100;
constexpr int AUTUMN_DAY = 200;
constexpr int WINTER_DAY = 300;

// --- The plain form, which works out every corner of every cell afresh

static Vec3 towards(const Vec3& from, const Vec3& to, float amount) { return from + (to - from) * amount; }

static Vec3 plainRamp(float f, const Vec3& low, const Vec3& high) {
    if (f < 0.0f) return low;
    if (f > 1.0f) return high;
    return towards(low, high, f);
}

static Vec3 plainGround(int terrain, Season season) {
    const Vec3 grass[4] = {
        {0.46f, 0.70f, 0.30f}, {0.38f, 0.58f, 0.28f}, {0.62f, 0.50f, 0.22f}, {0.80f, 0.84f, 0.84f}};
    const Vec3 woodland[4] = {
        {0.27f, 0.48f, 0.22f}, {0.23f, 0.40f, 0.19f}, {0.48f, 0.38f, 0.16f}, {0.62f, 0.66f, 0.66f}};
    if (terrain == 1) return woodland[season];
    if (terrain == 2) return {0.47f, 0.45f, 0.43f};
    if (terrain == 3) return {0.17f, 0.28f, 0.32f};
    if (terrain == 4) return {0.80f, 0.74f, 0.52f};
    return grass[season];
}

static Vec3 plainCellColour(const City& city, int overlay, int x, int y) {
    const Vec3 zones[5] = {
        {}, {0.46f, 0.74f, 0.38f}, {0.42f, 0.56f, 0.92f}, {0.52f, 0.72f, 0.84f}, {0.88f, 0.74f, 0.30f}};
    const Vec3 districts[9] = {{},
                               {0.95f, 0.45f, 0.45f},
                               {0.45f, 0.70f, 0.95f},
                               {0.95f, 0.80f, 0.35f},
                               {0.60f, 0.90f, 0.55f},
                               {0.80f, 0.55f, 0.95f},
                               {0.40f, 0.85f, 0.85f},
                               {0.95f, 0.60f, 0.80f},
                               {0.70f, 0.70f, 0.45f}};
    const int i = cellIndex(x, y);
    const Cell& cell = city.cells[i];
    Vec3 colour = plainGround(cell.terrain, season(city));
    const float j = (hash01(x, y, 11) - 0.5f) * 0.07f;
    colour = {colour.x + j, colour.y + j, colour.z + j * 0.5f};
    switch (overlay) {
    case OVERLAY_TRAFFIC:
        return towards(colour, {0.20f, 0.22f, 0.24f}, 0.55f);
    case OVERLAY_POWER:
        return plainRamp(city.powerField[i], {0.15f, 0.16f, 0.18f}, {0.98f, 0.84f, 0.22f});
    case OVERLAY_WATER:
        return plainRamp(city.waterField[i], {0.15f, 0.16f, 0.18f}, {0.20f, 0.62f, 1.00f});
    case OVERLAY_POLLUTION:
        return plainRamp(city.pollution[i] * 1.5f, {0.50f, 0.66f, 0.40f}, {0.36f, 0.22f, 0.10f});
    case OVERLAY_HAPPY:
        return plainRamp(city.landValue[i], {0.80f, 0.27f, 0.22f}, {0.26f, 0.74f, 0.38f});
    default:
        break;
    }
    if (cell.zone >= 1 && cell.zone <= 4) colour = towards(colour, zones[cell.zone], 0.38f);
    if (cell.district >= 1 && cell.district <= 8) colour = towards(colour, districts[cell.district], 0.4f);
    return colour;
}

static Vec3 plainCornerColour(const City& city, int overlay, int cornerX, int cornerY) {
    Vec3 sum;
    float count = 0.0f;
    for (int y = cornerY - 1; y <= cornerY; y++)
        for (int x = cornerX - 1; x <= cornerX; x++)
            if (inMap(x, y)) {
                sum = sum + plainCellColour(city, overlay, x, y);
                count += 1.0f;
            }
    return {sum.x / count, sum.y / count, sum.z / count};
}

static Vec3 plainNormal(const City& city, int x, int y) {
    const int x0 = x > 0 ? x - 1 : 0;
    const int x1 = x < 96 ? x + 1 : 96;
    const int y0 = y > 0 ? y - 1 : 0;
    const int y1 = y < 96 ? y + 1 : 96;
    const float dx =
        (city.heights[y * 97 + x1] - city.heights[y * 97 + x0]) / (static_cast<float>(x1 - x0) * 8.0f);
    const float dz =
        (city.heights[y1 * 97 + x] - city.heights[y0 * 97 + x]) / (static_cast<float>(y1 - y0) * 8.0f);
    return normalised({-dx, 1.0f, -dz});
}

static MeshBuilder plainChunk(const City& city, int overlay, int chunk) {
    const int order[6] = {0, 1, 2, 0, 2, 3};
    const int stepX[4] = {0, 1, 1, 0};
    const int stepY[4] = {0, 0, 1, 1};
    MeshBuilder builder;
    for (int y = chunk / 6 * 16; y < chunk / 6 * 16 + 16; y++)
        for (int x = chunk % 6 * 16; x < chunk % 6 * 16 + 16; x++)
            for (const int corner : order) {
                const int cx = x + stepX[corner];
                const int cy = y + stepY[corner];
                const Vec3 position = {8.0f * static_cast<float>(cx), city.heights[cy * 97 + cx],
                                       8.0f * static_cast<float>(cy)};
                addVertex(builder, position, plainNormal(city, cx, cy),
                          plainCornerColour(city, overlay, cx, cy), 0.0f, 0,
                          static_cast<float>(stepX[corner]), static_cast<float>(stepY[corner]));
            }
    return builder;
}

// ---

static City generated(uint32_t seed) {
    City city;
    generateMap(city, seed);
    return city;
}

// Land on which every cell, field and height has a value of its own; bytes take all values from 0 to 255.
static City motleyCity(uint32_t seed) {
    City city = generated(seed);
    for (int i = 0; i < CELL_COUNT; i++) {
        const uint32_t chance = hashCell(static_cast<uint32_t>(i), seed, 1);
        city.cells[i].terrain = static_cast<uint8_t>(chance & 1 ? chance >> 1 : (chance >> 1) % 5);
        city.cells[i].zone = static_cast<uint8_t>(chance & 2 ? chance >> 9 : (chance >> 9) % 5);
        city.cells[i].district = static_cast<uint8_t>(chance & 4 ? chance >> 17 : (chance >> 17) % 9);
        for (Grid City::*field : {&City::powerField, &City::waterField, &City::pollution, &City::landValue})
            (city.*field)[i] = hashUnit(static_cast<uint32_t>(i), chance, 2) * 2.0f - 0.5f;
    }
    return city;
}

static MeshBuilder chunkOf(const City& city, int overlay, int chunk) {
    MeshBuilder builder;
    buildTerrainChunk(builder, city, overlay, chunk);
    return builder;
}

// The colour that the ground shows at a corner, by one of the cells that touch it.
static Vec3 colourAtCorner(const City& city, int overlay, int cornerX, int cornerY) {
    const int x = std::min(cornerX, 95);
    const int y = std::min(cornerY, 95);
    const Vec3 place = {8.0f * static_cast<float>(cornerX), city.heights[cornerIndex(cornerX, cornerY)],
                        8.0f * static_cast<float>(cornerY)};
    for (const Vertex& vertex : chunkOf(city, overlay, y / 16 * 6 + x / 16))
        if (vertex.position == place) return vertex.colour;
    ADD_FAILURE() << "no vertex at corner " << cornerX << ", " << cornerY;
    return {};
}

static void expectColour(const Vec3& seen, const Vec3& expected) {
    EXPECT_NEAR(seen.x, expected.x, 1e-6f);
    EXPECT_NEAR(seen.y, expected.y, 1e-6f);
    EXPECT_NEAR(seen.z, expected.z, 1e-6f);
}

TEST(Terrain, EveryChunkIsThePlainFormToTheBit) {
    for (const int day : {SPRING_DAY, SUMMER_DAY, AUTUMN_DAY, WINTER_DAY}) {
        City city = motleyCity(static_cast<uint32_t>(day));
        city.calendarDay = day;
        for (int overlay = 0; overlay < OVERLAY_COUNT; overlay++)
            for (int chunk = 0; chunk < CHUNK_COUNT; chunk++) {
                const MeshBuilder seen = chunkOf(city, overlay, chunk);
                const MeshBuilder plain = plainChunk(city, overlay, chunk);
                ASSERT_EQ(seen.size(), plain.size());
                ASSERT_EQ(std::memcmp(seen.data(), plain.data(), seen.size() * sizeof(Vertex)), 0)
                    << "day " << day << " overlay " << overlay << " chunk " << chunk;
            }
    }
}

TEST(Terrain, AChunkIs1536Vertices) {
    MeshBuilder builder = chunkOf(generated(0), OVERLAY_NORMAL, 0);
    EXPECT_EQ(builder.size(), 1536u);
    EXPECT_EQ(builder.size() * sizeof(Vertex), 86016u);
    EXPECT_EQ(builder.capacity(), 1536u);
}

// What the last buffer was given.
static MeshBuilder uploaded;

static void keepUpload(GLenum, GLsizeiptr size, const void* data, GLenum) {
    uploaded.resize(static_cast<size_t>(size) / sizeof(Vertex));
    std::memcpy(uploaded.data(), data, static_cast<size_t>(size));
}

TEST(Terrain, AChunkIsUploadedToItsOwnMeshWithTheOverlayOnShow) {
    FakeGl fake;
    gl.BufferData = keepUpload;
    const City city = motleyCity(9);
    WorldMeshes meshes;
    meshes.overlayMode = OVERLAY_WATER;
    buildTerrainChunk(meshes, city, 22);
    for (int chunk = 0; chunk < CHUNK_COUNT; chunk++)
        EXPECT_EQ(meshes.terrainChunks[chunk].vertexCount, chunk == 22 ? 1536 : 0);
    const MeshBuilder expected = chunkOf(city, OVERLAY_WATER, 22);
    ASSERT_EQ(uploaded.size(), expected.size());
    EXPECT_EQ(std::memcmp(uploaded.data(), expected.data(), uploaded.size() * sizeof(Vertex)), 0);
}

TEST(Terrain, ABuilderInUseIsAppendedTo) {
    const City city = generated(0);
    MeshBuilder builder = chunkOf(city, OVERLAY_NORMAL, 3);
    buildTerrainChunk(builder, city, OVERLAY_NORMAL, 4);
    ASSERT_EQ(builder.size(), 3072u);
    const MeshBuilder second = chunkOf(city, OVERLAY_NORMAL, 4);
    EXPECT_EQ(std::memcmp(&builder[1536], second.data(), 1536 * sizeof(Vertex)), 0);
}

TEST(Terrain, Chunk7IsTheSecondOfTheSecondRow) {
    const MeshBuilder builder = chunkOf(generated(0), OVERLAY_NORMAL, 7);
    EXPECT_EQ(builder.front().position.x, 128.0f);
    EXPECT_EQ(builder.front().position.z, 128.0f);
    EXPECT_EQ(builder[1535 - 1].position.x, 256.0f);
    EXPECT_EQ(builder[1535 - 1].position.z, 256.0f);
}

TEST(Terrain, NeighbouringChunksShareTheirBorderByValue) {
    const City city = motleyCity(3);
    for (const int overlay : {OVERLAY_NORMAL, OVERLAY_POLLUTION}) {
        const MeshBuilder west = chunkOf(city, overlay, 14);
        const MeshBuilder east = chunkOf(city, overlay, 15);
        int shared = 0;
        for (const Vertex& a : west)
            for (const Vertex& b : east) {
                if (a.position.x != b.position.x || a.position.z != b.position.z) continue;
                ASSERT_EQ(a.position.y, b.position.y);
                ASSERT_EQ(a.normal, b.normal);
                ASSERT_EQ(a.colour, b.colour);
                shared++;
            }
        EXPECT_GT(shared, 17);
    }
}

TEST(Terrain, ACornerInsideTheMapIsTheMeanOfFourCells) {
    City city;
    city.landValue[cellIndex(40, 50)] = 1.0f;
    expectColour(colourAtCorner(city, OVERLAY_HAPPY, 40, 50),
                 towards({0.80f, 0.27f, 0.22f}, {0.26f, 0.74f, 0.38f}, 0.25f));
    expectColour(colourAtCorner(city, OVERLAY_HAPPY, 41, 51),
                 towards({0.80f, 0.27f, 0.22f}, {0.26f, 0.74f, 0.38f}, 0.25f));
    expectColour(colourAtCorner(city, OVERLAY_HAPPY, 42, 51), {0.80f, 0.27f, 0.22f});
}

TEST(Terrain, ACornerOnTheEdgeOfTheMapIsTheMeanOfOneOrTwoCells) {
    City city;
    city.landValue[cellIndex(95, 95)] = 1.0f;
    city.landValue[cellIndex(0, 30)] = 1.0f;
    expectColour(colourAtCorner(city, OVERLAY_HAPPY, 96, 96), {0.26f, 0.74f, 0.38f});
    const Vec3 half = towards({0.80f, 0.27f, 0.22f}, {0.26f, 0.74f, 0.38f}, 0.5f);
    expectColour(colourAtCorner(city, OVERLAY_HAPPY, 96, 95), half);
    expectColour(colourAtCorner(city, OVERLAY_HAPPY, 95, 96), half);
    expectColour(colourAtCorner(city, OVERLAY_HAPPY, 0, 31), half);
}

TEST(Terrain, NoTwoNeighboursAreEqual) {
    const City city;
    const Vec3 one = plainCellColour(city, OVERLAY_NORMAL, 10, 10);
    const Vec3 colours[2] = {colourAtCorner(city, OVERLAY_NORMAL, 0, 0),
                             colourAtCorner(city, OVERLAY_NORMAL, 96, 0)};
    EXPECT_FALSE(colours[0] == colours[1]);
    EXPECT_LT(std::abs(one.x - 0.46f), 0.036f);
}

TEST(Terrain, PollutionIsScaledBeforeItIsHeld) {
    City city;
    std::fill(city.pollution.begin(), city.pollution.end(), 0.7f);
    EXPECT_EQ(colourAtCorner(city, OVERLAY_POLLUTION, 20, 20), (Vec3{0.36f, 0.22f, 0.10f}));
    std::fill(city.pollution.begin(), city.pollution.end(), 0.5f);
    expectColour(colourAtCorner(city, OVERLAY_POLLUTION, 20, 20),
                 towards({0.50f, 0.66f, 0.40f}, {0.36f, 0.22f, 0.10f}, 0.75f));
}

TEST(Terrain, RampsHoldTheirEndColours) {
    City city;
    const float above = 7.0f;
    const float below = -7.0f;
    std::fill(city.powerField.begin(), city.powerField.end(), above);
    std::fill(city.waterField.begin(), city.waterField.end(), below);
    EXPECT_EQ(colourAtCorner(city, OVERLAY_POWER, 5, 5), (Vec3{0.98f, 0.84f, 0.22f}));
    EXPECT_EQ(colourAtCorner(city, OVERLAY_WATER, 5, 5), (Vec3{0.15f, 0.16f, 0.18f}));
}

TEST(Terrain, OverlaysSkipTheTintsOfZonesAndDistricts) {
    City plain = generated(0);
    City painted = plain;
    for (Cell& cell : painted.cells) {
        cell.zone = ZONE_COMMERCIAL;
        cell.district = 5;
    }
    for (int overlay = 0; overlay < OVERLAY_COUNT; overlay++) {
        const MeshBuilder a = chunkOf(plain, overlay, 20);
        const MeshBuilder b = chunkOf(painted, overlay, 20);
        EXPECT_EQ(std::memcmp(a.data(), b.data(), a.size() * sizeof(Vertex)) == 0, overlay != OVERLAY_NORMAL)
            << overlay;
    }
}

TEST(Terrain, TheDistrictTintComesOverTheZoneTint) {
    City city;
    for (Cell& cell : city.cells) cell.terrain = TERRAIN_ROCK;
    const Vec3 bare = colourAtCorner(city, OVERLAY_NORMAL, 8, 8);
    for (Cell& cell : city.cells) cell.zone = ZONE_INDUSTRIAL;
    const Vec3 zoned = towards(bare, {0.88f, 0.74f, 0.30f}, 0.38f);
    expectColour(colourAtCorner(city, OVERLAY_NORMAL, 8, 8), zoned);
    for (Cell& cell : city.cells) cell.district = 3;
    expectColour(colourAtCorner(city, OVERLAY_NORMAL, 8, 8), towards(zoned, {0.95f, 0.80f, 0.35f}, 0.4f));
}

TEST(Terrain, ValuesThatDoNotExistCountAsGrassAndNoTint) {
    City city;
    const MeshBuilder grass = chunkOf(city, OVERLAY_NORMAL, 0);
    for (Cell& cell : city.cells) {
        cell.terrain = 5;
        cell.zone = 5;
        cell.district = 9;
    }
    MeshBuilder odd = chunkOf(city, OVERLAY_NORMAL, 0);
    EXPECT_EQ(std::memcmp(grass.data(), odd.data(), grass.size() * sizeof(Vertex)), 0);
    for (Cell& cell : city.cells) cell.terrain = cell.zone = cell.district = 255;
    odd = chunkOf(city, OVERLAY_NORMAL, 0);
    EXPECT_EQ(std::memcmp(grass.data(), odd.data(), grass.size() * sizeof(Vertex)), 0);
    odd = chunkOf(city, 200, 0);
    EXPECT_EQ(std::memcmp(grass.data(), odd.data(), grass.size() * sizeof(Vertex)), 0);
}

TEST(Terrain, AFieldThatIsNoNumberShowsTheLowColour) {
    City city;
    const float nan = std::numeric_limits<float>::quiet_NaN();
    std::fill(city.landValue.begin(), city.landValue.end(), nan);
    EXPECT_EQ(colourAtCorner(city, OVERLAY_HAPPY, 5, 5), (Vec3{0.80f, 0.27f, 0.22f}));
}

TEST(Terrain, GroundColoursTurnWithTheSeasons) {
    City city;
    const Vec3 expected[4] = {
        {0.46f, 0.70f, 0.30f}, {0.38f, 0.58f, 0.28f}, {0.62f, 0.50f, 0.22f}, {0.80f, 0.84f, 0.84f}};
    const int days[4] = {SPRING_DAY, SUMMER_DAY, AUTUMN_DAY, WINTER_DAY};
    for (int i = 0; i < 4; i++) {
        city.calendarDay = days[i];
        const Vec3 seen = colourAtCorner(city, OVERLAY_NORMAL, 30, 30);
        EXPECT_NEAR(seen.x, expected[i].x, 0.0351f);
        EXPECT_NEAR(seen.y, expected[i].y, 0.0351f);
        EXPECT_NEAR(seen.z, expected[i].z, 0.0176f);
    }
}

TEST(Terrain, RockWaterBedAndSandAreTheSameAllYear) {
    for (const uint8_t terrain : {TERRAIN_ROCK, TERRAIN_WATER, TERRAIN_SAND}) {
        City city;
        for (Cell& cell : city.cells) cell.terrain = terrain;
        const Vec3 spring = colourAtCorner(city, OVERLAY_NORMAL, 30, 30);
        city.calendarDay = WINTER_DAY;
        EXPECT_EQ(colourAtCorner(city, OVERLAY_NORMAL, 30, 30), spring);
    }
}

TEST(Terrain, TheNormalSpansTwoCellsInsideAndOneAtTheEdge) {
    City city;
    for (int y = 0; y < CORNER_SIDE; y++)
        for (int x = 0; x < CORNER_SIDE; x++)
            city.heights[cornerIndex(x, y)] = static_cast<float>(x * x + 2 * y * y);
    const auto expectSlope = [&city](int x, int y, float dx, float dz) {
        const Vec3 normal = terrainNormal(city, x, y);
        EXPECT_NEAR(length(normal), 1.0f, 1e-6f);
        EXPECT_NEAR(-normal.x / normal.y, dx, 1e-4f);
        EXPECT_NEAR(-normal.z / normal.y, dz, 1e-4f);
    };
    expectSlope(0, 0, 1.0f / 8.0f, 2.0f / 8.0f);
    expectSlope(1, 1, 4.0f / 16.0f, 8.0f / 16.0f);
    expectSlope(10, 3, 40.0f / 16.0f, 24.0f / 16.0f);
    expectSlope(96, 96, 191.0f / 8.0f, 382.0f / 8.0f);
}

TEST(Terrain, FlatLandLooksUp) { EXPECT_EQ(terrainNormal(City(), 50, 50), (Vec3{0, 1, 0})); }
