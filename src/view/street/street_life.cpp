#include "view/street/street_life.h"

#include <algorithm>
#include <cassert>

constexpr float SCAN_INTERVAL = 0.5f; // seconds of game time; spares the tools reporting each road
constexpr float SPAWN_INTERVAL = 0.12f;
constexpr int SPAWN_TRIES = 60;
constexpr float BUS_CHANCE = 0.14f;
constexpr float STRAIGHT_ON_CHANCE = 0.6f;

constexpr float JAM_SLOWDOWN = 0.6f; // share of the speed lost on a full road
constexpr float SLOWEST_ADVANCE = 0.15f;

constexpr float VEHICLES_PER_ROAD_CELL = 0.5f;
constexpr float BUSY_POPULATION = 500.0f; // from here on the streets are as full as they get
constexpr float EMPTY_TOWN_SHARE = 0.25f; // of the traffic, without anyone living there
constexpr int SURPLUS_ALLOWED = 2;        // so that a target that wavers takes no car off the road

uint32_t nextRandom(uint32_t& state) {
    assert(state != 0); // from which it would never move
    state ^= state << 13;
    state ^= state >> 17;
    state ^= state << 5;
    return state;
}

float nextRandomUnit(uint32_t& state) {
    return static_cast<float>(nextRandom(state) & 0xFFFFFFu) / 16777215.0f;
}

static int nextRandomBelow(uint32_t& state, int limit) {
    assert(limit > 0);
    return static_cast<int>(nextRandom(state) % static_cast<uint32_t>(limit));
}

void resetStreetLife(StreetLife& streetLife) {
    streetLife.vehicles.clear();
    streetLife.spawnTimer = 0.0f;
    streetLife.roadCells = 0;
    streetLife.busStops = 0;
    streetLife.scanTimer = 0.0f;
}

static bool hasRoad(const City& city, int x, int y) { return cellAt(city, x, y).road != ROAD_NONE; }

static void scanStreets(StreetLife& streetLife, const City& city) {
    streetLife.roadCells = 0;
    streetLife.busStops = 0;
    for (const Cell& cell : city.cells) {
        streetLife.roadCells += cell.road != ROAD_NONE;
        streetLife.busStops += cell.busStop != 0;
    }
}

// The straight way is taken more often than chance alone would. The pick is drawn even where it is of no use:
// a draw less, and the same town would show other traffic.
static CellStep pickWay(StreetLife& streetLife, const CellStep* ways, int wayCount, const CellStep& heading) {
    const CellStep pick = ways[nextRandomBelow(streetLife.rng, wayCount)];
    const bool canGoStraight = std::any_of(
        ways, ways + wayCount, [&](const CellStep& way) { return way.x == heading.x && way.y == heading.y; });
    if (wayCount < 2 || !canGoStraight) return pick;
    return nextRandomUnit(streetLife.rng) < STRAIGHT_ON_CHANCE ? heading : pick;
}

void stepVehicle(StreetLife& streetLife, const City& city, Vehicle& vehicle) {
    assert(!vehicle.dead);
    const CellStep heading = {vehicle.toX - vehicle.fromX, vehicle.toY - vehicle.fromY};
    CellStep ways[NEIGHBOURS.size()];
    int wayCount = 0;
    bool canTurnBack = false;
    for (const CellStep& step : NEIGHBOURS) {
        if (!hasRoad(city, vehicle.toX + step.x, vehicle.toY + step.y)) continue;
        if (step.x == -heading.x && step.y == -heading.y)
            canTurnBack = true;
        else
            ways[wayCount++] = step;
    }
    if (wayCount == 0 && !canTurnBack) {
        vehicle.dead = 1;
        return;
    }

    const CellStep way =
        wayCount > 0 ? pickWay(streetLife, ways, wayCount, heading) : CellStep{-heading.x, -heading.y};
    vehicle.fromX = vehicle.toX;
    vehicle.fromY = vehicle.toY;
    vehicle.toX = static_cast<int16_t>(vehicle.toX + way.x);
    vehicle.toY = static_cast<int16_t>(vehicle.toY + way.y);
}

