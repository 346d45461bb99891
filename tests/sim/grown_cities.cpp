#include "sim/grown_cities.h"

#include "sim/build_tools.h"
#include "sim/daily_tick.h"
#include "sim/finance.h"
#include "sim/map_generation.h"

constexpr int BLOCK_WIDTH = 10; // with one road each
constexpr int BLOCK_HEIGHT = 6;

static void layGrid(City& city, int x0, int y0, int x1, int y1) {
    for (int y = y0; y <= y1; y += BLOCK_HEIGHT)
        for (int x = x0; x <= x1; x++)
            placeRoad(city, x, y, (y - y0) % (2 * BLOCK_HEIGHT) ? ROAD_STREET : ROAD_AVENUE);
    for (int x = x0; x <= x1; x += BLOCK_WIDTH)
        for (int y = y0; y <= y1; y++) placeRoad(city, x, y, ROAD_STREET);
}

// Every second block has the services on its upper side and a utility or two below; zones fill the rest.
static void furnishBlock(City& city, int x0, int y0, int block) {
    constexpr std::array<int, 7> ZONES = {ZONE_RESIDENTIAL, ZONE_OFFICES,    ZONE_RESIDENTIAL,
                                          ZONE_RESIDENTIAL, ZONE_COMMERCIAL, ZONE_INDUSTRIAL,
                                          ZONE_RESIDENTIAL};
    if (block % 2 == 0) {
        for (int kind = KIND_POLICE_STATION; kind <= KIND_BUS_DEPOT; kind++)
            placeBuilding(city, x0 + kind - KIND_POLICE_STATION, y0, kind);
        placeBuilding(city, x0, y0 + 4, block % 4 ? KIND_SOLAR_FARM : KIND_GAS_POWER_PLANT);
        placeBuilding(city, x0 + 1, y0 + 4, KIND_WATER_PUMP);
        placeBuilding(city, x0 + 2, y0 + 4, KIND_WIND_TURBINE);
        placeBusStop(city, x0 + 1, y0 - 1);
    }
    for (int y = y0; y < y0 + BLOCK_HEIGHT - 1; y++)
        for (int x = x0; x < x0 + BLOCK_WIDTH - 1; x++) {
            if (!buildingAt(city, x, y)) setZone(city, x, y, ZONES[block % ZONES.size()]);
            setDistrict(city, x, y, block % DISTRICT_COUNT);
        }
}

City gridCity(int columns, int rows, int days) {
    City city;
    generateMap(city, 3);
    city.money = 1e8;
    city.keepPlaying = 1;
    toggleDistrictPolicy(city, 2, POLICY_SMOKE_FREE);
    toggleDistrictPolicy(city, 4, POLICY_NO_TRUCKS);
    toggleDistrictPolicy(city, 6, POLICY_TRANSIT_FIRST);
    const int x0 = 48 - columns * BLOCK_WIDTH / 2;
    const int y0 = 48 - rows * BLOCK_HEIGHT / 2;
    layGrid(city, x0, y0, x0 + columns * BLOCK_WIDTH, y0 + rows * BLOCK_HEIGHT);
    for (int row = 0; row < rows; row++)
        for (int column = 0; column < columns; column++)
            furnishBlock(city, x0 + column * BLOCK_WIDTH + 1, y0 + row * BLOCK_HEIGHT + 1,
                         row * columns + column);
    for (int day = 0; day < days; day++) dailyTick(city);
    return city;
}

City townOf5000() { return gridCity(3, 3, 140); }

City bigCity() { return gridCity(9, 15, 235); }
