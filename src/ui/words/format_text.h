// Formatted texts in fixed buffers.
#pragma once

#include <cstddef>

// printf into a buffer of `size` bytes; what does not fit is cut, never inside a UTF-8 sequence. Returns the
// buffer.
#if defined(__GNUC__)
__attribute__((format(printf, 3, 4)))
#endif
const char*
formatTextInto(char* buffer, size_t size, const char* format, ...);

// A share of 1 in whole percent, rounded half up and held to what an int carries; NaN is 0.
int percentOf(float share);
