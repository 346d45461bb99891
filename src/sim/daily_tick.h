// One day of the simulation.
#pragma once

#include "sim/city.h"

// Runs every pass once, in the order that is the contract between them. A bankrupt city stands still, and so
// does one that has finished its missions until `keepPlaying` is set.
void dailyTick(City& city);
