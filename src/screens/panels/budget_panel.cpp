#include "screens/panels/budget_panel.h"

#include "app/app.h"
#include "screens/panels/panel_parts.h"
#include "sim/finance.h"
#include "ui/layer/ui_text.h"
#include "ui/layer/ui_widgets.h"
#include "ui/words/format_text.h"
#include "ui/words/strings.h"

constexpr uint32_t TAX_ID = 380;    // plus 2 * tax, and 1 for "+"
constexpr uint32_t BUDGET_ID = 390; // the same

// Indexed like City::serviceBudget.
static constexpr std::array<StringId, 8> BUDGETS = {STR_POLICE, STR_FIRE,    STR_HEALTH, STR_EDUCATION,
                                                    STR_PARKS,  STR_TRANSIT, STR_POWER,  STR_WATER};
static_assert(BUDGETS.size() == decltype(City::serviceBudget)().size());

struct RateRow {
    const char* caption;
    int rate;    // percent
    int lowest;  // "-" works at this rate and above
    int highest; // "+" works below this rate
    uint32_t minusId;
};

// The player's step, 1 or -1, or 0. Moves `y` to the next row.
static int rateRow(Ui& ui, UiRect panel, float s, float& y, const RateRow& row) {
    const int size = uiFontSize(ui, 16.0f);
    const float side = 30.0f * s;
    const float plusX = panel.x + panel.w - 14.0f * s - side;
    const float minusX = plusX - side - 6.0f * s;
    char percent[16];
    formatTextInto(percent, sizeof percent, "%d%%", row.rate);
    uiText(ui, panelColumn(panel, s).x, y + 8.0f * s, row.caption, size, colText);
    uiText(ui, minusX - 8.0f * s, y + 8.0f * s, percent, size, colText, ALIGN_RIGHT);

    const float top = y + 2.0f * s;
    int step = 0;
    if (uiButton(ui, row.minusId, {minusX, top, side, side}, "-", row.rate >= row.lowest, false, size))
        step = -1;
    if (uiButton(ui, row.minusId + 1, {plusX, top, side, side}, "+", row.rate < row.highest, false, size))
        step = 1;
    y += 36.0f * s;
    return step;
}

void drawBudgetPanel(App& app, UiRect panel, float s) {
    Ui& ui = app.ui;
    City& city = app.city;
    const PanelColumn column = panelColumn(panel, s);
    panelTitle(ui, column, tr(STR_TAXES));
    float y = column.y + 40.0f * s;
    for (int tax = 0; tax < static_cast<int>(city.taxRate.size()); tax++) {
        const uint32_t id = TAX_ID + 2 * static_cast<uint32_t>(tax);
        const int step =
            rateRow(ui, panel, s, y, {tr(STR_RESIDENTIAL + tax), city.taxRate[tax], 21, 200, id});
        if (step != 0) adjustTax(city, tax, step);
    }
    y += 10.0f * s;
    uiText(ui, column.x, y, tr(STR_SERVICE_BUDGETS), uiFontSize(ui, 18.0f), colGold, ALIGN_LEFT, true);
    y += 34.0f * s;
    for (int budget = 0; budget < static_cast<int>(BUDGETS.size()); budget++) {
        const uint32_t id = BUDGET_ID + 2 * static_cast<uint32_t>(budget);
        const int step =
            rateRow(ui, panel, s, y, {tr(BUDGETS[budget]), city.serviceBudget[budget], 51, 150, id});
        if (step != 0) adjustBudget(city, budget, step);
    }
}
