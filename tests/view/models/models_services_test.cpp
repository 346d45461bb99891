#include "view/models/models_services.h"

#include "view/models/model_helpers.h"

#include <algorithm>
#include <cmath>

static MeshBuilder draw(void (*addModel)(MeshBuilder&, const Lot&), const Lot& lot = makeLot()) {
    MeshBuilder builder;
    addModel(builder, lot);
    return builder;
}

TEST(Services, AreTheSameOnEveryLotButForThePark) {
    Lot other = makeLot(0.9f, 3);
    other.x = 12.0f;
    for (const auto addModel : {addPoliceStation, addFireStation, addHospital, addSchool, addBusDepot})
        EXPECT_TRUE(isSame(draw(addModel), draw(addModel, other)));
    EXPECT_FALSE(isSame(draw(addPark), draw(addPark, other)));
}

TEST(PoliceStation, IsAWhiteBlockWithABlueBand) {
    const MeshBuilder mesh = draw(addPoliceStation);
    EXPECT_TRUE(
        hasBox(mesh, {-3.2f, 0, -2.88f}, {3.2f, 6.4f, 2.88f}, {0.92f, 0.94f, 0.96f}, MATERIAL_WALL, 0.85f));
    const Bounds band = boundsOf(verticesOfColour(mesh, {0.10f, 0.30f, 0.80f}));
    EXPECT_NEAR(band.min.y, 1.4f, 1e-5f);
    EXPECT_NEAR(band.max.y, 2.2f, 1e-5f);
    EXPECT_GT(band.max.z, 2.88f) << "shows on the front";
    EXPECT_GT(band.max.x, 3.2f) << "and around its corners";
}

TEST(PoliceStation, SignAndDoorAreLit) {
    const MeshBuilder mesh = draw(addPoliceStation);
    EXPECT_TRUE(hasBox(mesh, {-2.24f, 4.4f, 2.88f}, {2.24f, 5.4f, 3.03f}, {0.10f, 0.18f, 0.40f},
                       MATERIAL_PLAIN, 0.5f));
    const MeshBuilder door = verticesOfColour(mesh, {0.30f, 0.36f, 0.44f});
    const Bounds bounds = boundsOf(door);
    EXPECT_EQ(door[0].emissive, 0.7f);
    EXPECT_NEAR(bounds.max.x - bounds.min.x, 1.8f, 1e-5f);
    EXPECT_NEAR(bounds.max.y, 2.6f, 1e-5f);
    EXPECT_GT(bounds.max.z, boundsOf(verticesOfColour(mesh, {0.10f, 0.30f, 0.80f})).max.z)
        << "before the band";
}

TEST(PoliceStation, ARedAndABlueLampStandOnTheLightBar) {
    const MeshBuilder mesh = draw(addPoliceStation);
    const std::vector<Vec3> lamps = lampsOf(mesh);
    ASSERT_EQ(lamps.size(), 2u);
    for (const Vec3& lamp : lamps) EXPECT_NEAR(lamp.y, 7.3f, 1e-5f);
    EXPECT_EQ(verticesOfColour(mesh, {1.0f, 0.15f, 0.12f}).size(), 30u);
    EXPECT_EQ(verticesOfColour(mesh, {0.15f, 0.35f, 1.0f}).size(), 30u);
    const Bounds bar = boundsOf(verticesOfColour(mesh, STEEL_GREY));
    EXPECT_LE(bar.min.x, lamps[0].x - 0.35f);
    EXPECT_EQ(verticesOfColour(mesh, {0.20f, 0.22f, 0.26f}).size(), 30u) << "dark roof box";
    EXPECT_EQ(verticesOfColour(mesh, {0.40f, 0.42f, 0.46f}).size(), 30u) << "grey roof box";
}

