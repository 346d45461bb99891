#include "sim/city_helpers.h"
#include "sim/hash.h"
#include "sim/traffic.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <limits>

// A street along y = 20 from x = 10 to 40, homes above it and jobs below. Nothing stands there yet.
static City streetCity() {
    City city = flatCity();
    layRoads(city, 10, 20, 40, 20);
    city.seed = 12;
    city.day = 3;
    return city;
}

static Building& addHome(City& city, int x, int y, int occupants, uint8_t level = 3) {
    Building& home = addWorkingBuilding(city, x, y, KIND_HOMES, level);
    home.occupants = occupants;
    return home;
}

static float flowAt(const City& city, int x, int y) { return city.trafficFlow[cellIndex(x, y)]; }
static float loadAt(const City& city, int x, int y) { return city.trafficLoad[cellIndex(x, y)]; }

static float totalFlow(const City& city) {
    float sum = 0.0f;
    for (const float flow : city.trafficFlow) sum += flow;
    return sum;
}

// --- commuters and samples ------------------------------------------------------------------------------

TEST(Commuters, AreSixInTenOfTheResidentsOfWorkingHomesRounded) {
    City city = streetCity();
    addHome(city, 11, 19, 8); // 4.8
    addHome(city, 12, 19, 1); // 0.6
    addHome(city, 13, 19, 2); // 1.2
    addHome(city, 14, 19, 0); // none
    addHome(city, 15, 19, 80).working = 0;
    addHome(city, 16, 19, -50);
    updateTraffic(city);
    EXPECT_EQ(city.commuters, 5 + 1 + 1);
}

TEST(Commuters, WithoutJobsTheyStayAtHome) {
    City city = streetCity();
    city.transitRiders = 9;
    addHome(city, 11, 19, 80);
    updateTraffic(city);
    EXPECT_EQ(city.commuters, 48);
    EXPECT_EQ(city.transitRiders, 0);
    EXPECT_EQ(totalFlow(city), 0.0f);
}

TEST(Commuters, WithoutThemNoTruckDrivesEither) {
    City city = streetCity();
    addWorkingBuilding(city, 30, 21, KIND_FACTORY, 3);
    updateTraffic(city);
    EXPECT_EQ(city.commuters, 0);
    EXPECT_EQ(totalFlow(city), 0.0f);
    EXPECT_EQ(city.buildings[0].congestion, 0.0f);
}

TEST(Commuters, LoadEveryCellOfTheirWay) {
    City city = streetCity();
    addHome(city, 15, 19, 1);
    addWorkingBuilding(city, 25, 21, KIND_PARK);
    updateTraffic(city);
    for (int x = 10; x <= 40; x++) EXPECT_EQ(flowAt(city, x, 20), x >= 15 && x <= 25 ? 1.0f : 0.0f) << x;
    EXPECT_EQ(totalFlow(city), 11.0f);
}

TEST(Commuters, UpTo360EachDriveForThemselves) {
    City city = streetCity();
    for (int i = 0; i < 4; i++) addHome(city, 11 + i, 19, 80);
    addHome(city, 15, 19, 13); // 4 x 48 + 8 = 200
    addWorkingBuilding(city, 30, 21, KIND_PARK);
    updateTraffic(city);
    EXPECT_EQ(city.commuters, 200);
    EXPECT_EQ(flowAt(city, 30, 20), 200.0f);
}

TEST(Commuters, BeyondThat360StandForAll) {
    City city = streetCity();
    for (int i = 0; i < 15; i++) addHome(city, 11 + i, 19, 80);
    addWorkingBuilding(city, 30, 21, KIND_PARK);
    updateTraffic(city);
    EXPECT_EQ(city.commuters, 720);
    EXPECT_EQ(flowAt(city, 30, 20), 720.0f);
    EXPECT_EQ(flowAt(city, 11, 20), 48.0f) << "24 samples of two";
}

