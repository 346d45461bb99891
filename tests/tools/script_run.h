// City scripts run in process, with what they print caught.
#pragma once

#include "city_script.h"

#include <sstream>
#include <string>

struct ScriptRun {
    int status;
    std::string out;
    std::string err;
};

inline ScriptRun runText(City& city, const std::string& text) {
    std::istringstream in(text);
    std::ostringstream out;
    std::ostringstream err;
    const int status = runScript(city, "town.txt", in, out, err);
    return {status, out.str(), err.str()};
}
