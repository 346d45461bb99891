#include "day_log.h"

#include "city_report.h"

#include <filesystem>

namespace fs = std::filesystem;

static constexpr std::streamsize BUFFER_SIZE = 32 * 1024;

DayLog::~DayLog() {
    file.close();
    std::error_code ignored;
    if (!partPath.empty()) fs::remove(partPath, ignored);
}

bool DayLog::open(const std::string& wantedPath) {
    std::error_code ignored;
    path = wantedPath;
    const bool isDirect = fs::exists(path, ignored) && !fs::is_regular_file(path, ignored);
    buffer.resize(BUFFER_SIZE);
    file.rdbuf()->pubsetbuf(buffer.data(), BUFFER_SIZE);
    file.open(isDirect ? path : path + ".part", std::ios::binary);
    if (!file) return false;

    if (!isDirect) partPath = path + ".part";
    file << "city," << statsCsvNames() << "\n";
    return true;
}

void DayLog::beginCity() {
    if (cityHasDays) cityNumber++;
    cityHasDays = false;
}

bool DayLog::addDay(const City& city) {
    cityHasDays = true;
    file << cityNumber << "," << statsCsv(city) << "\n";
    return !failed();
}

bool DayLog::finish() {
    file.close();
    if (failed()) return false;
    if (partPath.empty()) return true;

    std::error_code error;
    fs::rename(partPath, path, error);
    if (error) return false;
    partPath.clear();
    return true;
}
