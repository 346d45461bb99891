// The hooks for unattended runs: the OV_ variables put the game into a prepared state and stop it after a
// number of frames with a picture of the last one. Unset, they change nothing.
#pragma once

#include "app/app.h"

#include <optional>
#include <string>

struct Capture {
    std::optional<std::string> shotPath; // none: the run goes on; empty: it ends without a picture
    int frameLimit = 40;                 // below 1 it is never met, and the run goes on
    int frameCount = 0;
};

// Reads the variables, once after appInit, and puts the game into the state that they ask for. The size is
// the drawable's, in pixels: a view that the state string sets is held to the map as the player's own is.
Capture applyCaptureHooks(App& app, int width, int height);

// Counts a frame. True when it was the last: then its picture has been written from the back buffer.
bool captureFrame(Capture& capture, int width, int height);

// "key=value" pieces separated by commas, applied in the order given; what is not understood changes nothing.
void applyStateString(App& app, const std::string& text);
