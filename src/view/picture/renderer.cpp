#include "view/picture/renderer.h"

#include "view/gl/gl.h"
#include "view/gl/shader_program.h"
#include "view/gl/shaders.h"
#include "view/picture/sky.h"

#include <cassert>

// The square that casts and receives shadows, around the point that the camera looks at; over the whole map
// the same texels would blur every edge.
constexpr float SHADOW_HALF_SIZE = 260.0f;
constexpr float SHADOW_LIGHT_DISTANCE = 500.0f;
constexpr float SHADOW_NEAR = 1.0f;
constexpr float SHADOW_FAR = 1400.0f;

bool initRenderer(Renderer& renderer, std::string* log) {
    bool linked = linkProgram(renderer.worldProgram, WORLD_VERTEX_TEXT, WORLD_FRAGMENT_TEXT, log);
    linked &= linkProgram(renderer.shadowProgram, SHADOW_VERTEX_TEXT, SHADOW_FRAGMENT_TEXT, log);
    linked &= linkProgram(renderer.waterProgram, WATER_VERTEX_TEXT, WATER_FRAGMENT_TEXT, log);
    linked &= linkProgram(renderer.skyProgram, SKY_VERTEX_TEXT, SKY_FRAGMENT_TEXT, log);
    gl.GenVertexArrays(1, &renderer.skyVertexArray);
    // For the whole run: the mesh builders leave out the faces that nobody sees, so that the order of a
    // face's corners means nothing.
    gl.Disable(GL_CULL_FACE);
    return linked;
}

static void deleteShadowTarget(Renderer& renderer) {
    if (renderer.shadowFramebuffer != 0) gl.DeleteFramebuffers(1, &renderer.shadowFramebuffer);
    if (renderer.shadowTexture != 0) gl.DeleteTextures(1, &renderer.shadowTexture);
    renderer.shadowFramebuffer = 0;
    renderer.shadowTexture = 0;
    renderer.shadowSize = 0;
}

void destroyRenderer(Renderer& renderer) {
    deleteShadowTarget(renderer);
    deleteProgram(renderer.worldProgram);
    deleteProgram(renderer.shadowProgram);
    deleteProgram(renderer.waterProgram);
    deleteProgram(renderer.skyProgram);
    if (renderer.skyVertexArray != 0) gl.DeleteVertexArrays(1, &renderer.skyVertexArray);
    renderer.skyVertexArray = 0;
}

static void createShadowTexture(Renderer& renderer, int size) {
    gl.GenTextures(1, &renderer.shadowTexture);
    gl.BindTexture(GL_TEXTURE_2D, renderer.shadowTexture);
    gl.TexImage2D(GL_TEXTURE_2D, 0, GL_DEPTH_COMPONENT24, size, size, 0, GL_DEPTH_COMPONENT, GL_FLOAT,
                  nullptr);
    gl.TexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    gl.TexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    gl.TexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    gl.TexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    // Each sample is compared before it is filtered, so that the filter gives a share of lit samples.
    gl.TexParameteri(GL_TEXTURE_2D, GL_TEXTURE_COMPARE_MODE, GL_COMPARE_REF_TO_TEXTURE);
    gl.TexParameteri(GL_TEXTURE_2D, GL_TEXTURE_COMPARE_FUNC, GL_LEQUAL);
}

// Brings the shadow map to the wanted size, or away. A driver that refuses it leaves the size at 0, so that
// the next frame tries again.
static void ensureShadowTarget(Renderer& renderer, int wantedSize) {
    if (wantedSize == renderer.shadowSize && (wantedSize == 0 || renderer.shadowFramebuffer != 0)) return;
    deleteShadowTarget(renderer);
    if (wantedSize <= 0) return;

    createShadowTexture(renderer, wantedSize);
    gl.GenFramebuffers(1, &renderer.shadowFramebuffer);
    gl.BindFramebuffer(GL_FRAMEBUFFER, renderer.shadowFramebuffer);
    gl.FramebufferTexture2D(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_TEXTURE_2D, renderer.shadowTexture, 0);
    gl.DrawBuffer(GL_NONE);
    gl.ReadBuffer(GL_NONE);
    const bool complete = gl.CheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;
    gl.BindFramebuffer(GL_FRAMEBUFFER, 0);
    gl.BindTexture(GL_TEXTURE_2D, 0);
    renderer.shadowSize = complete ? wantedSize : 0;
}

