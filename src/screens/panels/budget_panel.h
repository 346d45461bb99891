// The view of taxes and service budgets, with the buttons that change them.
#pragma once

#include "ui/layer/ui_batch.h"

struct App;

void drawBudgetPanel(App& app, UiRect panel, float s);
