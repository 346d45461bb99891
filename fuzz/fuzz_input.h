// What a fuzz target reads its decisions from.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

// Hands out the input piece by piece; zeros behind its end.
struct Input {
    const uint8_t* at;
    size_t left;

    void take(void* target, size_t size) {
        std::memset(target, 0, size);
        const size_t given = std::min(size, left);
        std::memcpy(target, at, given);
        at += given;
        left -= given;
    }
    template<class T> T take() {
        T value;
        take(&value, sizeof value);
        return value;
    }
};
