// Holds an operation against the whole city, so that one cell, building or figure too many shows.
#pragma once

#include "sim/city_helpers.h"

#include <gtest/gtest.h>

// `operation` leaves the city as `change` does, and nothing more; the answer of the tool is the caller's to
// ask.
template<class Operation, class Change>
void expectExactly(City& city, const Operation& operation, const Change& change) {
    City expected = city;
    change(expected);
    operation(city);
    const CityHashes hashes = cityHashes(city);
    const CityHashes expectedHashes = cityHashes(expected);
    EXPECT_EQ(hashes.land, expectedHashes.land);
    EXPECT_EQ(hashes.buildings, expectedHashes.buildings);
    EXPECT_EQ(hashes.services, expectedHashes.services);
    EXPECT_EQ(hashes.traffic, expectedHashes.traffic);
    EXPECT_EQ(hashes.economy, expectedHashes.economy);
    EXPECT_EQ(hashes.course, expectedHashes.course);
    EXPECT_EQ(hashes.staleness, expectedHashes.staleness);
}
