#include "view/world/trees.h"

#include "sim/city_helpers.h"
#include "sim/map_generation.h"

#include <gtest/gtest.h>

#include <cmath>

constexpr int SEASON_DAYS[4] = {0, 100, 200, 300}; // of City::calendarDay, from spring to winter
constexpr size_t TREE = 36;                        // vertices

static MeshBuilder treesOf(const City& city) {
    MeshBuilder builder;
    buildTreeMesh(builder, city);
    return builder;
}

// One tree on flat ground.
static City oneTree(int x, int y) {
    City city = flatCity();
    city.cells[cellIndex(x, y)].hasTrees = 1;
    return city;
}

TEST(Trees, ATreeStandsOnEachWoodedCellThatNothingWasBuiltOn) {
    City city = oneTree(20, 30);
    EXPECT_EQ(treesOf(city).size(), TREE);
    Cell& cell = city.cells[cellIndex(20, 30)];
    cell.hasTrees = 0;
    EXPECT_TRUE(treesOf(city).empty());
    cell.hasTrees = 200;
    EXPECT_EQ(treesOf(city).size(), TREE);
    cell.road = ROAD_AVENUE;
    EXPECT_TRUE(treesOf(city).empty());
    cell.road = ROAD_NONE;
    cell.buildingIndex = 0;
    EXPECT_TRUE(treesOf(city).empty());
    cell.buildingIndex = 1 << 30; // no such building, as a loaded file may have it
    EXPECT_TRUE(treesOf(city).empty());
    cell.buildingIndex = -7;
    EXPECT_EQ(treesOf(city).size(), TREE);
}

TEST(Trees, ATreeIsASixSidedConeWithoutATrunk) {
    for (const auto& [x, y] : {std::pair(0u, 0u), {95u, 95u}, {20u, 30u}}) {
        const MeshBuilder builder = treesOf(oneTree(static_cast<int>(x), static_cast<int>(y)));
        ASSERT_EQ(builder.size(), TREE);
        const Vec3 base = {(hash01(x, y, 21) * 0.4f + 0.3f + static_cast<float>(x)) * 8.0f, 10.0f,
                           (hash01(x, y, 22) * 0.4f + 0.3f + static_cast<float>(y)) * 8.0f};
        const float size = hash01(x, y, 23) * 0.5f + 0.8f;
        int tips = 0;
        for (const Vertex& vertex : builder) {
            const Vec3 from = vertex.position - base;
            const bool isTip = from.y > 0.0f;
            tips += isTip;
            EXPECT_NEAR(from.y, isTip ? 7.0f * size : 0.0f, 1e-4f);
            EXPECT_NEAR(std::hypot(from.x, from.z), isTip ? 0.0f : 2.4f * size, 1e-4f);
            EXPECT_EQ(vertex.material, 0.0f);
            EXPECT_EQ(vertex.emissive, 0.0f);
        }
        EXPECT_EQ(tips, 18); // two corners of each side meet there, one of them in both triangles
    }
}

TEST(Trees, ATreeTakesTheTintOfItsSeason) {
    const Vec3 tints[4] = {
        {1.10f, 1.22f, 1.00f}, {1.0f, 1.0f, 1.0f}, {1.45f, 0.95f, 0.45f}, {0.90f, 0.92f, 0.95f}};
    City city = oneTree(40, 50);
    const float t = hash01(40, 50, 24);
    for (int season = 0; season < 4; season++) {
        city.calendarDay = SEASON_DAYS[season];
        for (const Vertex& vertex : treesOf(city))
            EXPECT_EQ(vertex.colour,
                      (Vec3{(0.13f + 0.09f * t) * tints[season].x, (0.32f + 0.13f * t) * tints[season].y,
                            (0.12f + 0.05f * t) * tints[season].z}));
    }
}

TEST(Trees, ATreeStandsInTheMiddleOfItsCellOnTheGround) {
    City city;
    generateMap(city, 5);
    for (Cell& cell : city.cells) cell.hasTrees = 1;
    const MeshBuilder builder = treesOf(city);
    ASSERT_EQ(builder.size(), CELL_COUNT * TREE);
    EXPECT_EQ(builder.capacity(), builder.size()) << "room for them is made once";
    for (int i = 0; i < CELL_COUNT; i++) {
        const Vec3 tip = builder[static_cast<size_t>(i) * TREE + 2].position;
        const Vec3 foot = builder[static_cast<size_t>(i) * TREE].position;
        const float cellX = tip.x / 8.0f - static_cast<float>(i % GRID_SIZE);
        const float cellZ = tip.z / 8.0f - static_cast<float>(i / GRID_SIZE);
        EXPECT_TRUE(cellX > 0.2999f && cellX < 0.7001f) << i;
        EXPECT_TRUE(cellZ > 0.2999f && cellZ < 0.7001f) << i;
        EXPECT_EQ(foot.y, heightAt(city, tip.x, tip.z)) << i;
    }
}

TEST(Trees, TheSameLandAlwaysHasTheSameTrees) {
    City city;
    generateMap(city, 9);
    City again;
    generateMap(again, 9);
    const MeshBuilder trees = treesOf(city);
    const MeshBuilder same = treesOf(again);
    EXPECT_GT(trees.size(), 100 * TREE);
    ASSERT_EQ(trees.size(), same.size());
    for (size_t i = 0; i < trees.size(); i++) ASSERT_EQ(trees[i].position, same[i].position);
}