TEST(PoliceStation, TheFlagFliesUpToTwelve) {
    const MeshBuilder mesh = draw(addPoliceStation);
    EXPECT_EQ(verticesOfColour(mesh, {0.85f, 0.20f, 0.20f}).size(), 6u);
    EXPECT_EQ(verticesOfColour(mesh, {0.95f, 0.95f, 0.95f}).size(), 6u);
    EXPECT_NEAR(boundsOf(mesh).max.y, 12.0f, 1e-5f);
}

TEST(FireStation, TheBodyWearsAWiderRoofSlab) {
    const MeshBuilder mesh = draw(addFireStation);
    EXPECT_TRUE(hasBox(mesh, {-3.2f, 0, -2.88f}, {3.2f, 7, 2.88f}, mesh[0].colour, MATERIAL_WALL, 0.8f));
    EXPECT_TRUE(hasBox(mesh, {-3.3f, 7, -2.98f}, {3.3f, 7.3f, 2.98f}, {0.36f, 0.36f, 0.38f}, MATERIAL_ROOF));
    EXPECT_TRUE(hasBox(mesh, {-2.56f, 4.4f, 2.88f}, {2.56f, 5.2f, 3.03f}, {0.95f, 0.92f, 0.84f},
                       MATERIAL_PLAIN, 0.5f));
}

TEST(FireStation, EachGarageBayIsADarkDoorInAFrameOfFour) {
    const MeshBuilder mesh = draw(addFireStation);
    const MeshBuilder doors = verticesOfColour(mesh, {0.18f, 0.19f, 0.21f});
    EXPECT_EQ(doors.size(), 60u);
    EXPECT_NEAR(boundsOf(doors).max.y, 3.8f, 1e-5f);
    EXPECT_EQ(verticesOfColour(mesh, PALE_TRIM).size(), 2u * 4u * 30u);
    EXPECT_GT(boundsOf(verticesOfColour(mesh, PALE_TRIM)).max.z, boundsOf(doors).max.z);
}

TEST(FireStation, TheHoseTowerEndsInAConeAndALamp) {
    const MeshBuilder mesh = draw(addFireStation);
    EXPECT_TRUE(hasBox(mesh, {2.24f, 7, 1.92f}, {3.04f, 13, 2.72f}, mesh[0].colour, MATERIAL_WALL, 0.8f));
    EXPECT_TRUE(
        hasFrustum(mesh, {2.64f, 13, 2.32f}, 0.45f, 2.6f, 0.0f, 8, {0.30f, 0.30f, 0.33f}, MATERIAL_ROOF));
    const std::vector<Vec3> lamps = lampsOf(mesh);
    ASSERT_EQ(lamps.size(), 2u);
    expectNear(lamps[0], {-1.92f, 7.3f, 0});
    expectNear(lamps[1] + Vec3{0, 0.14f, 0}, {2.64f, 15.7f, 2.32f});
}

TEST(Hospital, IsAPaleBlockUnderAWiderRoofSlab) {
    const MeshBuilder mesh = draw(addHospital);
    EXPECT_TRUE(hasBox(mesh, {-3.36f, 0, -3.2f}, {3.36f, 10, 3.2f}, mesh[0].colour, MATERIAL_WALL, 0.85f));
    const Bounds slab = boundsOf(verticesOfColour(mesh, {0.66f, 0.69f, 0.71f}));
    expectNear(slab.max, {3.46f, 10.4f, 3.3f});
    EXPECT_EQ(verticesOfColour(mesh, {0.16f, 0.17f, 0.19f}).size(), 30u) << "one rooftop unit";
}

TEST(Hospital, TheHelipadIsADiscWithALetterOfThreeBoxes) {
    const MeshBuilder mesh = draw(addHospital);
    EXPECT_TRUE(hasFrustum(mesh, {-1.2f, 10.4f, 0.9f}, 1.8f, 0.15f, 1.8f, 16, {0.32f, 0.34f, 0.37f}));
    MeshBuilder letter;
    for (const Vertex& vertex : verticesOfColour(mesh, PALE_TRIM))
        if (vertex.position.y > 10.5f && vertex.position.y < 10.7f) letter.push_back(vertex);
    EXPECT_EQ(letter.size(), 90u);
    EXPECT_LT(length(boundsOf(letter).max - Vec3{-1.2f, 10.6f, 0.9f}), 1.8f) << "lies on the disc";
}

