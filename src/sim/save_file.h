// The one save slot: a flat little-endian record of what cannot be derived.
#pragma once

#include "sim/city.h"

#include <string>

// True when every write succeeded. A failed write leaves a cut file: the save before it is gone.
bool saveCity(const City& city, const std::string& path);

// True when the file was valid and is now the live state; otherwise the city is as it was.
bool loadCity(City& city, const std::string& path);
