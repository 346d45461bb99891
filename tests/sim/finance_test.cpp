#include "sim/finance.h"

#include "sim/expect_exactly.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

static City cityOf(uint8_t kind, uint8_t level = 1) {
    City city = flatCity();
    addWorkingBuilding(city, 20, 20, kind, level);
    return city;
}

static double incomeOf(City city) {
    updateFinance(city);
    return city.lastIncome;
}

static double expenseOf(City city) {
    updateFinance(city);
    return city.lastExpense;
}

TEST(Finance, TheTreasuryMovesByTheDifference) {
    City city = cityOf(KIND_HOMES);
    city.buildings[0].occupants = 7;
    city.money = 10.0;
    updateFinance(city);
    EXPECT_EQ(city.lastIncome, 3.5);
    EXPECT_EQ(city.lastExpense, 0.5);
    EXPECT_EQ(city.money, 13.0);
    city.buildings.clear();
    updateFinance(city);
    EXPECT_EQ(city.lastIncome, 0.0);
    EXPECT_EQ(city.lastExpense, 0.0);
    EXPECT_EQ(city.money, 13.0);
}

TEST(Finance, MovesTheTreasuryAndNothingElse) {
    City city = cityOf(KIND_HOMES);
    city.buildings[0].occupants = 7;
    expectExactly(city, updateFinance, [](City& c) {
        c.lastIncome = 3.5;
        c.lastExpense = 0.5;
        c.money = 150003.0;
    });
}

TEST(Finance, HomesPayByResidentsAndTheOthersByLevelAndStaffing) {
    City homes = cityOf(KIND_HOMES, 3);
    homes.buildings[0].occupants = 61;
    EXPECT_EQ(incomeOf(homes), 30.5);
    struct Row {
        uint8_t kind;
        double perLevel;
    };
    for (const Row& row : {Row{KIND_SHOPS, 14.0}, Row{KIND_OFFICE_TOWER, 22.0}, Row{KIND_FACTORY, 12.0}})
        for (const uint8_t level : {1, 2, 3}) {
            City city = cityOf(row.kind, level);
            city.buildings[0].occupants = 99; // staff pays no tax
            city.buildings[0].staffing = 0.75f;
            EXPECT_EQ(incomeOf(city), level * row.perLevel * 0.75);
        }
}

TEST(Finance, EachZonePaysItsOwnTax) {
    for (int kind = KIND_HOMES; kind <= KIND_FACTORY; kind++) {
        City city = cityOf(static_cast<uint8_t>(kind));
        city.buildings[0].occupants = 8;
        city.buildings[0].staffing = 1.0f;
        const double normal = incomeOf(city);
        EXPECT_GT(normal, 0.0);
        for (int rate = 0; rate < 4; rate++) {
            City taxed = city;
            taxed.taxRate[rate] = 200;
            EXPECT_EQ(incomeOf(taxed), rate == kind ? 2.0 * normal : normal);
        }
    }
}

TEST(Finance, ADistrictsTaxLevelScalesTheIncomeInIt) {
    City city = cityOf(KIND_HOMES);
    city.buildings[0].occupants = 8;
    city.cells[cellIndex(20, 20)].district = 6;
    constexpr double FACTORS[] = {0.7, 1.0, 1.3};
    for (int level = 0; level < 3; level++) {
        city.districtTax[6] = level;
        EXPECT_EQ(incomeOf(city), 4.0 * FACTORS[level]);
        EXPECT_EQ(expenseOf(city), 0.5);
    }
}

TEST(Finance, OutsideDistrictsTheLevelOfEntryZeroDoesNotCount) {
    City city = cityOf(KIND_HOMES);
    city.buildings[0].occupants = 8;
    city.districtTax[0] = 2;
    EXPECT_EQ(incomeOf(city), 4.0);
}

TEST(Finance, GrownBuildingsCostHalfTheirLevel) {
    for (int kind = KIND_HOMES; kind <= KIND_FACTORY; kind++) {
        City city = cityOf(static_cast<uint8_t>(kind), 3);
        EXPECT_EQ(expenseOf(city), 1.5);
        city.buildings[0].working = 0;
        EXPECT_EQ(expenseOf(city), 1.5);
    }
}

TEST(Finance, PlacedBuildingsCostTheirUpkeepWorkingOrNot) {
    constexpr double UPKEEP[] = {60, 55, 110, 80, 6, 45, 140, 50, 40, 55};
    for (int kind = KIND_POLICE_STATION; kind <= KIND_WATER_PUMP; kind++) {
        City city = cityOf(static_cast<uint8_t>(kind));
        EXPECT_EQ(expenseOf(city), UPKEEP[kind - KIND_POLICE_STATION]);
        EXPECT_EQ(incomeOf(city), 0.0);
        city.buildings[0].working = 0;
        EXPECT_EQ(expenseOf(city), UPKEEP[kind - KIND_POLICE_STATION]);
    }
}

