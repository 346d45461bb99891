// The constants of the build that the tests of the update client stand for. They take the place of the game's
// own: a program that defines these names itself does not get those of the library.
#pragma once

#include <string>

inline constexpr const char* TEST_BUILD_DATE = "2026-10-30";

void setManifestUrl(const std::string& url); // at most 255 bytes