static void advanceVehicle(StreetLife& streetLife, const City& city, Vehicle& vehicle, float gameDt) {
    if (!hasRoad(city, vehicle.toX, vehicle.toY)) {
        vehicle.dead = 1;
        return;
    }
    const float load = std::clamp(fieldAt(city.trafficLoad, vehicle.toX, vehicle.toY), 0.0f, 1.0f);
    // The slowest comes first: it also stands in for a load that is no number.
    vehicle.t += std::max(SLOWEST_ADVANCE, (1.0f - load * JAM_SLOWDOWN) * vehicle.speed) * gameDt;
    while (vehicle.t >= 1.0f && !vehicle.dead) {
        vehicle.t -= 1.0f;
        stepVehicle(streetLife, city, vehicle);
    }
}

int vehicleTarget(int roadCells, int population) {
    const float crowd = static_cast<float>(population) / BUSY_POPULATION;
    const float scale = crowd >= 1.0f ? 1.0f : EMPTY_TOWN_SHARE + (1.0f - EMPTY_TOWN_SHARE) * crowd;
    const float target = static_cast<float>(roadCells) * VEHICLES_PER_ROAD_CELL * scale;
    return static_cast<int>(std::clamp(target, 0.0f, static_cast<float>(VEHICLE_LIMIT)));
}

// A road cell and a road beside it, picked blindly, so that no list must follow the player's tools. False
// when chance did not meet one; the streets of a hamlet fill more slowly.
static bool findStart(StreetLife& streetLife, const City& city, Vehicle& vehicle) {
    for (int i = 0; i < SPAWN_TRIES; i++) {
        const int x = nextRandomBelow(streetLife.rng, GRID_SIZE);
        const int y = nextRandomBelow(streetLife.rng, GRID_SIZE);
        if (!hasRoad(city, x, y)) continue;
        const size_t firstWay = nextRandom(streetLife.rng) % NEIGHBOURS.size();
        for (size_t turn = 0; turn < NEIGHBOURS.size(); turn++) {
            const CellStep& way = NEIGHBOURS[(firstWay + turn) % NEIGHBOURS.size()];
            if (!hasRoad(city, x + way.x, y + way.y)) continue;
            vehicle.fromX = static_cast<int16_t>(x);
            vehicle.fromY = static_cast<int16_t>(y);
            vehicle.toX = static_cast<int16_t>(x + way.x);
            vehicle.toY = static_cast<int16_t>(y + way.y);
            return true;
        }
    }
    return false;
}

static void spawnVehicle(StreetLife& streetLife, const City& city) {
    assert(streetLife.vehicles.size() < VEHICLE_LIMIT);
    Vehicle vehicle;
    vehicle.isBus = streetLife.busStops >= 1 && nextRandomUnit(streetLife.rng) < BUS_CHANCE;
    if (!findStart(streetLife, city, vehicle)) return;
    vehicle.t = nextRandomUnit(streetLife.rng) * 0.9f;
    vehicle.colourIndex = static_cast<uint8_t>(nextRandomBelow(streetLife.rng, CAR_COLOUR_COUNT));
    vehicle.lane = (nextRandom(streetLife.rng) & 1) != 0 ? 1 : -1;
    vehicle.speed = vehicle.isBus ? 1.0f : nextRandomUnit(streetLife.rng) * 0.35f + 1.25f;
    streetLife.vehicles.push_back(vehicle);
}

// One vehicle more or one less at a time, so that nobody sees the streets fill or empty at once.
static void updateVehicleCount(StreetLife& streetLife, const City& city, int population) {
    const int target = vehicleTarget(streetLife.roadCells, population);
    const int count = static_cast<int>(streetLife.vehicles.size());
    if (count < target)
        spawnVehicle(streetLife, city);
    else if (count > target + SURPLUS_ALLOWED)
        streetLife.vehicles.pop_back();
}

static bool timeIsUp(float& timer, float interval, float gameDt) {
    timer -= gameDt;
    if (timer > 0.0f) return false;
    timer = interval;
    return true;
}

void updateStreetLife(StreetLife& streetLife, const City& city, float gameDt, int population) {
    if (!(gameDt > 0.0f)) return;
    if (timeIsUp(streetLife.scanTimer, SCAN_INTERVAL, gameDt)) scanStreets(streetLife, city);
    for (Vehicle& vehicle : streetLife.vehicles)
        if (!vehicle.dead) advanceVehicle(streetLife, city, vehicle, gameDt);
    std::erase_if(streetLife.vehicles, [](const Vehicle& vehicle) { return vehicle.dead != 0; });
    if (timeIsUp(streetLife.spawnTimer, SPAWN_INTERVAL, gameDt))
        updateVehicleCount(streetLife, city, population);
}
