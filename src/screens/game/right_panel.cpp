#include "screens/game/right_panel.h"

#include "app/app.h"
#include "app/hud_layout.h"
#include "app/tools.h"
#include "screens/panels/budget_panel.h"
#include "screens/panels/city_overview.h"
#include "screens/panels/district_panel.h"
#include "screens/panels/finance_panel.h"
#include "screens/panels/inspectors.h"
#include "screens/panels/statistics_panel.h"
#include "ui/layer/ui_text.h"
#include "ui/layer/ui_widgets.h"

#include <cassert>

constexpr uint32_t CLOSE_ID = 309;

const Building* selectedBuilding(const App& app) {
    const auto& buildings = app.city.buildings;
    const int index = app.selectedBuilding;
    if (index < 0 || index >= static_cast<int>(buildings.size())) return nullptr;
    return buildings[index].kind == KIND_CONDEMNED ? nullptr : &buildings[index];
}

static bool closeButton(Ui& ui, UiRect panel, float s) {
    const UiRect cross = {panel.x + panel.w - 40.0f * s, panel.y + 10.0f * s, 28.0f * s, 28.0f * s};
    return uiButton(ui, CLOSE_ID, cross, "X", true, false, uiFontSize(ui, 16.0f));
}

static void drawOpenView(App& app, const Building* building, UiRect panel, float s) {
    switch (app.currentPanel) {
    case PANEL_BUDGET:
        return drawBudgetPanel(app, panel, s);
    case PANEL_FINANCE:
        return drawFinancePanel(app, panel, s);
    case PANEL_STATISTICS:
        return drawStatisticsPanel(app, panel, s);
    default:
        assert(app.currentPanel == PANEL_NONE);
        if (building) return drawBuildingInspector(app, panel, s, *building);
        return drawCellInspector(app, panel, s, app.selectedCellX, app.selectedCellY);
    }
}

void drawRightPanel(App& app, const Input&) {
    const HudLayout hud = hudLayout(app.ui);
    const float s = hud.scale;
    const UiRect panel = hud.rightPanel;
    uiPanel(app.ui, panel, 10.0f * s, 1.5f * s);

    const Building* building = selectedBuilding(app);
    const bool cellSelected = inMap(app.selectedCellX, app.selectedCellY);
    if (building || cellSelected || app.currentPanel != PANEL_NONE) {
        if (!closeButton(app.ui, panel, s)) return drawOpenView(app, building, panel, s);
        app.currentPanel = PANEL_NONE;
        clearSelection(app);
    }
    if (app.currentCategory == CATEGORY_DISTRICTS)
        drawDistrictPanel(app, panel, s);
    else
        drawCityOverview(app, panel, s);
}
