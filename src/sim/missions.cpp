#include "sim/missions.h"

#include "sim/numbers.h"

#include <algorithm>

static int roadCells(const CityStats& stats) {
    return saturated(int64_t{stats.streetCells} + stats.avenueCells); // a loaded file may hold anything
}

static bool missionMet(const CityStats& stats, int index) {
    const auto& working = stats.workingBuildings;
    switch (index) {
    case 0:
        return roadCells(stats) >= 20 && stats.zonedCells >= 20;
    case 1:
        return stats.population >= 80;
    case 2:
        return working[KIND_SHOPS] >= 10 && working[KIND_OFFICE_TOWER] >= 6;
    case 3:
        return working[KIND_POLICE_STATION] >= 1 && working[KIND_FIRE_STATION] >= 1 &&
               working[KIND_HOSPITAL] >= 1 && stats.population >= 500;
    case 4:
        return stats.workingParks >= 3 && stats.averagePollution < 0.25f && stats.population >= 1200;
    case 5:
        return stats.population >= 5000 && stats.happiness >= 60.0f;
    default:
        return false;
    }
}

static float share(float value, float goal) { return std::min(value / goal, 1.0f); }
static float share(int value, int goal) { return share(static_cast<float>(value), static_cast<float>(goal)); }

float missionProgress(const City& city) { return missionProgress(computeStats(city), city.missionIndex); }

float missionProgress(const CityStats& stats, int mission) {
    const auto& working = stats.workingBuildings;
    switch (mission) {
    case 0:
        return 0.5f * share(roadCells(stats), 20) + 0.5f * share(stats.zonedCells, 20);
    case 1:
        return share(stats.population, 80);
    case 2:
        return 0.5f * share(working[KIND_SHOPS], 10) + 0.5f * share(working[KIND_OFFICE_TOWER], 6);
    case 3:
        return (share(working[KIND_POLICE_STATION], 1) + share(working[KIND_FIRE_STATION], 1) +
                share(working[KIND_HOSPITAL], 1) + share(stats.population, 500)) /
               4.0f;
    case 4:
        return (share(stats.workingParks, 3) + (stats.averagePollution < 0.25f ? 1.0f : 0.0f) +
                share(stats.population, 1200)) /
               3.0f;
    case 5:
        return 0.5f * share(stats.population, 5000) + 0.5f * share(stats.happiness, 60.0f);
    default:
        return 1.0f;
    }
}

void checkMissions(City& city) {
    if (missionMet(computeStats(city), city.missionIndex)) {
        city.money += MISSION_REWARD;
        postEvent(city, STATUS_MISSION_COMPLETE, MISSION_REWARD);
        city.missionIndex++;
    }
    // Not only after a reward: a loaded file may have all missions behind it and not be marked.
    if (city.missionIndex >= MISSION_COUNT && !city.allMissionsDone) {
        city.allMissionsDone = 1;
        postEvent(city, STATUS_ALL_MISSIONS_COMPLETE, 0);
    }
}
