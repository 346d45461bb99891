// What the scene's shader makes of each material, in real pixels.
#include "view/picture/camera.h"
#include "view/picture/shading.h"

#include <algorithm>

static const Vec3 UP = {0, 1, 0};
static const Vec3 GREY = {0.4f, 0.4f, 0.4f};
constexpr float NOON = 12.0f;
constexpr float NIGHT = 23.0f;

// Level ground around the origin, seen steeply from above: a pixel shows a tenth of a unit.
static MeshBuilder floorOf(int material, const Vec3& colour = GREY, float height = 0.0f) {
    MeshBuilder builder;
    addFlatQuad(builder, -400, 400, -400, 400, height, colour, material);
    return builder;
}

// The same texture place all over.
static MeshBuilder withTexturePlace(MeshBuilder builder, float u, float v) {
    for (Vertex& vertex : builder) {
        vertex.u = u;
        vertex.v = v;
    }
    return builder;
}

static FrameParams fromAbove(float hour) { return lookFrom({0, 22, 8}, {}, hour); }

// A wall through the origin that faces +z, along x, 40 units high; seen square on.
static MeshBuilder wallOf(int material, float emissive, float fromX = -20.0f, float toX = 20.0f) {
    MeshBuilder builder;
    addQuad(builder, {fromX, 0, 0}, {toX, 0, 0}, {toX, 40, 0}, {fromX, 40, 0}, {0, 0, 1}, GREY, emissive,
            material);
    return builder;
}

static FrameParams fromTheFront(float hour) { return lookFrom({0, 14, 36}, {0, 14, 0}, hour); }

static float brightness(const Vec3& colour) { return colour.x + colour.y + colour.z; }

// A colour that is `base` times an unknown factor from `low` to `high`.
static void expectScaled(const Vec3& seen, const Vec3& base, float low, float high) {
    const float factor = brightness(seen) / brightness(base);
    EXPECT_GE(factor, low - 0.005f);
    EXPECT_LE(factor, high + 0.005f);
    expectColour(seen, base * factor);
}

class WorldShading : public ShadingTest {};

TEST_F(WorldShading, APlainSurfaceIsLitBySunSkyAndGround) {
    const FrameParams params = fromAbove(NOON);
    expectColour(drawnAt(floorOf(MATERIAL_PLAIN), params, {}),
                 fogged(litColour(GREY, UP, params), {}, params));
}

TEST_F(WorldShading, AFaceTurnedFromTheSunHasOnlyTheLightAround) {
    MeshBuilder wall;
    addQuad(wall, {-20, 0, 0}, {20, 0, 0}, {20, 40, 0}, {-20, 40, 0}, {0, 0, -1}, GREY, 0, MATERIAL_PLAIN);
    const FrameParams params = fromTheFront(NOON);
    const SkyState sky = computeSky(NOON, 0);
    const Vec3 around = times(GREY, mix(sky.groundColour, sky.zenithColour, 0.5f));
    expectColour(drawnAt(wall, params, {0, 14, 0}), fogged(around, {0, 14, 0}, params));
}

TEST_F(WorldShading, DistanceFadesIntoTheHorizonAndRainFadesSooner) {
    FrameParams params = lookFrom({0, 10, 400}, {0, 10, 0}, NOON);
    Vec3 seen[3];
    int count = 0;
    for (const auto& [distance, overcast] : {std::pair{50.0f, 0}, {700.0f, 0}, {700.0f, 1}}) {
        const float z = 400.0f - distance;
        MeshBuilder wall;
        addQuad(wall, {-300, -300, z}, {300, -300, z}, {300, 300, z}, {-300, 300, z}, {0, 0, 1}, {}, 0,
                MATERIAL_PLAIN);
        params.overcast = overcast;
        const Vec3 point = {0, 10, z};
        seen[count] = drawnAt(wall, params, point);
        expectColour(seen[count], fogged({}, point, params));
        count++;
    }
    EXPECT_LT(brightness(seen[0]), 0.02f);
    EXPECT_GT(brightness(seen[1]), 0.7f);
    EXPECT_GT(brightness(seen[2]), brightness(seen[1]) + 0.5f);
}

