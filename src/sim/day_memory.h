// What the passes of a day keep for the next one, so that they need not work out what has not changed. A pass
// remembers its inputs beside its results and uses the results again only while the inputs are the same:
// nobody has to tell it what changed, and no edit of the city can make it stale. It lies inside City, so that
// a copied city goes on as quickly as the first. Never saved; an empty one gives the same days.
#pragma once

#include "sim/grid.h"

struct NetworkSource {
    int16_t x = 0;
    int16_t y = 0;
    int32_t reach = 0;     // half the side of its square, in cells
    int32_t remaining = 0; // buildings that it can still serve in this run
    bool operator==(const NetworkSource&) const = default;
};

// Power or water.
struct NetworkMemory {
    std::vector<NetworkSource> sources; // the active ones, in the order of City::buildings
    std::vector<NetworkSource> drawn;   // those in `field` and `nearest`, all of them still full
    Grid field = Grid(CELL_COUNT);
    // The source nearest to a cell that it reaches, the first of equals, -1 for none.
    PerCell<int32_t> nearest = PerCell<int32_t>(CELL_COUNT, -1);
};

// Providers of coverage may stand off the map in a loaded file; what lies farther out reaches no cell of it.
constexpr int COVERAGE_MARGIN = 18;
constexpr int COVERAGE_SIDE = GRID_SIZE + 2 * COVERAGE_MARGIN;

struct CoverageMemory {
    // A bit for each coverage that is provided at a place, COVERAGE_SIDE places a row.
    std::array<uint8_t, COVERAGE_SIDE* COVERAGE_SIDE> providers = {};
    std::array<int32_t, 6> budgets = {100, 100, 100, 100, 100, 100};
    std::vector<Grid> grids = std::vector<Grid>(6, Grid(CELL_COUNT));
};

// The traffic pass reads the network anew only when a road has changed, and keeps its room to work in, so
// that no day allocates memory.

constexpr int COMMUTE_SAMPLES = 360; // a day at most

struct RoadNetwork {
    std::vector<uint8_t> type;      // per cell, as last read
    std::vector<uint8_t> exits;     // per cell: bit i stands for a road on neighbour i of NEIGHBOURS
    std::vector<uint16_t> region;   // per cell with a road: equal numbers hang together
    std::vector<uint16_t> cells;    // those with a road, in index order
    std::vector<uint16_t> reached;  // per cell: a mark of the search that came there
    std::vector<uint16_t> cameFrom; // per cell reached by a breadth-first search
    std::vector<uint16_t> queue;
    uint16_t mark = 0; // every mark of an earlier search is below it
};

// Buildings with running sums of their weights, for a draw by weight.
struct WeightedList {
    std::vector<int32_t> buildings;
    std::vector<int64_t> sums;
};

struct TrafficMemory {
    RoadNetwork network;
    WeightedList homes;
    WeightedList jobs;
    std::vector<uint8_t> nearBusStop; // per cell
    std::vector<uint16_t> uses;       // per cell: the day's ways that pass it

    // The day's ways lie one behind the other in `wayCells`, each up to its `end`.
    struct Way {
        int32_t home; // index of the building
        uint32_t end;
    };
    std::vector<Way> ways;
    std::vector<uint16_t> wayCells;
};

struct DayMemory {
    NetworkMemory power;
    NetworkMemory water;
    CoverageMemory coverage;
    TrafficMemory traffic;
};
