#include "script_values.h"

#include <algorithm>

static bool isNamePart(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

static bool isName(std::string_view text) {
    return !text.empty() && !(text[0] >= '0' && text[0] <= '9') &&
           std::all_of(text.begin(), text.end(), isNamePart);
}

// A comment would swallow the rest of the line, and a line end begin another.
static bool isValue(std::string_view text) {
    return std::none_of(text.begin(), text.end(), [](char c) { return c == '#' || c == '\n' || c == '\r'; });
}

bool addScriptValue(ScriptValues& values, std::string_view setting, std::string& reason) {
    const size_t equals = setting.find('=');
    const std::string_view name = setting.substr(0, equals);
    if (equals == std::string_view::npos || !isName(name)) {
        reason = "is not NAME=VALUE, with a name of letters, digits and _";
        return false;
    }
    const std::string_view value = setting.substr(equals + 1);
    if (!isValue(value)) {
        reason = "holds a # or a line end";
        return false;
    }
    if (values.emplace(name, value).second) return true;
    reason = "gives a second value to its name";
    return false;
}

bool fillLine(const ScriptValues& values, std::string_view line, std::string& filled, std::string& unknown) {
    line = line.substr(0, line.find('#'));
    filled.clear();
    while (true) {
        const size_t open = line.find('{');
        filled += line.substr(0, open);
        if (open == std::string_view::npos) return true;
        line.remove_prefix(open);

        const size_t close = line.find('}');
        const std::string_view name = close == std::string_view::npos ? "" : line.substr(1, close - 1);
        if (!isName(name)) {
            filled += '{';
            line.remove_prefix(1);
            continue;
        }
        const auto value = values.find(name);
        if (value == values.end()) {
            unknown = name;
            return false;
        }
        filled += value->second;
        line.remove_prefix(close + 1);
    }
}
