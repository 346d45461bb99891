// Power and water: each source serves a limited number of buildings within a square reach, nearest source
// first. There are no wires and no pipes.
#pragma once

#include "sim/city.h"

// A building has road access when one of its four neighbours carries a road.
void updateRoadAccess(City& city);

// Hands out the sources' capacity, decides which buildings work, and draws both reach fields.
// Runs updateRoadAccess first.
void updateUtilities(City& city);

// Index of the first neighbouring cell with a road, in the order +x, -x, +y, -y; -1 for none.
int adjacentRoadCell(const City& city, int x, int y);

// Whether there is one at all. Away from the map's edge the neighbours need no test of their own.
inline bool touchesRoad(const City& city, int x, int y) {
    if (x < 1 || y < 1 || x >= GRID_SIZE - 1 || y >= GRID_SIZE - 1) return adjacentRoadCell(city, x, y) >= 0;
    const Cell* cell = &city.cells[cellIndex(x, y)];
    return cell[1].road || cell[-1].road || cell[GRID_SIZE].road || cell[-GRID_SIZE].road;
}
