#include "ui/logo/logo.h"

#include "sim/hash.h"
#include "view/gl/vec.h"

#include <algorithm>
#include <cassert>
#include <cmath>

// A picture of the size that the menus use takes a million samples, and each could ask 120 pieces of road and
// 17 towers. So the picture is quartered down to its pixels, and each square hands its quarters only what can
// show in it: a sample then asks three or four pieces. Nothing that is left out could change a bit of a
// colour.

constexpr float CANVAS = 256.0f;
constexpr float CORNER_RADIUS = 52.0f;
constexpr float HORIZON = 204.0f; // foot of the towers; the ground begins here
constexpr float SUN_X = 128.0f;
constexpr float SUN_Y = 178.0f;
constexpr float SUN_RADIUS = 57.0f;   // with its soft edge
constexpr float GLOW_RADIUS = 120.0f; // of the sky around the sun
constexpr float ROAD_GLOW = 28.0f;    // reach of the road's shine, from its centre line
constexpr float ROAD_HALF_WIDTH = 12.9f;
constexpr float DASH_HALF_WIDTH = 2.0f;

constexpr int ROAD_SEGMENTS = LOGO_ROAD_POINTS - 1;

struct Tower {
    float left;
    float right;
    float top;
    uint32_t seed; // of its windows
    bool front;
};

// In painting order: a later one hides an earlier one.
constexpr Tower TOWERS[] = {
    // the back row
    {0, 30, 170, 91, false},
    {28, 58, 152, 91, false},
    {56, 84, 180, 91, false},
    {82, 106, 160, 91, false},
    {150, 178, 166, 91, false},
    {176, 202, 146, 91, false},
    {200, 230, 178, 91, false},
    {226, 256, 160, 91, false},
    // the front row
    {8, 40, 186, 7, true},
    {38, 66, 142, 8, true},
    {64, 96, 198, 9, true},
    {94, 116, 172, 10, true},
    {112, 146, 98, 11, true},
    {142, 166, 140, 12, true},
    {164, 192, 188, 13, true},
    {190, 218, 150, 14, true},
    {214, 248, 176, 15, true},
};
constexpr int TOWER_COUNT = static_cast<int>(std::size(TOWERS));

// Bezier curves, each from its first control point to its last.
constexpr float ROAD_CURVES[3][4][2] = {
    {{176, 80}, {176, 38}, {80, 38}, {80, 90}},
    {{80, 90}, {80, 132}, {176, 124}, {176, 166}},
    {{176, 166}, {176, 214}, {80, 214}, {80, 180}},
};

static float smooth(float v) {
    const float t = std::clamp(v, 0.0f, 1.0f);
    return t * t * (3.0f - 2.0f * t);
}

static float curveAt(const float (&curve)[4][2], int axis, float t) {
    const float s = 1.0f - t;
    return s * s * s * curve[0][axis] + 3.0f * s * s * t * curve[1][axis] +
           3.0f * s * t * t * curve[2][axis] + t * t * t * curve[3][axis];
}

static std::array<LogoRoadPoint, LOGO_ROAD_POINTS> makeRoadPoints() {
    std::array<LogoRoadPoint, LOGO_ROAD_POINTS> points = {};
    size_t count = 0;
    for (const auto& curve : ROAD_CURVES)
        for (int i = count == 0 ? 0 : 1; i <= 40; i++) { // a curve begins where the last one ended
            const float t = static_cast<float>(i) / 40.0f;
            LogoRoadPoint point = {curveAt(curve, 0, t), curveAt(curve, 1, t), 0.0f};
            if (count > 0) {
                const LogoRoadPoint& before = points[count - 1];
                const float dx = point.x - before.x;
                const float dy = point.y - before.y;
                point.length = before.length + std::sqrt(dx * dx + dy * dy);
            }
            points[count++] = point;
        }
    assert(count == points.size());
    return points;
}

const std::array<LogoRoadPoint, LOGO_ROAD_POINTS>& logoRoadPoints() {
    static const std::array<LogoRoadPoint, LOGO_ROAD_POINTS> points = makeRoadPoints();
    return points;
}

