#include "screens/panels/statistics_panel.h"

#include "app/app.h"
#include "screens/panels/panel_parts.h"
#include "sim/numbers.h"
#include "ui/layer/ui_widgets.h"
#include "ui/words/format_text.h"
#include "ui/words/strings.h"

#include <algorithm>
#include <numeric>

// A running list of figures.
struct FigureList {
    Ui& ui;
    PanelColumn column;
    float y;
};

static void figure(FigureList& list, StringId caption, const char* value, UiColor color = colText) {
    uiKeyValueRow(list.ui, list.column.x, list.y, list.column.width, tr(caption), value, color);
}

static void count(FigureList& list, StringId caption, int value, UiColor color = colText) {
    char text[16];
    figure(list, caption, formatTextInto(text, sizeof text, "%d", value), color);
}

static void percent(FigureList& list, StringId caption, int value) {
    char text[16];
    figure(list, caption, formatTextInto(text, sizeof text, "%d%%", value));
}

static int busStops(const City& city) {
    return static_cast<int>(std::count_if(city.cells.begin(), city.cells.end(),
                                          [](const Cell& cell) { return cell.busStop != 0; }));
}

void drawStatisticsPanel(App& app, UiRect panel, float s) {
    const CityStats& stats = app.cityStats;
    const int unemployed = std::max(saturated(int64_t{stats.workers} - stats.employed), 0);
    const auto& working = stats.workingBuildings;
    const PanelColumn column = panelColumn(panel, s);
    panelTitle(app.ui, column, tr(STR_STATISTICS));

    FigureList list = {app.ui, column, column.y + 40.0f * s};
    count(list, STR_CITIZENS, stats.population);
    count(list, STR_JOBS, stats.jobs);
    count(list, STR_WORKERS, stats.workers);
    count(list, STR_UNEMPLOYED, unemployed, unemployed >= 1 ? colBad : colText);
    percent(list, STR_EDUCATED, percentOf(stats.educatedShare));
    percent(list, STR_HAPPINESS, wholePart(stats.happiness + 0.5f));
    percent(list, STR_POLLUTION, percentOf(stats.averagePollution));
    percent(list, STR_TRAFFIC, percentOf(stats.averageTraffic));
    count(list, STR_BUS_STOPS, busStops(app.city));
    count(list, STR_TRANSIT_RIDERS, stats.transitRiders);
    count(list, STR_COMMUTERS, stats.commuters);
    char lengths[32];
    figure(list, STR_STREETS_AND_AVENUES,
           formatTextInto(lengths, sizeof lengths, "%d / %d", stats.streetCells, stats.avenueCells));
    count(list, STR_WORKING_BUILDINGS, std::accumulate(working.begin(), working.end(), 0));
}
