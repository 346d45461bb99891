// Fingerprints of what a mesh is made from, because the city raises its marks generously: a mesh called stale
// whose fingerprint is the same is neither built nor uploaded again.
#pragma once

#include <bit>
#include <cstdint>

// Not 0, since that stands for a mesh that was never built.
constexpr uint64_t FINGERPRINT_START = 1;

inline uint64_t mixFingerprint(uint64_t fingerprint, uint32_t value) {
    fingerprint = (fingerprint ^ value) * 0x9E3779B97F4A7C15u;
    return fingerprint ^ (fingerprint >> 32);
}

inline uint64_t mixFingerprint(uint64_t fingerprint, float value) {
    return mixFingerprint(fingerprint, std::bit_cast<uint32_t>(value));
}
