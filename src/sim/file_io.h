// Whole files in one read and one write.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

// Fills `bytes` with the first `limit` bytes of the file. False if it cannot be opened or read, as a folder
// cannot; `bytes` is then empty.
bool readFile(const std::string& path, size_t limit, std::vector<uint8_t>& bytes);

// Overwrites the file. True when every byte reached it; otherwise what stood there is gone.
bool writeFile(const std::string& path, const void* data, size_t size);
