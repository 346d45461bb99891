// Saves that differ from a good one in what the input says. A whole save is 150 kB of which most is land, so
// the input is not the file but a list of changes to it: what the fuzzer alters then always is something that
// matters.
#pragma once

#include "fuzz_input.h"

#include <vector>

using Bytes = std::vector<uint8_t>;

// Takes all that is left of the input.
Bytes damagedSave(Input& input);
