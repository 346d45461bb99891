// Counts what the test program takes from the heap, to hold that a frame in the steady state takes nothing.
#pragma once

#include <cstdint>

// Calls of operator new on this thread so far.
uint64_t allocationCount();
