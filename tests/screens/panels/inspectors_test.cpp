#include "app/tools.h"
#include "screens/hud_fixture.h"
#include "sim/city_helpers.h"
#include "ui/words/hud_text.h"
#include "ui/words/languages.h"

#include <cmath>

class InspectorTest : public HudTest {
protected:
    Building& select(uint8_t kind, uint8_t level = 1) {
        Building& building = addWorkingBuilding(app.city, 20, 21, kind, level);
        selectCell(app, 20, 21);
        return building;
    }

    void expectStatus(const char* status, UiColor color, float y = 102.0f) {
        draw();
        expectText("Status", 988, y, 15, colMuted);
        expectText(status, 1256, y, 15, color, ALIGN_RIGHT);
    }

    // The pill of a meter without its rounded ends.
    void expectMeter(const char* caption, float y, float value, UiColor fill) {
        expectText(caption, 988, y, 14, colMuted);
        expectText(std::to_string(static_cast<int>(value * 100.0f + 0.5f)) + "%", 1256, y, 14, colText,
                   ALIGN_RIGHT);
        EXPECT_TRUE(drew({992, y + 19, value * 268.0f - 8.0f, 9}, fill)) << caption;
    }
};

constexpr UiColor TRAFFIC = {0.95f, 0.70f, 0.25f, 1.0f};

TEST_F(InspectorTest, AHouseThatWorks) {
    Building& home = select(KIND_HOMES, 2);
    home.occupants = 27;
    home.happiness = 62.5f;
    home.congestion = 0.25f;
    home.pollutionHere = 0.5f;
    cell(20, 21).district = 3;
    expectStatus("Working", colGood, 126.0f);
    expectText("Homes", 988, 68, 20, colGold, ALIGN_LEFT, true);
    expectText("Level 2", 988, 102, 15, colMuted);
    expectText("Residents: 27", 988, 150, 15, colText);
    expectText("District", 988, 174, 15, colMuted);
    expectText("3", 1256, 174, 15, colText, ALIGN_RIGHT);
    expectText("Power: Yes", 988, 198, 15, colText);
    expectText("Water: Yes", 988, 222, 15, colText);
    expectMeter("Happiness", 256, 0.625f, colGood);
    expectMeter("Traffic", 296, 0.25f, TRAFFIC);
    expectMeter("Pollution", 336, 0.5f, colFrame);
    expectText("Cell 20, 21", 988, 600, 14, colMuted);
}

TEST_F(InspectorTest, AWorkplaceTellsItsStaff) {
    Building& shops = select(KIND_SHOPS, 3);
    shops.occupants = 20;
    shops.staffing = 0.555f;
    draw();
    expectText("Workers: 20 of 36", 988, 150, 15, colText);
    expectText("Efficiency: 56%", 988, 174, 15, colText);
    expectText("District", 988, 198, 15, colMuted);
    expectText("None", 1256, 198, 15, colText, ALIGN_RIGHT);
}

TEST_F(InspectorTest, AServiceHasNoLevel) {
    select(KIND_SCHOOL).occupants = 9;
    expectStatus("Working", colGood);
    EXPECT_FALSE(says("Level 1"));
    EXPECT_TRUE(says("Workers: 9 of 25"));
}

TEST_F(InspectorTest, TheFirstThingMissingIsTheStatus) {
    Building& school = select(KIND_SCHOOL);
    school.roadAccess = school.powered = school.watered = 0;
    school.progress = 0.999f;
    expectStatus("Under construction: 99%", colGold);
    EXPECT_FALSE(says("District"));
    EXPECT_FALSE(says("Cell 20, 21"));
    school.progress = 1.0f;
    expectStatus("No road access", colBad);
    school.roadAccess = 1;
    expectStatus("No power", colBad);
    school.powered = 1;
    expectStatus("No water", colBad);
    school.watered = 1;
    expectStatus("Working", colGood);
}

TEST_F(InspectorTest, PowerAndWaterHousesNeedNeither) {
    for (uint8_t kind = KIND_GAS_POWER_PLANT; kind < KIND_COUNT; kind++) {
        Building& source = select(kind);
        source.powered = source.watered = 0;
        expectStatus("Working", colGood);
        expectText("Power: No", 988, 198, 15, colText);
        expectText("Water: No", 988, 222, 15, colText);
        app.city.buildings.clear();
    }
}

TEST_F(InspectorTest, MissingSupplyIsRedWhereItIsNeeded) {
    Building& depot = select(KIND_BUS_DEPOT);
    depot.powered = 0;
    draw();
    expectText("Power: No", 988, 198, 15, colBad);
    expectText("Water: Yes", 988, 222, 15, colText);
}

