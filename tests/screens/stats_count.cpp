#include "screens/stats_count.h"

#include "sim/city_stats.h"

static int computed = 0;

int statsComputed() { return computed; }

// The linker sends every call of computeStats here first; asm names are those that it gives to both.
CityStats realStats(const City& city) asm("__real__Z12computeStatsRK4City");
CityStats countedStats(const City& city) asm("__wrap__Z12computeStatsRK4City");

CityStats countedStats(const City& city) {
    computed++;
    return realStats(city);
}
