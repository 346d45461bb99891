#include "app/tools.h"

#include "app/game_fixture.h"
#include "app/hud_layout.h"
#include "app/picking.h"
#include "sim/build_tools.h"
#include "sim/city_helpers.h"

#include <string>
#include <utility>

using testing::ElementsAre;
using testing::IsEmpty;

class ToolsTest : public GameTest {
protected:
    // The cell that is seen through the middle of a part of the interface.
    std::pair<int, int> cellUnder(UiRect part) {
        input.mouseX = part.x + part.w / 2.0f;
        input.mouseY = part.y + part.h / 2.0f;
        int x = -1;
        int y = -1;
        EXPECT_TRUE(pickCell(app, input, x, y));
        EXPECT_TRUE(pointerOverHud(app, input));
        return {x, y};
    }
    std::vector<std::pair<int, int>> cellsUnderPanels() {
        const HudLayout hud = hudLayout(input.drawableWidth, input.drawableHeight);
        return {cellUnder(hud.toolPanel), cellUnder(hud.rightPanel), cellUnder(hud.bottomBar)};
    }
    // The roads of all cells.
    static std::vector<int> roads(const City& city) {
        std::vector<int> types;
        for (const Cell& each : city.cells) types.push_back(each.road);
        return types;
    }
};

// --- Which tool
// -------------------------------------------------------------------------------------------------

TEST_F(ToolsTest, EveryShortcutTakesItsToolAndCategory) {
    const struct {
        Key key;
        int tool;
        int category;
    } table[] = {
        {KEY_V, 0, 0},  {KEY_R, 1, 1},  {KEY_Y, 2, 1},  {KEY_B, 3, 1},  {KEY_Z, 4, 2},
        {KEY_C, 5, 2},  {KEY_O, 6, 2},  {KEY_I, 7, 2},  {KEY_L, 8, 3},  {KEY_F, 9, 3},
        {KEY_H, 10, 3}, {KEY_K, 11, 3}, {KEY_P, 12, 3}, {KEY_J, 13, 3}, {KEY_G, 14, 4},
        {KEY_M, 15, 4}, {KEY_N, 16, 4}, {KEY_T, 17, 4}, {KEY_U, 18, 5}, {KEY_X, 20, 6},
    };
    for (const auto& row : table) {
        press(row.key);
        EXPECT_EQ(app.currentTool, row.tool);
        EXPECT_EQ(app.currentCategory, row.category) << row.tool;
    }
}

TEST_F(ToolsTest, ACategoryKeepsAToolOfItsOwnAndOtherwiseTakesItsFirst) {
    setTool(app, TOOL_AVENUE);
    setCategory(app, CATEGORY_ROADS);
    EXPECT_EQ(app.currentTool, TOOL_AVENUE);
    setCategory(app, CATEGORY_UTILITIES);
    EXPECT_EQ(app.currentTool, TOOL_GAS_POWER_PLANT);
    setCategory(app, CATEGORY_BULLDOZE);
    EXPECT_EQ(app.currentTool, TOOL_BULLDOZE);
    setCategory(app, CATEGORY_SELECT);
    EXPECT_EQ(app.currentTool, TOOL_SELECT);
}

TEST_F(ToolsTest, NumbersOutsideTheTablesDoNothing) {
    setTool(app, TOOL_PARK);
    for (const int number : {-1, 21, 1000}) {
        setTool(app, number);
        setCategory(app, number);
    }
    EXPECT_EQ(app.currentTool, TOOL_PARK);
    EXPECT_EQ(app.currentCategory, CATEGORY_SERVICES);
}

// --- What a tool would do
// ---------------------------------------------------------------------------------------

// Which tools call the cell valid, as digits and letters in the order of the tools.
static std::string validTools(App& app, int x, int y) {
    std::string valid;
    for (int tool = 0; tool < TOOL_COUNT; tool++) {
        setTool(app, tool);
        if (toolCellValid(app, x, y)) valid += "0123456789ABCDEFGHIJK"[tool];
    }
    return valid;
}

