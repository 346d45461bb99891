#include "view/street/street_life.h"

#include "allocation_count.h"
#include "sim/city_helpers.h"
#include "view/street/street_life_cases.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <map>

// Cells 10 to `lastX` of row 10 are a street.
static City streetTown(int lastX) {
    City city = flatCity();
    layRoads(city, 10, 10, lastX, 10);
    return city;
}

// A town full of crossings, with 756 road cells.
static City gridTown() {
    City city = flatCity();
    for (int i = 10; i <= 50; i += 4) {
        layRoads(city, 10, i, 50, i);
        layRoads(city, i, 10, i, 50);
    }
    return city;
}

static Vehicle vehicleOn(const CellStep& from, const CellStep& to, float speed = 1.0f) {
    Vehicle vehicle;
    vehicle.fromX = static_cast<int16_t>(from.x);
    vehicle.fromY = static_cast<int16_t>(from.y);
    vehicle.toX = static_cast<int16_t>(to.x);
    vehicle.toY = static_cast<int16_t>(to.y);
    vehicle.speed = speed;
    return vehicle;
}

static void expectPlace(const Vehicle& vehicle, const CellStep& from, const CellStep& to) {
    EXPECT_EQ(vehicle.fromX, from.x);
    EXPECT_EQ(vehicle.fromY, from.y);
    EXPECT_EQ(vehicle.toX, to.x);
    EXPECT_EQ(vehicle.toY, to.y);
}

static StreetLife busyStreets(const City& city, int population = 5000) {
    StreetLife life;
    for (int i = 0; i < 300; i++) updateStreetLife(life, city, 0.12f, population);
    return life;
}

// --- Chance

TEST(StreetLifeChance, StartsAt4242AndIsTheSameOnEverySystem) {
    uint32_t state = StreetLife().rng;
    const uint32_t expected[] = {1079534331, 3437476856, 3355451638, 1338923481, 441601987,  652920022,
                                 2960606766, 1323820183, 4242466829, 439633058,  3333026738, 3810931837,
                                 2425967497, 3891130717, 1628031614, 1350757885, 2861836035, 3774764825,
                                 1773215991, 4166197792, 519760203,  967228642,  694940703,  2867839627};
    for (const uint32_t value : expected) EXPECT_EQ(nextRandom(state), value);
    state = 16777215;
    EXPECT_EQ(nextRandom(state), 520908703u);
    state = 2147483648u;
    EXPECT_EQ(nextRandom(state), 2148024320u);
}

TEST(StreetLifeChance, TheUnitIsTheLow24Bits) {
    uint32_t state = 4242;
    const float expected[] = {0.345260352f, 0.889586985f, 0.000502944051f, 0.806058526f,
                              0.321529597f, 0.917066038f, 0.465914637f,    0.905831814f,
                              0.870728374f, 0.204172269f, 0.663874805f,    0.149238423f,
                              0.598930955f, 0.929464221f, 0.0382460393f,   0.511443973f};
    for (const float value : expected) EXPECT_FLOAT_EQ(nextRandomUnit(state), value);
}

// --- Density

TEST(StreetLifeDensity, TheTargetGrowsWithRoadsAndPopulationUpTo180) {
    for (const TargetCase& row : TARGET_CASES)
        for (int i = 0; i < 12; i++)
            EXPECT_EQ(vehicleTarget(row.roadCells, TARGET_POPULATIONS[i]), row.target[i])
                << row.roadCells << " road cells, population " << TARGET_POPULATIONS[i];
}

TEST(StreetLifeDensity, WildPopulationsStayInRange) {
    constexpr int MOST = std::numeric_limits<int>::max();
    constexpr int LEAST = std::numeric_limits<int>::min();
    EXPECT_EQ(vehicleTarget(CELL_COUNT, MOST), VEHICLE_LIMIT);
    EXPECT_EQ(vehicleTarget(CELL_COUNT, LEAST), 0);
    EXPECT_EQ(vehicleTarget(0, MOST), 0);
    City city = gridTown();
    StreetLife life = busyStreets(city);
    for (int i = 0; i < 300; i++) updateStreetLife(life, city, 0.12f, LEAST);
    EXPECT_EQ(life.vehicles.size(), 2u);
}

TEST(StreetLifeDensity, StreetsFillByOneVehicleEach0Point12Seconds) {
    const City city = gridTown();
    StreetLife life;
    updateStreetLife(life, city, 0.01f, 5000); // the first update scans and spawns at once
    EXPECT_EQ(life.vehicles.size(), 1u);
    for (int i = 0; i < 11; i++) updateStreetLife(life, city, 0.01f, 5000);
    EXPECT_EQ(life.vehicles.size(), 1u);
    updateStreetLife(life, city, 0.011f, 5000);
    EXPECT_EQ(life.vehicles.size(), 2u);
}

