// A real OpenGL 3.3 context without a screen, for the tests that look at what was drawn.
#pragma once

#include "view/picture/renderer.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

constexpr int PICTURE_WIDTH = 320; // pixels of the default framebuffer
constexpr int PICTURE_HEIGHT = 200;

// Opens the hidden window once per process, makes its context current and loads the function table. A pixel
// has four samples, as the player's has.
class GlTest : public testing::Test {
protected:
    void SetUp() override;
};

struct Picture {
    int width = 0;
    int height = 0;
    std::vector<uint8_t> rgba; // bottom row first
};

// The lower left corner of the default framebuffer.
Picture readPicture(int width = PICTURE_WIDTH, int height = PICTURE_HEIGHT);
// Channels 0 to 1; y counts from the bottom.
Vec3 pixelAt(const Picture& picture, int x, int y);
// How many pixels of two pictures of one size have a channel that is more than `tolerance` steps of 8 bits
// apart.
int differentPixels(const Picture& a, const Picture& b, int tolerance = 0);
// A binary PPM, for a human eye.
void writePicture(const Picture& picture, const std::string& path);

// A view of the whole default framebuffer.
FrameParams lookFrom(const Vec3& eye, const Vec3& target, float hour);
// The pixel that shows a point of the world.
Vec3 colourAt(const Picture& picture, const FrameParams& params, const Vec3& point);

// Every channel within a step of 8 bits and its rounding: a colour of two digits is held to the second.
void expectColour(const Vec3& seen, const Vec3& expected, float tolerance = 1.2f / 255.0f);