TEST_F(WorldShading, LampsGlowALittleByDayAndFullyAtNight) {
    MeshBuilder lamp;
    addQuad(lamp, {-9, 0, -9}, {9, 0, -9}, {9, 0, 9}, {-9, 0, 9}, UP, {}, 0.5f, MATERIAL_PLAIN);
    const Vec3 glow = Vec3{1.0f, 0.95f, 0.8f} * 0.5f;
    FrameParams params = fromAbove(NOON);
    expectColour(drawnAt(lamp, params, {}), fogged(glow * 0.4f, {}, params));
    params = fromAbove(NIGHT);
    expectColour(drawnAt(lamp, params, {}), fogged(glow, {}, params));
}

// Level squares of `size` units, each of one brightness from `low` to `high`, which they use up.
static void expectMottle(const Picture& picture, const FrameParams& params, const Vec3& plain, float size,
                         float low, float high) {
    float lowest = high;
    float highest = low;
    for (int row = -5; row < 5; row++)
        for (int column = -5; column < 5; column++) {
            const Vec3 corner = {static_cast<float>(column) * size, 0, static_cast<float>(row) * size};
            const Vec3 seen = colourAt(picture, params, corner + Vec3{0.3f * size, 0, 0.7f * size});
            const Vec3 beside = colourAt(picture, params, corner + Vec3{0.7f * size, 0, 0.3f * size});
            expectColour(beside, seen, 1.5f / 255.0f);
            expectScaled(seen, plain, low, high);
            lowest = std::min(lowest, brightness(seen) / brightness(plain));
            highest = std::max(highest, brightness(seen) / brightness(plain));
        }
    EXPECT_LT(lowest, low + 0.08f * (high - low));
    EXPECT_GT(highest, high - 0.08f * (high - low));
}

TEST_F(WorldShading, GroundRoadAndSolarCellsAreMottledInSquares) {
    const FrameParams params = lookFrom({0, 14, 5}, {}, 9.0f);
    const auto plain = [&](const Vec3& base) { return fogged(litColour(base, UP, params), {}, params); };
    expectMottle(drawn(floorOf(MATERIAL_TERRAIN), params), params, plain(GREY), 0.5f, 0.94f, 1.06f);
    const MeshBuilder road = withTexturePlace(floorOf(MATERIAL_ROAD), 0.25f, 0.25f);
    expectMottle(drawn(road, params), params, plain(GREY), 0.25f, 0.88f, 1.08f);
    const MeshBuilder panel = withTexturePlace(floorOf(MATERIAL_SOLAR_PANEL), 0.02f, 0.02f);
    expectMottle(drawn(panel, params), params, plain({0.10f, 0.17f, 0.34f}), 1.0f, 0.85f, 1.15f);
}

static const Vec3 PANE = mix(GREY, {0.18f, 0.24f, 0.30f}, 0.75f);

// The middle of the window, or of the wall left of it, in a column and storey of the grid.
static Vec3 windowPoint(int column, int storey) {
    return {(static_cast<float>(column) + 0.55f) * 2.4f, (static_cast<float>(storey) + 0.54f) * 2.8f, 0};
}
static Vec3 pillarPoint(int column, int storey) {
    return {(static_cast<float>(column) + 0.12f) * 2.4f, (static_cast<float>(storey) + 0.54f) * 2.8f, 0};
}

TEST_F(WorldShading, AWallHasAGridOfDarkPanesByDay) {
    const FrameParams params = fromTheFront(NOON);
    const Picture picture = drawn(wallOf(MATERIAL_WALL, 1.0f), params);
    for (int storey = 2; storey < 8; storey++)
        for (int column = -4; column < 4; column++) {
            const Vec3 window = windowPoint(column, storey);
            expectScaled(colourAt(picture, params, window),
                         fogged(litColour(PANE, {0, 0, 1}, params), window, params), 0.96f, 1.04f);
            const Vec3 pillar = pillarPoint(column, storey);
            expectScaled(colourAt(picture, params, pillar),
                         fogged(litColour(GREY, {0, 0, 1}, params), pillar, params), 0.96f, 1.04f);
        }
}

