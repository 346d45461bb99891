// The cells of a dragged rectangle.
#pragma once

#include "sim/city.h"

#include <algorithm>

// Calls visit(x, y) on the rectangle's part of the map, row by row from the top, left to right. The corners
// belong to it and come in any order.
template<class Visit> void walkRect(int x0, int y0, int x1, int y1, Visit visit) {
    const auto [left, right] = std::minmax(x0, x1);
    const auto [top, bottom] = std::minmax(y0, y1);
    for (int y = std::max(top, 0); y <= std::min(bottom, GRID_SIZE - 1); y++)
        for (int x = std::max(left, 0); x <= std::min(right, GRID_SIZE - 1); x++) visit(x, y);
}
