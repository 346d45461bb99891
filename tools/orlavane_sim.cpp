// orlavane-sim [FILE] [OPTION...]: runs a city script, by default the one on standard input.
#include "city_script.h"
#include "day_log.h"
#include "progress_bar.h"

#include "sim/map_generation.h"

#include <fstream>
#include <iostream>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#else
#include <unistd.h>
#endif

// The same bytes on every system: Windows would end each line with two.
static void useBinaryStreams() {
#ifdef _WIN32
    for (const int stream : {0, 1, 2}) _setmode(stream, _O_BINARY);
#endif
}

static bool isTerminal(int stream) {
#ifdef _WIN32
    return _isatty(stream) != 0;
#else
    return isatty(stream) != 0;
#endif
}

static void printUsage(std::ostream& out) {
    out << "usage: orlavane-sim [FILE] [--csv FILE] [--set NAME=VALUE]... [--progress]\n"
           "Runs the city script in FILE; with - or without FILE the one on standard input.\n"
           "  --csv FILE        writes a row for every day that passes, with all that stats prints\n"
           "  --set NAME=VALUE  puts VALUE wherever the script says {NAME}\n"
           "  --progress        shows a bar on the terminal while the script ticks for long\n"
           "One command a line, # starts a comment:\n"
        << scriptUsage();
}

struct Options {
    std::string script = "-";
    std::string csv; // empty for none
    ScriptValues values;
    bool progress = false;
};

// False when the usage must be shown. `error` is then the reason, if there is one to tell.
static bool readOptions(const std::vector<std::string>& words, Options& options, std::string& error) {
    bool hasScript = false;
    for (size_t i = 0; i < words.size(); i++) {
        const std::string& word = words[i];
        if (word == "--progress") {
            options.progress = true;
        } else if (word == "--csv" || word == "--set") {
            if (++i == words.size()) return false;
            if (word == "--csv") {
                options.csv = words[i];
            } else if (std::string reason; !addScriptValue(options.values, words[i], reason)) {
                error = "--set " + words[i] + ": " + reason;
                return false;
            }
        } else {
            if (hasScript) return false;
            hasScript = true;
            options.script = word;
        }
    }
    return true;
}

static int runNamed(City& city, const std::string& name, const ScriptExtras& extras) {
    if (name == "-") return runScript(city, "stdin", std::cin, std::cout, std::cerr, extras);

    std::ifstream file(name, std::ios::binary);
    if (!file) {
        std::cerr << name << ": cannot be opened\n";
        return SCRIPT_REFUSED;
    }
    return runScript(city, name, file, std::cout, std::cerr, extras);
}

static int runWithLog(City& city, const Options& options, ScriptExtras extras) {
    DayLog log;
    if (!log.open(options.csv)) {
        std::cerr << options.csv << ": cannot be opened\n";
        return SCRIPT_OUTPUT_LOST;
    }
    extras.dayLog = &log;
    const int status = runNamed(city, options.script, extras);
    if (log.failed() || (status == 0 && !log.finish())) {
        std::cerr << options.csv << ": the table cannot be written; is the disk full?\n";
        return SCRIPT_OUTPUT_LOST;
    }
    return status;
}

int main(int argc, char** argv) {
    useBinaryStreams();
    std::ios::sync_with_stdio(false);
    const std::vector<std::string> words(argv + 1, argv + argc);
    if (words.size() == 1 && words[0] == "--help") {
        printUsage(std::cout);
        return 0;
    }
    Options options;
    std::string error;
    if (!readOptions(words, options, error)) {
        if (error.empty())
            printUsage(std::cerr);
        else
            std::cerr << error << "\n";
        return SCRIPT_REFUSED;
    }

    City city;
    generateMap(city, 0);
    ProgressBar bar{std::cerr};
    ScriptExtras extras{.values = options.values};
    if (options.progress && isTerminal(2)) extras.progressBar = &bar;
    return options.csv.empty() ? runNamed(city, options.script, extras) : runWithLog(city, options, extras);
}
