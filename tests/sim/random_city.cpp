#include "sim/random_city.h"

#include "sim/build_tools.h"
#include "sim/hash.h"
#include "sim/map_generation.h"

#include <limits>

// A number from `lowest` to `highest`, the same one on every system.
static int pick(uint32_t step, uint32_t salt, int lowest, int highest) {
    return lowest +
           static_cast<int>(hashCell(step, salt, 2026) % static_cast<uint32_t>(highest - lowest + 1));
}

bool operate(City& city, uint32_t step) {
    const bool anywhere = pick(step, 1, 0, 15) == 0;
    const int x = anywhere ? pick(step, 2, -3, GRID_SIZE + 3) : pick(step, 2, 40, 55);
    const int y = anywhere ? pick(step, 3, -3, GRID_SIZE + 3) : pick(step, 3, 40, 55);
    switch (pick(step, 4, 0, 7)) {
    case 0:
    case 1:
        return placeRoad(city, x, y, pick(step, 5, 0, 3));
    case 2:
        return setZone(city, x, y, pick(step, 5, -1, 5));
    case 3:
        return setDistrict(city, x, y, pick(step, 5, -1, 9));
    case 4:
    case 5:
        return placeBuilding(city, x, y, pick(step, 5, -1, KIND_COUNT));
    case 6:
        return placeBusStop(city, x, y);
    default:
        return bulldoze(city, x, y);
    }
}

City wildCity(uint32_t salt) {
    City city;
    generateMap(city, salt);
    for (int i = 0; i < CELL_COUNT; i++) {
        const uint32_t at = static_cast<uint32_t>(i);
        Cell& cell = city.cells[i];
        cell.zone = static_cast<uint8_t>(pick(at, salt, 0, 255));
        cell.terrain = static_cast<uint8_t>(pick(at, salt + 1, 0, 255));
        cell.road = static_cast<uint8_t>(pick(at, salt + 2, 0, 3) ? 0 : pick(at, salt + 3, 0, 255));
        cell.district = static_cast<uint8_t>(pick(at, salt + 4, 0, 255));
        cell.busStop = static_cast<uint8_t>(pick(at, salt + 5, 0, 30) == 0);
        cell.buildingIndex = pick(at, salt + 6, -100, 500);
    }
    const float floats[] = {0.0f,
                            1.0f,
                            -5.0f,
                            1e30f,
                            std::numeric_limits<float>::quiet_NaN(),
                            std::numeric_limits<float>::infinity()};
    for (uint32_t i = 0; i < 400; i++) {
        Building building;
        building.kind = static_cast<uint8_t>(pick(i, salt + 7, 0, 2) ? pick(i, salt + 8, 0, KIND_COUNT)
                                                                     : pick(i, salt + 9, 0, 255));
        building.level = static_cast<uint8_t>(pick(i, salt + 10, 0, 255));
        building.x = static_cast<int16_t>(pick(i, salt + 11, -120, 220));
        building.y = static_cast<int16_t>(pick(i, salt + 12, -120, 220));
        if (i % 37 == 0) building.x = std::numeric_limits<int16_t>::min();
        if (i % 41 == 0) building.y = std::numeric_limits<int16_t>::max();
        building.progress = floats[pick(i, salt + 13, 0, 5)];
        building.staffing = floats[pick(i, salt + 14, 0, 5)];
        building.working = static_cast<uint8_t>(pick(i, salt + 15, 0, 255));
        building.occupants = static_cast<int32_t>(hashCell(i, salt, 16));
        city.buildings.push_back(building);
    }
    for (float& height : city.heights)
        if (pick(static_cast<uint32_t>(&height - city.heights.data()), salt, 0, 9) == 0)
            height = floats[pick(static_cast<uint32_t>(&height - city.heights.data()), salt + 1, 0, 5)];
    city.money = salt % 2 ? std::numeric_limits<double>::quiet_NaN() : 1e300;
    return city;
}
