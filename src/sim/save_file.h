// The one save slot: a flat little-endian record of what cannot be derived.
#pragma once

#include "sim/city.h"

#include <string>

constexpr uint32_t SAVE_VERSION = 3; // version 2 has no calendarDay
constexpr uint32_t SAVED_BUILDING_LIMIT = 1000000;

// True when every write succeeded. A failed write leaves a cut file: the save before it is gone.
bool saveCity(const City& city, const std::string& path);

// True when the file was valid and is now the live state; otherwise the city is as it was. What lies behind
// the last record is not looked at. Cells and buildings come in as they stand, however odd: see `Cell`.
bool loadCity(City& city, const std::string& path);

// The same record in memory.
std::vector<uint8_t> encodeCity(const City& city);
bool decodeCity(City& city, const uint8_t* bytes, size_t size);
