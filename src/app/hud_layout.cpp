#include "app/hud_layout.h"

#include "app/tools.h"

#include <algorithm>
#include <cassert>

HudLayout hudLayout(int drawableWidth, int drawableHeight) {
    const float s = uiScale(drawableHeight);
    const float width = static_cast<float>(std::max(drawableWidth, 1));
    const float height = static_cast<float>(std::max(drawableHeight, 1));
    const float panelHeight = std::max(std::min(height - 148.0f * s, 640.0f * s), 260.0f * s);

    HudLayout hud;
    hud.scale = s;
    hud.width = width;
    hud.height = height;
    hud.topBar = {0.0f, 0.0f, width, 44.0f * s};
    hud.toolPanel = {10.0f * s, 54.0f * s, 232.0f * s, 500.0f * s};
    hud.rightPanel = {width - 306.0f * s, 54.0f * s, 296.0f * s, panelHeight};
    hud.bottomBar = {0.0f, height - 84.0f * s, width, 84.0f * s};
    hud.missionBlock = {12.0f * s, height - 76.0f * s, 360.0f * s, 68.0f * s};
    return hud;
}

HudLayout hudLayout(const Ui& ui) { return hudLayout(ui.screenW, ui.screenH); }

UiRect categoryButton(const HudLayout& hud, int category) {
    assert(category >= 0 && category <= CATEGORY_COUNT); // a line stands in the place after the last
    const float s = hud.scale;
    return {18.0f * s, (62.0f + 38.0f * static_cast<float>(category)) * s, 216.0f * s, 34.0f * s};
}

UiRect toolButton(const HudLayout& hud, int row) {
    assert(row >= 0 && row < TOOL_COUNT);
    const float s = hud.scale;
    return {18.0f * s, (336.0f + 38.0f * static_cast<float>(row)) * s, 216.0f * s, 34.0f * s};
}

bool pointerOverHud(const App& app, const Input& input) {
    if (app.screen != SCREEN_GAME || app.paused) return true;
    const auto pointerIn = [&](UiRect rect) { return contains(rect, input.mouseX, input.mouseY); };
    if (app.tutorialStep >= 0 && pointerIn(app.tutorialCard)) return true;
    const HudLayout hud = hudLayout(input.drawableWidth, input.drawableHeight);
    // A click where it hangs over its panel would otherwise build on the land below.
    const UiRect lastTool = toolButton(hud, toolCount(app.currentCategory) - 1);
    return pointerIn(hud.topBar) || pointerIn(hud.toolPanel) || pointerIn(lastTool) ||
           pointerIn(hud.bottomBar) || pointerIn(hud.rightPanel);
}
