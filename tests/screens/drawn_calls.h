// Stands in the place of the 2-D layer's shapes and texts: what the screens and the widgets ask for is noted
// and nothing is drawn. Its one font has letters a quarter as wide as high in every size, so that a layout in
// a window twice as large is the same layout, twice as large. The linker sends the calls here (--wrap).
#pragma once

#include "ui/layer/ui_batch.h"

#include <string>
#include <vector>

struct DrawnCall {
    std::string what; // the function, and the text
    UiColor color = {};
    std::vector<float> lengths; // places and extents that grow with the window
    std::vector<float> details; // lengths that may be plain pixels: corners, frames, paddings
};

// Since the last call of this function.
std::vector<DrawnCall> takeDrawnCalls();
