// City scripts drive the simulation without a window, one command a line: players run balance experiments
// with them, and tests and benchmarks build their cities from them.
#pragma once

#include "script_values.h"
#include "sim/city.h"

#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

constexpr int SCRIPT_OUTPUT_LOST = 1; // exit statuses besides 0
constexpr int SCRIPT_REFUSED = 2;

class DayLog;
struct ProgressBar;

// What may go with a script.
struct ScriptExtras {
    ScriptValues values = {};
    DayLog* dayLog = nullptr;           // told of every day
    ProgressBar* progressBar = nullptr; // kept up to date while the script ticks
};

// The words of a line without its comment, split at blanks and tabs.
std::vector<std::string_view> scriptWords(std::string_view line);

// Runs one line. True leaves the line to print in `answer`, empty for a line without words; false means that
// the line is no command, leaves the reason in `answer` and the city as it was.
bool runScriptLine(City& city, std::string_view line, std::string& answer, const ScriptExtras& extras = {});

// Says of a line what runScriptLine would, and changes nothing.
bool checkScriptLine(std::string_view line, std::string& answer);

// Reads up to the next line end, without the comment, which may be of any length. False for a line that is
// too long to be a command; its rest is not read.
bool readScriptLine(std::istream& in, std::string& line);

// Runs every line up to the first that is no command, which it reports to `err` as "NAME:LINE: MESSAGE".
// Answers the exit status. A day log that can take no more ends the run too. `out` is flushed whenever the
// input may keep us waiting, so that another program can hold a conversation through two pipes.
int runScript(City& city, const std::string& name, std::istream& in, std::ostream& out, std::ostream& err,
              const ScriptExtras& extras = {});

// All commands with their arguments, one a line.
std::string scriptUsage();
