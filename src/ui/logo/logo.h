// The logo: a dusk sky over two rows of towers and one winding road, in a square with rounded corners. It is
// painted by code at start-up, for the menus, the window's icon and the icon files, and is the same picture
// at every size. Positions are canvas units: 256 by 256, x to the right, y downwards.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

constexpr int LOGO_MIN_SIZE = 8;
constexpr int LOGO_MAX_SIZE = 8192; // a quarter of a gigabyte of pixels
constexpr int LOGO_ROAD_POINTS = 121;

struct LogoRoadPoint {
    float x;
    float y;
    float length; // along the road, from its first point
};

// The road's centre line, first point to last. Made on first use, and kept.
const std::array<LogoRoadPoint, LOGO_ROAD_POINTS>& logoRoadPoints();

// Whether (x, y) lies in a lit window of the tower with that left and top edge; the place is inside the
// tower.
bool logoWindowLit(float left, float top, float x, float y, uint32_t seed);

// The size that a picture gets when `size` is asked for.
constexpr int logoSize(int size) { return std::clamp(size, LOGO_MIN_SIZE, LOGO_MAX_SIZE); }

// Makes `pixels` the picture of logoSize(size): red, green, blue, alpha, row by row from the top, colour not
// premultiplied, whatever lies outside the square at 0.
void paintLogo(int size, std::vector<uint8_t>& pixels);