TEST_F(ToolsTest, PreviewOfEachGround) {
    EXPECT_EQ(validTools(app, 10, 10), "012456789ABCDEFGHI"); // grass: all but stop, clear and bulldoze
    cell(11, 10).terrain = TERRAIN_WATER;
    EXPECT_EQ(validTools(app, 11, 10), "0");
    cell(12, 10).road = ROAD_STREET;
    EXPECT_EQ(validTools(app, 12, 10), "023IK");
    cell(12, 10).busStop = 1;
    EXPECT_EQ(validTools(app, 12, 10), "02IK");
    cell(13, 10).zone = ZONE_OFFICES;
    EXPECT_EQ(validTools(app, 13, 10), "0124567IK");
    addBuilding(app.city, 14, 10, KIND_PARK);
    EXPECT_EQ(validTools(app, 14, 10), "0IK");
    EXPECT_EQ(validTools(app, -1, 10), "");
    EXPECT_EQ(validTools(app, 10, 96), "");
}

TEST_F(ToolsTest, ACellWithOnlyADistrictShowsAsInvalidToTheBulldozerThoughItWouldClearIt) {
    cell(10, 10).district = 3;
    setTool(app, TOOL_BULLDOZE);
    EXPECT_FALSE(toolCellValid(app, 10, 10));
    EXPECT_TRUE(bulldoze(app.city, 10, 10));
    EXPECT_EQ(cell(10, 10).district, 0);
}

TEST_F(ToolsTest, ClearDistrictNeedsADistrict) {
    cell(10, 10).district = 3;
    setTool(app, TOOL_CLEAR_DISTRICT);
    EXPECT_TRUE(toolCellValid(app, 10, 10));
    EXPECT_FALSE(toolCellValid(app, 11, 10));
}

TEST_F(ToolsTest, TheHighlightIsWhiteGreenOrRed) {
    point(50, 50);
    frame();
    EXPECT_EQ(app.meshes.hoverX, 50);
    EXPECT_EQ(app.meshes.hoverY, 50);
    EXPECT_EQ(app.meshes.hoverColour, (Vec3{1.0f, 1.0f, 1.0f}));
    press(KEY_R);
    EXPECT_EQ(app.meshes.hoverColour, (Vec3{0.45f, 1.0f, 0.5f}));
    cell(50, 50).terrain = TERRAIN_WATER;
    frame();
    EXPECT_EQ(app.meshes.hoverColour, (Vec3{1.0f, 0.35f, 0.3f}));
    pointOffTheMap();
    frame();
    EXPECT_EQ(app.meshes.hoverX, -1);
}

// --- Clicks
// -----------------------------------------------------------------------------------------------------

TEST_F(ToolsTest, SelectPicksTheBuildingOrTheCell) {
    addBuilding(app.city, 50, 50, KIND_PARK);
    click(50, 50);
    EXPECT_EQ(app.selectedBuilding, 0);
    EXPECT_EQ(app.selectedCellX, -1);
    click(51, 50);
    EXPECT_EQ(app.selectedBuilding, -1);
    EXPECT_EQ(app.selectedCellX, 51);
    EXPECT_EQ(app.selectedCellY, 50);
    EXPECT_THAT(heard(), ElementsAre(SOUND_CLICK, SOUND_CLICK));
}

TEST_F(ToolsTest, ABuildingToolBuildsOnceAndSaysWhat) {
    setTool(app, TOOL_POLICE_STATION);
    click(50, 50);
    ASSERT_EQ(app.city.buildings.size(), 1u);
    EXPECT_EQ(app.city.buildings[0].kind, KIND_POLICE_STATION);
    EXPECT_EQ(app.statusId, STATUS_CONSTRUCTION_STARTED);
    EXPECT_EQ(app.statusArg, static_cast<uint32_t>(KIND_POLICE_STATION));
    EXPECT_EQ(app.statusTimer, 6.0f);
    EXPECT_THAT(heard(), ElementsAre(SOUND_BUILD));

    click(50, 50);
    EXPECT_EQ(app.statusId, STATUS_OCCUPIED);
    EXPECT_THAT(heard(), ElementsAre(SOUND_REFUSED));
    EXPECT_EQ(app.city.buildings.size(), 1u);
}

TEST_F(ToolsTest, EveryBuildingToolPlacesItsKind) {
    app.city.money = 1e9;
    for (int tool = TOOL_POLICE_STATION; tool <= TOOL_WATER_PUMP; tool++) {
        setTool(app, tool);
        click(44 + tool % 5, 48 + tool / 5); // between the panels
        EXPECT_EQ(app.city.buildings.back().kind, tool - 4);
    }
}

