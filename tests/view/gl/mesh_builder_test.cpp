#include "view/gl/mesh_builder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

static const Vec3 MIN = {1, 2, 3};
static const Vec3 MAX = {5, 10, 9};
static const Vec3 RED = {1, 0, 0};
static const Vec3 BLUE = {0, 0, 1};

static void expectUnitNormals(const MeshBuilder& builder) {
    for (const Vertex& vertex : builder) EXPECT_NEAR(length(vertex.normal), 1.0f, 1e-6f);
}

TEST(MeshBuilder, AVertexIsFourteenFloatsInTheOrderOfTheShaderInputs) {
    MeshBuilder builder;
    addVertex(builder, {1, 2, 3}, {0, 1, 0}, {0.1f, 0.2f, 0.3f}, 0.7f, MATERIAL_GLASS, 0.4f, 0.6f);
    ASSERT_EQ(builder.size(), 1u);
    float data[14];
    std::memcpy(data, builder.data(), sizeof data);
    const float expected[14] = {1, 2, 3, 0, 1, 0, 0.1f, 0.2f, 0.3f, 5, 0.7f, 0, 0.4f, 0.6f};
    for (int i = 0; i < 14; i++) EXPECT_EQ(data[i], expected[i]) << i;
}

TEST(MeshBuilder, MaterialNumbersAreThoseOfTheShader) {
    EXPECT_EQ(MATERIAL_TERRAIN, 0);
    EXPECT_EQ(MATERIAL_WALL, 1);
    EXPECT_EQ(MATERIAL_ROOF, 2);
    EXPECT_EQ(MATERIAL_ROAD, 3);
    EXPECT_EQ(MATERIAL_WATER_EDGE, 4);
    EXPECT_EQ(MATERIAL_GLASS, 5);
    EXPECT_EQ(MATERIAL_SOLAR_PANEL, 6);
    EXPECT_EQ(MATERIAL_PLAIN, 7);
}

TEST(MeshBuilder, AQuadIsTwoTrianglesThatShareTheDiagonalFromItsFirstCorner) {
    const Vec3 corners[4] = {{0, 0, 0}, {1, 0, 0}, {1, 0, 1}, {0, 0, 1}};
    const float u[4] = {0, 1, 1, 0};
    const float v[4] = {0, 0, 1, 1};
    MeshBuilder builder;
    addQuad(builder, corners[0], corners[1], corners[2], corners[3], {0, 1, 0}, RED, 0.5f, MATERIAL_ROOF);
    ASSERT_EQ(builder.size(), 6u);
    const int order[6] = {0, 1, 2, 0, 2, 3};
    for (int i = 0; i < 6; i++) {
        EXPECT_EQ(builder[i].position, corners[order[i]]) << i;
        EXPECT_EQ(builder[i].u, u[order[i]]) << i;
        EXPECT_EQ(builder[i].v, v[order[i]]) << i;
        EXPECT_EQ(builder[i].normal, (Vec3{0, 1, 0}));
        EXPECT_EQ(builder[i].colour, RED);
        EXPECT_EQ(builder[i].emissive, 0.5f);
        EXPECT_EQ(builder[i].material, 2.0f);
    }
}

TEST(MeshBuilder, ATriangleUsesTheFirstThreeCornersOfTheTextureSquare) {
    MeshBuilder builder;
    addTriangle(builder, {0, 0, 0}, {1, 0, 0}, {1, 0, 1}, {0, 1, 0}, RED, 0.25f, MATERIAL_WALL);
    ASSERT_EQ(builder.size(), 3u);
    EXPECT_EQ(builder[0].u + builder[0].v, 0.0f);
    EXPECT_EQ(builder[1].u, 1.0f);
    EXPECT_EQ(builder[1].v, 0.0f);
    EXPECT_EQ(builder[2].u, 1.0f);
    EXPECT_EQ(builder[2].v, 1.0f);
}