TEST(Commuters, EveryHomeIsDrawnByItsShare) {
    City city = streetCity();
    for (int i = 0; i < 5; i++) addHome(city, 12 + 5 * i, 19, 10 * (i + 1)); // 6, 12, 18, 24, 30
    addWorkingBuilding(city, 40, 21, KIND_PARK);
    updateTraffic(city);
    EXPECT_EQ(city.commuters, 90);
    EXPECT_EQ(flowAt(city, 12, 20), 6.0f);
    EXPECT_EQ(flowAt(city, 17, 20), 18.0f);
    EXPECT_EQ(flowAt(city, 22, 20), 36.0f);
    EXPECT_EQ(flowAt(city, 27, 20), 60.0f);
    EXPECT_EQ(flowAt(city, 32, 20), 90.0f);
}

// How many of `samples` the hash sends to a list of weights, counted the slow way.
static std::vector<int> expectedJobs(const City& city, const std::vector<int>& weights, int samples) {
    std::vector<int> counts(weights.size());
    int total = 0;
    for (const int weight : weights) total += weight;
    for (int s = 0; s < samples; s++) {
        int at =
            static_cast<int>(hashCell(static_cast<uint32_t>(s), static_cast<uint32_t>(city.day), city.seed) %
                             static_cast<uint32_t>(total));
        size_t job = 0;
        while (at >= weights[job]) at -= weights[job++];
        counts[job]++;
    }
    return counts;
}

TEST(Commuters, JobsAreDrawnByTheirPlacesWithTheHashOfTheDay) {
    City city = streetCity();
    addHome(city, 10, 19, 80);
    addHome(city, 11, 19, 80);
    addWorkingBuilding(city, 20, 21, KIND_SHOPS, 2);        // 16 places
    addWorkingBuilding(city, 30, 21, KIND_OFFICE_TOWER, 2); // 32
    addWorkingBuilding(city, 40, 21, KIND_HOSPITAL);        // 40
    addBuilding(city, 25, 21, KIND_HOSPITAL);               // does not work
    for (city.day = 1; city.day <= 5; city.day++) {
        updateTraffic(city);
        const std::vector<int> jobs = expectedJobs(city, {16, 32, 40}, 96);
        EXPECT_EQ(flowAt(city, 20, 20), 96.0f);
        EXPECT_EQ(flowAt(city, 21, 20), static_cast<float>(jobs[1] + jobs[2]));
        EXPECT_EQ(flowAt(city, 31, 20), static_cast<float>(jobs[2]));
    }
}

// --- ways -----------------------------------------------------------------------------------------------

TEST(Ways, HomeAndJobAtTheSameCellUseThatCell) {
    City city = streetCity();
    addHome(city, 15, 19, 5);
    addWorkingBuilding(city, 15, 21, KIND_PARK);
    updateTraffic(city);
    EXPECT_EQ(flowAt(city, 15, 20), 3.0f);
    EXPECT_EQ(totalFlow(city), 3.0f);
}

TEST(Ways, StartAtTheFirstRoadOfRightLeftBelowAbove) {
    City city = flatCity();
    addHome(city, 50, 50, 1);
    for (const CellStep& step : NEIGHBOURS)
        city.cells[cellIndex(50 + step.x, 50 + step.y)].road = ROAD_STREET;
    for (const CellStep& step : NEIGHBOURS) {
        EXPECT_EQ(city.buildings.size(), 1u);
        const int x = 50 + step.x;
        const int y = 50 + step.y;
        // The job touches only the road cell that should come first.
        Building& job = addWorkingBuilding(city, x + step.x, y + step.y, KIND_PARK);
        updateTraffic(city);
        EXPECT_EQ(flowAt(city, x, y), 1.0f);
        city.cells[cellIndex(job.x, job.y)].buildingIndex = -1;
        city.buildings.pop_back();
        city.cells[cellIndex(x, y)].road = ROAD_NONE;
    }
}

