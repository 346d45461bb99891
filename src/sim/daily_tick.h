// One day of the simulation. The order of its passes is the contract between them: each reads what those
// before it left, and of those behind it the figures of the day before, as growth reads the demand. In
// another order the same seed would become another city.
#pragma once

#include "sim/city.h"

// A bankrupt city stands still, and so does one that has finished its missions until `keepPlaying` is set.
void dailyTick(City& city);
