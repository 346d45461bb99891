// What the views of the right panel have in common.
#pragma once

#include "ui/layer/ui_batch.h"

// The column inside the panel's margins.
struct PanelColumn {
    float x, y; // y is that of the title
    float width;
};

PanelColumn panelColumn(UiRect panel, float s);

void panelTitle(Ui& ui, PanelColumn column, const char* text);
// Shrinks until it leaves room for the close cross.
void panelTitleFitted(Ui& ui, PanelColumn column, float s, const char* text);

// A line of an inspector; moves `y` to the next one.
void panelLine(Ui& ui, float x, float& y, const char* text, UiColor color);
// Caption and the number of the district, "None" for 0.
void panelDistrictRow(Ui& ui, PanelColumn column, float& y, int district);
// At the foot of the panel.
void panelCoordinates(Ui& ui, UiRect panel, float s, int x, int y);
