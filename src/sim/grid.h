// The map's grid: 96 by 96 cells, row by row, and the corners between them.
#pragma once

#include <array>
#include <cassert>
#include <cstdint>
#include <vector>

constexpr int GRID_SIZE = 96;
constexpr int CELL_COUNT = GRID_SIZE * GRID_SIZE;
constexpr int CORNER_SIDE = GRID_SIZE + 1;
constexpr int CORNER_COUNT = CORNER_SIDE * CORNER_SIDE;
constexpr float CELL_WIDTH = 8.0f; // world units
constexpr float MAP_WIDTH = GRID_SIZE * CELL_WIDTH;

template<class T> using PerCell = std::vector<T>; // CELL_COUNT entries, row by row
using Grid = PerCell<float>;

inline bool inMap(int x, int y) { return x >= 0 && y >= 0 && x < GRID_SIZE && y < GRID_SIZE; }

inline int cellIndex(int x, int y) {
    assert(inMap(x, y));
    return y * GRID_SIZE + x;
}

inline int cornerIndex(int x, int y) {
    assert(x >= 0 && y >= 0 && x < CORNER_SIDE && y < CORNER_SIDE);
    return y * CORNER_SIDE + x;
}

// The order in which every rule looks at the four cells around one.
struct CellStep {
    int x;
    int y;
};
constexpr std::array<CellStep, 4> NEIGHBOURS = {{{1, 0}, {-1, 0}, {0, 1}, {0, -1}}};
