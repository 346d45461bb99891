#include "screens/game/bottom_bar.h"

#include "app/app.h"
#include "app/hud_layout.h"
#include "sim/missions.h"
#include "sim/numbers.h"
#include "ui/layer/ui_shapes.h"
#include "ui/layer/ui_text.h"
#include "ui/layer/ui_widgets.h"
#include "ui/words/format_text.h"
#include "ui/words/hud_text.h"
#include "ui/words/strings.h"

#include <algorithm>
#include <cassert>

static void drawMission(App& app, const HudLayout& hud) {
    Ui& ui = app.ui;
    const float s = hud.scale;
    const auto [x, y, width, height] = hud.missionBlock;
    const int mission = std::clamp(app.city.missionIndex, 0, missionCount() - 1);
    static_assert(STR_MISSION_1 + 2 * missionCount() - 1 == STR_GOAL_6);
    const char* name = tr(STR_MISSION_1 + 2 * mission);
    const char* goal = tr(STR_GOAL_1 + 2 * mission);
    const float progress = missionProgress(app.cityStats, app.city.missionIndex);
    const int small = uiFontSize(ui, 12.0f);
    char text[128];

    formatTextInto(text, sizeof text, tr(STR_MISSION_OF), mission + 1, missionCount());
    uiText(ui, x, y, text, small, colMuted);
    uiText(ui, x, y + 14.0f * s, name, uiFitFontSize(ui, name, uiFontSize(ui, 17.0f), width, true), colGold,
           ALIGN_LEFT, true);
    uiText(ui, x, y + 36.0f * s, goal, uiFitFontSize(ui, goal, uiFontSize(ui, 13.0f), width), colText);
    uiProgressBar(ui, {x, y + 56.0f * s, 250.0f * s, 9.0f * s}, progress, colGood, colTrack);
    formatTextInto(text, sizeof text, tr(STR_PROGRESS_PERCENT), wholePart(progress * 100.0f));
    uiText(ui, x + 260.0f * s, y + 52.0f * s, text, small, colText);
}

static void drawStatusLine(App& app, const HudLayout& hud) {
    if (app.statusTimer <= 0.0f || app.statusId == 0) return;
    const float s = hud.scale;
    const UiRect rect = {390.0f * s, hud.missionBlock.y, hud.width - (306.0f + 372.0f + 36.0f) * s,
                         68.0f * s};
    if (rect.w <= 0.0f) return; // a high window has room for mission and legend only
    StatusBuffer buffer;
    uiWrappedText(app.ui, rect, statusText(app.statusId, app.statusArg, buffer), uiFontSize(app.ui, 17.0f),
                  colText, s);
}

// --- The overlay's legend

struct ColorRange {
    UiColor low;
    UiColor high;
};

// By Overlay.
static constexpr std::array<ColorRange, OVERLAY_COUNT> OVERLAY_COLORS = {{
    {},
    {{0.25f, 0.78f, 0.36f, 1.0f}, {0.90f, 0.18f, 0.14f, 1.0f}}, // traffic
    {{0.15f, 0.16f, 0.18f, 1.0f}, {0.92f, 0.78f, 0.26f, 1.0f}}, // power
    {{0.15f, 0.16f, 0.18f, 1.0f}, {0.20f, 0.62f, 1.00f, 1.0f}}, // water
    {{0.50f, 0.66f, 0.40f, 1.0f}, {0.36f, 0.22f, 0.10f, 1.0f}}, // pollution
    {{0.80f, 0.27f, 0.22f, 1.0f}, {0.26f, 0.74f, 0.38f, 1.0f}}, // happiness
}};

static UiColor mix(const ColorRange& range, float t) {
    const auto channel = [t](float low, float high) { return low + (high - low) * t; };
    return {channel(range.low.r, range.high.r), channel(range.low.g, range.high.g),
            channel(range.low.b, range.high.b), 1.0f};
}

// Each cell overlaps the next by a pixel, so that no gap shows.
static void drawColorBar(Ui& ui, UiRect bar, const ColorRange& range) {
    constexpr int CELLS = 32;
    const float step = 1.0f / static_cast<float>(CELLS);
    for (int i = 0; i < CELLS; i++) {
        const float start = static_cast<float>(i) * step;
        uiRect(ui, {bar.x + start * bar.w, bar.y, step * bar.w + 1.0f, bar.h},
               mix(range, start + 0.5f * step));
    }
    uiFrame(ui, bar, uiScale(ui), colFrame);
}

static void drawOverlayLegend(App& app, const HudLayout& hud) {
    assert(app.currentOverlay < OVERLAY_COUNT);
    if (app.currentOverlay == OVERLAY_NORMAL) return;
    Ui& ui = app.ui;
    const float s = hud.scale;
    const float top = hud.bottomBar.y;
    const UiRect bar = {hud.width - 306.0f * s, top + 35.0f * s, 286.0f * s, 14.0f * s};
    const int small = uiFontSize(ui, 13.0f);
    uiText(ui, bar.x, top + 9.0f * s, overlayName(app.currentOverlay), uiFontSize(ui, 16.0f), colGold,
           ALIGN_LEFT, true);
    drawColorBar(ui, bar, OVERLAY_COLORS[app.currentOverlay]);
    uiText(ui, bar.x, top + 53.0f * s, tr(STR_LOW), small, colMuted);
    uiText(ui, bar.x + bar.w, top + 53.0f * s, tr(STR_HIGH), small, colMuted, ALIGN_RIGHT);
}

void drawBottomBar(App& app) {
    Ui& ui = app.ui;
    const HudLayout hud = hudLayout(ui);
    const float s = hud.scale;
    uiRect(ui, hud.bottomBar, colBar);
    uiRect(ui, {0.0f, hud.bottomBar.y, hud.width, 2.0f * s}, colFrame);
    if (app.city.missionIndex < missionCount())
        drawMission(app, hud);
    else
        uiText(ui, hud.missionBlock.x, hud.missionBlock.y + 6.0f * s, tr(STR_NO_MISSION_LEFT),
               uiFontSize(ui, 17.0f), colGold, ALIGN_LEFT, true);
    drawStatusLine(app, hud);
    drawOverlayLegend(app, hud);
}
