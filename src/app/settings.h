// The player's choices.
#pragma once

#include <cstdint>
#include <string>

struct Settings {
    int32_t language = -1;  // index of the language table, -1 for detection at start
    int32_t resolution = 1; // 0: 1280 by 720, 1: 1600 by 900, 2: 1920 by 1080
    bool fullscreen = false;
    int32_t quality = 1; // 0: no shadows, 1: shadow map 1024, 2: shadow map 2048
    bool vsync = true;
    bool showFps = false;
    int32_t musicVolume = 50; // percent
    int32_t sfxVolume = 70;
    bool tutorialDone = false;
};

// Window size in pixels; an index out of range is held to the table.
void resolutionSize(const Settings& settings, int& width, int& height);
// Texels a side, 0 for no shadows. Any value but 0 and 2 counts as 1.
int shadowMapSize(const Settings& settings);

// True if the file could be opened; otherwise the record keeps its values. Values out of range are repaired.
bool loadSettings(Settings& settings, const std::string& path);
// True if every line was written.
bool saveSettings(const Settings& settings, const std::string& path);
