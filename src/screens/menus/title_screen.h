// The title screen, the way into a city. It stands over the slowly turning land.
#pragma once

struct App;
struct Input;

void drawTitleScreen(App& app, const Input& input);
