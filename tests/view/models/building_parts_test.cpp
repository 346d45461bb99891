#include "view/models/model_helpers.h"

#include <cmath>

static const Vec3 RED = {1, 0, 0};

TEST(BuildingParts, AValueOfOneStillHasAPaletteRow) {
    EXPECT_EQ(paletteRow(wallPalette, 1.0f), wallPalette[4]);
    EXPECT_EQ(paletteRow(roofPalette, 1.0f), roofPalette[2]);
    EXPECT_EQ(paletteRow(awningPalette, 1.0f), awningPalette[3]);
    EXPECT_EQ(paletteRow(wallPalette, 0.0f), wallPalette[0]);
    EXPECT_EQ(paletteRow(roofPalette, 0.0f), roofPalette[0]);
    EXPECT_EQ(paletteRow(awningPalette, 0.0f), awningPalette[0]);
}

TEST(BuildingParts, EveryPaletteRowHasItsShareOfTheSeeds) {
    for (int row = 0; row < 5; row++)
        EXPECT_EQ(paletteRow(wallPalette, (static_cast<float>(row) + 0.5f) / 5.0f), wallPalette[row]) << row;
    EXPECT_EQ(paletteRow(wallPalette, 0.2f), wallPalette[0]) << "0.9998 is still row 0";
    EXPECT_EQ(paletteRow(wallPalette, 0.200042f), wallPalette[1]) << "1.00001 is row 1";
}

TEST(BuildingParts, MoveVerticesLeavesWhatWasThereBefore) {
    MeshBuilder builder;
    addPlainBox(builder, {0, 0, 0}, {1, 1, 1}, RED);
    const MeshBuilder before = builder;
    addPlainBox(builder, {0, 0, 0}, {1, 1, 1}, RED);
    moveVertices(builder, 30, {10, 20, 30});
    for (size_t i = 0; i < 30; i++) EXPECT_EQ(builder[i].position, before[i].position);
    EXPECT_TRUE(hasBox(builder, {10, 20, 30}, {11, 21, 31}, RED));
}

TEST(BuildingParts, ARooftopUnitIsABoxWithADarkGrilleTowardsPlusZ) {
    MeshBuilder builder;
    addRooftopUnit(builder, {1, 2, 3}, {3, 7, 4});
    EXPECT_EQ(builder.size(), 60u);
    EXPECT_TRUE(hasBox(builder, {1, 2, 3}, {3, 7, 4}, {0.74f, 0.75f, 0.77f}));
    const Bounds grille = boundsOf(verticesOfColour(builder, {0.16f, 0.17f, 0.19f}));
    EXPECT_NEAR(grille.max.x - grille.min.x, 0.64f * 2.0f, 1e-5f);
    EXPECT_NEAR(grille.max.x + grille.min.x, 4.0f, 1e-5f) << "in the middle";
    EXPECT_NEAR(grille.min.y, 2.0f + 0.2f * 5.0f, 1e-5f);
    EXPECT_NEAR(grille.max.y, 2.0f + 0.8f * 5.0f, 1e-5f);
    EXPECT_EQ(grille.min.z, 4.0f);
    EXPECT_GT(grille.max.z, 4.0f);
}

TEST(BuildingParts, AParapetIsFourThinBoxesThatDoNotOverlap) {
    MeshBuilder builder;
    addParapet(builder, 3.0f, 2.0f, 10.0f, 0.9f, RED);
    ASSERT_EQ(builder.size(), 120u);
    const Bounds bounds = boundsOf(builder);
    EXPECT_EQ(bounds.min, (Vec3{-3, 10, -2}));
    EXPECT_EQ(bounds.max, (Vec3{3, 10.9f, 2}));
    EXPECT_TRUE(hasBox(builder, {-3, 10, 1.85f}, {3, 10.9f, 2}, RED));
    EXPECT_TRUE(hasBox(builder, {2.85f, 10, -1.85f}, {3, 10.9f, 1.85f}, RED));
}

TEST(BuildingParts, FencePostsStandAtMostNineTenthsApart) {
    for (const float width : {0.5f, 0.9f, 1.0f, 4.48f, 7.8f}) {
        MeshBuilder builder;
        addFence(builder, {0, 5, 2}, {width, 5, 2}, 1.0f, RED);
        const size_t postCount = builder.size() / 30 - 1;
        ASSERT_GE(postCount, 2u);
        const float gap = width / static_cast<float>(postCount - 1);
        EXPECT_LE(gap, 0.9f) << width;
        EXPECT_GT(width / static_cast<float>(postCount - 2), 0.9f) << "no more posts than needed, " << width;
        for (size_t i = 0; i < postCount; i++) {
            const float x = gap * static_cast<float>(i);
            EXPECT_TRUE(hasBox(builder, {x - 0.05f, 5, 1.95f}, {x + 0.05f, 5.94f, 2.05f}, RED));
        }
        EXPECT_TRUE(hasBox(builder, {-0.05f, 5.94f, 1.95f}, {width + 0.05f, 6, 2.05f}, RED)) << "the rail";
    }
}

