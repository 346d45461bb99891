#include "sim/hash.h"

#include <cassert>
#include <cmath>

float valueNoise(float x, float y, uint32_t salt) {
    const float cornerX = std::floor(x);
    const float cornerY = std::floor(y);
    const float tx = x - cornerX;
    const float ty = y - cornerY;
    const float blendX = tx * tx * (3.0f - 2.0f * tx);
    const float blendY = ty * ty * (3.0f - 2.0f * ty);

    const uint32_t ix = static_cast<uint32_t>(static_cast<int32_t>(cornerX));
    const uint32_t iy = static_cast<uint32_t>(static_cast<int32_t>(cornerY));
    const float a = hashUnit(ix, iy, salt);
    const float b = hashUnit(ix + 1, iy, salt);
    const float c = hashUnit(ix, iy + 1, salt);
    const float d = hashUnit(ix + 1, iy + 1, salt);
    const float top = a + (b - a) * blendX;
    const float bottom = c + (d - c) * blendX;
    return top + (bottom - top) * blendY;
}

float fractalNoise(float x, float y, float scale, int octaves, uint32_t salt) {
    assert(octaves > 0);
    float sum = 0.0f;
    float amplitudes = 0.0f;
    float frequency = 1.0f;
    float amplitude = 0.5f;
    for (int octave = 0; octave < octaves; octave++) {
        sum += amplitude * valueNoise(scale * x * frequency, scale * y * frequency, salt);
        amplitudes += amplitude;
        frequency *= 2.0f;
        amplitude *= 0.5f;
        salt += 101;
    }
    return sum / amplitudes;
}
