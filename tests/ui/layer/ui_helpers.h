// A 2-D layer in a test: what it drew, taken from its lists.
#pragma once

#include "ui/layer/ui_batch.h"

#include <string>
#include <vector>

// A text that was drawn, with its place.
struct DrawnText {
    std::string key; // of the run: size, weight, colour and text
    float x, y, w, h;
};

// All texts of the frame in their order. Their runs must still be cached.
std::vector<DrawnText> drawnTexts(const Ui& ui);
// The text of a run's key.
std::string textOf(const DrawnText& drawn);
// Every command begins where the one before ends, and together they cover all vertices.
void expectWholeBatch(const Ui& ui);

// A point where the mouse is, with the button going down, up or staying.
Input mouseAt(float x, float y);
Input pressAt(float x, float y);
Input holdAt(float x, float y);
Input releaseAt(float x, float y);
