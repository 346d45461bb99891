// The player's tools on the map: which there are, what they would do to a cell, and the mouse that drives
// them.
#pragma once

#include "app/app.h"

enum Tool : uint8_t {
    TOOL_SELECT,
    TOOL_STREET,
    TOOL_AVENUE,
    TOOL_BUS_STOP,
    TOOL_RESIDENTIAL_ZONE,
    TOOL_COMMERCIAL_ZONE,
    TOOL_OFFICE_ZONE,
    TOOL_INDUSTRIAL_ZONE,
    TOOL_POLICE_STATION,
    TOOL_FIRE_STATION,
    TOOL_HOSPITAL,
    TOOL_SCHOOL,
    TOOL_PARK,
    TOOL_BUS_DEPOT,
    TOOL_GAS_POWER_PLANT,
    TOOL_SOLAR_FARM,
    TOOL_WIND_TURBINE,
    TOOL_WATER_PUMP,
    TOOL_PAINT_DISTRICT,
    TOOL_CLEAR_DISTRICT,
    TOOL_BULLDOZE,
    TOOL_COUNT
};

enum ToolCategory : uint8_t {
    CATEGORY_SELECT,
    CATEGORY_ROADS,
    CATEGORY_ZONES,
    CATEGORY_SERVICES,
    CATEGORY_UTILITIES,
    CATEGORY_DISTRICTS,
    CATEGORY_BULLDOZE,
    CATEGORY_COUNT
};

// Stores the tool and its category. Another tool than before ends a running drag without effect,
// because its release would do something else than the drag was begun for. A number outside the enum does
// nothing.
void setTool(App& app, int tool);
// Keeps the tool if it belongs to the category, otherwise takes the category's first. A number without tools
// does nothing.
void setCategory(App& app, int category);
int toolCount(int category);
// The tool whose shortcut was pressed this frame, -1 for none.
int pressedToolShortcut(const Input& input);

// Whether the highlight shows the cell as one for the current tool. It knows less than the tools do: rock
// looks free to the zones, and a cell with only a district empty to the bulldozer, which would clear it.
bool toolCellValid(const App& app, int x, int y);
// The current zone, district or bulldoze tool on every cell of the rectangle, corners in any order.
void applyToolRect(App& app, int x0, int y0, int x1, int y1);

// One frame of the mouse over the map: highlight, clicks, drags.
void updateToolInput(App& app, const Input& input);
// Ends a drag without effect and takes the highlight away.
void stopToolInput(App& app);

// Shows the city's own answer in the status line.
void showCityStatus(App& app);
void showStatus(App& app, int statusId, uint32_t statusArg);

// The selection belongs to a building: after the list has changed this finds it again, or clears the
// selection when it is gone.
void followSelection(App& app);
void clearSelection(App& app);
void selectCell(App& app, int x, int y);
