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

template<class List> static std::string jsonList(const List& values) {
    std::string text;
    for (const auto& value : values) text += (text.empty() ? "[" : ",") + jsonValue(value);
    return text + "]";
}

std::string statsJson(const City& city) {
    const CityStats stats = computeStats(city);
    std::string text;
    const auto raw = [&text](const char* key, const std::string& value) {
        text.append(text.empty() ? "{\"" : ",\"").append(key).append("\":").append(value);
    };
    const auto put = [&raw](const char* key, auto value) { raw(key, jsonValue(value)); };
    put("day", stats.day);
    put("money", stats.money);
    put("lastIncome", stats.lastIncome);
    put("lastExpense", stats.lastExpense);
    put("population", stats.population);
    put("jobs", stats.jobs);
    put("employed", stats.employed);
    put("workers", stats.workers);
    put("happiness", stats.happiness);
    raw("demand", jsonList(stats.demand));
    put("streetCells", stats.streetCells);
    put("avenueCells", stats.avenueCells);
    raw("workingBuildings", jsonList(stats.workingBuildings));
    put("districtCells", stats.districtCells);
    put("averagePollution", stats.averagePollution);
    put("averageTraffic", stats.averageTraffic);
    put("workingParks", stats.workingParks);
    put("zonedCells", stats.zonedCells);
    put("educatedShare", stats.educatedShare);
    put("commuters", stats.commuters);
    put("transitRiders", stats.transitRiders);
    put("goodsDemand", city.goodsDemand);
    put("goodsSupply", city.goodsSupply);
    put("goodsRatio", city.goodsRatio);
    put("bankrupt", int{stats.bankrupt != 0});
    put("allMissionsDone", int{stats.allMissionsDone != 0});
    put("missionIndex", city.missionIndex);
    put("missionProgress", missionProgress(city));
    put("buildings", static_cast<int>(city.buildings.size()));
    put("raining", city.raining);
    put("weatherDaysLeft", city.weatherDaysLeft);
    return text + "}";
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
