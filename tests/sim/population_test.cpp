#include "sim/expect_exactly.h"
#include "sim/population.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

constexpr int X = 30;
constexpr int Y = 30;

static City withHome(int occupants, uint8_t level = 1) {
    City city = flatCity();
    addWorkingBuilding(city, X, Y, KIND_HOMES, level).occupants = occupants;
    return city;
}

// --- people and jobs ------------------------------------------------------------------------------------

TEST(Population, ACityWithoutBuildingsHasNoEconomy) {
    City city = flatCity();
    city.educatedShare = city.goodsDemand = city.goodsSupply = 5.0f;
    city.goodsRatio = 0.0f;
    city.population = city.jobs = city.employed = city.workers = 7;
    city.happiness = 3.0f;
    updatePopulation(city);
    EXPECT_EQ(city.educatedShare, 0.0f);
    EXPECT_EQ(city.goodsDemand, 0.0f);
    EXPECT_EQ(city.goodsSupply, 0.0f);
    EXPECT_EQ(city.goodsRatio, 1.0f);
    EXPECT_EQ(city.population, 0);
    EXPECT_EQ(city.jobs, 0);
    EXPECT_EQ(city.employed, 0);
    EXPECT_EQ(city.workers, 0);
    EXPECT_EQ(city.happiness, 60.0f);
}

TEST(Population, CountsTheResidentsOfWorkingHomes) {
    City city = withHome(7);
    addWorkingBuilding(city, X + 1, Y, KIND_HOMES, 2).occupants = 20;
    addBuilding(city, X + 2, Y, KIND_HOMES, 2).occupants = 30;
    addWorkingBuilding(city, X + 3, Y, KIND_SHOPS).occupants = 4;
    updatePopulation(city);
    EXPECT_EQ(city.population, 27);
    EXPECT_EQ(city.workers, 16) << "six in ten, rounded down";
}

TEST(Population, JobsAreThePlacesOfWorkingBuildingsThatAreNotHomes) {
    City city = withHome(8);
    addWorkingBuilding(city, X + 1, Y, KIND_SHOPS, 2);
    addWorkingBuilding(city, X + 2, Y, KIND_SCHOOL);
    addBuilding(city, X + 3, Y, KIND_HOSPITAL);
    updatePopulation(city);
    EXPECT_EQ(city.jobs, 16 + 25);
    EXPECT_EQ(city.employed, 4) << "as many as there are workers";
}

TEST(Population, NoMoreAreEmployedThanThereAreJobs) {
    City city = withHome(80, 3);
    addWorkingBuilding(city, X + 1, Y, KIND_SHOPS);
    updatePopulation(city);
    EXPECT_EQ(city.workers, 48);
    EXPECT_EQ(city.employed, 4);
}

TEST(Population, EducationStartsAtThreeTenthsOfCoverage) {
    City city = withHome(30, 2);
    addWorkingBuilding(city, X + 1, Y, KIND_HOMES, 2).occupants = 10;
    city.coverage[COVERAGE_EDUCATION][cellIndex(X, Y)] = 0.3f;
    city.coverage[COVERAGE_EDUCATION][cellIndex(X + 1, Y)] = std::nextafterf(0.3f, 0.0f);
    updatePopulation(city);
    EXPECT_EQ(city.educatedShare, 0.75f);
}

TEST(Population, WithoutResidentsNobodyIsEducated) {
    City city = withHome(0);
    city.coverage[COVERAGE_EDUCATION][cellIndex(X, Y)] = 1.0f;
    city.educatedShare = 0.5f;
    updatePopulation(city);
    EXPECT_EQ(city.educatedShare, 0.0f);
}

// --- staff and goods ------------------------------------------------------------------------------------

// 48 workers for the places of one building of 96: every second place is filled.
static City halfStaffed(uint8_t kind, uint8_t level = 1) {
    City city = withHome(80, 3);
    addWorkingBuilding(city, X + 1, Y, kind, level);
    while (true) {
        updatePopulation(city);
        city.buildings[0].occupants = 80;
        if (city.jobs >= 96) break;
        addWorkingBuilding(city, X + 2 + static_cast<int>(city.buildings.size()), Y, KIND_PARK);
    }
    EXPECT_EQ(city.jobs, 96);
    return city;
}

