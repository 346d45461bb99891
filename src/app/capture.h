// The hooks for unattended runs: the OV_ variables put the game into a prepared state and stop it after a
// number of frames with a picture of the last one. Unset, they change nothing.
#pragma once

#include "app/app.h"

struct Capture {
    std::string shotPath; // empty: no picture, and the run goes on
    int frameLimit = 40;
    int frameCount = 0;
};

// Reads the variables, once after appInit, and puts the game into the state that they ask for.
Capture applyCaptureHooks(App& app);

// Counts a frame. True when it was the last: then its picture has been written from the back buffer.
bool captureFrame(Capture& capture, int width, int height);

// "key=value" pieces separated by commas, applied in the order given; what is not understood changes nothing.
void applyStateString(App& app, const std::string& text);
