// Stands between the game and the text library: refuses fonts, and counts what is asked. The linker sends the
// calls here (--wrap); with no gate open they go on to the library.
#pragma once

#include <map>
#include <string>
#include <vector>

struct FontGate {
    FontGate();
    ~FontGate();
    FontGate(const FontGate&) = delete;
    FontGate& operator=(const FontGate&) = delete;

    bool initFails = false;
    bool refusesAll = false;
    bool rendersNothing = false;
    std::vector<std::string> refused;           // paths
    std::map<std::string, std::string> instead; // another file in the place of one

    int opened = 0;                 // tries, also those that failed
    std::vector<std::string> tried; // their paths
    int closed = 0;
    int measured = 0;
    int rendered = 0;
    size_t measuredBytes = 0;
};
