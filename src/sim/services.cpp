#include "sim/services.h"

#include "sim/building_kinds.h"
#include "sim/networks.h"

#include <algorithm>
#include <cassert>
#include <cmath>

// Indexed by CoverageIndex, in cells. The kinds from police station to bus depot stand in the same order.
static constexpr std::array<int, 6> COVERAGE_RADIUS = {14, 14, 18, 12, 9, 14};
static constexpr int COVERAGE_SERVICES = static_cast<int>(COVERAGE_RADIUS.size());
static_assert(*std::max_element(COVERAGE_RADIUS.begin(), COVERAGE_RADIUS.end()) <= COVERAGE_MARGIN);
static_assert(COVERAGE_SERVICES == COVERAGE_TRANSIT + 1 &&
              KIND_BUS_DEPOT - KIND_POLICE_STATION == COVERAGE_TRANSIT);
static constexpr int BUS_STOP_RADIUS = 3;
static constexpr uint8_t BUS_STOP_BIT = 1 << COVERAGE_SERVICES; // in CoverageMemory::providers
static constexpr int GAS_PLANT_RADIUS = 12;
static constexpr int FACTORY_RADIUS = 4;

// A budget works through this exponent, so that twice the money does not reach twice as far.
static float budgetFactor(int budget) {
    const float share = static_cast<float>(budget) / 100.0f;
    return static_cast<float>(std::pow(static_cast<double>(share), 0.6));
}

// 1 - d / radius over the square around a centre, row by row, and how far the disc reaches to both sides in
// each row, so that nobody asks each cell whether it lies inside.
struct Kernel {
    int radius;
    std::vector<int> halfWidths;
    std::vector<float> nearness;
};

static Kernel makeKernel(int radius) {
    Kernel kernel{radius, {}, {}};
    for (int dy = -radius; dy <= radius; dy++) {
        int halfWidth = 0;
        for (int dx = -radius; dx <= radius; dx++) {
            const float distance = static_cast<float>(std::sqrt(static_cast<double>(dx * dx + dy * dy)));
            kernel.nearness.push_back(1.0f - distance / static_cast<float>(radius));
            if (distance <= static_cast<float>(radius)) halfWidth = std::max(halfWidth, dx);
        }
        kernel.halfWidths.push_back(halfWidth);
    }
    return kernel;
}

static const Kernel& coverageKernel(int service) {
    static const std::array<Kernel, 6> kernels = [] {
        std::array<Kernel, 6> all;
        std::transform(COVERAGE_RADIUS.begin(), COVERAGE_RADIUS.end(), all.begin(), makeKernel);
        return all;
    }();
    assert(service >= 0 && service < COVERAGE_SERVICES);
    return kernels[service];
}

static const Kernel& busStopKernel() {
    static const Kernel kernel = makeKernel(BUS_STOP_RADIUS);
    return kernel;
}

// Calls visit(cell, nearness) for every cell on the map within the kernel's radius.
template<class Visit>
static void forEachCellAround(int centreX, int centreY, const Kernel& kernel, Visit visit) {
    const int radius = kernel.radius;
    assert(kernel.nearness.size() == static_cast<size_t>((2 * radius + 1) * (2 * radius + 1)));
    const int y0 = std::max(centreY - radius, 0);
    const int y1 = std::min(centreY + radius, GRID_SIZE - 1);
    for (int y = y0; y <= y1; y++) {
        const int row = y - centreY + radius;
        const int x0 = std::max(centreX - kernel.halfWidths[row], 0);
        const int x1 = std::min(centreX + kernel.halfWidths[row], GRID_SIZE - 1);
        const float* nearness = &kernel.nearness[row * (2 * radius + 1) + radius];
        for (int x = x0; x <= x1; x++) visit(cellIndex(x, y), nearness[x - centreX]);
    }
}

using Providers = decltype(CoverageMemory::providers);

static bool isPlace(int x, int y) {
    return x >= -COVERAGE_MARGIN && y >= -COVERAGE_MARGIN && x < GRID_SIZE + COVERAGE_MARGIN &&
           y < GRID_SIZE + COVERAGE_MARGIN;
}

static int placeIndex(int x, int y) {
    const int index = (y + COVERAGE_MARGIN) * COVERAGE_SIDE + x + COVERAGE_MARGIN;
    assert(isPlace(x, y) && index >= 0 && index < COVERAGE_SIDE * COVERAGE_SIDE);
    return index;
}

static void collectProviders(const City& city, Providers& providers) {
    providers.fill(0);
    for (const Building& building : city.buildings) {
        const int service = building.kind - KIND_POLICE_STATION;
        if (service < 0 || service >= COVERAGE_SERVICES || !building.working) continue;
        if (isPlace(building.x, building.y)) providers[placeIndex(building.x, building.y)] |= 1 << service;
    }
    for (int y = 0; y < GRID_SIZE; y++)
        for (int x = 0; x < GRID_SIZE; x++)
            if (city.cells[cellIndex(x, y)].busStop) providers[placeIndex(x, y)] |= BUS_STOP_BIT;
}

