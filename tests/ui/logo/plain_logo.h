// The logo in its plain form: every sample asks every part of the picture. Slow and easy to read, it is what
// the quick form is held against.
#pragma once

#include "view/gl/vec.h"

#include <cstdint>
#include <vector>

Vec3 plainLogoColour(float x, float y);
std::vector<uint8_t> plainLogo(int size);
