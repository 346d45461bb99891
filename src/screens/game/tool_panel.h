// The panel on the left: categories, their tools, and the districts to paint.
#pragma once

struct App;

void drawToolPanel(App& app);
