#include "view/models/models_utilities.h"

#include "view/models/model_helpers.h"

#include <cmath>

static MeshBuilder draw(void (*addModel)(MeshBuilder&, const Lot&), float t = 0.5f) {
    MeshBuilder builder;
    addModel(builder, makeLot(t));
    return builder;
}

TEST(GasPlant, ThreeTanksHaveARingAndAFlatLid) {
    const MeshBuilder mesh = draw(addGasPlant);
    for (const Vec3& colour :
         {Vec3{0.82f, 0.84f, 0.86f}, Vec3{0.78f, 0.80f, 0.84f}, Vec3{0.70f, 0.72f, 0.76f}}) {
        const MeshBuilder tank = verticesOfColour(mesh, colour);
        ASSERT_EQ(tank.size(), 16u * 9u);
        const Bounds bounds = boundsOf(tank);
        const float radius = (bounds.max.x - bounds.min.x) / 2.0f;
        const Vec3 foot = {(bounds.min.x + bounds.max.x) / 2.0f, 0, (bounds.min.z + bounds.max.z) / 2.0f};
        EXPECT_TRUE(
            hasFrustum(mesh, foot + Vec3{0, 1, 0}, radius * 1.04f, 0.3f, radius * 1.04f, 16, colour * 0.8f));
        EXPECT_TRUE(hasFrustum(mesh, foot + Vec3{0, bounds.max.y, 0}, radius * 1.04f, 0.35f, 0.0f, 16,
                               colour * 0.9f));
    }
}

TEST(GasPlant, RustyPipesRunAlongXAndZ) {
    const MeshBuilder pipes = verticesOfColour(draw(addGasPlant), {0.60f, 0.35f, 0.25f});
    ASSERT_EQ(pipes.size(), 90u);
    EXPECT_NEAR(boundsOf(pipes).min.y, 2.2f, 1e-5f);
    EXPECT_NEAR(boundsOf(pipes).max.y, 2.5f, 1e-5f);
    const Bounds along = boundsOf(MeshBuilder(pipes.begin(), pipes.begin() + 30));
    const Bounds across = boundsOf(MeshBuilder(pipes.begin() + 30, pipes.begin() + 60));
    EXPECT_GT(along.max.x - along.min.x, 10.0f * (along.max.z - along.min.z));
    EXPECT_GT(across.max.z - across.min.z, 5.0f * (across.max.x - across.min.x));
}

TEST(GasPlant, TwoStacksHaveAnOrangeTopFromTwentyFour) {
    const MeshBuilder mesh = draw(addGasPlant);
    for (const float x : {-1.0f, -3.0f}) {
        EXPECT_TRUE(hasFrustum(mesh, {x, 0, 2.7f}, 0.6f, 24.0f, 0.45f, 10, {0.50f, 0.48f, 0.46f}));
        EXPECT_TRUE(hasFrustum(mesh, {x, 24, 2.7f}, 0.5f, 1.2f, 0.5f, 10, {1.0f, 0.60f, 0.20f}));
    }
}

TEST(GasPlant, TheControlBoxAndTheFencesStandOnTheLot) {
    const MeshBuilder mesh = draw(addGasPlant);
    EXPECT_TRUE(hasBox(mesh, {2.9f, 0, -3.5f}, {3.6f, 2.4f, -2.6f}, {0.55f, 0.55f, 0.58f}));
    MeshBuilder fence;
    addLotFence(fence, STEEL_GREY);
    EXPECT_TRUE(contains(mesh, fence));
    const Bounds bounds = boundsOf(mesh);
    EXPECT_GE(std::min(bounds.min.x, bounds.min.z), -4.0f);
    EXPECT_LE(std::max(bounds.max.x, bounds.max.z), 4.0f);
}

TEST(SolarFarm, TwelvePanelsStandInThreeRowsOfFour) {
    const MeshBuilder mesh = draw(addSolarFarm);
    for (int row = 0; row < 3; row++)
        for (int column = 0; column < 4; column++) {
            const float x = -3.0f + 1.7f * static_cast<float>(column);
            const float z = -2.2f + 1.8f * static_cast<float>(row);
            const float slope = std::sqrt(1.4f * 1.4f + 1.8f * 1.8f);
            MeshBuilder panel;
            addQuad(panel, {x, 1.8f, z}, {x + 1.5f, 1.8f, z}, {x + 1.5f, 3.6f, z + 1.4f}, {x, 3.6f, z + 1.4f},
                    {0, 1.4f / slope, -1.8f / slope}, {1, 1, 1}, 0, MATERIAL_SOLAR_PANEL);
            EXPECT_TRUE(contains(mesh, panel)) << row << ", " << column;
            EXPECT_TRUE(hasBox(mesh, {x + 0.7f, 0.6f, z}, {x + 0.8f, 1.8f, z + 0.12f}, STEEL_GREY));
        }
    EXPECT_EQ(mesh.size(), 12u * 36u + 30u);
}

TEST(SolarFarm, ThePanelsNormalIsThatOfTheirTilt) {
    const MeshBuilder panels = verticesOfColour(draw(addSolarFarm), {1, 1, 1});
    const Vec3 across = panels[1].position - panels[0].position;
    const Vec3 up = panels[2].position - panels[1].position;
    EXPECT_NEAR(dot(panels[0].normal, across), 0.0f, 1e-5f);
    EXPECT_NEAR(dot(panels[0].normal, up), 0.0f, 1e-5f);
    EXPECT_GT(panels[0].normal.y, 0.0f);
}

