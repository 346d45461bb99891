#include "maintenance/files.h"

#include <chrono>

namespace fs = std::filesystem;

fs::path nativePath(const std::string& path) { return std::u8string(path.begin(), path.end()); }

bool fileExists(const std::string& path) {
    std::error_code error;
    return fs::exists(nativePath(path), error);
}

int64_t fileModified(const std::string& path) {
    std::error_code error;
    const fs::file_time_type time = fs::last_write_time(nativePath(path), error);
    if (error) return 0;
    const auto sinceEpoch = fs::file_time_type::clock::to_sys(time).time_since_epoch();
    return std::chrono::floor<std::chrono::seconds>(sinceEpoch).count();
}

bool deleteFile(const std::string& path) {
    std::error_code error;
    const fs::file_status status = fs::symlink_status(nativePath(path), error);
    if (!fs::is_regular_file(status) && !fs::is_symlink(status)) return false;
    return fs::remove(nativePath(path), error);
}
