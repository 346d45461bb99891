#include "sim/finance.h"

#include "sim/building_kinds.h"

#include <algorithm>
#include <cassert>

static constexpr int RATE_STEP = 10; // percent

// Income per day at full staffing and normal rates: money per resident of a home, per level of the others.
static double grossIncome(const Building& building) {
    constexpr std::array<int, 4> PER_LEVEL = {0, 14, 22, 12};
    assert(isGrownKind(building.kind));
    if (building.kind == KIND_HOMES) return building.occupants * 0.5;
    return building.level * PER_LEVEL[building.kind] * static_cast<double>(building.staffing);
}

static double taxFactor(const City& city, const Building& building) {
    constexpr std::array<double, 3> FACTORS = {0.7, 1.0, 1.3};
    const int district = districtAt(city, building.x, building.y);
    assert(city.districtTax[district] >= 0 && city.districtTax[district] < static_cast<int>(FACTORS.size()));
    return district == 0 ? 1.0 : FACTORS[city.districtTax[district]];
}

static double dailyUpkeep(const City& city, const Building& building) {
    if (isGrownKind(building.kind)) return building.level * 0.5;
    if (building.kind >= KIND_COUNT) return 0.0;
    const BuildingKindRow& row = BUILDING_KINDS[building.kind];
    assert(row.budgetIndex >= 0 && row.budgetIndex < static_cast<int>(city.serviceBudget.size()));
    // Multiplied as whole numbers first: 55 at 110 percent would otherwise not be 60.5 to the last digit.
    return row.upkeep * city.serviceBudget[row.budgetIndex] / 100.0;
}

void updateFinance(City& city) {
    double income = 0.0;
    double expense = 0.0;
    for (const Building& building : city.buildings) {
        if (!isFinished(building)) continue;
        expense += dailyUpkeep(city, building); // also of a building that does not work
        if (isGrownKind(building.kind) && building.working)
            income += grossIncome(building) * city.taxRate[building.kind] / 100.0 * taxFactor(city, building);
    }
    for (const Cell& cell : city.cells) {
        if (cell.road) expense += cell.road == ROAD_AVENUE ? 1.6 : 0.6;
        if (cell.busStop) expense += 2.0;
    }
    city.lastExpense = expense;
    city.lastIncome = income;
    city.money += income - expense;
}

// Rates off the table, which only a test could set, end on it too.
static void adjustRate(int32_t& rate, int steps, int lowest, int highest) {
    const int64_t wanted = rate + static_cast<int64_t>(steps) * RATE_STEP;
    rate = static_cast<int32_t>(std::clamp<int64_t>(wanted, lowest, highest));
}

void adjustTax(City& city, int index, int steps) {
    if (index >= 0 && index < static_cast<int>(city.taxRate.size()))
        adjustRate(city.taxRate[index], steps, 20, 200);
}

void adjustBudget(City& city, int index, int steps) {
    if (index >= 0 && index < static_cast<int>(city.serviceBudget.size()))
        adjustRate(city.serviceBudget[index], steps, 50, 150);
}

static bool isDistrict(int district) { return district >= 1 && district < DISTRICT_COUNT; }

void cycleDistrictTax(City& city, int district) {
    if (isDistrict(district)) city.districtTax[district] = (city.districtTax[district] + 1) % 3;
}

void toggleDistrictPolicy(City& city, int district, int bit) {
    if (isDistrict(district)) city.districtPolicy[district] ^= static_cast<uint8_t>(bit);
}

void pushHistory(City& city, double income, double expenses, int population, float happiness) {
    assert(city.historyCount >= 0 && city.historyCount <= HISTORY_LENGTH);
    if (city.historyCount == HISTORY_LENGTH)
        for (auto& row : city.history) std::copy(row.begin() + 1, row.end(), row.begin());
    else
        city.historyCount++;

    const int newest = city.historyCount - 1;
    city.history[HISTORY_INCOME][newest] = static_cast<float>(income);
    city.history[HISTORY_EXPENSES][newest] = static_cast<float>(expenses);
    city.history[HISTORY_POPULATION][newest] = static_cast<float>(population);
    city.history[HISTORY_HAPPINESS][newest] = happiness;
}
