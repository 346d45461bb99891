// Small cities for the tests and the benchmarks, and what must hold of every city.
#pragma once

#include "sim/building_kinds.h"
#include "sim/city.h"

#include <string>

// Level grass at height 10, everything else as at the start of a game.
City flatCity();

// Sets the road of every cell of the rectangle, free of charge. Nothing is recomputed.
void layRoads(City& city, int x0, int y0, int x1, int y1, uint8_t type = ROAD_STREET);

// Appends a finished building and enters it in its cell. Nothing is recomputed.
Building& addBuilding(City& city, int x, int y, uint8_t kind, uint8_t level = 1);

// Appends a building that has everything it needs and works.
Building& addWorkingBuilding(City& city, int x, int y, uint8_t kind, uint8_t level = 1);

// A hash of the city for each group of fields, so that a difference names its pass.
// The answer of the last tool is left out: a refusal changes nothing else.
struct CityHashes {
    uint64_t land; // heights, cells
    uint64_t buildings;
    uint64_t services;  // coverage, pollution, land value, reach of power and water
    uint64_t traffic;   // flow, load, capacity
    uint64_t economy;   // money, people, rates, history
    uint64_t course;    // calendar, weather, missions, events
    uint64_t staleness; // what the view has not drawn yet
    bool operator==(const CityHashes&) const = default;
};
CityHashes cityHashes(const City& city);
uint64_t cityHash(const City& city);

// The first rule that the city breaks, empty when it is whole: cells and buildings agree, and every flag and
// figure is in its range. Road access is expected to be up to date.
std::string brokenInvariant(const City& city);