TEST(Staff, WorkersFillAnEqualShareOfAllPlaces) {
    const City city = halfStaffed(KIND_HOSPITAL);
    EXPECT_EQ(city.buildings[1].staffing, 0.5f);
    EXPECT_EQ(city.buildings[1].occupants, 20);
    EXPECT_EQ(city.buildings[2].staffing, 0.5f);
    EXPECT_EQ(city.buildings[2].occupants, 1);
    EXPECT_EQ(city.buildings[0].staffing, 0.0f) << "homes have no staff";
}

TEST(Staff, IsRoundedToTheNearest) {
    City city = withHome(5);
    addWorkingBuilding(city, X + 1, Y, KIND_SHOPS);
    addWorkingBuilding(city, X + 2, Y, KIND_PARK);
    updatePopulation(city);
    EXPECT_EQ(city.buildings[1].occupants, 2) << "four places half filled";
    EXPECT_EQ(city.buildings[2].occupants, 1);
    city.buildings[0].occupants = 2;
    updatePopulation(city);
    EXPECT_EQ(city.workers, 1);
    EXPECT_EQ(city.buildings[1].occupants, 1) << "a sixth of four";
    EXPECT_EQ(city.buildings[2].occupants, 0) << "a sixth of two";
}

TEST(Staff, HalfAPersonCountsAsOne) {
    City city = withHome(8); // 4 workers
    addWorkingBuilding(city, X + 1, Y, KIND_PARK);
    addWorkingBuilding(city, X + 2, Y, KIND_POLICE_STATION);
    updatePopulation(city);
    EXPECT_EQ(city.buildings[1].staffing, 0.25f);
    EXPECT_EQ(city.buildings[1].occupants, 1) << "half of one of two";
    EXPECT_EQ(city.buildings[2].occupants, 4) << "3.5 of fourteen";
}

TEST(Staff, ABuildingThatDoesNotWorkEmploysNobody) {
    City city = withHome(8);
    for (const uint8_t kind : {KIND_SHOPS, KIND_OFFICE_TOWER, KIND_FACTORY, KIND_SCHOOL}) {
        Building& building = addBuilding(city, X + kind, Y, kind);
        building.occupants = 5;
        building.staffing = 0.7f;
    }
    addBuilding(city, X, Y + 1, KIND_HOMES).occupants = 6;
    updatePopulation(city);
    for (size_t i = 1; i <= 4; i++) {
        EXPECT_EQ(city.buildings[i].occupants, 0);
        EXPECT_EQ(city.buildings[i].staffing, 0.0f);
    }
    EXPECT_EQ(city.buildings[5].occupants, 6) << "residents stay";
}

TEST(Staff, OfficesNeedEducatedPeople) {
    City city = halfStaffed(KIND_OFFICE_TOWER);
    EXPECT_EQ(city.buildings[1].staffing, 0.5f * 0.4f);
    EXPECT_EQ(city.buildings[1].occupants, 2) << "1.6 of eight places";
    city.coverage[COVERAGE_EDUCATION][cellIndex(X, Y)] = 1.0f;
    updatePopulation(city);
    EXPECT_FLOAT_EQ(city.buildings[1].staffing, 0.5f);
    EXPECT_EQ(city.buildings[1].occupants, 4);
}

TEST(Goods, FactoriesSupplyByTheirStaffAndShopsAskByTheirLevel) {
    City city = halfStaffed(KIND_FACTORY, 2);
    EXPECT_EQ(city.goodsSupply, 2 * 6 * 0.5f);
    EXPECT_EQ(city.goodsDemand, 0.0f);
    EXPECT_EQ(city.goodsRatio, 1.0f) << "nobody asks";
    city = halfStaffed(KIND_SHOPS, 3);
    EXPECT_EQ(city.goodsDemand, 9.0f);
    EXPECT_EQ(city.goodsSupply, 0.0f);
    EXPECT_EQ(city.goodsRatio, 0.0f);
}

