#include "screens/panels/inspectors.h"

#include "app/app.h"
#include "screens/panels/panel_parts.h"
#include "sim/building_kinds.h"
#include "sim/numbers.h"
#include "ui/layer/ui_widgets.h"
#include "ui/words/format_text.h"
#include "ui/words/hud_text.h"
#include "ui/words/strings.h"

#include <cassert>

constexpr UiColor colTraffic = {0.95f, 0.70f, 0.25f, 1.0f};
constexpr UiColor colPower = {0.98f, 0.84f, 0.22f, 1.0f};
constexpr UiColor colWater = {0.20f, 0.62f, 1.00f, 1.0f};
constexpr float METER_STEP = 40.0f;

// Moves `y` to the next meter.
static void meter(Ui& ui, PanelColumn column, float& y, StringId caption, float value, UiColor color) {
    uiMeterRow(ui, column.x, y, column.width, tr(caption), value, color);
    y += METER_STEP * uiScale(ui);
}

// --- A building

// The houses that power and water come from have their own.
static bool needsUtilities(const Building& building) { return building.kind < KIND_GAS_POWER_PLANT; }

static void drawStatus(Ui& ui, PanelColumn column, float& y, const Building& building) {
    char text[96];
    const char* status = tr(STR_WORKING);
    UiColor color = colBad;
    if (!isFinished(building)) { // cut off and not rounded, so that no site is said to be at 100 %
        status = formatTextInto(text, sizeof text, tr(STR_CONSTRUCTION_PERCENT),
                                wholePart(building.progress * 100.0f));
        color = colGold;
    } else if (!building.roadAccess) {
        status = tr(STR_NO_ROAD_ACCESS);
    } else if (needsUtilities(building) && !building.powered) {
        status = tr(STR_NO_POWER);
    } else if (needsUtilities(building) && !building.watered) {
        status = tr(STR_NO_WATER);
    } else {
        color = colGood;
    }
    uiKeyValueRow(ui, column.x, y, column.width, tr(STR_STATUS), status, color);
}

static void drawPeople(Ui& ui, float x, float& y, const Building& building) {
    char text[96];
    const int places = jobPlaces(building.kind, building.level);
    if (building.kind == KIND_HOMES)
        panelLine(ui, x, y, formatTextInto(text, sizeof text, tr(STR_RESIDENT_COUNT), building.occupants),
                  colText);
    if (places <= 0) return;
    panelLine(ui, x, y, formatTextInto(text, sizeof text, tr(STR_WORKERS_OF), building.occupants, places),
              colText);
    panelLine(ui, x, y,
              formatTextInto(text, sizeof text, tr(STR_EFFICIENCY_PERCENT), percentOf(building.staffing)),
              colText);
}

static void drawSupply(Ui& ui, float x, float& y, StringId caption, bool supplied, bool needed) {
    char text[96];
    panelLine(ui, x, y, formatTextInto(text, sizeof text, tr(caption), yesOrNo(supplied)),
              supplied || !needed ? colText : colBad);
}

static void drawLifeOfBuilding(App& app, UiRect panel, PanelColumn column, float s, float y,
                               const Building& building) {
    Ui& ui = app.ui;
    const bool needed = needsUtilities(building);
    drawPeople(ui, column.x, y, building);
    if (building.unservedDays > 0) {
        char text[96];
        formatTextInto(text, sizeof text, tr(STR_DAYS_WITHOUT_SERVICE), building.unservedDays);
        panelLine(ui, column.x, y, text, colBad);
    }
    panelDistrictRow(ui, column, y, districtAt(app.city, building.x, building.y));
    drawSupply(ui, column.x, y, STR_POWER_STATE, building.powered != 0, needed);
    drawSupply(ui, column.x, y, STR_WATER_STATE, building.watered != 0, needed);
    y += 10.0f * s;
    meter(ui, column, y, STR_HAPPINESS, building.happiness / 100.0f, colGood);
    meter(ui, column, y, STR_TRAFFIC, building.congestion, colTraffic);
    meter(ui, column, y, STR_POLLUTION, building.pollutionHere, colFrame);
    panelCoordinates(ui, panel, s, building.x, building.y);
}

void drawBuildingInspector(App& app, UiRect panel, float s, const Building& building) {
    Ui& ui = app.ui;
    const PanelColumn column = panelColumn(panel, s);
    panelTitleFitted(ui, column, s, buildingName(building.kind));
    float y = column.y + 34.0f * s;
    if (isGrownKind(building.kind)) {
        char text[64];
        panelLine(ui, column.x, y, formatTextInto(text, sizeof text, tr(STR_LEVEL_NUMBER), building.level),
                  colMuted);
    }
    drawStatus(ui, column, y, building);
    if (isFinished(building)) drawLifeOfBuilding(app, panel, column, s, y, building);
}

// --- A cell

static const char* cellTitle(const Cell& cell) {
    if (cell.road) return tr(cell.road == ROAD_AVENUE ? STR_AVENUE : STR_STREET);
    // The rows of the zones follow that of the pump.
    if (cell.zone >= ZONE_RESIDENTIAL && cell.zone <= ZONE_INDUSTRIAL) return tr(STR_WATER_PUMP + cell.zone);
    return tr(STR_NONE);
}

void drawCellInspector(App& app, UiRect panel, float s, int cellX, int cellY) {
    assert(inMap(cellX, cellY));
    Ui& ui = app.ui;
    const City& city = app.city;
    const int index = cellIndex(cellX, cellY);
    const Cell& cell = city.cells[index];
    const PanelColumn column = panelColumn(panel, s);
    panelTitleFitted(ui, column, s, cellTitle(cell));
    float y = column.y + 36.0f * s;
    if (cell.road) {
        char text[96];
        meter(ui, column, y, STR_TRAFFIC, city.trafficLoad[index], colTraffic);
        panelLine(ui, column.x, y,
                  formatTextInto(text, sizeof text, tr(STR_BUS_STOP_STATE), yesOrNo(cell.busStop != 0)),
                  cell.busStop ? colGood : colText);
    }
    meter(ui, column, y, STR_POWER, city.powerField[index], colPower);
    meter(ui, column, y, STR_WATER, city.waterField[index], colWater);
    meter(ui, column, y, STR_LAND_VALUE, city.landValue[index], colGood);
    meter(ui, column, y, STR_POLLUTION, city.pollution[index], colFrame);
    panelDistrictRow(ui, column, y, districtAt(city, cellX, cellY));
    panelCoordinates(ui, panel, s, cellX, cellY);
}
