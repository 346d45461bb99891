// What the tools leave alone: all but the cells that they are used on.
#include "sim/build_tools.h"
#include "sim/expect_exactly.h"
#include "sim/hash.h"
#include "sim/networks.h"

#include <algorithm>
#include <string>

// What stands on the cells of the city below, drawn so that each has all the others for neighbours; all of
// them lie in a district.
enum Furniture {
    STREET_WITH_STOP,
    BARE_AVENUE,
    ZONE_WITH_TREES,
    PARK,
    ZONED_PARK,
    WILD_WOOD,
    FURNITURE_COUNT
};

static void clearMarks(City& city) {
    std::fill(city.cellDirty.begin(), city.cellDirty.end(), uint8_t{0});
    city.roadsDirty = city.buildingsDirty = city.zonesDirty = city.overlayDirty = 0;
}

static int furnitureOf(int cell) {
    return static_cast<int>(hashCell(static_cast<uint32_t>(cell), 0, 1) % FURNITURE_COUNT);
}

static City furnishedCity() {
    City city = flatCity();
    for (int i = 0; i < CELL_COUNT; i++) {
        const int furniture = furnitureOf(i);
        Cell& cell = city.cells[i];
        cell.district = static_cast<uint8_t>(1 + i % 8);
        cell.road = furniture == STREET_WITH_STOP ? ROAD_STREET : furniture == BARE_AVENUE ? ROAD_AVENUE : 0;
        cell.busStop = furniture == STREET_WITH_STOP;
        cell.hasTrees = furniture == ZONE_WITH_TREES || furniture == WILD_WOOD;
        cell.zone = furniture == ZONE_WITH_TREES || furniture == ZONED_PARK ? ZONE_OFFICES : ZONE_NONE;
        if (furniture == PARK || furniture == ZONED_PARK)
            addBuilding(city, i % GRID_SIZE, i / GRID_SIZE, KIND_PARK);
    }
    addBuilding(city, -1, -1, KIND_PARK); // of a loaded file: on no cell
    updateUtilities(city);
    clearMarks(city);
    return city;
}

// Uses the tool on cells with this furniture all over the map.
template<class Tool, class Change> static void expectOnCell(Furniture furniture, Tool tool, Change change) {
    const City furnished = furnishedCity();
    int uses = 0;
    for (int cell = 0; cell < CELL_COUNT; cell += 2 * GRID_SIZE - 1) {
        if (furnitureOf(cell) != furniture) continue;
        const int x = cell % GRID_SIZE;
        const int y = cell / GRID_SIZE;
        SCOPED_TRACE("furniture " + std::to_string(furniture) + " at " + std::to_string(x) + "," +
                     std::to_string(y));
        City city = furnished;
        uses++;
        expectExactly(
            city, [&](City& c) { EXPECT_TRUE(tool(c, x, y)); },
            [&](City& c) { change(c, c.cells[cell], c.cellDirty[cell]); });
    }
    EXPECT_GE(uses, 3);
}

static void removeBuilding(City& city, Cell& cell) {
    const int index = cell.buildingIndex;
    city.buildings.erase(city.buildings.begin() + index);
    cell.buildingIndex = -1;
    for (Cell& other : city.cells) other.buildingIndex -= other.buildingIndex > index;
    city.money += 1800.0;
}

