#include "view/models/models_business.h"

#include "view/models/model_helpers.h"

static MeshBuilder shop(int level, float t = 0.5f) {
    MeshBuilder builder;
    addShop(builder, makeLot(t, level));
    return builder;
}

static MeshBuilder office(int level, float t = 0.5f) {
    MeshBuilder builder;
    addOfficeTower(builder, makeLot(t, level));
    return builder;
}

static MeshBuilder factory(int level, float t = 0.5f) {
    MeshBuilder builder;
    addFactory(builder, {388.0f, 388.0f, 3.52f, 2.88f, level, t});
    return builder;
}

static Vec3 signColour(const Lot& lot) {
    return paletteRow(awningPalette, hash01(static_cast<uint32_t>(lot.x), static_cast<uint32_t>(lot.z), 9));
}

TEST(Shop, TheBodyIsTwiceAsHighAboveLevelOne) {
    const Vec3 wall = mix(wallPalette[2], {0.90f, 0.88f, 0.84f}, 0.5f);
    EXPECT_TRUE(hasBox(shop(1), {-3.2f, 0, -3.2f}, {3.2f, 6.5f, 3.2f}, wall, MATERIAL_WALL, 0.825f));
    EXPECT_TRUE(hasBox(shop(2), {-3.2f, 0, -3.2f}, {3.2f, 13, 3.2f}, wall, MATERIAL_WALL, 0.825f));
    EXPECT_TRUE(hasBox(shop(3), {-3.2f, 0, -3.2f}, {3.2f, 13, 3.2f}, wall, MATERIAL_WALL, 0.825f));
}

TEST(Shop, AStripRunsAlongTheFrontEdgeOfTheRoof) {
    EXPECT_TRUE(hasBox(shop(1), {-3.2f, 6.5f, 3.0f}, {3.2f, 6.7f, 3.2f}, TRIM));
    EXPECT_TRUE(hasBox(shop(2), {-3.2f, 13, 3.0f}, {3.2f, 13.2f, 3.2f}, TRIM));
}

TEST(Shop, TheShopWindowIsDividedByFourMullions) {
    const MeshBuilder mesh = shop(1);
    EXPECT_TRUE(
        hasBox(mesh, {-2.6f, 0.8f, 3.2f}, {2.6f, 3.8f, 3.28f}, {0.60f, 0.72f, 0.78f}, MATERIAL_GLASS, 0.8f));
    for (const float x : {-1.56f, -0.52f, 0.52f, 1.56f})
        EXPECT_TRUE(hasBox(mesh, {x - 0.07f, 0.8f, 3.2f}, {x + 0.07f, 3.8f, 3.34f}, STEEL_GREY)) << x;
}

TEST(Shop, AwningAndSignShareOneColour) {
    const Lot lot = makeLot();
    const MeshBuilder mesh = shop(1);
    EXPECT_TRUE(
        hasBox(mesh, {-2.56f, 4.8f, 3.2f}, {2.56f, 5.7f, 3.4f}, signColour(lot), MATERIAL_PLAIN, 0.45f));
    MeshBuilder awning;
    for (const Vertex& vertex : verticesOfColour(mesh, signColour(lot)))
        if (vertex.emissive == 0.0f) awning.push_back(vertex);
    const Bounds bounds = boundsOf(awning);
    EXPECT_NEAR(bounds.min.y, 4.2f, 1e-5f);
    EXPECT_NEAR(bounds.max.y, 4.7f, 1e-5f);
    EXPECT_NEAR(bounds.min.z, 3.2f, 1e-5f);
    EXPECT_LE(bounds.max.z, 4.0f) << "stays on the lot";
}

TEST(Shop, EveryAwningColourIsInUse) {
    int seen[4] = {};
    for (int x = 0; x < 96; x++) {
        MeshBuilder mesh;
        Lot lot = makeLot();
        lot.x = static_cast<float>(x) * 8.0f + 4.0f;
        addShop(mesh, lot);
        for (int row = 0; row < 4; row++) seen[row] += !verticesOfColour(mesh, awningPalette[row]).empty();
    }
    EXPECT_EQ(seen[0] + seen[1] + seen[2] + seen[3], 96);
    for (const int count : seen) EXPECT_GT(count, 10);
}

TEST(Shop, LevelTwoAddsACorniceAndLevelThreeARoofSign) {
    const Vec3 corniceMin = {-3.32f, 8.2f, -3.32f};
    const Vec3 corniceMax = {3.32f, 8.5f, 3.32f};
    EXPECT_FALSE(hasBox(shop(1), corniceMin, corniceMax, TRIM));
    EXPECT_TRUE(hasBox(shop(2), corniceMin, corniceMax, TRIM));
    EXPECT_TRUE(hasBox(shop(3), corniceMin, corniceMax, TRIM));

    const Vec3 signMin = {-1.92f, 13.4f, 2.4f};
    const Vec3 signMax = {1.92f, 15.6f, 2.65f};
    EXPECT_FALSE(hasBox(shop(2), signMin, signMax, signColour(makeLot()), MATERIAL_PLAIN, 0.5f));
    EXPECT_TRUE(hasBox(shop(3), signMin, signMax, signColour(makeLot()), MATERIAL_PLAIN, 0.5f));
}