TEST(Ways, OfEqualLengthTakeTheFirstOfRightLeftBelowAbove) {
    // A full block of streets: every way between opposite corners is as long as the others.
    City city = flatCity();
    layRoads(city, 20, 20, 24, 24);
    addHome(city, 19, 20, 1);                    // starts at 20,20
    addWorkingBuilding(city, 25, 24, KIND_PARK); // ends at 24,24
    updateTraffic(city);
    for (int x = 20; x <= 24; x++) EXPECT_EQ(flowAt(city, x, 20), 1.0f) << "first along the top";
    for (int y = 20; y <= 24; y++) EXPECT_EQ(flowAt(city, 24, y), 1.0f) << "then down";
    EXPECT_EQ(totalFlow(city), 9.0f);
}

TEST(Ways, AreAsShortAsTheRoadsAllow) {
    City city = flatCity();
    layRoads(city, 20, 20, 30, 20); // two ways from 20,20 to 30,20: straight on, or around below
    layRoads(city, 20, 22, 30, 22);
    layRoads(city, 20, 21, 20, 21);
    layRoads(city, 30, 21, 30, 21);
    addHome(city, 20, 19, 1);
    addWorkingBuilding(city, 30, 19, KIND_PARK);
    updateTraffic(city);
    EXPECT_EQ(totalFlow(city), 11.0f);
    city.cells[cellIndex(25, 20)].road = ROAD_NONE;
    updateTraffic(city);
    EXPECT_EQ(totalFlow(city), 15.0f) << "around";
    EXPECT_EQ(flowAt(city, 25, 22), 1.0f);
}

TEST(Ways, ACutOffJobIsNotReached) {
    City city = streetCity();
    addHome(city, 15, 19, 10);
    addWorkingBuilding(city, 35, 21, KIND_PARK);
    city.cells[cellIndex(25, 20)].road = ROAD_NONE;
    updateTraffic(city);
    EXPECT_EQ(city.commuters, 6);
    EXPECT_EQ(totalFlow(city), 0.0f);
}

TEST(Ways, WithoutARoadAtEitherEndNobodyDrives) {
    City city = streetCity();
    addHome(city, 60, 60, 10);
    addWorkingBuilding(city, 35, 21, KIND_PARK);
    updateTraffic(city);
    EXPECT_EQ(totalFlow(city), 0.0f);
    EXPECT_EQ(city.buildings[0].congestion, 0.0f);
    city = streetCity();
    addHome(city, 15, 19, 10);
    addWorkingBuilding(city, 60, 60, KIND_PARK);
    updateTraffic(city);
    EXPECT_EQ(totalFlow(city), 0.0f);
}

TEST(Ways, DoNotWrapAroundTheEdgeOfTheMap) {
    City city = flatCity();
    layRoads(city, 90, 30, 95, 30);
    layRoads(city, 0, 31, 5, 31);
    addHome(city, 90, 29, 10);
    addWorkingBuilding(city, 5, 32, KIND_PARK);
    updateTraffic(city);
    EXPECT_EQ(totalFlow(city), 0.0f);
}

TEST(Ways, TheFirstAndTheLastCellOfTheMapAreRoadsLikeAllOthers) {
    for (const int corner : {0, 95}) {
        const int inner = corner == 0 ? 1 : 94;
        City city = flatCity();
        layRoads(city, corner, corner, corner, corner);
        addHome(city, inner, corner, 80);
        addWorkingBuilding(city, corner, inner, KIND_FACTORY);
        updateTraffic(city);
        EXPECT_EQ(flowAt(city, corner, corner), 48.0f + 60.0f);
        EXPECT_EQ(totalFlow(city), 48.0f + 60.0f);
        for (const Building& building : city.buildings)
            EXPECT_NEAR(building.congestion, 108.0f / 900.0f, 1e-6f);
    }
}

// --- buses ----------------------------------------------------------------------------------------------

// One home at 20,19 with 48 commuters, a stop at (x, y), and a depot.
static City busCity(int stopX, int stopY) {
    City city = streetCity();
    layRoads(city, stopX, std::min(stopY, 20), stopX, std::max(stopY, 20));
    city.cells[cellIndex(stopX, stopY)].busStop = 1;
    addHome(city, 20, 19, 80);
    addWorkingBuilding(city, 35, 21, KIND_BUS_DEPOT);
    return city;
}

