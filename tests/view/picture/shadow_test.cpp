// Where shadows fall, in real pixels.
#include "view/picture/shading.h"

static const Vec3 UP = {0, 1, 0};
static const Vec3 GREY = {0.4f, 0.4f, 0.4f};

// A tower of 60 units in the middle of level ground.
class Shadows : public ShadingTest {
protected:
    void SetUp() override {
        ShadingTest::SetUp();
        if (HasFatalFailure()) return;
        MeshBuilder ground;
        addFlatQuad(ground, -800, 800, -800, 800, 0, GREY, MATERIAL_PLAIN);
        uploadMesh(meshes.terrainChunks[35], ground, false);
        MeshBuilder tower;
        addBox(tower, {-10, 0, -10}, {10, 60, 10}, GREY, MATERIAL_PLAIN, 0);
        uploadMesh(meshes.buildingBlocks[0], tower, false);
    }

    // The share of sunlight at a point of the ground, seen from high above on the side away from the tower.
    float sunShareAt(const Vec3& point, FrameParams params) {
        params.cameraPos = point + Vec3{0, 200, point.z < 0.0f ? -60.0f : 60.0f};
        params.viewProj = lookFrom(params.cameraPos, point, params.hour).viewProj;
        const Vec3 lit = fogged(litColour(GREY, UP, params, 1.0f), point, params);
        const Vec3 dark = fogged(litColour(GREY, UP, params, 0.0f), point, params);
        const Vec3 seen = colourAt(draw(params), params, point);
        return (seen.x - dark.x) / (lit.x - dark.x);
    }

    static FrameParams around(const Vec3& target, float hour, int shadowSize) {
        FrameParams params = lookFrom(target + Vec3{0, 200, 60}, target, hour);
        params.shadowSize = shadowSize;
        return params;
    }
};

TEST_F(Shadows, FallAwayFromTheSun) {
    for (const float hour : {9.0f, 12.0f, 15.0f}) {
        const Vec3 sun = computeSky(hour, 0).sunDir;
        const Vec3 away = Vec3{-sun.x, 0, -sun.z} * (40.0f / sun.y); // of the tower's axis, 40 units up
        const FrameParams params = around({}, hour, 2048);
        const Vec3 inShadow = hour == 12.0f ? Vec3{0, 0, -20} : away;
        EXPECT_NEAR(sunShareAt(inShadow, params), 0.0f, 0.03f) << hour;
        EXPECT_NEAR(sunShareAt(inShadow * -1.0f, params), 1.0f, 0.03f) << hour;
    }
}

TEST_F(Shadows, EndWhereTheTowersShadowEnds) {
    const Vec3 sun = computeSky(15.0f, 0).sunDir;
    const FrameParams params = around({}, 15.0f, 2048);
    const Vec3 away = {-sun.x / sun.y, 0, -sun.z / sun.y};
    EXPECT_NEAR(sunShareAt(away * 55.0f, params), 0.0f, 0.03f);
    EXPECT_NEAR(sunShareAt(away * 80.0f, params), 1.0f, 0.03f);
    EXPECT_NEAR(sunShareAt({0, 0, 25}, params), 1.0f, 0.03f);
}

TEST_F(Shadows, HaveASoftEdge) {
    const FrameParams params = around({}, 12.0f, 1024);
    int between = 0;
    for (float x = 8.0f; x < 12.0f; x += 0.2f) {
        const float share = sunShareAt({x, 0, -15}, params);
        between += share > 0.15f && share < 0.85f;
    }
    EXPECT_GE(between, 2);
}

TEST_F(Shadows, AreGoneWithTheQualityOff) {
    EXPECT_NEAR(sunShareAt({0, 0, -20}, around({}, 12.0f, 2048)), 0.0f, 0.03f);
    EXPECT_NEAR(sunShareAt({0, 0, -20}, around({}, 12.0f, 0)), 1.0f, 0.03f);
    EXPECT_EQ(renderer.shadowTexture, 0u);
    EXPECT_NEAR(sunShareAt({0, 0, -20}, around({}, 12.0f, 1024)), 0.0f, 0.03f);
}

TEST_F(Shadows, FollowTheCamerasTargetAndEndAtTheirSquare) {
    // At noon two of its sides run along x: it reaches 260 units to either side of the target.
    EXPECT_NEAR(sunShareAt({0, 0, -20}, around({-245, 0, -20}, 12.0f, 2048)), 0.0f, 0.03f);
    EXPECT_NEAR(sunShareAt({0, 0, -20}, around({-275, 0, -20}, 12.0f, 2048)), 1.0f, 0.03f);
    EXPECT_NEAR(sunShareAt({0, 0, -20}, around({275, 0, -20}, 12.0f, 2048)), 1.0f, 0.03f);
}

TEST_F(Shadows, OutsideTheSquareEverythingIsFullyLit) {
    const FrameParams params = around({}, 12.0f, 1024);
    for (const Vec3& outside : {Vec3{300, 0, 0}, {-300, 0, 0}, {0, 0, 400}, {0, 0, -400}})
        EXPECT_NEAR(sunShareAt(outside, params), 1.0f, 0.03f);
}