// A window fills the last 4 by 4.8 units of each cell of 6 by 7, and one in three is lit.
bool logoWindowLit(float left, float top, float x, float y, uint32_t seed) {
    const float u = x - left;
    const float v = y - top;
    assert(u >= 0.0f && v >= 0.0f);
    const int column = static_cast<int>(u / 6.0f);
    const int row = static_cast<int>(v / 7.0f);
    if (u - static_cast<float>(column * 6) <= 2.0f || v - static_cast<float>(row * 7) <= 2.2f) return false;
    return hashCell(static_cast<uint32_t>(row), seed, static_cast<uint32_t>(column)) % 3 == 0;
}

// A straight piece of the road, from one of its points to the next.
struct Segment {
    float x;
    float y;
    float dx; // to its end
    float dy;
    float squaredLength;
    float start; // length along the road
    float end;
};

// The nearest place of the road.
struct RoadPlace {
    float squaredDistance = 1e30f;
    float along = 0.0f; // length along the road
};

static std::array<Segment, ROAD_SEGMENTS> makeSegments() {
    std::array<Segment, ROAD_SEGMENTS> segments;
    const LogoRoadPoint* point = logoRoadPoints().data();
    for (Segment& segment : segments) {
        const float dx = point[1].x - point[0].x;
        const float dy = point[1].y - point[0].y;
        segment = {point[0].x, point[0].y, dx, dy, dx * dx + dy * dy, point[0].length, point[1].length};
        point++;
    }
    return segments;
}

// Where the nearest place to (x, y) lies, 0 at the segment's start and 1 at its end.
static float nearestShare(const Segment& segment, float x, float y) {
    const float t = ((x - segment.x) * segment.dx + (y - segment.y) * segment.dy) / segment.squaredLength;
    return std::clamp(t, 0.0f, 1.0f);
}

static float squaredDistance(const Segment& segment, float share, float x, float y) {
    const float dx = x - (segment.x + segment.dx * share);
    const float dy = y - (segment.y + segment.dy * share);
    return dx * dx + dy * dy;
}

// A square of pixels, and what can show in it.
struct Square {
    int left;
    int top;
    int width;
    bool touchesCorner;
    bool sunlit;
    int towerCount;
    int segmentCount;                       // 0 where the road and its glow are out of reach
    const Tower* towers[TOWER_COUNT];       // in painting order
    const Segment* segments[ROAD_SEGMENTS]; // in the road's order
};

// Of the parent's pieces of road, those that can be the nearest to a place within `radius` of the centre (x,
// y): such a piece is at most two radii farther from the centre than the piece nearest to it.
static void keepSegments(Square& square, const Square& parent, float x, float y, float radius) {
    constexpr float MARGIN = 0.05f; // far above what rounding does to a distance
    float squared[ROAD_SEGMENTS];
    float nearest = 1e30f;
    for (int i = 0; i < parent.segmentCount; i++) {
        const Segment& segment = *parent.segments[i];
        squared[i] = squaredDistance(segment, nearestShare(segment, x, y), x, y);
        nearest = std::min(nearest, squared[i]);
    }
    square.segmentCount = 0;
    const float distance = std::sqrt(nearest);
    if (distance > ROAD_GLOW + radius + MARGIN) return;
    const float reach = distance + 2.0f * radius + MARGIN;
    for (int i = 0; i < parent.segmentCount; i++)
        if (squared[i] <= reach * reach) square.segments[square.segmentCount++] = parent.segments[i];
}

static Square quarter(const Square& parent, int left, int top, float unit) {
    Square square;
    square.left = left;
    square.top = top;
    assert(parent.width % 2 == 0);
    square.width = parent.width / 2;

    const float x0 = static_cast<float>(left) * unit;
    const float y0 = static_cast<float>(top) * unit;
    const float half = static_cast<float>(square.width) * unit / 2.0f;
    const float x1 = x0 + 2.0f * half;
    const float y1 = y0 + 2.0f * half;
    const float radius = 1.42f * half; // of a circle that holds the square
    square.touchesCorner = parent.touchesCorner && (x0 < CORNER_RADIUS || x1 > CANVAS - CORNER_RADIUS) &&
                           (y0 < CORNER_RADIUS || y1 > CANVAS - CORNER_RADIUS);
    const float sunX = x0 + half - SUN_X;
    const float sunY = y0 + half - SUN_Y;
    const float sunReach = GLOW_RADIUS + radius;
    square.sunlit = parent.sunlit && sunX * sunX + sunY * sunY < sunReach * sunReach;

    square.towerCount = 0;
    for (int i = 0; i < parent.towerCount; i++) {
        const Tower& tower = *parent.towers[i];
        if (tower.left < x1 && x0 < tower.right && tower.top < y1 && y0 < HORIZON)
            square.towers[square.towerCount++] = &tower;
    }
    keepSegments(square, parent, x0 + half, y0 + half, radius);
    return square;
}

