// The life of grown buildings: they rise on zoned land, gain and lose levels, and are abandoned.
#pragma once

#include "sim/city.h"

constexpr int DAILY_GROWTH_LIMIT = 14;

void growZones(City& city);
void updateBuildingLevels(City& city);

// Removes the records that the day condemned. What stays keeps its order, because networks serve by it.
void removeCondemnedBuildings(City& city);
