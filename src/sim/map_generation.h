// New land from a 32-bit seed: a flat disc in the middle, two hill masses in opposite corners, lakes where
// the height falls low.
#pragma once

#include "sim/city.h"

// Resets every field of the city to the start of a game but two: `calendarDay`, because the sun's year runs
// on from one game to the next, and `eventCount`, because only a number never seen before is news.
void generateMap(City& city, uint32_t seed);
