#include "app/tools.h"

#include "app/hud_layout.h"
#include "app/picking.h"
#include "sim/build_tools.h"
#include "sim/grid_rect.h"
#include "view/world/hover.h"

#include <cassert>

constexpr float STATUS_TIME = 6.0f; // seconds

struct ToolRow {
    ToolCategory category;
    int shortcut; // Key, -1 for none
};

static constexpr std::array<ToolRow, TOOL_COUNT> TOOLS = {{
    {CATEGORY_SELECT, KEY_V},    // select
    {CATEGORY_ROADS, KEY_R},     // street
    {CATEGORY_ROADS, KEY_Y},     // avenue
    {CATEGORY_ROADS, KEY_B},     // bus stop
    {CATEGORY_ZONES, KEY_Z},     // residential zone
    {CATEGORY_ZONES, KEY_C},     // commercial zone
    {CATEGORY_ZONES, KEY_O},     // office zone
    {CATEGORY_ZONES, KEY_I},     // industrial zone
    {CATEGORY_SERVICES, KEY_L},  // police station
    {CATEGORY_SERVICES, KEY_F},  // fire station
    {CATEGORY_SERVICES, KEY_H},  // hospital
    {CATEGORY_SERVICES, KEY_K},  // school
    {CATEGORY_SERVICES, KEY_P},  // park
    {CATEGORY_SERVICES, KEY_J},  // bus depot
    {CATEGORY_UTILITIES, KEY_G}, // gas power plant
    {CATEGORY_UTILITIES, KEY_M}, // solar farm
    {CATEGORY_UTILITIES, KEY_N}, // wind turbine
    {CATEGORY_UTILITIES, KEY_T}, // water pump
    {CATEGORY_DISTRICTS, KEY_U}, // paint district
    {CATEGORY_DISTRICTS, -1},    // clear district
    {CATEGORY_BULLDOZE, KEY_X},  // bulldoze
}};

// --- Which tool

void setTool(App& app, int tool) {
    if (tool < 0 || tool >= TOOL_COUNT) return;
    if (tool != app.currentTool) app.dragging = false;
    app.currentTool = static_cast<uint8_t>(tool);
    app.currentCategory = TOOLS[tool].category;
}

void setCategory(App& app, int category) {
    if (TOOLS[app.currentTool].category == category) return setTool(app, app.currentTool);
    for (int tool = 0; tool < TOOL_COUNT; tool++)
        if (TOOLS[tool].category == category) return setTool(app, tool);
}

int toolCount(int category) {
    assert(category >= 0 && category < CATEGORY_COUNT); // each has a tool at least
    return static_cast<int>(std::count_if(TOOLS.begin(), TOOLS.end(),
                                          [&](const ToolRow& tool) { return tool.category == category; }));
}

int pressedToolShortcut(const Input& input) {
    for (int tool = 0; tool < TOOL_COUNT; tool++)
        if (TOOLS[tool].shortcut >= 0 && input.keysPressed[TOOLS[tool].shortcut]) return tool;
    return -1;
}

static bool isRoadTool(int tool) { return tool == TOOL_STREET || tool == TOOL_AVENUE; }
static bool isZoneTool(int tool) { return tool >= TOOL_RESIDENTIAL_ZONE && tool <= TOOL_INDUSTRIAL_ZONE; }
static bool isBuildingTool(int tool) { return tool >= TOOL_POLICE_STATION && tool <= TOOL_WATER_PUMP; }

static bool isRectTool(int tool) {
    return isZoneTool(tool) || tool == TOOL_PAINT_DISTRICT || tool == TOOL_CLEAR_DISTRICT ||
           tool == TOOL_BULLDOZE;
}

// The tools of buildings and zones have the order of what they lay.
static_assert(TOOL_WATER_PUMP - TOOL_POLICE_STATION == KIND_WATER_PUMP - KIND_POLICE_STATION);
static_assert(TOOL_INDUSTRIAL_ZONE - TOOL_RESIDENTIAL_ZONE == ZONE_INDUSTRIAL - ZONE_RESIDENTIAL);

