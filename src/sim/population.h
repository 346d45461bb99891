// Residents, workers, goods, happiness, and the demand that drives the growth of zones.
#pragma once

#include "sim/city.h"

void updatePopulation(City& city);
void updateDemand(City& city);
