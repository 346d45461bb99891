// A table of a city's days as a CSV file: a row for every day that passed, as the city stood at its end, with
// all that `stats` tells. The first column counts the cities of the script, from 1, by those that lived a
// day.
//
// The rows gather in FILE.part, which takes the place of FILE when the table is whole; a table that could not
// be finished leaves FILE as it was. What is no ordinary file, such as a pipe, is written directly.
#pragma once

#include "sim/city.h"

#include <fstream>
#include <string>
#include <vector>

class DayLog {
public:
    ~DayLog(); // takes an unfinished table away
    DayLog() = default;
    DayLog(const DayLog&) = delete;
    DayLog& operator=(const DayLog&) = delete;

    bool open(const std::string& path);
    // What follows is told of another city.
    void beginCity();
    // False when the file cannot take more.
    bool addDay(const City& city);
    bool failed() const { return !file; }
    // True when every row is in FILE.
    bool finish();

private:
    std::vector<char> buffer; // who reads from a pipe is woken for a hundred days at a time
    std::ofstream file;
    std::string path;
    std::string partPath; // empty when the file is written directly, and when all is done
    int64_t cityNumber = 1;
    bool cityHasDays = false;
};
