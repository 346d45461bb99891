// The bar along the top: money, date and people, and the buttons for menu, panels, overlay and speed.
#pragma once

struct App;

void drawTopBar(App& app);
