#include "sim/hash.h"

#include <gtest/gtest.h>

// The values follow from 32-bit arithmetic alone, so they hold on every system.
TEST(Hash, IsPinned) {
    EXPECT_EQ(hashCell(0, 0, 0), 0u);
    EXPECT_EQ(hashCell(1, 2, 3), 2249667642u);
    EXPECT_EQ(hashCell(95, 7, 4294967295u), 3498411071u);
}

TEST(Hash, UnitKeepsTheLow24Bits) {
    for (uint32_t i = 0; i < 1000; i++) {
        const float unit = hashUnit(i, 2 * i, 9);
        EXPECT_EQ(unit, static_cast<float>(hashCell(i, 2 * i, 9) & 0xFFFFFFu) / 16777215.0f);
        EXPECT_TRUE(unit >= 0.0f && unit <= 1.0f);
    }
}

TEST(Noise, MeetsTheHashAtWholeCoordinates) {
    for (uint32_t i = 0; i < 50; i++)
        EXPECT_EQ(valueNoise(static_cast<float>(i), static_cast<float>(3 * i), 17), hashUnit(i, 3 * i, 17));
}

TEST(Noise, IsHalfWayInTheMiddleOfAnEdge) {
    EXPECT_FLOAT_EQ(valueNoise(4.5f, 2.0f, 1), (hashUnit(4, 2, 1) + hashUnit(5, 2, 1)) / 2.0f);
    EXPECT_FLOAT_EQ(valueNoise(4.0f, 2.5f, 1), (hashUnit(4, 2, 1) + hashUnit(4, 3, 1)) / 2.0f);
}

TEST(Noise, OneOctaveIsThePlainNoise) {
    EXPECT_EQ(fractalNoise(3.0f, 5.0f, 0.5f, 1, 7), valueNoise(1.5f, 2.5f, 7));
}