static int kindOfTool(int tool) {
    assert(isBuildingTool(tool));
    return tool - TOOL_POLICE_STATION + KIND_POLICE_STATION;
}

static int zoneOfTool(int tool) {
    assert(isZoneTool(tool));
    return tool - TOOL_RESIDENTIAL_ZONE + ZONE_RESIDENTIAL;
}

static int roadOfTool(int tool) {
    assert(isRoadTool(tool));
    return tool == TOOL_AVENUE ? ROAD_AVENUE : ROAD_STREET;
}

// --- Status line and selection

void showStatus(App& app, int statusId, uint32_t statusArg) {
    assert(statusId >= 0 && statusId <= UINT8_MAX);
    app.statusId = static_cast<uint8_t>(statusId);
    app.statusArg = statusArg;
    app.statusTimer = STATUS_TIME;
}

void showCityStatus(App& app) { showStatus(app, app.city.statusId, app.city.statusArg); }

void clearSelection(App& app) {
    app.selectedBuilding = -1;
    app.selectedBuildingCell = -1;
    app.selectedCellX = -1;
    app.selectedCellY = -1;
}

// Index of the building that stands on the cell, -1 for none.
static int buildingIndexAt(const City& city, int x, int y) {
    return buildingAt(city, x, y) ? city.cells[cellIndex(x, y)].buildingIndex : -1;
}

void selectCell(App& app, int x, int y) {
    clearSelection(app);
    if (!inMap(x, y)) return;
    app.selectedBuilding = buildingIndexAt(app.city, x, y);
    if (app.selectedBuilding >= 0) {
        app.selectedBuildingCell = cellIndex(x, y);
    } else {
        app.selectedCellX = x;
        app.selectedCellY = y;
    }
}

void followSelection(App& app) {
    if (app.selectedBuilding < 0) return;
    const int cell = app.selectedBuildingCell;
    assert(cell >= 0 && cell < CELL_COUNT); // it is kept with every selected building
    app.selectedBuilding = buildingIndexAt(app.city, cell % GRID_SIZE, cell / GRID_SIZE);
    if (app.selectedBuilding < 0) clearSelection(app);
}

// --- What a tool would do

bool toolCellValid(const App& app, int x, int y) {
    if (!inMap(x, y)) return false;
    const City& city = app.city;
    const Cell& cell = city.cells[cellIndex(x, y)];
    const int tool = app.currentTool;
    const bool hasBuilding = buildingAt(city, x, y) != nullptr;

    if (isRoadTool(tool)) return canPlaceRoad(city, x, y, roadOfTool(tool));
    if (isZoneTool(tool)) return !cell.road && !hasBuilding && cell.terrain != TERRAIN_WATER;
    if (isBuildingTool(tool)) return canPlaceBuilding(city, x, y, kindOfTool(tool), nullptr);
    switch (tool) {
    case TOOL_BUS_STOP:
        return cell.road && !cell.busStop;
    case TOOL_PAINT_DISTRICT:
        return cell.terrain != TERRAIN_WATER;
    case TOOL_CLEAR_DISTRICT:
        return cell.district != 0;
    case TOOL_BULLDOZE:
        return cell.road || hasBuilding || cell.zone != ZONE_NONE || cell.busStop;
    default:
        return true;
    }
}

static bool paintCell(App& app, int x, int y) {
    if (isZoneTool(app.currentTool)) return setZone(app.city, x, y, zoneOfTool(app.currentTool));
    return setDistrict(app.city, x, y, app.currentTool == TOOL_PAINT_DISTRICT ? app.paintDistrict : 0);
}

static void showRectStatus(App& app, uint32_t count) {
    assert(isRectTool(app.currentTool) && count > 0);
    if (app.currentTool == TOOL_BULLDOZE)
        showStatus(app, STATUS_CLEARED, count);
    else if (app.currentTool == TOOL_PAINT_DISTRICT)
        showStatus(app, STATUS_PAINTED, count);
    else if (app.currentTool == TOOL_CLEAR_DISTRICT)
        showStatus(app, STATUS_DISTRICT_CLEARED, 0);
    else
        showStatus(app, STATUS_ZONED, count);
}

