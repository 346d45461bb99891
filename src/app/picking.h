// Between the screen and the land: the frame's matrices, and the cell under the mouse.
#pragma once

#include "app/app.h"

// `time` in seconds.
void buildFrameParams(FrameParams& out, const App& app, const Input& input, float time);

// True and the cell when the mouse is on the map. The pick goes through buildings to the ground,
// because a tower would keep the tools from the cells behind it.
bool pickCell(const App& app, const Input& input, int& outX, int& outY);
