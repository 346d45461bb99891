#include "view/models/construction_site.h"

#include "view/models/model_helpers.h"

#include <cmath>
#include <limits>

static const Vec3 BROWN = {0.58f, 0.44f, 0.27f};
static const Vec3 YELLOW = {0.95f, 0.80f, 0.15f};
static const Vec3 LOAD = {0.62f, 0.46f, 0.30f};

// Around the origin, with the usual half sizes.
static MeshBuilder site(float finalHeight, float progress, float t = 0.5f) {
    MeshBuilder builder;
    addConstructionSite(builder, {0, 0, 0}, 3.2f, 3.2f, finalHeight, progress, t);
    return builder;
}

static size_t ringCount(const MeshBuilder& mesh) { return verticesOfColour(mesh, BROWN).size() / 120; }

TEST(ConstructionSite, TheCoreRisesWithTheProgress) {
    EXPECT_TRUE(hasBox(site(21, 0.5f), {-3.2f, -0.4f, -3.2f}, {3.2f, 10.5f, 3.2f}, CONCRETE));
    EXPECT_TRUE(hasBox(site(63, 0.9f), {-3.2f, -0.4f, -3.2f}, {3.2f, 56.7f, 3.2f}, CONCRETE));
}

TEST(ConstructionSite, TheCoreStartsAtHalfAUnit) {
    EXPECT_TRUE(hasBox(site(21, 0.0f), {-3.2f, -0.4f, -3.2f}, {3.2f, 0.5f, 3.2f}, CONCRETE));
    EXPECT_TRUE(hasBox(site(5, 0.09f), {-3.2f, -0.4f, -3.2f}, {3.2f, 0.5f, 3.2f}, CONCRETE));
}

TEST(ConstructionSite, FourRebarPostsStandOnTheCore) {
    const MeshBuilder mesh = site(20, 0.5f);
    for (const float x : {-2.9f, 2.9f})
        for (const float z : {-2.9f, 2.9f})
            EXPECT_TRUE(hasBox(mesh, {x - 0.08f, 10, z - 0.08f}, {x + 0.08f, 11.1f, z + 0.08f}, STEEL_GREY));
}

TEST(ConstructionSite, FloorRingsStandEveryEighthOfTheHeightAndAtTheTop) {
    const MeshBuilder mesh = site(40, 0.5f); // a floor is 5 high, the core 20
    EXPECT_EQ(ringCount(mesh), 4u);
    for (const float y : {5.0f, 10.0f, 15.0f, 20.0f})
        EXPECT_TRUE(hasBox(mesh, {-3.35f, y - 0.25f, 3.2f}, {3.35f, y, 3.35f}, BROWN)) << y;
}

TEST(ConstructionSite, AFloorIsAtLeastThreePointTwoHigh) {
    EXPECT_EQ(ringCount(site(10, 0.5f)), 2u) << "3.2 and the top at 5";
    EXPECT_EQ(ringCount(site(10, 0.38f)), 1u) << "3.2 is not below 3.8 minus 0.6";
    EXPECT_EQ(ringCount(site(5, 0.0f)), 1u) << "the top alone";
}

TEST(ConstructionSite, TheScaffoldHasTheFinalHeightFromTheFirstDay) {
    const MeshBuilder mesh = site(21, 0.0f);
    for (const float x : {-3.7f, 3.7f})
        for (const float z : {-3.7f, 3.7f})
            EXPECT_TRUE(hasBox(mesh, {x - 0.1f, -0.5f, z - 0.1f}, {x + 0.1f, 21, z + 0.1f}, STEEL_GREY));
}

TEST(ConstructionSite, TheCraneStandsAtTheBackCornerAndItsTopFollowsTheSeed) {
    for (const float t : {0.0f, 0.25f, 1.0f}) {
        const MeshBuilder mesh = site(21, 0.5f, t);
        const float top = 21.0f + 9.0f + 2.0f * t;
        for (const float x : {2.37f, 3.07f})
            for (const float z : {-3.07f, -2.37f})
                EXPECT_TRUE(hasBox(mesh, {x - 0.08f, 0, z - 0.08f}, {x + 0.08f, top, z + 0.08f}, YELLOW));
        ASSERT_EQ(lampsOf(mesh).size(), 1u);
        expectNear(lampsOf(mesh)[0], {2.72f, top + 0.1f, -2.72f});
        EXPECT_NEAR(boundsOf(mesh).max.y, top + 0.38f, 1e-4f) << "the lamp is the highest point";
    }
}

TEST(ConstructionSite, TheMastHasADiagonalOnEachSideEveryFourUnits) {
    // A bar and a diagonal of 6 vertices each on 4 sides.
    const size_t section = 48;
    const size_t low = verticesOfColour(site(5, 0, 0.0f), YELLOW).size();   // 14 high: 4 sections
    const size_t high = verticesOfColour(site(23, 0, 0.0f), YELLOW).size(); // 32 high: 8 sections
    EXPECT_EQ(high - low, 4 * section);
}

