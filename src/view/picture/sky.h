// All light of the picture, as a function of the hour and the weather.
#pragma once

#include "view/gl/vec.h"

struct SkyState {
    Vec3 sunDir; // unit vector towards the sun, below the ground at night
    Vec3 sunColour;
    Vec3 zenithColour;
    Vec3 fogColour; // the horizon's as well, so that far land melts into the sky
    Vec3 groundColour;
    float night = 0.0f; // 0 by day to 1 at night
    float fogDensity = 0.0f;
    float sunGlow = 0.0f;
};

// `hour` is 0 to 24; `overcast` is non-zero in rain.
SkyState computeSky(float hour, int overcast);
