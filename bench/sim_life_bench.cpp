// A day of the city and its livelier passes, each in the plain form and as the game runs it: on the demo
// town, on a metropolis of 5,000 and on a map full to its edges. The hash of the city after one run stands
// beside the time: both forms print the same.
#include "sim/city_helpers.h"
#include "sim/daily_tick.h"
#include "sim/grown_cities.h"
#include "sim/growth.h"
#include "sim/plain_rules.h"
#include "sim/population.h"
#include "sim/towns.h"
#include "sim/traffic.h"

#include <benchmark/benchmark.h>

#include <cstdio>

using Pass = void (*)(City& city);

static const City& demoTown() {
    static const City city = townAtDay(demoTownScript(), 60);
    return city;
}

static const City& metropolis() {
    static const City city = townAtDay(metropolisScript(), 200);
    return city;
}

static const City& fullMap() {
    static const City city = bigCity();
    return city;
}

static void runPass(benchmark::State& state, const City& (*town)(), Pass pass) {
    City city = town();
    pass(city);
    char label[80];
    std::snprintf(label, sizeof label, "%d citizens, hash %016llx", city.population,
                  static_cast<unsigned long long>(cityHash(city)));
    state.SetLabel(label);
    for (auto _ : state) pass(city);
}

static void registerPass(const char* name, Pass plainPass, Pass pass) {
    const auto add = [name](const char* place, const char* form, const City& (*town)(), Pass run) {
        const std::string full = std::string(name) + "/" + place + "/" + form;
        benchmark::RegisterBenchmark(full.c_str(), runPass, town, run)->Unit(benchmark::kMicrosecond);
    };
    const auto addBoth = [&](const char* place, const City& (*town)()) {
        add(place, "plain", town, plainPass);
        add(place, "game", town, pass);
    };
    addBoth("demo", demoTown);
    addBoth("metropolis", metropolis);
    addBoth("fullMap", fullMap);
}

int main(int argc, char** argv) {
    registerPass("dailyTick", plain::dailyTick, dailyTick);
    registerPass("updateTraffic", plain::updateTraffic, updateTraffic);
    registerPass("updatePopulation", plain::updatePopulation, updatePopulation);
    registerPass("growZones", plain::growZones, growZones);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