TEST(BuildingParts, AFenceCanRunAlongZ) {
    MeshBuilder builder;
    addFence(builder, {1, 0, -1.5f}, {1, 0, 1.5f}, 2.0f, RED);
    EXPECT_EQ(builder.size(), 30u * 6u);
    EXPECT_TRUE(hasBox(builder, {0.95f, 1.94f, -1.55f}, {1.05f, 2, 1.55f}, RED));
}

TEST(BuildingParts, TheLotFenceRunsAlongAllFourSidesInsideTheLot) {
    MeshBuilder builder;
    addLotFence(builder, RED);
    const Bounds bounds = boundsOf(builder);
    expectNear(bounds.min, {-3.95f, 0, -3.95f});
    expectNear(bounds.max, {3.95f, 1.6f, 3.95f});
    for (const float side : {-3.9f, 3.9f}) {
        EXPECT_TRUE(hasBox(builder, {side - 0.05f, 1.54f, -3.95f}, {side + 0.05f, 1.6f, 3.95f}, RED));
        EXPECT_TRUE(hasBox(builder, {-3.95f, 1.54f, side - 0.05f}, {3.95f, 1.6f, side + 0.05f}, RED));
    }
}

TEST(BuildingParts, ABalconyIsASlabWithAFenceOnItsOuterEdge) {
    MeshBuilder builder;
    addBalcony(builder, 1.5f, 3.0f, 0.8f, 6.0f, RED);
    EXPECT_TRUE(hasBox(builder, {-1.5f, 6, 3}, {1.5f, 6.2f, 3.8f}, RED));
    MeshBuilder fence;
    addFence(fence, {-1.45f, 6.2f, 3.75f}, {1.45f, 6.2f, 3.75f}, 0.8f, RED);
    EXPECT_TRUE(contains(builder, fence));
    EXPECT_NEAR(boundsOf(builder).max.z, 3.8f, 1e-5f) << "no post stands over the edge";
}

TEST(BuildingParts, ARoofTankIsATenSidedCylinderUnderAFlatCone) {
    MeshBuilder builder;
    addRoofTank(builder, {1, 10, 2}, 0.8f, 1.6f);
    EXPECT_EQ(builder.size(), 10u * 9u + 10u * 6u);
    EXPECT_TRUE(hasFrustum(builder, {1, 10, 2}, 0.8f, 1.6f, 0.8f, 10, builder[0].colour));
    const Vertex& lid = builder.back();
    EXPECT_EQ(lid.material, MATERIAL_ROOF);
    EXPECT_NEAR(boundsOf(builder).max.y, 10.0f + 1.6f + 0.28f, 1e-4f) << "flat";
}

TEST(BuildingParts, MullionsStandEvenlyOnAllFourSides) {
    MeshBuilder builder;
    addWallMullions(builder, 3.2f, 2.0f, 1.0f, 9.0f, 4, RED);
    EXPECT_EQ(builder.size(), 16u * 30u);
    for (int i = 0; i < 4; i++) {
        const float x = -3.2f + 6.4f * (static_cast<float>(i) + 0.5f) / 4.0f;
        const float z = -2.0f + 4.0f * (static_cast<float>(i) + 0.5f) / 4.0f;
        EXPECT_TRUE(hasBox(builder, {x - 0.08f, 1, 2}, {x + 0.08f, 9, 2.14f}, RED));
        EXPECT_TRUE(hasBox(builder, {x - 0.08f, 1, -2.14f}, {x + 0.08f, 9, -2}, RED));
        EXPECT_TRUE(hasBox(builder, {3.2f, 1, z - 0.08f}, {3.34f, 9, z + 0.08f}, RED));
        EXPECT_TRUE(hasBox(builder, {-3.34f, 1, z - 0.08f}, {-3.2f, 9, z + 0.08f}, RED));
    }
}

TEST(BuildingParts, AFlagIsRedOverWhiteAtTheTopOfItsPole) {
    MeshBuilder builder;
    addFlag(builder, {1, 2, 3}, 12.0f);
    const Bounds red = boundsOf(verticesOfColour(builder, {0.85f, 0.20f, 0.20f}));
    const Bounds white = boundsOf(verticesOfColour(builder, {0.95f, 0.95f, 0.95f}));
    EXPECT_EQ(boundsOf(builder).max.y, 12.0f);
    EXPECT_LT(red.max.y, 12.0f);
    EXPECT_EQ(red.min.y, white.max.y);
    EXPECT_EQ(red.min.x, 1.0f);
    EXPECT_EQ(verticesOfColour(builder, {0.95f, 0.95f, 0.95f})[0].normal, (Vec3{0, 0, 1}));
}

TEST(BuildingParts, AWarningLampIsARedCubeOfFullGlow) {
    MeshBuilder builder;
    addWarningLamp(builder, {1, 2, 3});
    EXPECT_TRUE(hasBox(builder, {0.86f, 2, 2.86f}, {1.14f, 2.28f, 3.14f}, {1.0f, 0.14f, 0.12f},
                       MATERIAL_PLAIN, 1.0f));
}
