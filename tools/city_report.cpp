#include "city_report.h"

#include "sim/city_stats.h"
#include "sim/file_io.h"
#include "sim/missions.h"

#include <bit>
#include <cstdio>

static_assert(std::endian::native == std::endian::little, "fields go to the file as they lie in memory");

std::string formatNumber(const char* format, double value) {
    char text[40];
    std::snprintf(text, sizeof text, format, value);
    return text;
}

static std::string jsonValue(double value) { return formatNumber("%.17g", value); }
static std::string jsonValue(float value) { return formatNumber("%.9g", static_cast<double>(value)); }
static std::string jsonValue(int value) { return std::to_string(value); }

// Calls visit(name, value) for every figure, in the order of `stats`; a value is a number or an array of
// them.
template<class Visit> static void visitFigures(const City& city, Visit visit) {
    const CityStats stats = computeStats(city);
    visit("day", stats.day);
    visit("money", stats.money);
    visit("lastIncome", stats.lastIncome);
    visit("lastExpense", stats.lastExpense);
    visit("population", stats.population);
    visit("jobs", stats.jobs);
    visit("employed", stats.employed);
    visit("workers", stats.workers);
    visit("happiness", stats.happiness);
    visit("demand", stats.demand);
    visit("streetCells", stats.streetCells);
    visit("avenueCells", stats.avenueCells);
    visit("workingBuildings", stats.workingBuildings);
    visit("districtCells", stats.districtCells);
    visit("averagePollution", stats.averagePollution);
    visit("averageTraffic", stats.averageTraffic);
    visit("workingParks", stats.workingParks);
    visit("zonedCells", stats.zonedCells);
    visit("educatedShare", stats.educatedShare);
    visit("commuters", stats.commuters);
    visit("transitRiders", stats.transitRiders);
    visit("goodsDemand", city.goodsDemand);
    visit("goodsSupply", city.goodsSupply);
    visit("goodsRatio", city.goodsRatio);
    visit("bankrupt", int{stats.bankrupt != 0});
    visit("allMissionsDone", int{stats.allMissionsDone != 0});
    visit("missionIndex", city.missionIndex);
    visit("missionProgress", missionProgress(city));
    visit("buildings", static_cast<int>(city.buildings.size()));
    visit("raining", city.raining);
    visit("weatherDaysLeft", city.weatherDaysLeft);
}

template<class List> static std::string jsonValue(const List& values) {
    std::string text;
    for (const auto& value : values) text += (text.empty() ? "[" : ",") + jsonValue(value);
    return text + "]";
}

std::string statsJson(const City& city) {
    std::string text;
    visitFigures(city, [&text](const char* name, const auto& value) {
        text.append(text.empty() ? "{\"" : ",\"").append(name).append("\":").append(jsonValue(value));
    });
    return text + "}";
}

static void addCell(std::string& row, const std::string& text) {
    row.append(row.empty() ? "" : ",").append(text);
}

template<class Number> static void addNames(std::string& row, const char* name, Number) {
    addCell(row, name);
}
template<class Number, size_t count>
static void addNames(std::string& row, const char* name, const std::array<Number, count>&) {
    for (size_t i = 0; i < count; i++) addCell(row, name + std::to_string(i));
}

std::string statsCsvNames() {
    std::string row;
    visitFigures(City(), [&row](const char* name, const auto& value) { addNames(row, name, value); });
    return row;
}

template<class Number> static void addValues(std::string& row, Number value) {
    addCell(row, jsonValue(value));
}
template<class Number, size_t count>
static void addValues(std::string& row, const std::array<Number, count>& values) {
    for (const Number value : values) addCell(row, jsonValue(value));
}

std::string statsCsv(const City& city) {
    std::string row;
    visitFigures(city, [&row](const char*, const auto& value) { addValues(row, value); });
    return row;
}

bool writeFields(const City& city, const std::string& path) {
    std::vector<uint8_t> bytes;
    bytes.reserve((COVERAGE_COUNT + 7) * CELL_COUNT * sizeof(float));
    const auto append = [&bytes](const auto& values) {
        const uint8_t* first = reinterpret_cast<const uint8_t*>(values.data());
        bytes.insert(bytes.end(), first, first + values.size() * sizeof values[0]);
    };
    for (const Grid& grid : city.coverage) append(grid);
    append(city.trafficLoad);
    append(city.pollution);
    append(city.landValue);
    append(city.trafficFlow);
    append(city.powerField);
    append(city.waterField);
    append(city.roadCapacity);
    return writeFile(path, bytes.data(), bytes.size());
}
