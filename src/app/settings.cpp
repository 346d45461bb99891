#include "app/settings.h"

#include "sim/file_io.h"
#include "ui/words/languages.h"

#include <algorithm>
#include <array>
#include <limits>
#include <string_view>
#include <vector>

// The file is a few hundred bytes. What lies further back is not read, so that a wrong path cannot fill the
// memory at the start of the game.
constexpr size_t FILE_LIMIT = 1 << 20;

// A line of the file: one of the two members is set.
struct SettingRow {
    std::string_view key;
    int32_t Settings::*number;
    bool Settings::*flag;
};

constexpr std::array<SettingRow, 9> ROWS = {{
    {"language", &Settings::language, nullptr},
    {"resolution", &Settings::resolution, nullptr},
    {"fullscreen", nullptr, &Settings::fullscreen},
    {"quality", &Settings::quality, nullptr},
    {"vsync", nullptr, &Settings::vsync},
    {"showFps", nullptr, &Settings::showFps},
    {"musicVolume", &Settings::musicVolume, nullptr},
    {"sfxVolume", &Settings::sfxVolume, nullptr},
    {"tutorialDone", nullptr, &Settings::tutorialDone},
}};

static_assert(std::all_of(ROWS.begin(), ROWS.end(), [](const SettingRow& row) {
    return (row.number != nullptr) != (row.flag != nullptr);
}));

void resolutionSize(const Settings& settings, int& width, int& height) {
    constexpr int SIZES[3][2] = {{1280, 720}, {1600, 900}, {1920, 1080}};
    const int* size = SIZES[std::clamp(settings.resolution, 0, 2)];
    width = size[0];
    height = size[1];
}

int shadowMapSize(const Settings& settings) {
    if (settings.quality == 0) return 0;
    return settings.quality == 2 ? 2048 : 1024;
}

// The whole number at the head of the text, behind blanks and a sign; 0 without one. What follows it is
// passed over, so that lines may end as on any system. Numbers past the range are held to it.
static int32_t leadingNumber(std::string_view text) {
    constexpr int64_t LIMIT = std::numeric_limits<int32_t>::max();
    size_t i = 0;
    while (i < text.size() && (text[i] == ' ' || (text[i] >= '\t' && text[i] <= '\r'))) i++;
    const bool negative = i < text.size() && text[i] == '-';
    if (negative || (i < text.size() && text[i] == '+')) i++;

    int64_t value = 0;
    for (; i < text.size() && text[i] >= '0' && text[i] <= '9'; i++)
        value = std::min(value * 10 + (text[i] - '0'), LIMIT + 1);
    return static_cast<int32_t>(negative ? -value : std::min(value, LIMIT));
}

static void applyLine(Settings& settings, std::string_view line) {
    const size_t equals = line.find('=');
    if (equals == std::string_view::npos) return;
    const std::string_view key = line.substr(0, equals);
    for (const SettingRow& row : ROWS) {
        if (row.key != key) continue;
        const int32_t value = leadingNumber(line.substr(equals + 1));
        if (row.number) settings.*row.number = value;
        if (row.flag) settings.*row.flag = value != 0;
    }
}

// Only what lies above its range is repaired; who reads a resolution or quality below it holds it to 0 or 1.
static void repair(Settings& settings) {
    if (settings.language >= LANGUAGE_COUNT) settings.language = -1;
    if (settings.resolution > 2) settings.resolution = 1;
    if (settings.quality > 2) settings.quality = 1;
    settings.musicVolume = std::clamp(settings.musicVolume, 0, 100);
    settings.sfxVolume = std::clamp(settings.sfxVolume, 0, 100);
}

bool loadSettings(Settings& settings, const std::string& path) {
    std::vector<uint8_t> bytes;
    if (!readFile(path, FILE_LIMIT, bytes)) return false;

    std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    while (!text.empty()) {
        const size_t lineLength = std::min(text.find('\n'), text.size());
        applyLine(settings, text.substr(0, lineLength));
        text.remove_prefix(std::min(lineLength + 1, text.size()));
    }
    repair(settings);
    return true;
}

bool saveSettings(const Settings& settings, const std::string& path) {
    std::string text;
    for (const SettingRow& row : ROWS) {
        const int32_t value = row.number ? settings.*row.number : settings.*row.flag;
        text.append(row.key).append("=").append(std::to_string(value)).append("\n");
    }
    return writeFile(path, text.data(), text.size());
}
