#include "ui/layer/ui_widgets.h"

#include "ui/layer/ui_shapes.h"
#include "ui/layer/ui_text.h"
#include "ui/words/format_text.h"

#include <algorithm>
#include <cassert>

struct ButtonState {
    bool bright = false;
    bool held = false;
    bool clicked = false;
};

static bool sameRect(UiRect a, UiRect b) { return a.x == b.x && a.y == b.y && a.w == b.w && a.h == b.h; }

// A widget is asked before the panels over it are drawn, so that only the frame before tells of them: under
// the pointer lies one of its panels that has yet to come in this frame.
static bool pointerOnLaterPanel(const Ui& ui) {
    return std::any_of(ui.panelsBefore.begin(), ui.panelsBefore.end(), [&](UiRect panel) {
        const bool drawn = std::any_of(ui.panels.begin(), ui.panels.end(),
                                       [&](UiRect other) { return sameRect(panel, other); });
        return !drawn && contains(panel, ui.mouseX, ui.mouseY);
    });
}

// Who holds the mouse, and what it does to this button: the one place that decides it.
static ButtonState buttonState(Ui& ui, uint32_t id, UiRect rect, bool enabled) {
    ButtonState state;
    if (!enabled) {
        if (ui.mouseReleased && ui.activeId == id) ui.activeId = 0;
        return state;
    }
    const bool hovered = contains(rect, ui.mouseX, ui.mouseY) && !pointerOnLaterPanel(ui);
    if (hovered && ui.mousePressed) ui.activeId = id;
    if (ui.activeId != id) {
        state.bright = hovered;
        return state;
    }
    state.held = ui.mouseDown != 0;
    state.bright = hovered && !ui.mouseDown;
    if (ui.mouseReleased) {
        state.clicked = hovered;
        ui.activeId = 0;
    }
    return state;
}

static UiColor buttonColor(bool enabled, bool primary, const ButtonState& state) {
    if (!enabled) return {0.28f, 0.28f, 0.29f, 1.0f};
    UiColor color = primary ? UiColor{0.80f, 0.58f, 0.20f, 1.0f} : UiColor{0.30f, 0.26f, 0.22f, 1.0f};
    for (float* channel : {&color.r, &color.g, &color.b}) {
        if (state.bright)
            *channel += (1.0f - *channel) * 0.14f;
        else if (state.held)
            *channel -= *channel * 0.25f;
    }
    return color;
}

static UiColor labelColor(bool enabled, bool primary) {
    if (!enabled) return {0.55f, 0.55f, 0.56f, 1.0f};
    return primary ? UiColor{0.12f, 0.08f, 0.03f, 1.0f} : colText;
}

bool uiButton(Ui& ui, uint32_t id, UiRect rect, const char* label, bool enabled, bool primary, int size,
              bool bold) {
    assert(id != 0); // which would hold the mouse when nothing does
    const ButtonState state = buttonState(ui, id, rect, enabled);

    constexpr float RADIUS = 6.0f;
    uiRoundRect(ui, {rect.x, rect.y + 2.0f, rect.w, rect.h}, RADIUS, {0.0f, 0.0f, 0.0f, 0.35f});
    uiRoundRect(ui, rect, RADIUS, buttonColor(enabled, primary, state));
    uiFrame(ui, rect, 1.5f, primary ? UiColor{1.0f, 0.86f, 0.46f, 1.0f} : colFrame);
    const int fitted = uiFitFontSize(ui, label, size, rect.w - 16.0f, bold);
    uiTextInRect(ui, rect, label, fitted, labelColor(enabled, primary), ALIGN_CENTER, 8.0f, bold);
    return state.clicked;
}

void uiPanel(Ui& ui, UiRect rect, float radius, float frameThickness) {
    ui.panels.push_back(rect);
    uiRoundRect(ui, rect, radius, colPanel);
    uiFrame(ui, rect, frameThickness, colFrame);
}

void uiDimWindow(Ui& ui, float alpha) {
    const UiRect window = {0.0f, 0.0f, static_cast<float>(ui.screenW), static_cast<float>(ui.screenH)};
    uiRect(ui, window, {0.0f, 0.0f, 0.0f, alpha});
}

void uiProgressBar(Ui& ui, UiRect rect, float fraction, UiColor fillColor, UiColor trackColor) {
    constexpr float RADIUS = 4.0f;
    uiRoundRect(ui, rect, RADIUS, trackColor);
    if (fraction > 0.0f) {
        const float width = fraction >= 1.0f ? rect.w : std::min(std::max(fraction * rect.w, rect.h), rect.w);
        uiRoundRect(ui, {rect.x, rect.y, width, rect.h}, RADIUS, fillColor);
    }
    uiFrame(ui, rect, 1.0f, {0.0f, 0.0f, 0.0f, 0.5f});
}

void uiSettingRow(Ui& ui, float labelX, float rowY, const char* caption, const char* hint, int rowFont) {
    const float s = uiScale(ui);
    uiText(ui, labelX, rowY + 4.0f * s, caption, rowFont, colText);
    if (hint && *hint) uiText(ui, labelX, rowY + 30.0f * s, hint, uiFontSize(ui, 14.0f), colHint);
}

void uiKeyValueRow(Ui& ui, float x, float& y, float rowWidth, const char* caption, const char* value,
                   UiColor valueColor) {
    const int size = uiFontSize(ui, 15.0f);
    uiText(ui, x, y, caption, size, colMuted);
    uiText(ui, x + rowWidth, y, value, size, valueColor, ALIGN_RIGHT);
    y += 24.0f * uiScale(ui);
}

void uiMeterRow(Ui& ui, float x, float y, float w, const char* caption, float value, UiColor fillColor) {
    const float s = uiScale(ui);
    const int size = uiFontSize(ui, 14.0f);
    char percent[16];
    formatTextInto(percent, sizeof percent, "%d%%", percentOf(value));
    uiText(ui, x, y, caption, size, colMuted);
    uiText(ui, x + w, y, percent, size, colText, ALIGN_RIGHT);
    uiProgressBar(ui, {x, y + 19.0f * s, w, 9.0f * s}, value, fillColor, colTrack);
}
