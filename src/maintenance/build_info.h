// Constants of a build; CMake sets them.
#pragma once

extern const char* const gameVersion;
extern const char* const gameBuildDate; // year-month-day, ten characters, so that bytes order dates
// Where the update manifest lies, on an HTTP or HTTPS server. Empty: this build never touches the network.
extern const char* const updateManifestUrl;
