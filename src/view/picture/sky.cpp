#include "view/picture/sky.h"

#include <algorithm>

constexpr float TWO_PI = 6.2831855f;

constexpr Vec3 NIGHT_ZENITH = {0.05f, 0.07f, 0.15f};
constexpr Vec3 DAY_ZENITH = {0.26f, 0.48f, 0.84f};
constexpr Vec3 NIGHT_FOG = {0.15f, 0.17f, 0.26f};
constexpr Vec3 DAY_FOG = {0.74f, 0.85f, 0.93f};
constexpr Vec3 NIGHT_GROUND = {0.12f, 0.13f, 0.18f};
constexpr Vec3 DAY_GROUND = {0.30f, 0.27f, 0.22f};
constexpr Vec3 SUNSET = {1.0f, 0.58f, 0.32f};
constexpr Vec3 MOONLIGHT = {0.42f, 0.50f, 0.74f};
constexpr Vec3 CLOUD_GREY = {0.50f, 0.52f, 0.55f};

static float smooth(float t) {
    t = std::clamp(t, 0.0f, 1.0f);
    return t * t * (3.0f - 2.0f * t);
}

// Rain greys the sky, so that wet nights are lighter than clear ones, and thickens the air. The sun keeps its
// colour: a wet day has shadows too.
static void drawClouds(SkyState& sky) {
    sky.fogDensity = 0.0016f;
    sky.sunGlow *= 0.3f;
    sky.zenithColour = mix(sky.zenithColour * 0.7f, CLOUD_GREY, 0.25f);
    sky.fogColour = mix(sky.fogColour, CLOUD_GREY, 0.35f);
}

SkyState computeSky(float hour, int overcast) {
    // 0 at sunrise; in double, so that the sun stands the same on every system.
    const double angle = static_cast<double>((hour - 6.0f) / 24.0f * TWO_PI);
    const float height = static_cast<float>(std::sin(angle));
    const float day = smooth((hour - 4.5f) / 2.5f) * (1.0f - smooth((hour - 18.0f) / 2.5f));
    const float dusk = std::max(1.0f - std::abs(height) * 5.0f, 0.0f); // of morning and evening alike
    const Vec3 sunlight = Vec3{1.0f, 0.96f - 0.4f * dusk, 0.88f - 0.6f * dusk} * 1.1f;

    SkyState sky;
    // The constant lean to one side keeps the sun off the exact overhead, where lookAt has no answer.
    sky.sunDir = normalised({static_cast<float>(std::cos(angle)) * 0.8f, height, 0.35f});
    sky.sunColour = mix(MOONLIGHT, sunlight, std::clamp(height * 2.5f, 0.0f, 1.0f));
    sky.zenithColour = mix(NIGHT_ZENITH, DAY_ZENITH, day);
    sky.fogColour = mix(mix(NIGHT_FOG, DAY_FOG, day), SUNSET, dusk * 0.7f);
    sky.groundColour = mix(NIGHT_GROUND, DAY_GROUND, day);
    sky.night = 1.0f - day;
    sky.fogDensity = 0.0009f;
    sky.sunGlow = 0.2f + 0.8f * dusk;
    if (overcast) drawClouds(sky);
    return sky;
}
