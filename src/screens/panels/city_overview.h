// The view when nothing is open and nothing selected: what the city asks for, and how it fares.
#pragma once

#include "ui/layer/ui_batch.h"

struct App;

void drawCityOverview(App& app, UiRect panel, float s);
