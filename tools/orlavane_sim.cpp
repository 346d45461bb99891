// orlavane-sim [FILE]: runs a city script, by default the one on standard input.
#include "city_script.h"

#include "sim/map_generation.h"

#include <fstream>
#include <iostream>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#endif

// The same bytes on every system: Windows would end each line with two.
static void useBinaryStreams() {
#ifdef _WIN32
    for (const int stream : {0, 1, 2}) _setmode(stream, _O_BINARY);
#endif
}

static void printUsage(std::ostream& out) {
    out << "usage: orlavane-sim [FILE]\n"
           "Runs the city script in FILE; with - or without FILE the one on standard input.\n"
           "One command a line, # starts a comment:\n"
        << scriptUsage();
}

int main(int argc, char** argv) {
    useBinaryStreams();
    std::ios::sync_with_stdio(false);
    const std::string name = argc > 1 ? argv[1] : "-";
    if (argc == 2 && name == "--help") {
        printUsage(std::cout);
        return 0;
    }
    if (argc > 2) {
        printUsage(std::cerr);
        return SCRIPT_REFUSED;
    }

    City city;
    generateMap(city, 0);
    if (name == "-") return runScript(city, "stdin", std::cin, std::cout, std::cerr);

    std::ifstream file(name, std::ios::binary);
    if (!file) {
        std::cerr << name << ": cannot be opened\n";
        return SCRIPT_REFUSED;
    }
    return runScript(city, name, file, std::cout, std::cerr);
}
