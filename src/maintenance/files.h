// Single files by their paths. Paths are UTF-8 on Windows and the system's own bytes elsewhere, whatever
// those are: a name need not be text.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

std::filesystem::path nativePath(const std::string& path);

// Whether a status call on the path succeeds: true for folders too.
bool fileExists(const std::string& path);
int64_t fileModified(const std::string& path); // seconds since 1970, 0 if unknown
// Deletes a regular file, or a link without what it points to. Folders and devices stay, because
// they are not the game's. True if it is gone.
bool deleteFile(const std::string& path);
