// The game's shading draws the picture of its plain form, in real pixels of a town in all its weathers.
#include "view/picture/plain_shading.h"

#include "sim/city_helpers.h"
#include "sim/map_generation.h"
#include "view/picture/shading.h"
#include "view/street/street_life_mesh.h"
#include "view/world/hover.h"
#include "view/world/rebuild.h"

struct Scene {
    const char* name;
    Vec3 eye;
    Vec3 target;
    float hour;
    int overcast = 0;
    int calendarDay = 100; // in June
    Overlay overlay = OVERLAY_NORMAL;
    int shadowSize = 2048;
};

constexpr int WINTER_DAY = 300;
constexpr int AUTUMN_DAY = 200;

// clang-format off
static const Scene SCENES[] = {
    {"noon over the town",       {430, 110, 480}, {352, 10, 392}, 12.5f},
    {"the streets from above",   {352, 70, 400},  {352, 10, 388}, 9.5f},
    {"the low sun in the glass", {300, 30, 372},  {400, 34, 352}, 16.8f},
    {"the lights of the night",  {370, 40, 310},  {350, 22, 372}, 23.0f},
    {"rain",                     {250, 60, 470},  {352, 10, 392}, 11.0f, 1, AUTUMN_DAY, OVERLAY_NORMAL, 1024},
    {"winter, without shadows",  {420, 50, 330},  {352, 20, 388}, 14.0f, 0, WINTER_DAY, OVERLAY_NORMAL, 0},
    {"the sun over the lake",    {398, 15, 440},  {320, 12, 472}, 17.0f},
    {"power in the morning",     {400, 60, 440},  {352, 10, 396}, 6.8f, 0, 100, OVERLAY_POWER, 1024},
};
// clang-format on

// A street between two rows of lots on either side, with every model of a building, on wild land beside a
// lake.
static City makeTown() {
    City city;
    generateMap(city, 1);
    layRoads(city, 36, 48, 52, 48);
    layRoads(city, 48, 40, 48, 53);
    city.cells[cellIndex(44, 48)].busStop = 1;

    const int rows[] = {46, 47, 49, 50};
    int count = 0;
    for (uint8_t kind = 0; kind < KIND_COUNT; kind++)
        for (uint8_t level = 1; level <= (isGrownKind(kind) ? 3 : 1); level++, count++)
            addBuilding(city, 40 + count % 8, rows[count / 8], kind, level);
    addBuilding(city, 47, 50, KIND_HOMES, 3).progress = 0.4f;
    for (int x = 40; x < 48; x++) addBuilding(city, x, 45, KIND_HOMES, 3); // many windows
    addBuilding(city, 35, 49, KIND_OFFICE_TOWER, 2);                       // shades another in the evening

    for (int y = 54; y <= 62; y++)
        for (int x = 38; x <= 50; x++) {
            city.heights[y * CORNER_SIDE + x] = 3.0f;
            city.cells[cellIndex(x, y)].hasTrees = 0;
        }
    for (int x = 36; x < 52; x++) city.powerField[cellIndex(x, 49)] = static_cast<float>(x - 36) / 16.0f;
    return city;
}

static StreetLife makeTraffic() {
    StreetLife life;
    for (int x = 38; x < 47; x += 2) {
        Vehicle vehicle;
        vehicle.fromX = static_cast<int16_t>(x);
        vehicle.toX = static_cast<int16_t>(x + 1);
        vehicle.fromY = vehicle.toY = 48;
        vehicle.colourIndex = static_cast<uint8_t>(x % 7);
        vehicle.isBus = x == 42;
        life.vehicles.push_back(vehicle);
    }
    return life;
}

class PlainShading : public ShadingTest {
protected:
    void SetUp() override {
        ShadingTest::SetUp();
        if (HasFatalFailure()) return;
        std::string log;
        ASSERT_TRUE(initRenderer(plain, &log) && usePlainShading(plain, &log)) << log;
    }
    void TearDown() override {
        destroyRenderer(plain);
        ShadingTest::TearDown();
    }

    Renderer plain;
};

TEST_F(PlainShading, IsTheGamesToOneStepOfAChannel) {
    City city = makeTown();
    const StreetLife life = makeTraffic();
    for (const Scene& scene : SCENES) {
        city.calendarDay = scene.calendarDay;
        setOverlay(meshes, scene.overlay);
        updateWorldMeshes(meshes, city);
        buildStreetLifeMesh(meshes, city, life);
        updateHover(meshes, city, 46, 51, true, {0.45f, 1.0f, 0.5f});

        FrameParams params = lookFrom(scene.eye, scene.target, scene.hour);
        params.overcast = scene.overcast;
        params.shadowSize = scene.shadowSize;
        params.time = 3.3f;
        const Picture picture = draw(params);
        renderFrame(plain, params, meshes);
        EXPECT_EQ(differentPixels(picture, readPicture(), 1), 0) << scene.name;
    }
}