TEST(Goods, ShopsWithoutGoodsServeNobodyButKeepTheirStaff) {
    City city = halfStaffed(KIND_SHOPS, 3);
    EXPECT_EQ(city.buildings[1].staffing, 0.0f);
    EXPECT_EQ(city.buildings[1].occupants, 18);
}

TEST(Goods, ShopsServeByTheShareOfGoodsThatArrive) {
    City city = withHome(80, 3);
    addWorkingBuilding(city, X + 1, Y, KIND_SHOPS, 3);   // 36 places, asks for 9
    addWorkingBuilding(city, X + 2, Y, KIND_FACTORY, 1); // 8 places, makes 6
    addWorkingBuilding(city, X + 3, Y, KIND_PARK);
    addWorkingBuilding(city, X + 4, Y, KIND_PARK);
    updatePopulation(city);
    EXPECT_EQ(city.jobs, 48);
    EXPECT_EQ(city.goodsRatio, 6.0f / 9.0f);
    EXPECT_EQ(city.buildings[1].staffing, 6.0f / 9.0f);
    EXPECT_EQ(city.buildings[1].occupants, 36);
    city.buildings[1].level = 1;
    updatePopulation(city);
    EXPECT_EQ(city.goodsRatio, 1.0f) << "more goods than asked for fill no more shops";
}

// --- happiness ------------------------------------------------------------------------------------------

// What the happiness of the only building moves towards, read off its first step.
static float targetOf(City city) {
    city.buildings[0].happiness = 0.0f;
    city.buildings[0].unhappyDays = 0;
    updatePopulation(city);
    return city.buildings[0].happiness / 0.2f;
}

// A school that stands on land of value 0.4, which adds nothing.
static City withSchool() {
    City city = flatCity();
    addWorkingBuilding(city, X, Y, KIND_SCHOOL);
    city.landValue[cellIndex(X, Y)] = 0.4f;
    return city;
}

TEST(Happiness, IsBuiltOnPowerAndWater) {
    City city = withSchool();
    EXPECT_FLOAT_EQ(targetOf(city), 55.0f);
    city.buildings[0].watered = 0;
    EXPECT_FLOAT_EQ(targetOf(city), 33.0f);
    city.buildings[0].powered = 0;
    EXPECT_FLOAT_EQ(targetOf(city), 3.0f);
    city.buildings[0].watered = 1;
    EXPECT_FLOAT_EQ(targetOf(city), 25.0f);
    city.buildings[0].watered = 0;
    city.buildings[0].kind = KIND_PARK;
    EXPECT_FLOAT_EQ(targetOf(city), 25.0f) << "kinds from the park on need no water";
}

TEST(Happiness, RisesWithEachService) {
    const std::array<float, COVERAGE_COUNT> weight = {10.0f, 8.0f, 10.0f, 6.0f, 12.0f, 4.0f, 0.0f, 0.0f};
    for (int i = 0; i < COVERAGE_COUNT; i++) {
        City city = withSchool();
        city.coverage[i][cellIndex(X, Y)] = 0.5f;
        EXPECT_FLOAT_EQ(targetOf(city), 55.0f + weight[i] / 2) << "service " << i;
    }
}

TEST(Happiness, FallsWithPollutionCongestionAndRainAndFollowsLandValue) {
    City city = withSchool();
    city.pollution[cellIndex(X, Y)] = 0.2f;
    EXPECT_FLOAT_EQ(targetOf(city), 50.0f);
    city = withSchool();
    city.buildings[0].congestion = 0.4f;
    EXPECT_FLOAT_EQ(targetOf(city), 49.0f);
    city = withSchool();
    city.landValue[cellIndex(X, Y)] = 0.9f;
    EXPECT_FLOAT_EQ(targetOf(city), 65.0f);
    city.landValue[cellIndex(X, Y)] = 0.1f;
    EXPECT_FLOAT_EQ(targetOf(city), 49.0f);
    city = withSchool();
    city.raining = 1;
    EXPECT_FLOAT_EQ(targetOf(city), 53.0f);
}

