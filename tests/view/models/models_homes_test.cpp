#include "view/models/models_homes.h"

#include "view/models/model_helpers.h"

#include <cmath>

static MeshBuilder house(const Lot& lot) {
    MeshBuilder builder;
    addHouse(builder, lot);
    return builder;
}

static MeshBuilder block(float t) {
    MeshBuilder builder;
    addApartmentBlock(builder, makeLot(t, 2));
    return builder;
}

static MeshBuilder tower(float t) {
    MeshBuilder builder;
    addResidentialTower(builder, makeLot(t, 3));
    return builder;
}

static Vec3 roofColour(const Lot& lot) {
    return paletteRow(roofPalette,
                      hash01(static_cast<uint32_t>(lot.x * 7.0f), static_cast<uint32_t>(lot.z * 7.0f), 3));
}

TEST(House, TheBodyHasASaddleRoof) {
    const Lot lot = makeLot(0.5f);
    MeshBuilder body;
    addGabledBox(body, {-3.2f, 0, -3.2f}, {2.72f, 4.8f, 3.2f}, 2.8f, wallPalette[2], roofColour(lot), 0.75f);
    EXPECT_TRUE(contains(house(lot), body));
}

TEST(House, WallsFollowTheSeedAndRoofsThePlace) {
    EXPECT_EQ(house(makeLot(0.0f))[0].colour, wallPalette[0]);
    EXPECT_EQ(house(makeLot(1.0f))[0].colour, wallPalette[4]);
    int seen[3] = {};
    for (int x = 0; x < 96; x++) {
        Lot lot = makeLot();
        lot.x = static_cast<float>(x) * 8.0f + 4.0f;
        const MeshBuilder mesh = house(lot);
        for (int row = 0; row < 3; row++) seen[row] += !verticesOfColour(mesh, roofPalette[row]).empty();
    }
    EXPECT_EQ(seen[0] + seen[1] + seen[2], 96) << "one roof colour a house";
    for (const int count : seen) EXPECT_GT(count, 15);
}

TEST(House, TheNightGlowDiffersByHouse) {
    EXPECT_FLOAT_EQ(house(makeLot(0.0f))[0].emissive, 0.6f);
    EXPECT_FLOAT_EQ(house(makeLot(1.0f))[0].emissive, 0.9f);
}

TEST(House, TheChimneyStandsThroughTheRoofAndWearsACap) {
    const MeshBuilder mesh = house(makeLot(0.5f));
    const Vec3 brick = mix(wallPalette[2], {0.55f, 0.30f, 0.24f}, 0.6f);
    EXPECT_TRUE(
        hasBox(mesh, {1.12f - 0.35f, 5.3f, -1.28f - 0.35f}, {1.12f + 0.35f, 7.88f, -1.28f + 0.35f}, brick));
    EXPECT_TRUE(hasBox(mesh, {1.12f - 0.45f, 7.88f, -1.28f - 0.45f}, {1.12f + 0.45f, 8.08f, -1.28f + 0.45f},
                       {0.35f, 0.35f, 0.37f}));
}

TEST(House, TheSideWingHasAFlatRoofAndADoor) {
    const Lot lot = makeLot(0.5f);
    const MeshBuilder mesh = house(lot);
    EXPECT_TRUE(hasBox(mesh, {2.72f, 0, -1.92f}, {3.4f, 3, 0.64f}, mix(wallPalette[2], {1, 1, 1}, 0.2f),
                       MATERIAL_WALL, 0.375f));
    EXPECT_TRUE(hasBox(mesh, {2.62f, 3, -2.24f}, {3.5f, 3.3f, 0.96f}, roofColour(lot), MATERIAL_ROOF));
    const Bounds door = boundsOf(verticesOfColour(mesh, {0.22f, 0.22f, 0.25f}));
    EXPECT_NEAR(door.min.y, 0.15f, 1e-5f);
    EXPECT_NEAR(door.max.y, 2.6f, 1e-5f);
    EXPECT_NEAR(door.min.z, 0.64f, 1e-5f);
    EXPECT_NEAR(door.max.z, 0.72f, 1e-5f);
    EXPECT_GT(door.min.x, 2.72f);
    EXPECT_LT(door.max.x, 3.4f);
}