TEST(Shop, EveryLevelHasARooftopUnit) {
    for (int level = 1; level <= 3; level++)
        EXPECT_EQ(verticesOfColour(shop(level), {0.16f, 0.17f, 0.19f}).size(), 30u) << level;
}

static Vec3 glassColour(float t) { return {0.42f + 0.10f * t, 0.56f + 0.06f * t, 0.68f}; }

// A shaft of glass with its mullions.
static MeshBuilder shaft(float half, float bottom, float top, int mullionCount, float t) {
    MeshBuilder builder;
    addBox(builder, {-half, bottom, -half}, {half, top, half}, glassColour(t), MATERIAL_GLASS,
           0.85f + 0.15f * t);
    addWallMullions(builder, half, half, bottom, top, mullionCount, {0.78f, 0.80f, 0.84f});
    return builder;
}

TEST(OfficeTower, LevelOneIsAShaftOnAPodium) {
    for (const float t : {0.0f, 0.5f, 1.0f}) {
        const MeshBuilder mesh = office(1, t);
        EXPECT_TRUE(hasBox(mesh, {-3.2f, 0, -3.2f}, {3.2f, 3, 3.2f}, paletteRow(wallPalette, t),
                           MATERIAL_WALL, 0.8f));
        EXPECT_TRUE(contains(mesh, shaft(0.94f * 3.2f, 3, 20, 3, t)));
    }
    const MeshBuilder mesh = office(1);
    EXPECT_TRUE(
        hasBox(mesh, {-1.92f, 0, 3.2f}, {1.92f, 2.9f, 3.28f}, {0.55f, 0.66f, 0.72f}, MATERIAL_GLASS, 0.8f));
    const Bounds canopy = boundsOf(verticesOfColour(mesh, {0.30f, 0.32f, 0.36f}));
    EXPECT_NEAR(canopy.min.y, 2.9f, 1e-5f);
    EXPECT_NEAR(canopy.max.y, 3.2f, 1e-5f);
}

TEST(OfficeTower, LevelOneEndsWithASlabAUnitAndALamp) {
    const MeshBuilder mesh = office(1);
    const Bounds slab = boundsOf(verticesOfColour(mesh, STEEL_GREY));
    EXPECT_NEAR(slab.min.y, 20.0f, 1e-4f);
    EXPECT_NEAR(slab.max.y, 20.6f, 1e-4f);
    EXPECT_EQ(verticesOfColour(mesh, {0.16f, 0.17f, 0.19f}).size(), 30u);
}

TEST(OfficeTower, LevelTwoSetsBackAtFourteen) {
    const MeshBuilder mesh = office(2, 0.25f);
    EXPECT_TRUE(contains(mesh, shaft(3.2f, 0, 14, 4, 0.25f)));
    EXPECT_TRUE(contains(mesh, shaft(0.66f * 3.2f, 14, 38, 3, 0.25f)));
    const Bounds slab = boundsOf(verticesOfColour(mesh, STEEL_GREY));
    EXPECT_NEAR(slab.min.y, 38.0f, 1e-4f);
    EXPECT_NEAR(slab.max.y, 38.6f, 1e-4f);
    EXPECT_TRUE(hasBox(mesh, {-1, 38.6f, -0.6f}, {1, 40, 0.6f}, {0.74f, 0.75f, 0.77f})) << "plant box";
}

TEST(OfficeTower, LevelThreeSetsBackAtThirtyAndCarriesAMast) {
    const MeshBuilder mesh = office(3, 0.75f);
    EXPECT_TRUE(contains(mesh, shaft(3.2f, 0, 30, 4, 0.75f)));
    EXPECT_TRUE(contains(mesh, shaft(0.7f * 3.2f, 30, 62, 3, 0.75f)));
    EXPECT_TRUE(hasFrustum(mesh, {0, 62.8f, 0}, 0.35f, 9.0f, 0.05f, 6, STEEL_GREY));
    EXPECT_NEAR(boundsOf(mesh).max.y, 72.08f, 1e-3f);
}

TEST(OfficeTower, EveryLevelEndsWithARedLampAtTheVeryTop) {
    const float tops[3] = {21.8f, 40.0f, 71.8f};
    for (int level = 1; level <= 3; level++) {
        const MeshBuilder mesh = office(level);
        ASSERT_EQ(lampsOf(mesh).size(), 1u) << level;
        EXPECT_NEAR(lampsOf(mesh)[0].y, tops[level - 1], 1e-4f) << level;
        EXPECT_NEAR(boundsOf(mesh).max.y, tops[level - 1] + 0.28f, 1e-4f) << level;
    }
}

