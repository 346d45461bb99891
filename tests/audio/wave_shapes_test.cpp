#include "audio/wave_shapes.h"

#include "audio/voices.h"

#include <gtest/gtest.h>

#include <cmath>

TEST(WaveShapes, TheSineIsExactToAMillionthOverItsTurn) {
    for (float phase = 0.0f; phase <= TWO_PI; phase = std::nextafter(phase + 1e-4f, 7.0f))
        ASSERT_NEAR(sineOfPhase(phase), std::sin(static_cast<double>(phase)), 1e-6) << phase;
    EXPECT_NEAR(sineOfPhase(TWO_PI), 0.0, 1e-6);
}

TEST(WaveShapes, TheExponentialIsExactToAMillionthDownToSilence) {
    for (float x = 0.0f; x >= -80.0f; x -= 1e-3f)
        ASSERT_NEAR(fallingExp(x), std::exp(static_cast<double>(x)), 1e-6) << x;
}
