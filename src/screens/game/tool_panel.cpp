#include "screens/game/tool_panel.h"

#include "app/app.h"
#include "app/hud_layout.h"
#include "app/tools.h"
#include "ui/layer/ui_shapes.h"
#include "ui/layer/ui_text.h"
#include "ui/layer/ui_widgets.h"
#include "ui/words/format_text.h"
#include "ui/words/strings.h"

#include <cassert>

constexpr uint32_t CATEGORY_ID = 330; // plus the category
constexpr uint32_t TOOL_ID = 340;     // plus the tool
constexpr uint32_t DISTRICT_ID = 369; // plus the district

// Those of each category follow one another.
struct ToolButton {
    ToolCategory category;
    Tool tool;
    StringId label;
};

static constexpr ToolButton TOOL_BUTTONS[] = {
    {CATEGORY_ROADS, TOOL_STREET, STR_STREET},
    {CATEGORY_ROADS, TOOL_AVENUE, STR_AVENUE},
    {CATEGORY_ROADS, TOOL_BUS_STOP, STR_BUS_STOP},
    {CATEGORY_ZONES, TOOL_RESIDENTIAL_ZONE, STR_RESIDENTIAL},
    {CATEGORY_ZONES, TOOL_COMMERCIAL_ZONE, STR_COMMERCIAL},
    {CATEGORY_ZONES, TOOL_OFFICE_ZONE, STR_OFFICES},
    {CATEGORY_ZONES, TOOL_INDUSTRIAL_ZONE, STR_INDUSTRIAL},
    {CATEGORY_SERVICES, TOOL_POLICE_STATION, STR_POLICE_STATION},
    {CATEGORY_SERVICES, TOOL_FIRE_STATION, STR_FIRE_STATION},
    {CATEGORY_SERVICES, TOOL_HOSPITAL, STR_HOSPITAL},
    {CATEGORY_SERVICES, TOOL_SCHOOL, STR_SCHOOL},
    {CATEGORY_SERVICES, TOOL_PARK, STR_PARK},
    {CATEGORY_SERVICES, TOOL_BUS_DEPOT, STR_BUS_DEPOT},
    {CATEGORY_UTILITIES, TOOL_GAS_POWER_PLANT, STR_GAS_POWER_PLANT},
    {CATEGORY_UTILITIES, TOOL_SOLAR_FARM, STR_SOLAR_FARM},
    {CATEGORY_UTILITIES, TOOL_WIND_TURBINE, STR_WIND_TURBINE},
    {CATEGORY_UTILITIES, TOOL_WATER_PUMP, STR_WATER_PUMP},
    {CATEGORY_DISTRICTS, TOOL_PAINT_DISTRICT, STR_PAINT},
    {CATEGORY_DISTRICTS, TOOL_CLEAR_DISTRICT, STR_CLEAR},
};

static void drawCategories(App& app, const HudLayout& hud, int fontSize) {
    for (int category = 0; category < CATEGORY_COUNT; category++) {
        const bool current = app.currentCategory == category;
        if (uiButton(app.ui, CATEGORY_ID + static_cast<uint32_t>(category), categoryButton(hud, category),
                     tr(STR_SELECT + category), true, current, fontSize, current))
            setCategory(app, category);
    }
}

static void drawTools(App& app, const HudLayout& hud, int fontSize) {
    int row = 0;
    for (const ToolButton& button : TOOL_BUTTONS)
        if (button.category == app.currentCategory &&
            uiButton(app.ui, TOOL_ID + button.tool, toolButton(hud, row++), tr(button.label), true,
                     app.currentTool == button.tool, fontSize))
            setTool(app, button.tool);
    assert(row == toolCount(app.currentCategory));
}

static void drawDistricts(App& app, float s, float top, int fontSize) {
    const float width = (216.0f - 12.0f) / 4.0f * s;
    for (int district = 1; district < DISTRICT_COUNT; district++) {
        const int column = (district - 1) % 4;
        const int row = (district - 1) / 4;
        const UiRect rect = {18.0f * s + static_cast<float>(column) * (width + 4.0f * s),
                             top + static_cast<float>(row) * 34.0f * s, width, 30.0f * s};
        char number[16];
        formatTextInto(number, sizeof number, "%d", district);
        if (uiButton(app.ui, DISTRICT_ID + static_cast<uint32_t>(district), rect, number, true,
                     app.paintDistrict == district, fontSize, true))
            app.paintDistrict = district;
    }
}

void drawToolPanel(App& app) {
    Ui& ui = app.ui;
    const HudLayout hud = hudLayout(ui);
    const float s = hud.scale;
    const int fontSize = uiFontSize(ui, 16.0f);
    uiPanel(ui, hud.toolPanel, 8.0f * s, 1.5f * s);
    drawCategories(app, hud, fontSize);

    uiRect(ui, {22.0f * s, categoryButton(hud, CATEGORY_COUNT).y, 208.0f * s, 1.5f * s}, colFrame);
    if (app.currentCategory == CATEGORY_SELECT || app.currentCategory == CATEGORY_BULLDOZE) return;
    drawTools(app, hud, fontSize);
    if (app.currentCategory == CATEGORY_DISTRICTS)
        drawDistricts(app, s, toolButton(hud, toolCount(CATEGORY_DISTRICTS)).y, fontSize);
}
