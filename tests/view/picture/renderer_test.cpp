// The order of the passes and their calls, without a driver.
#include "allocation_count.h"
#include "view/gl/fake_gl.h"
#include "view/picture/renderer.h"
#include "view/picture/sky.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::Contains;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

// Every mesh is one triangle list whose vertex array is told by its number, in the order of the record.
static WorldMeshes numberedMeshes() {
    WorldMeshes meshes;
    uint32_t name = 101;
    for (Mesh& chunk : meshes.terrainChunks) chunk = {name++, 1, 3, 168};
    meshes.roadMesh = {name++, 1, 3, 168};
    for (Mesh& block : meshes.buildingBlocks) block = {name++, 1, 3, 168};
    for (Mesh* mesh : {&meshes.treeMesh, &meshes.waterMesh, &meshes.hoverMesh, &meshes.streetLifeMesh})
        *mesh = {name++, 1, 3, 168};
    return meshes;
}

constexpr int ROAD = 137;
constexpr int FIRST_BLOCK = 138;
constexpr int TREES = 174;
constexpr int WATER = 175;
constexpr int HOVER = 176;
constexpr int STREET_LIFE = 177;
constexpr size_t OPAQUE_MESHES = 2 * CHUNK_COUNT + 3;

class RendererCalls : public testing::Test {
protected:
    RendererCalls() {
        renderer.worldProgram = 51;
        renderer.shadowProgram = 52;
        renderer.waterProgram = 53;
        renderer.skyProgram = 54;
        renderer.skyVertexArray = 55;
        params.width = 800;
        params.height = 600;
        params.cameraTarget = {384, 10, 384};
        fake.lastName = 200;
    }

    void draw(int shadowSize) {
        fake.calls.clear();
        params.shadowSize = shadowSize;
        renderFrame(renderer, params, meshes);
    }

    // The vertex arrays that are drawn with a program, in order.
    std::vector<std::string> drawnWith(int program) const {
        std::vector<std::string> drawn;
        bool inPass = false;
        for (const std::string& call : fake.calls) {
            if (call.starts_with("UseProgram")) inPass = call == glCall("UseProgram", program);
            if (inPass && call.starts_with("BindVertexArray")) drawn.push_back(call);
        }
        return drawn;
    }

    FakeGl fake;
    Renderer renderer;
    FrameParams params;
    WorldMeshes meshes = numberedMeshes();
};

static std::vector<std::string> opaqueWorld() {
    std::vector<std::string> drawn;
    for (int name = 101; name <= STREET_LIFE; name++)
        if (name != WATER && name != HOVER) drawn.push_back(glCall("BindVertexArray", name));
    return drawn;
}

TEST_F(RendererCalls, LinksWorldShadowWaterSkyAndTurnsCullingOffForGood) {
    Renderer made;
    fake.lastName = 0;
    EXPECT_TRUE(initRenderer(made, nullptr));
    EXPECT_EQ(made.worldProgram, 3u);
    EXPECT_EQ(made.shadowProgram, 6u);
    EXPECT_EQ(made.waterProgram, 9u);
    EXPECT_EQ(made.skyProgram, 12u);
    EXPECT_EQ(made.skyVertexArray, 13u);
    EXPECT_EQ(fake.calls.back(), glCall("Disable", GL_CULL_FACE));
    draw(1024);
    EXPECT_THAT(fake.calls, testing::Not(Contains(glCall("Enable", GL_CULL_FACE))));
}

TEST_F(RendererCalls, TriesAllProgramsEvenWhenAllFail) {
    Renderer made;
    std::string log;
    fake.links = false;
    EXPECT_FALSE(initRenderer(made, &log));
    EXPECT_EQ(callsOf(fake, "LinkProgram").size(), 4u);
    EXPECT_EQ(log.size(), 4u * 1023u);
    EXPECT_EQ(made.worldProgram + made.shadowProgram + made.waterProgram + made.skyProgram, 0u);
}

TEST_F(RendererCalls, DestroyingFreesEverythingOnce) {
    draw(1024);
    const Renderer old = renderer;
    fake.calls.clear();
    destroyRenderer(renderer);
    EXPECT_THAT(fake.calls, ElementsAre(glCall("DeleteFramebuffers", 1, old.shadowFramebuffer),
                                        glCall("DeleteTextures", 1, old.shadowTexture), "DeleteProgram(51)",
                                        "DeleteProgram(52)", "DeleteProgram(53)", "DeleteProgram(54)",
                                        "DeleteVertexArrays(1, 55)"));
    EXPECT_EQ(renderer.shadowSize, 0);
    fake.calls.clear();
    destroyRenderer(renderer);
    EXPECT_THAT(fake.calls, IsEmpty());
}

