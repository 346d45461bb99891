// The bar along the bottom: the mission, the last message, and what the colours of the overlay mean.
#pragma once

struct App;

void drawBottomBar(App& app);
