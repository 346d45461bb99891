// Commutes: at most COMMUTE_SAMPLES a day are drawn from homes to jobs, routed over the roads, and scaled up
// to the whole workforce.
#pragma once

#include "sim/city.h"

void updateTraffic(City& city);
