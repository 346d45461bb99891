// Arbitrary operations and arbitrary cities, the same ones on every system.
#pragma once

#include "sim/city.h"

// One use of a tool, most of them around the middle of the map, some off it and some out of range. Answers
// what the tool did.
bool operate(City& city, uint32_t step);

// Anything that a save may hold and the loader lets pass.
City wildCity(uint32_t salt);
