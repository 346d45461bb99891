// Pictures as PNG files, for tools that run where the game is built: the game itself writes none.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

// `pixels` holds width * height * channels bytes, row by row from the top: red, green, blue, and alpha if
// there are four channels. The same zlib makes the same bytes of the same picture.
std::vector<uint8_t> encodePng(int width, int height, int channels, const std::vector<uint8_t>& pixels);

// False if the file could not be written whole.
bool writeFile(const std::string& path, const std::vector<uint8_t>& bytes);
