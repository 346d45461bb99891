#include "sim/exercise_city.h"

#include "sim/build_tools.h"
#include "sim/calendar.h"
#include "sim/city_stats.h"
#include "sim/daily_tick.h"
#include "sim/finance.h"
#include "sim/hash.h"
#include "sim/missions.h"
#include "sim/save_file.h"

// Mostly on the map, sometimes beside it, at times far away.
static int wildCoordinate(uint32_t hash) {
    if (hash % 64 == 0) return static_cast<int>(hash);
    return static_cast<int>(hash / 64 % 100) - 2;
}

static void useTool(City& city, uint32_t hash, int x, int y) {
    const int choice = static_cast<int>(hash / 16 % 24) - 4;
    switch (hash % 12) {
    case 0:
    case 1:
    case 2:
        placeRoad(city, x, y, choice % 4);
        break;
    case 3:
    case 4:
        setZone(city, x, y, choice % 8);
        break;
    case 5:
        setDistrict(city, x, y, choice);
        break;
    case 6:
    case 7:
        placeBuilding(city, x, y, choice);
        break;
    case 8:
        placeBusStop(city, x, y);
        break;
    case 9:
        bulldozeRect(city, x, y, y, x);
        break;
    default:
        bulldoze(city, x, y);
    }
}

static void changeRates(City& city, uint32_t hash) {
    const int index = static_cast<int>(hash % 13) - 2;
    const int steps = hash % 32 == 0 ? static_cast<int>(hash) : static_cast<int>(hash / 32 % 9) - 4;
    adjustTax(city, index, steps);
    adjustBudget(city, index, steps);
    cycleDistrictTax(city, index);
    toggleDistrictPolicy(city, index, 1 << (hash % 3));
}

static void readFigures(const City& city) {
    int day;
    int month;
    int year;
    calendarDate(city, day, month, year);
    season(city);
    computeStats(city);
    missionProgress(city);
    heightAt(city, city.hourOfDay, city.happiness);
    for (int x = -1; x <= GRID_SIZE; x++) buildingAt(city, x, x);
}

bool exerciseCity(City& city, uint32_t salt) {
    readFigures(city);
    city.keepPlaying = salt % 2;
    for (uint32_t round = 0; round < 3; round++) {
        for (uint32_t i = 0; i < 16; i++) {
            const uint32_t hash = hashCell(i, round, salt);
            useTool(city, hash, wildCoordinate(hashCell(i, round, salt + 1)),
                    wildCoordinate(hashCell(i, round, salt + 2)));
        }
        changeRates(city, hashCell(round, 0, salt + 3));
        dailyTick(city);
        readFigures(city);
    }

    const std::vector<uint8_t> bytes = encodeCity(city);
    City loaded;
    if (!decodeCity(loaded, bytes.data(), bytes.size())) return false;
    dailyTick(loaded);
    const std::vector<uint8_t> again = encodeCity(loaded);
    return decodeCity(city, again.data(), again.size());
}