static bool insideRoundedSquare(float x, float y) {
    const float dx = x - std::clamp(x, CORNER_RADIUS, CANVAS - CORNER_RADIUS);
    const float dy = y - std::clamp(y, CORNER_RADIUS, CANVAS - CORNER_RADIUS);
    return dx * dx + dy * dy <= CORNER_RADIUS * CORNER_RADIUS;
}

// The sky without the sun, or the ground: one colour for a whole row of samples.
static Vec3 backdropColour(float y) {
    if (y >= HORIZON) {
        const float w = std::min(1.0f, (y - HORIZON) / 50.0f);
        return {0.07f - 0.04f * w, 0.08f - 0.04f * w, 0.14f - 0.06f * w};
    }
    const double height = static_cast<double>(std::clamp(y / HORIZON, 0.0f, 1.0f));
    const float f = static_cast<float>(std::pow(height, 1.7)); // in double: the same on every system
    return {0.05f + 0.93f * f, 0.07f + 0.49f * f, 0.17f + 0.15f * f};
}

static Vec3 sunlitSky(const Vec3& sky, float x, float y) {
    const float dx = x - SUN_X;
    const float dy = y - SUN_Y;
    const float d = std::sqrt(dx * dx + dy * dy);
    if (d >= GLOW_RADIUS) return sky;
    const float glow = smooth((GLOW_RADIUS - d) / 64.0f);
    const Vec3 glowing = mix(sky, {1.0f, 0.72f, 0.36f}, glow * glow * 0.55f);
    if (d >= SUN_RADIUS) return glowing;
    const float u = std::min(d / 56.0f, 1.0f);
    const Vec3 sun = {1.0f, 0.93f - 0.29f * u, 0.66f - 0.36f * u};
    return mix(glowing, sun, smooth((SUN_RADIUS - d) / 2.0f));
}

static Vec3 towerColour(const Tower& tower, float x, float y) {
    if (tower.front && y - tower.top < 1.6f) return {0.04f, 0.05f, 0.11f}; // the roof's edge
    const bool lit = logoWindowLit(tower.left, tower.top, x, y, tower.seed);
    if (tower.front) return lit ? Vec3{1.0f, 0.84f, 0.5f} : Vec3{0.08f, 0.09f, 0.18f};
    return lit ? Vec3{0.98f, 0.8f, 0.46f} : Vec3{0.11f, 0.13f, 0.25f};
}

// Everything behind the road, asked from the front: what stands before the rest hides it.
static Vec3 cityColour(const Square& square, const Vec3& backdrop, float x, float y) {
    if (std::fabs(x - 129.0f) < 1.1f && y >= 80.0f && y < 98.0f) return {0.8f, 0.84f, 0.92f}; // the aerial
    if (y >= HORIZON) return backdrop;
    for (int i = square.towerCount - 1; i >= 0; i--) {
        const Tower& tower = *square.towers[i];
        if (tower.left <= x && x < tower.right && tower.top <= y) return towerColour(tower, x, y);
    }
    return square.sunlit ? sunlitSky(backdrop, x, y) : backdrop;
}

// The first of the places that are nearest.
static RoadPlace nearestPlace(const Square& square, float x, float y) {
    RoadPlace place;
    for (int i = 0; i < square.segmentCount; i++) {
        const Segment& segment = *square.segments[i];
        const float share = nearestShare(segment, x, y);
        const float squared = squaredDistance(segment, share, x, y);
        if (squared < place.squaredDistance)
            place = {squared, segment.start + (segment.end - segment.start) * share};
    }
    return place;
}

