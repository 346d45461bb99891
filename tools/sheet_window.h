// A hidden window to draw sheets in, and their way into a picture file.
#pragma once

#include <cstdint>
#include <vector>

// Opens the window, makes its OpenGL context current and loads the function table.
bool openSheetWindow(const char* title, int width, int height);

// `rgb` has its top row first. False with SDL's message.
bool saveSheet(const std::vector<uint8_t>& rgb, int width, int height, const char* path);