TEST_F(InspectorTest, DaysWithoutServicePushTheRestDown) {
    select(KIND_HOMES).unservedDays = 4;
    draw();
    expectText("No service for 4 days", 988, 174, 15, colBad);
    expectText("District", 988, 198, 15, colMuted);
}

TEST_F(InspectorTest, TheFirstDayWithoutServiceIsTold) {
    Building& home = select(KIND_HOMES);
    draw();
    EXPECT_FALSE(says("No service for 0 days"));
    home.unservedDays = 1;
    draw();
    EXPECT_TRUE(says("No service for 1 days"));
}

TEST_F(InspectorTest, ALongNameShrinksBesideTheCross) {
    int shrunk = 0;
    for (int language = 0; language < LANGUAGE_COUNT; language++) {
        setCurrentLanguage(language);
        fontsSetLanguage(app.fonts, language);
        for (uint8_t kind = 0; kind < KIND_COUNT; kind++) {
            select(kind);
            draw();
            const Label name = textOf(buildingName(kind));
            EXPECT_LE(name.rect.w, 232.0f) << name.words;
            shrunk += name.size < 20;
            app.city.buildings.clear();
        }
    }
    EXPECT_GT(shrunk, 0);
    setCurrentLanguage(0);
}

TEST_F(InspectorTest, ABuildingOfAWildSaveIsShownSafely) {
    Building& wild = select(200, 255);
    wild.x = -32768;
    wild.y = 32767;
    wild.occupants = -2147483647 - 1;
    wild.happiness = std::nanf("");
    wild.congestion = -1e30f;
    wild.pollutionHere = 1e38f;
    wild.staffing = INFINITY;
    expectStatus("Working", colGood);
    EXPECT_TRUE(says("Cell -32768, 32767"));
    wild.kind = KIND_FACTORY;
    draw();
    EXPECT_TRUE(says("Workers: -2147483648 of " + std::to_string(8 * 255 * 255)));
    wild.progress = -1e30f;
    draw();
    EXPECT_TRUE(says("Under construction: -2147483648%"));
    wild.progress = std::nanf("");
    draw();
    EXPECT_TRUE(says("Under construction: 0%"));
}

TEST_F(InspectorTest, ARoadCell) {
    layRoads(app.city, 30, 31, 30, 31);
    const int index = cellIndex(30, 31);
    app.city.trafficLoad[index] = 0.25f;
    app.city.powerField[index] = 0.5f;
    app.city.waterField[index] = 0.75f;
    app.city.landValue[index] = 0.6f;
    app.city.pollution[index] = 0.4f;
    cell(30, 31).district = 8;
    selectCell(app, 30, 31);
    draw();
    expectText("Street", 988, 68, 20, colGold, ALIGN_LEFT, true);
    expectMeter("Traffic", 104, 0.25f, TRAFFIC);
    expectText("Bus stop: No", 988, 144, 15, colText);
    expectMeter("Power", 168, 0.5f, {0.98f, 0.84f, 0.22f, 1.0f});
    expectMeter("Water", 208, 0.75f, {0.20f, 0.62f, 1.00f, 1.0f});
    expectMeter("Land value", 248, 0.6f, colGood);
    expectMeter("Pollution", 288, 0.4f, colFrame);
    expectText("District", 988, 328, 15, colMuted);
    expectText("8", 1256, 328, 15, colText, ALIGN_RIGHT);
    expectText("Cell 30, 31", 988, 600, 14, colMuted);

    cell(30, 31).busStop = 1;
    cell(30, 31).road = ROAD_AVENUE;
    draw();
    EXPECT_TRUE(says("Avenue"));
    expectText("Bus stop: Yes", 988, 144, 15, colGood);
}

TEST_F(InspectorTest, ACellWithoutARoadIsNamedAfterItsZone) {
    constexpr const char* NAMES[] = {"None", "Residential", "Commercial", "Offices", "Industrial", "None"};
    selectCell(app, 30, 31);
    for (const int zone : {0, 1, 2, 3, 4, 5, 255}) {
        cell(30, 31).zone = static_cast<uint8_t>(zone);
        draw();
        expectText(NAMES[std::min(zone, 5)], 988, 68, 20, colGold, ALIGN_LEFT, true);
        EXPECT_FALSE(says("Bus stop: No"));
        expectText("Power", 988, 104, 14, colMuted);
    }
}
