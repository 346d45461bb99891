// The date and season that the sun's clock shows. Day 0 is 1 March 2026.
#pragma once

#include "sim/city.h"

enum Season {
    SEASON_SPRING, // March to May
    SEASON_SUMMER,
    SEASON_AUTUMN,
    SEASON_WINTER
};

// Day of the month 1 to 31, month 1 to 12, and the year of City::calendarDay.
void calendarDate(const City& city, int& day, int& month, int& year);

Season season(const City& city);
