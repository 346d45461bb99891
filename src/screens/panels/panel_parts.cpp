#include "screens/panels/panel_parts.h"

#include "ui/layer/ui_text.h"
#include "ui/layer/ui_widgets.h"
#include "ui/words/format_text.h"
#include "ui/words/strings.h"

PanelColumn panelColumn(UiRect panel, float s) {
    return {panel.x + 14.0f * s, panel.y + 14.0f * s, panel.w - 28.0f * s};
}

void panelTitle(Ui& ui, PanelColumn column, const char* text) {
    uiText(ui, column.x, column.y, text, uiFontSize(ui, 20.0f), colGold, ALIGN_LEFT, true);
}

void panelTitleFitted(Ui& ui, PanelColumn column, float s, const char* text) {
    const int size = uiFitFontSize(ui, text, uiFontSize(ui, 20.0f), column.width - 36.0f * s, true);
    uiText(ui, column.x, column.y, text, size, colGold, ALIGN_LEFT, true);
}

void panelLine(Ui& ui, float x, float& y, const char* text, UiColor color) {
    uiText(ui, x, y, text, uiFontSize(ui, 15.0f), color);
    y += 24.0f * uiScale(ui);
}

void panelDistrictRow(Ui& ui, PanelColumn column, float& y, int district) {
    char number[16];
    formatTextInto(number, sizeof number, "%d", district);
    uiKeyValueRow(ui, column.x, y, column.width, tr(STR_DISTRICT), district == 0 ? tr(STR_NONE) : number,
                  colText);
}

void panelCoordinates(Ui& ui, UiRect panel, float s, int x, int y) {
    char text[64];
    formatTextInto(text, sizeof text, tr(STR_CELL_COORDINATES), x, y);
    uiText(ui, panelColumn(panel, s).x, panel.y + panel.h - 26.0f * s, text, uiFontSize(ui, 14.0f), colMuted);
}