TEST_F(ToolsTest, ABusStopGoesOnARoad) {
    setTool(app, TOOL_BUS_STOP);
    click(50, 50);
    EXPECT_EQ(app.statusId, STATUS_BUS_STOP_NEEDS_ROAD);
    EXPECT_THAT(heard(), ElementsAre(SOUND_REFUSED));
    cell(50, 50).road = ROAD_STREET;
    click(50, 50);
    EXPECT_EQ(cell(50, 50).busStop, 1);
    EXPECT_EQ(app.statusId, STATUS_BUS_STOP_BUILT);
    EXPECT_THAT(heard(), ElementsAre(SOUND_BUILD));
}

// --- Drags
// ------------------------------------------------------------------------------------------------------

TEST_F(ToolsTest, AStreetIsLaidAlongTheDrag) {
    setTool(app, TOOL_STREET);
    pressAt(45, 48);
    EXPECT_EQ(cell(45, 48).road, ROAD_STREET);
    EXPECT_THAT(heard(), ElementsAre(SOUND_CLICK));
    dragTo(50, 48);
    dragTo(50, 44);
    releaseAt(50, 44);
    for (int x = 45; x <= 50; x++) EXPECT_EQ(cell(x, 48).road, ROAD_STREET) << x;
    for (int y = 44; y <= 48; y++) EXPECT_EQ(cell(50, y).road, ROAD_STREET) << y;
    EXPECT_EQ(app.city.money, 150000.0 - 10 * 80.0);
    EXPECT_EQ(app.statusId, STATUS_STREET_BUILT);
    EXPECT_FALSE(app.dragging);
    EXPECT_THAT(heard(), IsEmpty()); // only the press is
}

TEST_F(ToolsTest, ASlantedDragFollowsTheLineInBothAxes) {
    setTool(app, TOOL_STREET);
    pressAt(45, 48);
    dragTo(49, 50);
    EXPECT_EQ(cell(45, 48).road, ROAD_STREET);
    EXPECT_EQ(cell(47, 49).road, ROAD_STREET);
    EXPECT_EQ(cell(49, 50).road, ROAD_STREET);
    int cells = 0;
    for (const Cell& each : app.city.cells) cells += each.road;
    EXPECT_EQ(cells, 5);
}

TEST_F(ToolsTest, AStreetFollowsTheHandRoundEveryBend) {
    setTool(app, TOOL_STREET);
    pressAt(45, 48);
    for (const auto& [x, y] : {std::pair{50, 48}, {50, 44}, {46, 44}, {46, 46}, {48, 46}, {49, 47}})
        dragTo(x, y);
    releaseAt(49, 47);

    City expected = flatCity();
    layRoads(expected, 45, 48, 50, 48);
    layRoads(expected, 50, 44, 50, 48);
    layRoads(expected, 46, 44, 50, 44);
    layRoads(expected, 46, 44, 46, 46);
    layRoads(expected, 46, 46, 48, 46);
    layRoads(expected, 49, 47, 49, 47);
    EXPECT_EQ(roads(app.city), roads(expected));
    EXPECT_EQ(app.city.money, 150000.0 - 19 * 80.0); // every cell once
    EXPECT_EQ(app.statusId, STATUS_STREET_BUILT);
    EXPECT_THAT(heard(), ElementsAre(SOUND_CLICK)); // of the press
}

TEST_F(ToolsTest, ADragToTheNextCellLaysOneMoreAndStandingStillNone) {
    setTool(app, TOOL_AVENUE);
    pressAt(45, 48);
    dragTo(45, 48);
    EXPECT_EQ(app.city.money, 150000.0 - 240.0);
    EXPECT_EQ(app.statusId, STATUS_AVENUE_BUILT); // not that there is one already
    for (const auto& [x, y] : {std::pair{46, 48}, {46, 49}, {45, 49}}) {
        const double before = app.city.money;
        dragTo(x, y);
        EXPECT_EQ(cell(x, y).road, ROAD_AVENUE) << x << ", " << y;
        EXPECT_EQ(app.city.money, before - 240.0) << x << ", " << y;
    }
}

