#include "film_script.h"

#include "city_script.h"
#include "sim/daily_tick.h"
#include "sim/map_generation.h"

#include <algorithm>
#include <istream>
#include <set>

bool readFilmScript(FilmScript& script, const std::string& name, std::istream& in, std::string& reason) {
    std::string line;
    for (int64_t number = 1; in.good(); number++) {
        const bool whole = readScriptLine(in, line);
        if (!whole || !checkScriptLine(line, reason)) {
            if (!whole) reason = "the line is too long";
            reason.insert(0, name + ":" + std::to_string(number) + ": ");
            return false;
        }
        const auto words = scriptWords(line);
        if (words.empty()) continue;
        script.steps.push_back({line, words[0] == "tick" ? std::stoll(std::string(words[1])) : 0});
    }
    if (in.bad()) reason = name + ": cannot be read";
    return !in.bad();
}

int64_t daysToCome(const FilmScript& script) {
    int64_t days = 0;
    for (size_t i = script.next; i < script.steps.size(); i++) days += script.steps[i].days;
    return days;
}

void runDays(FilmScript& script, City& city, int64_t days) {
    std::string answer;
    for (; script.next < script.steps.size(); script.next++) {
        FilmStep& step = script.steps[script.next];
        if (step.days == 0)
            runScriptLine(city, step.line, answer); // checked when it was read; `tick 0` is one
        for (; step.days > 0 && days > 0; step.days--, days--) dailyTick(city);
        if (step.days > 0) return;
    }
}

static void widen(CellBox& box, const City& city) {
    for (int y = 0; y < GRID_SIZE; y++)
        for (int x = 0; x < GRID_SIZE; x++) {
            const Cell& cell = cellAt(city, x, y);
            if (cell.road == ROAD_NONE && cell.zone == ZONE_NONE && !buildingAt(city, x, y)) continue;
            box.x0 = std::min(box.x0, x);
            box.y0 = std::min(box.y0, y);
            box.x1 = std::max(box.x1, x);
            box.y1 = std::max(box.y1, y);
        }
}

// Files that the script itself writes must not decide what it shows: they would be there the second time
// only.
static void leaveOutFiles(FilmScript& script) {
    std::set<std::string, std::less<>> saved;
    std::erase_if(script.steps, [&saved](const FilmStep& step) {
        const auto words = scriptWords(step.line);
        if (words[0] == "load") return saved.contains(words[1]);
        if (words[0] == "save") saved.emplace(words[1]);
        return words[0] == "save" || words[0] == "fields";
    });
}

CellBox rehearse(FilmScript script, int64_t daysPerFrame) {
    leaveOutFiles(script);
    City city;
    generateMap(city, 0);
    CellBox box;
    runDays(script, city, 0);
    widen(box, city);
    while (script.next < script.steps.size()) {
        runDays(script, city, daysPerFrame);
        widen(box, city);
    }
    return box;
}
