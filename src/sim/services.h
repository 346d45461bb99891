// Fields that working buildings spread over the land: coverage by each service, pollution, land value.
#pragma once

#include "sim/city.h"

void updateCoverage(City& city);
void updateLandValue(City& city);