TEST(ConstructionSite, TheJibReachesOverTheLotAndCarriesItsCounterweight) {
    const MeshBuilder mesh = site(21, 0.5f, 0.0f); // mast top at 30, the mast at (2.72, -2.72)
    EXPECT_TRUE(hasBox(mesh, {2.72f - 5.6f, 29.1f, -2.92f}, {2.72f + 2.4f, 29.45f, -2.52f}, YELLOW));
    const Bounds weight = boundsOf(verticesOfColour(mesh, {0.25f, 0.25f, 0.27f}));
    EXPECT_GT(weight.min.x, 2.72f) << "behind the mast";
    EXPECT_NEAR(weight.max.y, 29.1f, 1e-4f) << "hangs on the jib";
    EXPECT_TRUE(hasBox(mesh, {2.72f - 4.8f, 28.0f, -2.82f}, {2.37f, 28.15f, -2.62f}, YELLOW))
        << "lower chord";
    const Bounds cab = boundsOf(verticesOfColour(mesh, {0.88f, 0.88f, 0.86f}));
    EXPECT_NEAR(cab.min.y, 27.6f, 1e-4f);
    EXPECT_NEAR(cab.max.y, 29.0f, 1e-4f);
}

TEST(ConstructionSite, TheLoadHangsOverTheCoreAndItsRebarAndRisesWithThem) {
    for (const float progress : {0.0f, 0.3f, 0.9f, 1.0f}) {
        const float coreTop = std::max(21.0f * progress, 0.5f);
        const Bounds load = boundsOf(verticesOfColour(site(21, progress, 0.0f), LOAD));
        EXPECT_GT(load.min.y, coreTop + 1.1f) << "clear of the rebar";
        EXPECT_LT(load.min.y, coreTop + 1.5f) << "about to be set down";
        EXPECT_GT(load.min.x, -3.2f) << "over the core";
        expectNear(load.max - load.min, {1.0f, 0.7f, 1.0f});
    }
}

TEST(ConstructionSite, TheCableRunsFromTheLoadThroughTheHookToTheJib) {
    const MeshBuilder mesh = site(21, 0.5f, 0.0f);
    const Bounds load = boundsOf(verticesOfColour(mesh, LOAD));
    const float x = (load.min.x + load.max.x) / 2.0f;
    EXPECT_NEAR(x, 2.72f - 5.4f, 1e-5f) << "the hook hangs near the end of the jib";
    EXPECT_TRUE(hasBox(mesh, {x - 0.03f, load.max.y, -2.75f}, {x + 0.03f, 29.1f, -2.69f}, STEEL_GREY));
    EXPECT_TRUE(hasBox(mesh, {x - 0.2f, 28.6f, -2.92f}, {x + 0.2f, 29.05f, -2.52f}, STEEL_GREY)) << "hook";
}

TEST(ConstructionSite, AFenceRunsAroundTheLot) {
    MeshBuilder fence;
    addLotFence(fence, TRIM);
    EXPECT_TRUE(contains(site(21, 0.5f), fence));
}

TEST(ConstructionSite, OnlyTheCounterweightReachesOutOfTheLot) {
    const Bounds bounds = boundsOf(site(63, 0.9f));
    EXPECT_GE(bounds.min.x, -4.0f);
    EXPECT_GE(bounds.min.z, -4.0f);
    EXPECT_LE(bounds.max.z, 4.0f);
    EXPECT_LE(bounds.max.x, 4.0f + 1.2f);
}

TEST(ConstructionSite, MovesAsAWholeWithItsCentre) {
    MeshBuilder here = site(21, 0.3f);
    MeshBuilder there;
    addConstructionSite(there, {100, 20, 300}, 3.2f, 3.2f, 21, 0.3f, 0.5f);
    moveVertices(here, 0, {100, 20, 300});
    EXPECT_EQ(here.size(), there.size());
    EXPECT_TRUE(contains(here, there));
}

TEST(ConstructionSite, AppendsToWhatIsThere) {
    MeshBuilder builder;
    addPlainBox(builder, {0, 0, 0}, {1, 1, 1}, BROWN);
    addConstructionSite(builder, {100, 20, 300}, 3.2f, 3.2f, 21, 0.3f, 0.5f);
    EXPECT_EQ(builder[0].position, (Vec3{1, 0, 0}));
}

TEST(ConstructionSite, AProgressOutsideZeroToOneIsHeldToIt) {
    const float infinity = std::numeric_limits<float>::infinity();
    const float notANumber = std::numeric_limits<float>::quiet_NaN();
    for (const float low : {-0.5f, -1e30f, -infinity, notANumber})
        EXPECT_TRUE(isSame(site(21, low), site(21, 0.0f))) << low;
    for (const float high : {1.5f, 1e30f, infinity})
        EXPECT_TRUE(isSame(site(21, high), site(21, 1.0f))) << high;
}

TEST(ConstructionSite, AnAbsurdHeightDoesNotCostAbsurdlyManyVertices) {
    EXPECT_LT(site(9 + 6 * 255, 0.99f).size(), 6000u);
    EXPECT_NEAR(boundsOf(site(9 + 6 * 255, 0.99f, 0.0f)).max.y, 1539.0f + 9.38f, 1e-2f);
}
