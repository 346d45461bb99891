#include "sim/towns.h"

#include "city_script.h"
#include "sim/daily_tick.h"

#include <algorithm>
#include <fstream>
#include <sstream>
#include <stdexcept>

// False when the city stands still.
static bool runDay(City& city, const std::function<void(const City&)>& eachDay) {
    const int day = city.day;
    std::fill(city.cellDirty.begin(), city.cellDirty.end(), 0);
    city.roadsDirty = city.buildingsDirty = city.zonesDirty = city.overlayDirty = 0;
    dailyTick(city);
    if (city.day == day) return false;
    if (eachDay) eachDay(city);
    return true;
}

City townAtDay(const std::string& script, int day, const std::function<void(const City&)>& eachDay) {
    City city;
    std::istringstream lines(script);
    std::string line;
    std::string answer;
    while (city.day < day && std::getline(lines, line)) {
        const auto words = scriptWords(line);
        if (!words.empty() && words[0] == "tick") {
            const int days = std::min(std::stoi(std::string(words[1])), day - city.day);
            for (int i = 0; i < days && runDay(city, eachDay); i++) continue;
        } else if (!runScriptLine(city, line, answer)) {
            throw std::runtime_error("'" + line + "': " + answer);
        }
    }
    while (city.day < day)
        if (!runDay(city, eachDay)) throw std::runtime_error("the city stands still");
    return city;
}

std::string demoTownScript() {
    return R"(
        new 1
        line 40 48 56 48 street
        line 48 42 48 54 street
        road 48 48 avenue
        build 49 42 10
        build 47 54 13
        build 49 54 8
        build 47 42 7
        build 49 50 4
        build 47 46 6
        build 49 45 5
        busstop 51 48
        busstop 45 48
        zonerect 41 43 47 47 residential
        zonerect 41 49 47 53 residential
        zonerect 49 43 55 47 commercial
        zonerect 49 49 55 53 industrial
        districtrect 41 43 44 47 1
    )";
}

std::string metropolisScript() {
    std::ifstream file(ORLAVANE_EXAMPLES "/metropolis.txt");
    std::stringstream text;
    text << file.rdbuf();
    if (!file) throw std::runtime_error("examples/metropolis.txt cannot be read");
    return text.str();
}
