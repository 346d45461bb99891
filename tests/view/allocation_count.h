// Counts what the test program takes from the heap with new, for the promise that a frame takes nothing.
#pragma once

#include <cstdint>

uint64_t allocationCount();
