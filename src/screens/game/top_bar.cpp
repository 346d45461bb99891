#include "screens/game/top_bar.h"

#include "app/app.h"
#include "app/hud_layout.h"
#include "app/session.h"
#include "sim/calendar.h"
#include "sim/numbers.h"
#include "ui/layer/ui_shapes.h"
#include "ui/layer/ui_text.h"
#include "ui/layer/ui_widgets.h"
#include "ui/words/format_text.h"
#include "ui/words/hud_text.h"
#include "ui/words/strings.h"

#include <algorithm>
#include <cassert>
#include <cinttypes>

constexpr uint32_t MENU_ID = 300;
constexpr uint32_t SPEED_ID = 301; // and the three after it
constexpr uint32_t OVERLAY_ID = 308;

struct PanelButton {
    uint32_t id;
    StringId label;
    Panel panel;
};

// From right to left.
static constexpr std::array<PanelButton, 3> PANEL_BUTTONS = {{
    {307, STR_STATISTICS, PANEL_STATISTICS},
    {306, STR_FINANCES, PANEL_FINANCE},
    {305, STR_BUDGET, PANEL_BUDGET},
}};

struct ReadOut {
    char text[128];
    UiColor color;
    float width; // pixels
};

// Everything on the bar that has a width of its own, at one font size.
struct TopBar {
    std::array<ReadOut, 6> readOuts;
    int readOutCount = 0;
    int fontSize = 0;
    float overlayWidth = 0.0f; // of the buttons
    std::array<float, PANEL_BUTTONS.size()> panelWidths = {};
    float leftWidth = 0.0f; // of the groups, with their gaps
    float rightWidth = 0.0f;
};

// --- What the bar says

static char* addReadOut(TopBar& bar, UiColor color) {
    assert(bar.readOutCount < static_cast<int>(bar.readOuts.size()));
    ReadOut& readOut = bar.readOuts[bar.readOutCount++];
    readOut.color = color;
    return readOut.text;
}

static void addCount(TopBar& bar, StringId format, int count, UiColor color) {
    formatTextInto(addReadOut(bar, color), sizeof(ReadOut::text), tr(format), count);
}

static void addMoney(TopBar& bar, double money) {
    formatTextInto(addReadOut(bar, money < 0.0 ? colBad : colGold), sizeof(ReadOut::text), "%s %" PRId64,
                   tr(STR_MONEY), wholePart64(money));
}

static void addDate(TopBar& bar, const City& city) {
    int day;
    int month;
    int year;
    calendarDate(city, day, month, year);
    char date[48];
    formatTextInto(date, sizeof date, "%02d.%02d.%04d", day, month, year);
    formatTextInto(addReadOut(bar, colText), sizeof(ReadOut::text), tr(STR_DATE_FORMAT),
                   tr(STR_SPRING + static_cast<int>(season(city))), date);
}

static void collectReadOuts(TopBar& bar, const City& city, const CityStats& stats) {
    addMoney(bar, stats.money);
    addDate(bar, city);
    addCount(bar, STR_CITIZEN_COUNT, stats.population, colText);
    addCount(bar, STR_JOB_COUNT, stats.jobs, colText);
    addCount(bar, STR_HAPPY_PERCENT, wholePart(stats.happiness + 0.5f),
             stats.happiness < 35.0f    ? colBad
             : stats.happiness >= 60.0f ? colGood
                                        : colText);
    if (city.raining == 1)
        formatTextInto(addReadOut(bar, colRain), sizeof(ReadOut::text), "%s", tr(STR_RAIN));
}

// --- How wide it is

static void measure(TopBar& bar, App& app, float s, int fontSize) {
    Ui& ui = app.ui;
    bar.fontSize = fontSize;
    bar.leftWidth = (96.0f + 10.0f) * s;
    for (int i = 0; i < bar.readOutCount; i++) {
        ReadOut& readOut = bar.readOuts[i];
        readOut.width = uiTextWidth(ui, readOut.text, fontSize);
        bar.leftWidth += readOut.width + 18.0f * s;
    }
    bar.overlayWidth =
        std::max(uiTextWidth(ui, overlayName(app.currentOverlay), fontSize) + 26.0f * s, 96.0f * s);
    bar.rightWidth = bar.overlayWidth + 6.0f * s + ((34.0f + 6.0f) * 4.0f + 10.0f + 10.0f) * s;
    for (size_t i = 0; i < PANEL_BUTTONS.size(); i++) {
        bar.panelWidths[i] = uiTextWidth(ui, tr(PANEL_BUTTONS[i].label), fontSize) + 26.0f * s;
        bar.rightWidth += bar.panelWidths[i] + 6.0f * s;
    }
}