TEST(Finance, EveryKindAsksItsOwnBudget) {
    constexpr int BUDGETS[] = {0, 1, 2, 3, 4, 5, 6, 6, 6, 7};
    for (int kind = KIND_POLICE_STATION; kind <= KIND_WATER_PUMP; kind++) {
        City city = cityOf(static_cast<uint8_t>(kind));
        const double normal = expenseOf(city);
        for (int budget = 0; budget < 8; budget++) {
            City rich = city;
            rich.serviceBudget[budget] = 150;
            EXPECT_EQ(expenseOf(rich), budget == BUDGETS[kind - KIND_POLICE_STATION] ? 1.5 * normal : normal);
        }
    }
}

TEST(Finance, UpkeepKeepsItsCents) {
    City city = cityOf(KIND_WATER_PUMP);
    city.serviceBudget[7] = 90;
    EXPECT_EQ(expenseOf(city), 49.5);
}

TEST(Finance, UnderConstructionNothingIsPaidOrEarned) {
    for (int kind = 0; kind < KIND_COUNT; kind++) {
        City city = cityOf(static_cast<uint8_t>(kind));
        city.buildings[0].progress = 0.99f;
        city.buildings[0].occupants = 8;
        city.buildings[0].staffing = 1.0f;
        EXPECT_EQ(incomeOf(city), 0.0);
        EXPECT_EQ(expenseOf(city), 0.0);
    }
}

TEST(Finance, WhoDoesNotWorkEarnsNothing) {
    City city = cityOf(KIND_HOMES);
    city.buildings[0].occupants = 8;
    city.buildings[0].working = 0;
    EXPECT_EQ(incomeOf(city), 0.0);
}

TEST(Finance, RoadsAndStopsCostByTheCell) {
    City city = flatCity();
    city.cells[0].road = ROAD_STREET;
    EXPECT_EQ(expenseOf(city), 0.6);
    city.cells[0].road = ROAD_AVENUE;
    EXPECT_EQ(expenseOf(city), 1.6);
    city.cells[0].busStop = 1;
    EXPECT_EQ(expenseOf(city), 3.6);
    layRoads(city, 0, 1, 9, 1);
    EXPECT_NEAR(expenseOf(city), 9.6, 1e-12);
}

// ---- rates

TEST(Rates, TaxesMoveByTenBetween20And200) {
    City city;
    for (int i = 0; i < 4; i++) {
        adjustTax(city, i, 3);
        EXPECT_EQ(city.taxRate[i], 130);
        adjustTax(city, i, -11);
        EXPECT_EQ(city.taxRate[i], 20);
        adjustTax(city, i, -1);
        EXPECT_EQ(city.taxRate[i], 20);
        adjustTax(city, i, 18);
        EXPECT_EQ(city.taxRate[i], 200);
        adjustTax(city, i, 1);
        EXPECT_EQ(city.taxRate[i], 200);
    }
}

TEST(Rates, BudgetsMoveByTenBetween50And150) {
    City city;
    for (int i = 0; i < 8; i++) {
        adjustBudget(city, i, 5);
        EXPECT_EQ(city.serviceBudget[i], 150);
        adjustBudget(city, i, 1);
        EXPECT_EQ(city.serviceBudget[i], 150);
        adjustBudget(city, i, -10);
        EXPECT_EQ(city.serviceBudget[i], 50);
        adjustBudget(city, i, -1);
        EXPECT_EQ(city.serviceBudget[i], 50);
    }
}

TEST(Rates, ChangeTheirOwnEntryAndNothingElse) {
    City city;
    expectExactly(
        city, [](City& c) { adjustTax(c, 2, 1); }, [](City& c) { c.taxRate[2] = 110; });
    expectExactly(
        city, [](City& c) { adjustBudget(c, 5, -1); }, [](City& c) { c.serviceBudget[5] = 90; });
    expectExactly(
        city, [](City& c) { cycleDistrictTax(c, 1); }, [](City& c) { c.districtTax[1] = 2; });
    expectExactly(
        city, [](City& c) { toggleDistrictPolicy(c, 8, 4); }, [](City& c) { c.districtPolicy[8] = 4; });
}

TEST(Rates, AnyNumberOfStepsEndsAtTheLimit) {
    City city;
    adjustTax(city, 0, std::numeric_limits<int>::max());
    adjustTax(city, 1, std::numeric_limits<int>::min());
    adjustBudget(city, 0, std::numeric_limits<int>::max());
    adjustBudget(city, 1, std::numeric_limits<int>::min());
    EXPECT_EQ(city.taxRate, (std::array<int32_t, 4>{200, 20, 100, 100}));
    EXPECT_EQ(city.serviceBudget, (std::array<int32_t, 8>{150, 50, 100, 100, 100, 100, 100, 100}));
}

