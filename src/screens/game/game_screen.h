// The city in play with everything that stands around it.
#pragma once

struct App;
struct Input;

void drawGameScreen(App& app, const Input& input);

// Over every screen, if the player wants it.
void drawFpsLabel(App& app, const Input& input);
