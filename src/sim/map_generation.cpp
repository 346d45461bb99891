#include "sim/map_generation.h"

#include "sim/hash.h"

#include <algorithm>
#include <cmath>

static float squared(float v) { return v * v; }

// exp and sqrt go through double and are rounded once, so that every maths library gives the same float.
static float hill(float x, float y, float peak, float centreX, float centreY, float spread) {
    const float exponent = -(squared(x - centreX) + squared(y - centreY)) / spread;
    return peak * static_cast<float>(std::exp(static_cast<double>(exponent)));
}

static float distanceToCentre(float x, float y) {
    return static_cast<float>(std::sqrt(static_cast<double>(squared(x - 48.0f) + squared(y - 48.0f))));
}

static float cornerHeight(int cornerX, int cornerY, uint32_t seed) {
    const float x = static_cast<float>(cornerX);
    const float y = static_cast<float>(cornerY);
    const float raw = fractalNoise(x, y, 0.085f, 5, seed) * 30.0f - 4.0f +
                      hill(x, y, 26.0f, 17.28f, 78.72f, 446.05435f) +
                      hill(x, y, 22.0f, 82.56f, 15.36f, 298.59842f);

    // Inside the mask the land stays flat at 10, so that every seed has room for a town to begin.
    const float t = std::clamp((distanceToCentre(x, y) / 13.0f - 1.0f) / 1.4f, 0.0f, 1.0f);
    const float mask = t * t * (3.0f - 2.0f * t);
    return mask * (raw - 10.0f) + 10.0f;
}

static void computeHeights(City& city) {
    for (int y = 0; y < CORNER_SIDE; y++)
        for (int x = 0; x < CORNER_SIDE; x++) city.heights[cornerIndex(x, y)] = cornerHeight(x, y, city.seed);
}

static void computeTerrain(City& city, int x, int y) {
    Cell& cell = city.cells[cellIndex(x, y)];
    const float average = cellAverageHeight(city, x, y);
    const float fx = static_cast<float>(x);
    const float fy = static_cast<float>(y);

    if (distanceToCentre(fx + 0.5f, fy + 0.5f) < 8.5f)
        cell.terrain = TERRAIN_GRASS;
    else if (average < 5.6f)
        cell.terrain = TERRAIN_WATER;
    else if (average < 7.2f)
        cell.terrain = TERRAIN_SAND;
    else if (average > 24.0f || cellSlope(city, x, y) > 1.4f)
        cell.terrain = TERRAIN_ROCK;
    else if (fractalNoise(fx, fy, 0.13f, 3, city.seed + 900) > 0.53f) {
        cell.terrain = TERRAIN_WOODLAND;
        cell.hasTrees = hashUnit(static_cast<uint32_t>(x), static_cast<uint32_t>(y), city.seed + 5) > 0.35f;
    }
}

void generateMap(City& city, uint32_t seed) {
    // A fresh record instead of a list of fields to clear, which could miss one.
    City fresh;
    fresh.calendarDay = city.calendarDay;
    fresh.eventCount = city.eventCount;
    fresh.seed = seed;
    city = std::move(fresh);

    std::fill(city.cellDirty.begin(), city.cellDirty.end(), uint8_t{1});
    std::fill(city.landValue.begin(), city.landValue.end(), 0.5f);
    computeHeights(city);
    for (int y = 0; y < GRID_SIZE; y++)
        for (int x = 0; x < GRID_SIZE; x++) computeTerrain(city, x, y);

    postEvent(city, STATUS_WELCOME, 0);
    setStatus(city, STATUS_WELCOME);
    city.roadsDirty = city.buildingsDirty = city.zonesDirty = city.overlayDirty = 1;
}
