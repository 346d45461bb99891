#include "view/world/hover.h"

#include "sim/map_generation.h"
#include "view/gl/fake_gl.h"

#include <gtest/gtest.h>

static const Vec3 WHITE = {1.0f, 1.0f, 1.0f};
static const Vec3 RED = {1.0f, 0.35f, 0.3f};

struct Hover : testing::Test {
    FakeGl fake;
    WorldMeshes meshes;
    City city;

    Hover() { generateMap(city, 0); }

    // Uploads and deletions of this update.
    std::vector<std::string> show(int x, int y, const Vec3& colour = WHITE, bool visible = true) {
        fake.calls.clear();
        updateHover(meshes, city, x, y, visible, colour);
        std::vector<std::string> found = callsOf(fake, "BufferData");
        for (const std::string& call : callsOf(fake, "DeleteBuffers")) found.push_back(call);
        return found;
    }

    size_t uploads(int x, int y, const Vec3& colour = WHITE) {
        show(x, y, colour);
        return callsOf(fake, "BufferData").size();
    }
};

TEST_F(Hover, TheHighlightIsAGlowingQuadOverTheCell) {
    MeshBuilder builder;
    buildHoverMesh(builder, city, 30, 41, RED);
    ASSERT_EQ(builder.size(), 6u);
    const int stepX[6] = {0, 1, 1, 0, 1, 0};
    const int stepY[6] = {0, 0, 1, 0, 1, 1};
    for (int i = 0; i < 6; i++) {
        const float height = city.heights[cornerIndex(30 + stepX[i], 41 + stepY[i])];
        EXPECT_EQ(builder[i].position, (Vec3{8.0f * static_cast<float>(30 + stepX[i]), height + 0.35f,
                                             8.0f * static_cast<float>(41 + stepY[i])}));
        EXPECT_EQ(builder[i].normal, (Vec3{0.0f, 1.0f, 0.0f}));
        EXPECT_EQ(builder[i].colour, (Vec3{1.0f * 0.55f, 0.35f * 0.55f, 0.3f * 0.55f}));
        EXPECT_EQ(builder[i].emissive, 1.0f);
        EXPECT_EQ(builder[i].material, 0.0f);
    }
}

TEST_F(Hover, ANewCellIsUploadedAsAStaticMeshOnce) {
    EXPECT_EQ(meshes.hoverX, -1);
    EXPECT_EQ(show(3, 4),
              std::vector<std::string>{glCall("BufferData", GL_ARRAY_BUFFER, 6 * 56, &fake, GL_STATIC_DRAW)});
    EXPECT_EQ(meshes.hoverX, 3);
    EXPECT_EQ(meshes.hoverY, 4);
    EXPECT_EQ(meshes.hoverMesh.vertexCount, 6);
    show(3, 4);
    EXPECT_TRUE(fake.calls.empty());
    EXPECT_EQ(uploads(3, 5), 1u);
    EXPECT_EQ(uploads(4, 5), 1u);
}

TEST_F(Hover, AChangeOfColourAloneUploadsTheQuadAgain) {
    show(3, 4, WHITE);
    EXPECT_EQ(uploads(3, 4, RED), 1u);
    EXPECT_EQ(meshes.hoverColour, RED);
    EXPECT_EQ(uploads(3, 4, RED), 0u);
}

TEST_F(Hover, AHiddenHighlightIsDestroyedOnce) {
    show(3, 4);
    const uint32_t buffer = meshes.hoverMesh.vertexBuffer;
    EXPECT_EQ(show(3, 4, WHITE, false), std::vector<std::string>{glCall("DeleteBuffers", 1, &buffer)});
    EXPECT_EQ(meshes.hoverX, -1);
    EXPECT_EQ(meshes.hoverY, -1);
    EXPECT_EQ(meshes.hoverMesh.vertexArray, 0u);
    EXPECT_EQ(meshes.hoverMesh.vertexCount, 0);
    show(3, 4, WHITE, false);
    EXPECT_TRUE(fake.calls.empty());
    EXPECT_EQ(uploads(3, 4), 1u);
}

TEST_F(Hover, AtStartThereIsNothingToHide) {
    show(3, 4, WHITE, false);
    EXPECT_TRUE(fake.calls.empty());
}

TEST_F(Hover, APositionOffTheMapHidesTheHighlight) {
    for (const auto& [x, y] : {std::pair(-1, 5), {5, -1}, {96, 5}, {5, 96}, {1 << 30, -(1 << 30)}}) {
        show(3, 4);
        EXPECT_EQ(meshes.hoverMesh.vertexCount, 6);
        show(x, y);
        EXPECT_EQ(meshes.hoverX, -1);
        EXPECT_EQ(meshes.hoverMesh.vertexArray, 0u);
    }
}

TEST_F(Hover, CellZeroIsACellLikeAnyOther) {
    EXPECT_EQ(uploads(0, 0), 1u);
    show(0, 0, WHITE, false);
    EXPECT_EQ(meshes.hoverMesh.vertexArray, 0u);
    EXPECT_EQ(uploads(95, 95), 1u);
}