TEST(SolarFarm, TheInverterStandsInTheBackCorner) {
    EXPECT_TRUE(hasBox(draw(addSolarFarm), {3.0f, 0.6f, -3.6f}, {3.7f, 2.2f, -2.9f}, {0.85f, 0.86f, 0.88f}));
}

TEST(WindTurbine, TheTowerTapersUpToTwentyEight) {
    const MeshBuilder mesh = draw(addWindTurbine);
    EXPECT_TRUE(hasFrustum(mesh, {0, 0.6f, 0}, 0.95f, 27.4f, 0.5f, 12, {0.90f, 0.91f, 0.93f}));
    EXPECT_TRUE(hasBox(mesh, {-1.6f, 0, -1.6f}, {1.6f, 0.85f, 1.6f}, {0.66f, 0.65f, 0.62f})) << "pad";
    EXPECT_NEAR(boundsOf(verticesOfColour(mesh, {0.55f, 0.60f, 0.58f})).min.y, 0.6f, 1e-5f) << "small box";
}

TEST(WindTurbine, EightPostsStandOnTheServiceRing) {
    const MeshBuilder mesh = draw(addWindTurbine);
    const MeshBuilder steel = verticesOfColour(mesh, STEEL_GREY);
    ASSERT_EQ(steel.size(), 9u * 30u) << "eight posts and the hub";
    for (int i = 0; i < 8; i++) {
        const float angle = static_cast<float>(i) * 6.2831855f / 8.0f;
        const Bounds post = boundsOf(MeshBuilder(steel.begin() + i * 30, steel.begin() + i * 30 + 30));
        EXPECT_NEAR(post.min.y, 14.18f, 1e-5f);
        EXPECT_NEAR(post.max.y, 15.2f, 1e-5f);
        const Vec3 middle = (post.min + post.max) * 0.5f;
        const float radius = std::hypot(middle.x, middle.z);
        EXPECT_NEAR(middle.x, radius * std::cos(angle), 1e-4f);
        EXPECT_NEAR(middle.z, radius * std::sin(angle), 1e-4f);
    }
}

// The directions of the blades, as angles from straight up.
static std::vector<float> bladeAngles(float t) {
    const MeshBuilder blades = verticesOfColour(draw(addWindTurbine, t), {0.95f, 0.95f, 0.96f});
    EXPECT_EQ(blades.size(), 18u);
    std::vector<float> angles;
    for (size_t i = 0; i + 6 <= blades.size(); i += 6) {
        const Vec3 root = (blades[i].position + blades[i + 1].position) * 0.5f;
        const Vec3 tip = (blades[i + 2].position + blades[i + 5].position) * 0.5f;
        EXPECT_EQ(blades[i].normal, (Vec3{0, 0, 1}));
        angles.push_back(std::atan2(tip.x - root.x, tip.y - root.y));
    }
    return angles;
}

TEST(WindTurbine, ThreeBladesStandAThirdOfATurnApart) {
    for (const float t : {0.0f, 0.2f, 0.9f}) {
        const std::vector<float> angles = bladeAngles(t);
        ASSERT_EQ(angles.size(), 3u);
        for (int i = 0; i < 3; i++) {
            const float expected = static_cast<float>(i) * 2.0943952f + t * 6.2831855f;
            EXPECT_NEAR(std::remainder(angles[i] - expected, 6.2831855f), 0.0f, 1e-4f) << i;
        }
    }
}

TEST(WaterPump, TheHouseIsLowAndTheTankHigh) {
    const MeshBuilder mesh = draw(addWaterPump);
    EXPECT_TRUE(hasBox(mesh, {-2.9f, 0, -0.8f}, {-0.1f, 3.6f, 2.2f}, mesh[0].colour, MATERIAL_WALL, 0.7f));
    EXPECT_EQ(verticesOfColour(mesh, {0.30f, 0.36f, 0.44f})[0].material, MATERIAL_ROOF);
    EXPECT_TRUE(hasFrustum(mesh, {1.5f, 0, -1.2f}, 1.6f, 12.8f, 1.6f, 14, {0.72f, 0.78f, 0.82f}));
    EXPECT_NEAR(boundsOf(mesh).max.y, 14.0f, 1e-4f) << "the lid's tip";
}

TEST(WaterPump, OneLampHangsOnTheHouse) {
    const std::vector<Vec3> lamps = lampsOf(draw(addWaterPump));
    ASSERT_EQ(lamps.size(), 1u);
    EXPECT_NEAR(lamps[0].y, 2.9f, 1e-5f);
    EXPECT_GT(lamps[0].z, 2.2f) << "outside the wall";
}

TEST(WaterPump, PipesRunAlongTheGround) {
    const MeshBuilder mesh = draw(addWaterPump);
    EXPECT_TRUE(hasBox(mesh, {1.2f, 1.0f, 0.2f}, {1.8f, 1.7f, 2.6f}, {0.30f, 0.48f, 0.62f}));
    EXPECT_TRUE(hasBox(mesh, {-1.6f, 1.0f, -1.5f}, {0.2f, 1.7f, -0.9f}, {0.30f, 0.48f, 0.62f}));
}
