#include "ui/logo/plain_logo.h"

#include "ui/logo/logo.h"

#include <algorithm>
#include <cmath>

struct PlainTower {
    float left;
    float right;
    float top;
};

constexpr PlainTower BACK_TOWERS[] = {{0, 30, 170},    {28, 58, 152},   {56, 84, 180},   {82, 106, 160},
                                      {150, 178, 166}, {176, 202, 146}, {200, 230, 178}, {226, 256, 160}};
constexpr PlainTower FRONT_TOWERS[] = {{8, 40, 186},    {38, 66, 142},   {64, 96, 198},
                                       {94, 116, 172},  {112, 146, 98},  {142, 166, 140},
                                       {164, 192, 188}, {190, 218, 150}, {214, 248, 176}};

static float smooth(float v) {
    const float t = std::clamp(v, 0.0f, 1.0f);
    return t * t * (3.0f - 2.0f * t);
}

static bool covers(const PlainTower& tower, float x, float y) {
    return tower.left <= x && x < tower.right && tower.top <= y && y < 204.0f;
}

static bool windowLit(const PlainTower& tower, float x, float y, uint32_t seed) {
    const float u = x - tower.left;
    const float v = y - tower.top;
    if (std::fmod(u, 6.0f) <= 2.0f || std::fmod(v, 7.0f) <= 2.2f) return false;
    const uint32_t column = static_cast<uint32_t>(u / 6.0f);
    const uint32_t row = static_cast<uint32_t>(v / 7.0f);
    uint32_t h = row * 668265263u + seed * 2246822519u + column * 374761393u;
    h = (h ^ (h >> 13)) * 1274126177u;
    h = h ^ (h >> 16);
    return h % 3 == 0;
}

static Vec3 paintSky(float x, float y) {
    const double height = static_cast<double>(std::clamp(y / 204.0f, 0.0f, 1.0f));
    const float f = static_cast<float>(std::pow(height, 1.7));
    Vec3 colour = {0.05f + 0.93f * f, 0.07f + 0.49f * f, 0.17f + 0.15f * f};
    const float dx = x - 128.0f;
    const float dy = y - 178.0f;
    const float d = std::sqrt(dx * dx + dy * dy);
    const float g = smooth((120.0f - d) / 64.0f);
    colour = mix(colour, {1.0f, 0.72f, 0.36f}, g * g * 0.55f);
    const float u = std::clamp(d / 56.0f, 0.0f, 1.0f);
    const Vec3 sun = {1.0f, 0.93f - 0.29f * u, 0.66f - 0.36f * u};
    return mix(colour, sun, smooth((57.0f - d) / 2.0f));
}

static void paintTowers(Vec3& colour, float x, float y) {
    for (const PlainTower& tower : BACK_TOWERS) {
        if (!covers(tower, x, y)) continue;
        colour = {0.11f, 0.13f, 0.25f};
        if (windowLit(tower, x, y, 91)) colour = {0.98f, 0.8f, 0.46f};
    }
    uint32_t seed = 7;
    for (const PlainTower& tower : FRONT_TOWERS) {
        if (covers(tower, x, y)) {
            colour = {0.08f, 0.09f, 0.18f};
            if (windowLit(tower, x, y, seed)) colour = {1.0f, 0.84f, 0.5f};
            if (y - tower.top < 1.6f) colour = {0.04f, 0.05f, 0.11f};
        }
        seed++;
    }
}

static void paintRoad(Vec3& colour, float x, float y) {
    float nearest = 1e30f;
    float along = 0.0f;
    const LogoRoadPoint* points = logoRoadPoints().data();
    for (int i = 0; i + 1 < LOGO_ROAD_POINTS; i++) {
        const float ex = points[i + 1].x - points[i].x;
        const float ey = points[i + 1].y - points[i].y;
        const float t =
            std::clamp(((x - points[i].x) * ex + (y - points[i].y) * ey) / (ex * ex + ey * ey), 0.0f, 1.0f);
        const float dx = x - (points[i].x + ex * t);
        const float dy = y - (points[i].y + ey * t);
        const float squared = dx * dx + dy * dy;
        if (squared >= nearest) continue;
        nearest = squared;
        along = points[i].length + (points[i + 1].length - points[i].length) * t;
    }
    const float r = std::sqrt(nearest);
    colour = mix(colour, {1.0f, 0.78f, 0.38f}, 0.5f * smooth((28.0f - r) / 15.0f));
    const float body = smooth((12.9f - r) / 1.8f);
    colour = mix(colour, {0.12f, 0.13f, 0.21f}, body);
    if (std::fmod(along, 24.0f) < 12.0f)
        colour = mix(colour, {1.0f, 0.94f, 0.74f}, body * smooth((2.0f - r) / 1.1f));
}

Vec3 plainLogoColour(float x, float y) {
    Vec3 colour = paintSky(x, y);
    paintTowers(colour, x, y);
    if (std::fabs(x - 129.0f) < 1.1f && y >= 80.0f && y < 98.0f) {
        colour = {0.8f, 0.84f, 0.92f};
    } else if (y >= 204.0f) {
        const float w = std::min(1.0f, (y - 204.0f) / 50.0f);
        colour = {0.07f - 0.04f * w, 0.08f - 0.04f * w, 0.14f - 0.06f * w};
    }
    paintRoad(colour, x, y);
    return colour;
}

static bool insideRoundedSquare(float x, float y) {
    const float dx = x - std::clamp(x, 52.0f, 204.0f);
    const float dy = y - std::clamp(y, 52.0f, 204.0f);
    return dx * dx + dy * dy <= 2704.0f;
}

static uint8_t channelByte(float sum, int count) {
    return static_cast<uint8_t>(std::clamp(sum / static_cast<float>(count) * 255.0f + 0.5f, 0.0f, 255.0f));
}

std::vector<uint8_t> plainLogo(int size) {
    std::vector<uint8_t> pixels(static_cast<size_t>(size) * static_cast<size_t>(size) * 4);
    const int n = size < 128 ? 3 : 4;
    const auto canvas = [size, n](int pixel, int sample) {
        return (static_cast<float>(pixel) + (static_cast<float>(sample) + 0.5f) / static_cast<float>(n)) *
               256.0f / static_cast<float>(size);
    };
    uint8_t* pixel = pixels.data();
    for (int py = 0; py < size; py++)
        for (int px = 0; px < size; px++, pixel += 4) {
            Vec3 sum;
            int count = 0;
            for (int j = 0; j < n; j++)
                for (int i = 0; i < n; i++) {
                    const float x = canvas(px, i);
                    const float y = canvas(py, j);
                    if (!insideRoundedSquare(x, y)) continue;
                    sum = sum + plainLogoColour(x, y);
                    count++;
                }
            if (count == 0) continue;
            pixel[0] = channelByte(sum.x, count);
            pixel[1] = channelByte(sum.y, count);
            pixel[2] = channelByte(sum.z, count);
            pixel[3] = static_cast<uint8_t>(count * 255 / (n * n));
        }
    return pixels;
}
