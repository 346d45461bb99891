// Roads, trees, traffic and the highlight in real pixels, from the city to the picture.
#include "sim/city_helpers.h"
#include "view/picture/shading.h"
#include "view/street/street_life_mesh.h"
#include "view/world/hover.h"
#include "view/world/rebuild.h"
#include "view/world/road_mesh.h"

#include <gtest/gtest.h>

constexpr float NOON = 12.5f;
constexpr float MIDNIGHT = 0.0f;

constexpr Vec3 OVERVIEW = {410, 60, 440};
constexpr Vec3 SOUTH_EAST = {398, 16, 400}; // of the car
constexpr Vec3 SOUTH_WEST = {378, 16, 400};

// Level grass with a street along x through cells (44, 48) to (52, 48).
class StreetPicture : public ShadingTest {
protected:
    StreetPicture() {
        layRoads(city, 44, 48, 52, 48);
        city.overlayDirty = 1;
    }

    void look(const Vec3& eye = OVERVIEW, float hour = NOON) {
        params = lookFrom(eye, {388, 10, 388}, hour);
        updateWorldMeshes(meshes, city);
        buildStreetLifeMesh(meshes, city, life);
        picture = draw(params);
    }

    Vec3 colour(const Vec3& point) const { return colourAt(picture, params, point); }

    // Of the middle of a cell, at the height of the ground.
    Vec3 cellColour(int x, int y) const {
        return colour({8.0f * static_cast<float>(x) + 4.0f, 10.0f, 8.0f * static_cast<float>(y) + 4.0f});
    }

    // Eastwards, on the south side of the street's middle cell.
    void addCar() {
        Vehicle car;
        car.fromX = 48;
        car.toX = 49;
        car.fromY = car.toY = 48;
        life.vehicles.push_back(car);
    }

    City city = flatCity();
    StreetLife life;
    FrameParams params;
    Picture picture;
};

static bool isGreenish(const Vec3& colour) {
    return colour.y > colour.x * 1.2f && colour.y > colour.z * 1.2f;
}
static float brightness(const Vec3& colour) { return colour.x + colour.y + colour.z; }

TEST_F(StreetPicture, AStreetIsGreyOnGreenLand) {
    look();
    for (int x = 44; x <= 52; x++) {
        EXPECT_FALSE(isGreenish(cellColour(x, 48))) << x;
        EXPECT_LT(brightness(cellColour(x, 48)), 0.6f * brightness(cellColour(x, 47))) << x;
        EXPECT_TRUE(isGreenish(cellColour(x, 47))) << x;
        EXPECT_TRUE(isGreenish(cellColour(x, 49))) << x;
    }
    EXPECT_TRUE(isGreenish(cellColour(53, 48)));
}

// Beyond its end a cell of road would have a mark, so that a pixel which its rim cuts must not be shaded
// there.
TEST_F(StreetPicture, NoDashesFlickerWhereTheCellsOfARoadMeet) {
    layRoads(city, 48, 30, 48, 60);
    MeshBuilder unmarked; // every place on a cell is its start
    buildRoadMesh(unmarked, city, OVERLAY_NORMAL);
    for (Vertex& vertex : unmarked) vertex.v = 0.0f;

    int marked = 0;
    for (const Vec3& eye : {OVERVIEW, Vec3{300, 30, 380}, {388, 90, 520}, {520, 45, 400}, {470, 140, 330}}) {
        city.roadsDirty = 1;
        look(eye);
        uploadMesh(meshes.roadMesh, unmarked, false);
        meshes.roadMesh.fingerprint = 0;
        marked += differentPixels(picture, draw(params));
    }
    EXPECT_LE(marked, 4) << "a sample right on the rim may show one";
}

