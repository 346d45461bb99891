// Towns that a script leads from day to day, for the tests and the benchmarks.
#pragma once

#include "sim/city.h"

#include <functional>
#include <string>

// The city of a script at the end of a day; past the script's own end it just lives on. The view has drawn
// everything before each day, and `eachDay` is called after it.
City townAtDay(const std::string& script, int day, const std::function<void(const City&)>& eachDay = {});

// Homes, shops, factories and one of each service around a crossroads, and what its script holds besides.
std::string demoTownScript();
// examples/metropolis.txt: 5000 citizens after 164 days.
std::string metropolisScript();
