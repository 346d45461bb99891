#include "app/tools.h"

#include "app/game_fixture.h"
#include "sim/build_tools.h"
#include "sim/city_helpers.h"

#include <string>

class ToolsTest : public GameTest {};

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
    EXPECT_EQ(played(SOUND_CLICK), 2);
}

TEST_F(ToolsTest, ABuildingToolBuildsOnceAndSaysWhat) {
    setTool(app, TOOL_POLICE_STATION);
    click(50, 50);
    ASSERT_EQ(app.city.buildings.size(), 1u);
    EXPECT_EQ(app.city.buildings[0].kind, KIND_POLICE_STATION);
    EXPECT_EQ(app.statusId, STATUS_CONSTRUCTION_STARTED);
    EXPECT_EQ(app.statusArg, static_cast<uint32_t>(KIND_POLICE_STATION));
    EXPECT_EQ(app.statusTimer, 6.0f);
    EXPECT_EQ(played(SOUND_BUILD), 1);

    click(50, 50);
    EXPECT_EQ(app.statusId, STATUS_OCCUPIED);
    EXPECT_EQ(played(SOUND_REFUSED), 1);
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
    EXPECT_EQ(played(SOUND_REFUSED), 1);
    cell(50, 50).road = ROAD_STREET;
    click(50, 50);
    EXPECT_EQ(cell(50, 50).busStop, 1);
    EXPECT_EQ(app.statusId, STATUS_BUS_STOP_BUILT);
    EXPECT_EQ(played(SOUND_BUILD), 1);
}

// --- Drags
// ------------------------------------------------------------------------------------------------------

TEST_F(ToolsTest, AStreetIsLaidAlongTheDrag) {
    setTool(app, TOOL_STREET);
    pressAt(45, 48);
    EXPECT_EQ(cell(45, 48).road, ROAD_STREET);
    EXPECT_EQ(played(SOUND_CLICK), 1);
    dragTo(50, 48);
    dragTo(50, 44);
    releaseAt(50, 44);
    for (int x = 45; x <= 50; x++) EXPECT_EQ(cell(x, 48).road, ROAD_STREET) << x;
    for (int y = 44; y <= 48; y++) EXPECT_EQ(cell(50, y).road, ROAD_STREET) << y;
    EXPECT_EQ(app.city.money, 150000.0 - 10 * 80.0);
    EXPECT_EQ(app.statusId, STATUS_STREET_BUILT);
    EXPECT_FALSE(app.dragging);
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

TEST_F(ToolsTest, ARefusedStreetIsHeardOnThePress) {
    cell(45, 48).terrain = TERRAIN_WATER;
    setTool(app, TOOL_STREET);
    click(45, 48);
    EXPECT_EQ(played(SOUND_REFUSED), 1);
    EXPECT_EQ(app.statusId, STATUS_NO_ROAD_HERE);
    EXPECT_EQ(app.city.money, 150000.0);
}

TEST_F(ToolsTest, ZonesAppearOnTheReleaseAndNotBefore) {
    setTool(app, TOOL_COMMERCIAL_ZONE);
    pressAt(47, 49);
    dragTo(45, 48);
    EXPECT_EQ(cell(46, 48).zone, ZONE_NONE);
    EXPECT_EQ(played(SOUND_BUILD), 0);
    releaseAt(45, 48);
    for (int y = 48; y <= 49; y++)
        for (int x = 45; x <= 47; x++) EXPECT_EQ(cell(x, y).zone, ZONE_COMMERCIAL);
    EXPECT_EQ(app.statusId, STATUS_ZONED);
    EXPECT_EQ(app.statusArg, 6u);
    EXPECT_EQ(played(SOUND_BUILD), 1);
}

TEST_F(ToolsTest, AZoneDragThatChangesNothingShowsTheCitysOwnStatus) {
    app.city.cells[cellIndex(45, 48)].terrain = TERRAIN_WATER;
    app.city.statusId = STATUS_STREET_BUILT;
    setTool(app, TOOL_RESIDENTIAL_ZONE);
    click(45, 48);
    EXPECT_EQ(app.statusId, STATUS_STREET_BUILT);
    EXPECT_EQ(played(SOUND_BUILD), 0);
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
    EXPECT_EQ(played(SOUND_DEMOLISH), 1);

    click(60, 60);
    EXPECT_EQ(app.statusId, STATUS_NOTHING_HERE);
    EXPECT_EQ(played(SOUND_DEMOLISH), 1);
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
    EXPECT_EQ(played(SOUND_BUILD), 2);
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
