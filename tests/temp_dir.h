// A folder of its own for a test, gone with everything in it at the end.
#pragma once

#include <filesystem>
#include <fstream>
#include <random>
#include <string>

struct TempDir {
    std::filesystem::path path;

    TempDir() {
        std::random_device random;
        do path = std::filesystem::temp_directory_path() / ("orlavane-test-" + std::to_string(random()));
        while (!std::filesystem::create_directory(path));
    }
    ~TempDir() {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    std::string file(const std::string& name) const { return path.string() + "/" + name; }
};

inline void writeText(const std::string& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
}

inline std::string readText(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}
