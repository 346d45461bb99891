// Long runs of arbitrary operations: whatever the player does, the city stays whole, an operation that says
// no has changed nothing, and no sum of clicks makes money.
#include "sim/city_helpers.h"
#include "sim/finance.h"
#include "sim/map_generation.h"
#include "sim/missions.h"
#include "sim/networks.h"
#include "sim/random_city.h"
#include "sim/services.h"

#include <gtest/gtest.h>

#include <algorithm>

TEST(RandomOperations, KeepTheCityWholeAndRefusalsChangeNothing) {
    City city;
    generateMap(city, 7);
    city.money = 1e9;
    int refused = 0;
    for (uint32_t step = 0; step < 1500; step++) {
        const CityHashes before = cityHashes(city);
        const double moneyBefore = city.money;
        if (!operate(city, step)) {
            ASSERT_EQ(cityHashes(city), before) << "step " << step;
            refused++;
        }
        ASSERT_EQ(brokenInvariant(city), "") << "step " << step;
        const bool demolished = city.statusId == STATUS_DEMOLISHED;
        ASSERT_TRUE(city.money <= moneyBefore || demolished) << "step " << step;
    }
    EXPECT_GT(refused, 400);
    EXPECT_LT(refused, 1100);
    EXPECT_GT(city.buildings.size(), 20u);
}

TEST(RandomOperations, TakeNoMoreThanTheTreasuryHolds) {
    City city;
    generateMap(city, 7);
    for (uint32_t step = 0; step < 4000; step++) {
        operate(city, step);
        ASSERT_GE(city.money, 0.0) << "step " << step;
    }
    EXPECT_LT(city.money, 6000.0);
}

static bool allWithin(const Grid& grid, float lowest, float highest) {
    return std::all_of(grid.begin(), grid.end(), [=](float v) { return v >= lowest && v <= highest; });
}

TEST(RandomOperations, AWildCityStaysSafeAndItsFieldsStayInRange) {
    for (uint32_t salt = 0; salt < 6; salt++) {
        City city = wildCity(salt);
        for (uint32_t step = 0; step < 200; step++) {
            const CityHashes before = cityHashes(city);
            ASSERT_TRUE(operate(city, step) || cityHashes(city) == before) << "step " << step;
            if (step % 20 != 0) continue;
            updateUtilities(city);
            updateCoverage(city);
            updateLandValue(city);
            updateFinance(city);
            checkMissions(city);
        }
        for (const Grid& grid : city.coverage) EXPECT_TRUE(allWithin(grid, 0.0f, 1.0f));
        for (const Grid* grid : {&city.pollution, &city.landValue, &city.powerField, &city.waterField})
            EXPECT_TRUE(allWithin(*grid, 0.0f, 1.0f));
        for (const Building& building : city.buildings)
            EXPECT_TRUE(building.powered <= 1 && building.watered <= 1 && building.roadAccess <= 1);
    }
}
