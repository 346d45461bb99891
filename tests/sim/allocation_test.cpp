// A day costs no memory: the passes work in what the city keeps for them.
#include "allocation_count.h"
#include "sim/daily_tick.h"
#include "sim/grown_cities.h"

#include <gtest/gtest.h>

// Allocations of the days that began and ended with as many buildings as the day before had begun with.
static uint64_t allocationsOfQuietDays(City& city, int days, int& quietDays) {
    uint64_t allocations = 0;
    size_t buildings = 0;
    quietDays = 0;
    for (int day = 0; day < days; day++) {
        const bool quiet = city.buildings.size() == buildings;
        buildings = city.buildings.size();
        const uint64_t before = allocationCount();
        dailyTick(city);
        if (!quiet || city.buildings.size() != buildings) continue;
        allocations += allocationCount() - before;
        quietDays++;
    }
    return allocations;
}

TEST(Allocation, IsCounted) {
    const uint64_t before = allocationCount();
    ::operator delete(::operator new(100)); // which no compiler may leave out
    EXPECT_EQ(allocationCount(), before + 1);
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
