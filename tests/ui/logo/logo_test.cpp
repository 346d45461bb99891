#include "ui/logo/logo.h"
#include "ui/logo/plain_logo.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <string>

using Pixels = std::vector<uint8_t>;

static Pixels painted(int size) {
    Pixels pixels;
    paintLogo(size, pixels);
    return pixels;
}

// FNV-1a over the bytes.
static uint64_t hashOf(const Pixels& pixels) {
    uint64_t hash = 14695981039346656037u;
    for (const uint8_t byte : pixels) hash = (hash ^ byte) * 1099511628211u;
    return hash;
}

static const uint8_t* pixelAt(const Pixels& pixels, int size, int x, int y) {
    return pixels.data() + static_cast<size_t>(y * size + x) * 4;
}

TEST(Logo, TheBytesOfASizeAreTheSameOnEverySystem) {
    EXPECT_EQ(hashOf(painted(8)), 0x4acb372972fa915cu);
    EXPECT_EQ(hashOf(painted(9)), 0x0e81844af477e7cdu);
    EXPECT_EQ(hashOf(painted(16)), 0x292091fd180498f2u);
    EXPECT_EQ(hashOf(painted(32)), 0xd2e895b0bbb9128eu);
    EXPECT_EQ(hashOf(painted(64)), 0x26ddf16ae6306644u);
    EXPECT_EQ(hashOf(painted(127)), 0x9592b5778f6413b0u);
    EXPECT_EQ(hashOf(painted(128)), 0x63c8f462ecf925ffu);
    EXPECT_EQ(hashOf(painted(129)), 0xac889d933a3181d9u);
    EXPECT_EQ(hashOf(painted(256)), 0x2f2cfa6d5cea65cau);
}

TEST(Logo, LeavingOutWhatCannotShowChangesNoByte) {
    for (const int size : {8, 9, 16, 64, 127, 128, 129, 256})
        EXPECT_TRUE(painted(size) == plainLogo(size)) << size;
}

TEST(Logo, PaintsOverWhateverThePixelsHeld) {
    Pixels pixels(100000, 7);
    paintLogo(64, pixels);
    EXPECT_EQ(pixels, painted(64));
    paintLogo(8, pixels);
    EXPECT_EQ(pixels, painted(8));
}

TEST(Logo, ASizeBelow8CountsAs8) {
    const Pixels smallest = painted(8);
    EXPECT_EQ(smallest.size(), 256u);
    for (const int size : {7, 1, 0, -1, -5, INT_MIN}) EXPECT_EQ(painted(size), smallest) << size;
}

TEST(Logo, ASizeAboveTheLargestCountsAsTheLargest) {
    EXPECT_EQ(logoSize(LOGO_MAX_SIZE), LOGO_MAX_SIZE);
    EXPECT_EQ(logoSize(LOGO_MAX_SIZE + 1), LOGO_MAX_SIZE);
    EXPECT_EQ(logoSize(INT_MAX), LOGO_MAX_SIZE);
}

struct PixelRow {
    int size;
    int x;
    int y;
    int red;
    int green;
    int blue;
    int alpha;
};

constexpr PixelRow PIXELS[] = {
    {8, 0, 0, 18, 21, 44, 113},       {8, 4, 4, 64, 57, 58, 255},
    {8, 4, 0, 23, 25, 45, 255},       {8, 0, 4, 144, 87, 65, 255},
    {8, 4, 7, 11, 14, 25, 255},       {9, 0, 0, 18, 20, 44, 85},
    {9, 4, 6, 69, 62, 61, 255},       {16, 0, 0, 0, 0, 0, 0},
    {16, 8, 8, 40, 41, 58, 255},      {16, 8, 11, 89, 75, 61, 255},
    {16, 15, 8, 132, 81, 63, 255},    {32, 0, 0, 0, 0, 0, 0},
    {32, 16, 16, 80, 79, 84, 255},    {32, 2, 2, 17, 20, 44, 255},
    {64, 32, 32, 156, 148, 129, 255}, {64, 29, 25, 75, 64, 58, 255},
    {64, 32, 44, 31, 31, 48, 255},    {64, 32, 63, 8, 10, 21, 255},
    {127, 7, 7, 16, 19, 44, 85},      {127, 63, 63, 255, 240, 189, 255},
    {127, 63, 88, 31, 31, 48, 255},   {129, 8, 8, 16, 20, 44, 255},
    {129, 57, 50, 72, 61, 54, 255},   {129, 64, 89, 26, 27, 47, 255},
    {256, 0, 0, 0, 0, 0, 0},          {256, 128, 0, 13, 18, 43, 255},
    {256, 0, 128, 121, 75, 61, 255},  {256, 16, 16, 16, 20, 44, 255},
    {256, 113, 100, 80, 68, 59, 255}, {256, 128, 128, 255, 240, 189, 255},
    {256, 128, 178, 32, 32, 48, 255}, {256, 128, 255, 8, 10, 20, 255},
};

