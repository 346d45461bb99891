// The water, in real pixels.
#include "view/picture/shading.h"

#include <algorithm>

static const Vec3 BED = {0.4f, 0.1f, 0.1f};
constexpr float LEVEL = 6.0f;

class WaterShading : public ShadingTest {
protected:
    void SetUp() override {
        ShadingTest::SetUp();
        if (HasFatalFailure()) return;
        MeshBuilder water;
        addFlatQuad(water, -800, 800, -800, 800, LEVEL, {0, 0, 0}, MATERIAL_WATER_EDGE);
        uploadMesh(meshes.waterMesh, water, false);
        MeshBuilder bed;
        addFlatQuad(bed, -800, 800, -800, 800, 0, BED, MATERIAL_PLAIN);
        uploadMesh(meshes.terrainChunks[0], bed, false);
    }
};

static float wave(float x, float z, float t) {
    return std::sin(x * 0.35f + t * 1.2f) * 0.5f + std::sin(z * 0.42f - t * 0.9f) * 0.5f +
           std::sin((x + z) * 0.21f + t * 0.7f) * 0.35f;
}

static float smoothstep(float low, float high, float value) {
    const float t = std::clamp((value - low) / (high - low), 0.0f, 1.0f);
    return t * t * (3.0f - 2.0f * t);
}

// The water alone, before it is blended over what lies under it.
static Vec3 waterColour(const FrameParams& params, const Vec3& point) {
    const SkyState sky = computeSky(params.hour, params.overcast);
    const float t = params.time;
    const float h0 = wave(point.x, point.z, t);
    const float slopeX = (wave(point.x + 0.02f, point.z, t) - h0) / 0.02f;
    const float slopeZ = (wave(point.x, point.z + 0.02f, t) - h0) / 0.02f;
    const Vec3 n = normalised({-slopeX * 0.04f, 1.0f, -slopeZ * 0.04f});
    const Vec3 view = normalised(params.cameraPos - point);
    const float slant = 1.0f - std::max(dot(n, view), 0.0f);
    Vec3 colour = mix({0.05f, 0.22f, 0.32f}, {0.12f, 0.45f, 0.52f}, 0.4f + 0.06f * h0);
    colour =
        mix(colour, sky.zenithColour * 1.1f, std::clamp(slant * slant * slant * 0.8f + 0.1f, 0.0f, 1.0f));
    const Vec3 mirrored = n * (2.0f * dot(n, view)) - view;
    colour = colour + sky.sunColour * (std::pow(std::max(dot(mirrored, sky.sunDir), 0.0f), 120.0f) * 1.6f);
    const float glint =
        smoothstep(0.92f, 1.0f, std::sin(point.x * 1.7f + t * 2.0f) * std::sin(point.z * 1.3f - t * 1.6f));
    colour = colour + sky.sunColour * (glint * 0.08f * (1.0f - sky.night));
    return fogged(colour, point, params);
}

// Checks a grid of pixels. What the water covers shines through by 7 of 100.
static void expectWater(const Picture& picture, const FrameParams& params, float tolerance) {
    const Mat4 unproject = inverse(params.viewProj);
    for (int y = 10; y < 110; y += 25)
        for (int x = 0; x < PICTURE_WIDTH; x += 5) {
            const Vec3 start = transformPoint(
                unproject, {(static_cast<float>(x) + 0.5f) / (PICTURE_WIDTH / 2) - 1.0f,
                            (static_cast<float>(y) + 0.5f) / (PICTURE_HEIGHT / 2) - 1.0f, -1.0f});
            const Vec3 ray = normalised(start - params.cameraPos);
            const Vec3 point = start + ray * ((LEVEL - start.y) / ray.y);
            const Vec3 bed = start + ray * (-start.y / ray.y);
            const Vec3 under = fogged(litColour(BED, {0, 1, 0}, params), bed, params);
            const Vec3 over = waterColour(params, point);
            const Vec3 shown = {std::min(over.x, 1.0f), std::min(over.y, 1.0f), std::min(over.z, 1.0f)};
            expectColour(pixelAt(picture, x, y), shown * 0.93f + under * 0.07f, tolerance);
        }
}

TEST_F(WaterShading, FollowsItsWavesWithTheBedShiningThrough) {
    for (const float hour : {8.0f, 12.0f, 17.6f, 23.0f})
        for (const float time : {0.0f, 3.3f}) {
            FrameParams params = lookFrom({0, 40, 60}, {0, LEVEL, 0}, hour);
            params.time = time;
            expectWater(draw(params), params, 2.5f / 255.0f);
        }
}

TEST_F(WaterShading, TheMirroredSunDancesOnTheWaves) {
    const Vec3 sun = computeSky(15.0f, 0).sunDir;
    for (const float time : {1.0f, 7.9f}) {
        FrameParams params =
            lookFrom(Vec3{-sun.x, sun.y, -sun.z} * 60.0f + Vec3{0, LEVEL, 0}, {0, LEVEL, 0}, 15.0f);
        params.time = time;
        expectWater(draw(params), params, 4.0f / 255.0f);
    }
}

TEST_F(WaterShading, MovesWithTime) {
    FrameParams params = lookFrom({0, 40, 60}, {0, LEVEL, 0}, 12.0f);
    params.time = 5.0f;
    const Picture before = draw(params);
    EXPECT_EQ(draw(params).rgba, before.rgba);
    params.time = 5.5f;
    const Picture after = draw(params);
    int changed = 0;
    for (int x = 0; x < PICTURE_WIDTH; x++) changed += !(pixelAt(after, x, 60) == pixelAt(before, x, 60));
    EXPECT_GT(changed, PICTURE_WIDTH / 2);
}

TEST_F(WaterShading, ThrowsTheSunBackTowardsTheViewer) {
    const Vec3 sun = computeSky(17.0f, 0).sunDir;
    const FrameParams against =
        lookFrom(Vec3{-sun.x, sun.y, -sun.z} * 60.0f + Vec3{0, LEVEL, 0}, {0, LEVEL, 0}, 17.0f);
    const FrameParams with =
        lookFrom(Vec3{sun.x, sun.y, sun.z} * 60.0f + Vec3{0, LEVEL, 0}, {0, LEVEL, 0}, 17.0f);
    const auto brightest = [&](const FrameParams& params) {
        const Picture picture = draw(params);
        float red = 0.0f;
        for (int y = 60; y < 120; y++)
            for (int x = 100; x < 220; x++) red = std::max(red, pixelAt(picture, x, y).x);
        return red;
    };
    EXPECT_GT(brightest(against), 0.8f);
    EXPECT_LT(brightest(with), 0.5f);
}

TEST_F(WaterShading, GroundAboveItHidesIt) {
    MeshBuilder island;
    addFlatQuad(island, -20, 20, -20, 20, LEVEL + 1.0f, {0.4f, 0.4f, 0.4f}, MATERIAL_PLAIN);
    uploadMesh(meshes.roadMesh, island, false);
    const FrameParams params = lookFrom({0, 60, 80}, {0, LEVEL, 0}, 12.0f);
    const Vec3 point = {0, LEVEL + 1.0f, 0};
    expectColour(colourAt(draw(params), params, point),
                 fogged(litColour({0.4f, 0.4f, 0.4f}, {0, 1, 0}, params), point, params));
}
