#include "screens/panels/city_overview.h"

#include "app/app.h"
#include "screens/panels/panel_parts.h"
#include "sim/numbers.h"
#include "ui/layer/ui_text.h"
#include "ui/layer/ui_widgets.h"
#include "ui/words/format_text.h"
#include "ui/words/strings.h"

#include <algorithm>
#include <cmath>

// The bar shows the size; sign and colour show the direction.
static void drawDemand(Ui& ui, PanelColumn column, float s, float y, int zone, float demand) {
    const int size = uiFontSize(ui, 14.0f);
    char percent[16];
    formatTextInto(percent, sizeof percent, "%+d%%", wholePart(demand * 100.0f));
    uiText(ui, column.x, y, tr(STR_RESIDENTIAL + zone), size, colMuted);
    uiText(ui, column.x + column.width, y, percent, size, colText, ALIGN_RIGHT);
    uiProgressBar(ui, {column.x, y + 19.0f * s, column.width, 9.0f * s}, std::fabs(demand),
                  demand >= 0.0f ? colGood : colBad, colTrack);
}

void drawCityOverview(App& app, UiRect panel, float s) {
    Ui& ui = app.ui;
    const PanelColumn column = panelColumn(panel, s);
    panelTitle(ui, column, tr(STR_CITY));
    float y = column.y + 40.0f * s;
    uiText(ui, column.x, y, tr(STR_DEMAND), uiFontSize(ui, 16.0f), colText, ALIGN_LEFT, true);
    y += 28.0f * s;

    const CityStats& stats = app.cityStats;
    for (int zone = 0; zone < static_cast<int>(stats.demand.size()); zone++) {
        drawDemand(ui, column, s, y, zone, stats.demand[zone]);
        y += 38.0f * s;
    }
    y += 10.0f * s;
    char text[16];
    formatTextInto(text, sizeof text, "%d", stats.population);
    uiKeyValueRow(ui, column.x, y, column.width, tr(STR_CITIZENS), text, colText);
    formatTextInto(text, sizeof text, "%d%%", wholePart(stats.happiness + 0.5f));
    uiKeyValueRow(ui, column.x, y, column.width, tr(STR_HAPPINESS), text, colText);

    const float foot = std::max(panel.y + panel.h - 90.0f * s, y);
    uiWrappedText(ui, {column.x, foot, column.width, 80.0f * s}, tr(STR_INSPECTOR_HINT),
                  uiFontSize(ui, 15.0f), colMuted, s);
}
