// The roads as commuters see them: what hangs together, and the way from one cell to another.
#pragma once

#include "sim/city.h"

// Reads the roads again. False when none has changed since the last time.
bool updateRoadNetwork(RoadNetwork& network, const City& city);

// Index of the first neighbouring cell with a road, in the order of NEIGHBOURS; -1 for none.
int roadBeside(const RoadNetwork& network, int x, int y);

// Appends the cells from `from` to `to`, both included, both of them roads. Of the shortest ways it takes the
// one whose first step that differs comes first in NEIGHBOURS. False when there is no way.
bool findWay(RoadNetwork& network, int from, int to, std::vector<uint16_t>& way);