TEST_F(RendererCalls, ThePassesAreShadowSkySceneWater) {
    draw(1024);
    EXPECT_THAT(callsOf(fake, "UseProgram"),
                ElementsAre("UseProgram(52)", "UseProgram(54)", "UseProgram(51)", "UseProgram(53)"));
    draw(0);
    EXPECT_THAT(callsOf(fake, "UseProgram"),
                ElementsAre("UseProgram(54)", "UseProgram(51)", "UseProgram(53)"));
}

TEST_F(RendererCalls, TheOpaqueWorldIsChunksRoadsBuildingsTreesAndStreetLife) {
    draw(1024);
    std::vector<std::string> scene = opaqueWorld();
    scene.push_back(glCall("BindVertexArray", HOVER)); // last
    EXPECT_THAT(drawnWith(51), ElementsAreArray(scene));
    EXPECT_EQ(scene[36], glCall("BindVertexArray", ROAD));
    for (int block = 0; block < CHUNK_COUNT; block++)
        EXPECT_EQ(scene[37 + block], glCall("BindVertexArray", FIRST_BLOCK + block));
    EXPECT_EQ(scene[73], glCall("BindVertexArray", TREES));
    EXPECT_EQ(scene[74], glCall("BindVertexArray", STREET_LIFE));
}

TEST_F(RendererCalls, WaterAndHoverQuadCastNoShadow) {
    draw(1024);
    EXPECT_THAT(drawnWith(52), ElementsAreArray(opaqueWorld()));
}

TEST_F(RendererCalls, TheSkyIsThreeVerticesWithoutABuffer) {
    draw(0);
    EXPECT_THAT(drawnWith(54), ElementsAre("BindVertexArray(55)"));
    EXPECT_EQ(callsOf(fake, "DrawArrays").front(), glCall("DrawArrays", GL_TRIANGLES, 0, 3));
}

TEST_F(RendererCalls, TheWaterIsDrawnAlone) {
    draw(0);
    EXPECT_THAT(drawnWith(53), ElementsAre(glCall("BindVertexArray", WATER)));
}

TEST_F(RendererCalls, EachPassSetsItsOwnState) {
    meshes = {};
    draw(1024);
    draw(1024);
    const SkyState sky = computeSky(params.hour, params.overcast);
    EXPECT_THAT(
        callsWithoutUniforms(fake),
        ElementsAre(glCall("BindFramebuffer", GL_FRAMEBUFFER, renderer.shadowFramebuffer),
                    glCall("Viewport", 0, 0, 1024, 1024), glCall("Clear", GL_DEPTH_BUFFER_BIT),
                    glCall("Enable", GL_DEPTH_TEST), glCall("DepthFunc", GL_LESS), "DepthMask(1)",
                    glCall("Disable", GL_BLEND), glCall("Enable", GL_POLYGON_OFFSET_FILL),
                    "PolygonOffset(2, 4)", "UseProgram(52)", glCall("Disable", GL_POLYGON_OFFSET_FILL),
                    glCall("BindFramebuffer", GL_FRAMEBUFFER, 0),
                    // the picture
                    glCall("BindFramebuffer", GL_FRAMEBUFFER, 0), glCall("Viewport", 0, 0, 800, 600),
                    glCall("Disable", GL_SCISSOR_TEST),
                    glCall("ClearColor", sky.fogColour.x, sky.fogColour.y, sky.fogColour.z, 1.0f),
                    glCall("Clear", GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT),
                    // sky
                    glCall("Disable", GL_DEPTH_TEST), "DepthMask(0)", glCall("Disable", GL_BLEND),
                    "UseProgram(54)", "BindVertexArray(55)", glCall("DrawArrays", GL_TRIANGLES, 0, 3),
                    // scene
                    glCall("Enable", GL_DEPTH_TEST), glCall("DepthFunc", GL_LEQUAL), "DepthMask(1)",
                    glCall("Disable", GL_BLEND), "UseProgram(51)", glCall("ActiveTexture", GL_TEXTURE0),
                    glCall("BindTexture", GL_TEXTURE_2D, renderer.shadowTexture),
                    // water, which keeps the depth function of the scene
                    glCall("Enable", GL_BLEND), glCall("BlendFunc", GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA),
                    "DepthMask(0)", glCall("Enable", GL_DEPTH_TEST), "UseProgram(53)", "DepthMask(1)",
                    glCall("Disable", GL_BLEND)));
}