static Vec3 withRoad(const Vec3& behind, const RoadPlace& place) {
    if (place.squaredDistance >= ROAD_GLOW * ROAD_GLOW) return behind;
    const float r = std::sqrt(place.squaredDistance);
    const Vec3 glowing = mix(behind, {1.0f, 0.78f, 0.38f}, 0.5f * smooth((ROAD_GLOW - r) / 15.0f));
    if (r >= ROAD_HALF_WIDTH) return glowing;
    const float body = smooth((ROAD_HALF_WIDTH - r) / 1.8f);
    const Vec3 road = mix(glowing, {0.12f, 0.13f, 0.21f}, body);
    if (r >= DASH_HALF_WIDTH || std::fmod(place.along, 24.0f) >= 12.0f) return road;
    return mix(road, {1.0f, 0.94f, 0.74f}, body * smooth((DASH_HALF_WIDTH - r) / 1.1f));
}

static uint8_t channelByte(float sum, int count) {
    assert(count > 0);
    const float value = sum / static_cast<float>(count) * 255.0f + 0.5f;
    return static_cast<uint8_t>(std::clamp(value, 0.0f, 255.0f));
}

struct Painting {
    int size;
    int samples;                // of a pixel, on each axis
    std::vector<float> place;   // of each sample along an axis
    std::vector<Vec3> backdrop; // of each row of samples
    uint8_t* pixels;
};

static Painting makePainting(int size, uint8_t* pixels) {
    Painting painting = {size, size < 128 ? 3 : 4, {}, {}, pixels};
    for (int pixel = 0; pixel < size; pixel++)
        for (int sample = 0; sample < painting.samples; sample++) {
            const float within = (static_cast<float>(sample) + 0.5f) / static_cast<float>(painting.samples);
            const float place = (static_cast<float>(pixel) + within) * CANVAS / static_cast<float>(size);
            painting.place.push_back(place);
            painting.backdrop.push_back(backdropColour(place));
        }
    return painting;
}

static void paintPixel(const Painting& painting, const Square& square) {
    assert(square.left < painting.size && square.top < painting.size);
    const size_t n = static_cast<size_t>(painting.samples);
    const size_t left = static_cast<size_t>(square.left);
    const size_t top = static_cast<size_t>(square.top);
    Vec3 sum;
    int count = 0;
    for (size_t row = top * n; row < (top + 1) * n; row++)
        for (size_t column = left * n; column < (left + 1) * n; column++) {
            const float x = painting.place[column];
            const float y = painting.place[row];
            if (square.touchesCorner && !insideRoundedSquare(x, y)) continue;
            const Vec3 city = cityColour(square, painting.backdrop[row], x, y);
            sum = sum + withRoad(city, nearestPlace(square, x, y));
            count++;
        }
    if (count == 0) return;

    uint8_t* pixel = painting.pixels + (top * static_cast<size_t>(painting.size) + left) * 4;
    pixel[0] = channelByte(sum.x, count);
    pixel[1] = channelByte(sum.y, count);
    pixel[2] = channelByte(sum.z, count);
    pixel[3] = static_cast<uint8_t>(count * 255 / (painting.samples * painting.samples));
}

static void paintSquare(const Painting& painting, const Square& square) {
    if (square.width == 1) {
        paintPixel(painting, square);
        return;
    }
    const int half = square.width / 2;
    const float unit = CANVAS / static_cast<float>(painting.size);
    for (const int top : {square.top, square.top + half})
        for (const int left : {square.left, square.left + half})
            if (top < painting.size && left < painting.size)
                paintSquare(painting, quarter(square, left, top, unit));
}

// A square that holds the whole picture, and so a power of two wide.
static Square wholeSquare(int size, const std::array<Segment, ROAD_SEGMENTS>& segments) {
    Square square = {0, 0, 1, true, true, 0, 0, {}, {}};
    while (square.width < size) square.width *= 2;
    for (const Tower& tower : TOWERS) square.towers[square.towerCount++] = &tower;
    for (const Segment& segment : segments) square.segments[square.segmentCount++] = &segment;
    return square;
}

void paintLogo(int size, std::vector<uint8_t>& pixels) {
    const int width = logoSize(size);
    pixels.assign(static_cast<size_t>(width) * static_cast<size_t>(width) * 4, 0);
    const std::array<Segment, ROAD_SEGMENTS> segments = makeSegments();
    paintSquare(makePainting(width, pixels.data()), wholeSquare(width, segments));
}