TEST(House, TheFrontDoorStandsUnderAPorch) {
    const MeshBuilder mesh = house(makeLot(0.5f));
    EXPECT_TRUE(hasBox(mesh, {0.32f - 0.45f, 0, 3.2f}, {0.32f + 0.45f, 2.3f, 3.28f}, {0.30f, 0.20f, 0.14f}));
    EXPECT_TRUE(hasBox(mesh, {0.32f - 0.9f, 2.5f, 3.2f}, {0.32f + 0.9f, 2.7f, 3.95f}, PALE_TRIM));
    EXPECT_EQ(verticesOfColour(mesh, PALE_TRIM).size(), 90u) << "a roof and two posts";
}

TEST(House, TheGardenLiesOnTheGround) {
    const MeshBuilder mesh = house(makeLot(0.5f));
    EXPECT_TRUE(hasFlatQuad(mesh, -4, 4, -4, 4, 0.72f, {0.42f, 0.66f, 0.32f}, MATERIAL_TERRAIN));
    const Bounds path = boundsOf(verticesOfColour(mesh, {0.70f, 0.70f, 0.68f}));
    EXPECT_NEAR(path.min.y, 0.76f, 1e-5f);
    EXPECT_NEAR(path.max.z, 4.0f, 1e-5f) << "to the street";
    EXPECT_TRUE(
        hasBox(mesh, {-3.9f, 0.6f, -2.6f}, {-3.45f, 1.4f, 2.2f}, {0.20f, 0.46f, 0.22f}, MATERIAL_TERRAIN));
}

TEST(ApartmentBlock, TheBodyWearsACorniceARoofSlabAndAParapet) {
    const MeshBuilder mesh = block(0.5f);
    const Vec3 trim = mix(wallPalette[2], {1, 1, 1}, 0.35f);
    EXPECT_TRUE(hasBox(mesh, {-3.2f, 0, -3.2f}, {3.2f, 10, 3.2f}, wallPalette[2], MATERIAL_WALL, 0.825f));
    EXPECT_TRUE(hasBox(mesh, {-3.4f, 10, -3.4f}, {3.4f, 10.45f, 3.4f}, trim));
    EXPECT_TRUE(
        hasBox(mesh, {-3.25f, 10.45f, -3.25f}, {3.25f, 10.6f, 3.25f}, {0.45f, 0.45f, 0.47f}, MATERIAL_ROOF));
    MeshBuilder parapet;
    addParapet(parapet, 3.3f, 3.3f, 10.45f, 0.9f, trim);
    EXPECT_TRUE(contains(mesh, parapet));
}

TEST(ApartmentBlock, ATankStandsOnTheRoof) {
    MeshBuilder tank;
    addRoofTank(tank, {1.12f, 10.6f, -0.96f}, 0.8f, 1.6f);
    EXPECT_TRUE(contains(block(0.2f), tank));
}

TEST(ApartmentBlock, TheEntranceIsDark) {
    EXPECT_TRUE(hasBox(block(0.2f), {-0.45f, 0, 3.2f}, {0.45f, 2.2f, 3.28f}, {0.30f, 0.20f, 0.14f}));
}

TEST(ApartmentBlock, TwoBalconyStripsRunAcrossTheFront) {
    const MeshBuilder mesh = block(0.9f);
    MeshBuilder low;
    MeshBuilder high;
    addBalcony(low, 2.24f, 3.2f, 0.8f, 3.3f, balconyPalette[1]);
    addBalcony(high, 2.24f, 3.2f, 0.8f, 6.6f, balconyPalette[2]);
    EXPECT_TRUE(contains(mesh, low));
    EXPECT_TRUE(contains(mesh, high));
}

TEST(ApartmentBlock, TheGlowFollowsTheSeed) {
    EXPECT_FLOAT_EQ(block(0.0f)[0].emissive, 0.7f);
    EXPECT_FLOAT_EQ(block(1.0f)[0].emissive, 0.95f);
    EXPECT_EQ(block(1.0f)[0].colour, wallPalette[4]);
}

