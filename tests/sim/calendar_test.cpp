#include "sim/calendar.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

static std::string dateOfDay(int calendarDay) {
    City city;
    city.calendarDay = calendarDay;
    int day;
    int month;
    int year;
    calendarDate(city, day, month, year);
    return std::to_string(year) + "-" + std::to_string(month) + "-" + std::to_string(day);
}

static Season seasonOfDay(int calendarDay) {
    City city;
    city.calendarDay = calendarDay;
    return season(city);
}

TEST(Calendar, DayZeroIsTheFirstOfMarch2026) { EXPECT_EQ(dateOfDay(0), "2026-3-1"); }

TEST(Calendar, MonthsAndYearsRollOver) {
    EXPECT_EQ(dateOfDay(30), "2026-3-31");
    EXPECT_EQ(dateOfDay(31), "2026-4-1");
    EXPECT_EQ(dateOfDay(305), "2026-12-31");
    EXPECT_EQ(dateOfDay(306), "2027-1-1");
}

TEST(Calendar, LeapDayComesEveryFourthYearButNotIn2100) {
    EXPECT_EQ(dateOfDay(730), "2028-2-29");
    EXPECT_EQ(dateOfDay(731), "2028-3-1");
    EXPECT_EQ(dateOfDay(27027), "2100-2-28");
    EXPECT_EQ(dateOfDay(27028), "2100-3-1");
}

TEST(Calendar, SeasonsTurnWithTheirMonths) {
    EXPECT_EQ(seasonOfDay(0), SEASON_SPRING);
    EXPECT_EQ(seasonOfDay(91), SEASON_SPRING);
    EXPECT_EQ(seasonOfDay(92), SEASON_SUMMER);
    EXPECT_EQ(seasonOfDay(184), SEASON_AUTUMN);
    EXPECT_EQ(seasonOfDay(275), SEASON_WINTER);
    EXPECT_EQ(seasonOfDay(364), SEASON_WINTER);
    EXPECT_EQ(seasonOfDay(365), SEASON_SPRING);
}

TEST(Calendar, WildDaysFromASaveStillGiveADate) {
    for (const int day : {std::numeric_limits<int>::min(), -739982, -1, std::numeric_limits<int>::max()}) {
        City city;
        city.calendarDay = day;
        int dayOfMonth;
        int month;
        int year;
        calendarDate(city, dayOfMonth, month, year);
        EXPECT_TRUE(dayOfMonth >= 1 && dayOfMonth <= 31) << day;
        EXPECT_TRUE(month >= 1 && month <= 12) << day;
    }
}
