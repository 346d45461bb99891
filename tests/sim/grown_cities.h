// Cities that were laid out by plan and then lived for a while. The tests hold the fast passes against the
// plain ones on them, and the benchmarks measure them.
#pragma once

#include "sim/city.h"

// Blocks of a street grid with every zone and service, from the middle of the map outwards, after `days`.
City gridCity(int columns, int rows, int days);

City townOf5000();
// The map full to its edges: some 70,000 citizens.
City bigCity();