TEST(BuildTools, ChangeTheirCellAndNothingMore) {
    const auto street = [](City& city, int x, int y) { return placeRoad(city, x, y, ROAD_STREET); };
    const auto avenue = [](City& city, int x, int y) { return placeRoad(city, x, y, ROAD_AVENUE); };
    const auto shops = [](City& city, int x, int y) { return setZone(city, x, y, ZONE_COMMERCIAL); };
    const auto noZone = [](City& city, int x, int y) { return setZone(city, x, y, ZONE_NONE); };
    const auto noDistrict = [](City& city, int x, int y) { return setDistrict(city, x, y, 0); };
    const auto pump = [](City& city, int x, int y) { return placeBuilding(city, x, y, KIND_WATER_PUMP); };

    expectOnCell(STREET_WITH_STOP, avenue, [](City& city, Cell& cell, uint8_t& dirty) {
        cell.road = ROAD_AVENUE;
        city.money -= 160.0;
        dirty = city.roadsDirty = city.zonesDirty = 1;
        updateUtilities(city);
    });
    for (const Furniture wild : {ZONE_WITH_TREES, WILD_WOOD})
        expectOnCell(wild, street, [](City& city, Cell& cell, uint8_t& dirty) {
            cell.road = ROAD_STREET;
            cell.zone = cell.hasTrees = 0;
            city.money -= 80.0;
            dirty = city.roadsDirty = city.zonesDirty = 1;
            updateUtilities(city);
        });
    for (const Furniture wild : {ZONE_WITH_TREES, WILD_WOOD})
        expectOnCell(wild, shops, [](City& city, Cell& cell, uint8_t& dirty) {
            cell.zone = ZONE_COMMERCIAL;
            cell.hasTrees = 0;
            dirty = city.zonesDirty = 1;
        });
    for (const Furniture zoned : {ZONE_WITH_TREES, ZONED_PARK})
        expectOnCell(zoned, noZone, [](City& city, Cell& cell, uint8_t& dirty) {
            cell.zone = cell.hasTrees = 0;
            dirty = city.zonesDirty = 1;
        });
    for (const Furniture any : {STREET_WITH_STOP, BARE_AVENUE, ZONE_WITH_TREES, PARK, ZONED_PARK, WILD_WOOD})
        expectOnCell(any, noDistrict, [](City& city, Cell& cell, uint8_t& dirty) {
            cell.district = 0;
            dirty = city.overlayDirty = 1;
        });
    expectOnCell(WILD_WOOD, pump, [](City& city, Cell& cell, uint8_t& dirty) {
        const int index = static_cast<int>(&cell - city.cells.data());
        addBuilding(city, index % GRID_SIZE, index / GRID_SIZE, KIND_WATER_PUMP).progress = 0.0f;
        cell.hasTrees = 0;
        city.money -= 25000.0;
        dirty = city.zonesDirty = 1;
        updateUtilities(city);
    });
    expectOnCell(BARE_AVENUE, placeBusStop, [](City& city, Cell& cell, uint8_t&) {
        cell.busStop = 1;
        city.money -= 500.0;
        city.buildingsDirty = 1;
    });
}

TEST(Bulldoze, TakesFromItsCellAndNothingMore) {
    for (const Furniture built : {PARK, ZONED_PARK})
        expectOnCell(built, bulldoze, [](City& city, Cell& cell, uint8_t& dirty) {
            removeBuilding(city, cell);
            dirty = 1;
            updateUtilities(city);
        });
    expectOnCell(STREET_WITH_STOP, bulldoze, [](City& city, Cell& cell, uint8_t&) {
        cell.busStop = 0;
        city.buildingsDirty = 1;
    });
    expectOnCell(BARE_AVENUE, bulldoze, [](City& city, Cell& cell, uint8_t& dirty) {
        cell.road = ROAD_NONE;
        dirty = city.roadsDirty = 1;
        updateUtilities(city);
    });
    expectOnCell(ZONE_WITH_TREES, bulldoze, [](City& city, Cell& cell, uint8_t& dirty) {
        cell.zone = ZONE_NONE;
        dirty = city.zonesDirty = 1;
    });
    expectOnCell(WILD_WOOD, bulldoze, [](City& city, Cell& cell, uint8_t& dirty) {
        cell.district = 0;
        dirty = city.overlayDirty = 1;
    });
}

TEST(PlaceRoad, ALineLaysTheCellsFromEndToEndAndNothingMore) {
    City city = flatCity();
    clearMarks(city);
    expectExactly(
        city, [](City& c) { EXPECT_EQ(placeRoadLine(c, 42, 10, 40, 10, ROAD_STREET), 3); },
        [](City& c) {
            layRoads(c, 40, 10, 42, 10);
            for (const int x : {40, 41, 42}) c.cellDirty[cellIndex(x, 10)] = 1;
            c.money -= 3 * 80.0;
            c.roadsDirty = c.zonesDirty = 1;
            updateUtilities(c);
        });
}

TEST(Bulldoze, ARectangleTakesTheCellsBetweenItsCornersAndNothingMore) {
    City city = furnishedCity();
    expectExactly(
        city, [](City& c) { EXPECT_EQ(bulldozeRect(c, 60, 41, 58, 40), 6); },
        [](City& c) {
            for (const int y : {40, 41})
                for (const int x : {58, 59, 60}) EXPECT_TRUE(bulldoze(c, x, y));
        });
}
