// The cells that a dragged street follows.
#pragma once

#include <cstdint>
#include <cstdlib>

// Calls visit(x, y) on the cells of the straight line, one after the other, both ends included. This is
// Bresenham's line in its integer form for all directions; 64 bits hold the error of any two 32-bit ends.
template<class Visit> void walkLine(int x0, int y0, int x1, int y1, Visit visit) {
    const int64_t dx = std::abs(int64_t{x1} - x0);
    const int64_t dy = std::abs(int64_t{y1} - y0);
    const int stepX = x0 < x1 ? 1 : -1;
    const int stepY = y0 < y1 ? 1 : -1;
    int64_t error = dx - dy;
    for (int x = x0, y = y0;;) {
        visit(x, y);
        if (x == x1 && y == y1) return;
        const int64_t twice = 2 * error;
        if (twice > -dy) {
            error -= dy;
            x += stepX;
        }
        if (twice < dx) {
            error += dx;
            y += stepY;
        }
    }
}
