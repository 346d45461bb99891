// The menu over the standing game.
#pragma once

struct App;
struct Input;

void drawPauseMenu(App& app, const Input& input);