TEST_F(ToolsTest, AStreetThatRunsOutOfMoneyStopsAndSaysSo) {
    app.city.money = 3 * 80.0 + 79.0;
    setTool(app, TOOL_STREET);
    pressAt(45, 48);
    EXPECT_EQ(app.statusId, STATUS_STREET_BUILT);
    app.statusTimer = 0.5f;
    dragTo(50, 48);
    EXPECT_EQ(app.statusId, STATUS_NO_MONEY_FOR_ROAD);
    EXPECT_EQ(app.statusTimer, 6.0f);
    EXPECT_EQ(app.city.money, 79.0);
    City expected = flatCity();
    layRoads(expected, 45, 48, 47, 48);
    EXPECT_EQ(roads(app.city), roads(expected));

    app.city.money = 160.0; // a day's taxes came in: it goes on from the hand
    dragTo(51, 48);
    EXPECT_EQ(app.statusId, STATUS_STREET_BUILT);
    layRoads(expected, 50, 48, 51, 48);
    EXPECT_EQ(roads(app.city), roads(expected));
    releaseAt(51, 48);
    EXPECT_THAT(heard(), ElementsAre(SOUND_CLICK));
}

TEST_F(ToolsTest, AStreetDragGoesOnUnderThePanelsAndEndsThere) {
    for (const auto& [x, y] : cellsUnderPanels()) {
        setTool(app, TOOL_STREET);
        pressAt(50, 46);
        ASSERT_TRUE(app.dragging);
        dragTo(x, y);
        EXPECT_EQ(cell(x, y).road, ROAD_STREET) << x << ", " << y;
        EXPECT_EQ(app.meshes.hoverX, -1); // no highlight behind a panel
        releaseAt(x, y);
        EXPECT_FALSE(app.dragging);
    }
}

TEST_F(ToolsTest, ARectangleMayEndUnderThePanels) {
    for (const auto& [x, y] : cellsUnderPanels()) {
        setTool(app, TOOL_OFFICE_ZONE);
        pressAt(50, 46);
        dragTo(x, y);
        EXPECT_EQ(cell(x, y).zone, ZONE_NONE);
        releaseAt(x, y);
        EXPECT_EQ(cell(x, y).zone, ZONE_OFFICES) << x << ", " << y;
        setTool(app, TOOL_BULLDOZE);
        pressAt(50, 46);
        releaseAt(x, y);
        EXPECT_EQ(cell(x, y).zone, ZONE_NONE) << x << ", " << y;
    }
}

TEST_F(ToolsTest, APressOnThePanelsIsNoToolsWhateverLiesBehindThem) {
    app.city.money = 1e9;
    for (const auto& [x, y] : cellsUnderPanels())
        for (int tool = 0; tool < TOOL_COUNT; tool++) {
            setTool(app, tool);
            const uint64_t before = cityHash(app.city);
            pressAt(x, y);
            EXPECT_FALSE(app.dragging) << tool;
            releaseAt(50, 46); // over the land
            EXPECT_EQ(app.selectedCellX, -1) << tool;
            EXPECT_EQ(cityHash(app.city), before) << tool;
            EXPECT_THAT(heard(), IsEmpty()) << tool;
        }
}

TEST_F(ToolsTest, ASecondClickOnTheSamePlaceDoesNothingMore) {
    app.paintDistrict = 3;
    for (int tool = TOOL_SELECT; tool < TOOL_COUNT; tool++) {
        app.city = flatCity();
        if (tool == TOOL_BUS_STOP || tool == TOOL_BULLDOZE) cell(50, 46).road = ROAD_STREET;
        if (tool == TOOL_CLEAR_DISTRICT) cell(50, 46).district = 2;
        setTool(app, tool);
        frame();
        const uint64_t empty = cityHash(app.city);
        click(50, 46);
        frame();
        const uint64_t once = cityHash(app.city);
        EXPECT_EQ(once != empty, tool != TOOL_SELECT) << tool;
        click(50, 46);
        EXPECT_EQ(cityHash(app.city), once) << tool;
    }
}

TEST_F(ToolsTest, ARefusedStreetIsHeardOnThePress) {
    cell(45, 48).terrain = TERRAIN_WATER;
    setTool(app, TOOL_STREET);
    click(45, 48);
    EXPECT_THAT(heard(), ElementsAre(SOUND_REFUSED));
    EXPECT_EQ(app.statusId, STATUS_NO_ROAD_HERE);
    EXPECT_EQ(app.city.money, 150000.0);
}