TEST(MeshBuilder, ABoxHasFiveFacesAndNoFloor) {
    MeshBuilder builder;
    addBox(builder, MIN, MAX, RED, MATERIAL_PLAIN, 0.3f);
    ASSERT_EQ(builder.size(), 30u);
    const Vec3 normals[5] = {{1, 0, 0}, {-1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {0, 0, -1}};
    const Vec3 centre = (MIN + MAX) * 0.5f;
    for (int face = 0; face < 5; face++)
        for (int i = 0; i < 6; i++) {
            const Vertex& vertex = builder[face * 6 + i];
            EXPECT_EQ(vertex.normal, normals[face]);
            // Every corner of the face lies on its side of the box.
            const Vec3 reach = (MAX - MIN) * 0.5f;
            EXPECT_FLOAT_EQ(dot(vertex.position - centre, normals[face]),
                            std::abs(dot(reach, normals[face])));
            EXPECT_EQ(vertex.emissive, 0.3f);
            EXPECT_EQ(vertex.material, 7.0f);
        }
}

TEST(MeshBuilder, EveryFaceOfABoxCoversItsWholeSide) {
    MeshBuilder builder;
    addBox(builder, {0, 0, 0}, {2, 3, 5}, RED, MATERIAL_WALL, 0.0f);
    const float areas[5] = {15, 15, 10, 6, 6};
    for (int face = 0; face < 5; face++) {
        float area = 0.0f;
        for (int triangle = 0; triangle < 2; triangle++) {
            const Vertex* v = &builder[face * 6 + triangle * 3];
            area += length(cross(v[1].position - v[0].position, v[2].position - v[0].position)) / 2.0f;
        }
        EXPECT_FLOAT_EQ(area, areas[face]) << face;
    }
}

TEST(MeshBuilder, AFlatQuadLooksUpAndDoesNotGlow) {
    MeshBuilder builder;
    addFlatQuad(builder, 1, 4, 2, 8, 6.5f, BLUE, MATERIAL_SOLAR_PANEL);
    ASSERT_EQ(builder.size(), 6u);
    EXPECT_EQ(builder[0].position, (Vec3{1, 6.5f, 2}));
    EXPECT_EQ(builder[1].position, (Vec3{4, 6.5f, 2}));
    EXPECT_EQ(builder[2].position, (Vec3{4, 6.5f, 8}));
    EXPECT_EQ(builder[5].position, (Vec3{1, 6.5f, 8}));
    for (const Vertex& vertex : builder) {
        EXPECT_EQ(vertex.normal, (Vec3{0, 1, 0}));
        EXPECT_EQ(vertex.emissive, 0.0f);
        EXPECT_EQ(vertex.material, 6.0f);
    }
}

TEST(MeshBuilder, AGabledBoxIsABoxWithTwoRoofSidesAndTwoGableEnds) {
    MeshBuilder builder;
    addGabledBox(builder, MIN, MAX, 4.0f, RED, BLUE, 0.6f);
    ASSERT_EQ(builder.size(), 30u + 12u + 6u);
    MeshBuilder box;
    addBox(box, MIN, MAX, RED, MATERIAL_WALL, 0.6f);
    EXPECT_EQ(std::memcmp(builder.data(), box.data(), 30 * sizeof(Vertex)), 0);

    const float slope = 4.0f / 3.0f; // a 3-4-5 triangle
    for (int i = 30; i < 42; i++) {
        const Vertex& vertex = builder[i];
        const float side = i < 36 ? -1.0f : 1.0f;
        EXPECT_NEAR(vertex.normal.y, 0.6f, 1e-6f);
        EXPECT_NEAR(vertex.normal.z, side * 0.8f, 1e-6f);
        EXPECT_EQ(vertex.colour, BLUE);
        EXPECT_EQ(vertex.material, 2.0f);
        EXPECT_EQ(vertex.emissive, 0.0f);
        EXPECT_NEAR(vertex.position.y, 14.0f - slope * std::abs(vertex.position.z - 6.0f), 1e-5f);
    }
    for (int i = 42; i < 48; i++) {
        const bool low = i < 45;
        EXPECT_EQ(builder[i].normal, (Vec3{low ? -1.0f : 1.0f, 0, 0}));
        EXPECT_EQ(builder[i].position.x, low ? MIN.x : MAX.x);
        EXPECT_EQ(builder[i].colour, RED);
        EXPECT_EQ(builder[i].material, 1.0f);
        EXPECT_EQ(builder[i].emissive, 0.6f);
    }
    expectUnitNormals(builder);
}

TEST(MeshBuilder, AGabledBoxWithoutDepthStillHasUnitNormals) {
    MeshBuilder builder;
    addGabledBox(builder, {0, 0, 2}, {4, 3, 2}, 2.0f, RED, BLUE, 0.0f);
    expectUnitNormals(builder);
}

TEST(MeshBuilder, AFrustumSideIsFlatAndItsCapIsAFan) {
    MeshBuilder builder;
    addFrustum(builder, {10, 1, 20}, 3.0f, 4.0f, 1.5f, 6, RED, MATERIAL_PLAIN, 0.2f);
    ASSERT_EQ(builder.size(), 6u * 9u);
    expectUnitNormals(builder);
    for (int i = 0; i < 6; i++) {
        const Vertex* side = &builder[i * 9];
        const float middle = 6.2831855f * (static_cast<float>(i) + 0.5f) / 6.0f;
        const float reach = std::sqrt(16.0f + 2.25f);
        for (int k = 0; k < 6; k++) {
            EXPECT_EQ(side[k].normal, side[0].normal);
            const float radius = std::hypot(side[k].position.x - 10.0f, side[k].position.z - 20.0f);
            EXPECT_NEAR(radius, side[k].position.y == 1.0f ? 3.0f : 1.5f, 1e-5f);
            EXPECT_TRUE(side[k].position.y == 1.0f || side[k].position.y == 5.0f);
            EXPECT_EQ(side[k].emissive, 0.2f);
        }
        EXPECT_NEAR(side[0].normal.x, 4.0f * std::cos(middle) / reach, 1e-6f);
        EXPECT_NEAR(side[0].normal.y, 1.5f / reach, 1e-6f);
        EXPECT_NEAR(side[0].normal.z, 4.0f * std::sin(middle) / reach, 1e-6f);
        EXPECT_EQ(side[6].position, (Vec3{10, 5, 20}));
        EXPECT_EQ(side[6].normal, (Vec3{0, 1, 0}));
        EXPECT_EQ(side[6].emissive, 0.2f);
    }
}

TEST(MeshBuilder, AFrustumClosesAroundItsAxis) {
    MeshBuilder builder;
    addFrustum(builder, {0, 0, 0}, 2.0f, 1.0f, 2.0f, 5, RED, MATERIAL_PLAIN, 0.0f);
    for (int i = 0; i < 5; i++) {
        const Vec3 end = builder[i * 9 + 1].position;
        const Vec3 nextStart = builder[(i + 1) % 5 * 9].position;
        EXPECT_LT(length(end - nextStart), 1e-5f) << i;
    }
}

TEST(MeshBuilder, AConeHasNoCapAndMeetsAtItsTip) {
    MeshBuilder builder;
    addFrustum(builder, {1, 2, 3}, 2.0f, 5.0f, 0.0f, 7, RED, MATERIAL_TERRAIN, 0.0f);
    ASSERT_EQ(builder.size(), 7u * 6u);
    const Vec3 tip = {1, 7, 3};
    for (int i = 0; i < 7; i++) {
        EXPECT_EQ(builder[i * 6 + 2].position, tip);
        EXPECT_EQ(builder[i * 6 + 5].position, tip);
    }
}

TEST(MeshBuilder, AFrustumThatIsNothingLooksUp) {
    MeshBuilder builder;
    addFrustum(builder, {0, 0, 0}, 1.0f, 0.0f, 1.0f, 3, RED, MATERIAL_PLAIN, 0.0f);
    for (const Vertex& vertex : builder) EXPECT_EQ(vertex.normal, (Vec3{0, 1, 0}));
}

TEST(MeshBuilder, Hash01IsTheSameOnEverySystem) {
    EXPECT_EQ(hash01(0, 0, 0), 0.0f);
    EXPECT_EQ(hash01(1, 2, 3), 3637855.0f / 16777215.0f);
    EXPECT_EQ(hash01(2, 1, 3), 5189457.0f / 16777215.0f);
    EXPECT_EQ(hash01(95, 4294967295u, 11), 3410211.0f / 16777215.0f); // the products wrap around
}
