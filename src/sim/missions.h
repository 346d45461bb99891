// The goal of the game: six missions, one at a time, at most one finished a day.
#pragma once

#include "sim/city_stats.h"

constexpr int MISSION_COUNT = 6;
constexpr int MISSION_REWARD = 15000;

constexpr int missionCount() { return MISSION_COUNT; }

// Of the current mission, 0 to 1; 1 when all are done.
float missionProgress(const City& city);
// Of any mission, for whoever has the figures already.
float missionProgress(const CityStats& stats, int mission);
void checkMissions(City& city);