// Looked up by name: 29 a frame are nothing beside the draws, and so no list must be kept in step.
static void setUniform(uint32_t program, const char* name, int value) {
    gl.Uniform1i(gl.GetUniformLocation(program, name), value);
}

static void setUniform(uint32_t program, const char* name, float value) {
    gl.Uniform1f(gl.GetUniformLocation(program, name), value);
}

static void setUniform(uint32_t program, const char* name, const Vec3& value) {
    gl.Uniform3f(gl.GetUniformLocation(program, name), value.x, value.y, value.z);
}

static void setUniform(uint32_t program, const char* name, const Mat4& value) {
    gl.UniformMatrix4fv(gl.GetUniformLocation(program, name), 1, GL_FALSE, value.data());
}

// What casts shadows: not the water, which is seen through, nor the highlight, which is no thing.
static void drawOpaqueWorld(const WorldMeshes& meshes) {
    for (const Mesh& chunk : meshes.terrainChunks) drawMesh(chunk);
    drawMesh(meshes.roadMesh);
    for (const Mesh& block : meshes.buildingBlocks) drawMesh(block);
    drawMesh(meshes.treeMesh);
    drawMesh(meshes.streetLifeMesh);
}

// The sun's height is not asked: at night the light comes from below, where it reaches no upward face.
static Mat4 lightViewProjection(const Vec3& target, const Vec3& sunDir) {
    const Mat4 view = lookAt(target + sunDir * SHADOW_LIGHT_DISTANCE, target, {0.0f, 1.0f, 0.0f});
    return multiply(orthographic(SHADOW_HALF_SIZE, SHADOW_HALF_SIZE, SHADOW_NEAR, SHADOW_FAR), view);
}

static void drawShadowPass(const Renderer& renderer, const WorldMeshes& meshes) {
    assert(renderer.shadowFramebuffer != 0 && renderer.shadowSize > 0);
    gl.BindFramebuffer(GL_FRAMEBUFFER, renderer.shadowFramebuffer);
    gl.Viewport(0, 0, renderer.shadowSize, renderer.shadowSize);
    gl.Clear(GL_DEPTH_BUFFER_BIT);
    gl.Enable(GL_DEPTH_TEST);
    gl.DepthFunc(GL_LESS);
    gl.DepthMask(GL_TRUE);
    gl.Disable(GL_BLEND);
    gl.Enable(GL_POLYGON_OFFSET_FILL);
    gl.PolygonOffset(2.0f, 4.0f);

    gl.UseProgram(renderer.shadowProgram);
    setUniform(renderer.shadowProgram, "uLightVP", renderer.lightViewProj);
    drawOpaqueWorld(meshes);

    gl.Disable(GL_POLYGON_OFFSET_FILL);
    gl.BindFramebuffer(GL_FRAMEBUFFER, 0);
}

static void clearPicture(const FrameParams& params, const SkyState& sky) {
    gl.BindFramebuffer(GL_FRAMEBUFFER, 0);
    gl.Viewport(0, 0, params.width, params.height);
    gl.Disable(GL_SCISSOR_TEST); // the user interface may have left it on
    gl.ClearColor(sky.fogColour.x, sky.fogColour.y, sky.fogColour.z, 1.0f);
    gl.Clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
}

