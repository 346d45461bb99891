#include "sim/building_kinds.h"
#include "sim/hash.h"
#include "sim/networks.h"
#include "sim/numbers.h"
#include "sim/plain_rules.h"
#include "sim/traffic.h"

#include <algorithm>

namespace plain {

static constexpr int BUS_STOP_REACH = 5; // cells to each side of the home
static constexpr float BUS_SHARE = 0.45f;
static constexpr float BUS_SHARE_TRANSIT_FIRST = 0.585f;

namespace {

// Buildings with running sums of their weights, for a draw by weight.
struct PlainList {
    std::vector<int32_t> buildings;
    std::vector<int64_t> sums;

    int64_t total() const { return sums.empty() ? 0 : sums.back(); }
    void add(int building, int64_t weight) {
        buildings.push_back(building);
        sums.push_back(total() + weight);
    }
    // The first entry whose sum is greater than `at`, or the last one.
    int pick(int64_t at) const {
        const auto found = std::upper_bound(sums.begin(), sums.end(), at);
        return found == sums.end() ? buildings.back() : buildings[found - sums.begin()];
    }
};

struct Path {
    int home;
    std::vector<int32_t> cells;
};

} // namespace

static void collect(const City& city, PlainList& homes, PlainList& jobs, bool& hasDepot) {
    hasDepot = false;
    for (int i = 0; i < static_cast<int>(city.buildings.size()); i++) {
        const Building& building = city.buildings[i];
        if (!building.working) continue;
        if (building.kind == KIND_BUS_DEPOT) hasDepot = true;
        if (building.kind == KIND_HOMES) {
            const int commuters = wholePart(static_cast<float>(building.occupants) * 0.6f + 0.5f);
            if (building.occupants >= 1 && commuters >= 1) homes.add(i, commuters);
        } else if (const int places = jobPlaces(building.kind, building.level); places > 0) {
            jobs.add(i, places);
        }
    }
}

static bool hasBusStopNear(const City& city, int homeX, int homeY) {
    for (int y = homeY - BUS_STOP_REACH; y <= homeY + BUS_STOP_REACH; y++)
        for (int x = homeX - BUS_STOP_REACH; x <= homeX + BUS_STOP_REACH; x++)
            if (inMap(x, y) && city.cells[cellIndex(x, y)].busStop) return true;
    return false;
}

static bool takesBus(const City& city, const Building& home, int sample) {
    if (!inMap(home.x, home.y) || !hasBusStopNear(city, home.x, home.y)) return false;
    const bool transitFirst = hasPolicy(city, home.x, home.y, POLICY_TRANSIT_FIRST);
    const float share = transitFirst ? BUS_SHARE_TRANSIT_FIRST : BUS_SHARE;
    return hashUnit(static_cast<uint32_t>(sample), static_cast<uint32_t>(city.day), city.seed + 3) < share;
}

std::vector<int32_t> findWay(const City& city, int from, int to) {
    std::vector<int32_t> parent(CELL_COUNT, -1);
    std::vector<int32_t> queue = {from};
    parent[from] = from;
    for (size_t head = 0; head < queue.size() && parent[to] < 0; head++) {
        const int cell = queue[head];
        for (const CellStep& step : NEIGHBOURS) {
            const int x = cell % GRID_SIZE + step.x;
            const int y = cell / GRID_SIZE + step.y;
            if (!inMap(x, y)) continue;
            const int next = cellIndex(x, y);
            if (parent[next] >= 0 || city.cells[next].road == ROAD_NONE) continue;
            parent[next] = cell;
            queue.push_back(next);
        }
    }

    std::vector<int32_t> path;
    if (parent[to] < 0) return path;
    for (int cell = to; cell != from; cell = parent[cell]) path.push_back(cell);
    path.push_back(from);
    std::reverse(path.begin(), path.end());
    return path;
}

static void addTrucks(City& city) {
    for (const Building& building : city.buildings) {
        if (building.kind != KIND_FACTORY || !building.working) continue;
        const int road = adjacentRoadCell(city, building.x, building.y);
        if (road < 0) continue;
        float trucks = static_cast<float>(building.level) * 60.0f;
        if (hasPolicy(city, building.x, building.y, POLICY_NO_TRUCKS)) trucks *= 0.5f;
        city.trafficFlow[road] += trucks;
    }
}

// Draws the commutes and loads them onto the roads. Returns the paths driven by car.
static std::vector<Path> addCommutes(City& city, const PlainList& homes, const PlainList& jobs,
                                     bool hasDepot) {
    std::vector<Path> paths;
    const int64_t commuters = homes.total();
    const int samples = static_cast<int>(std::min<int64_t>(commuters, COMMUTE_SAMPLES));
    const double scale = static_cast<double>(commuters) / samples;
    int riders = 0;
    for (int s = 0; s < samples; s++) {
        const int homeIndex =
            homes.pick(static_cast<int64_t>((s + 0.5) * static_cast<double>(commuters) / samples));
        const uint32_t hash = hashCell(static_cast<uint32_t>(s), static_cast<uint32_t>(city.day), city.seed);
        const int jobIndex = jobs.pick(hash % jobs.total());
        const Building& home = city.buildings[homeIndex];
        const Building& job = city.buildings[jobIndex];
        if (hasDepot && takesBus(city, home, s)) {
            riders++;
            continue;
        }
        const int from = adjacentRoadCell(city, home.x, home.y);
        const int to = adjacentRoadCell(city, job.x, job.y);
        if (from < 0 || to < 0) continue;
        Path path{homeIndex, plain::findWay(city, from, to)};
        if (path.cells.empty()) continue;
        for (const int cell : path.cells)
            city.trafficFlow[cell] = static_cast<float>(static_cast<double>(city.trafficFlow[cell]) + scale);
        paths.push_back(std::move(path));
    }
    city.transitRiders = saturated(static_cast<int64_t>(riders * scale + 0.5));
    return paths;
}

static void updateLoad(City& city) {
    for (int i = 0; i < CELL_COUNT; i++) {
        const int capacity = city.roadCapacity[i];
        city.trafficLoad[i] =
            capacity > 0 ? hold(city.trafficFlow[i] / static_cast<float>(capacity), 0.0f, 1.0f) : 0.0f;
    }
}

static float averageLoad(const City& city, const std::vector<int32_t>& cells) {
    float sum = 0.0f;
    for (const int cell : cells) sum += city.trafficLoad[cell];
    return sum / static_cast<float>(cells.size());
}

static void updateCongestion(City& city, const std::vector<Path>& paths) {
    std::vector<float> sums(city.buildings.size(), 0.0f);
    std::vector<int32_t> counts(city.buildings.size(), 0);
    for (const Path& path : paths) {
        sums[path.home] += averageLoad(city, path.cells);
        counts[path.home]++;
    }
    for (size_t i = 0; i < city.buildings.size(); i++) {
        Building& building = city.buildings[i];
        const int road = adjacentRoadCell(city, building.x, building.y);
        if (counts[i] > 0)
            building.congestion = sums[i] / static_cast<float>(counts[i]);
        else
            building.congestion = road >= 0 ? city.trafficLoad[road] : 0.0f;
    }
}

void updateTraffic(City& city) {
    for (int i = 0; i < CELL_COUNT; i++) {
        const int road = city.cells[i].road;
        city.trafficFlow[i] = 0.0f;
        city.roadCapacity[i] = road == ROAD_AVENUE ? 2700 : road == ROAD_STREET ? 900 : 0;
    }

    PlainList homes;
    PlainList jobs;
    bool hasDepot;
    collect(city, homes, jobs, hasDepot);
    city.commuters = saturated(homes.total());
    city.transitRiders = 0;

    std::vector<Path> paths;
    if (homes.total() >= 1 && jobs.total() >= 1) {
        paths = addCommutes(city, homes, jobs, hasDepot);
        addTrucks(city);
    }
    updateLoad(city);
    updateCongestion(city, paths);
}

} // namespace plain