TEST_F(WorldShading, AWindowLeavesMoreWallBesideAndBelowItThanAbove) {
    const int column = 41; // far out, where a wrong spacing would have added up
    const int storey = 5;
    const Vec3 corner = {static_cast<float>(column) * 2.4f, static_cast<float>(storey) * 2.8f, 0};
    for (const float distance : {3.0f, 6.0f}) { // the nearer shows the edges to a hundredth of a bay
        const FrameParams params =
            lookFrom(corner + Vec3{1.2f, 1.4f, distance}, corner + Vec3{1.2f, 1.4f, 0}, NOON);
        const Picture picture = drawn(wallOf(MATERIAL_WALL, 1.0f, 90.0f, 110.0f), params);
        const auto isWindow = [&](float fx, float fy) {
            const Vec3 seen = colourAt(picture, params, corner + Vec3{fx * 2.4f, fy * 2.8f, 0});
            return brightness(seen) < brightness(litColour(mix(GREY, PANE, 0.5f), {0, 0, 1}, params));
        };
        const float off = distance * 0.003f;
        for (const float in : {0.32f + off, 0.78f - off}) EXPECT_TRUE(isWindow(in, 0.5f)) << in;
        for (const float out : {0.32f - off, 0.78f + off}) EXPECT_FALSE(isWindow(out, 0.5f)) << out;
        for (const float in : {0.30f + off, 0.78f - off}) EXPECT_TRUE(isWindow(0.5f, in)) << in;
        for (const float out : {0.30f - off, 0.78f + off}) EXPECT_FALSE(isWindow(0.5f, out)) << out;
        if (distance < 6.0f) continue; // its picture ends before the next bays
        EXPECT_TRUE(isWindow(1.34f, 0.5f));
        EXPECT_TRUE(isWindow(0.5f, -0.24f));
    }
}

TEST_F(WorldShading, AWallIsMottledInThirdsOfAUnit) {
    const FrameParams params = lookFrom({0, 14.5f, 6}, {0, 14.5f, 0}, NOON);
    const Picture picture = drawn(wallOf(MATERIAL_WALL, 1.0f), params);
    const Vec3 plain = litColour(GREY, {0, 0, 1}, params);
    float lowest = 2.0f;
    float highest = 0.0f;
    for (int i = -12; i < 12; i++) {
        const float third = static_cast<float>(i) / 3.0f;
        const Vec3 seen = colourAt(picture, params, {third + 0.1f, 14.1f, 0}); // under the windows
        expectColour(colourAt(picture, params, {third + 0.23f, 14.5f, 0}), seen, 0.5f / 255.0f);
        lowest = std::min(lowest, brightness(seen) / brightness(plain));
        highest = std::max(highest, brightness(seen) / brightness(plain));
    }
    EXPECT_NEAR(lowest, 0.96f, 0.01f);
    EXPECT_NEAR(highest, 1.04f, 0.01f);
}

// How many of the wall's windows are brighter than `threshold` in red.
static int litWindows(const Picture& picture, const FrameParams& params, float threshold) {
    int lit = 0;
    for (int storey = 2; storey < 8; storey++)
        for (int column = -5; column < 5; column++)
            lit += colourAt(picture, params, windowPoint(column, storey)).x > threshold;
    return lit;
}

TEST_F(WorldShading, NoWindowShinesByDay) {
    const FrameParams noon = fromTheFront(NOON);
    EXPECT_EQ(litWindows(drawn(wallOf(MATERIAL_WALL, 1.0f), noon), noon, 0.8f), 0);
}

TEST_F(WorldShading, SixtySevenWindowsInAHundredShineAtNightAndSixtyPanesOfGlass) {
    const struct {
        int material;
        Vec3 bay;
        float share;
    } walls[] = {{MATERIAL_WALL, {2.4f, 2.8f, 0}, 0.67f}, {MATERIAL_GLASS, {2.0f, 3.2f, 0}, 0.60f}};
    for (const auto& [material, bay, share] : walls) {
        int lit = 0;
        int count = 0;
        for (int part = 0; part < 12; part++) {
            const Vec3 middle = {static_cast<float>(part) * 50.0f * bay.x, 16.0f * bay.y, 0};
            const FrameParams params =
                lookFrom(middle + Vec3{0, 0, 1.05f * middle.y * CAMERA_FOCAL}, middle, NIGHT);
            MeshBuilder wall;
            addQuad(wall, middle - Vec3{100, middle.y, 0}, middle + Vec3{100, -middle.y, 0},
                    middle + Vec3{100, middle.y, 0}, middle - Vec3{100, -middle.y, 0}, {0, 0, 1}, GREY, 1.0f,
                    material);
            const Picture picture = drawn(wall, params);
            for (int column = -25; column < 25; column++)
                for (int storey = 0; storey < 32; storey++, count++) {
                    const Vec3 corner = {middle.x + static_cast<float>(column) * bay.x,
                                         static_cast<float>(storey) * bay.y, 0};
                    lit += colourAt(picture, params, corner + Vec3{0.55f * bay.x, 0.65f * bay.y, 0}).x > 0.4f;
                }
        }
        EXPECT_NEAR(static_cast<float>(lit) / static_cast<float>(count), share, 0.01f) << material;
    }
}

