#include "allocation_count.h"

#include <cstdlib>
#include <new>

static thread_local uint64_t count = 0;
static thread_local size_t largest = SIZE_MAX; // that is granted

uint64_t allocationCount() { return count; }

LittleMemory::LittleMemory(size_t bytes) { largest = bytes; }
LittleMemory::~LittleMemory() { largest = SIZE_MAX; }

void* operator new(size_t size) {
    count++;
    void* memory = size <= largest ? std::malloc(size != 0 ? size : 1) : nullptr;
    if (memory) return memory;
    throw std::bad_alloc();
}

// Replaced together with the plain one, because the sanitizer insists on pairs and graphics drivers use both.
void* operator new(size_t size, const std::nothrow_t&) noexcept {
    count++;
    return std::malloc(size != 0 ? size : 1);
}

void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, size_t) noexcept { std::free(memory); }
