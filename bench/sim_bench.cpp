// The passes over the land and the drags that change it, each in the plain form and as the game runs it, on a
// town of 5,000 and on a map full to its edges. The hash of the city after one run stands beside the time:
// both forms print the same.
#include "sim/build_tools.h"
#include "sim/building_kinds.h"
#include "sim/city_helpers.h"
#include "sim/finance.h"
#include "sim/grown_cities.h"
#include "sim/networks.h"
#include "sim/plain_rules.h"
#include "sim/services.h"

#include <benchmark/benchmark.h>

#include <cstdio>

using Pass = void (*)(City& city);

static const City& town() {
    static const City city = townOf5000();
    return city;
}

static const City& metropolis() {
    static const City city = bigCity();
    return city;
}

// A building on every lot between streets.
static const City& fullLots() {
    static const City city = [] {
        City lots = flatCity();
        for (int y = 1; y < GRID_SIZE; y += 3) layRoads(lots, 0, y, GRID_SIZE - 1, y);
        for (int i = 0; i < CELL_COUNT; i++)
            if (!lots.cells[i].road)
                addBuilding(lots, i % GRID_SIZE, i / GRID_SIZE, static_cast<uint8_t>(i % KIND_COUNT));
        updateUtilities(lots);
        return lots;
    }();
    return city;
}

static void labelRun(benchmark::State& state, const City& city) {
    const CityHashes hashes = cityHashes(city);
    char label[80];
    std::snprintf(label, sizeof label, "%d citizens, hash %016llx", city.population,
                  static_cast<unsigned long long>(hashes.buildings ^ hashes.services ^ hashes.economy));
    state.SetLabel(label);
}

static void runPass(benchmark::State& state, const City& (*grownCity)(), Pass pass) {
    City city = grownCity();
    pass(city);
    labelRun(state, city);
    for (auto _ : state) pass(city);
}

// A drag leaves nothing to do for a second one: each starts on the city as it was.
static void runDrag(benchmark::State& state, const City& (*grownCity)(), Pass drag) {
    City city = grownCity();
    for (auto _ : state) {
        state.PauseTiming();
        city = grownCity();
        state.ResumeTiming();
        drag(city);
    }
    labelRun(state, city);
}

static void bulldozeEverything(City& city) { bulldozeRect(city, 0, 0, GRID_SIZE - 1, GRID_SIZE - 1); }

static void plainBulldozeEverything(City& city) {
    for (int i = 0; i < CELL_COUNT; i++) plain::bulldoze(city, i % GRID_SIZE, i / GRID_SIZE);
}

// Along the free edge of the map.
static void layStreet(City& city) { placeRoadLine(city, 1, 0, 20, 0, ROAD_STREET); }

static void plainLayStreet(City& city) {
    for (int x = 1; x <= 20; x++) plain::placeRoad(city, x, 0, ROAD_STREET);
}

// A free cell beside a building, so that the road changes who has access.
static int freeCellBesideABuilding(const City& city) {
    for (const Building& building : city.buildings)
        if (canPlaceRoad(city, building.x - 1, building.y, ROAD_STREET))
            return cellIndex(building.x - 1, building.y);
    return 0;
}

// A street cell is laid and taken away again: two changes of the network.
static void layAndRemoveStreet(City& city) {
    const int cell = freeCellBesideABuilding(city);
    placeRoad(city, cell % GRID_SIZE, cell / GRID_SIZE, ROAD_STREET);
    bulldoze(city, cell % GRID_SIZE, cell / GRID_SIZE);
}

static void plainLayAndRemoveStreet(City& city) {
    const int cell = freeCellBesideABuilding(city);
    city.money -= roadCost(ROAD_STREET);
    for (const uint8_t road : {ROAD_STREET, ROAD_NONE}) {
        city.cells[cell].road = road;
        plain::updateRoadAccess(city);
        plain::updateUtilities(city);
    }
}

using Run = void (*)(benchmark::State& state, const City& (*grownCity)(), Pass pass);

static void add(const std::string& name, Run run, const City& (*grownCity)(), Pass plainPass, Pass pass) {
    if (plainPass) benchmark::RegisterBenchmark((name + "/plain").c_str(), run, grownCity, plainPass);
    benchmark::RegisterBenchmark((name + "/game").c_str(), run, grownCity, pass);
}

static void addPass(const std::string& name, Pass plainPass, Pass pass) {
    add(name + "/town", runPass, town, plainPass, pass);
    add(name + "/metropolis", runPass, metropolis, plainPass, pass);
}

static void addDrag(const std::string& name, Pass plainDrag, Pass drag) {
    add(name + "/town", runDrag, town, plainDrag, drag);
    add(name + "/metropolis", runDrag, metropolis, plainDrag, drag);
}

int main(int argc, char** argv) {
    addPass("updateUtilities", plain::updateUtilities, updateUtilities);
    addPass("updateCoverage", plain::updateCoverage, updateCoverage);
    addPass("updateLandValue", plain::updateLandValue, updateLandValue);
    addPass("updateFinance", nullptr, updateFinance);
    addPass("streetLaidAndRemoved", plainLayAndRemoveStreet, layAndRemoveStreet);
    addDrag("bulldozeEverything", plainBulldozeEverything, bulldozeEverything);
    add("bulldozeEverything/fullLots", runDrag, fullLots, nullptr,
        bulldozeEverything); // plain: half a minute
    addDrag("layStreet", plainLayStreet, layStreet);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