TEST_F(WorldShading, ALitWindowIsWarmAndAsBrightAsItsBuildingIsAwake) {
    const FrameParams params = fromTheFront(NIGHT);
    const Picture awake = drawn(wallOf(MATERIAL_WALL, 1.0f), params);
    const Picture drowsy = drawn(wallOf(MATERIAL_WALL, 0.5f), params);
    const Vec3 lamp = Vec3{1.0f, 0.72f, 0.38f} * 0.95f;
    const Vec3 pane = litColour(PANE, {0, 0, 1}, params);
    const Vec3 dim = pane + lamp * 0.5f;
    int lit = 0;
    for (int column = -5; column < 5; column++) {
        const Vec3 point = windowPoint(column, 4);
        if (colourAt(awake, params, point).x < 0.8f) continue;
        lit++;
        expectColour(colourAt(awake, params, point), fogged(pane + lamp, point, params));
        expectColour(colourAt(drowsy, params, point),
                     fogged(mix(dim, dim * 0.45f + Vec3{0.02f, 0.03f, 0.06f}, 0.1f), point, params));
    }
    EXPECT_GT(lit, 0);
}

TEST_F(WorldShading, TheWindowsOfADarkHouseTurnALittleBlueAtNight) {
    const FrameParams params = fromTheFront(NIGHT);
    const Picture picture = drawn(wallOf(MATERIAL_WALL, 0.0f), params);
    EXPECT_EQ(litWindows(picture, params, 0.3f), 0);
    const Vec3 pane = litColour(PANE, {0, 0, 1}, params);
    const Vec3 blue = mix(pane, pane * 0.45f + Vec3{0.02f, 0.03f, 0.06f}, 0.2f);
    for (int column = -5; column < 5; column++)
        expectColour(colourAt(picture, params, windowPoint(column, 4)),
                     fogged(blue, windowPoint(column, 4), params),
                     0.04f * pane.z + 1.2f / 255.0f); // the mottle
}

TEST_F(WorldShading, WindowsStayWhereTheyAreWhenAWallGrows) {
    const FrameParams params = fromTheFront(NIGHT);
    const Picture wide = drawn(wallOf(MATERIAL_WALL, 1.0f, -20.0f, 20.0f), params);
    const Picture narrow = drawn(wallOf(MATERIAL_WALL, 1.0f, -4.3f, 6.1f), params);
    for (float y = 4.0f; y < 24.0f; y += 0.37f)
        for (float x = -4.0f; x < 5.8f; x += 0.29f)
            EXPECT_EQ(colourAt(wide, params, {x, y, 0}), colourAt(narrow, params, {x, y, 0}))
                << x << ", " << y;
}

TEST_F(WorldShading, WallsAlongZHaveTheirGridAlongZ) {
    MeshBuilder wall;
    addQuad(wall, {0, 0, -20}, {0, 0, 20}, {0, 40, 20}, {0, 40, -20}, {1, 0, 0}, GREY, 0, MATERIAL_WALL);
    const FrameParams params = lookFrom({36, 14, 0}, {0, 14, 0}, NOON);
    const Picture picture = drawn(wall, params);
    for (int column = -4; column < 4; column++) {
        const Vec3 window = windowPoint(column, 4);
        const Vec3 pillar = pillarPoint(column, 4);
        EXPECT_GT(brightness(colourAt(picture, params, {0, pillar.y, pillar.x})),
                  brightness(colourAt(picture, params, {0, window.y, window.x})) + 0.1f);
    }
}

