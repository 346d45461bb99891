#include "sim/traffic.h"

#include "sim/building_kinds.h"
#include "sim/hash.h"
#include "sim/numbers.h"
#include "sim/road_network.h"

#include <algorithm>
#include <cassert>
#include <cmath>

static constexpr int BUS_STOP_REACH = 5; // cells to each side of the home
static constexpr float BUS_SHARE = 0.45f;
static constexpr float BUS_SHARE_TRANSIT_FIRST = 0.585f;

static int64_t totalOf(const WeightedList& list) { return list.sums.empty() ? 0 : list.sums.back(); }

static void add(WeightedList& list, int building, int64_t weight) {
    assert(weight > 0); // the sums must rise
    const int64_t sum = totalOf(list) + weight;
    list.buildings.push_back(building);
    list.sums.push_back(sum);
}

// The first entry whose sum is greater than `at`, or the last one.
static int pick(const WeightedList& list, int64_t at) {
    assert(!list.buildings.empty() && list.buildings.size() == list.sums.size() && at >= 0);
    const auto found = std::upper_bound(list.sums.begin(), list.sums.end(), at);
    return found == list.sums.end() ? list.buildings.back() : list.buildings[found - list.sums.begin()];
}

static void clear(WeightedList& list, size_t room) {
    list.buildings.clear();
    list.sums.clear();
    list.buildings.reserve(room);
    list.sums.reserve(room);
}

static void readRoads(City& city) {
    TrafficMemory& memory = city.memory.traffic;
    if (!updateRoadNetwork(memory.network, city)) return;
    memory.uses.resize(CELL_COUNT);
    memory.nearBusStop.resize(CELL_COUNT);
    memory.ways.reserve(COMMUTE_SAMPLES);
    memory.wayCells.reserve(COMMUTE_SAMPLES * memory.network.cells.size()); // no way passes a cell twice
}

// Fills the lists of homes and jobs. True when a bus depot works.
static bool collectCommuters(City& city) {
    TrafficMemory& memory = city.memory.traffic;
    clear(memory.homes, city.buildings.size());
    clear(memory.jobs, city.buildings.size());
    bool hasDepot = false;
    for (int i = 0; i < static_cast<int>(city.buildings.size()); i++) {
        const Building& building = city.buildings[i];
        if (!building.working) continue;
        if (building.kind == KIND_BUS_DEPOT) hasDepot = true;
        if (building.kind == KIND_HOMES) {
            const int commuters = wholePart(static_cast<float>(building.occupants) * 0.6f + 0.5f);
            if (building.occupants >= 1 && commuters >= 1) add(memory.homes, i, commuters);
        } else if (const int places = jobPlaces(building.kind, building.level); places > 0) {
            add(memory.jobs, i, places);
        }
    }
    return hasDepot;
}

static void markNearBusStops(City& city) {
    PerCell<uint8_t>& marks = city.memory.traffic.nearBusStop;
    std::fill(marks.begin(), marks.end(), uint8_t{0});
    for (int i = 0; i < CELL_COUNT; i++) {
        if (!city.cells[i].busStop) continue;
        const int x0 = std::max(i % GRID_SIZE - BUS_STOP_REACH, 0);
        const int x1 = std::min(i % GRID_SIZE + BUS_STOP_REACH, GRID_SIZE - 1);
        const int y0 = std::max(i / GRID_SIZE - BUS_STOP_REACH, 0);
        const int y1 = std::min(i / GRID_SIZE + BUS_STOP_REACH, GRID_SIZE - 1);
        for (int y = y0; y <= y1; y++) std::fill_n(&marks[cellIndex(x0, y)], x1 - x0 + 1, uint8_t{1});
    }
}

static bool takesBus(const City& city, const Building& home, int sample) {
    if (!inMap(home.x, home.y) || !city.memory.traffic.nearBusStop[cellIndex(home.x, home.y)]) return false;
    const bool transitFirst = hasPolicy(city, home.x, home.y, POLICY_TRANSIT_FIRST);
    const float share = transitFirst ? BUS_SHARE_TRANSIT_FIRST : BUS_SHARE;
    return hashUnit(static_cast<uint32_t>(sample), static_cast<uint32_t>(city.day), city.seed + 3) < share;
}

static void driveToWork(City& city, int homeIndex, int jobIndex) {
    TrafficMemory& memory = city.memory.traffic;
    const Building& home = city.buildings[homeIndex];
    const Building& job = city.buildings[jobIndex];
    const int from = roadBeside(memory.network, home.x, home.y);
    const int to = roadBeside(memory.network, job.x, job.y);
    if (from < 0 || to < 0 || !findWay(memory.network, from, to, memory.wayCells)) return;
    memory.ways.push_back({homeIndex, static_cast<uint32_t>(memory.wayCells.size())});
}

