#include "screens/panels/district_panel.h"

#include "app/app.h"
#include "screens/panels/panel_parts.h"
#include "sim/finance.h"
#include "ui/layer/ui_text.h"
#include "ui/layer/ui_widgets.h"
#include "ui/words/format_text.h"
#include "ui/words/strings.h"

#include <algorithm>

constexpr uint32_t TAX_ID = 320;
constexpr uint32_t POLICY_ID = 321; // and the two after it

// By City::districtTax.
static constexpr std::array<StringId, 3> TAX_LEVELS = {STR_LOW, STR_NORMAL, STR_HIGH};

struct PolicyRow {
    DistrictPolicy bit;
    StringId caption;
};

static constexpr std::array<PolicyRow, 3> POLICIES = {{
    {POLICY_SMOKE_FREE, STR_SMOKE_FREE},
    {POLICY_NO_TRUCKS, STR_NO_TRUCKS},
    {POLICY_TRANSIT_FIRST, STR_TRANSIT_FIRST},
}};

// Caption and button.
static bool choiceRow(Ui& ui, UiRect panel, float s, float y, uint32_t id, StringId caption, StringId choice,
                      bool primary) {
    const int size = uiFontSize(ui, 16.0f);
    const UiRect button = {panel.x + panel.w - (14.0f + 150.0f) * s, y, 150.0f * s, 36.0f * s};
    uiText(ui, panelColumn(panel, s).x, y + 9.0f * s, tr(caption), size, colText);
    return uiButton(ui, id, button, tr(choice), true, primary, size);
}

void drawDistrictPanel(App& app, UiRect panel, float s) {
    Ui& ui = app.ui;
    City& city = app.city;
    const int district = app.paintDistrict;
    // None is chosen at the start, and a scripted number may be no district at all.
    const int entry = district >= 1 && district < DISTRICT_COUNT ? district : 0;
    const PanelColumn column = panelColumn(panel, s);
    char title[64];
    panelTitle(ui, column, formatTextInto(title, sizeof title, tr(STR_DISTRICT_NUMBER), district));
    float y = column.y + 38.0f * s;
    uiWrappedText(ui, {column.x, y, column.width, 80.0f * s}, tr(STR_DISTRICT_HINT), uiFontSize(ui, 15.0f),
                  colText, s);
    y += 74.0f * s;
    const StringId taxLevel = TAX_LEVELS[std::clamp(city.districtTax[entry], 0, 2)];
    if (choiceRow(ui, panel, s, y, TAX_ID, STR_TAX, taxLevel, false)) cycleDistrictTax(city, district);
    y += 50.0f * s;
    for (size_t i = 0; i < POLICIES.size(); i++) {
        const bool set = (city.districtPolicy[entry] & POLICIES[i].bit) != 0;
        if (choiceRow(ui, panel, s, y, POLICY_ID + static_cast<uint32_t>(i), POLICIES[i].caption,
                      set ? STR_ON : STR_OFF, set))
            toggleDistrictPolicy(city, district, POLICIES[i].bit);
        y += 46.0f * s;
    }
}
