#include "sim/calendar.h"

#include <gtest/gtest.h>

#include <array>
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

TEST(Calendar, EveryFourHundredYearsTheCenturyHasItsLeapDay) {
    EXPECT_EQ(dateOfDay(-9497), "2000-2-29");
    EXPECT_EQ(dateOfDay(136599), "2400-2-28");
    EXPECT_EQ(dateOfDay(136600), "2400-2-29");
    EXPECT_EQ(dateOfDay(136601), "2400-3-1");
}

TEST(Calendar, GoesBackBeforeTheFirstDayAndTheYearZero) {
    EXPECT_EQ(dateOfDay(-1), "2026-2-28");
    EXPECT_EQ(dateOfDay(-59), "2026-1-1");
    EXPECT_EQ(dateOfDay(-739981), "0-3-1");
    EXPECT_EQ(dateOfDay(-739982), "0-2-29");
    EXPECT_EQ(dateOfDay(-739981 - 146097), "-400-3-1");
    EXPECT_EQ(dateOfDay(-739982 - 146097), "-400-2-29");
}

// As a wall calendar counts them, past the first century years with and without a leap day.
TEST(Calendar, EveryDayFollowsTheOneBefore) {
    std::array<int, 12> lengths = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    City city;
    std::array<int, 3> expected = {1, 3, 2026};
    auto& [day, month, year] = expected;
    for (city.calendarDay = 0; year < 2402; city.calendarDay++) {
        std::array<int, 3> date;
        calendarDate(city, date[0], date[1], date[2]);
        ASSERT_EQ(date, expected);
        lengths[1] = year % 400 == 0 || (year % 4 == 0 && year % 100 != 0) ? 29 : 28;
        if (++day <= lengths[month - 1]) continue;
        day = 1;
        if (++month <= 12) continue;
        month = 1;
        year++;
    }
}

TEST(Calendar, SeasonsTurnWithTheirMonths) {
    EXPECT_EQ(seasonOfDay(0), SEASON_SPRING);
    EXPECT_EQ(seasonOfDay(91), SEASON_SPRING);
    EXPECT_EQ(seasonOfDay(92), SEASON_SUMMER);
    EXPECT_EQ(seasonOfDay(183), SEASON_SUMMER);
    EXPECT_EQ(seasonOfDay(184), SEASON_AUTUMN);
    EXPECT_EQ(seasonOfDay(274), SEASON_AUTUMN);
    EXPECT_EQ(seasonOfDay(275), SEASON_WINTER);
    EXPECT_EQ(seasonOfDay(306), SEASON_WINTER);
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
