#include "screens/menus/pause_menu.h"

#include "app/app.h"
#include "app/hud_layout.h"
#include "app/session.h"
#include "ui/layer/ui_text.h"
#include "ui/layer/ui_widgets.h"
#include "ui/words/strings.h"

static void resume(App& app) { app.paused = false; }

static void openSettings(App& app) {
    app.returnScreen = SCREEN_GAME;
    app.screen = SCREEN_SETTINGS;
}

static void quitToTitle(App& app) {
    app.paused = false;
    app.screen = SCREEN_TITLE;
}

struct MenuRow {
    uint32_t id;
    StringId label;
    void (*choose)(App& app);
};

static constexpr MenuRow ROWS[] = {
    {420, STR_RESUME, resume},         {421, STR_SAVE_GAME, saveGame},        {422, STR_LOAD_GAME, loadGame},
    {423, STR_SETTINGS, openSettings}, {424, STR_QUIT_TO_TITLE, quitToTitle},
};

void drawPauseMenu(App& app, const Input&) {
    Ui& ui = app.ui;
    const HudLayout hud = hudLayout(ui);
    const float s = hud.scale;
    const float centre = hud.width / 2.0f;
    const float side = 360.0f * s;
    const UiRect panel = {centre - side / 2.0f, (hud.height - side) / 2.0f, side, side};
    uiDimWindow(ui, 0.45f);
    uiPanel(ui, panel, 12.0f * s, 2.0f * s);
    uiText(ui, centre, panel.y + 20.0f * s, tr(STR_PAUSED), uiFontSize(ui, 32.0f), colGold, ALIGN_CENTER,
           true);

    UiRect button = {centre - 140.0f * s, panel.y + 84.0f * s, 280.0f * s, 44.0f * s};
    for (const MenuRow& row : ROWS) {
        const bool first = row.choose == resume;
        const bool enabled = row.choose != loadGame || app.saveExists;
        if (uiButton(ui, row.id, button, tr(row.label), enabled, first, uiFontSize(ui, 19.0f), first))
            row.choose(app);
        button.y += 54.0f * s;
    }
}
