#include "program/demo_city.h"

#include "app/game_fixture.h"
#include "sim/city_helpers.h"

#include <fstream>
#include <iterator>

class DemoCityTest : public GameTest {};

TEST_F(DemoCityTest, StandsAsItIsToldEachTime) {
    app.settings.tutorialDone = false;
    app.settingsPath = folder + "untouched.ini";
    buildDemoCity(app, 0);
    for (int x = 40; x <= 56; x++) EXPECT_NE(cell(x, 48).road, ROAD_NONE);
    for (int y = 42; y <= 54; y++) EXPECT_NE(cell(48, y).road, ROAD_NONE);
    EXPECT_EQ(cell(48, 48).road, ROAD_AVENUE);
    EXPECT_EQ(cell(51, 48).busStop, 1);
    EXPECT_EQ(cell(45, 48).busStop, 1);
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
    EXPECT_EQ(cell(47, 46).zone, ZONE_RESIDENTIAL);
    EXPECT_EQ(cell(41, 53).zone, ZONE_RESIDENTIAL);
    EXPECT_EQ(cell(55, 43).zone, ZONE_COMMERCIAL);
    EXPECT_EQ(cell(55, 53).zone, ZONE_INDUSTRIAL);
    EXPECT_EQ(cell(41, 43).district, 1);
    EXPECT_EQ(cell(45, 43).district, 0);
    EXPECT_EQ(app.speed, 0);
    EXPECT_EQ(app.tutorialStep, -1);
    EXPECT_FALSE(std::ifstream(app.settingsPath).good());
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