static int ridersOf(City city) {
    updateTraffic(city);
    EXPECT_EQ(flowAt(city, 35, 20), static_cast<float>(48 - city.transitRiders)) << "a rider loads no road";
    return city.transitRiders;
}

static int expectedRiders(const City& city, float share) {
    int riders = 0;
    for (uint32_t s = 0; s < 48; s++)
        if (hashUnit(s, static_cast<uint32_t>(city.day), city.seed + 3) < share) riders++;
    return riders;
}

TEST(Buses, CarryFortyFivePercentOfThoseWithAStopAndADepot) {
    City city = busCity(20, 20);
    for (city.day = 1; city.day < 10; city.day++) EXPECT_EQ(ridersOf(city), expectedRiders(city, 0.45f));
}

TEST(Buses, CarryMoreWhereTransitComesFirst) {
    City city = busCity(20, 20);
    city.cells[cellIndex(20, 19)].district = 2;
    city.districtPolicy[2] = POLICY_TRANSIT_FIRST;
    for (city.day = 1; city.day < 10; city.day++) EXPECT_EQ(ridersOf(city), expectedRiders(city, 0.585f));
    city.districtPolicy[2] = POLICY_NO_TRUCKS | POLICY_SMOKE_FREE;
    EXPECT_EQ(ridersOf(city), expectedRiders(city, 0.45f));
}

TEST(Buses, ARollOfExactlyTheShareDrives) {
    City city = busCity(20, 20);
    city.buildings[0].occupants = 1;
    city.cells[cellIndex(20, 19)].district = 2;
    city.districtPolicy[2] = POLICY_TRANSIT_FIRST;
    city.day = 1;
    city.seed = 19891096;
    ASSERT_EQ(hashUnit(0, 1, city.seed + 3), 0.585f);
    updateTraffic(city);
    EXPECT_EQ(city.commuters, 1);
    EXPECT_EQ(city.transitRiders, 0);
}

TEST(Buses, StopWithinFiveCellsOfTheHomeCornersIncluded) {
    EXPECT_GT(ridersOf(busCity(25, 24)), 0);
    EXPECT_GT(ridersOf(busCity(15, 14)), 0);
    EXPECT_GT(ridersOf(busCity(25, 14)), 0);
    EXPECT_EQ(ridersOf(busCity(26, 20)), 0);
    EXPECT_EQ(ridersOf(busCity(14, 20)), 0);
    EXPECT_EQ(ridersOf(busCity(20, 25)), 0);
    EXPECT_EQ(ridersOf(busCity(20, 13)), 0);
}

TEST(Buses, ServeTheMapsCornersToo) {
    for (const auto& [x, y] : {std::pair{0, 0}, {95, 0}, {0, 95}, {95, 95}})
        for (const int away : {0, 5, 6}) {
            City city = flatCity();
            const int stopX = std::abs(x - away);
            const int stopY = std::abs(y - away);
            city.cells[cellIndex(stopX, stopY)].busStop = 1;
            addHome(city, x, y, 80);
            addWorkingBuilding(city, 50, 50, KIND_BUS_DEPOT);
            updateTraffic(city);
            EXPECT_EQ(city.transitRiders > 0, away <= 5) << stopX << "," << stopY;
        }
}

TEST(Buses, StandStillWithoutAWorkingDepot) {
    City city = busCity(20, 20);
    city.buildings[1].working = 0;
    addWorkingBuilding(city, 36, 21, KIND_PARK);
    updateTraffic(city);
    EXPECT_EQ(city.transitRiders, 0);
    EXPECT_EQ(flowAt(city, 36, 20), 48.0f);
}

TEST(Buses, RidersAreScaledUpToTheWholeWorkforce) {
    City city = busCity(20, 20);
    for (int x = 15; x <= 25; x++)
        for (int y = 17; y <= 18; y++) addHome(city, x, y, 80); // beside no road: they ride or stay
    updateTraffic(city);
    const int commuters = 23 * 48;
    EXPECT_EQ(city.commuters, commuters);
    int riders = 0;
    for (uint32_t s = 0; s < 360; s++)
        if (hashUnit(s, static_cast<uint32_t>(city.day), city.seed + 3) < 0.45f) riders++;
    EXPECT_EQ(city.transitRiders, static_cast<int>(riders * (commuters / 360.0) + 0.5));
}