TEST(Hospital, ARedCrossGlowsOnTheWall) {
    const MeshBuilder mesh = draw(addHospital);
    const Vec3 red = {0.86f, 0.13f, 0.13f};
    EXPECT_TRUE(hasBox(mesh, {-1.3f, 7.5f, 3.2f}, {1.3f, 8.5f, 3.35f}, red, MATERIAL_PLAIN, 0.6f));
    EXPECT_TRUE(hasBox(mesh, {-0.5f, 6.7f, 3.2f}, {0.5f, 9.3f, 3.35f}, red, MATERIAL_PLAIN, 0.6f));
}

TEST(Hospital, TheEntranceIsGlazedUnderACanopy) {
    const MeshBuilder mesh = draw(addHospital);
    EXPECT_TRUE(
        hasBox(mesh, {-1.8f, 0, 3.2f}, {1.8f, 3.9f, 3.3f}, {0.55f, 0.66f, 0.72f}, MATERIAL_GLASS, 0.8f));
    EXPECT_TRUE(hasBox(mesh, {-2.1f, 3.4f, 3.2f}, {2.1f, 3.65f, 4.0f}, PALE_TRIM));
}

TEST(Hospital, ALampStandsOnTheRoofBox) {
    const MeshBuilder mesh = draw(addHospital);
    EXPECT_TRUE(hasBox(mesh, {2.0f, 10.4f, -2.4f}, {2.9f, 12, -0.6f}, PALE_TRIM));
    ASSERT_EQ(lampsOf(mesh).size(), 1u);
    expectNear(lampsOf(mesh)[0], {2.45f, 12, -1.5f});
}

TEST(School, TheMainBlockIsEightHighWithItsRoof) {
    const MeshBuilder mesh = draw(addSchool);
    const Bounds walls = boundsOf(verticesOfColour(mesh, {0.90f, 0.76f, 0.46f}));
    const Bounds slab = boundsOf(verticesOfColour(mesh, {0.42f, 0.30f, 0.24f}));
    EXPECT_EQ(mesh[0].emissive, 0.8f);
    EXPECT_NEAR(slab.max.y, 8.0f, 1e-5f);
    EXPECT_NEAR(slab.max.y - slab.min.y, 0.5f, 1e-5f);
    expectNear(slab.max - walls.max, {0.1f, 0.5f, 0.1f});
    EXPECT_EQ(verticesOfColour(mesh, {0.42f, 0.30f, 0.24f})[0].material, MATERIAL_ROOF);
}

TEST(School, TheClockTowerIsSixteenHighUnderAConeRoof) {
    const MeshBuilder mesh = draw(addSchool);
    const MeshBuilder tower = verticesOfColour(mesh, {0.92f, 0.80f, 0.52f});
    EXPECT_EQ(tower[0].emissive, 0.8f);
    EXPECT_NEAR(boundsOf(tower).max.y, 16.0f, 1e-5f);
    const MeshBuilder roof = verticesOfColour(mesh, {0.48f, 0.20f, 0.16f});
    EXPECT_EQ(roof[0].material, MATERIAL_ROOF);
    EXPECT_NEAR(boundsOf(roof).min.y, 16.0f, 1e-5f);
}

TEST(School, TheClockLooksToTheFront) {
    const MeshBuilder mesh = draw(addSchool);
    const MeshBuilder face = verticesOfColour(mesh, {0.97f, 0.97f, 0.95f});
    const Bounds bounds = boundsOf(face);
    ASSERT_EQ(face.size(), 6u);
    EXPECT_EQ(face[0].normal, (Vec3{0, 0, 1}));
    EXPECT_EQ(face[0].emissive, 0.5f);
    EXPECT_NEAR((bounds.min.y + bounds.max.y) / 2.0f, 12.6f, 1e-5f);
    EXPECT_GT(bounds.min.z, boundsOf(verticesOfColour(mesh, {0.92f, 0.80f, 0.52f})).max.z);
    const MeshBuilder hands = verticesOfColour(mesh, {0.12f, 0.12f, 0.12f});
    EXPECT_EQ(hands.size(), 60u);
    EXPECT_GT(boundsOf(hands).max.z, bounds.max.z);
}

