// The sky behind the picture, in real pixels.
#include "view/gl/gl.h"
#include "view/picture/shading.h"

#include <algorithm>

class SkyShading : public ShadingTest {};

// Where a pixel looks: its point on the far plane, taken as a direction.
static Vec3 directionOf(const FrameParams& params, int x, int y) {
    const float ndcX = (static_cast<float>(x) + 0.5f) / static_cast<float>(params.width) * 2.0f - 1.0f;
    const float ndcY = (static_cast<float>(y) + 0.5f) / static_cast<float>(params.height) * 2.0f - 1.0f;
    return normalised(transformPoint(inverse(params.viewProj), {ndcX, ndcY, 1.0f}));
}

static Vec3 skyColour(const FrameParams& params, const Vec3& direction) {
    const SkyState sky = computeSky(params.hour, params.overcast);
    const float t = std::clamp(direction.y, 0.0f, 1.0f);
    const float sun = std::max(dot(direction, sky.sunDir), 0.0f);
    const float shine = (std::pow(sun, 8.0f) * 0.35f + std::pow(sun, 400.0f) * 1.5f) * sky.sunGlow;
    return mix(sky.fogColour, sky.zenithColour, std::pow(t, 0.55f)) + sky.sunColour * shine;
}

TEST_F(SkyShading, RisesFromTheHorizonsColourToTheZenithsWithTheSunInIt) {
    struct View {
        float hour;
        int overcast;
        Vec3 target;
    };
    for (const View& view :
         {View{12.0f, 0, {0, 5, -100}}, View{12.0f, 0, {0, 90, 10}}, View{7.0f, 0, {100, 35, 40}},
          View{17.6f, 0, {-100, 20, 40}}, View{17.6f, 1, {-100, 20, 40}}, View{1.0f, 0, {-100, 20, 40}}}) {
        FrameParams params = lookFrom({}, view.target, view.hour);
        params.overcast = view.overcast;
        const Picture picture = draw(params);
        for (int y = 5; y < PICTURE_HEIGHT; y += 30)
            for (int x = 5; x < PICTURE_WIDTH; x += 30)
                expectColour(pixelAt(picture, x, y), skyColour(params, directionOf(params, x, y)));
    }
}

TEST_F(SkyShading, BelowTheHorizonItIsTheHorizonsColour) {
    const FrameParams params = lookFrom({}, {0, -50, -100}, 12.0f);
    const Picture picture = draw(params);
    for (int x = 0; x < PICTURE_WIDTH; x += 40)
        expectColour(pixelAt(picture, x, 20), computeSky(12.0f, 0).fogColour);
}

TEST_F(SkyShading, TheSunHasADiscAndALargeHalo) {
    const Vec3 sun = computeSky(17.0f, 0).sunDir;
    const FrameParams params = lookFrom({}, sun * 100.0f, 17.0f);
    const Picture picture = draw(params);
    const SkyState sky = computeSky(17.0f, 0);
    const Vec3 plain = mix(sky.fogColour, sky.zenithColour, std::pow(sun.y, 0.55f));
    const Vec3 halo = pixelAt(picture, PICTURE_WIDTH / 2 + 60, PICTURE_HEIGHT / 2);
    const Vec3 disc = pixelAt(picture, PICTURE_WIDTH / 2, PICTURE_HEIGHT / 2);
    EXPECT_GT(halo.x, plain.x + 0.03f);
    EXPECT_GT(disc.x, halo.x + 0.2f);
    expectColour(disc, plain + sky.sunColour * (1.85f * 0.2f));
}

TEST_F(SkyShading, TheClearColourIsTheHorizonsWithFullAlpha) {
    renderFrame(renderer, lookFrom({}, {0, -50, -100}, 20.0f), meshes);
    gl.Clear(GL_COLOR_BUFFER_BIT);
    const Picture cleared = readPicture();
    expectColour(pixelAt(cleared, 3, 3), computeSky(20.0f, 0).fogColour);
}

TEST_F(SkyShading, LiesBehindEverything) {
    MeshBuilder wall;
    addQuad(wall, {-3000, -2000, -3000}, {3000, -2000, -3000}, {3000, 2000, -3000}, {-3000, 2000, -3000},
            {0, 0, 1}, {}, 1.0f, MATERIAL_PLAIN);
    const FrameParams params = lookFrom({}, {0, 40, -100}, 12.0f);
    const Vec3 seen = drawnAt(wall, params, {0, 1200, -3000});
    EXPECT_GT(length(seen - skyColour(params, normalised({0, 40, -100}))), 0.05f);
    expectColour(seen, computeSky(12.0f, 0).fogColour); // wholly in the haze
}