TEST(Happiness, PoliciesOfTheDistrictPleaseButTransitDoesNot) {
    City city = withSchool();
    city.districtPolicy[3] = POLICY_SMOKE_FREE | POLICY_TRANSIT_FIRST;
    city.districtPolicy[4] = POLICY_NO_TRUCKS;
    city.districtPolicy[5] = POLICY_SMOKE_FREE | POLICY_NO_TRUCKS;
    city.districtPolicy[0] = 7;
    EXPECT_FLOAT_EQ(targetOf(city), 55.0f) << "no district, no policy";
    for (const auto& [district, target] : {std::pair{3, 57.0f}, {4, 56.0f}, {5, 58.0f}, {6, 55.0f}}) {
        city.cells[cellIndex(X, Y)].district = static_cast<uint8_t>(district);
        EXPECT_FLOAT_EQ(targetOf(city), target);
    }
}

TEST(Happiness, ResidentsMindTaxesAndWantWorkersForAllJobs) {
    City city = withHome(0);
    city.landValue[cellIndex(X, Y)] = 0.4f;
    EXPECT_FLOAT_EQ(targetOf(city), 40.0f) << "with no jobs at all none is filled";

    addWorkingBuilding(city, X + 1, Y, KIND_PARK);
    city.buildings[0].occupants = 8;
    EXPECT_FLOAT_EQ(targetOf(city), 55.0f);
    city.taxRate[0] = 200;
    EXPECT_FLOAT_EQ(targetOf(city), 47.0f);
    city.taxRate[0] = 20;
    EXPECT_FLOAT_EQ(targetOf(city), 61.4f);
    city.taxRate = {100, 200, 200, 200};
    addWorkingBuilding(city, X + 2, Y, KIND_BUS_DEPOT);
    addWorkingBuilding(city, X + 3, Y, KIND_PARK);
    EXPECT_FLOAT_EQ(targetOf(city), 55.0f - 15.0f * 0.75f) << "four workers for 16 places";
}

TEST(Happiness, OnlyHomesMindTaxesAndJobs) {
    City city = withSchool();
    city.taxRate[0] = 200;
    EXPECT_FLOAT_EQ(targetOf(city), 55.0f);
}

TEST(Happiness, IsHeldBetween0And100) {
    City city = withSchool();
    city.landValue[cellIndex(X, Y)] = 5.0f;
    EXPECT_FLOAT_EQ(targetOf(city), 100.0f);
    city.landValue[cellIndex(X, Y)] = -5.0f;
    EXPECT_FLOAT_EQ(targetOf(city), 0.0f);
}

TEST(Happiness, MovesAFifthOfTheWayEachDay) {
    City city = withSchool();
    city.buildings[0].happiness = 80.0f;
    updatePopulation(city);
    EXPECT_FLOAT_EQ(city.buildings[0].happiness, 75.0f);
    updatePopulation(city);
    EXPECT_FLOAT_EQ(city.buildings[0].happiness, 71.0f);
}

TEST(Happiness, WaitsForTheBuildingToBeFinished) {
    City city = withSchool();
    city.buildings[0].progress = 0.99f;
    city.buildings[0].happiness = 2.0f;
    updatePopulation(city);
    EXPECT_EQ(city.buildings[0].happiness, 2.0f);
    EXPECT_EQ(city.buildings[0].unhappyDays, 0);
}

TEST(Happiness, BelowEightTheUnhappyDaysCountUpAndOtherwiseDown) {
    City city = withSchool();
    city.buildings[0].powered = city.buildings[0].watered = 0;
    city.buildings[0].happiness = 9.3f; // on its way to 3
    for (const int days : {0, 1, 2}) {
        updatePopulation(city);
        EXPECT_EQ(city.buildings[0].unhappyDays, days);
    }
    city.buildings[0].powered = 1;
    for (const int days : {1, 0, 0}) {
        updatePopulation(city);
        EXPECT_EQ(city.buildings[0].unhappyDays, days);
    }
}

TEST(Happiness, OfExactlyEightIsNotUnhappy) {
    City city = withSchool();
    city.buildings[0].powered = city.buildings[0].watered = 0;
    city.coverage[COVERAGE_POLICE][cellIndex(X, Y)] = 0.5f; // 25 - 22 + 5
    city.buildings[0].happiness = 8.0f;
    city.buildings[0].unhappyDays = 3;
    updatePopulation(city);
    EXPECT_EQ(city.buildings[0].happiness, 8.0f);
    EXPECT_EQ(city.buildings[0].unhappyDays, 2);
}

