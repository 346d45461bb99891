#include "city_report.h"
#include "day_log.h"
#include "sim/map_generation.h"
#include "temp_dir.h"
#include "tools/script_run.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::ElementsAre;
using testing::HasSubstr;

static std::vector<std::string> split(const std::string& text, char end) {
    std::vector<std::string> parts;
    std::istringstream in(text);
    for (std::string part; std::getline(in, part, end);) parts.push_back(part);
    return parts;
}

// City number and day of every row; the first line holds the names.
static std::vector<std::string> cityDays(const std::string& csv) {
    std::vector<std::string> days;
    const std::vector<std::string> lines = split(csv, '\n');
    for (size_t i = 1; i < lines.size(); i++) {
        const std::vector<std::string> cells = split(lines[i], ',');
        days.push_back(cells[0] + ":" + cells[1]);
    }
    return days;
}

struct LoggedRun {
    int status;
    std::string out;
    std::string csv; // empty for none
};

static LoggedRun runLogged(const std::string& script) {
    const TempDir dir;
    City city;
    generateMap(city, 0);
    DayLog log;
    EXPECT_TRUE(log.open(dir.file("days.csv")));
    std::istringstream in(script);
    std::ostringstream out;
    std::ostringstream err;
    const ScriptExtras extras{.dayLog = &log};
    const int status = runScript(city, "town.txt", in, out, err, extras);
    EXPECT_TRUE(log.finish());
    return {status, out.str(), readText(dir.file("days.csv"))};
}

TEST(DayLog, EveryDayOfATickHasItsRow) {
    const LoggedRun run = runLogged("tick 2\ntick 0\nroad 48 48 street\ntick 1\n");
    EXPECT_EQ(run.out, "tick 2\ntick 2\nroad true 6 0\ntick 3\n");
    EXPECT_THAT(cityDays(run.csv), ElementsAre("1:1", "1:2", "1:3"));
}

TEST(DayLog, ARowHoldsTheFiguresOfStatsInTheirText) {
    const std::string script = readText(std::string(ORLAVANE_EXAMPLES) + "/demo.txt");
    const LoggedRun run = runLogged(script);
    std::string figures; // the answer of `stats` without names and brackets
    bool inName = false;
    for (const char c : run.out.substr(run.out.find("stats {") + 7)) {
        if (c == '}') break;
        if (c == '"') inName = !inName;
        if (!inName && c != '"' && c != ':' && c != '[' && c != ']') figures += c;
    }
    const std::vector<std::string> rows = split(run.csv, '\n');
    ASSERT_EQ(rows.size(), 61u);
    EXPECT_EQ(rows[60], "1," + figures);
    EXPECT_EQ(split(rows[0], ',').size(), split(rows[60], ',').size());
    EXPECT_THAT(rows[0], HasSubstr("city,day,money,lastIncome,"));
    EXPECT_THAT(rows[0], HasSubstr(",demand3,streetCells,avenueCells,workingBuildings0,"));
}

TEST(DayLog, CitiesAreCountedByThoseThatLivedADay) {
    const TempDir dir;
    const std::string save = dir.file("a");
    const LoggedRun run = runLogged("new 7\nnew 8\ntick 2\nsave " + save + "\nnew 9\ntick 1\nload " + save +
                                    "\ntick 1\nload " + dir.file("missing") + "\ntick 1\n");
    EXPECT_THAT(run.out, HasSubstr("load true\ntick 3\nload false\n"));
    EXPECT_THAT(cityDays(run.csv), ElementsAre("1:1", "1:2", "2:1", "3:3", "3:4"));
}

TEST(DayLog, ACityThatStandsStillHasNoDays) {
    const LoggedRun run = runLogged("money -1e6\ntick 30\n");
    EXPECT_EQ(run.out, "money -1000000\ntick 10\n");
    ASSERT_EQ(cityDays(run.csv).size(), 10u);
    EXPECT_EQ(cityDays(run.csv).back(), "1:10");
}

TEST(DayLog, OnlyAFinishedTableTakesThePlaceOfTheOldOne) {
    const TempDir dir;
    const std::string path = dir.file("days.csv");
    writeText(path, "old");
    {
        DayLog log;
        ASSERT_TRUE(log.open(path));
        ASSERT_TRUE(log.addDay(City()));
        EXPECT_EQ(readText(path), "old");
    }
    EXPECT_EQ(readText(path), "old");
    EXPECT_FALSE(std::filesystem::exists(path + ".part"));

    DayLog log;
    ASSERT_TRUE(log.open(path));
    EXPECT_TRUE(log.finish());
    EXPECT_EQ(readText(path), "city," + statsCsvNames() + "\n");
    EXPECT_FALSE(std::filesystem::exists(path + ".part"));
}

TEST(DayLog, SaysWhereNoTableCanBe) {
    const TempDir dir;
    EXPECT_FALSE(DayLog().open(dir.path.string()));
    EXPECT_FALSE(DayLog().open(dir.file("missing/days.csv")));
}

#ifdef __linux__
TEST(DayLog, AFullDiskEndsTheRunAndLeavesTheOldTable) {
    const TempDir dir;
    const std::string path = dir.file("days.csv");
    writeText(path, "old");
    std::filesystem::create_symlink("/dev/full", path + ".part");
    City city;
    DayLog log;
    ASSERT_TRUE(log.open(path));
    std::istringstream in("tick 1000000\ntick 1\n");
    std::ostringstream out;
    std::ostringstream err;
    const ScriptExtras extras{.dayLog = &log};
    EXPECT_EQ(runScript(city, "town.txt", in, out, err, extras), SCRIPT_OUTPUT_LOST);
    EXPECT_LT(city.day, 1000);
    EXPECT_EQ(out.str(), "tick " + std::to_string(city.day) + "\n");
    EXPECT_FALSE(log.finish());
    EXPECT_EQ(readText(path), "old");
}

TEST(DayLog, WhatIsNoOrdinaryFileIsWrittenDirectly) {
    DayLog log;
    ASSERT_TRUE(log.open("/dev/null"));
    EXPECT_TRUE(log.addDay(City()));
    EXPECT_TRUE(log.finish());
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
}
#endif
