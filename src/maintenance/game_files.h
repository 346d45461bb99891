// What lies in the program's folder, as the launcher shows it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct GameFile {
    std::string name;     // UTF-8, without its folder
    int64_t size = 0;     // bytes, -1 if unknown
    int64_t modified = 0; // seconds since 1970, 0 if unknown
};

// The regular files of a folder and links to such, sorted by the bytes of their names; not those of its
// folders. Empty if the folder cannot be read.
std::vector<GameFile> listFiles(const std::string& folder);

// As the player reads them: "12.5 KB"; "31.10.2026 18:05" of the local time, "-" for 0.
std::string fileSizeText(int64_t size);
std::string fileTimeText(int64_t modified);
