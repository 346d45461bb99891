// Commutes: at most 360 a day are drawn from homes to jobs, routed over the roads, and scaled up to the
// whole workforce.
#pragma once

#include "sim/city.h"

constexpr int COMMUTE_SAMPLES = 360;

void updateTraffic(City& city);
