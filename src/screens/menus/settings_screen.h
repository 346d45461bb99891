// The options, opened from the title screen or from the pause menu. A change takes effect and is saved at
// once; there is nothing to apply and nothing to cancel.
#pragma once

struct App;
struct Input;

void drawOptionsScreen(App& app, const Input& input);