TEST_F(WorldShading, LevelFacesHaveNoWindows) {
    FrameParams params = fromAbove(NOON);
    Picture picture = drawn(floorOf(MATERIAL_WALL, GREY, 1.5f), params); // at the height of a window
    const Vec3 plain = fogged(litColour(GREY, UP, params), {}, params);
    for (float x = -6.0f; x < 6.0f; x += 0.4f)
        expectScaled(colourAt(picture, params, {x, 1.5f, 0.1f}), plain, 0.96f, 1.04f);

    params = fromAbove(NIGHT);
    MeshBuilder glass = floorOf(MATERIAL_GLASS, GREY, 2.0f); // at the height of a band
    for (Vertex& vertex : glass) vertex.emissive = 1.0f;
    picture = drawn(glass, params);
    for (float x = -6.0f; x < 6.0f; x += 0.4f)
        EXPECT_LT(brightness(colourAt(picture, params, {x, 2.0f, 0.1f})), 0.3f);
}

TEST_F(WorldShading, ARoofHasDarkAndLightRows) {
    const FrameParams params = fromAbove(NOON);
    const Picture picture = drawn(floorOf(MATERIAL_ROOF), params);
    for (const float x : {-4.0f, 1.0f}) { // on level ground a row starts every five units along x
        expectColour(colourAt(picture, params, {x, 0, 0}),
                     fogged(litColour(GREY, UP, params) * 0.85f, {}, params));
        expectColour(colourAt(picture, params, {x + 2, 0, 0}),
                     fogged(litColour(GREY, UP, params) * 1.05f, {}, params));
    }
}

TEST_F(WorldShading, ARowIsDarkForThirtyFiveHundredthsOfItsWayInEveryDirection) {
    const std::pair<Vec3, bool> points[] = {
        {{0.03f, 0, 0}, true},  {{1.72f, 0, 0}, true},  {{1.78f, 0, 0}, false},
        {{4.97f, 0, 0}, false}, {{0, 0, 1.72f}, true},  {{0, 0, 1.78f}, false},
        {{0, 0, 4.97f}, false}, {{0, 0.114f, 0}, true}, {{0, 0.12f, 0}, false}};
    for (const auto& [point, isDark] : points) {
        const FrameParams params = lookFrom(point + Vec3{0, 3, 0.4f}, point, NOON);
        expectColour(drawnAt(floorOf(MATERIAL_ROOF, GREY, point.y), params, point),
                     litColour(GREY, UP, params) * (isDark ? 0.85f : 1.05f));
    }
}

TEST_F(WorldShading, ARoadHasPaleEdges) {
    const FrameParams params = fromAbove(NOON);
    const std::pair<float, float> edges[] = {{0.0f, 1.0f},      {0.02f, 0.5f}, {0.03f, 0.15625f},
                                             {0.05f, 0.0f},     {0.5f, 0.0f},  {0.95f, 0.0f},
                                             {0.97f, 0.15625f}, {0.98f, 0.5f}, {1.0f, 1.0f}};
    for (const auto& [u, edge] : edges) {
        const Vec3 seen = drawnAt(withTexturePlace(floorOf(MATERIAL_ROAD, {}), u, 0.5f), params, {});
        expectColour(seen,
                     fogged(litColour(Vec3{0.8f, 0.8f, 0.78f} * (edge * 0.5f), UP, params), {}, params));
    }
}

TEST_F(WorldShading, ARoadCellHasNoCentreDashForItsMarkBeginsWhereTheCellEnds) {
    const FrameParams params = fromAbove(NOON);
    const auto isDash = [&](float u, float v) {
        const Vec3 seen = drawnAt(withTexturePlace(floorOf(MATERIAL_ROAD, {}), u, v), params, {});
        const Vec3 dash = fogged(litColour({0.92f, 0.92f, 0.86f}, UP, params), {}, params);
        if (brightness(seen) < 0.1f) return false;
        expectColour(seen, dash);
        return true;
    };
    for (const float v : {0.0f, 0.25f, 0.5f, 0.75f, 0.99f, 2.4f}) EXPECT_FALSE(isDash(0.5f, v)) << v;
    for (const float v : {1.01f, 1.5f, 1.99f}) EXPECT_TRUE(isDash(0.5f, v)) << v;
    EXPECT_TRUE(isDash(0.57f, 1.5f));
    EXPECT_TRUE(isDash(0.43f, 1.5f));
    EXPECT_FALSE(isDash(0.59f, 1.5f));
    EXPECT_FALSE(isDash(0.41f, 1.5f));
}

