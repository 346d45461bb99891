// A day costs no memory: the passes work in what the city keeps for them.
#include "sim/city_helpers.h"
#include "sim/daily_tick.h"
#include "sim/grown_cities.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <new>

static size_t allocationCount = 0;

void* operator new(size_t size) {
    allocationCount++;
    if (void* memory = std::malloc(size ? size : 1)) return memory;
    throw std::bad_alloc();
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, size_t) noexcept { std::free(memory); }

// Allocations of the days that began and ended with as many buildings as the day before had begun with.
static size_t allocationsOfQuietDays(City& city, int days, int& quietDays) {
    size_t allocations = 0;
    size_t buildings = 0;
    quietDays = 0;
    for (int day = 0; day < days; day++) {
        const bool quiet = city.buildings.size() == buildings;
        buildings = city.buildings.size();
        const size_t before = allocationCount;
        dailyTick(city);
        if (!quiet || city.buildings.size() != buildings) continue;
        allocations += allocationCount - before;
        quietDays++;
    }
    return allocations;
}

TEST(Allocation, IsCounted) {
    const size_t before = allocationCount;
    const std::vector<int> memory(100);
    EXPECT_EQ(allocationCount, before + 1);
}

TEST(Allocation, NoDayOfAGrownTownNeedsAny) {
    City city = townOf5000();
    dailyTick(city);
    int quietDays;
    EXPECT_EQ(allocationsOfQuietDays(city, 100, quietDays), 0u);
    EXPECT_GT(quietDays, 50);
}

TEST(Allocation, NoDayOfAFullMapNeedsAny) {
    City city = gridCity(9, 15, 150);
    dailyTick(city);
    int quietDays;
    EXPECT_EQ(allocationsOfQuietDays(city, 60, quietDays), 0u);
    EXPECT_GT(quietDays, 5);
}