TEST(Logo, PixelsAreTheMeanOfTheirSamples) {
    Pixels pixels;
    for (const PixelRow& row : PIXELS) {
        if (pixels.size() != static_cast<size_t>(row.size * row.size) * 4) paintLogo(row.size, pixels);
        const uint8_t* pixel = pixelAt(pixels, row.size, row.x, row.y);
        const std::string place =
            std::to_string(row.size) + ": " + std::to_string(row.x) + ", " + std::to_string(row.y);
        EXPECT_EQ(pixel[0], row.red) << place;
        EXPECT_EQ(pixel[1], row.green) << place;
        EXPECT_EQ(pixel[2], row.blue) << place;
        EXPECT_EQ(pixel[3], row.alpha) << place;
    }
}

// Sums of the four channels over the whole picture, and how many pixels are opaque and how many clear.
struct SumRow {
    int size;
    uint32_t sums[4];
    int opaque;
    int clear;
};

constexpr SumRow SUMS[] = {
    {8, {4096, 3280, 3373, 15752}, 60, 0},
    {16, {16412, 13125, 13430, 62892}, 236, 4},
    {64, {265163, 211912, 214862, 1007848}, 3920, 116},
    {127, {1062519, 848214, 850729, 3967675}, 15497, 508},
    {129, {1096042, 874993, 877532, 4093507}, 15977, 516},
    {256, {4307499, 3438438, 3448494, 16120140}, 63048, 2188},
};

TEST(Logo, OnlyTheRoundedCornersLetTheGroundThrough) {
    for (const SumRow& row : SUMS) {
        const Pixels pixels = painted(row.size);
        uint32_t sums[4] = {};
        int opaque = 0;
        int clear = 0;
        for (size_t i = 0; i < pixels.size(); i += 4) {
            for (size_t channel = 0; channel < 4; channel++) sums[channel] += pixels[i + channel];
            opaque += pixels[i + 3] == 255;
            clear += pixels[i + 3] == 0;
            if (pixels[i + 3] == 0) {
                ASSERT_EQ(pixels[i] + pixels[i + 1] + pixels[i + 2], 0);
            }
        }
        for (size_t channel = 0; channel < 4; channel++)
            EXPECT_EQ(sums[channel], row.sums[channel]) << row.size;
        EXPECT_EQ(opaque, row.opaque) << row.size;
        EXPECT_EQ(clear, row.clear) << row.size;
    }
}

TEST(Logo, CornersAreClearAndTheirArcFades) {
    const Pixels pixels = painted(256);
    for (const int x : {0, 255})
        for (const int y : {0, 255}) EXPECT_EQ(pixelAt(pixels, 256, x, y)[3], 0);
    // The arc passes 52 units from (52, 52), on the diagonal through pixel (15, 15).
    const int alpha = pixelAt(pixels, 256, 15, 15)[3];
    EXPECT_GT(alpha, 0);
    EXPECT_LT(alpha, 255);
    EXPECT_EQ(pixelAt(pixels, 256, 14, 14)[3], 0);
    EXPECT_EQ(pixelAt(pixels, 256, 16, 16)[3], 255);
}

struct SampleRow {
    float x;
    float y;
    Vec3 colour;
};

constexpr SampleRow SAMPLES[] = {
    {128, 1, {0.0501101837f, 0.0700580552f, 0.170017779f}},         // the top of the sky
    {240, 60, {0.166136518f, 0.131190211f, 0.1887317f}},            // the edge of the sun's glow
    {128, 130, {0.146924108f, 0.1547824f, 0.226215646f}},           // the edge of a dash
    {20, 178, {0.11f, 0.13f, 0.25f}},                               // a wall of the back row
    {129, 90, {0.8f, 0.84f, 0.92f}},                                // the aerial
    {127.949997f, 85, {0.8f, 0.84f, 0.92f}},                        // its edge
    {113, 100.5f, {0.32290107f, 0.272175789f, 0.232804582f}},       // the tallest tower in the road's glow
    {60, 220, {0.0571999997f, 0.0671999976f, 0.120800003f}},        // the ground
    {200, 206, {0.068400003f, 0.0784000009f, 0.137600005f}},        // near the horizon
    {176, 80, {1, 0.94f, 0.74f}},                                   // the road begins with a dash
    {128, 128, {1, 0.94f, 0.74f}},                                  // a dash
    {176, 166, {0.12f, 0.13f, 0.21f}},                              // a gap
    {170, 66, {0.12f, 0.13f, 0.21f}},                               // beside the dashes
    {100, 112, {0.12f, 0.13f, 0.21f}},                              // the road over the towers
    {160, 200, {0.12f, 0.13f, 0.21f}},                              // the road over the horizon
    {255.899994f, 128, {0.471083909f, 0.291861415f, 0.237916768f}}, // the sky at the right edge
};

TEST(Logo, EveryPartOfThePictureHasItsColour) {
    for (const SampleRow& row : SAMPLES) {
        const Vec3 colour = plainLogoColour(row.x, row.y);
        EXPECT_NEAR(colour.x, row.colour.x, 5e-6f) << row.x << ", " << row.y;
        EXPECT_NEAR(colour.y, row.colour.y, 5e-6f) << row.x << ", " << row.y;
        EXPECT_NEAR(colour.z, row.colour.z, 5e-6f) << row.x << ", " << row.y;
    }
}

