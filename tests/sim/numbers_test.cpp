#include "sim/numbers.h"

#include <gtest/gtest.h>

#include <cmath>

constexpr int32_t I32_MIN = std::numeric_limits<int32_t>::min();
constexpr int32_t I32_MAX = std::numeric_limits<int32_t>::max();
constexpr int64_t I64_MIN = std::numeric_limits<int64_t>::min();
constexpr int64_t I64_MAX = std::numeric_limits<int64_t>::max();

TEST(Numbers, AreHeldBetweenBothEnds) {
    EXPECT_EQ(hold(-1.5f, -1.0f, 1.0f), -1.0f);
    EXPECT_EQ(hold(-1.0f, -1.0f, 1.0f), -1.0f);
    EXPECT_EQ(hold(0.25f, -1.0f, 1.0f), 0.25f);
    EXPECT_EQ(hold(1.0f, -1.0f, 1.0f), 1.0f);
    EXPECT_EQ(hold(1.5f, -1.0f, 1.0f), 1.0f);
    EXPECT_EQ(hold(std::nanf(""), -1.0f, 1.0f), -1.0f);
    EXPECT_EQ(hold(std::numeric_limits<float>::infinity(), -1.0f, 1.0f), 1.0f);
}

TEST(Numbers, LoseTheirFractionTowardsZero) {
    for (const float sign : {-1.0f, 1.0f}) {
        EXPECT_EQ(wholePart(sign * 2.9f), static_cast<int>(sign) * 2);
        EXPECT_EQ(wholePart64(static_cast<double>(sign) * 2.9), static_cast<int>(sign) * 2);
    }
    EXPECT_EQ(wholePart(std::nanf("")), 0);
    EXPECT_EQ(wholePart64(std::nan("")), 0);
}

// Not worked out by the compiler, whose casts of what does not fit are kinder than the processor's.
template<class T> static T atRunTime(T value) {
    volatile T kept = value;
    return kept;
}

TEST(Numbers, BeyondAnIntegersRangeAreItsEnds) {
    EXPECT_EQ(wholePart(2147483520.0f), 2147483520) << "the last float below";
    EXPECT_EQ(wholePart(atRunTime(2147483648.0f)), I32_MAX);
    EXPECT_EQ(wholePart(atRunTime(1e30f)), I32_MAX);
    EXPECT_EQ(wholePart(-2147483648.0f), I32_MIN);
    EXPECT_EQ(wholePart(atRunTime(-2147483904.0f)), I32_MIN);
    EXPECT_EQ(wholePart64(9223372036854774784.0), 9223372036854774784) << "the last double below";
    EXPECT_EQ(wholePart64(atRunTime(9223372036854775808.0)), I64_MAX);
    EXPECT_EQ(wholePart64(-9223372036854775808.0), I64_MIN);
    EXPECT_EQ(wholePart64(atRunTime(-9223372036854777856.0)), I64_MIN);
    EXPECT_EQ(wholePart64(atRunTime(-1e300)), I64_MIN);
}

TEST(Numbers, SumsOf64BitsEndAtTheRangeOf32) {
    for (const int64_t inside : {int64_t{I32_MIN}, int64_t{-1}, int64_t{0}, int64_t{I32_MAX}})
        EXPECT_EQ(saturated(inside), inside);
    EXPECT_EQ(saturated(int64_t{I32_MAX} + 1), I32_MAX);
    EXPECT_EQ(saturated(I64_MAX), I32_MAX);
    EXPECT_EQ(saturated(int64_t{I32_MIN} - 1), I32_MIN);
    EXPECT_EQ(saturated(I64_MIN), I32_MIN);
}
