#include "screens/menus/launcher.h"

#include "app/update_client.h"
#include "app/upkeep.h"
#include "maintenance/build_info.h"
#include "maintenance/files.h"
#include "maintenance/game_files.h"
#include "maintenance/platform.h"
#include "ui/layer/ui_shapes.h"
#include "ui/layer/ui_text.h"
#include "ui/layer/ui_widgets.h"
#include "ui/words/format_text.h"
#include "ui/words/strings.h"

#include <algorithm>
#include <cassert>
#include <iterator>

constexpr float BUTTON_HEIGHT = 44.0f;

// The panel in the window. Its pages count from its corner in lengths of a window 720 high.
struct LauncherPanel {
    float s; // pixels of such a length
    float x; // pixels
    float y;
    float cx;
    float height; // before scaling
};

static UiRect inPanel(const LauncherPanel& panel, float x, float y, float w, float h) {
    return {panel.x + x * panel.s, panel.y + y * panel.s, w * panel.s, h * panel.s};
}

// Centred across the panel.
static void panelText(Ui& ui, const LauncherPanel& panel, float y, const char* text, float size,
                      UiColor color, bool bold = false) {
    uiText(ui, panel.cx, panel.y + y * panel.s, text, uiFontSize(ui, size), color, ALIGN_CENTER, bold);
}

static bool launcherButton(Ui& ui, uint32_t id, UiRect rect, StringId label, bool enabled = true,
                           bool primary = false) {
    return uiButton(ui, id, rect, tr(label), enabled, primary, uiFontSize(ui, 20.0f));
}

// --- Main page

struct UpdateStatus {
    int text; // StringId, -1 for none
    UiColor color;
};

static constexpr UpdateStatus UPDATE_STATUS[] = {
    {-1, colText}, // UPDATE_IDLE
    {STR_UPDATE_UNCONFIGURED_TEXT, colText},
    {STR_UPDATE_CHECKING_TEXT, colText},
    {STR_UPDATE_CURRENT_TEXT, colGood},
    {STR_UPDATE_NEWER_TEXT, colGold},
    {STR_UPDATE_DIFFERENT_TEXT, colText},
    {STR_UPDATE_OFFLINE_TEXT, colBad},
    {STR_UPDATE_DOWNLOADING_TEXT, colText},
    {STR_UPDATE_FAILED_TEXT, colBad},
};
static_assert(std::size(UPDATE_STATUS) == UPDATE_DOWNLOAD_FAILED + 1);

static void drawUpdateStatus(App& app, const LauncherPanel& panel) {
    assert(app.updateState < std::size(UPDATE_STATUS));
    const UpdateStatus& status = UPDATE_STATUS[app.updateState];
    if (status.text < 0) return;
    char text[512];
    formatTextInto(text, sizeof text, tr(status.text), app.updateManifest.version.c_str());
    uiWrappedText(app.ui, inPanel(panel, 40.0f, 218.0f, 560.0f, 60.0f), text, uiFontSize(app.ui, 18.0f),
                  status.color, panel.s);
}

static void drawHead(App& app, const LauncherPanel& panel) {
    Ui& ui = app.ui;
    uiTexturedRect(ui, inPanel(panel, 265.0f, 20.0f, 110.0f, 110.0f), app.logoTexture,
                   {1.0f, 1.0f, 1.0f, 1.0f});
    panelText(ui, panel, 140.0f, tr(STR_GAME_NAME), 40.0f, colGold, true);
    char version[128];
    formatTextInto(version, sizeof version, tr(STR_VERSION_NAME), gameVersion);
    panelText(ui, panel, 186.0f, version, 18.0f, colMuted);
    drawUpdateStatus(app, panel);
}

static void openFilesPage(App& app) {
    refreshGameFiles(app);
    app.launcherPage = LAUNCHER_FILES;
}

static void drawSaveLine(App& app, const LauncherPanel& panel, float y) {
    char line[256];
    const std::string saved = fileTimeText(fileModified(app.savePath));
    formatTextInto(line, sizeof line, tr(app.saveExists ? STR_SAVED_GAME_SIZE : STR_NO_SAVED_GAME),
                   saved.c_str());
    panelText(app.ui, panel, y, line, 16.0f, colMuted);
}

static void drawMainPage(App& app, const LauncherPanel& panel) {
    Ui& ui = app.ui;
    drawHead(app, panel);

    const auto rowY = [](float index) { return 300.0f + 53.0f * index; };
    const auto row = [&](float index) { return inPanel(panel, 150.0f, rowY(index), 340.0f, BUTTON_HEIGHT); };
    const UpdateState state = app.updateState;
    if (launcherButton(ui, 450, row(0), STR_UPDATE_BUTTON, canPressUpdate(state), state == UPDATE_NEWER))
        pressUpdate(app);
    if (launcherButton(ui, 451, row(1), STR_OPEN_GAME, true, true)) app.screen = SCREEN_TITLE;
    if (launcherButton(ui, 452, row(2), STR_GAME_FILES)) openFilesPage(app);
    if (launcherButton(ui, 453, row(3), STR_DELETE_SAVES, app.saveExists))
        app.launcherPage = LAUNCHER_DELETE_SAVE;
    if (launcherButton(ui, 454, row(4), STR_UNINSTALL)) app.launcherPage = LAUNCHER_UNINSTALL;
    drawSaveLine(app, panel, rowY(4) + BUTTON_HEIGHT + 16.0f);
}

