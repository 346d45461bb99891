// Holds an operation against the whole city, so that one cell, building or figure too many shows.
#pragma once

#include "sim/city_helpers.h"

#include <gtest/gtest.h>

// Group by group, so that a failure names the pass that changed.
inline void expectHashes(const City& city, const CityHashes& expected) {
    const CityHashes hashes = cityHashes(city);
    EXPECT_EQ(hashes.land, expected.land);
    EXPECT_EQ(hashes.buildings, expected.buildings);
    EXPECT_EQ(hashes.services, expected.services);
    EXPECT_EQ(hashes.traffic, expected.traffic);
    EXPECT_EQ(hashes.economy, expected.economy);
    EXPECT_EQ(hashes.course, expected.course);
    EXPECT_EQ(hashes.staleness, expected.staleness);
}

// `operation` leaves the city as `change` does, and nothing more; the answer of the tool is the caller's to
// ask.
template<class Operation, class Change>
void expectExactly(City& city, const Operation& operation, const Change& change) {
    City expected = city;
    change(expected);
    operation(city);
    expectHashes(city, cityHashes(expected));
}