TEST(Happiness, OfTheCityIsThatOfItsResidents) {
    City city = withHome(6);
    addWorkingBuilding(city, X + 1, Y, KIND_HOMES, 2).occupants = 18;
    addWorkingBuilding(city, X + 2, Y, KIND_SCHOOL);
    updatePopulation(city);
    const float first = city.buildings[0].happiness;
    const float second = city.buildings[1].happiness;
    EXPECT_FLOAT_EQ(city.happiness, (first * 6 + second * 18) / 24)
        << "as many as lived there before the day";
    EXPECT_EQ(city.buildings[0].occupants, 7);
}

TEST(Happiness, OfTheCityIsThatOfItsOnlyResident) {
    City city = withHome(1);
    city.coverage[COVERAGE_EDUCATION][cellIndex(X, Y)] = 1.0f;
    updatePopulation(city);
    EXPECT_EQ(city.educatedShare, 1.0f);
    EXPECT_EQ(city.happiness, city.buildings[0].happiness);
    EXPECT_NE(city.happiness, 60.0f);
}

TEST(Happiness, OfTheCityCountsResidentsOfHomesThatDoNotWork) {
    City city = flatCity();
    addBuilding(city, X, Y, KIND_HOMES).occupants = 5;
    updatePopulation(city);
    EXPECT_EQ(city.population, 0);
    EXPECT_EQ(city.happiness, city.buildings[0].happiness);
}

TEST(Happiness, OfACityWithoutResidentsIsSixty) {
    City city = withHome(0);
    city.happiness = 10.0f;
    updatePopulation(city);
    EXPECT_EQ(city.happiness, 60.0f);
}

// --- moving in and out ----------------------------------------------------------------------------------

struct HomeCase {
    int occupants = 0;
    uint8_t level = 1;
    float happiness = 50.0f;
    float demand = 0.0f;
    bool working = true;
    int unservedDays = 0;
};

static int residentsAfter(const HomeCase& test) {
    City city = withHome(test.occupants, test.level);
    Building& home = city.buildings[0];
    home.happiness = test.happiness;
    home.working = test.working;
    home.unservedDays = test.unservedDays;
    city.landValue[cellIndex(X, Y)] = 0.4f;
    city.demand[0] = test.demand;
    updatePopulation(city);
    return city.buildings[0].occupants;
}

TEST(Residents, MoveInStepByStepUntilTheHomeIsFull) {
    EXPECT_EQ(residentsAfter({.occupants = 0, .level = 1}), 1);
    EXPECT_EQ(residentsAfter({.occupants = 7, .level = 1}), 8);
    EXPECT_EQ(residentsAfter({.occupants = 8, .level = 1}), 8);
    EXPECT_EQ(residentsAfter({.occupants = 0, .level = 2}), 3);
    EXPECT_EQ(residentsAfter({.occupants = 29, .level = 2}), 30);
    EXPECT_EQ(residentsAfter({.occupants = 0, .level = 3}), 10);
    EXPECT_EQ(residentsAfter({.occupants = 75, .level = 3}), 80);
}

TEST(Residents, StayAwayWhenNobodyWantsHomes) {
    EXPECT_EQ(residentsAfter({.occupants = 3, .demand = -0.3f}), 3);
    EXPECT_EQ(residentsAfter({.occupants = 3, .demand = -0.299f}), 4);
}

TEST(Residents, NoHomeHoldsMoreThanItsLevelAllows) {
    EXPECT_EQ(residentsAfter({.occupants = 30, .level = 1}), 8);
    EXPECT_EQ(residentsAfter({.occupants = 30, .level = 1, .demand = -1.0f}), 8);
    EXPECT_EQ(residentsAfter({.occupants = 30, .level = 1, .happiness = 0.0f}), 8);
    EXPECT_EQ(residentsAfter({.occupants = 30, .level = 1, .working = false}), 8);
    EXPECT_EQ(residentsAfter({.occupants = -30, .level = 1}), 0);
}

