// The scripts of examples/ keep the promises of their comments.
#include "sim/city_stats.h"
#include "sim/map_generation.h"
#include "temp_dir.h"
#include "tools/script_run.h"

#include <gtest/gtest.h>

#include <set>

// One line of `stats`, with its figures by name.
struct Figures {
    std::string json;

    double operator[](const std::string& key) const {
        const size_t at = json.find("\"" + key + "\":");
        EXPECT_NE(at, std::string::npos) << key;
        return std::stod(json.substr(at + key.size() + 3));
    }
};

struct Example {
    City city;
    ScriptRun run;
    std::vector<Figures> stats;
};

static Example runExample(const std::string& name) {
    Example example;
    generateMap(example.city, 0);
    const std::string text = readText(std::string(ORLAVANE_EXAMPLES) + "/" + name);
    EXPECT_NE(text, "");
    example.run = runText(example.city, text);
    EXPECT_EQ(example.run.status, 0) << example.run.err;
    std::istringstream lines(example.run.out);
    for (std::string line; std::getline(lines, line);)
        if (line.starts_with("stats ")) example.stats.push_back({line});
    return example;
}

TEST(Examples, EveryScriptHasItsTest) {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(ORLAVANE_EXAMPLES))
        names.insert(entry.path().filename().string());
    EXPECT_EQ(names, (std::set<std::string>{"bankruptcy.txt", "demo.txt", "lakeside.txt", "metropolis.txt"}));
}

TEST(Examples, TheDemoCityLivesAfterSixtyDays) {
    const Example demo = runExample("demo.txt");
    ASSERT_EQ(demo.stats.size(), 1u);
    const Figures& end = demo.stats[0];
    EXPECT_EQ(end["day"], 60);
    EXPECT_EQ(end["population"], 267);
    EXPECT_EQ(end["missionIndex"], 2);
    EXPECT_GT(end["lastExpense"], end["lastIncome"]);
    const CityStats stats = computeStats(demo.city);
    EXPECT_GT(stats.workingBuildings[KIND_SHOPS], 0);
    EXPECT_GT(stats.workingBuildings[KIND_FACTORY], 0);
    EXPECT_EQ(stats.workingBuildings[KIND_HOSPITAL], 0);
    EXPECT_NE(demo.run.out.find("build false 11 0"), std::string::npos);
}

TEST(Examples, ABankruptcyTakesTenDaysInARowAndIsForGood) {
    const Example run = runExample("bankruptcy.txt");
    ASSERT_EQ(run.stats.size(), 6u);
    const struct {
        int day;
        bool inDebt;
        bool bankrupt;
    } expected[] = {{27, false, false}, {36, true, false}, {37, false, false},
                    {46, true, false},  {47, true, true},  {47, false, true}};
    for (size_t i = 0; i < 6; i++) {
        EXPECT_EQ(run.stats[i]["day"], expected[i].day);
        EXPECT_EQ(run.stats[i]["money"] < 0.0, expected[i].inDebt) << i;
        EXPECT_EQ(run.stats[i]["bankrupt"], expected[i].bankrupt) << i;
    }
    EXPECT_EQ(run.stats[0]["lastExpense"], 371.00000000000023);
}

// How it gets there, day by day, is a test of the simulation.
TEST(Examples, TheMetropolisNeedsNoGiftAndLivesOnAfterItsMissions) {
    const Example metropolis = runExample("metropolis.txt");
    EXPECT_EQ(metropolis.run.out.find("\nmoney"), std::string::npos);
    ASSERT_EQ(metropolis.stats.size(), 7u);
    const Figures& won = metropolis.stats[5];
    const Figures& later = metropolis.stats[6];
    EXPECT_EQ(won["allMissionsDone"], 1);
    EXPECT_GE(won["population"], 5000);
    EXPECT_LT(won["day"], 365 / 2);
    EXPECT_EQ(later["day"], won["day"] + 100);
    EXPECT_GE(later["population"], won["population"]);
}

TEST(Examples, TheCityByTheLakeGrowsUpWithoutARefusal) {
    const Example lakeside = runExample("lakeside.txt");
    EXPECT_EQ(lakeside.run.out.find("false"), std::string::npos);
    ASSERT_EQ(lakeside.stats.size(), 1u);
    EXPECT_GT(lakeside.stats[0]["population"], 5000);
    EXPECT_GT(lakeside.stats[0]["workingParks"], 20);
    int towers = 0;
    for (const Building& building : lakeside.city.buildings)
        towers += building.kind == KIND_OFFICE_TOWER && building.level == 3;
    EXPECT_GE(towers, 10);
}
