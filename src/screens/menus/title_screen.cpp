#include "screens/menus/title_screen.h"

#include "app/app.h"
#include "app/session.h"
#include "ui/layer/ui_shapes.h"
#include "ui/layer/ui_text.h"
#include "ui/layer/ui_widgets.h"
#include "ui/words/format_text.h"
#include "ui/words/strings.h"

static void drawHead(App& app, float width, float height) {
    Ui& ui = app.ui;
    const float s = uiScale(ui);
    const float cx = width / 2.0f;
    const float logoTop = 0.06f * height;
    uiTexturedRect(ui, {cx - 100.0f * s, logoTop, 200.0f * s, 200.0f * s}, app.logoTexture,
                   {1.0f, 1.0f, 1.0f, 1.0f});

    const float base = logoTop + 200.0f * s;
    uiText(ui, cx, base + 4.0f * s, tr(STR_GAME_NAME), uiFontSize(ui, 50.0f), colGold, ALIGN_CENTER, true);
    uiText(ui, cx, base + 66.0f * s, tr(STR_SUBTITLE), uiFontSize(ui, 20.0f), colText, ALIGN_CENTER);
    if (app.updateState != UPDATE_NEWER) return;
    char news[256];
    formatTextInto(news, sizeof news, tr(STR_UPDATE_AVAILABLE), app.updateManifest.version.c_str());
    uiText(ui, cx, base + 100.0f * s, news, uiFontSize(ui, 18.0f), colGold, ALIGN_CENTER, true);
}

static void takeTutorial(App& app) {
    newCity(app);
    startTutorial(app, 0);
}

static void openSettings(App& app) {
    app.screen = SCREEN_SETTINGS;
    app.returnScreen = SCREEN_TITLE;
}

static void quit(App& app) { app.quitRequested = true; }

struct TitleButton {
    uint32_t id;
    StringId label;
    void (*click)(App& app);
};

static constexpr TitleButton BUTTONS[] = {
    {100, STR_NEW_CITY, newCity},      {101, STR_CONTINUE, loadGame}, {104, STR_TUTORIAL, takeTutorial},
    {102, STR_SETTINGS, openSettings}, {103, STR_QUIT, quit},
};

static void drawButtons(App& app, float width, float height) {
    const float s = uiScale(app.ui);
    UiRect rect = {width / 2.0f - 160.0f * s, 0.52f * height, 320.0f * s, 48.0f * s};
    for (const TitleButton& button : BUTTONS) {
        const bool first = &button == BUTTONS;
        const bool enabled = button.label != STR_CONTINUE || app.saveExists;
        if (uiButton(app.ui, button.id, rect, tr(button.label), enabled, first, uiFontSize(app.ui, 22.0f),
                     first))
            button.click(app);
        rect.y += 60.0f * s;
    }
}

void drawTitleScreen(App& app, const Input&) {
    Ui& ui = app.ui;
    const float width = static_cast<float>(ui.screenW);
    const float height = static_cast<float>(ui.screenH);
    uiGradientRect(ui, {0.0f, 0.0f, width, height}, {0.0f, 0.0f, 0.0f, 0.15f}, {0.0f, 0.0f, 0.0f, 0.75f});
    drawHead(app, width, height);
    drawButtons(app, width, height);
    uiText(ui, width / 2.0f, height - 30.0f * uiScale(ui), tr(STR_KEY_HINT), uiFontSize(ui, 15.0f),
           {0.85f, 0.82f, 0.74f, 0.9f}, ALIGN_CENTER);
}