static Vec3 glassBase(const FrameParams& params, const Vec3& point, const Vec3& normal, const Vec3& colour) {
    const float slant = 1.0f - dot(normalised(params.cameraPos - point), normal);
    const Vec3 mirror = computeSky(params.hour, 0).zenithColour * 1.25f + Vec3{0.06f, 0.07f, 0.09f};
    return mix(colour * 0.55f, mirror, 0.30f + 0.5f * slant * slant);
}

TEST_F(WorldShading, GlassMirrorsTheSkyInBandsAndMoreSoAtAFlatAngle) {
    for (const FrameParams& params : {fromTheFront(NOON), lookFrom({40, 14, 14}, {0, 14, 0}, NOON)}) {
        const Picture picture = drawn(wallOf(MATERIAL_GLASS, 0.0f), params);
        for (int storey = 2; storey < 6; storey++)
            for (const float height : {0.25f, 0.75f}) {
                const Vec3 point = {3.0f, (static_cast<float>(storey) + height) * 3.2f, 0};
                const Vec3 base = glassBase(params, point, {0, 0, 1}, GREY) * (height > 0.5f ? 1.08f : 0.92f);
                expectColour(colourAt(picture, params, point),
                             fogged(litColour(base, {0, 0, 1}, params), point, params));
            }
    }
}

TEST_F(WorldShading, ABandOfGlassIsTheUpperHalfOfItsStorey) {
    const Vec3 middle = {3.0f, 5.5f * 3.2f, 0};
    const FrameParams params = lookFrom(middle + Vec3{0, 0, 4.2f}, middle, NOON);
    const Picture picture = drawn(wallOf(MATERIAL_GLASS, 0.0f), params);
    for (const float height : {0.01f, 0.49f, 0.51f, 0.99f}) {
        const Vec3 point = {3.0f, (5.0f + height) * 3.2f, 0};
        const Vec3 base = glassBase(params, point, {0, 0, 1}, GREY) * (height > 0.5f ? 1.08f : 0.92f);
        expectColour(colourAt(picture, params, point), litColour(base, {0, 0, 1}, params));
    }
}

TEST_F(WorldShading, GlassShinesInItsBandsAtNightOnly) {
    int shining = 0;
    for (const float hour : {NIGHT, NOON}) {
        const FrameParams params = fromTheFront(hour);
        const Picture awake = drawn(wallOf(MATERIAL_GLASS, 1.0f), params);
        const Picture asleep = drawn(wallOf(MATERIAL_GLASS, 0.0f), params);
        const auto glowAt = [&](float x, float storey) {
            const Vec3 point = {x, storey * 3.2f, 0};
            return colourAt(awake, params, point) - colourAt(asleep, params, point);
        };
        for (int column = -5; column < 5; column++) { // of two units
            const float x = static_cast<float>(column) * 2.0f;
            expectColour(glowAt(x + 1.0f, 4.25f), {});
            const Vec3 glow = glowAt(x + 1.0f, 4.75f);
            expectColour(glowAt(x + 0.3f, 4.6f), glow);
            expectColour(glowAt(x + 1.7f, 4.9f), glow);
            if (brightness(glow) < 0.1f) continue;
            EXPECT_EQ(hour, NIGHT);
            expectColour(glow, Vec3{1.0f, 0.82f, 0.55f} * 0.5f);
            shining++;
        }
    }
    EXPECT_GE(shining, 3);
    EXPECT_LT(shining, 10);
}

TEST_F(WorldShading, GlassAndSolarPanelsThrowTheSunBack) {
    const Vec3 sun = computeSky(NOON, 0).sunDir;
    const Vec3 point = {0.5f, 0, 0.5f};
    for (const float aside : {0.06f, 0.12f, 0.2f, 0.4f}) { // radians from where the sun is mirrored to
        const float angle = std::atan2(sun.y, sun.z) + aside;
        const Vec3 eye = point + Vec3{0, std::sin(angle), -std::cos(angle)} * 30.0f;
        const FrameParams params = lookFrom(eye, point, NOON);
        const float cosine = std::cos(aside);
        const Vec3 sunColour = computeSky(NOON, 0).sunColour;

        const Vec3 glass = litColour(glassBase(params, point, UP, {}) * 0.92f, UP, params);
        expectColour(drawnAt(floorOf(MATERIAL_GLASS, {}), params, point),
                     fogged(glass + sunColour * (std::pow(cosine, 60.0f) * 0.8f), point, params),
                     0.011f); // so steep that it differs within a pixel
        const Vec3 panel = litColour({0.10f, 0.17f, 0.34f}, UP, params);
        const Vec3 seen =
            drawnAt(withTexturePlace(floorOf(MATERIAL_SOLAR_PANEL), 0.02f, 0.02f), params, point);
        EXPECT_NEAR(seen.x, (panel + sunColour * (std::pow(cosine, 30.0f) * 0.5f)).x, 0.03f) << aside;
    }
}