TEST(StreetLifeDensity, AFullTownHolds180Vehicles) {
    EXPECT_EQ(busyStreets(gridTown()).vehicles.size(), static_cast<size_t>(VEHICLE_LIMIT));
}

TEST(StreetLifeDensity, CountsShrinkByOneVehicleATurnDownToTwoMoreThanTheTarget) {
    const City city = gridTown();
    StreetLife life = busyStreets(city);
    const int target = vehicleTarget(life.roadCells, 0);
    ASSERT_LT(target + 2, VEHICLE_LIMIT);
    for (int expected = VEHICLE_LIMIT - 1; expected >= target + 2; expected--) {
        const std::vector<Vehicle> before = life.vehicles;
        updateStreetLife(life, city, 0.121f, 0);
        ASSERT_EQ(life.vehicles.size(), static_cast<size_t>(expected));
        for (size_t i = 0; i < life.vehicles.size(); i++) // the last one goes
            ASSERT_EQ(life.vehicles[i].speed, before[i].speed);
    }
    for (int i = 0; i < 20; i++) updateStreetLife(life, city, 0.121f, 0);
    EXPECT_EQ(life.vehicles.size(), static_cast<size_t>(target + 2));
}

// --- Scan

TEST(StreetLifeScan, CountsRoadsAndStopsEveryHalfSecondOfGameTime) {
    City city = streetTown(20);
    city.cells[cellIndex(12, 10)].busStop = 1;
    StreetLife life;
    updateStreetLife(life, city, 0.1f, 0);
    EXPECT_EQ(life.roadCells, 11);
    EXPECT_EQ(life.busStops, 1);

    layRoads(city, 10, 11, 10, 15, ROAD_AVENUE);
    city.cells[cellIndex(10, 12)].busStop = 1;
    for (int i = 0; i < 4; i++) updateStreetLife(life, city, 0.1f, 0);
    EXPECT_EQ(life.roadCells, 11);
    updateStreetLife(life, city, 0.11f, 0);
    EXPECT_EQ(life.roadCells, 16);
    EXPECT_EQ(life.busStops, 2);
}

TEST(StreetLifeScan, AMapFullOfRoadsIsCounted) {
    City city = flatCity();
    layRoads(city, 0, 0, 95, 95);
    StreetLife life;
    updateStreetLife(life, city, 0.1f, 0);
    EXPECT_EQ(life.roadCells, CELL_COUNT);
}

// --- Time

TEST(StreetLifeTime, NothingMovesWhileTimeStandsStill) {
    const City city = gridTown();
    StreetLife life = busyStreets(city);
    const StreetLife before = life;
    for (const float gameDt : {0.0f, -1.0f, std::numeric_limits<float>::quiet_NaN()})
        updateStreetLife(life, city, gameDt, 5000);
    EXPECT_EQ(life.rng, before.rng);
    EXPECT_EQ(life.spawnTimer, before.spawnTimer);
    EXPECT_EQ(life.scanTimer, before.scanTimer);
    for (size_t i = 0; i < life.vehicles.size(); i++) EXPECT_EQ(life.vehicles[i].t, before.vehicles[i].t);
}

TEST(StreetLifeTime, AResetEmptiesTheStreetsAndLetsChanceGoOn) {
    StreetLife life = busyStreets(gridTown());
    const uint32_t rng = life.rng;
    resetStreetLife(life);
    EXPECT_TRUE(life.vehicles.empty());
    EXPECT_EQ(life.spawnTimer, 0.0f);
    EXPECT_EQ(life.scanTimer, 0.0f);
    EXPECT_EQ(life.roadCells, 0);
    EXPECT_EQ(life.busStops, 0);
    EXPECT_EQ(life.rng, rng);
    EXPECT_NE(life.rng, 4242u);
}

TEST(StreetLifeTime, ASteadyFrameTakesNothingFromTheHeap) {
    const City city = gridTown();
    StreetLife life = busyStreets(city);
    const uint64_t before = allocationCount();
    for (int i = 0; i < 100; i++) updateStreetLife(life, city, 1.0f / 60.0f, 5000);
    EXPECT_EQ(allocationCount(), before);
}

// --- Driving

