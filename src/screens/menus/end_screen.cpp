#include "screens/menus/end_screen.h"

#include "app/app.h"
#include "app/hud_layout.h"
#include "app/session.h"
#include "sim/city_stats.h"
#include "sim/numbers.h"
#include "ui/layer/ui_text.h"
#include "ui/layer/ui_widgets.h"
#include "ui/words/format_text.h"
#include "ui/words/strings.h"

constexpr uint32_t KEEP_BUILDING_ID = 430;
constexpr uint32_t NEW_CITY_ID = 431;
constexpr uint32_t MAIN_MENU_ID = 432;

static void drawVerdict(Ui& ui, const CityStats& stats, float centre, float top, bool won) {
    const float s = uiScale(ui);
    const int textSize = uiFontSize(ui, 17.0f);
    char figures[256];
    formatTextInto(figures, sizeof figures, tr(STR_END_FIGURES), stats.day, stats.population, stats.jobs,
                   wholePart(stats.happiness + 0.5f));
    uiText(ui, centre, top + 22.0f * s, tr(won ? STR_METROPOLIS_COMPLETE : STR_WENT_BANKRUPT),
           uiFontSize(ui, 30.0f), won ? colGold : colBad, ALIGN_CENTER, true);
    uiText(ui, centre, top + 74.0f * s, tr(won ? STR_WON_TEXT : STR_LOST_TEXT), textSize, colText,
           ALIGN_CENTER);
    uiText(ui, centre, top + 124.0f * s, figures, textSize, colText, ALIGN_CENTER);
}

static void drawButtons(App& app, float centre, float y, bool won) {
    Ui& ui = app.ui;
    const float s = uiScale(ui);
    const auto button = [&](uint32_t id, float below, StringId label, bool primary) {
        const UiRect rect = {centre - 140.0f * s, y + below * s, 280.0f * s, 46.0f * s};
        return uiButton(ui, id, rect, tr(label), true, primary, uiFontSize(ui, 20.0f));
    };
    if (won && button(KEEP_BUILDING_ID, -58.0f, STR_KEEP_BUILDING, true)) {
        app.city.keepPlaying = 1;
        app.screen = SCREEN_GAME;
    }
    if (button(NEW_CITY_ID, 0.0f, STR_NEW_CITY, !won)) newCity(app);
    // It hangs over the panel's lower edge.
    if (button(MAIN_MENU_ID, 58.0f, STR_MAIN_MENU, false)) {
        app.paused = false;
        app.screen = SCREEN_TITLE;
    }
}

void drawEndScreen(App& app, const Input&) {
    Ui& ui = app.ui;
    const HudLayout hud = hudLayout(ui);
    const float s = hud.scale;
    const float centre = hud.width / 2.0f;
    const bool won = app.city.allMissionsDone && !app.city.bankrupt; // bankruptcy is for good
    const UiRect panel = {centre - 270.0f * s, hud.height / 2.0f - 190.0f * s, 540.0f * s, 380.0f * s};
    uiDimWindow(ui, 0.55f);
    uiPanel(ui, panel, 12.0f * s, 2.0f * s);
    drawVerdict(ui, computeStats(app.city), centre, panel.y, won);
    drawButtons(app, centre, panel.y + (380.0f - 70.0f) * s, won);
}
