#include "program/demo_city.h"

#include "app/game_fixture.h"
#include "sim/city_helpers.h"

#include <iterator>

class DemoCityTest : public GameTest {
protected:
    // Homes in the west, shops in the north-east, factories in the south-east, but under the other buildings.
    int expectedZone(int x, int y) {
        if (x < 41 || x > 55 || y < 43 || y > 53 || x == 48 || y == 48 || cell(x, y).buildingIndex >= 0)
            return ZONE_NONE;
        if (x < 48) return ZONE_RESIDENTIAL;
        return y < 48 ? ZONE_COMMERCIAL : ZONE_INDUSTRIAL;
    }
};

TEST_F(DemoCityTest, StandsAsItIsToldEachTime) {
    app.settings.tutorialDone = false;
    buildDemoCity(app, 0);
    for (int y = 0; y < GRID_SIZE; y++)
        for (int x = 0; x < GRID_SIZE; x++) {
            const bool street = (y == 48 && x >= 40 && x <= 56) || (x == 48 && y >= 42 && y <= 54);
            const bool avenue = x == 48 && y == 48;
            ASSERT_EQ(cell(x, y).road, avenue   ? ROAD_AVENUE
                                       : street ? ROAD_STREET
                                                : ROAD_NONE)
                << x << ", " << y;
            ASSERT_EQ(cell(x, y).busStop, y == 48 && (x == 51 || x == 45)) << x << ", " << y;
            ASSERT_EQ(cell(x, y).zone, expectedZone(x, y)) << x << ", " << y;
            ASSERT_EQ(cell(x, y).district, x >= 41 && x <= 44 && y >= 43 && y <= 47) << x << ", " << y;
        }
    const struct {
        int kind, x, y;
    } buildings[] = {
        {KIND_GAS_POWER_PLANT, 49, 42}, {KIND_WATER_PUMP, 47, 54},     {KIND_PARK, 49, 54},
        {KIND_SCHOOL, 47, 42},          {KIND_POLICE_STATION, 49, 50}, {KIND_FIRE_STATION, 49, 45}};
    ASSERT_EQ(app.city.buildings.size(), std::size(buildings)); // the hospital is too dear
    for (size_t i = 0; i < std::size(buildings); i++) {
        EXPECT_EQ(app.city.buildings[i].kind, buildings[i].kind) << i;
        EXPECT_EQ(app.city.buildings[i].x, buildings[i].x) << i;
        EXPECT_EQ(app.city.buildings[i].y, buildings[i].y) << i;
    }
    EXPECT_EQ(app.speed, 0);
    EXPECT_EQ(app.tutorialStep, -1);
    EXPECT_THAT(asked(), testing::IsEmpty()); // the settings are not written
    EXPECT_THAT(heard(), testing::IsEmpty());
    EXPECT_EQ(app.camera.target, (Vec3{388.0f, 0.0f, 388.0f}));
    EXPECT_EQ(app.camera.yaw, 0.7f);
    EXPECT_EQ(app.camera.pitch, 0.75f);
    EXPECT_EQ(app.camera.distance, 150.0f);
    EXPECT_EQ(app.lastEventCount, app.city.eventCount);

    StreetLife expected;
    for (int step = 0; step < 300; step++) updateStreetLife(expected, app.city, 0.1f, 400);
    EXPECT_TRUE(app.streetLife == expected);
    EXPECT_FALSE(expected.vehicles.empty());
}

TEST_F(DemoCityTest, GrowsInItsDays) {
    buildDemoCity(app, 60);
    EXPECT_EQ(app.city.day, 60);
    EXPECT_GT(app.city.buildings.size(), 20u);
    EXPECT_GT(app.city.population, 0);
    EXPECT_EQ(brokenInvariant(app.city), "");
}