TEST(Buses, HalfARiderCountsAsOne) {
    City city = busCity(20, 20);
    for (int x = 15; x <= 24; x++) addHome(city, x, 18, 80);
    addHome(city, 25, 18, 20); // 11 x 48 + 12 = 540: a sample stands for one and a half
    int riders = 0;
    for (city.day = 1; riders % 2 == 0; city.day++) {
        riders = 0;
        for (uint32_t s = 0; s < 360; s++)
            if (hashUnit(s, static_cast<uint32_t>(city.day + 1), city.seed + 3) < 0.45f) riders++;
    }
    updateTraffic(city);
    ASSERT_EQ(city.commuters, 540);
    EXPECT_EQ(city.transitRiders, (riders * 3 + 1) / 2);
}

// --- trucks and load ------------------------------------------------------------------------------------

TEST(Trucks, LoadTheRoadAtTheirFactoryByItsLevel) {
    for (const uint8_t level : {1, 2, 3}) {
        City city = streetCity();
        addHome(city, 40, 19, 1);
        addWorkingBuilding(city, 40, 21, KIND_PARK);
        addWorkingBuilding(city, 20, 21, KIND_FACTORY, level);
        addBuilding(city, 22, 21, KIND_FACTORY, level); // does not work
        city.day = 1;
        while (expectedJobs(city, {2, 8 * level * level}, 1)[0] == 0) city.day++; // the commuter stays away
        updateTraffic(city);
        EXPECT_EQ(flowAt(city, 20, 20), 60.0f * static_cast<float>(level));
        EXPECT_EQ(totalFlow(city), 60.0f * static_cast<float>(level) + 1.0f);

        city.cells[cellIndex(20, 21)].district = 8;
        city.districtPolicy[8] = POLICY_NO_TRUCKS;
        updateTraffic(city);
        EXPECT_EQ(flowAt(city, 20, 20), 30.0f * static_cast<float>(level));
    }
}

TEST(Load, IsTheFlowOverTheCapacityOfTheRoad) {
    City city = streetCity();
    layRoads(city, 20, 20, 20, 20, ROAD_AVENUE);
    for (int x = 11; x <= 14; x++) addHome(city, x, 19, 80);
    addWorkingBuilding(city, 30, 21, KIND_PARK);
    updateTraffic(city);
    EXPECT_EQ(city.roadCapacity[cellIndex(19, 20)], 900);
    EXPECT_EQ(city.roadCapacity[cellIndex(20, 20)], 2700);
    EXPECT_EQ(city.roadCapacity[cellIndex(20, 21)], 0);
    EXPECT_EQ(loadAt(city, 19, 20), 192.0f / 900.0f);
    EXPECT_EQ(loadAt(city, 20, 20), 192.0f / 2700.0f);
    EXPECT_EQ(loadAt(city, 20, 21), 0.0f);
}

TEST(Load, IsHeldToOne) {
    City city = streetCity();
    for (int x = 10; x < 40; x++) addHome(city, x, 19, 80);
    addWorkingBuilding(city, 41, 20, KIND_PARK);
    updateTraffic(city);
    EXPECT_GT(flowAt(city, 40, 20), 900.0f);
    EXPECT_EQ(loadAt(city, 40, 20), 1.0f);
}

TEST(Load, IsGoneWithTheRoad) {
    City city = streetCity();
    addHome(city, 15, 19, 80);
    addWorkingBuilding(city, 35, 21, KIND_PARK);
    updateTraffic(city);
    ASSERT_GT(loadAt(city, 20, 20), 0.0f);
    layRoads(city, 10, 20, 40, 20, ROAD_NONE);
    updateTraffic(city);
    EXPECT_EQ(totalFlow(city), 0.0f);
    EXPECT_EQ(loadAt(city, 20, 20), 0.0f);
    EXPECT_EQ(city.roadCapacity[cellIndex(20, 20)], 0);
}

