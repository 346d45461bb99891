// Small arithmetic that stays defined whatever a loaded file holds.
#pragma once

#include <cassert>
#include <cstdint>
#include <limits>

// Holds the value between both ends; NaN becomes the lower one.
inline float hold(float value, float low, float high) {
    assert(low <= high);
    if (!(value > low)) return low;
    return value < high ? value : high;
}

// The integer part, held to the range, and 0 for NaN, because a cast of what does not fit may give anything.
inline int32_t wholePart(float value) {
    if (value >= 2147483648.0f) return std::numeric_limits<int32_t>::max();
    if (value < -2147483648.0f) return std::numeric_limits<int32_t>::min();
    return value == value ? static_cast<int32_t>(value) : 0;
}

// Of sums of money.
inline int64_t wholePart64(double value) {
    if (value >= 9223372036854775808.0) return std::numeric_limits<int64_t>::max();
    if (value < -9223372036854775808.0) return std::numeric_limits<int64_t>::min();
    return value == value ? static_cast<int64_t>(value) : 0;
}

inline int32_t saturated(int64_t value) {
    if (value > std::numeric_limits<int32_t>::max()) return std::numeric_limits<int32_t>::max();
    if (value < std::numeric_limits<int32_t>::min()) return std::numeric_limits<int32_t>::min();
    return static_cast<int32_t>(value);
}
