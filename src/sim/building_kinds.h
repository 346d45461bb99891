// What each kind of building costs and employs: one row a kind. Rules ask the row instead of the kind.
#pragma once

#include "sim/city.h"

struct BuildingKindRow {
    int cost;          // money; for grown kinds only the base of the refund
    int upkeep;        // money per day at a budget of 100; grown kinds pay level x 0.5 instead
    int budgetIndex;   // entry of City::serviceBudget that scales the upkeep, -1 for none
    int jobPlaces;     // of placed kinds
    int jobsPerLevel2; // of grown kinds: times level squared
};

constexpr std::array<BuildingKindRow, KIND_COUNT> BUILDING_KINDS = {{
    {4000, 0, -1, 0, 0},    // homes
    {6000, 0, -1, 0, 4},    // shops
    {9000, 0, -1, 0, 8},    // office tower
    {7000, 0, -1, 0, 8},    // factory
    {15000, 60, 0, 14, 0},  // police station
    {15000, 55, 1, 14, 0},  // fire station
    {40000, 110, 2, 40, 0}, // hospital
    {25000, 80, 3, 25, 0},  // school
    {6000, 6, 4, 2, 0},     // park
    {30000, 45, 5, 12, 0},  // bus depot
    {60000, 140, 6, 22, 0}, // gas power plant
    {35000, 50, 6, 5, 0},   // solar farm
    {30000, 40, 6, 4, 0},   // wind turbine
    {25000, 55, 7, 6, 0},   // water pump
}};

// Grown kinds rise on zoned land by themselves and have levels; the others are placed by the player.
constexpr bool isGrownKind(int kind) { return kind >= KIND_HOMES && kind <= KIND_FACTORY; }

// 0 for homes and for a kind that does not exist.
constexpr int jobPlaces(int kind, int level) {
    if (kind < 0 || kind >= KIND_COUNT) return 0;
    const BuildingKindRow& row = BUILDING_KINDS[kind];
    return row.jobPlaces + row.jobsPerLevel2 * level * level;
}
// Residents: 8 at level 1, 30 at 2, 80 above.
int homeCapacity(int level);
// Money for one cell: 240 for an avenue, 80 otherwise.
int roadCost(int type);
// Money: the kind's cost times the level, which counts as at least 1; 0 for a kind that does not exist.
int buildingCost(int kind, int level);