TEST(StreetLifeDriving, AJamSlowsAVehicleDownToAFloor) {
    for (const AdvanceCase& row : ADVANCE_CASES) {
        City city = streetTown(12);
        city.trafficLoad[cellIndex(11, 10)] = row.load;
        StreetLife life;
        life.vehicles = {vehicleOn({10, 10}, {11, 10}, row.speed)};
        updateStreetLife(life, city, 0.5f, 0);
        EXPECT_FLOAT_EQ(life.vehicles[0].t, row.advance * 0.5f) << row.load << ' ' << row.speed;
    }
}

TEST(StreetLifeDriving, ALoadThatIsNoLoadNeitherStopsNorHurlsAVehicle) {
    constexpr float INFINITE = std::numeric_limits<float>::infinity();
    const std::pair<float, float> loadAndAdvance[] = {{std::numeric_limits<float>::quiet_NaN(), 0.15f},
                                                      {INFINITE, 0.4f},
                                                      {-INFINITE, 1.0f},
                                                      {-1e30f, 1.0f}};
    for (const auto& [load, advance] : loadAndAdvance) {
        City city = streetTown(12);
        city.trafficLoad[cellIndex(11, 10)] = load;
        StreetLife life;
        life.vehicles = {vehicleOn({10, 10}, {11, 10})};
        updateStreetLife(life, city, 0.5f, 0);
        EXPECT_FLOAT_EQ(life.vehicles[0].t, advance * 0.5f) << load;
    }
}

TEST(StreetLifeDriving, AVehicleTurnsAroundAtEachDeadEnd) {
    const City city = streetTown(12);
    StreetLife life;
    life.vehicles = {vehicleOn({10, 10}, {11, 10})};
    const CellStep course[] = {{10, 10}, {11, 10}, {12, 10}, {11, 10}, {10, 10}, {11, 10}, {12, 10}};
    for (int step = 1; step <= 23; step++) {
        updateStreetLife(life, city, 0.25f, 0);
        ASSERT_EQ(life.vehicles.size(), 1u);
        expectPlace(life.vehicles[0], course[step / 4], course[step / 4 + 1]);
        EXPECT_EQ(life.vehicles[0].t, 0.25f * static_cast<float>(step % 4));
    }
}

TEST(StreetLifeDriving, ManyCellsInOneUpdateAreDrivenOneAfterTheOther) {
    City city = streetTown(12);
    StreetLife life;
    life.vehicles = {vehicleOn({10, 10}, {11, 10})};
    Vehicle& vehicle = life.vehicles[0];
    for (int step = 0; step < 24; step++) updateStreetLife(life, city, 0.25f, 0);
    expectPlace(vehicle, {12, 10}, {11, 10});
    for (int x = 10; x <= 12; x++) city.trafficLoad[cellIndex(x, 10)] = 1.0f;
    updateStreetLife(life, city, 0.25f, 0);
    EXPECT_EQ(vehicle.t, 0.099999994f);

    vehicle.speed = 0.2f;
    updateStreetLife(life, city, 0.25f, 0);
    updateStreetLife(life, city, 40.0f, 0);
    expectPlace(vehicle, {10, 10}, {11, 10});
    EXPECT_EQ(vehicle.t, 0.137499809f);
    EXPECT_EQ(life.rng, 652920022u); // one number at each passing of the middle cell, none at the ends
}

TEST(StreetLifeDriving, ARoadRemovedAheadEndsTheVehicleAtTheNextUpdate) {
    City city = streetTown(14);
    StreetLife life;
    life.vehicles = {vehicleOn({10, 10}, {11, 10}), vehicleOn({11, 10}, {12, 10}),
                     vehicleOn({12, 10}, {13, 10}), vehicleOn({13, 10}, {12, 10})};
    for (size_t i = 0; i < 4; i++) life.vehicles[i].colourIndex = static_cast<uint8_t>(i);
    city.cells[cellIndex(12, 10)].road = ROAD_NONE;
    updateStreetLife(life, city, 0.01f, 0);
    ASSERT_EQ(life.vehicles.size(), 2u);
    EXPECT_EQ(life.vehicles[0].colourIndex, 0); // the others keep their order
    EXPECT_EQ(life.vehicles[1].colourIndex, 2);
}

TEST(StreetLifeDriving, AVehicleBoundOffTheMapIsRemoved) {
    const City city = streetTown(14);
    StreetLife life;
    for (const CellStep& to :
         {CellStep{-1, 10}, CellStep{96, 10}, CellStep{10, -1}, CellStep{10, 96}, CellStep{-32768, 32767}})
        life.vehicles.push_back(vehicleOn({10, 10}, to));
    updateStreetLife(life, city, 0.01f, 0);
    EXPECT_TRUE(life.vehicles.empty());
}

