#include "sim/road_network.h"

#include <algorithm>
#include <bit>
#include <cassert>

// Steps away from the target that a way may take before the search gives up following its nose.
static constexpr int MAX_DETOURS = 8;
// Cells that the search by nose may enter before a search over the whole network is cheaper.
static constexpr int NOSE_LIMIT = 400;
static constexpr int LONGEST_NOSE_WAY = 2 * (GRID_SIZE - 1) + 2 * MAX_DETOURS + 1;

// Cells and marks are kept in 16 bits, steps to the target in 8.
static_assert(CELL_COUNT <= UINT16_MAX && GRID_SIZE <= INT8_MAX);

static constexpr std::array<int, 4> OFFSETS = {1, -1, GRID_SIZE, -GRID_SIZE};

static void readRoads(RoadNetwork& network, const City& city) {
    network.type.resize(CELL_COUNT);
    network.exits.assign(CELL_COUNT, 0);
    network.cells.clear();
    for (int i = 0; i < CELL_COUNT; i++) {
        network.type[i] = city.cells[i].road;
        if (!network.type[i]) continue;
        network.cells.push_back(static_cast<uint16_t>(i));
        const int x = i % GRID_SIZE;
        const int y = i / GRID_SIZE;
        // Seen from the neighbour, this road lies on the opposite side.
        if (x + 1 < GRID_SIZE) network.exits[i + 1] |= 2;
        if (x > 0) network.exits[i - 1] |= 1;
        if (y + 1 < GRID_SIZE) network.exits[i + GRID_SIZE] |= 8;
        if (y > 0) network.exits[i - GRID_SIZE] |= 4;
    }
}

static void floodRegion(RoadNetwork& network, int start, uint16_t region) {
    assert(network.type[start] && region > 0);
    network.queue.clear();
    network.queue.push_back(static_cast<uint16_t>(start));
    network.region[start] = region;
    for (size_t head = 0; head < network.queue.size(); head++) {
        const int cell = network.queue[head];
        for (unsigned exits = network.exits[cell]; exits; exits &= exits - 1) {
            const int next = cell + OFFSETS[std::countr_zero(exits)];
            if (network.region[next]) continue;
            network.region[next] = region;
            network.queue.push_back(static_cast<uint16_t>(next));
        }
    }
}

static bool isUpToDate(const RoadNetwork& network, const City& city) {
    if (network.type.empty()) return false;
    for (int i = 0; i < CELL_COUNT; i++)
        if (network.type[i] != city.cells[i].road) return false;
    return true;
}

bool updateRoadNetwork(RoadNetwork& network, const City& city) {
    if (isUpToDate(network, city)) return false;

    readRoads(network, city);
    network.queue.reserve(CELL_COUNT);
    network.reached.resize(CELL_COUNT);
    network.cameFrom.resize(CELL_COUNT);
    network.region.assign(CELL_COUNT, 0);
    uint16_t regions = 0;
    for (const int cell : network.cells)
        if (!network.region[cell]) floodRegion(network, cell, ++regions);
    return true;
}

int roadBeside(const RoadNetwork& network, int x, int y) {
    assert(network.exits.size() == CELL_COUNT); // the roads have been read
    if (inMap(x, y)) {
        const int cell = cellIndex(x, y);
        const unsigned exits = network.exits[cell];
        return exits ? cell + OFFSETS[std::countr_zero(exits)] : -1;
    }
    // A building of a loaded file may stand off the map beside a road at its edge.
    for (const CellStep& step : NEIGHBOURS)
        if (inMap(x + step.x, y + step.y) && network.type[cellIndex(x + step.x, y + step.y)])
            return cellIndex(x + step.x, y + step.y);
    return -1;
}

// A cell on the way of a search by nose.
struct Place {
    uint16_t cell;
    int8_t dx; // to the target
    int8_t dy;
    uint8_t untried; // exits
    uint8_t towards; // exits that lead towards the target
    int8_t detoursLeft;
};

struct Nose {
    int target;
    int entered = 0; // cells, in all tries together
    std::array<Place, LONGEST_NOSE_WAY> places;
};

