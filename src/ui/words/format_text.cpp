#include "ui/words/format_text.h"

#include <algorithm>
#include <cstdarg>
#include <cstdint>
#include <cstdio>

static bool isContinuation(char c) { return (static_cast<uint8_t>(c) & 0xC0u) == 0x80u; }

const char* formatTextInto(char* buffer, size_t size, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    // The analyzer loses sight of va_start when it has read other sources before.
    // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized)
    const int length = std::vsnprintf(buffer, size, format, arguments);
    va_end(arguments);
    if (size == 0) return buffer;
    if (length < 0) buffer[0] = '\0';
    if (length < 0 || static_cast<size_t>(length) < size) return buffer;

    // The cut may have fallen inside a sequence: its beginning goes too.
    const size_t end = size - 1;
    size_t start = end;
    while (start > 0 && isContinuation(buffer[start - 1])) start--;
    if (start == 0) return buffer;
    const uint8_t lead = static_cast<uint8_t>(buffer[start - 1]);
    const size_t needed = lead < 0xC0 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    if (end - (start - 1) < needed) buffer[start - 1] = '\0';
    return buffer;
}

int percentOf(float share) {
    if (!(share == share)) return 0;
    return static_cast<int>(std::clamp(100.0f * share + 0.5f, -1e9f, 1e9f));
}
