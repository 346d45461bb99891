// Saves and loads. The hash of the city stands beside the time.
#include "sim/city_helpers.h"
#include "sim/grown_cities.h"
#include "sim/save_file.h"
#include "temp_dir.h"

#include <benchmark/benchmark.h>

#include <cstdio>

static const City& town() {
    static const City city = townOf5000();
    return city;
}

static const City& metropolis() {
    static const City city = bigCity();
    return city;
}

static void label(benchmark::State& state, const City& city) {
    char text[80];
    std::snprintf(text, sizeof text, "%d citizens, hash %016llx", city.population,
                  static_cast<unsigned long long>(cityHash(city)));
    state.SetLabel(text);
}

static void runEncode(benchmark::State& state, const City& (*grownCity)()) {
    const City& city = grownCity();
    for (auto _ : state) benchmark::DoNotOptimize(encodeCity(city));
    label(state, city);
}
BENCHMARK_CAPTURE(runEncode, town, town)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(runEncode, metropolis, metropolis)->Unit(benchmark::kMicrosecond);

static void runSave(benchmark::State& state, const City& (*grownCity)()) {
    const TempDir dir;
    const City& city = grownCity();
    bool saved = true;
    for (auto _ : state) saved = saved && saveCity(city, dir.file("city.ovw"));
    if (!saved) state.SkipWithError("not saved");
    label(state, city);
}
BENCHMARK_CAPTURE(runSave, town, town)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(runSave, metropolis, metropolis)->Unit(benchmark::kMicrosecond);

// Most of a load are the passes that rebuild the derived fields.
static void runLoad(benchmark::State& state, const City& (*grownCity)()) {
    const TempDir dir;
    City city = grownCity();
    bool loaded = saveCity(city, dir.file("city.ovw"));
    for (auto _ : state) loaded = loaded && loadCity(city, dir.file("city.ovw"));
    if (!loaded) state.SkipWithError("not loaded");
    city.eventCount = 0; // counts the loads
    label(state, city);
}
BENCHMARK_CAPTURE(runLoad, town, town)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(runLoad, metropolis, metropolis)->Unit(benchmark::kMicrosecond);

// What a load costs without the passes: everything is read, the last byte is missing.
static void runRefuse(benchmark::State& state, const City& (*grownCity)()) {
    City city = grownCity();
    const std::vector<uint8_t> bytes = encodeCity(city);
    for (auto _ : state) benchmark::DoNotOptimize(decodeCity(city, bytes.data(), bytes.size() - 1));
    label(state, city);
}
BENCHMARK_CAPTURE(runRefuse, town, town)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(runRefuse, metropolis, metropolis)->Unit(benchmark::kMicrosecond);
