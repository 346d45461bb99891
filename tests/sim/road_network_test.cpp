#include "sim/road_network.h"

#include "sim/city_helpers.h"
#include "sim/grown_cities.h"
#include "sim/hash.h"
#include "sim/plain_rules.h"

#include <gtest/gtest.h>

#include <algorithm>

static RoadNetwork networkOf(const City& city) {
    RoadNetwork network;
    updateRoadNetwork(network, city);
    return network;
}

// The ways between `pairs` pairs of road cells, against a breadth-first search for each.
static void expectPlainWays(const City& city, int pairs) {
    RoadNetwork network = networkOf(city);
    ASSERT_FALSE(network.cells.empty());
    const auto anyRoad = [&network](int pair, uint32_t salt) {
        return network.cells[hashCell(static_cast<uint32_t>(pair), 0, salt) % network.cells.size()];
    };
    std::vector<uint16_t> way;
    for (int pair = 0; pair < pairs; pair++) {
        const int from = anyRoad(pair, 1);
        const int to = anyRoad(pair, 2);
        const std::vector<int32_t> expected = plain::findWay(city, from, to);
        way.assign(3, 7); // what lies there before stays
        ASSERT_EQ(findWay(network, from, to, way), !expected.empty());
        ASSERT_EQ(way.size(), expected.size() + 3);
        ASSERT_TRUE(std::equal(expected.begin(), expected.end(), way.begin() + 3))
            << "from cell " << from << " to " << to;
    }
}

TEST(RoadNetwork, WaysAreThoseOfABreadthFirstSearchInATown) { expectPlainWays(gridCity(3, 3, 0), 500); }

TEST(RoadNetwork, WaysAreThoseOfABreadthFirstSearchOnAFullGrid) { expectPlainWays(gridCity(9, 15, 0), 500); }

TEST(RoadNetwork, WaysAreThoseOfABreadthFirstSearchOnABareFieldOfRoad) {
    City city = flatCity();
    layRoads(city, 0, 0, 95, 95);
    expectPlainWays(city, 100);
}

// Roads drawn cell by cell: from islands over mazes full of dead ends to fields with a few holes.
TEST(RoadNetwork, WaysAreThoseOfABreadthFirstSearchInAnyMaze) {
    for (const uint32_t percent : {40u, 55u, 60u, 65u, 70u, 80u, 95u}) {
        City city = flatCity();
        for (int i = 0; i < CELL_COUNT; i++)
            if (hashCell(static_cast<uint32_t>(i), percent, 3) % 100 < percent)
                city.cells[i].road = ROAD_STREET;
        ASSERT_NO_FATAL_FAILURE(expectPlainWays(city, 150)) << percent << " percent";
    }
}

// A road that winds through the whole map: the target is near and the way long.
TEST(RoadNetwork, WaysAreThoseOfABreadthFirstSearchOnALongWindingRoad) {
    City city = flatCity();
    for (int y = 0; y < GRID_SIZE; y += 2) {
        layRoads(city, 0, y, 95, y);
        if (y + 1 < GRID_SIZE) layRoads(city, y % 4 ? 0 : 95, y + 1, y % 4 ? 0 : 95, y + 1);
    }
    expectPlainWays(city, 60);
    std::vector<uint16_t> way;
    RoadNetwork network = networkOf(city);
    ASSERT_TRUE(findWay(network, cellIndex(0, 0), cellIndex(0, 94), way));
    EXPECT_GT(way.size(), 4500u);
}

// Combs with teeth of different lengths need ever more steps away from the target.
TEST(RoadNetwork, WaysAreThoseOfABreadthFirstSearchAroundEveryDetour) {
    for (int depth = 1; depth <= 20; depth++) {
        City city = flatCity();
        layRoads(city, 10, 30, 10, 30 + depth);
        layRoads(city, 10, 30 + depth, 20, 30 + depth);
        layRoads(city, 20, 30, 20, 30 + depth);
        layRoads(city, 10, 30, 14, 30);
        layRoads(city, 16, 30, 20, 30);
        ASSERT_NO_FATAL_FAILURE(expectPlainWays(city, 60)) << depth << " cells deep";
    }
}

TEST(RoadNetwork, AWayFromACellToItselfIsThatCell) {
    City city = flatCity();
    layRoads(city, 5, 5, 9, 5);
    RoadNetwork network = networkOf(city);
    std::vector<uint16_t> way;
    EXPECT_TRUE(findWay(network, cellIndex(6, 5), cellIndex(6, 5), way));
    EXPECT_EQ(way, std::vector<uint16_t>{static_cast<uint16_t>(cellIndex(6, 5))});
}

TEST(RoadNetwork, IsReadAgainOnlyWhenARoadHasChanged) {
    City city = flatCity();
    layRoads(city, 5, 5, 9, 5);
    RoadNetwork network;
    EXPECT_TRUE(updateRoadNetwork(network, city));
    EXPECT_FALSE(updateRoadNetwork(network, city));
    city.cells[cellIndex(7, 5)].zone = ZONE_OFFICES;
    EXPECT_FALSE(updateRoadNetwork(network, city));
    city.cells[cellIndex(7, 5)].road = ROAD_AVENUE;
    EXPECT_TRUE(updateRoadNetwork(network, city));
    city.cells[cellIndex(7, 5)].road = ROAD_NONE;
    EXPECT_TRUE(updateRoadNetwork(network, city));
    std::vector<uint16_t> way;
    EXPECT_FALSE(findWay(network, cellIndex(5, 5), cellIndex(9, 5), way));
    EXPECT_TRUE(way.empty());
}

TEST(RoadNetwork, SearchesForEverWithTheSameMemory) {
    const City city = gridCity(2, 2, 0);
    RoadNetwork network = networkOf(city);
    const int from = network.cells.front();
    const int to = network.cells.back();
    std::vector<uint16_t> first;
    ASSERT_TRUE(findWay(network, from, to, first));
    std::vector<uint16_t> way;
    for (int search = 0; search < 30000; search++) {
        way.clear();
        ASSERT_TRUE(findWay(network, from, to, way));
        ASSERT_EQ(way, first) << "search " << search;
    }
}

TEST(RoadNetwork, TheRoadBesideABuildingIsTheFirstOfRightLeftBelowAbove) {
    City city = flatCity();
    for (const CellStep& step : NEIGHBOURS)
        city.cells[cellIndex(30 + step.x, 30 + step.y)].road = ROAD_AVENUE;
    for (const CellStep& step : NEIGHBOURS) {
        const RoadNetwork network = networkOf(city);
        EXPECT_EQ(roadBeside(network, 30, 30), cellIndex(30 + step.x, 30 + step.y));
        city.cells[cellIndex(30 + step.x, 30 + step.y)].road = ROAD_NONE;
    }
    EXPECT_EQ(roadBeside(networkOf(city), 30, 30), -1);
}

TEST(RoadNetwork, ABuildingOffTheMapMayStandBesideARoadAtItsEdge) {
    City city = flatCity();
    layRoads(city, 0, 0, 95, 95);
    const RoadNetwork network = networkOf(city);
    EXPECT_EQ(roadBeside(network, -1, 40), cellIndex(0, 40));
    EXPECT_EQ(roadBeside(network, 96, 40), cellIndex(95, 40));
    EXPECT_EQ(roadBeside(network, 40, -1), cellIndex(40, 0));
    EXPECT_EQ(roadBeside(network, 40, 96), cellIndex(40, 95));
    EXPECT_EQ(roadBeside(network, -1, -1), -1);
    EXPECT_EQ(roadBeside(network, -32768, 32767), -1);
}