void applyToolRect(App& app, int x0, int y0, int x1, int y1) {
    if (!isRectTool(app.currentTool)) return;
    int count = 0;
    if (app.currentTool == TOOL_BULLDOZE)
        count = bulldozeRect(app.city, x0, y0, x1, y1);
    else
        walkRect(x0, y0, x1, y1, [&](int x, int y) { count += paintCell(app, x, y); });
    followSelection(app);

    if (count == 0) return showCityStatus(app);
    audioPlayEffect(app.audio, app.currentTool == TOOL_BULLDOZE ? SOUND_DEMOLISH : SOUND_BUILD);
    showRectStatus(app, static_cast<uint32_t>(count));
}

// --- The mouse

static void startDrag(App& app) {
    app.dragging = true;
    app.dragStartX = app.dragLastX = app.hoverX;
    app.dragStartY = app.dragLastY = app.hoverY;
}

static void pressOnMap(App& app) {
    const int x = app.hoverX;
    const int y = app.hoverY;
    const int tool = app.currentTool;
    assert(app.hoverValid && inMap(x, y));
    if (tool == TOOL_SELECT) {
        selectCell(app, x, y);
        return audioPlayEffect(app.audio, SOUND_CLICK);
    }
    if (isRectTool(tool)) return startDrag(app);

    bool done;
    if (isRoadTool(tool)) {
        startDrag(app);
        done = placeRoad(app.city, x, y, roadOfTool(tool));
    } else {
        done = tool == TOOL_BUS_STOP ? placeBusStop(app.city, x, y)
                                     : placeBuilding(app.city, x, y, kindOfTool(tool));
    }
    const SoundEffect success = isRoadTool(tool) ? SOUND_CLICK : SOUND_BUILD;
    audioPlayEffect(app.audio, done ? success : SOUND_REFUSED);
    showCityStatus(app);
}

static void dragRoad(App& app) {
    assert(inMap(app.dragLastX, app.dragLastY) && inMap(app.hoverX, app.hoverY));
    if (app.hoverX == app.dragLastX && app.hoverY == app.dragLastY) return;
    const int type = roadOfTool(app.currentTool);
    // It begins where the last one ended: that cell is not paid twice, because a road refuses another one.
    placeRoadLine(app.city, app.dragLastX, app.dragLastY, app.hoverX, app.hoverY, type);
    app.dragLastX = app.hoverX;
    app.dragLastY = app.hoverY;
    showCityStatus(app);
}

// Off the map it does nothing, so that a drag can be taken back.
static void releaseDrag(App& app) {
    assert(app.dragging && inMap(app.dragStartX, app.dragStartY));
    app.dragging = false;
    if (app.hoverValid && isRectTool(app.currentTool))
        applyToolRect(app, app.dragStartX, app.dragStartY, app.hoverX, app.hoverY);
}

static Vec3 hoverColour(const App& app) {
    if (app.currentTool == TOOL_SELECT) return {1.0f, 1.0f, 1.0f};
    if (toolCellValid(app, app.hoverX, app.hoverY)) return {0.45f, 1.0f, 0.5f};
    return {1.0f, 0.35f, 0.3f};
}

void updateToolInput(App& app, const Input& input) {
    const bool overHud = pointerOverHud(app, input);
    app.hoverValid = pickCell(app, input, app.hoverX, app.hoverY);

    if (input.leftPressed && app.hoverValid && !overHud) pressOnMap(app);
    // A drag from the map goes on under the interface, so that panels do not cut streets in two.
    if (app.dragging && input.leftHeld && app.hoverValid && isRoadTool(app.currentTool)) dragRoad(app);
    if (app.dragging && input.leftReleased) releaseDrag(app);
    if (!input.leftHeld) app.dragging = false; // the button came up where the game could not see it

    const bool visible = app.hoverValid && !overHud;
    updateHover(app.meshes, app.city, app.hoverX, app.hoverY, visible, visible ? hoverColour(app) : Vec3{});
}

void stopToolInput(App& app) {
    app.dragging = false;
    app.hoverValid = false;
    updateHover(app.meshes, app.city, -1, -1, false, {});
}
