// What the city and its parts are called.
#pragma once

#include <array>
#include <cstdint>

using StatusBuffer = std::array<char, 256>;

// The message of a StatusId, empty for a number that is none. Lives in the string table or in the buffer,
// which cuts a formatted text at 255 bytes.
const char* statusText(uint8_t statusId, uint32_t statusArg, StatusBuffer& buffer);

// Empty for a kind that does not exist.
const char* buildingName(int kind);

// `overlay` is an Overlay.
const char* overlayName(int overlay);

const char* yesOrNo(bool yes);
