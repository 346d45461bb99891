// What a script can ask a city for: its figures as text, its derived fields as a file.
#pragma once

#include "sim/city.h"

#include <string>

// Formats one number as printf does.
std::string formatNumber(const char* format, double value);

// computeStats and the city's scalars as one JSON object, in a fixed order. Single floats carry 9 digits and
// doubles 17, so that equal text means equal bits. What is not finite comes out as printf writes it.
std::string statsJson(const City& city);

// The same figures in the same text as a row of a table, and the names of its columns. An array takes a
// column for each of its entries: demand0, demand1 and so on.
std::string statsCsv(const City& city);
std::string statsCsvNames();

// The eight coverage grids, trafficLoad, pollution, landValue, trafficFlow, powerField, waterField, then
// roadCapacity: flat and little-endian, CELL_COUNT values each. True when every byte was written.
bool writeFields(const City& city, const std::string& path);
