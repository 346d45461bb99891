// Arabic and Devanagari in the order and the forms in which they are drawn, so that the game looks the same
// wherever it was built. The text library only sets one character after the other from the left: also where
// it is linked with a shaping engine, it names that neither a script nor a direction.
#pragma once

#include <cstdint>
#include <string>

enum ShapeMode : uint8_t {
    SHAPE_NONE,
    SHAPE_ARABIC,
    SHAPE_DEVANAGARI
};

// The display form of a UTF-8 text in left-to-right visual order. With SHAPE_NONE the text as it is;
// otherwise broken sequences become U+FFFD, a byte at a time.
std::string shapeText(const char* text, uint8_t shapeMode);
