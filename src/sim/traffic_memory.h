// What the traffic pass keeps from one day to the next: the network, which is read anew only when a road has
// changed, and room to work in, so that no day allocates memory. It lies inside City and is never saved; an
// empty one gives the same traffic.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

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