// Brings the inputs of the memory up to date. Answers a bit for each service whose inputs are others than
// in the run before.
static int updateProviders(City& city) {
    CoverageMemory& memory = city.memory.coverage;
    Providers providers;
    collectProviders(city, providers);
    int changed = 0;
    for (size_t i = 0; i < providers.size(); i++) changed |= providers[i] ^ memory.providers[i];
    if (changed & BUS_STOP_BIT) changed |= 1 << COVERAGE_TRANSIT;
    memory.providers = providers;
    for (int service = 0; service < COVERAGE_SERVICES; service++) {
        if (memory.budgets[service] != city.serviceBudget[service]) changed |= 1 << service;
        memory.budgets[service] = city.serviceBudget[service];
    }
    return changed;
}

// Spreads the service from every place that has the bit. The highest value stays on each cell, so that a bit
// is enough for any number of providers, in any order. It may pass 1: held there, a budget above 100 would be
// lost on those who live beside the service.
static void spreadService(const CoverageMemory& memory, Grid& grid, int bit, const Kernel& kernel,
                          float strength, float factor) {
    for (int y = -COVERAGE_MARGIN; y < GRID_SIZE + COVERAGE_MARGIN; y++)
        for (int x = -COVERAGE_MARGIN; x < GRID_SIZE + COVERAGE_MARGIN; x++) {
            if (!(memory.providers[placeIndex(x, y)] & bit)) continue;
            forEachCellAround(x, y, kernel, [&](int cell, float nearness) {
                grid[cell] = std::max(grid[cell], strength * nearness * factor);
            });
        }
}

static void drawCoverage(CoverageMemory& memory, int service) {
    Grid& grid = memory.grids[service];
    const float factor = budgetFactor(memory.budgets[service]);
    std::fill(grid.begin(), grid.end(), 0.0f);
    spreadService(memory, grid, 1 << service, coverageKernel(service), 1.0f, factor);
    // A stop serves its surroundings without a depot too, though it then carries nobody.
    if (service == COVERAGE_TRANSIT) spreadService(memory, grid, BUS_STOP_BIT, busStopKernel(), 0.6f, factor);
}

void updateCoverage(City& city) {
    const int changed = updateProviders(city);
    for (int service = 0; service < COVERAGE_SERVICES; service++) {
        if (changed & (1 << service)) drawCoverage(city.memory.coverage, service);
        city.coverage[service] = city.memory.coverage.grids[service];
    }
    for (int unused = COVERAGE_SERVICES; unused < COVERAGE_COUNT; unused++)
        std::fill(city.coverage[unused].begin(), city.coverage[unused].end(), 0.0f);
}

static float factorySmoke(const City& city, const Building& factory) {
    const float strength = static_cast<float>(factory.level) * 0.22f;
    return hasPolicy(city, factory.x, factory.y, POLICY_SMOKE_FREE) ? strength * 0.4f : strength;
}

static void spreadPollution(Grid& pollution, const Building& source, const Kernel& kernel, float strength) {
    forEachCellAround(source.x, source.y, kernel,
                      [&](int cell, float nearness) { pollution[cell] += nearness * strength; });
}

static void updatePollution(City& city) {
    static const Kernel gasPlant = makeKernel(GAS_PLANT_RADIUS);
    static const Kernel factory = makeKernel(FACTORY_RADIUS);
    std::fill(city.pollution.begin(), city.pollution.end(), 0.0f);
    for (const Building& building : city.buildings) {
        if (!building.working) continue;
        if (building.kind == KIND_GAS_POWER_PLANT)
            spreadPollution(city.pollution, building, gasPlant, 0.9f);
        else if (building.kind == KIND_FACTORY)
            spreadPollution(city.pollution, building, factory, factorySmoke(city, building));
    }
    for (int i = 0; i < CELL_COUNT; i++) {
        if (city.cells[i].road) city.pollution[i] += city.trafficLoad[i] * 0.35f;
        city.pollution[i] = std::clamp(city.pollution[i], 0.0f, 1.0f);
    }
}

static float terrainValue(int terrain) {
    constexpr std::array<float, 5> VALUES = {0.45f, 0.55f, 0.2f, 0.05f, 0.4f};
    // A loaded file may hold any terrain.
    return terrain < static_cast<int>(VALUES.size()) ? VALUES[terrain] : VALUES[TERRAIN_GRASS];
}

static float computeLandValue(const City& city, int x, int y) {
    const int i = cellIndex(x, y);
    const auto coverage = [&city, i](int service) { return city.coverage[service][i]; };
    float value = terrainValue(city.cells[i].terrain);
    value += coverage(COVERAGE_PARKS) * 0.25f;
    value += coverage(COVERAGE_EDUCATION) * 0.1f;
    value += (coverage(COVERAGE_POLICE) + coverage(COVERAGE_FIRE) + coverage(COVERAGE_HEALTH)) * 0.08f;
    if (touchesRoad(city, x, y)) value += 0.08f;
    value -= city.pollution[i] * 0.4f;
    value -= city.trafficLoad[i] * 0.2f;
    return std::clamp(value, 0.0f, 1.0f);
}

void updateLandValue(City& city) {
    updatePollution(city);
    for (int y = 0; y < GRID_SIZE; y++)
        for (int x = 0; x < GRID_SIZE; x++) city.landValue[cellIndex(x, y)] = computeLandValue(city, x, y);
    for (Building& building : city.buildings)
        building.pollutionHere = fieldAt(city.pollution, building.x, building.y);
    city.overlayDirty = 1;
}