// --- Files page

static void drawFileRow(Ui& ui, const LauncherPanel& panel, float y, const GameFile& file) {
    const float s = panel.s;
    uiText(ui, panel.x + 36.0f * s, y, file.name.c_str(), uiFontSize(ui, 17.0f), colText);
    char details[128];
    formatTextInto(details, sizeof details, "%s   %s", fileSizeText(file.size).c_str(),
                   fileTimeText(file.modified).c_str());
    uiText(ui, panel.x + 604.0f * s, y, details, uiFontSize(ui, 16.0f), colMuted, ALIGN_RIGHT);
}

static void drawFilesPage(App& app, const LauncherPanel& panel) {
    constexpr size_t MOST_ROWS = 12; // further files are not shown, because the page does not scroll
    Ui& ui = app.ui;
    panelText(ui, panel, 22.0f, tr(STR_GAME_FILES), 34.0f, colGold, true);
    uiWrappedText(ui, inPanel(panel, 36.0f, 66.0f, 568.0f, 40.0f), app.exeDir.c_str(), uiFontSize(ui, 14.0f),
                  colMuted, panel.s);
    if (app.gameFiles.empty()) panelText(ui, panel, 130.0f, tr(STR_NO_GAME_FILES), 18.0f, colText);
    for (size_t i = 0; i < std::min(app.gameFiles.size(), MOST_ROWS); i++)
        drawFileRow(ui, panel, panel.y + (112.0f + 26.0f * static_cast<float>(i)) * panel.s,
                    app.gameFiles[i]);

    constexpr float WIDTH = (568.0f - 12.0f) / 2.0f;
    const float y = panel.height - 64.0f;
    const UiRect left = inPanel(panel, 36.0f, y, WIDTH, BUTTON_HEIGHT);
    const UiRect right = inPanel(panel, 36.0f + WIDTH + 12.0f, y, WIDTH, BUTTON_HEIGHT);
    if (launcherButton(ui, 455, left, STR_OPEN_FOLDER, true, true)) shellOpen(app.exeDir, false);
    if (launcherButton(ui, 456, right, STR_BACK)) app.launcherPage = LAUNCHER_MAIN;
}

// --- Confirmation pages

static void drawConfirmationPage(App& app, const LauncherPanel& panel) {
    Ui& ui = app.ui;
    const bool uninstall = app.launcherPage == LAUNCHER_UNINSTALL;
    assert(uninstall || app.launcherPage == LAUNCHER_DELETE_SAVE);
    uiWrappedText(ui, inPanel(panel, 36.0f, 40.0f, 568.0f, 150.0f),
                  tr(uninstall ? STR_UNINSTALL_QUESTION : STR_DELETE_QUESTION), uiFontSize(ui, 22.0f),
                  colText, panel.s);

    const float y = panel.height - 80.0f;
    const UiRect left = inPanel(panel, 106.0f, y, 200.0f, BUTTON_HEIGHT);
    const UiRect right = inPanel(panel, 334.0f, y, 200.0f, BUTTON_HEIGHT);
    const bool yes = launcherButton(ui, 457, left, STR_YES, true, uninstall);
    const bool no = launcherButton(ui, 458, right, STR_NO);
    if (yes && uninstall) uninstallGame(app);
    if (yes && !uninstall) deleteSave(app);
    // A removal that could not begin leaves its page, so that nobody takes it for done.
    if (no || (yes && !uninstall)) app.launcherPage = LAUNCHER_MAIN;
}

// --- The whole screen

static LauncherPanel launcherPanel(const App& app) {
    const bool confirmation =
        app.launcherPage == LAUNCHER_DELETE_SAVE || app.launcherPage == LAUNCHER_UNINSTALL;
    const float s = uiScale(app.ui);
    const float height = confirmation ? 300.0f : 620.0f;
    const float cx = static_cast<float>(app.ui.screenW) / 2.0f;
    const float y = (static_cast<float>(app.ui.screenH) - height * s) / 2.0f;
    return {s, cx - 320.0f * s, y, cx, height};
}

void drawLauncher(App& app, const Input&) {
    Ui& ui = app.ui;
    uiGradientRect(ui, {0.0f, 0.0f, static_cast<float>(ui.screenW), static_cast<float>(ui.screenH)},
                   {0.0f, 0.0f, 0.0f, 0.35f}, {0.0f, 0.0f, 0.0f, 0.8f});
    const LauncherPanel panel = launcherPanel(app);
    const UiRect rect = {panel.x, panel.y, 640.0f * panel.s, panel.height * panel.s};
    uiPanel(ui, rect, 12.0f * panel.s, 2.0f * panel.s);

    switch (app.launcherPage) {
    case LAUNCHER_MAIN:
        drawMainPage(app, panel);
        break;
    case LAUNCHER_FILES:
        drawFilesPage(app, panel);
        break;
    case LAUNCHER_DELETE_SAVE:
    case LAUNCHER_UNINSTALL:
        drawConfirmationPage(app, panel);
        break;
    }
}