TEST(Logo, TheRoadIsThreeCurvesMeasuredAlongTheirLength) {
    const auto& points = logoRoadPoints();
    ASSERT_EQ(points.size(), 121u);
    EXPECT_EQ(&points, &logoRoadPoints()); // made once
    const struct {
        size_t index;
        LogoRoadPoint point;
    } rows[] = {
        {0, {176, 80, 0}},
        {5, {171.875f, 66.2382812f, 14.5748873f}},
        {15, {145.625f, 50.9960938f, 45.684742f}},
        {25, {110.375f, 52.9101562f, 81.3512421f}},
        {35, {84.125f, 72.9179688f, 115.179047f}},
        {40, {80, 90, points[40].length}},
        {45, {84.125f, 103.601562f, 147.351746f}},
        {55, {110.375f, 121.429688f, 179.517258f}},
        {65, {145.625f, 134.570312f, 217.140945f}},
        {75, {171.875f, 152.398438f, 249.306458f}},
        {80, {176, 166, points[80].length}},
        {85, {171.875f, 181.777344f, 280.224976f}},
        {95, {145.625f, 200.488281f, 313.203583f}},
        {105, {110.375f, 203.167969f, 348.832214f}},
        {115, {84.125f, 191.128906f, 378.315369f}},
        {120, {80, 180, 390.425354f}},
    };
    for (const auto& row : rows) {
        EXPECT_NEAR(points[row.index].x, row.point.x, 2e-5f) << row.index;
        EXPECT_NEAR(points[row.index].y, row.point.y, 2e-5f) << row.index;
        EXPECT_NEAR(points[row.index].length, row.point.length, 1e-4f) << row.index;
    }
}

TEST(Logo, DashesOf12FollowTheRoadWithGapsOf12) {
    const Pixels pixels = painted(256);
    int dashes = 0;
    int gaps = 0;
    for (const LogoRoadPoint& point : logoRoadPoints()) {
        const float along = std::fmod(point.length, 24.0f);
        if (std::fmod(along + 1.5f, 12.0f) < 3.0f) continue; // too near to an end of a dash for a pixel
        const uint8_t* pixel = pixelAt(pixels, 256, static_cast<int>(point.x), static_cast<int>(point.y));
        const bool dash = along < 12.0f;
        EXPECT_EQ(pixel[1] > 200, dash) << "at length " << point.length;
        EXPECT_EQ(pixel[1] < 50, !dash) << "at length " << point.length;
        dash ? dashes++ : gaps++;
    }
    EXPECT_GT(dashes, 30);
    EXPECT_GT(gaps, 30);
}

// The lit windows of a tower, a row of its windows after the other.
static std::string windowsOf(float left, float top, int columns, int rows, uint32_t seed) {
    std::string lit;
    for (int row = 0; row < rows; row++) {
        if (row > 0) lit += '/';
        for (int column = 0; column < columns; column++) {
            const float x = left + static_cast<float>(column) * 6.0f + 4.0f;
            const float y = top + static_cast<float>(row) * 7.0f + 4.0f;
            lit += logoWindowLit(left, top, x, y, seed) ? '1' : '0';
        }
    }
    return lit;
}

TEST(Logo, WindowsFollowTheTowersEdgesAndItsSeedNotTheCanvas) {
    EXPECT_EQ(windowsOf(0, 170, 6, 5, 91), "100100/000000/100000/111000/010000");
    EXPECT_EQ(windowsOf(226, 160, 6, 7, 91), "100100/000000/100000/111000/010000/000000/100100");
    EXPECT_EQ(windowsOf(38, 142, 5, 9, 8), "01001/10001/11001/10100/00000/00110/00001/01011/01000");
    EXPECT_EQ(windowsOf(94, 172, 4, 5, 10), "1100/1000/1010/0101/0000");
    EXPECT_EQ(windowsOf(142, 140, 5, 10, 12), "11000/11110/00011/00101/01001/00010/10000/00011/01001/10101");
    EXPECT_EQ(windowsOf(190, 150, 5, 8, 14), "00000/11101/00101/00011/11100/00110/00010/01110");
}

TEST(Logo, AWindowFillsTheEndOfItsCell) {
    const auto lit = [](float u, float v) { return logoWindowLit(0.0f, 0.0f, u, v, 91); };
    ASSERT_TRUE(lit(3.0f, 3.0f)); // the first cell of this seed is lit
    EXPECT_FALSE(lit(2.0f, 3.0f));
    EXPECT_TRUE(lit(2.001f, 3.0f));
    EXPECT_TRUE(lit(5.99f, 3.0f));
    EXPECT_FALSE(lit(3.0f, 2.2f));
    EXPECT_TRUE(lit(3.0f, 2.25f));
    EXPECT_TRUE(lit(3.0f, 6.99f));
    EXPECT_FALSE(lit(0.0f, 0.0f));
}
