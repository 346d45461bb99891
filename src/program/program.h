// The life of the process: libraries, window and context, the main loop, and the way out.
#pragma once

#include "view/gl/gl.h"

// Runs the game until the player leaves and returns the exit code of the process: 0, or 1 when this computer
// cannot run it; then a message box and the error stream say why. Tests give a loader that finds less.
int runProgram(GlLoader loader = SDL_GL_GetProcAddress);
