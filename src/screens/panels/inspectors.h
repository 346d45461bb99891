// The views of one building and of one cell.
#pragma once

#include "ui/layer/ui_batch.h"

struct App;
struct Building;

void drawBuildingInspector(App& app, UiRect panel, float s, const Building& building);
// The cell must be on the map.
void drawCellInspector(App& app, UiRect panel, float s, int cellX, int cellY);
