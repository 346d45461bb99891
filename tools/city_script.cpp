#include "city_script.h"

#include "city_report.h"
#include "day_log.h"
#include "progress_bar.h"
#include "sim/build_tools.h"
#include "sim/daily_tick.h"
#include "sim/finance.h"
#include "sim/grid_rect.h"
#include "sim/map_generation.h"
#include "sim/save_file.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <istream>
#include <limits>
#include <ostream>
#include <span>

constexpr size_t LINE_LIMIT = 64 * 1024; // bytes before the comment
constexpr size_t ARGUMENT_LIMIT = 5;

// What a command was given, in the order of its words: whole numbers, and named values as their number.
struct Arguments {
    std::array<int64_t, ARGUMENT_LIMIT> numbers = {};
    double amount = 0.0;
    std::string path = {};
    const ScriptExtras& extras;

    int operator[](size_t index) const { return static_cast<int>(numbers[index]); }
};

// Each result word stands behind a blank.
static void say(std::string& answer, std::string_view word) { answer.append(" ").append(word); }
static void say(std::string& answer, int64_t number) { say(answer, std::to_string(number)); }
static void sayTruth(std::string& answer, bool truth) { say(answer, truth ? "true" : "false"); }

template<class List> static void sayAll(std::string& answer, const List& numbers) {
    for (const auto number : numbers) say(answer, int64_t{number});
}

static void sayOutcome(std::string& answer, bool done, const City& city) {
    sayTruth(answer, done);
    say(answer, int64_t{city.statusId});
    say(answer, int64_t{city.statusArg});
}

// How many cells of the rectangle answer true.
template<class Change> static int64_t countInRect(const Arguments& a, Change change) {
    int64_t count = 0;
    walkRect(a[0], a[1], a[2], a[3], [&](int x, int y) { count += change(x, y); });
    return count;
}

static void runNew(City& city, const Arguments& a, std::string& answer) {
    generateMap(city, static_cast<uint32_t>(a.numbers[0]));
    if (a.extras.dayLog) a.extras.dayLog->beginCity();
    say(answer, a.numbers[0]);
}

static void runRoad(City& city, const Arguments& a, std::string& answer) {
    sayOutcome(answer, placeRoad(city, a[0], a[1], a[2]), city);
}

static void runLine(City& city, const Arguments& a, std::string& answer) {
    say(answer, int64_t{placeRoadLine(city, a[0], a[1], a[2], a[3], a[4])});
}

static void runZone(City& city, const Arguments& a, std::string& answer) {
    sayTruth(answer, setZone(city, a[0], a[1], a[2]));
}

static void runZoneRect(City& city, const Arguments& a, std::string& answer) {
    say(answer, countInRect(a, [&](int x, int y) { return setZone(city, x, y, a[4]); }));
}

static void runDistrict(City& city, const Arguments& a, std::string& answer) {
    sayTruth(answer, setDistrict(city, a[0], a[1], a[2]));
}

static void runDistrictRect(City& city, const Arguments& a, std::string& answer) {
    say(answer, countInRect(a, [&](int x, int y) { return setDistrict(city, x, y, a[4]); }));
}

static void runBuild(City& city, const Arguments& a, std::string& answer) {
    sayOutcome(answer, placeBuilding(city, a[0], a[1], a[2]), city);
}

static void runBusStop(City& city, const Arguments& a, std::string& answer) {
    sayOutcome(answer, placeBusStop(city, a[0], a[1]), city);
}

static void runBulldoze(City& city, const Arguments& a, std::string& answer) {
    sayOutcome(answer, bulldoze(city, a[0], a[1]), city);
}

static void runBulldozeRect(City& city, const Arguments& a, std::string& answer) {
    say(answer, int64_t{bulldozeRect(city, a[0], a[1], a[2], a[3])});
}

static void runTax(City& city, const Arguments& a, std::string& answer) {
    adjustTax(city, a[0], a[1]);
    sayAll(answer, city.taxRate);
}

static void runBudget(City& city, const Arguments& a, std::string& answer) {
    adjustBudget(city, a[0], a[1]);
    sayAll(answer, city.serviceBudget);
}

static void runDistrictTax(City& city, const Arguments& a, std::string& answer) {
    cycleDistrictTax(city, a[0]);
    sayAll(answer, city.districtTax);
}

static void runPolicy(City& city, const Arguments& a, std::string& answer) {
    toggleDistrictPolicy(city, a[0], a[1]);
    sayAll(answer, city.districtPolicy);
}

static void runKeep(City& city, const Arguments& a, std::string& answer) {
    city.keepPlaying = static_cast<uint8_t>(a[0]);
    say(answer, a.numbers[0]);
}

static void runMoney(City& city, const Arguments& a, std::string& answer) {
    city.money = a.amount;
    say(answer, formatNumber("%.17g", a.amount));
}