TEST(Residents, BelowThirtyFiveNobodyMovesIn) {
    // The home moves a fifth towards 40.
    EXPECT_EQ(residentsAfter({.occupants = 3, .happiness = 33.8f}), 4) << "35.04 by the evening";
    EXPECT_EQ(residentsAfter({.occupants = 3, .happiness = 33.7f}), 3) << "34.96 by the evening";
}

TEST(Residents, BelowTwentyTheyMoveOut) {
    EXPECT_EQ(residentsAfter({.occupants = 5, .happiness = 15.1f}), 5) << "20.08 by the evening";
    EXPECT_EQ(residentsAfter({.occupants = 5, .happiness = 14.9f}), 4) << "19.92 by the evening";
    EXPECT_EQ(residentsAfter({.occupants = 30, .level = 2, .happiness = 0.0f}), 27);
    EXPECT_EQ(residentsAfter({.occupants = 2, .level = 2, .happiness = 0.0f}), 0);
    EXPECT_EQ(residentsAfter({.occupants = 80, .level = 3, .happiness = 0.0f}), 72);
    EXPECT_EQ(residentsAfter({.occupants = 0, .level = 1, .happiness = 0.0f}), 0);
}

// A home whose happiness is there already and stays there: 25 without power, 15 less for want of workers, and
// the rest from its police.
static int residentsAtRest(float happiness) {
    City city = withHome(5);
    Building& home = city.buildings[0];
    home.powered = 0;
    home.happiness = happiness;
    city.landValue[cellIndex(X, Y)] = 0.4f;
    city.coverage[COVERAGE_POLICE][cellIndex(X, Y)] = (happiness - 10.0f) / 10.0f;
    updatePopulation(city);
    EXPECT_EQ(city.buildings[0].happiness, happiness);
    return city.buildings[0].occupants;
}

TEST(Residents, AtExactly35MoveInAndAtExactly20Stay) {
    EXPECT_EQ(residentsAtRest(35.0f), 6);
    EXPECT_EQ(residentsAtRest(20.0f), 5);
}

TEST(Residents, OfAHomeThatLosesServiceStay) {
    EXPECT_EQ(residentsAfter({.occupants = 5, .happiness = 0.0f, .working = false}), 5);
    EXPECT_EQ(residentsAfter({.occupants = 5, .working = false}), 5);
}

TEST(Residents, WouldLeaveAHomeThatIsLongUnserved) {
    EXPECT_EQ(residentsAfter({.occupants = 30, .level = 2, .working = false, .unservedDays = 3}), 30);
    EXPECT_EQ(residentsAfter({.occupants = 30, .level = 2, .working = false, .unservedDays = 4}), 27);
    EXPECT_EQ(residentsAfter({.occupants = 5, .level = 1, .working = false, .unservedDays = 4}), 4);
}

TEST(Residents, WaitForTheHomeToBeFinished) {
    City city = withHome(0);
    city.buildings[0].progress = 0.5f;
    updatePopulation(city);
    EXPECT_EQ(city.buildings[0].occupants, 0);
}

// --- demand ---------------------------------------------------------------------------------------------

TEST(Demand, ForHomesFollowsTheJobsWithoutWorkers) {
    City city = flatCity();
    updateDemand(city);
    EXPECT_EQ(city.demand[0], 0.0f);
    addWorkingBuilding(city, X, Y, KIND_POLICE_STATION);
    addBuilding(city, X + 1, Y, KIND_HOSPITAL);
    updateDemand(city);
    EXPECT_EQ(city.demand[0], 14.0f / 300.0f);
    city.workers = 114;
    updateDemand(city);
    EXPECT_EQ(city.demand[0], -100.0f / 414.0f);
}

TEST(Demand, ForShopsFollowsThePeople) {
    City city = flatCity();
    city.population = 1000;
    updateDemand(city);
    EXPECT_EQ(city.demand[1], 0.5f);
    addWorkingBuilding(city, X, Y, KIND_SHOPS, 3);
    addWorkingBuilding(city, X + 1, Y, KIND_FACTORY, 3);
    updateDemand(city);
    EXPECT_FLOAT_EQ(city.demand[1], (300.0f - 36.0f) / 600.0f);
}

