#include "sim/calendar.h"

#include <cassert>

// The well-known inverse of days-from-civil: years begin in March, so that the leap day comes last.
void calendarDate(const City& city, int& day, int& month, int& year) {
    const int64_t days = int64_t{city.calendarDay} + 739981; // since 0000-03-01
    // Rounded down, because a loaded file may name a day before the year 0.
    const int64_t era = (days >= 0 ? days : days - 146096) / 146097;
    const int dayOfEra = static_cast<int>(days - era * 146097);
    assert(dayOfEra >= 0 && dayOfEra < 146097);
    const int yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const int dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    assert(yearOfEra < 400 && dayOfYear >= 0 && dayOfYear <= 365);
    const int shiftedMonth = (5 * dayOfYear + 2) / 153; // 0 is March
    day = dayOfYear - (153 * shiftedMonth + 2) / 5 + 1;
    assert(shiftedMonth < 12 && day >= 1 && day <= 31);
    month = shiftedMonth < 10 ? shiftedMonth + 3 : shiftedMonth - 9;
    year = static_cast<int>(yearOfEra + era * 400) + (month <= 2 ? 1 : 0);
}

Season season(const City& city) {
    int day;
    int month;
    int year;
    calendarDate(city, day, month, year);
    if (month >= 3 && month <= 5) return SEASON_SPRING;
    if (month >= 6 && month <= 8) return SEASON_SUMMER;
    if (month >= 9 && month <= 11) return SEASON_AUTUMN;
    return SEASON_WINTER;
}
