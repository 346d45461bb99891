// Widgets and the small row layouts of the panels. An id is a constant of its screen, never 0.
#pragma once

#include "ui/layer/ui_batch.h"

// True in the frame of a completed click: pressed on this button and released on it.
bool uiButton(Ui& ui, uint32_t id, UiRect rect, const char* label, bool enabled, bool primary, int size,
              bool bold = false);

// The body and the frame that all panels and cards share. What was drawn before is dead where it covers it.
void uiPanel(Ui& ui, UiRect rect, float radius, float frameThickness);
// Takes what is drawn so far back behind what comes.
void uiDimWindow(Ui& ui, float alpha);

// `fraction` 0 to 1; anything above 0 shows as a full pill at least.
void uiProgressBar(Ui& ui, UiRect rect, float fraction, UiColor fillColor, UiColor trackColor);
constexpr UiColor colTrack = {0.20f, 0.19f, 0.18f, 1.0f}; // the usual track

// Caption and, unless null or empty, a hint below it.
void uiSettingRow(Ui& ui, float labelX, float rowY, const char* caption, const char* hint, int rowFont);
// Caption left, value right; moves `y` to the next row.
void uiKeyValueRow(Ui& ui, float x, float& y, float rowWidth, const char* caption, const char* value,
                   UiColor valueColor);
// Caption, percentage and a bar; `value` 0 to 1.
void uiMeterRow(Ui& ui, float x, float y, float w, const char* caption, float value, UiColor fillColor);