TEST_F(StreetPicture, AStreetThatIsRemovedLeavesThePictureOfBefore) {
    look();
    const Picture before = picture;
    city.cells[cellIndex(48, 48)].road = ROAD_NONE;
    city.roadsDirty = city.overlayDirty = 1;
    look();
    EXPECT_TRUE(isGreenish(cellColour(48, 48)));
    EXPECT_NE(picture.rgba, before.rgba);
    city.cells[cellIndex(48, 48)].road = ROAD_STREET;
    city.roadsDirty = city.overlayDirty = 1;
    look();
    EXPECT_EQ(picture.rgba, before.rgba);
}

TEST_F(StreetPicture, TheTrafficOverlayPaintsTheRoadsFromGreenToRed) {
    city.trafficLoad[cellIndex(48, 48)] = 0.5f;
    city.trafficLoad[cellIndex(50, 48)] = 1.0f;
    setOverlay(meshes, OVERLAY_TRAFFIC);
    look();
    const Vec3 empty = cellColour(46, 48);
    const Vec3 busy = cellColour(48, 48);
    const Vec3 full = cellColour(50, 48);
    EXPECT_TRUE(isGreenish(empty));
    EXPECT_TRUE(busy.x > 2.0f * busy.z && busy.y > 2.0f * busy.z) << "yellow";
    EXPECT_TRUE(full.x > 2.0f * full.y && full.x > 2.0f * full.z) << "red";
}

TEST_F(StreetPicture, ATreeStandsOnItsCell) {
    look();
    const Vec3 tip = {8.0f * (hash01(47, 46, 21) * 0.4f + 47.3f),
                      10.0f + 7.0f * (hash01(47, 46, 23) * 0.5f + 0.8f),
                      8.0f * (hash01(47, 46, 22) * 0.4f + 46.3f)};
    const Vec3 middle = {tip.x, (10.0f + tip.y) / 2.0f, tip.z};
    const Vec3 grass = colour(middle);
    city.cells[cellIndex(47, 46)].hasTrees = 1;
    city.zonesDirty = 1;
    look();
    EXPECT_TRUE(isGreenish(colour(middle)));
    EXPECT_LT(brightness(colour(middle)), 0.7f * brightness(grass));
}

TEST_F(StreetPicture, ACarStandsInItsLaneAndIsGoneWithItsVehicle) {
    const Vec3 side = {387.3f, 10.8f, 390.52f};
    look(SOUTH_EAST);
    const Vec3 asphalt = colour(side);
    addCar();
    look(SOUTH_EAST);
    EXPECT_TRUE(colour(side).x > 2.0f * colour(side).y && colour(side).x > 2.0f * colour(side).z) << "red";
    life.vehicles.clear();
    look(SOUTH_EAST);
    EXPECT_EQ(colour(side), asphalt);
}

TEST_F(StreetPicture, LampsShineAtNight) {
    addCar();
    look(SOUTH_EAST, MIDNIGHT);
    EXPECT_GT(brightness(colour({389.44f, 10.72f, 390.32f})), 2.0f);
    EXPECT_LT(brightness(cellColour(47, 48)), 0.3f);
    look(SOUTH_WEST, MIDNIGHT);
    const Vec3 tailLamp = colour({386.56f, 10.72f, 390.32f});
    EXPECT_GT(brightness(tailLamp), 1.5f);
    EXPECT_GT(tailLamp.x, tailLamp.z * 1.2f);
}

TEST_F(StreetPicture, TheHighlightTintsItsCellOnTheRoadsAsWell) {
    look();
    const Vec3 before = cellColour(48, 48);
    updateHover(meshes, city, 48, 48, true, {1.0f, 0.35f, 0.3f});
    look();
    const Vec3 refused = cellColour(48, 48);
    EXPECT_TRUE(refused.x > 2.0f * refused.y && refused.x > 2.0f * refused.z);
    EXPECT_FALSE(isGreenish(cellColour(48, 48)));
    updateHover(meshes, city, 48, 48, false, {});
    look();
    EXPECT_EQ(cellColour(48, 48), before);
}
