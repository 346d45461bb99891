// The view of the district to paint: its tax and its policies.
#pragma once

#include "ui/layer/ui_batch.h"

struct App;

void drawDistrictPanel(App& app, UiRect panel, float s);