// Depth-first from `from`, exits in their order, with at most `detours` steps away from the target. A cell is
// not entered again with no more detours left than before. If it has been left, what failed then fails now.
// If it is still on the way, the way would close a loop, and without the loop a try with fewer detours would
// have succeeded. Answers the length of the way, 0 for none.
static int followNose(RoadNetwork& network, Nose& nose, int from, int detours) {
    int length = 0;
    int cell = from;
    int dx = nose.target % GRID_SIZE - from % GRID_SIZE;
    int dy = nose.target / GRID_SIZE - from / GRID_SIZE;
    while (true) {
        network.reached[cell] = static_cast<uint16_t>(network.mark + detours);
        const int towards = (dx > 0) | (dx < 0) << 1 | (dy > 0) << 2 | (dy < 0) << 3;
        const int exits = network.exits[cell];
        assert(length < LONGEST_NOSE_WAY);
        Place* place = &nose.places[length++];
        *place = {static_cast<uint16_t>(cell),   static_cast<int8_t>(dx),
                  static_cast<int8_t>(dy),       static_cast<uint8_t>(detours > 0 ? exits : exits & towards),
                  static_cast<uint8_t>(towards), static_cast<int8_t>(detours)};
        if (cell == nose.target) return length;
        if (++nose.entered > NOSE_LIMIT) return 0;

        do {
            while (!place->untried) {
                if (--length == 0) return 0;
                place--;
            }
            const int exit = std::countr_zero(place->untried);
            place->untried = static_cast<uint8_t>(place->untried & (place->untried - 1));
            cell = place->cell + OFFSETS[exit];
            assert(network.type[cell]);
            dx = place->dx - NEIGHBOURS[exit].x;
            dy = place->dy - NEIGHBOURS[exit].y;
            detours = place->detoursLeft - (place->towards >> exit & 1 ? 0 : 1);
        } while (network.reached[cell] >= network.mark + detours);
    }
}

static void searchBreadthFirst(RoadNetwork& network, int from, int to) {
    const uint16_t mark = network.mark;
    network.queue.clear();
    network.queue.push_back(static_cast<uint16_t>(from));
    network.reached[from] = mark;
    for (size_t head = 0; network.reached[to] != mark; head++) {
        assert(head < network.queue.size());
        const int cell = network.queue[head];
        for (unsigned exits = network.exits[cell]; exits; exits &= exits - 1) {
            const int next = cell + OFFSETS[std::countr_zero(exits)];
            if (network.reached[next] == mark) continue;
            network.reached[next] = mark;
            network.cameFrom[next] = static_cast<uint16_t>(cell);
            network.queue.push_back(static_cast<uint16_t>(next));
        }
    }
}

// Begins above all marks of the last search, `mark` to `mark` + MAX_DETOURS, so that none must be cleared.
static void startSearch(RoadNetwork& network) {
    constexpr int STEP = MAX_DETOURS + 1;
    if (network.mark > UINT16_MAX - 2 * STEP) {
        std::fill(network.reached.begin(), network.reached.end(), uint16_t{0});
        network.mark = 0;
    }
    network.mark = static_cast<uint16_t>(network.mark + STEP);
}

// A breadth-first search, exits in their order, finds the way that comes first by its steps among the
// shortest. Roads are mostly straight, so that the same way is mostly found faster by walking towards the
// target, with one detour more after each failure: the first success is a shortest way, and the walk tries
// its steps in the same order.
bool findWay(RoadNetwork& network, int from, int to, std::vector<uint16_t>& way) {
    assert(network.type[from] && network.type[to]);
    if (network.region[from] != network.region[to]) return false;

    startSearch(network);
    Nose nose;
    nose.target = to;
    for (int detours = 0; detours <= MAX_DETOURS && nose.entered < NOSE_LIMIT; detours++) {
        const int length = followNose(network, nose, from, detours);
        for (int i = 0; i < length; i++) way.push_back(nose.places[i].cell);
        if (length > 0) return true;
    }

    startSearch(network);
    searchBreadthFirst(network, from, to);
    const size_t begin = way.size();
    for (int cell = to; cell != from; cell = network.cameFrom[cell])
        way.push_back(static_cast<uint16_t>(cell));
    way.push_back(static_cast<uint16_t>(from));
    std::reverse(way.begin() + static_cast<ptrdiff_t>(begin), way.end());
    return true;
}
