// Everything that a player and a day can do to a city, for cities that no game would make.
#pragma once

#include "sim/city.h"

// Runs tools, rates, days, figures and a save over the city, chosen and placed by `salt`. All must stay
// within memory and end, whatever the city holds. False if what it saved does not load again.
bool exerciseCity(City& city, uint32_t salt);