// One day, told to the log unless the city stands still. False when the log can take no more.
static bool tickAndLog(City& city, DayLog* log) {
    const int32_t before = city.day;
    dailyTick(city);
    return !log || city.day == before || log->addDay(city);
}

static double secondsNow() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

static void runTick(City& city, const Arguments& a, std::string& answer) {
    const int64_t days = a.numbers[0];
    ProgressBar* bar = a.extras.progressBar;
    if (bar) bar->begin(secondsNow());
    for (int64_t i = 0; i < days && tickAndLog(city, a.extras.dayLog); i++)
        if (bar) bar->update(i + 1, days, secondsNow());
    if (bar) bar->end();
    say(answer, int64_t{city.day});
}

static void runSave(City& city, const Arguments& a, std::string& answer) {
    sayTruth(answer, saveCity(city, a.path));
}

static void runLoad(City& city, const Arguments& a, std::string& answer) {
    const bool loaded = loadCity(city, a.path);
    if (loaded && a.extras.dayLog) a.extras.dayLog->beginCity();
    sayTruth(answer, loaded);
}

static void runFields(City& city, const Arguments& a, std::string& answer) {
    sayTruth(answer, writeFields(city, a.path));
}

static void runEvents(City& city, const Arguments&, std::string& answer) {
    say(answer, int64_t{city.eventCount});
    for (const GameEvent& event : city.events)
        say(answer, std::to_string(event.id) + ":" + std::to_string(event.arg));
}

static void runStats(City& city, const Arguments&, std::string& answer) { say(answer, statsJson(city)); }

struct Command {
    std::string_view word;
    std::string_view arguments; // names of ARGUMENT_RULES
    void (*run)(City& city, const Arguments& arguments, std::string& answer);
};

constexpr Command COMMANDS[] = {
    {"new", "SEED", runNew},
    {"road", "X Y TYPE", runRoad},
    {"line", "X0 Y0 X1 Y1 TYPE", runLine},
    {"zone", "X Y ZONE", runZone},
    {"zonerect", "X0 Y0 X1 Y1 ZONE", runZoneRect},
    {"district", "X Y N", runDistrict},
    {"districtrect", "X0 Y0 X1 Y1 N", runDistrictRect},
    {"build", "X Y KIND", runBuild},
    {"busstop", "X Y", runBusStop},
    {"bulldoze", "X Y", runBulldoze},
    {"bulldozerect", "X0 Y0 X1 Y1", runBulldozeRect},
    {"tax", "INDEX STEPS", runTax},
    {"budget", "INDEX STEPS", runBudget},
    {"districttax", "D", runDistrictTax},
    {"policy", "D BIT", runPolicy},
    {"keep", "FLAG", runKeep},
    {"money", "AMOUNT", runMoney},
    {"tick", "DAYS", runTick},
    {"save", "PATH", runSave},
    {"load", "PATH", runLoad},
    {"fields", "PATH", runFields},
    {"events", "", runEvents},
    {"stats", "", runStats},
};

constexpr int64_t I32_MIN = std::numeric_limits<int32_t>::min();
constexpr int64_t I32_MAX = std::numeric_limits<int32_t>::max();
constexpr std::string_view ROAD_NAMES[] = {"", "street", "avenue"};
constexpr std::string_view ZONE_NAMES[] = {"none", "residential", "commercial", "offices", "industrial"};

// What a word must be: a whole number from `least` to `most`, but not `except`; or one of `names`, and then
// it stands for its place in the list. An argument without a rule is any 32-bit number; AMOUNT and PATH are
// read on their own.
struct ArgumentRule {
    std::string_view name;
    int64_t least = I32_MIN;
    int64_t most = I32_MAX;
    std::span<const std::string_view> names = {};
    int64_t except = I32_MAX + 1;
};

constexpr ArgumentRule ARGUMENT_RULES[] = {
    {"SEED", 0, std::numeric_limits<uint32_t>::max()},
    {"N", 0, DISTRICT_COUNT - 1},
    {"KIND", 0, KIND_COUNT - 1},
    {"FLAG", 0, 1},
    {"DAYS", 0, I32_MAX},
    {"TYPE", 0, 0, ROAD_NAMES},
    {"ZONE", 0, 0, ZONE_NAMES},
    {"BIT", POLICY_SMOKE_FREE, POLICY_TRANSIT_FIRST, {}, 3},
};

// The whole word must be the number: no sign but minus, no blanks, no rest.
template<class Number> static bool parseNumber(std::string_view word, Number& number) {
    const char* end = word.data() + word.size();
    const auto [rest, error] = std::from_chars(word.data(), end, number);
    return error == std::errc() && rest == end;
}

static bool parseRuled(const ArgumentRule& rule, std::string_view word, int64_t& number) {
    if (rule.names.empty())
        return parseNumber(word, number) && number >= rule.least && number <= rule.most &&
               number != rule.except;
    const auto found = std::find(rule.names.begin(), rule.names.end(), word);
    number = found - rule.names.begin();
    return found != rule.names.end();
}

