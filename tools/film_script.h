// A city script as a film needs it: read and checked as a whole, so that no film is begun that cannot be
// ended, then run a few days at a time.
#pragma once

#include "sim/city.h"

#include <iosfwd>
#include <string>
#include <vector>

struct FilmStep {
    std::string line;
    int64_t days = 0; // of a `tick`, those still to come; the line of any other command runs at once
};

struct FilmScript {
    std::vector<FilmStep> steps;
    size_t next = 0; // the step to run
};

// Reads every line up to the first that is no command, which it leaves in `reason` as "NAME:LINE: MESSAGE".
bool readFilmScript(FilmScript& script, const std::string& name, std::istream& in, std::string& reason);

// The days from here to the end.
int64_t daysToCome(const FilmScript& script);

// Runs on until `days` have passed, and with them all that is done before the next day begins.
void runDays(FilmScript& script, City& city, int64_t days);

// The cells in use, the corners included; empty while `x0` is above `x1`.
struct CellBox {
    int x0 = GRID_SIZE;
    int y0 = GRID_SIZE;
    int x1 = -1;
    int y1 = -1;
};

// Where the city will stand on a film that shows it every so many days. Plays the script on a city of its
// own and writes no file: what it saves for itself to load is not seen.
CellBox rehearse(FilmScript script, int64_t daysPerFrame);