TEST(School, TheYardHasALawnACourtAFenceAndAFlag) {
    const MeshBuilder mesh = draw(addSchool);
    EXPECT_TRUE(hasFlatQuad(mesh, -4, 4, -4, 4, 0.72f, {0.40f, 0.64f, 0.32f}, MATERIAL_TERRAIN));
    EXPECT_EQ(verticesOfColour(mesh, {0.86f, 0.78f, 0.58f}).size(), 6u);
    EXPECT_NEAR(boundsOf(verticesOfColour(mesh, STEEL_GREY)).max.y, 9.0f, 1e-5f) << "the mast";
    EXPECT_EQ(verticesOfColour(mesh, {0.85f, 0.20f, 0.20f}).size(), 6u);
    EXPECT_NEAR(boundsOf(verticesOfColour(mesh, PALE_TRIM)).max.z, 3.85f, 1e-5f) << "the fence";
    const Bounds bounds = boundsOf(mesh);
    EXPECT_GE(bounds.min.x, -4.0f);
    EXPECT_LE(bounds.max.x, 4.0f);
}

TEST(BusDepot, TheHallHasItsRoofAndThreeBaysOfFourSlats) {
    const MeshBuilder mesh = draw(addBusDepot);
    EXPECT_EQ(mesh[0].material, MATERIAL_WALL);
    EXPECT_EQ(mesh[0].emissive, 0.6f);
    EXPECT_EQ(verticesOfColour(mesh, {0.28f, 0.34f, 0.42f})[0].material, MATERIAL_ROOF);
    EXPECT_EQ(verticesOfColour(mesh, {0.18f, 0.19f, 0.21f}).size(), 3u * 30u);
    EXPECT_EQ(verticesOfColour(mesh, {0.62f, 0.64f, 0.66f}).size(), 3u * 4u * 30u);
    EXPECT_EQ(verticesOfColour(mesh, {0.16f, 0.17f, 0.19f}).size(), 30u) << "one rooftop unit";
}

TEST(BusDepot, ThreeBoardsAreLit) {
    const MeshBuilder mesh = draw(addBusDepot);
    for (const float glow : {0.4f, 0.5f, 0.6f})
        EXPECT_EQ(std::count_if(mesh.begin(), mesh.end(),
                                [&](const Vertex& vertex) {
                                    return static_cast<int>(vertex.material) == MATERIAL_PLAIN &&
                                           vertex.emissive == glow;
                                }),
                  30)
            << glow;
}

TEST(BusDepot, StaysInItsFootprintAndIsAboutFiveHigh) {
    const Bounds bounds = boundsOf(draw(addBusDepot));
    expectNear(bounds.min, {-3.2f, 0, -3.2f});
    expectNear(bounds.max, {3.2f, 5.85f, 3.2f});
}

static const Vec3 PATH = {0.72f, 0.70f, 0.66f};
static const Vec3 POND = {0.20f, 0.44f, 0.58f};
static const Vec3 RED_BED = {0.85f, 0.30f, 0.38f};
static const Vec3 YELLOW_BED = {0.92f, 0.78f, 0.25f};
static const Vec3 BENCH_WOOD = {0.55f, 0.38f, 0.24f};

