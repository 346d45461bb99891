// The logo as the menus draw it.
#pragma once

#include "view/gl/gl.h"

// Paints the logo into a new texture, which the caller deletes. A size below 16 counts as 16; `width` and
// `height` get the size in pixels unless they are null.
GLuint makeLogoTexture(int size, int* width, int* height);
