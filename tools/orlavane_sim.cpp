// orlavane-sim [FILE]: runs a city script, by default the one on standard input.
#include "city_script.h"

#include "sim/map_generation.h"

#include <fstream>
#include <iostream>

static void printUsage(std::ostream& out) {
    out << "usage: orlavane-sim [FILE]\n"
           "Runs the city script in FILE; with - or without FILE the one on standard input.\n"
           "One command a line, # starts a comment:\n"
        << scriptUsage();
}

int main(int argc, char** argv) {
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