TEST(Park, LawnPathPondAndBedsLieOverOneAnother) {
    const MeshBuilder mesh = draw(addPark);
    EXPECT_TRUE(hasFlatQuad(mesh, -4, 4, -4, 4, 0.72f, {0.36f, 0.62f, 0.30f}, MATERIAL_TERRAIN));
    EXPECT_TRUE(hasFlatQuad(mesh, -3.5f, 3.5f, -3.5f, 3.5f, 0.74f, {0.40f, 0.68f, 0.34f}, MATERIAL_TERRAIN));
    EXPECT_TRUE(hasFlatQuad(mesh, 2.2f, 3.6f, -0.6f, 0.8f, 0.76f, YELLOW_BED, MATERIAL_PLAIN));
    for (const Vec3& colour : {PATH, RED_BED, POND})
        EXPECT_GT(boundsOf(verticesOfColour(mesh, colour)).min.y, 0.75f);
    EXPECT_EQ(boundsOf(mesh).min.y, 0.72f) << "nothing of a park is sunk";
}

TEST(Park, ThePondHasARimOfFourBoxesAndAFountain) {
    const MeshBuilder mesh = draw(addPark);
    const Bounds pond = boundsOf(verticesOfColour(mesh, POND));
    const MeshBuilder stone = verticesOfColour(mesh, {0.62f, 0.61f, 0.58f});
    EXPECT_EQ(stone.size(), 4u * 30u + 8u * 9u) << "rim and basin";
    const Bounds rim = boundsOf(MeshBuilder(stone.begin(), stone.begin() + 120));
    EXPECT_EQ(rim.min.x, pond.min.x);
    EXPECT_EQ(rim.max.z, pond.max.z);
    EXPECT_GT(rim.max.y, pond.max.y);
    const Bounds water = boundsOf(verticesOfColour(mesh, {0.80f, 0.90f, 0.95f}));
    EXPECT_NEAR((water.min.x + water.max.x) / 2.0f, (pond.min.x + pond.max.x) / 2.0f, 0.05f);
}

TEST(Park, TwoLampPostsGlow) {
    const std::vector<Vec3> lamps = lampsOf(draw(addPark));
    ASSERT_EQ(lamps.size(), 2u);
    EXPECT_NEAR(lamps[0].y, 0.72f + 2.6f, 1e-5f);
    EXPECT_EQ(lamps[0].y, lamps[1].y);
}

TEST(Park, TheBenchIsFourBoxes) {
    const MeshBuilder mesh = draw(addPark);
    EXPECT_EQ(verticesOfColour(mesh, BENCH_WOOD).size(), 60u) << "seat and back";
    const Bounds seat = boundsOf(verticesOfColour(mesh, BENCH_WOOD));
    EXPECT_NEAR((seat.min.x + seat.max.x) / 2.0f, 0.9f, 1e-5f);
}

// Whether two pieces share any ground.
static bool overlap(const Bounds& a, const Bounds& b) {
    return a.min.x < b.max.x && b.min.x < a.max.x && a.min.z < b.max.z && b.min.z < a.max.z;
}

// Path, pond and the two flower beds, which nothing stands in.
static std::vector<Bounds> freeGround(const MeshBuilder& park) {
    std::vector<Bounds> pieces;
    for (const Vec3& colour : {PATH, POND, RED_BED, YELLOW_BED})
        pieces.push_back(boundsOf(verticesOfColour(park, colour)));
    return pieces;
}

TEST(Park, BenchAndLampPostsStandBesideThePath) {
    const MeshBuilder mesh = draw(addPark);
    const Bounds path = boundsOf(verticesOfColour(mesh, PATH));
    std::vector<Bounds> furniture = {boundsOf(verticesOfColour(mesh, BENCH_WOOD))};
    for (const Vec3& lamp : lampsOf(mesh))
        furniture.push_back({lamp - Vec3{0.06f, 0, 0.06f}, lamp + Vec3{0.06f, 0, 0.06f}}); // its post
    for (const Bounds& piece : furniture) {
        for (const Bounds& ground : freeGround(mesh)) EXPECT_FALSE(overlap(piece, ground)) << piece.min.x;
        EXPECT_LT(path.min.z - piece.max.z, 0.3f);
        EXPECT_TRUE(path.min.x < piece.min.x && piece.max.x < path.max.x);
    }
}

