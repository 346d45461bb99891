// Pictures as the files in which desktops look for icons.
#pragma once

#include <cstdint>
#include <vector>

// A PNG file of `size` by `size` pixels: red, green, blue, alpha, row by row from the top.
std::vector<uint8_t> encodePng(int size, const std::vector<uint8_t>& pixels);

struct IconPicture {
    int size; // pixels, up to 256
    std::vector<uint8_t> png;
};

// A Windows icon file that holds every picture.
std::vector<uint8_t> encodeIco(const std::vector<IconPicture>& pictures);
