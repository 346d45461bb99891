// Where the parts of the game's interface stand, in drawable pixels: the one place that drawing, hit-testing
// and the guided tour ask, so that they cannot part.
#pragma once

#include "ui/layer/ui_batch.h"

struct App;

constexpr UiColor colBar = {0.075f, 0.07f, 0.065f, 0.96f}; // of the bars at the top and the bottom

struct HudLayout {
    float scale; // of every length
    float width; // of the window
    float height;
    UiRect topBar;
    UiRect toolPanel;
    UiRect rightPanel;
    UiRect bottomBar;
    UiRect missionBlock; // in the bottom bar
};

HudLayout hudLayout(int drawableWidth, int drawableHeight);
HudLayout hudLayout(const Ui& ui);

UiRect categoryButton(const HudLayout& hud, int category);
// Of the current category, from the top. The sixth hangs over the panel's lower edge.
UiRect toolButton(const HudLayout& hud, int row);

// True when the pointer stands on the interface, so that the tools and the camera must ignore it.
bool pointerOverHud(const App& app, const Input& input);