// The trunks of a park's trees.
static std::vector<Bounds> trunksOf(const MeshBuilder& mesh) {
    const MeshBuilder wood = verticesOfColour(mesh, {0.40f, 0.28f, 0.18f});
    std::vector<Bounds> trunks;
    for (size_t i = 0; i + 30 <= wood.size(); i += 30)
        trunks.push_back(boundsOf(MeshBuilder(wood.begin() + i, wood.begin() + i + 30)));
    return trunks;
}

static Lot parkLot(int x, int y) {
    Lot lot = makeLot(hash01(static_cast<uint32_t>(x), static_cast<uint32_t>(y), 5));
    lot.x = static_cast<float>(x) * 8.0f + 4.0f;
    lot.z = static_cast<float>(y) * 8.0f + 4.0f;
    return lot;
}

TEST(Park, FiveTreesStandClearOfPondPathAndFlowersAndReachNoNeighboursWall) {
    for (int x = 0; x < 96; x += 7)
        for (int y = 0; y < 96; y += 5) {
            const MeshBuilder mesh = draw(addPark, parkLot(x, y));
            const std::vector<Bounds> trunks = trunksOf(mesh);
            ASSERT_EQ(trunks.size(), 5u);
            for (const Bounds& trunk : trunks) {
                const Vec3 middle = (trunk.min + trunk.max) * 0.5f;
                EXPECT_FALSE(middle.x > -2.4f && middle.x < 2.6f && middle.z > -1.6f && middle.z < 2.0f);
                for (const Bounds& ground : freeGround(mesh))
                    EXPECT_FALSE(overlap(trunk, ground)) << x << ", " << y;
                EXPECT_NEAR(trunk.max.x - trunk.min.x, 0.4f, 1e-4f);
                EXPECT_NEAR(trunk.min.y, 0.72f, 1e-4f);
            }
            const Bounds bounds = boundsOf(mesh);
            EXPECT_GE(std::min(bounds.min.x, bounds.min.z), -4.8f);
            EXPECT_LE(std::max(bounds.max.x, bounds.max.z), 4.8f);
        }
}

TEST(Park, ATreeIsASizedCrownOnItsTrunk) {
    int roundCount = 0;
    int coneCount = 0;
    for (int x = 0; x < 40; x++) {
        const Lot lot = parkLot(x, 48);
        const MeshBuilder mesh = draw(addPark, lot);
        for (const Bounds& trunk : trunksOf(mesh)) {
            const float size = (trunk.max.y - trunk.min.y) / 1.6f;
            EXPECT_GE(size, 0.8f + 0.5f * lot.t - 1e-4f);
            EXPECT_LE(size, 0.8f + 0.5f * lot.t + 0.3f + 1e-4f);

            // The crown's vertices follow those of its trunk.
            const Vec3 foot = {(trunk.min.x + trunk.max.x) / 2.0f, trunk.max.y,
                               (trunk.min.z + trunk.max.z) / 2.0f};
            for (size_t i = 0; i + 30 < mesh.size(); i += 3) {
                if (length(mesh[i].position - Vec3{trunk.max.x, trunk.min.y, trunk.min.z}) > 1e-5f) continue;
                const Vec3 leaves = mesh[i + 30].colour;
                const bool rounded = bool(hasFrustum(mesh, foot, 1.5f * size, 2.8f * size, 0.4f * size, 7,
                                                     leaves, MATERIAL_TERRAIN));
                const bool cone =
                    bool(hasFrustum(mesh, foot, 1.5f * size, 4.2f * size, 0.0f, 7, leaves, MATERIAL_TERRAIN));
                EXPECT_NE(rounded, cone);
                roundCount += rounded;
                coneCount += cone;
                break;
            }
        }
    }
    EXPECT_EQ(roundCount + coneCount, 200);
    EXPECT_NEAR(roundCount, 110, 20) << "a little more than half are round";
}
