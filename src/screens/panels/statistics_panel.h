// The view of the city's figures.
#pragma once

#include "ui/layer/ui_batch.h"

struct App;

void drawStatisticsPanel(App& app, UiRect panel, float s);
