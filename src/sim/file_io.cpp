#include "sim/file_io.h"

#include <algorithm>
#include <cassert>
#include <cstdio>

// More than any settings file; a large save takes four more reads.
constexpr size_t FIRST_BLOCK = 64 * 1024;

bool readFile(const std::string& path, size_t limit, std::vector<uint8_t>& bytes) {
    bytes.clear();
    std::FILE* file = std::fopen(path.c_str(), "rb");
    if (!file) return false;

    // The buffer grows with what really arrives: devices and pipes have no size that could be asked for.
    size_t used = 0;
    while (used == bytes.size() && used < limit) {
        bytes.resize(std::min(limit, std::max(2 * used, FIRST_BLOCK)));
        used += std::fread(bytes.data() + used, 1, bytes.size() - used, file);
    }
    assert(used <= bytes.size() && bytes.size() <= limit);
    const bool complete = !std::ferror(file);
    std::fclose(file);
    bytes.resize(complete ? used : 0);
    return complete;
}

bool writeFile(const std::string& path, const void* data, size_t size) {
    assert(data || size == 0);
    std::FILE* file = std::fopen(path.c_str(), "wb");
    if (!file) return false;

    const bool written = size == 0 || std::fwrite(data, 1, size, file) == size;
    const bool closed = std::fclose(file) == 0; // a full disk may show only here
    return written && closed;
}