TEST_F(ToolsTest, ZonesAppearOnTheReleaseAndNotBefore) {
    setTool(app, TOOL_COMMERCIAL_ZONE);
    pressAt(47, 49);
    dragTo(45, 48);
    EXPECT_EQ(cell(46, 48).zone, ZONE_NONE);
    EXPECT_THAT(heard(), IsEmpty());
    releaseAt(45, 48);
    for (int y = 48; y <= 49; y++)
        for (int x = 45; x <= 47; x++) EXPECT_EQ(cell(x, y).zone, ZONE_COMMERCIAL);
    EXPECT_EQ(app.statusId, STATUS_ZONED);
    EXPECT_EQ(app.statusArg, 6u);
    EXPECT_THAT(heard(), ElementsAre(SOUND_BUILD));
}

TEST_F(ToolsTest, AZoneDragThatChangesNothingShowsTheCitysOwnStatus) {
    app.city.cells[cellIndex(45, 48)].terrain = TERRAIN_WATER;
    app.city.statusId = STATUS_STREET_BUILT;
    setTool(app, TOOL_RESIDENTIAL_ZONE);
    click(45, 48);
    EXPECT_EQ(app.statusId, STATUS_STREET_BUILT);
    EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(ToolsTest, TheBulldozerClearsARectangleAndSaysHowMuch) {
    layRoads(app.city, 45, 48, 47, 48);
    cell(46, 49).zone = ZONE_OFFICES;
    setTool(app, TOOL_BULLDOZE);
    pressAt(45, 48);
    EXPECT_EQ(cell(45, 48).road, ROAD_STREET);
    releaseAt(47, 49);
    EXPECT_EQ(cell(45, 48).road, ROAD_NONE);
    EXPECT_EQ(cell(46, 49).zone, ZONE_NONE);
    EXPECT_EQ(app.statusId, STATUS_CLEARED);
    EXPECT_EQ(app.statusArg, 4u);
    EXPECT_THAT(heard(), ElementsAre(SOUND_DEMOLISH));

    click(60, 60);
    EXPECT_EQ(app.statusId, STATUS_NOTHING_HERE);
    EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(ToolsTest, DistrictsArePaintedAndCleared) {
    app.paintDistrict = 4;
    setTool(app, TOOL_PAINT_DISTRICT);
    pressAt(45, 48);
    releaseAt(46, 48);
    EXPECT_EQ(cell(46, 48).district, 4);
    EXPECT_EQ(app.statusId, STATUS_PAINTED);
    EXPECT_EQ(app.statusArg, 2u);
    setTool(app, TOOL_CLEAR_DISTRICT);
    click(46, 48);
    EXPECT_EQ(cell(46, 48).district, 0);
    EXPECT_EQ(app.statusId, STATUS_DISTRICT_CLEARED);
    EXPECT_EQ(app.statusArg, 0u);
    EXPECT_THAT(heard(), ElementsAre(SOUND_BUILD, SOUND_BUILD));
}

TEST_F(ToolsTest, PaintingBeforeADistrictWasChosenClears) {
    cell(45, 48).district = 2;
    setTool(app, TOOL_PAINT_DISTRICT);
    click(45, 48);
    EXPECT_EQ(cell(45, 48).district, 0);
    EXPECT_EQ(app.statusId, STATUS_PAINTED);
    EXPECT_EQ(app.statusArg, 1u);
}

TEST_F(ToolsTest, AWildDistrictNumberStaysInsideTheTables) {
    app.paintDistrict = 77;
    setTool(app, TOOL_PAINT_DISTRICT);
    click(45, 48);
    EXPECT_LT(cell(45, 48).district, DISTRICT_COUNT);
}

TEST_F(ToolsTest, ADragThatEndsOffTheMapDoesNothing) {
    setTool(app, TOOL_RESIDENTIAL_ZONE);
    pressAt(45, 48);
    pointOffTheMap();
    input.leftHeld = 0;
    input.leftReleased = 1;
    frame();
    EXPECT_EQ(cell(45, 48).zone, ZONE_NONE);
    EXPECT_FALSE(app.dragging);
}

TEST_F(ToolsTest, APressOffTheMapStartsNothing) {
    setTool(app, TOOL_RESIDENTIAL_ZONE);
    pointOffTheMap();
    input.leftPressed = input.leftHeld = 1;
    frame();
    EXPECT_FALSE(app.dragging);
    releaseAt(45, 48);
    EXPECT_EQ(cell(45, 48).zone, ZONE_NONE);
}

TEST_F(ToolsTest, AStreetDragGoesOnWhereThePointerComesBackToTheMap) {
    setTool(app, TOOL_STREET);
    pressAt(45, 48);
    pointOffTheMap();
    frame();
    dragTo(47, 48);
    releaseAt(47, 48);
    EXPECT_EQ(cell(46, 48).road, ROAD_STREET);
    EXPECT_EQ(cell(47, 48).road, ROAD_STREET);
}

TEST_F(ToolsTest, AButtonThatCameUpUnseenEndsTheDragWithoutEffect) {
    setTool(app, TOOL_RESIDENTIAL_ZONE);
    pressAt(45, 48);
    input.leftHeld = 0; // the window lost the focus: no release reached the game
    frame();
    EXPECT_FALSE(app.dragging);
    releaseAt(47, 48);
    EXPECT_EQ(cell(45, 48).zone, ZONE_NONE);
}

TEST_F(ToolsTest, AnotherToolEndsTheDragWithoutEffect) {
    setTool(app, TOOL_BULLDOZE);
    cell(45, 48).zone = ZONE_OFFICES;
    pressAt(45, 48);
    press(KEY_Z);
    releaseAt(47, 48);
    EXPECT_EQ(cell(45, 48).zone, ZONE_OFFICES);
    EXPECT_EQ(cell(46, 48).zone, ZONE_NONE);
}

TEST_F(ToolsTest, TheSameToolOnceMoreLeavesTheDragRunning) {
    setTool(app, TOOL_RESIDENTIAL_ZONE);
    pressAt(45, 48);
    press(KEY_Z);
    setCategory(app, CATEGORY_ZONES);
    EXPECT_TRUE(app.dragging);
    releaseAt(46, 48);
    EXPECT_EQ(cell(46, 48).zone, ZONE_RESIDENTIAL);
}

TEST_F(ToolsTest, AStreetIsLaidWhileTheButtonIsHeldAndNotByItsRelease) {
    setTool(app, TOOL_STREET);
    pressAt(45, 48);
    releaseAt(47, 48);
    EXPECT_EQ(cell(46, 48).road, ROAD_NONE);
    dragTo(47, 48); // nor by a mouse that only passes
    EXPECT_EQ(cell(47, 48).road, ROAD_NONE);
}

TEST_F(ToolsTest, PauseEndsADrag) {
    setTool(app, TOOL_RESIDENTIAL_ZONE);
    pressAt(45, 48);
    press(KEY_ESC);
    ASSERT_TRUE(app.paused);
    EXPECT_EQ(app.meshes.hoverX, -1);
    press(KEY_ESC);
    releaseAt(47, 48);
    EXPECT_EQ(cell(45, 48).zone, ZONE_NONE);
}

// --- The selection
// ----------------------------------------------------------------------------------------------

TEST_F(ToolsTest, TheSelectionStaysOnItsBuildingWhenTheListShrinks) {
    addBuilding(app.city, 45, 48, KIND_PARK);
    addBuilding(app.city, 50, 48, KIND_SCHOOL);
    click(50, 48);
    ASSERT_EQ(app.selectedBuilding, 1);
    setTool(app, TOOL_BULLDOZE);
    click(45, 48);
    ASSERT_EQ(app.selectedBuilding, 0);
    EXPECT_EQ(app.city.buildings[0].kind, KIND_SCHOOL);
}

TEST_F(ToolsTest, TheSelectionGoesWithItsBuilding) {
    addBuilding(app.city, 45, 48, KIND_PARK);
    click(45, 48);
    setTool(app, TOOL_BULLDOZE);
    click(45, 48);
    EXPECT_EQ(app.selectedBuilding, -1);
    EXPECT_EQ(app.selectedCellX, -1);
}

TEST_F(ToolsTest, SelectingOffTheMapClearsTheSelection) {
    selectCell(app, 40, 40);
    EXPECT_EQ(app.selectedCellX, 40);
    selectCell(app, -5, 400);
    EXPECT_EQ(app.selectedCellX, -1);
}