static void fitInto(TopBar& bar, App& app, const HudLayout& hud) {
    const int smallest = uiFontSize(app.ui, 12.0f);
    int fontSize = uiFontSize(app.ui, 17.0f);
    measure(bar, app, hud.scale, fontSize);
    while (bar.leftWidth + bar.rightWidth > hud.width && fontSize > smallest)
        measure(bar, app, hud.scale, --fontSize);
}

// --- Drawing

static void drawReadOuts(Ui& ui, const TopBar& bar, const HudLayout& hud) {
    const float s = hud.scale;
    const float right = hud.width - bar.rightWidth - 12.0f * s;
    const float y = 22.0f * s - uiLineHeight(ui, bar.fontSize) / 2.0f;
    float x = 106.0f * s;
    for (int i = 0; i < bar.readOutCount; i++) {
        const ReadOut& readOut = bar.readOuts[i];
        if (x + readOut.width > right) return;
        uiText(ui, x, y, readOut.text, bar.fontSize, readOut.color);
        x += readOut.width + 18.0f * s;
    }
}

// A button of the bar, between two edges that the caller counts from right to left.
static bool barButton(Ui& ui, uint32_t id, float x, float width, const char* label, bool primary,
                      int fontSize) {
    const float s = uiScale(ui);
    return uiButton(ui, id, {x, 7.0f * s, width, 30.0f * s}, label, true, primary, fontSize);
}

static void drawSpeedButtons(App& app, const TopBar& bar, const HudLayout& hud) {
    static constexpr const char* LABELS[] = {"||", "1", "2", "3"};
    const float s = hud.scale;
    for (int speed = 3; speed >= 0; speed--) {
        const float x = hud.width - (10.0f + 34.0f + 40.0f * static_cast<float>(3 - speed)) * s;
        if (barButton(app.ui, SPEED_ID + static_cast<uint32_t>(speed), x, 34.0f * s, LABELS[speed],
                      app.speed == speed, bar.fontSize))
            setSpeed(app, speed);
    }
}

static void drawViewButtons(App& app, const TopBar& bar, const HudLayout& hud) {
    const float s = hud.scale;
    float x = hud.width - (10.0f + 34.0f * 4.0f + 6.0f * 3.0f + 16.0f) * s - bar.overlayWidth;
    if (barButton(app.ui, OVERLAY_ID, x, bar.overlayWidth, overlayName(app.currentOverlay),
                  app.currentOverlay != OVERLAY_NORMAL, bar.fontSize))
        cycleOverlay(app);
    for (size_t i = 0; i < PANEL_BUTTONS.size(); i++) {
        const PanelButton& button = PANEL_BUTTONS[i];
        const bool open = app.currentPanel == button.panel;
        x -= 6.0f * s + bar.panelWidths[i];
        if (barButton(app.ui, button.id, x, bar.panelWidths[i], tr(button.label), open, bar.fontSize))
            app.currentPanel = open ? PANEL_NONE : button.panel;
    }
}

void drawTopBar(App& app) {
    Ui& ui = app.ui;
    const HudLayout hud = hudLayout(ui);
    const float s = hud.scale;
    uiRect(ui, hud.topBar, colBar);
    uiRect(ui, {0.0f, 42.0f * s, hud.width, 2.0f * s}, colFrame);

    TopBar bar;
    collectReadOuts(bar, app.city, app.cityStats);
    fitInto(bar, app, hud);
    if (barButton(ui, MENU_ID, 10.0f * s, 84.0f * s, tr(STR_MENU), false, bar.fontSize)) app.paused = true;
    drawReadOuts(ui, bar, hud);
    drawSpeedButtons(app, bar, hud);
    drawViewButtons(app, bar, hud);
}
