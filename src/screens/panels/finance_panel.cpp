#include "screens/panels/finance_panel.h"

#include "app/app.h"
#include "screens/panels/panel_parts.h"
#include "sim/numbers.h"
#include "ui/layer/ui_shapes.h"
#include "ui/layer/ui_text.h"
#include "ui/layer/ui_widgets.h"
#include "ui/words/format_text.h"
#include "ui/words/strings.h"

#include <algorithm>
#include <cinttypes>

constexpr UiColor colIncome = {0.40f, 0.80f, 0.45f, 1.0f};
constexpr UiColor colExpense = {0.90f, 0.40f, 0.35f, 1.0f};
constexpr float CHART_HEIGHT = 200.0f;

static void moneyRow(Ui& ui, PanelColumn column, float& y, StringId caption, double money, UiColor color) {
    char text[32];
    formatTextInto(text, sizeof text, "%" PRId64, wholePart64(money));
    uiKeyValueRow(ui, column.x, y, column.width, tr(caption), text, color);
}

// No count may lead past the rows of the chart.
static int historyDays(const City& city) { return std::clamp(city.historyCount, 0, HISTORY_LENGTH); }

static float chartScale(const City& city, int days) {
    float scale = 1.0f;
    for (const HistoryRow row : {HISTORY_INCOME, HISTORY_EXPENSES})
        for (int day = 0; day < days; day++) scale = std::max(scale, city.history[row][day]);
    return scale;
}

// Income and expenses of each day side by side, the oldest at the left.
static void drawChart(Ui& ui, const City& city, PanelColumn column, float top, float s) {
    uiRoundRect(ui, {column.x, top, column.width, CHART_HEIGHT * s}, 6.0f * s, {0.05f, 0.05f, 0.05f, 0.9f});
    const int days = historyDays(city);
    const float scale = chartScale(city, days);
    const float dayWidth = column.width / static_cast<float>(std::max(days, 1));
    const float foot = top + (CHART_HEIGHT - 6.0f) * s;
    const float highest = (CHART_HEIGHT - 14.0f) * s;
    const auto bar = [&](float x, float value, UiColor color) {
        const float height = hold(value / scale, 0.0f, 1.0f) * highest;
        uiRect(ui, {x, foot - height, 0.4f * dayWidth, height}, color);
    };
    for (int day = 0; day < days; day++) {
        const float x = column.x + static_cast<float>(day) * dayWidth + 0.1f * dayWidth;
        bar(x, city.history[HISTORY_INCOME][day], colIncome);
        bar(x + 0.45f * dayWidth, city.history[HISTORY_EXPENSES][day], colExpense);
    }
}

static void legendEntry(Ui& ui, float x, float y, StringId caption, UiColor color) {
    const float s = uiScale(ui);
    uiRect(ui, {x, y + 5.0f * s, 10.0f * s, 10.0f * s}, color);
    uiText(ui, x + 16.0f * s, y, tr(caption), uiFontSize(ui, 14.0f), colMuted);
}

void drawFinancePanel(App& app, UiRect panel, float s) {
    Ui& ui = app.ui;
    const CityStats& stats = app.cityStats;
    const double balance = stats.lastIncome - stats.lastExpense;
    const PanelColumn column = panelColumn(panel, s);
    panelTitle(ui, column, tr(STR_FINANCES));
    float y = column.y + 40.0f * s;
    moneyRow(ui, column, y, STR_MONEY, stats.money, stats.money < 0.0 ? colBad : colGold);
    moneyRow(ui, column, y, STR_INCOME_PER_DAY, stats.lastIncome, colGood);
    moneyRow(ui, column, y, STR_EXPENSES_PER_DAY, stats.lastExpense, colBad);
    moneyRow(ui, column, y, STR_BALANCE_PER_DAY, balance, balance < 0.0 ? colBad : colGood);
    y += 10.0f * s;
    drawChart(ui, app.city, column, y, s);
    y += (CHART_HEIGHT + 8.0f) * s;
    legendEntry(ui, column.x, y, STR_INCOME, colIncome);
    legendEntry(ui, column.x + 120.0f * s, y, STR_EXPENSES, colExpense);
    y += 26.0f * s;
    char text[64];
    formatTextInto(text, sizeof text, tr(STR_LAST_DAYS), historyDays(app.city));
    uiText(ui, column.x, y, text, uiFontSize(ui, 14.0f), colText);
}
