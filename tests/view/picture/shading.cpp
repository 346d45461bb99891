#include "view/picture/shading.h"

#include <algorithm>

void ShadingTest::SetUp() {
    GlTest::SetUp();
    if (HasFatalFailure()) return;
    std::string log;
    ASSERT_TRUE(initRenderer(renderer, &log)) << log;
}

void ShadingTest::TearDown() {
    for (Mesh& chunk : meshes.terrainChunks) destroyMesh(chunk);
    for (Mesh& block : meshes.buildingBlocks) destroyMesh(block);
    for (Mesh* mesh :
         {&meshes.roadMesh, &meshes.treeMesh, &meshes.waterMesh, &meshes.hoverMesh, &meshes.streetLifeMesh})
        destroyMesh(*mesh);
    destroyRenderer(renderer);
}

Picture ShadingTest::draw(const FrameParams& params) {
    renderFrame(renderer, params, meshes);
    return readPicture();
}

Picture ShadingTest::drawn(const MeshBuilder& builder, const FrameParams& params) {
    uploadMesh(meshes.buildingBlocks[0], builder, false);
    return draw(params);
}

Vec3 ShadingTest::drawnAt(const MeshBuilder& builder, const FrameParams& params, const Vec3& point) {
    return colourAt(drawn(builder, params), params, point);
}

Vec3 litColour(const Vec3& base, const Vec3& normal, const FrameParams& params, float sunShare) {
    const SkyState sky = computeSky(params.hour, params.overcast);
    const float sunlight = std::max(dot(normal, sky.sunDir), 0.0f) * sunShare;
    const Vec3 ambient = mix(sky.groundColour, sky.zenithColour, normal.y * 0.5f + 0.5f);
    return times(base, ambient + sky.sunColour * sunlight);
}

Vec3 fogged(const Vec3& colour, const Vec3& point, const FrameParams& params) {
    const SkyState sky = computeSky(params.hour, params.overcast);
    const float haze = length(point - params.cameraPos) * sky.fogDensity;
    return mix(colour, sky.fogColour, 1.0f - std::exp(-haze * haze));
}

Vec3 times(const Vec3& a, const Vec3& b) { return {a.x * b.x, a.y * b.y, a.z * b.z}; }
