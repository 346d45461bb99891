// The passes over the land, each in the plain form and as the game runs it, on a town of 5,000 and on a map
// full to its edges. The hash of the city after one pass stands beside the time: both forms print the same.
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

static void runPass(benchmark::State& state, const City& (*grownCity)(), Pass pass) {
    City city = grownCity();
    pass(city);
    const CityHashes hashes = cityHashes(city);
    char label[80];
    std::snprintf(label, sizeof label, "%d citizens, hash %016llx", city.population,
                  static_cast<unsigned long long>(hashes.buildings ^ hashes.services ^ hashes.economy));
    state.SetLabel(label);
    for (auto _ : state) pass(city);
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

static void registerPass(const char* name, Pass plainPass, Pass pass) {
    const auto add = [name](const char* place, const char* form, const City& (*grownCity)(), Pass run) {
        const std::string full = std::string(name) + "/" + place + "/" + form;
        benchmark::RegisterBenchmark(full.c_str(), runPass, grownCity, run);
    };
    if (plainPass) add("town", "plain", town, plainPass);
    add("town", "game", town, pass);
    if (plainPass) add("metropolis", "plain", metropolis, plainPass);
    add("metropolis", "game", metropolis, pass);
}

int main(int argc, char** argv) {
    registerPass("updateUtilities", plain::updateUtilities, updateUtilities);
    registerPass("updateCoverage", plain::updateCoverage, updateCoverage);
    registerPass("updateLandValue", plain::updateLandValue, updateLandValue);
    registerPass("updateFinance", nullptr, updateFinance);
    registerPass("streetLaidAndRemoved", plainLayAndRemoveStreet, layAndRemoveStreet);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