static std::vector<std::string> lookUps(uint32_t program, const std::vector<const char*>& names) {
    std::vector<std::string> calls;
    for (const char* name : names) calls.push_back(glCall("GetUniformLocation", program, name));
    return calls;
}

TEST_F(RendererCalls, AFrameLooksUp29UniformsByName) {
    draw(1024);
    std::vector<std::string> expected = lookUps(52, {"uLightVP"});
    for (const auto& more :
         {lookUps(54, {"uInvVP", "uZenith", "uHorizon", "uSunDir", "uSunCol", "uSunGlow"}),
          lookUps(51, {"uVP", "uLightVP", "uSunDir", "uSunCol", "uSkyCol", "uGroundCol", "uFogCol", "uFogDen",
                       "uNight", "uCamPos", "uUseShadow", "uShadowTexel", "uShadow"}),
          lookUps(53, {"uVP", "uTime", "uSunDir", "uSunCol", "uSkyCol", "uFogCol", "uFogDen", "uCamPos",
                       "uNight"})})
        expected.insert(expected.end(), more.begin(), more.end());
    EXPECT_EQ(expected.size(), 29u);
    EXPECT_THAT(callsOf(fake, "GetUniformLocation"), testing::UnorderedElementsAreArray(expected));
    draw(1024);
    EXPECT_EQ(callsOf(fake, "GetUniformLocation").size(), 29u);
}

TEST_F(RendererCalls, TheShadowMapIsADepthTextureWithHardwareComparison) {
    meshes = {};
    draw(2048);
    const std::vector<std::string> made(fake.calls.begin(), fake.calls.begin() + 17);
    const auto set = [](int what, int value) { return glCall("TexParameteri", GL_TEXTURE_2D, what, value); };
    EXPECT_THAT(
        made,
        ElementsAre("GenTextures(1)", glCall("BindTexture", GL_TEXTURE_2D, renderer.shadowTexture),
                    glCall("TexImage2D", GL_TEXTURE_2D, 0, GL_DEPTH_COMPONENT24, 2048, 2048, 0,
                           GL_DEPTH_COMPONENT, GL_FLOAT, static_cast<void*>(nullptr)),
                    set(GL_TEXTURE_MIN_FILTER, GL_LINEAR), set(GL_TEXTURE_MAG_FILTER, GL_LINEAR),
                    set(GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE), set(GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE),
                    set(GL_TEXTURE_COMPARE_MODE, GL_COMPARE_REF_TO_TEXTURE),
                    set(GL_TEXTURE_COMPARE_FUNC, GL_LEQUAL), "GenFramebuffers(1)",
                    glCall("BindFramebuffer", GL_FRAMEBUFFER, renderer.shadowFramebuffer),
                    glCall("FramebufferTexture2D", GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_TEXTURE_2D,
                           renderer.shadowTexture, 0),
                    glCall("DrawBuffer", GL_NONE), glCall("ReadBuffer", GL_NONE),
                    glCall("CheckFramebufferStatus", GL_FRAMEBUFFER),
                    glCall("BindFramebuffer", GL_FRAMEBUFFER, 0), glCall("BindTexture", GL_TEXTURE_2D, 0)));
    EXPECT_EQ(renderer.shadowSize, 2048);
}

TEST_F(RendererCalls, TheShadowMapStaysWhileItsSizeDoes) {
    draw(1024);
    draw(1024);
    EXPECT_THAT(callsOf(fake, "GenTextures"), IsEmpty());
    EXPECT_THAT(callsOf(fake, "DeleteTextures"), IsEmpty());
}

TEST_F(RendererCalls, AShadowSizeWithoutItsFramebufferIsNotBelieved) {
    renderer.shadowSize = 1024;
    draw(1024);
    EXPECT_NE(renderer.shadowFramebuffer, 0u);
    EXPECT_EQ(callsOf(fake, "GenTextures").size(), 1u);
}

TEST_F(RendererCalls, AnotherShadowQualityTakesEffectAtTheNextFrame) {
    draw(1024);
    const Renderer old = renderer;
    draw(2048);
    EXPECT_THAT(callsOf(fake, "DeleteFramebuffers"),
                ElementsAre(glCall("DeleteFramebuffers", 1, old.shadowFramebuffer)));
    EXPECT_THAT(callsOf(fake, "DeleteTextures"), ElementsAre(glCall("DeleteTextures", 1, old.shadowTexture)));
    EXPECT_EQ(renderer.shadowSize, 2048);
    EXPECT_THAT(fake.calls, Contains(glCall("Viewport", 0, 0, 2048, 2048)));
}