TEST(StreetLifeDriving, AVehicleFromOffTheMapDrivesOn) {
    const City city = streetTown(14);
    StreetLife life;
    life.vehicles = {vehicleOn({-32768, 32767}, {10, 10})};
    updateStreetLife(life, city, 1.5f, 0);
    ASSERT_EQ(life.vehicles.size(), 1u);
    expectPlace(life.vehicles[0], {10, 10}, {11, 10});
}

TEST(StreetLifeDriving, ADeadVehicleDoesNotMoveBeforeItGoes) {
    const City city = streetTown(14);
    StreetLife life;
    life.vehicles = {vehicleOn({10, 10}, {11, 10})};
    life.vehicles[0].dead = 1;
    updateStreetLife(life, city, 5.0f, 0);
    EXPECT_TRUE(life.vehicles.empty());
    EXPECT_EQ(life.rng, 4242u);
}

// --- Crossings

static City crossingTown(const StepCase& row) {
    City city = flatCity();
    layRoads(city, row.to.x, row.to.y, row.to.x, row.to.y);
    for (const CellStep& road : row.roads) layRoads(city, road.x, road.y, road.x, road.y);
    return city;
}

TEST(StreetLifeCrossing, EveryWayOnIsTakenAsChanceHasIt) {
    for (const StepCase& row : STEP_CASES) {
        SCOPED_TRACE(std::string(row.name) + " from " + std::to_string(row.rng));
        StreetLife life;
        life.rng = row.rng;
        Vehicle vehicle = vehicleOn(row.from, row.to);
        vehicle.t = 0.25f;
        stepVehicle(life, crossingTown(row), vehicle);
        const bool stuck = row.next.x == row.to.x && row.next.y == row.to.y;
        EXPECT_EQ(vehicle.dead, stuck ? 1 : 0);
        if (stuck)
            expectPlace(vehicle, row.from, row.to);
        else
            expectPlace(vehicle, row.to, row.next);
        EXPECT_EQ(vehicle.t, 0.25f);
        EXPECT_EQ(life.rng, row.rngAfter);
    }
}

// How often a vehicle takes each way out of the crossing, in whole percent.
static std::map<std::pair<int, int>, int> sharesOf(const char* name) {
    for (const StepCase& row : STEP_CASES) {
        if (row.name != std::string(name)) continue;
        const City city = crossingTown(row);
        constexpr int DRAWS = 200000;
        std::map<std::pair<int, int>, int> counts;
        StreetLife life;
        for (int i = 0; i < DRAWS; i++) {
            Vehicle vehicle = vehicleOn(row.from, row.to);
            stepVehicle(life, city, vehicle);
            counts[{vehicle.toX - vehicle.fromX, vehicle.toY - vehicle.fromY}]++;
        }
        for (auto& [way, count] : counts)
            count = static_cast<int>(std::lround(100.0 * static_cast<double>(count) / DRAWS));
        return counts;
    }
    return {};
}

TEST(StreetLifeCrossing, StraightOnIsTakenMoreOftenThanATurn) {
    const std::map<std::pair<int, int>, int> expected = {{{0, -1}, 13}, {{0, 1}, 13}, {{1, 0}, 73}};
    EXPECT_EQ(sharesOf("cross"), expected);
}

TEST(StreetLifeCrossing, TurnsAloneAreEquallyLikely) {
    const std::map<std::pair<int, int>, int> expected = {{{0, -1}, 50}, {{0, 1}, 50}};
    EXPECT_EQ(sharesOf("T"), expected);
}

// --- Spawning

// The numbers that a spawn draws, in their order, up to the first pair of coordinates that meets a road.
static Vehicle expectedSpawn(uint32_t& rng, const City& city, bool hasStops) {
    Vehicle vehicle;
    vehicle.isBus = hasStops && nextRandomUnit(rng) < 0.14f;
    int x = 0;
    int y = 0;
    do {
        x = static_cast<int>(nextRandom(rng) % 96);
        y = static_cast<int>(nextRandom(rng) % 96);
    } while (!cellAt(city, x, y).road);
    uint32_t way = nextRandom(rng) % 4;
    while (!cellAt(city, x + NEIGHBOURS[way].x, y + NEIGHBOURS[way].y).road) way = (way + 1) % 4;
    vehicle.fromX = static_cast<int16_t>(x);
    vehicle.fromY = static_cast<int16_t>(y);
    vehicle.toX = static_cast<int16_t>(x + NEIGHBOURS[way].x);
    vehicle.toY = static_cast<int16_t>(y + NEIGHBOURS[way].y);
    vehicle.t = nextRandomUnit(rng) * 0.9f;
    vehicle.colourIndex = static_cast<uint8_t>(nextRandom(rng) % 7);
    vehicle.lane = nextRandom(rng) % 2 == 1 ? 1 : -1;
    vehicle.speed = vehicle.isBus ? 1.0f : nextRandomUnit(rng) * 0.35f + 1.25f;
    return vehicle;
}