static bool parseArgument(std::string_view name, std::string_view word, size_t index, Arguments& arguments) {
    if (name == "PATH") {
        arguments.path = word;
        return true;
    }
    if (name == "AMOUNT") return parseNumber(word, arguments.amount) && std::isfinite(arguments.amount);

    const auto rule = std::find_if(std::begin(ARGUMENT_RULES), std::end(ARGUMENT_RULES),
                                   [name](const ArgumentRule& r) { return r.name == name; });
    const bool ruled = rule != std::end(ARGUMENT_RULES);
    return parseRuled(ruled ? *rule : ArgumentRule{name}, word, arguments.numbers[index]);
}

std::vector<std::string_view> scriptWords(std::string_view line) {
    line = line.substr(0, line.find('#'));
    if (line.ends_with('\r')) line.remove_suffix(1);
    std::vector<std::string_view> words;
    while (true) {
        line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
        if (line.empty()) return words;
        words.push_back(line.substr(0, line.find_first_of(" \t")));
        line.remove_prefix(words.back().size());
    }
}

// A word in quotes for a message: cut short, and with nothing that would upset a terminal.
static std::string quoted(std::string_view word) {
    std::string text(word.substr(0, 40));
    for (char& c : text)
        if (c < ' ' || c > '~') c = '?';
    return "'" + text + (word.size() > 40 ? "...'" : "'");
}

static std::string usage(const Command& command) {
    return std::string(command.word) + (command.arguments.empty() ? "" : " ") +
           std::string(command.arguments);
}

// Without a city, only looks whether the line could be run.
static bool runOrCheck(City* city, std::string_view line, std::string& answer, const ScriptExtras& extras) {
    answer.clear();
    std::string filled;
    std::string unknown;
    if (!fillLine(extras.values, line, filled, unknown)) {
        answer = quoted("{" + unknown + "}") + " has no value";
        return false;
    }
    const std::vector<std::string_view> words = scriptWords(filled);
    if (words.empty()) return true;

    const auto command = std::find_if(std::begin(COMMANDS), std::end(COMMANDS),
                                      [&words](const Command& c) { return c.word == words[0]; });
    if (command == std::end(COMMANDS)) {
        answer = "unknown command " + quoted(words[0]);
        return false;
    }
    const std::vector<std::string_view> names = scriptWords(command->arguments);
    if (words.size() != names.size() + 1) {
        answer = "wrong number of words for: " + usage(*command);
        return false;
    }
    Arguments arguments{.extras = extras};
    for (size_t i = 0; i < names.size(); i++) {
        if (parseArgument(names[i], words[i + 1], i, arguments)) continue;
        answer = quoted(words[i + 1]) + " cannot be " + std::string(names[i]) + " of: " + usage(*command);
        return false;
    }

    answer = command->word;
    if (city) command->run(*city, arguments, answer);
    return true;
}

bool runScriptLine(City& city, std::string_view line, std::string& answer, const ScriptExtras& extras) {
    return runOrCheck(&city, line, answer, extras);
}

bool checkScriptLine(std::string_view line, std::string& answer) {
    return runOrCheck(nullptr, line, answer, {});
}

bool readScriptLine(std::istream& in, std::string& line) {
    line.clear();
    bool inComment = false;
    for (int c = in.get(); c != std::istream::traits_type::eof() && c != '\n'; c = in.get()) {
        inComment = inComment || c == '#';
        if (inComment) continue;
        if (line.size() == LINE_LIMIT) return false;
        line += static_cast<char>(c);
    }
    return true;
}

int runScript(City& city, const std::string& name, std::istream& in, std::ostream& out, std::ostream& err,
              const ScriptExtras& extras) {
    std::string line;
    std::string answer;
    for (int64_t number = 1; in.good(); number++) {
        if (in.rdbuf()->in_avail() <= 0) out.flush();
        bool understood = readScriptLine(in, line);
        if (understood)
            understood = runScriptLine(city, line, answer, extras);
        else
            answer = "the line is too long";
        if (!understood) {
            out.flush();
            err << name << ":" << number << ": " << answer << "\n";
            return SCRIPT_REFUSED;
        }
        if (!answer.empty()) out << answer << "\n";
        if (extras.dayLog && extras.dayLog->failed()) {
            out.flush();
            return SCRIPT_OUTPUT_LOST;
        }
    }
    if (in.bad()) {
        out.flush();
        err << name << ": cannot be read\n";
        return SCRIPT_REFUSED;
    }
    if (out.flush()) return 0;
    err << name << ": the output cannot be written\n";
    return SCRIPT_OUTPUT_LOST;
}

std::string scriptUsage() {
    std::string text;
    for (const Command& command : COMMANDS) text += "  " + usage(command) + "\n";
    return text;
}