TEST(Load, ARoadOfNoTypeIsDrivenOnButHasNoCapacity) {
    City city = streetCity();
    layRoads(city, 20, 20, 20, 20, 7);
    addHome(city, 15, 19, 80);
    addWorkingBuilding(city, 35, 21, KIND_PARK);
    updateTraffic(city);
    EXPECT_EQ(flowAt(city, 20, 20), 48.0f);
    EXPECT_EQ(city.roadCapacity[cellIndex(20, 20)], 0);
    EXPECT_EQ(loadAt(city, 20, 20), 0.0f);
}

// --- congestion -----------------------------------------------------------------------------------------

TEST(Congestion, OfAHomeIsTheAverageLoadOfItsWays) {
    City city = streetCity();
    layRoads(city, 16, 20, 20, 20, ROAD_AVENUE);
    addHome(city, 15, 19, 80);
    addWorkingBuilding(city, 24, 21, KIND_PARK);
    updateTraffic(city);
    const float street = 48.0f / 900.0f;
    const float avenue = 48.0f / 2700.0f;
    EXPECT_NEAR(city.buildings[0].congestion, (street * 5 + avenue * 5) / 10, 1e-6f);
}

TEST(Congestion, OfEveryOtherBuildingIsTheLoadAtItsRoad) {
    City city = streetCity();
    addHome(city, 15, 19, 80);
    addWorkingBuilding(city, 24, 21, KIND_PARK);
    addBuilding(city, 20, 21, KIND_SCHOOL).congestion = 0.9f;
    addBuilding(city, 38, 21, KIND_SCHOOL).congestion = 0.9f;
    addBuilding(city, 70, 70, KIND_SCHOOL).congestion = 0.9f;
    addHome(city, 20, 19, 0).congestion = 0.9f;
    updateTraffic(city);
    const float load = 48.0f / 900.0f;
    EXPECT_EQ(city.buildings[1].congestion, load);
    EXPECT_EQ(city.buildings[2].congestion, load);
    EXPECT_EQ(city.buildings[3].congestion, 0.0f);
    EXPECT_EQ(city.buildings[4].congestion, 0.0f) << "without a road";
    EXPECT_EQ(city.buildings[5].congestion, load) << "a home from which nobody was drawn";
}

TEST(Congestion, OfAHomeWhoseDrawnPeopleAllRideIsTheLoadAtItsRoad) {
    City city = busCity(20, 20);
    city.buildings[0].occupants = 1;
    while (expectedRiders(city, 0.45f) == 0 ||
           hashUnit(0, static_cast<uint32_t>(city.day), city.seed + 3) >= 0.45f)
        city.day++;
    addWorkingBuilding(city, 20, 21, KIND_FACTORY, 3);
    updateTraffic(city);
    EXPECT_EQ(city.transitRiders, 1);
    EXPECT_EQ(city.buildings[0].congestion, 180.0f / 900.0f) << "the trucks at its door";
}

// --- wild saves -----------------------------------------------------------------------------------------

TEST(WildCities, CommutersBeyondEveryRangeAreHeld) {
    City city = streetCity();
    for (int x = 11; x <= 15; x++) addHome(city, x, 19, std::numeric_limits<int32_t>::max());
    addWorkingBuilding(city, 35, 21, KIND_FACTORY, 255);
    updateTraffic(city);
    EXPECT_EQ(city.commuters, std::numeric_limits<int32_t>::max());
    EXPECT_EQ(loadAt(city, 30, 20), 1.0f);
}

TEST(WildCities, HomesAndJobsOffTheMapHaveNoRoad) {
    City city = streetCity();
    addHome(city, -32768, 32767, 80);
    addHome(city, -1, 20, 80);
    addWorkingBuilding(city, 32767, -32768, KIND_PARK);
    addWorkingBuilding(city, 96, 95, KIND_BUS_DEPOT);
    updateTraffic(city);
    EXPECT_EQ(city.commuters, 96);
    EXPECT_EQ(totalFlow(city), 0.0f);
}
