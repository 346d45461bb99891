// A drag leaves the same city as its tool used on one cell after the other.
#include "sim/build_tools.h"
#include "sim/city_helpers.h"
#include "sim/grid_line.h"
#include "sim/grid_rect.h"
#include "sim/grown_cities.h"
#include "sim/hash.h"
#include "sim/plain_rules.h"
#include "sim/random_city.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

struct Corners {
    int x0;
    int y0;
    int x1;
    int y1;
};

static int pick(uint32_t drag, uint32_t salt, int lowest, int highest) {
    return lowest + static_cast<int>(hashCell(drag, salt, 515) % static_cast<uint32_t>(highest - lowest + 1));
}

// Of any size up to the whole map, in any direction, some of them partly off the map.
static Corners randomCorners(uint32_t drag) {
    const int size = drag % 7 == 0 ? GRID_SIZE : pick(drag, 1, 0, 30);
    const int x = pick(drag, 2, -4, GRID_SIZE + 4);
    const int y = pick(drag, 3, -4, GRID_SIZE + 4);
    return {x, y, x + pick(drag, 4, -size, size), y + pick(drag, 5, -size, size)};
}

static void expectSameCity(const City& city, const City& plainCity, const std::string& when) {
    ASSERT_EQ(cityHashes(city), cityHashes(plainCity)) << when;
    ASSERT_EQ(city.statusId, plainCity.statusId) << when;
    ASSERT_EQ(city.statusArg, plainCity.statusArg) << when;
}

static void expectPlainBulldozing(City& city, const Corners& c, const std::string& when) {
    City plainCity = city;
    int plainCount = 0;
    walkRect(c.x0, c.y0, c.x1, c.y1, [&](int x, int y) { plainCount += plain::bulldoze(plainCity, x, y); });
    EXPECT_EQ(bulldozeRect(city, c.x0, c.y0, c.x1, c.y1), plainCount) << when;
    expectSameCity(city, plainCity, "bulldozed, " + when);
}

static void expectPlainLine(City& city, const Corners& c, int type, const std::string& when) {
    City plainCity = city;
    int plainCount = 0;
    walkLine(c.x0, c.y0, c.x1, c.y1,
             [&](int x, int y) { plainCount += plain::placeRoad(plainCity, x, y, type); });
    EXPECT_EQ(placeRoadLine(city, c.x0, c.y0, c.x1, c.y1, type), plainCount) << when;
    expectSameCity(city, plainCity, "laid, " + when);
}

// Drags of both tools by turns, until the bulldozer has gone over everything twice.
static void expectPlainDrags(City city, uint32_t salt, const std::string& which) {
    for (uint32_t drag = salt; drag < salt + 12; drag++) {
        const std::string when = which + ", drag " + std::to_string(drag);
        ASSERT_NO_FATAL_FAILURE(expectPlainLine(city, randomCorners(drag), pick(drag, 6, 0, 3), when));
        ASSERT_NO_FATAL_FAILURE(expectPlainBulldozing(city, randomCorners(drag + 1000), when));
    }
    for (const char* time : {"once", "twice"})
        ASSERT_NO_FATAL_FAILURE(expectPlainBulldozing(city, {95, 0, 0, 95}, which + ", everything " + time));
}

TEST(Drags, EqualTheirCellsInATown) {
    City town = townOf5000();
    for (const double money : {1e6, 3000.5, 500.0}) {
        town.money = money;
        expectPlainDrags(town, static_cast<uint32_t>(money), "a town with " + std::to_string(money));
    }
}

TEST(Drags, EqualTheirCellsInCitiesOfAllTools) {
    for (uint32_t salt = 0; salt < 4; salt++) {
        City city = flatCity();
        city.money = 1e9;
        for (uint32_t step = 0; step < 800; step++) operate(city, salt * 1000 + step);
        for (size_t i = 0; i < city.buildings.size(); i += 3) city.buildings[i].progress = 1.0f;
        expectPlainDrags(city, salt * 50, "city " + std::to_string(salt));
    }
}

// Several buildings on a cell and off the map, several cells that name one building, wild kinds and levels.
TEST(Drags, EqualTheirCellsInWildCities) {
    for (uint32_t salt = 0; salt < 8; salt++) {
        City city = wildCity(salt);
        if (salt % 2) city.money = 1234.1;
        expectPlainDrags(city, salt * 50, "wild city " + std::to_string(salt));
    }
}

TEST(Drags, EqualTheirCellsWhereIndicesPointBehindTheList) {
    City city = flatCity();
    for (int i = 0; i < 40; i++) addBuilding(city, i, i / 2, KIND_PARK);
    for (int i = 0; i < 200; i++) city.cells[cellIndex(i % 50, 40 + i / 50)].buildingIndex = i - 50;
    city.cells[cellIndex(60, 60)].buildingIndex = std::numeric_limits<int>::max();
    city.cells[cellIndex(61, 60)].buildingIndex = std::numeric_limits<int>::min();
    expectPlainBulldozing(city, {0, 41, 49, 41}, "one building many times");
    expectPlainBulldozing(city, {5, 0, 20, 50}, "some of all");
    expectPlainBulldozing(city, {0, 0, 95, 95}, "all");
}
