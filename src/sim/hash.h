// The one source of chance: a 32-bit integer hash of place and salt, the same on every system.
#pragma once

#include <cstdint>

inline uint32_t hashCell(uint32_t x, uint32_t y, uint32_t salt) {
    uint32_t h = salt * 374761393u + x * 668265263u + y * 2246822519u;
    h = (h ^ (h >> 13)) * 1274126177u;
    return h ^ (h >> 16);
}

// 0 to 1, both ends included. Of 24 bits, because a float holds no more of them exactly.
inline float hashUnit(uint32_t x, uint32_t y, uint32_t salt) {
    return static_cast<float>(hashCell(x, y, salt) & 0xFFFFFFu) / 16777215.0f;
}

// Smoothly blended hashUnit of the four whole-numbered corners around (x, y), 0 to 1.
float valueNoise(float x, float y, uint32_t salt);

// `octaves` of valueNoise at doubling frequency and halving amplitude, their weighted mean: 0 to 1.
// The salt grows by 101 an octave, so that none repeats another in small.
float fractalNoise(float x, float y, float scale, int octaves, uint32_t salt);
