// The logo, as start-up paints it and in its plain form. Each prints a hash of its bytes.
#include "ui/logo/logo.h"
#include "ui/logo/plain_logo.h"

#include <benchmark/benchmark.h>

#include <cstdio>

static void labelWithHash(benchmark::State& state, const std::vector<uint8_t>& pixels) {
    uint64_t hash = 14695981039346656037u;
    for (const uint8_t byte : pixels) hash = (hash ^ byte) * 1099511628211u;
    char text[32];
    std::snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(hash));
    state.SetLabel(text);
}

static void BM_paintLogo(benchmark::State& state) {
    std::vector<uint8_t> pixels;
    for (auto _ : state) {
        paintLogo(static_cast<int>(state.range(0)), pixels);
        benchmark::DoNotOptimize(pixels.data());
    }
    labelWithHash(state, pixels);
}
BENCHMARK(BM_paintLogo)->Arg(64)->Arg(256)->Unit(benchmark::kMillisecond);

static void BM_plainLogo(benchmark::State& state) {
    std::vector<uint8_t> pixels;
    for (auto _ : state) {
        pixels = plainLogo(static_cast<int>(state.range(0)));
        benchmark::DoNotOptimize(pixels.data());
    }
    labelWithHash(state, pixels);
}
BENCHMARK(BM_plainLogo)->Arg(64)->Arg(256)->Unit(benchmark::kMillisecond);
