// Stands in the place of the 2-D layer's shapes, texts, buttons and bars: what the screens ask for is noted,
// nothing is drawn and no button is clicked. Its one font has letters that are as wide and as high in every
// window, by its scale, so that a layout is the same layout in all of them. The linker sends the calls here
// (--wrap), and those that open a folder on the player's desktop too.
#pragma once

#include "ui/layer/ui_batch.h"

#include <string>
#include <vector>

struct DrawnCall {
    std::string kind;
    std::string words;
    UiColor color = {};
    std::vector<float> lengths; // places and extents
    int fontSize = 0;
    uint32_t buttonId = 0;
};

// Since the last call of this function.
std::vector<DrawnCall> takeDrawnCalls();
int takeOpenedFolders();

// How many there are of each kind: "button 2, frame 1, text 3".
std::string countsOf(const std::vector<DrawnCall>& calls);