TEST_F(Shadows, WhatStandsOnTheEdgeOfTheSquareShadesNothingOutsideIt) {
    MeshBuilder fence;
    addBox(fence, {-262, 0, -290}, {-252, 60, 290}, GREY, MATERIAL_PLAIN, 0);
    addBox(fence, {252, 0, -290}, {262, 60, 290}, GREY, MATERIAL_PLAIN, 0);
    addBox(fence, {-262, 0, -275}, {262, 60, -265}, GREY, MATERIAL_PLAIN, 0);
    addBox(fence, {-262, 0, 280}, {262, 60, 290}, GREY, MATERIAL_PLAIN, 0);
    uploadMesh(meshes.buildingBlocks[0], fence, false);
    const FrameParams params = around({}, 12.0f, 2048);
    for (const Vec3& point : {Vec3{300, 0, 0}, {-300, 0, 0}, {0, 0, 330}, {0, 0, -330}})
        EXPECT_NEAR(sunShareAt(point, params), 1.0f, 0.03f) << point.x << ", " << point.z;
}

TEST_F(Shadows, DoNotReachBeyondTheLightsFarPlane) {
    const Vec3 sun = computeSky(6.5f, 0).sunDir;
    const Vec3 away = normalised({-sun.x, 0, -sun.z});
    const Vec3 wall = away * 600.0f;
    MeshBuilder builder;
    addFlatQuad(builder, -3000, 3000, -3000, 3000, 0, GREY, MATERIAL_PLAIN);
    addBox(builder, wall - Vec3{20, 0, 200}, wall + Vec3{20, 300, 200}, GREY, MATERIAL_PLAIN, 0);
    uploadMesh(meshes.buildingBlocks[0], builder, false);
    destroyMesh(meshes.terrainChunks[35]);
    const FrameParams params = around({}, 6.5f, 2048);
    EXPECT_NEAR(sunShareAt(away * 800.0f, params), 0.0f, 0.1f);
    EXPECT_NEAR(sunShareAt(away * 1100.0f, params), 1.0f, 0.1f);
}

// The depth that a surface must lie under another to be shaded: two units, so that nothing shades itself.
TEST_F(Shadows, NeedTwoUnitsBetweenTheSurfaces) {
    for (const auto& [height, share] : {std::pair{2.0f, 1.0f}, {2.3f, 0.0f}}) {
        MeshBuilder plate;
        addFlatQuad(plate, -50, 50, -100, -50, height, GREY, MATERIAL_PLAIN);
        uploadMesh(meshes.buildingBlocks[0], plate, false);
        FrameParams params = around({}, 12.0f, 2048);
        // Seen below the plate: level, from its far side.
        params.cameraPos = {0, 1.0f, -130};
        const Vec3 point = {0, 0, -75};
        params.viewProj = lookFrom(params.cameraPos, point, 12.0f).viewProj;
        const Vec3 seen = colourAt(draw(params), params, point);
        expectColour(seen, fogged(litColour(GREY, UP, params, share), point, params));
    }
}

TEST_F(Shadows, TakeTheSunOutOfMirrorsToo) {
    MeshBuilder panels;
    addFlatQuad(panels, -100, 100, -100, 100, 0.01f, GREY, MATERIAL_SOLAR_PANEL);
    for (Vertex& vertex : panels) vertex.u = vertex.v = 0.02f;
    uploadMesh(meshes.roadMesh, panels, false);
    const Vec3 sun = computeSky(12.0f, 0).sunDir;
    for (const auto& [x, low, high] : {std::tuple{0.0f, 0.0f, 0.1f}, {40.0f, 0.5f, 1.0f}}) {
        const Vec3 point = {x, 0, -20};
        FrameParams params = around({}, 12.0f, 2048);
        params.cameraPos = point + Vec3{0, sun.y, -sun.z} * 100.0f;
        params.viewProj = lookFrom(params.cameraPos, point, 12.0f).viewProj;
        const float red = colourAt(draw(params), params, point).x;
        EXPECT_GE(red, low);
        EXPECT_LE(red, high);
    }
}

TEST_F(Shadows, TheGroundCastsNoneOnItself) {
    destroyMesh(meshes.buildingBlocks[0]);
    for (const float hour : {7.0f, 9.0f, 12.0f, 17.0f}) {
        FrameParams params = around({-60, 0, 60}, hour, 1024);
        const Picture with = draw(params);
        params.shadowSize = 0;
        const Picture without = draw(params);
        EXPECT_EQ(with.rgba, without.rgba) << hour;
    }
}

TEST_F(Shadows, MeanNothingToTheGroundAtNight) {
    FrameParams params = around({}, 0.0f, 1024);
    const Picture with = draw(params);
    EXPECT_EQ(renderer.shadowSize, 1024);
    params.shadowSize = 0;
    const Picture without = draw(params);
    for (const Vec3& point : {Vec3{0, 0, -20}, {0, 0, 30}, {30, 0, 0}, {-30, 0, 0}, {0, 60, 0}})
        EXPECT_EQ(colourAt(with, params, point), colourAt(without, params, point));
}
