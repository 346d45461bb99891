#include "screens/game/game_screen.h"

#include "app/app.h"
#include "app/hud_layout.h"
#include "screens/game/bottom_bar.h"
#include "screens/game/right_panel.h"
#include "screens/game/tool_panel.h"
#include "screens/game/top_bar.h"
#include "screens/game/tutorial.h"
#include "screens/menus/pause_menu.h"
#include "ui/layer/ui_text.h"
#include "ui/words/format_text.h"

void drawGameScreen(App& app, const Input& input) {
    app.cityStats = computeStats(app.city);
    drawTopBar(app);
    drawToolPanel(app);
    drawRightPanel(app, input);
    drawBottomBar(app);
    drawTutorial(app, input);
    if (app.paused) drawPauseMenu(app, input);
}

void drawFpsLabel(App& app, const Input&) {
    if (!app.settings.showFps) return;
    Ui& ui = app.ui;
    const HudLayout hud = hudLayout(ui);
    char text[64];
    formatTextInto(text, sizeof text, "FPS %.0f", static_cast<double>(app.frameStats.framesPerSecond));
    uiText(ui, hud.width - 12.0f * hud.scale, hud.height - 26.0f * hud.scale, text, uiFontSize(ui, 16.0f),
           {1.0f, 1.0f, 0.7f, 1.0f}, ALIGN_RIGHT);
}
