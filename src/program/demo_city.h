// A prepared city for pictures and checks.
#pragma once

#include "app/app.h"

// The same small town each time, apart from the seed of its land, after `days` days.
void buildDemoCity(App& app, int days);
