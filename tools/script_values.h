// {name} in a city script stands for a value that whoever runs the script gives, so that one script serves
// many cities.
#pragma once

#include <map>
#include <string>
#include <string_view>

using ScriptValues = std::map<std::string, std::string, std::less<>>;

// Takes "name=value". A name is letters, digits and _, and begins with no digit; a value is any text that
// stays on its line, also none, and a name has one. False leaves the reason in `reason`.
bool addScriptValue(ScriptValues& values, std::string_view setting, std::string& reason);

// Fills every {name} in front of the comment; other braces stay as they are. False when a name has no value,
// which is then in `unknown`.
bool fillLine(const ScriptValues& values, std::string_view line, std::string& filled, std::string& unknown);