static void drawSkyPass(const Renderer& renderer, const FrameParams& params, const SkyState& sky) {
    gl.Disable(GL_DEPTH_TEST);
    gl.DepthMask(GL_FALSE);
    gl.Disable(GL_BLEND);

    const uint32_t program = renderer.skyProgram;
    gl.UseProgram(program);
    setUniform(program, "uInvVP", inverse(params.viewProj));
    setUniform(program, "uZenith", sky.zenithColour);
    setUniform(program, "uHorizon", sky.fogColour);
    setUniform(program, "uSunDir", sky.sunDir);
    setUniform(program, "uSunCol", sky.sunColour);
    setUniform(program, "uSunGlow", sky.sunGlow);
    gl.BindVertexArray(renderer.skyVertexArray);
    gl.DrawArrays(GL_TRIANGLES, 0, 3);
}

static void setLightUniforms(uint32_t program, const FrameParams& params, const SkyState& sky) {
    setUniform(program, "uVP", params.viewProj);
    setUniform(program, "uSunDir", sky.sunDir);
    setUniform(program, "uSunCol", sky.sunColour);
    setUniform(program, "uSkyCol", sky.zenithColour);
    setUniform(program, "uFogCol", sky.fogColour);
    setUniform(program, "uFogDen", sky.fogDensity);
    setUniform(program, "uNight", sky.night);
    setUniform(program, "uCamPos", params.cameraPos);
}

static void drawScenePass(const Renderer& renderer, const FrameParams& params, const SkyState& sky,
                          const WorldMeshes& meshes) {
    gl.Enable(GL_DEPTH_TEST);
    gl.DepthFunc(GL_LEQUAL);
    gl.DepthMask(GL_TRUE);
    gl.Disable(GL_BLEND);

    const bool useShadow = renderer.shadowSize > 0;
    const uint32_t program = renderer.worldProgram;
    gl.UseProgram(program);
    setLightUniforms(program, params, sky);
    setUniform(program, "uLightVP", renderer.lightViewProj);
    setUniform(program, "uGroundCol", sky.groundColour);
    setUniform(program, "uUseShadow", useShadow ? 1 : 0);
    setUniform(program, "uShadowTexel", useShadow ? 1.0f / static_cast<float>(renderer.shadowSize) : 0.0f);
    setUniform(program, "uShadow", 0); // texture unit
    gl.ActiveTexture(GL_TEXTURE0);
    gl.BindTexture(GL_TEXTURE_2D, renderer.shadowTexture);

    drawOpaqueWorld(meshes);
    drawMesh(meshes.hoverMesh);
}

// After the scene, since the bed shows through, and with the scene's depth function.
static void drawWaterPass(const Renderer& renderer, const FrameParams& params, const SkyState& sky,
                          const WorldMeshes& meshes) {
    gl.Enable(GL_BLEND);
    gl.BlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    gl.DepthMask(GL_FALSE);
    gl.Enable(GL_DEPTH_TEST);

    gl.UseProgram(renderer.waterProgram);
    setLightUniforms(renderer.waterProgram, params, sky);
    setUniform(renderer.waterProgram, "uTime", params.time);
    drawMesh(meshes.waterMesh);

    gl.DepthMask(GL_TRUE);
    gl.Disable(GL_BLEND);
}

void renderFrame(Renderer& renderer, const FrameParams& params, const WorldMeshes& meshes) {
    assert(params.width > 0 && params.height > 0);
    const SkyState sky = computeSky(params.hour, params.overcast);
    ensureShadowTarget(renderer, params.shadowSize);
    if (renderer.shadowSize > 0) {
        renderer.lightViewProj = lightViewProjection(params.cameraTarget, sky.sunDir);
        drawShadowPass(renderer, meshes);
    } else {
        renderer.lightViewProj = IDENTITY;
    }
    clearPicture(params, sky);
    drawSkyPass(renderer, params, sky);
    drawScenePass(renderer, params, sky, meshes);
    drawWaterPass(renderer, params, sky, meshes);
}
