// The shading in its plain form: one material after the other, each reckoning what it needs, and all nine
// samples of a soft shadow. What the game draws must not differ by more than a step of a channel.
#pragma once

#include "view/picture/renderer.h"

// Puts the plain programs of scene, water and sky in the place of the renderer's own.
bool usePlainShading(Renderer& renderer, std::string* log);
