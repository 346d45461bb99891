#include "view/world/water.h"

#include "view/gl/fake_gl.h"

#include <gtest/gtest.h>

#include <cstring>

// What the buffer was given.
static MeshBuilder uploaded;

static void keepUpload(GLenum, GLsizeiptr size, const void* data, GLenum) {
    uploaded.resize(static_cast<size_t>(size) / sizeof(Vertex));
    std::memcpy(uploaded.data(), data, static_cast<size_t>(size));
}

TEST(Water, IsOneFlatQuadOverTheWholeMap) {
    FakeGl fake;
    gl.BufferData = keepUpload;
    WorldMeshes meshes;
    buildWaterMesh(meshes);
    EXPECT_EQ(meshes.waterBuilt, 1);
    EXPECT_EQ(meshes.waterMesh.vertexCount, 6);

    ASSERT_EQ(uploaded.size(), 6u);
    const Vec3 corners[4] = {{0, 6, 0}, {768, 6, 0}, {768, 6, 768}, {0, 6, 768}};
    const int order[6] = {0, 1, 2, 0, 2, 3};
    for (int i = 0; i < 6; i++) {
        EXPECT_EQ(uploaded[i].position, corners[order[i]]) << i;
        EXPECT_EQ(uploaded[i].normal, (Vec3{0, 1, 0}));
        EXPECT_EQ(uploaded[i].colour, (Vec3{0.20f, 0.42f, 0.55f}));
        EXPECT_EQ(uploaded[i].material, 4.0f);
        EXPECT_EQ(uploaded[i].emissive, 0.0f);
    }
}

TEST(Water, IsUploadedForGood) {
    FakeGl fake;
    WorldMeshes meshes;
    buildWaterMesh(meshes);
    const std::vector<std::string> uploads = callsOf(fake, "BufferData");
    ASSERT_EQ(uploads.size(), 1u);
    EXPECT_EQ(uploads[0], glCall("BufferData", GL_ARRAY_BUFFER, 336, &meshes, GL_STATIC_DRAW));
}
