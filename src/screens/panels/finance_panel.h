// The view of the treasury: what is there, what came and went today, and a chart of the last days.
#pragma once

#include "ui/layer/ui_batch.h"

struct App;

void drawFinancePanel(App& app, UiRect panel, float s);