TEST(StreetLifeSpawn, DrawsItsNumbersInOneOrder) {
    for (const bool hasStops : {false, true}) {
        City city = flatCity();
        layRoads(city, 0, 0, 95, 60);
        city.cells[cellIndex(20, 20)].busStop = hasStops;
        StreetLife life;
        uint32_t rng = life.rng;
        int buses = 0;
        for (int i = 0; i < 100; i++) {
            life.vehicles.clear();
            const Vehicle expected = expectedSpawn(rng, city, hasStops);
            updateStreetLife(life, city, 0.2f, 5000);
            ASSERT_EQ(life.vehicles.size(), 1u);
            const Vehicle& vehicle = life.vehicles[0];
            expectPlace(vehicle, {expected.fromX, expected.fromY}, {expected.toX, expected.toY});
            EXPECT_EQ(vehicle.t, expected.t);
            EXPECT_EQ(vehicle.colourIndex, expected.colourIndex);
            EXPECT_EQ(vehicle.lane, expected.lane);
            EXPECT_EQ(vehicle.speed, expected.speed);
            EXPECT_EQ(vehicle.isBus, expected.isBus);
            EXPECT_EQ(vehicle.dead, 0);
            EXPECT_EQ(life.rng, rng);
            buses += vehicle.isBus;
        }
        EXPECT_EQ(buses > 0, hasStops);
    }
}

TEST(StreetLifeSpawn, VehiclesComeInAllColoursOnBothSidesWithTheirOwnSpeed) {
    City city = gridTown();
    city.cells[cellIndex(10, 10)].busStop = 1;
    const StreetLife life = busyStreets(city);
    std::map<int, int> colours;
    std::map<int, int> lanes;
    int buses = 0;
    for (const Vehicle& vehicle : life.vehicles) {
        colours[vehicle.colourIndex]++;
        lanes[vehicle.lane]++;
        buses += vehicle.isBus;
        if (vehicle.isBus)
            EXPECT_EQ(vehicle.speed, 1.0f);
        else
            EXPECT_TRUE(vehicle.speed >= 1.25f && vehicle.speed <= 1.6f) << vehicle.speed;
    }
    EXPECT_EQ(colours.size(), 7u);
    EXPECT_EQ(colours.rbegin()->first, 6);
    EXPECT_EQ(lanes.size(), 2u);
    EXPECT_EQ(lanes.begin()->first, -1);
    EXPECT_EQ(lanes.rbegin()->first, 1);
    EXPECT_TRUE(buses > 10 && buses < 45) << buses; // 14% of 180 is 25
}

TEST(StreetLifeSpawn, WithoutABusStopThereAreCarsAlone) {
    for (const Vehicle& vehicle : busyStreets(gridTown()).vehicles) EXPECT_FALSE(vehicle.isBus);
}

TEST(StreetLifeSpawn, RoadCellsWithoutARoadBesideThemSpawnNothing) {
    City city = flatCity();
    for (int y = 0; y < GRID_SIZE; y++)
        for (int x = y % 2; x < GRID_SIZE; x += 2) city.cells[cellIndex(x, y)].road = ROAD_STREET;
    EXPECT_TRUE(busyStreets(city).vehicles.empty());
    City lonely = flatCity();
    layRoads(lonely, 40, 40, 40, 40);
    EXPECT_TRUE(busyStreets(lonely).vehicles.empty());
}

TEST(StreetLifeSpawn, GivesUpAfterSixtyTries) {
    City city = flatCity();
    layRoads(city, 0, 0, 3, 0);
    StreetLife life;
    uint32_t rng = life.rng;
    for (int i = 0; i < 60; i++) {
        const uint32_t x = nextRandom(rng) % 96;
        const uint32_t y = nextRandom(rng) % 96;
        ASSERT_FALSE(cellAt(city, static_cast<int>(x), static_cast<int>(y)).road);
    }
    updateStreetLife(life, city, 0.1f, 5000);
    EXPECT_TRUE(life.vehicles.empty());
    EXPECT_EQ(life.rng, rng);
}
