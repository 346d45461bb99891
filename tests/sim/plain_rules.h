// The passes in their plainest form: no memory, no tables, every cell and every building asked anew. The
// game's own forms must leave the same bytes; the benchmarks show what they save.
#pragma once

#include "sim/city.h"

namespace plain {

void updateRoadAccess(City& city);
void updateUtilities(City& city);
void updateCoverage(City& city);
void updateLandValue(City& city);

} // namespace plain
