#include "view/models/bus_stop.h"

#include "view/models/model_helpers.h"

static MeshBuilder busStop() {
    MeshBuilder builder;
    addBusStop(builder);
    return builder;
}

TEST(BusStop, TheShelterIsASlabARoofAndAGlassBack) {
    const MeshBuilder mesh = busStop();
    EXPECT_TRUE(hasBox(mesh, {0, 0, 0}, {2.4f, 0.25f, 1.2f}, {0.50f, 0.52f, 0.56f}));
    EXPECT_TRUE(hasBox(mesh, {0, 2.4f, 0}, {2.4f, 2.8f, 1.2f}, {0.28f, 0.44f, 0.60f}, MATERIAL_ROOF));
    EXPECT_TRUE(
        hasBox(mesh, {0.05f, 0.25f, 0}, {2.35f, 2.4f, 0.05f}, {0.60f, 0.78f, 0.90f}, MATERIAL_GLASS, 0.5f));
}

TEST(BusStop, TheBenchStandsInTheMiddle) {
    const MeshBuilder wood = verticesOfColour(busStop(), {0.55f, 0.38f, 0.24f});
    const MeshBuilder legs = verticesOfColour(busStop(), STEEL_GREY);
    EXPECT_EQ(wood.size() + legs.size(), 120u);
    const Bounds seat = boundsOf(MeshBuilder(wood.begin(), wood.begin() + 30));
    EXPECT_NEAR((seat.min.x + seat.max.x) / 2.0f, 1.2f, 1e-5f);
    EXPECT_NEAR((seat.min.z + seat.max.z) / 2.0f, 0.6f, 1e-5f);
    EXPECT_NEAR(boundsOf(legs).min.y, 0.25f, 1e-5f) << "on the slab";
}

TEST(BusStop, TheSignStandsOnItsPoleAndLooksToTheFront) {
    const MeshBuilder mesh = busStop();
    const Bounds pole = boundsOf(verticesOfColour(mesh, {0.35f, 0.36f, 0.40f}));
    EXPECT_NEAR(pole.max.y, 3.4f, 1e-5f);
    EXPECT_NEAR(pole.max.z - pole.min.z, 0.1f, 1e-5f);
    EXPECT_NEAR((pole.min.z + pole.max.z) / 2.0f, 1.3f, 1e-5f);

    const MeshBuilder sign = verticesOfColour(mesh, {0.96f, 0.78f, 0.20f});
    ASSERT_EQ(sign.size(), 6u);
    const Bounds bounds = boundsOf(sign);
    expectNear(bounds.max - bounds.min, {0.8f, 0.4f, 0});
    EXPECT_NEAR(bounds.min.y, 3.4f, 1e-5f);
    EXPECT_EQ(sign[0].normal, (Vec3{0, 0, 1}));
    EXPECT_EQ(sign[0].emissive, 0.6f);
    EXPECT_NEAR((bounds.min.x + bounds.max.x) / 2.0f, (pole.min.x + pole.max.x) / 2.0f, 1e-5f);
}

TEST(BusStop, StaysInsideItsCell) {
    const Bounds bounds = boundsOf(busStop());
    EXPECT_GE(bounds.min.x, 0.0f);
    EXPECT_GE(bounds.min.z, 0.0f);
    EXPECT_LE(bounds.max.x, 7.0f);
    EXPECT_LE(bounds.max.z, 7.0f);
}