TEST(Demand, ForOfficesFollowsTheEducated) {
    City city = flatCity();
    city.workers = 500;
    updateDemand(city);
    EXPECT_EQ(city.demand[2], 0.0f);
    city.educatedShare = 0.5f;
    updateDemand(city);
    EXPECT_FLOAT_EQ(city.demand[2], 150.0f / 500.0f);
    addWorkingBuilding(city, X, Y, KIND_OFFICE_TOWER, 3);
    updateDemand(city);
    EXPECT_FLOAT_EQ(city.demand[2], (150.0f - 72.0f) / 500.0f);
}

TEST(Demand, ForIndustryFollowsTheWorkersAndTheShopsWithoutGoods) {
    City city = flatCity();
    city.workers = 100;
    updateDemand(city);
    EXPECT_FLOAT_EQ(city.demand[3], 0.125f);
    city.goodsDemand = 80.0f;
    city.goodsSupply = 40.0f;
    updateDemand(city);
    EXPECT_FLOAT_EQ(city.demand[3], 0.125f + 0.125f);
    city.goodsDemand = 0.0f;
    updateDemand(city);
    EXPECT_FLOAT_EQ(city.demand[3], 0.125f) << "no shop asks, so the supply does not count";
}

TEST(Demand, ChangesNothingElse) {
    City city = withHome(8);
    addBuilding(city, X + 1, Y, KIND_SHOPS);
    city.demand.fill(0.75f);
    expectExactly(city, updateDemand, [](City& c) { c.demand.fill(0.0f); });
}

TEST(Demand, IsHeldBetweenMinusOneAndOne) {
    City city = flatCity();
    for (int i = 0; i < 10; i++) addWorkingBuilding(city, X + i, Y, KIND_FACTORY, 3);
    updateDemand(city);
    EXPECT_EQ(city.demand[0], 1.0f);
    EXPECT_EQ(city.demand[3], -1.0f);
    for (Building& building : city.buildings) building.kind = KIND_OFFICE_TOWER;
    updateDemand(city);
    EXPECT_EQ(city.demand[2], -1.0f);
    for (Building& building : city.buildings) building.kind = KIND_SHOPS;
    updateDemand(city);
    EXPECT_EQ(city.demand[1], -1.0f);
}

// --- wild saves -----------------------------------------------------------------------------------------

TEST(WildCities, SumsOfResidentsAndJobsEndAtTheRangeOfTheirFields) {
    City city = flatCity();
    for (int i = 0; i < 10; i++) {
        addWorkingBuilding(city, i, 5, KIND_HOMES).occupants = std::numeric_limits<int32_t>::max();
        addWorkingBuilding(city, i, 6, KIND_FACTORY, 255);
    }
    updatePopulation(city);
    EXPECT_EQ(city.population, std::numeric_limits<int32_t>::max());
    EXPECT_EQ(city.jobs, 10 * 8 * 255 * 255);
    EXPECT_EQ(city.employed, city.jobs);
    updateDemand(city);
    for (Building& building : city.buildings) building.occupants = std::numeric_limits<int32_t>::min();
    updatePopulation(city);
    EXPECT_EQ(city.population, std::numeric_limits<int32_t>::min());
    updateDemand(city);
    for (const float demand : city.demand) EXPECT_TRUE(demand >= -1.0f && demand <= 1.0f);
}

TEST(WildCities, AHomeOffTheMapIsUneducatedAndOnWorthlessLand) {
    City city = withHome(8);
    for (Grid& grid : city.coverage) std::fill(grid.begin(), grid.end(), 1.0f);
    std::fill(city.landValue.begin(), city.landValue.end(), 0.4f);
    addWorkingBuilding(city, X + 1, Y, KIND_PARK);
    city.buildings[0].x = -1;
    EXPECT_FLOAT_EQ(targetOf(city), 47.0f);
    updatePopulation(city);
    EXPECT_EQ(city.educatedShare, 0.0f);
}
