// The passes and the tools in their plainest form: no memory, no tables, every cell and every building asked
// anew. The game's own forms must leave the same bytes; the benchmarks show what they save.
#pragma once

#include "sim/city.h"

namespace plain {

void updateRoadAccess(City& city);
void updateUtilities(City& city);
void updateCoverage(City& city);
void updateLandValue(City& city);
void updateTraffic(City& city);
void updatePopulation(City& city);
void updateDemand(City& city);
void growZones(City& city);
void removeCondemnedBuildings(City& city);

// The tools on one cell; a drag is nothing but one cell after the other.
bool placeRoad(City& city, int x, int y, int type);
bool bulldoze(City& city, int x, int y);

// The cells of the way that a breadth-first search finds, both ends included; empty for none.
std::vector<int32_t> findWay(const City& city, int from, int to);

// A whole day of these and of the passes that have one form only.
void dailyTick(City& city);

} // namespace plain