TEST(Factory, TwoHallsOverlapInTheMiddle) {
    for (int level = 1; level <= 3; level++) {
        const MeshBuilder mesh = factory(level, 0.5f);
        const Vec3 wall = mesh[0].colour;
        EXPECT_TRUE(hasBox(mesh, {-3.52f, 0, -2.592f}, {0.704f, 6, 0.288f}, wall, MATERIAL_WALL, 0.5f));
        EXPECT_TRUE(hasBox(mesh, {-0.704f, 0, -2.592f}, {3.52f, 6, 0.288f}, wall, MATERIAL_WALL, 0.5f));
    }
    EXPECT_FLOAT_EQ(factory(1, 0.0f)[0].emissive, 0.35f);
    EXPECT_FLOAT_EQ(factory(1, 1.0f)[0].emissive, 0.65f);
}

TEST(Factory, TwoSteppedServiceBoxesStandAtTheFront) {
    const MeshBuilder mesh = factory(1);
    const Vec3 colour = mix(mesh[0].colour, {1, 1, 1}, 0.25f);
    const MeshBuilder boxes = verticesOfColour(mesh, colour);
    ASSERT_EQ(boxes.size(), 60u);
    const Bounds first = boundsOf(MeshBuilder(boxes.begin(), boxes.begin() + 30));
    const Bounds second = boundsOf(MeshBuilder(boxes.begin() + 30, boxes.end()));
    EXPECT_NEAR(first.max.x - first.min.x, 0.4f * 3.52f, 1e-5f);
    EXPECT_NEAR(first.max.y, 3.2f, 1e-5f);
    EXPECT_NEAR(second.max.x - second.min.x, 0.3f * 3.52f, 1e-5f);
    EXPECT_NEAR(second.max.y, 2.8f, 1e-5f);
    EXPECT_NEAR(first.min.z, 0.288f, 1e-5f);
    EXPECT_NEAR(second.min.x, first.max.x, 1e-5f);
}

TEST(Factory, TheYardLiesOnTheGround) {
    const MeshBuilder mesh = factory(1);
    EXPECT_TRUE(hasFlatQuad(mesh, -4, 4, -4, 4, 0.72f, {0.52f, 0.51f, 0.49f}, MATERIAL_PLAIN));
}

TEST(Factory, TheChimneyGrowsWithTheLevelAndGlowsRed) {
    for (const int level : {0, 1, 2, 3, 200}) {
        const MeshBuilder mesh = factory(level);
        const float top = 22.0f + 2.0f * static_cast<float>(level);
        EXPECT_TRUE(hasFrustum(mesh, {2.112f, 0, -1.44f}, 0.85f, top, 0.55f, 8, {0.62f, 0.46f, 0.40f}))
            << level;
        const MeshBuilder red = verticesOfColour(mesh, WARNING_RED);
        ASSERT_GE(red.size(), 72u);
        EXPECT_EQ(red[0].emissive, 1.0f);
        EXPECT_GT(boundsOf(MeshBuilder(red.begin(), red.begin() + 72)).min.y, top - 2.0f);
        EXPECT_LT(boundsOf(MeshBuilder(red.begin(), red.begin() + 72)).max.y, top);
    }
}

TEST(Factory, LevelTwoAddsAStorageTank) {
    const float lidTop = 13.7f;
    MeshBuilder tank;
    addTank(tank, {-2.112f, 0, 1.584f}, 0.38f * 2.88f, 13.0f, lidTop - 13.0f, 12, {0.80f, 0.80f, 0.78f});
    EXPECT_FALSE(contains(factory(1), tank));
    EXPECT_TRUE(contains(factory(2), tank));
    EXPECT_TRUE(contains(factory(3), tank));
}

TEST(Factory, LevelThreeAddsASecondTankAStackAndAPipeBridge) {
    const MeshBuilder mesh = factory(3);
    MeshBuilder tank;
    addTank(tank, {1.936f, 0, 2.304f}, 0.18f * 2.88f, 8.0f, 0.5f, 14, {0.70f, 0.72f, 0.74f});
    EXPECT_TRUE(contains(mesh, tank));
    EXPECT_FALSE(contains(factory(2), tank));
    EXPECT_NEAR(boundsOf(verticesOfColour(mesh, {0.55f, 0.55f, 0.57f})).max.y, 32.0f, 1e-4f) << "stack";
    ASSERT_EQ(lampsOf(mesh).size(), 1u);
    expectNear(lampsOf(mesh)[0], {-2.992f, 32.0f, -2.016f});
    const Bounds bridge = boundsOf(verticesOfColour(mesh, STEEL_GREY));
    EXPECT_NEAR(bridge.min.y, 9.0f, 1e-5f);
    EXPECT_NEAR(bridge.min.x, -2.992f, 1e-5f) << "from the stack";
    EXPECT_NEAR(bridge.max.x, 2.112f, 1e-5f) << "to the chimney";
}

TEST(Factory, StaysInsideItsFootprintButForTheYard) {
    MeshBuilder mesh;
    for (const Vertex& vertex : factory(3))
        if (vertex.position.y != 0.72f) mesh.push_back(vertex);
    const Bounds bounds = boundsOf(mesh);
    EXPECT_GE(bounds.min.x, -3.52f);
    EXPECT_LE(bounds.max.x, 3.52f);
    EXPECT_GE(bounds.min.z, -2.88f);
    EXPECT_LE(bounds.max.z, 2.88f);
}