// Sends every sample to work by bus or by car. Homes are taken at even steps, so that each sends its share,
// and jobs by chance. Answers how many ride the bus.
static int drawCommutes(City& city, int samples, bool hasDepot) {
    assert(samples >= 1 && samples <= COMMUTE_SAMPLES);
    const TrafficMemory& memory = city.memory.traffic;
    const double commuters = static_cast<double>(totalOf(memory.homes));
    const int64_t jobs = totalOf(memory.jobs);
    if (jobs < 1) return 0;

    int riders = 0;
    for (int s = 0; s < samples; s++) {
        const int home = pick(memory.homes, static_cast<int64_t>((s + 0.5) * commuters / samples));
        const uint32_t hash = hashCell(static_cast<uint32_t>(s), static_cast<uint32_t>(city.day), city.seed);
        const int job = pick(memory.jobs, hash % jobs);
        if (hasDepot && takesBus(city, city.buildings[home], s))
            riders++;
        else
            driveToWork(city, home, job);
    }
    return riders;
}

// Every way that passes a cell adds `scale` to its flow, one after the other in single precision. The sums
// are made once for all cells, because a product of uses and scale would be rounded otherwise.
static void addCommutes(City& city, double scale) {
    TrafficMemory& memory = city.memory.traffic;
    std::array<float, COMMUTE_SAMPLES + 1> flowOfUses;
    flowOfUses[0] = 0.0f;
    for (int uses = 1; uses <= COMMUTE_SAMPLES; uses++)
        flowOfUses[uses] = static_cast<float>(static_cast<double>(flowOfUses[uses - 1]) + scale);

    std::fill(memory.uses.begin(), memory.uses.end(), uint16_t{0});
    for (const int cell : memory.wayCells) memory.uses[cell]++;
    for (const int cell : memory.network.cells) {
        assert(memory.uses[cell] <= memory.ways.size()); // no way passes a cell twice
        city.trafficFlow[cell] = flowOfUses[memory.uses[cell]];
    }
}

static void addTrucks(City& city) {
    for (const Building& building : city.buildings) {
        if (building.kind != KIND_FACTORY || !building.working) continue;
        const int road = roadBeside(city.memory.traffic.network, building.x, building.y);
        if (road < 0) continue;
        float trucks = static_cast<float>(building.level) * 60.0f;
        if (hasPolicy(city, building.x, building.y, POLICY_NO_TRUCKS)) trucks *= 0.5f;
        city.trafficFlow[road] += trucks;
    }
}

// 0 for a type of road that only a loaded file can hold.
static int capacityOf(int road) { return road == ROAD_AVENUE ? 2700 : road == ROAD_STREET ? 900 : 0; }

static void updateLoad(City& city) {
    std::fill(city.roadCapacity.begin(), city.roadCapacity.end(), 0);
    std::fill(city.trafficLoad.begin(), city.trafficLoad.end(), 0.0f);
    for (const int cell : city.memory.traffic.network.cells) {
        const int capacity = capacityOf(city.cells[cell].road);
        if (capacity == 0) continue;
        city.roadCapacity[cell] = capacity;
        city.trafficLoad[cell] = hold(city.trafficFlow[cell] / static_cast<float>(capacity), 0.0f, 1.0f);
    }
}

static float averageLoad(const City& city, size_t begin, size_t end) {
    const std::vector<uint16_t>& cells = city.memory.traffic.wayCells;
    assert(begin < end && end <= cells.size());
    float sum = 0.0f;
    for (size_t i = begin; i < end; i++) sum += city.trafficLoad[cells[i]];
    return sum / static_cast<float>(end - begin);
}

// The samples come in the order of their homes, so that the ways of a home lie side by side.
static void updateCongestionOfHomes(City& city) {
    const std::vector<TrafficMemory::Way>& ways = city.memory.traffic.ways;
    size_t begin = 0;
    for (size_t i = 0; i < ways.size();) {
        const int home = ways[i].home;
        float sum = 0.0f;
        int count = 0;
        for (; i < ways.size() && ways[i].home == home; i++) {
            sum += averageLoad(city, begin, ways[i].end);
            begin = ways[i].end;
            count++;
        }
        city.buildings[home].congestion = sum / static_cast<float>(count);
    }
    assert(begin == city.memory.traffic.wayCells.size());
}

static void updateCongestion(City& city) {
    for (Building& building : city.buildings) {
        const int road = roadBeside(city.memory.traffic.network, building.x, building.y);
        building.congestion = road >= 0 ? city.trafficLoad[road] : 0.0f;
    }
    updateCongestionOfHomes(city);
}

void updateTraffic(City& city) {
    TrafficMemory& memory = city.memory.traffic;
    assert(memory.ways.empty() && memory.wayCells.empty());
    readRoads(city);
    const bool hasDepot = collectCommuters(city);
    if (hasDepot) markNearBusStops(city);
    const int64_t commuters = totalOf(memory.homes);
    city.commuters = saturated(commuters);
    city.transitRiders = 0;
    std::fill(city.trafficFlow.begin(), city.trafficFlow.end(), 0.0f);

    if (commuters >= 1 && totalOf(memory.jobs) >= 1) {
        const int samples = static_cast<int>(std::min<int64_t>(commuters, COMMUTE_SAMPLES));
        const double scale = static_cast<double>(commuters) / samples;
        const int riders = drawCommutes(city, samples, hasDepot);
        city.transitRiders = saturated(static_cast<int64_t>(std::floor(riders * scale + 0.5)));
        addCommutes(city, scale);
        addTrucks(city); // nobody drives one where nobody goes to work
    }
    updateLoad(city);
    updateCongestion(city);
    memory.ways.clear();
    memory.wayCells.clear();
}