TEST(ResidentialTower, TheWallsAreAPaletteRowMadePale) {
    for (int row = 0; row < 5; row++) {
        const float t = (static_cast<float>(row) + 0.5f) / 5.0f;
        EXPECT_TRUE(hasBox(tower(t), {-3.2f, 0, -3.2f}, {3.2f, 21, 3.2f},
                           mix(wallPalette[row], {0.90f, 0.90f, 0.88f}, 0.4f), MATERIAL_WALL,
                           0.75f + 0.2f * t));
    }
}

TEST(ResidentialTower, PilastersStandOnTheTwoFrontCorners) {
    const MeshBuilder mesh = tower(0.5f);
    EXPECT_TRUE(hasBox(mesh, {-3.2f, 0, 3.2f}, {-2.75f, 21, 3.45f}, TRIM));
    EXPECT_TRUE(hasBox(mesh, {2.75f, 0, 3.2f}, {3.2f, 21, 3.45f}, TRIM));
}

TEST(ResidentialTower, TheRoofCarriesItsWholeEquipment) {
    const MeshBuilder mesh = tower(0.5f);
    EXPECT_TRUE(hasBox(mesh, {-3.6f, 21, -3.6f}, {3.6f, 21.7f, 3.6f}, TRIM)) << "cap";
    EXPECT_TRUE(
        hasBox(mesh, {-3.2f, 21.7f, -3.2f}, {3.2f, 21.85f, 3.2f}, {0.40f, 0.40f, 0.42f}, MATERIAL_ROOF));
    MeshBuilder parapet;
    addParapet(parapet, 3.35f, 3.35f, 21.7f, 0.7f, TRIM);
    EXPECT_TRUE(contains(mesh, parapet));
    MeshBuilder tank;
    addRoofTank(tank, {-1.5f, 21.85f, -1.5f}, 1.0f, 2.0f);
    EXPECT_TRUE(contains(mesh, tank));
    EXPECT_EQ(verticesOfColour(mesh, {0.16f, 0.17f, 0.19f}).size(), 60u)
        << "the grilles of two rooftop units";
    EXPECT_TRUE(hasBox(mesh, {1.12f, 21.85f, 0.32f}, {3.04f, 24.85f, 2.4f}, TRIM)) << "stair house";
}

TEST(ResidentialTower, AMastOfFiveCarriesTheLamp) {
    const MeshBuilder mesh = tower(0.5f);
    EXPECT_TRUE(hasBox(mesh, {2.16f, 21.85f, -1.84f}, {2.32f, 26.85f, -1.68f}, STEEL_GREY));
    ASSERT_EQ(lampsOf(mesh).size(), 1u);
    expectNear(lampsOf(mesh)[0], {2.24f, 26.85f, -1.76f});
    EXPECT_NEAR(boundsOf(mesh).max.y, 27.13f, 1e-4f);
}

TEST(ResidentialTower, FloorsTwoToSixHaveABalcony) {
    const MeshBuilder mesh = tower(0.5f);
    for (int floor = 2; floor <= 6; floor++) {
        MeshBuilder balcony;
        addBalcony(balcony, 0.42f * 3.2f, 3.2f, 0.8f, 3.2f * static_cast<float>(floor),
                   balconyPalette[floor % 3]);
        EXPECT_TRUE(contains(mesh, balcony)) << floor;
    }
    for (int row = 0; row < 3; row++)
        EXPECT_EQ(verticesOfColour(mesh, balconyPalette[row]).size(), row == 1 ? 180u : 360u) << row;
}

TEST(ResidentialTower, TheEntranceIsGlazedAndLit) {
    const MeshBuilder mesh = tower(0.5f);
    EXPECT_TRUE(
        hasBox(mesh, {-1.44f, 0, 3.2f}, {1.44f, 3, 3.3f}, {0.55f, 0.66f, 0.72f}, MATERIAL_GLASS, 0.8f));
    EXPECT_TRUE(hasBox(mesh, {-1.92f, 3, 3.2f}, {1.92f, 3.3f, 3.9f}, {0.30f, 0.32f, 0.36f}));
}