TEST_F(WorldShading, ASolarPanelHasAPaleGridOfSixByFour) {
    // Early, so that the sun is mirrored elsewhere.
    const FrameParams params = lookFrom({0, 22, 8}, {}, 9.0f);
    const auto isGrid = [&](float u, float v) {
        const Vec3 seen =
            drawnAt(withTexturePlace(floorOf(MATERIAL_SOLAR_PANEL), u, v), params, {0.5f, 0, 0.5f});
        const Vec3 pale = Vec3{0.62f, 0.66f, 0.72f} * 0.7f;
        if (seen.x < 0.3f) return false;
        const Vec3 cell = {0.10f, 0.17f, 0.34f};
        expectColour(seen, fogged(litColour(cell * 0.3f + pale, UP, params), {}, params), 0.03f);
        return true;
    };
    for (int i = 0; i < 6; i++) {
        const float u = static_cast<float>(i);
        EXPECT_FALSE(isGrid((u + 0.01f) / 6, 0.1f)) << i;
        EXPECT_FALSE(isGrid((u + 0.92f) / 6, 0.1f)) << i;
        EXPECT_TRUE(isGrid((u + 0.94f) / 6, 0.1f)) << i;
    }
    for (int i = 0; i < 4; i++) {
        const float v = static_cast<float>(i);
        EXPECT_FALSE(isGrid(0.1f, (v + 0.01f) / 4)) << i;
        EXPECT_FALSE(isGrid(0.1f, (v + 0.92f) / 4)) << i;
        EXPECT_TRUE(isGrid(0.1f, (v + 0.94f) / 4)) << i;
    }
    EXPECT_TRUE(isGrid(0.95f / 6, 0.95f / 4));
}

TEST_F(WorldShading, AMaterialReachesHalfWayToTheNext) {
    const FrameParams params = fromTheFront(19.5f); // dusk: the ground is not black yet, and lamps are lit
    const auto drawnOf = [&](float material) {
        MeshBuilder wall = wallOf(MATERIAL_PLAIN, 0.5f);
        for (Vertex& vertex : wall) vertex.material = material;
        return drawn(wall, params);
    };
    for (int material = MATERIAL_TERRAIN; material < MATERIAL_PLAIN; material++) {
        const float whole = static_cast<float>(material);
        const Picture lower = drawnOf(whole);
        const Picture upper = drawnOf(whole + 1.0f);
        EXPECT_GT(differentPixels(lower, upper), 1000) << material;
        EXPECT_EQ(differentPixels(drawnOf(whole + 0.49f), lower), 0) << material;
        EXPECT_EQ(differentPixels(drawnOf(whole + 0.51f), upper), 0) << material;
    }
}

TEST_F(WorldShading, TheWaterEdgeMaterialIsLeftAsItIs) {
    const FrameParams params = fromAbove(NOON);
    expectColour(drawnAt(floorOf(MATERIAL_WATER_EDGE), params, {}),
                 fogged(litColour(GREY, UP, params), {}, params));
}

TEST_F(WorldShading, WhatStandsInFrontHidesWhatLiesBehind) {
    MeshBuilder both = wallOf(MATERIAL_PLAIN, 0.0f);
    MeshBuilder behind = wallOf(MATERIAL_PLAIN, 0.0f);
    for (Vertex& vertex : behind) {
        vertex.position.z = -30.0f;
        vertex.colour = {0.4f, 0, 0};
    }
    both.insert(both.end(), behind.begin(), behind.end());
    const FrameParams params = fromTheFront(NOON);
    const Vec3 seen = drawnAt(both, params, {0, 14, 0});
    expectColour(seen, fogged(litColour(GREY, {0, 0, 1}, params), {0, 14, 0}, params));
}
