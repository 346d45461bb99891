// Pictures as the file in which Windows looks for icons.
#pragma once

#include <cstdint>
#include <vector>

struct IconPicture {
    int size; // pixels, up to 256
    std::vector<uint8_t> png;
};

// A Windows icon file that holds every picture.
std::vector<uint8_t> encodeIco(const std::vector<IconPicture>& pictures);
