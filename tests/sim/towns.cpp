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

static void line(std::ostream& out, int x0, int y0, int x1, int y1, const char* type) {
    out << "line " << x0 << ' ' << y0 << ' ' << x1 << ' ' << y1 << ' ' << type << '\n';
}

// Every second block, like the black squares of a chessboard, holds one of each service, power and water; the
// rest of the land beside streets is zoned.
static void block(std::ostream& out, int x, int y, int number) {
    constexpr const char* ZONES[7] = {"residential", "offices",     "residential", "residential",
                                      "commercial",  "residential", "industrial"};
    if (number % 2 == 0) {
        for (int kind = 4; kind <= 9; kind++)
            out << "build " << x + kind - 3 << ' ' << y + 1 << ' ' << kind << '\n';
        out << "build " << x + 1 << ' ' << y + 5 << ' ' << (number % 4 == 0 ? 10 : 11) << '\n';
        out << "build " << x + 2 << ' ' << y + 5 << " 13\n";
        out << "build " << x + 3 << ' ' << y + 5 << " 12\n";
        out << "busstop " << x + 5 << ' ' << y << '\n';
    }
    out << "zonerect " << x + 1 << ' ' << y + 1 << ' ' << x + 9 << ' ' << y + 5 << ' ' << ZONES[number % 7]
        << '\n';
    out << "districtrect " << x + 1 << ' ' << y + 1 << ' ' << x + 9 << ' ' << y + 5 << ' ' << number % 9
        << '\n';
}

std::string fullMapScript() {
    std::ostringstream out;
    out << "new 3\nmoney 100000000\nkeep 1\n";
    for (int y = 6; y <= 90; y += 6) line(out, 4, y, 92, y, y % 12 ? "street" : "avenue");
    for (int x = 6; x <= 86; x += 10) line(out, x, 4, x, 92, "street");
    int number = 0;
    for (int y = 6; y < 90; y += 6)
        for (int x = 6; x < 96; x += 10) block(out, x, y, number++);
    out << "policy 2 1\npolicy 2 2\npolicy 5 2\npolicy 7 4\n";
    return out.str();
}
