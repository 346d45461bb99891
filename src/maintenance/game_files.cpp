#include "maintenance/game_files.h"

#include "maintenance/files.h"

#include <algorithm>
#include <cassert>
#include <cstdio>
#include <ctime>

namespace fs = std::filesystem;

constexpr int64_t KILOBYTE = 1024;
constexpr int64_t MEGABYTE = 1024 * 1024;

// --- Names

// How many bytes of `text` from `i` on are one well-formed UTF-8 character; 0 if none.
static size_t characterLength(const std::string& text, size_t i) {
    assert(i < text.size());
    const auto byte = [&](size_t k) { return k < text.size() ? static_cast<unsigned char>(text[k]) : 0u; };
    const unsigned lead = byte(i);
    if (lead < 0x80) return 1;
    const size_t length = lead >= 0xf0 ? 4 : lead >= 0xe0 ? 3 : 2;
    if (lead < 0xc2 || lead > 0xf4) return 0;

    // What the second byte may be keeps out overlong forms, surrogates and what lies beyond the last plane.
    const unsigned lowest = lead == 0xe0 ? 0xa0 : lead == 0xf0 ? 0x90 : 0x80;
    const unsigned highest = lead == 0xed ? 0x9f : lead == 0xf4 ? 0x8f : 0xbf;
    if (byte(i + 1) < lowest || byte(i + 1) > highest) return 0;
    for (size_t k = 2; k < length; k++)
        if ((byte(i + k) & 0xc0) != 0x80) return 0;
    return length;
}

// A name may be any bytes on some systems: each that is no UTF-8 becomes the replacement character.
static std::string readableName(const std::string& bytes) {
    std::string text;
    for (size_t i = 0; i < bytes.size();) {
        const size_t length = characterLength(bytes, i);
        text += length > 0 ? bytes.substr(i, length) : "\xef\xbf\xbd";
        i += std::max<size_t>(length, 1);
    }
    return text;
}

static std::string ourPath(const fs::path& path) {
    const std::u8string bytes = path.u8string();
    return {bytes.begin(), bytes.end()};
}

// --- The list

static GameFile gameFile(const fs::directory_entry& entry) {
    std::error_code error;
    const uintmax_t size = entry.file_size(error);
    return {readableName(ourPath(entry.path().filename())), error ? -1 : static_cast<int64_t>(size),
            fileModified(ourPath(entry.path()))};
}

std::vector<GameFile> listFiles(const std::string& folder) {
    std::vector<GameFile> files;
    std::error_code error;
    fs::directory_iterator entry(nativePath(folder), error);
    while (!error && entry != fs::directory_iterator()) {
        std::error_code unknown;
        if (entry->is_regular_file(unknown)) files.push_back(gameFile(*entry));
        entry.increment(error);
    }
    std::sort(files.begin(), files.end(),
              [](const GameFile& a, const GameFile& b) { return a.name < b.name; });
    return files;
}

// --- Texts

std::string fileSizeText(int64_t size) {
    char text[32];
    if (size < KILOBYTE)
        std::snprintf(text, sizeof text, "%lld B", static_cast<long long>(size));
    else if (size < MEGABYTE)
        std::snprintf(text, sizeof text, "%.1f KB", static_cast<double>(size) / KILOBYTE);
    else
        std::snprintf(text, sizeof text, "%.1f MB", static_cast<double>(size) / MEGABYTE);
    return text;
}

std::string fileTimeText(int64_t modified) {
    const std::time_t time = modified;
    const std::tm* local = modified == 0 ? nullptr : std::localtime(&time);
    if (!local) return "-"; // or a year that no calendar holds
    char text[64];
    // It returns 0 where the text does not fit: what it leaves then must not be read.
    text[std::strftime(text, sizeof text, "%d.%m.%Y %H:%M", local)] = '\0';
    return text;
}