TEST(Rates, AnUnknownIndexChangesNothing) {
    City city;
    const CityHashes before = cityHashes(city);
    for (const int index : {-1, 9, 1 << 30, std::numeric_limits<int>::min()}) {
        adjustTax(city, index, 1);
        adjustBudget(city, index, 1);
        cycleDistrictTax(city, index);
        toggleDistrictPolicy(city, index, 1);
    }
    adjustTax(city, 4, 1);
    adjustBudget(city, 8, 1);
    cycleDistrictTax(city, 0);
    toggleDistrictPolicy(city, 0, 1);
    EXPECT_EQ(cityHashes(city), before);
}

TEST(Districts, TaxLevelsGoRound) {
    City city;
    for (const int expected : {2, 0, 1, 2}) {
        cycleDistrictTax(city, 8);
        EXPECT_EQ(city.districtTax[8], expected);
    }
    EXPECT_EQ(city.districtTax[7], 1);
}

TEST(Districts, PoliciesFlipOneByOne) {
    City city;
    toggleDistrictPolicy(city, 1, POLICY_SMOKE_FREE);
    toggleDistrictPolicy(city, 1, POLICY_TRANSIT_FIRST);
    EXPECT_EQ(city.districtPolicy[1], POLICY_SMOKE_FREE | POLICY_TRANSIT_FIRST);
    toggleDistrictPolicy(city, 1, POLICY_SMOKE_FREE);
    EXPECT_EQ(city.districtPolicy[1], POLICY_TRANSIT_FIRST);
    EXPECT_EQ(city.districtPolicy[2], 0);
}

// ---- history

TEST(History, FillsFromTheFront) {
    City city;
    pushHistory(city, 1.5, 2.5, 3, 4.5f);
    pushHistory(city, 10.0, 20.0, 30, 40.0f);
    EXPECT_EQ(city.historyCount, 2);
    EXPECT_EQ(city.history[HISTORY_INCOME][0], 1.5f);
    EXPECT_EQ(city.history[HISTORY_EXPENSES][0], 2.5f);
    EXPECT_EQ(city.history[HISTORY_POPULATION][0], 3.0f);
    EXPECT_EQ(city.history[HISTORY_HAPPINESS][0], 4.5f);
    EXPECT_EQ(city.history[HISTORY_INCOME][1], 10.0f);
    EXPECT_EQ(city.history[HISTORY_HAPPINESS][1], 40.0f);
    EXPECT_EQ(city.history[HISTORY_INCOME][2], 0.0f);
}

TEST(History, The61stDayPushesTheFirstOut) {
    City city;
    for (int day = 1; day <= 60; day++) pushHistory(city, day, 2 * day, 3 * day, 50.0f);
    EXPECT_EQ(city.historyCount, 60);
    EXPECT_EQ(city.history[HISTORY_INCOME][0], 1.0f);
    EXPECT_EQ(city.history[HISTORY_INCOME][59], 60.0f);
    pushHistory(city, 61.0, 122.0, 183, 50.0f);
    EXPECT_EQ(city.historyCount, 60);
    for (int i = 0; i < 60; i++) {
        EXPECT_EQ(city.history[HISTORY_INCOME][i], static_cast<float>(i + 2));
        EXPECT_EQ(city.history[HISTORY_EXPENSES][i], static_cast<float>(2 * (i + 2)));
        EXPECT_EQ(city.history[HISTORY_POPULATION][i], static_cast<float>(3 * (i + 2)));
    }
}

// ---- cities that no rule could have made

TEST(FinanceOfAWildCity, UnknownKindsCostAndEarnNothing) {
    City city = flatCity();
    addWorkingBuilding(city, 20, 20, 14, 255).staffing = 1.0f;
    addWorkingBuilding(city, 20, 20, 255, 255).occupants = 1000;
    EXPECT_EQ(expenseOf(city), 0.0);
    EXPECT_EQ(incomeOf(city), 0.0);
}

TEST(FinanceOfAWildCity, OffTheMapAndInUnknownDistrictsTheNormalTaxHolds) {
    City offMap = flatCity();
    addWorkingBuilding(offMap, -1, 32767, KIND_HOMES).occupants = 8;
    EXPECT_EQ(incomeOf(offMap), 4.0);

    City district = cityOf(KIND_HOMES);
    district.buildings[0].occupants = 8;
    district.cells[cellIndex(20, 20)].district = 250;
    EXPECT_EQ(incomeOf(district), 4.0);
}

TEST(FinanceOfAWildCity, UnknownRoadsCostAsStreets) {
    City city = flatCity();
    city.cells[0].road = 9;
    EXPECT_EQ(expenseOf(city), 0.6);
}

TEST(FinanceOfAWildCity, MoneyThatIsNoNumberStaysSo) {
    City city = cityOf(KIND_HOMES);
    city.money = std::numeric_limits<double>::quiet_NaN();
    updateFinance(city);
    EXPECT_TRUE(std::isnan(city.money));
    EXPECT_EQ(city.lastExpense, 0.5);
    city.money = -std::numeric_limits<double>::infinity();
    updateFinance(city);
    EXPECT_TRUE(std::isinf(city.money));
}