TEST_F(RendererCalls, ShadowsOffFreesTheMapAndUsesTheIdentity) {
    draw(1024);
    EXPECT_NE(renderer.lightViewProj, IDENTITY);
    draw(0);
    EXPECT_EQ(callsOf(fake, "DeleteTextures").size(), 1u);
    EXPECT_EQ(renderer.shadowTexture, 0u);
    EXPECT_EQ(renderer.shadowFramebuffer, 0u);
    EXPECT_EQ(renderer.lightViewProj, IDENTITY);
    EXPECT_THAT(fake.calls, Contains(glCall("BindTexture", GL_TEXTURE_2D, 0)));
    draw(0);
    EXPECT_THAT(callsOf(fake, "DeleteTextures"), IsEmpty());
}

TEST_F(RendererCalls, ARefusedShadowMapIsTriedAgainEachFrameAndTheFrameDrawnWithoutIt) {
    fake.framebufferStatus = GL_FRAMEBUFFER_UNSUPPORTED;
    for (int frame = 0; frame < 3; frame++) {
        const uint32_t oldTexture = renderer.shadowTexture;
        draw(1024);
        EXPECT_EQ(callsOf(fake, "GenTextures").size(), 1u);
        EXPECT_EQ(callsOf(fake, "DeleteTextures").size(), frame == 0 ? 0u : 1u);
        EXPECT_NE(renderer.shadowTexture, oldTexture);
        EXPECT_NE(renderer.shadowFramebuffer, 0u);
        EXPECT_EQ(renderer.shadowSize, 0);
        EXPECT_EQ(renderer.lightViewProj, IDENTITY);
        EXPECT_THAT(drawnWith(52), IsEmpty());
        EXPECT_EQ(drawnWith(51).size(), OPAQUE_MESHES + 1);
    }
    fake.framebufferStatus = GL_FRAMEBUFFER_COMPLETE;
    draw(1024);
    EXPECT_EQ(renderer.shadowSize, 1024);
    EXPECT_EQ(drawnWith(52).size(), OPAQUE_MESHES);
}

TEST_F(RendererCalls, TheLightLooksAtTheCamerasTargetFromFiveHundredUnitsTowardsTheSun) {
    params.hour = 9.0f;
    draw(1024);
    const Vec3 sun = computeSky(9.0f, 0).sunDir;
    const Vec3 centre = transformPoint(renderer.lightViewProj, params.cameraTarget);
    EXPECT_NEAR(centre.x, 0.0f, 1e-4f);
    EXPECT_NEAR(centre.y, 0.0f, 1e-4f);
    EXPECT_NEAR(centre.z, (500.0f - 1.0f) / 1399.0f * 2.0f - 1.0f, 1e-5f);

    // Level with the ground and across the light: 260 units reach the edge.
    const Vec3 side = normalised(cross(sun * -1.0f, {0, 1, 0}));
    EXPECT_NEAR(transformPoint(renderer.lightViewProj, params.cameraTarget + side * 260.0f).x, 1.0f, 1e-4f);
    const Vec3 up = cross(side, sun * -1.0f);
    EXPECT_NEAR(transformPoint(renderer.lightViewProj, params.cameraTarget + up * 260.0f).y, 1.0f, 1e-4f);
}

TEST_F(RendererCalls, TheShadowPassRunsAtNightToo) {
    params.hour = 0.0f;
    draw(1024);
    EXPECT_LT(computeSky(0.0f, 0).sunDir.y, 0.0f);
    EXPECT_EQ(drawnWith(52).size(), OPAQUE_MESHES);
    for (const float value : renderer.lightViewProj) EXPECT_TRUE(std::isfinite(value));
}

TEST_F(RendererCalls, TheOpaqueWorldIsDrawnTwiceWithShadowsAndOnceWithout) {
    draw(1024);
    EXPECT_EQ(callsOf(fake, "DrawArrays").size(), OPAQUE_MESHES + 1 + OPAQUE_MESHES + 1 + 1);
    draw(0);
    EXPECT_EQ(callsOf(fake, "DrawArrays").size(), 1 + OPAQUE_MESHES + 1 + 1);
}

TEST_F(RendererCalls, ASteadyFrameAllocatesNothing) {
    draw(1024);
    fake.recording = false;
    const uint64_t before = allocationCount();
    renderFrame(renderer, params, meshes);
    EXPECT_EQ(allocationCount(), before);
}
