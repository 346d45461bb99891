// Counts what the test program takes from the heap, to hold that a frame in the steady state takes nothing,
// and can refuse it.
#pragma once

#include <cstddef>
#include <cstdint>

// Calls of operator new on this thread so far.
uint64_t allocationCount();

// While this lives, nothing larger is to be had on this thread.
struct LittleMemory {
    explicit LittleMemory(size_t largest);
    ~LittleMemory();
    LittleMemory(const LittleMemory&) = delete;
    LittleMemory& operator=(const LittleMemory&) = delete;
};
