// Any bytes as a city script. Only what would cost time or leave the folder is changed: days and line ends
// far away are cut back, and every path becomes one file of the fuzzer's own.
#include "city_script.h"
#include "sim/map_generation.h"
#include "temp_dir.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <sstream>

constexpr size_t LINE_LIMIT = 60;
constexpr int64_t DAY_LIMIT = 3;
constexpr int64_t FAR_AWAY = 300;

static std::string heldBack(std::string_view word, int64_t limit) {
    int64_t value = 0;
    const auto [rest, error] = std::from_chars(word.data(), word.data() + word.size(), value);
    const bool number = error == std::errc() && rest == word.data() + word.size();
    return number && std::abs(value) > limit ? std::to_string(value % limit) : std::string(word);
}

static std::string tamed(const std::string& line, const std::string& path) {
    const std::vector<std::string_view> words = scriptWords(line);
    if (words.empty()) return line;
    const bool file = words[0] == "save" || words[0] == "load" || words[0] == "fields";
    const bool days = words[0] == "tick";
    if (!file && !days && words[0] != "line") return line;

    std::string text(words[0]);
    for (size_t i = 1; i < words.size(); i++)
        text += " " + (file ? path : heldBack(words[i], days ? DAY_LIMIT : FAR_AWAY));
    return text;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const TempDir dir;
    std::istringstream all(std::string(reinterpret_cast<const char*>(data), size));
    std::string script;
    std::string line;
    for (size_t i = 0; i < LINE_LIMIT && std::getline(all, line); i++)
        script += tamed(line, dir.file("city")) + "\n";

    City city;
    generateMap(city, 0);
    std::istringstream in(script);
    std::ostringstream out;
    std::ostringstream err;
    const int status = runScript(city, "script", in, out, err);
    const std::string complaint = err.str();
    if (status != 0 && status != SCRIPT_REFUSED) std::abort();
    if (complaint.empty() != (status == 0)) std::abort();
    if (std::count(complaint.begin(), complaint.end(), '\n') != (status != 0)) std::abort();
    std::filesystem::remove(dir.file("city"));
    return 0;
}
