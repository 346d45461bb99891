#include "sim/city_helpers.h"
#include "sim/map_generation.h"
#include "sim/save_file.h"
#include "temp_dir.h"
#include "tools/script_run.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <streambuf>

using testing::HasSubstr;
using testing::StartsWith;

// What a script prints that has nothing wrong, on level land.
static std::string output(const std::string& text) {
    City city = flatCity();
    const ScriptRun run = runText(city, text);
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, "");
    return run.out;
}

TEST(CityScript, EveryCommandPrintsOneLineThatBeginsWithItsWord) {
    const TempDir dir;
    const std::string path = dir.file("out");
    const std::string lines[] = {"new 7",
                                 "road 48 48 street",
                                 "line 40 40 44 40 avenue",
                                 "zone 1 1 offices",
                                 "zonerect 1 1 2 2 none",
                                 "district 1 1 8",
                                 "districtrect 1 1 2 2 0",
                                 "build 50 50 8",
                                 "busstop 48 48",
                                 "bulldoze 48 48",
                                 "bulldozerect 1 1 2 2",
                                 "tax 0 1",
                                 "budget 7 -1",
                                 "districttax 1",
                                 "policy 1 4",
                                 "keep 1",
                                 "money 5",
                                 "tick 1",
                                 "save " + path,
                                 "load " + path,
                                 "fields " + path,
                                 "events",
                                 "stats"};
    City city;
    generateMap(city, 0);
    std::string usage = scriptUsage();
    for (const std::string& line : lines) {
        const ScriptRun run = runText(city, line);
        const std::string word = line.substr(0, line.find(' '));
        EXPECT_EQ(run.status, 0) << run.err;
        EXPECT_THAT(run.out, StartsWith(word + " "));
        EXPECT_EQ(run.out.find('\n'), run.out.size() - 1) << run.out;
        EXPECT_THAT(usage, HasSubstr("  " + word)); // the list of commands knows it
        usage.erase(usage.find("  " + word), 2);
    }
    EXPECT_EQ(usage.find("  "), std::string::npos) << "untested commands: " << usage;
}

TEST(CityScript, EmptyLinesAndCommentsPrintNothing) {
    EXPECT_EQ(output(""), "");
    EXPECT_EQ(output("\n\n \t\n# road 1 1 street\n   # x\n#"), "");
    EXPECT_EQ(output("keep 1 # stay\nkeep 0# go"), "keep 1\nkeep 0\n");
}

TEST(CityScript, WordsAreSeparatedByBlanksAndTabs) {
    EXPECT_EQ(output(" \tkeep \t 1\t \n"), "keep 1\n");
    EXPECT_EQ(output("keep 1"), "keep 1\n"); // the last line needs no end
}

TEST(CityScript, ACarriageReturnAtTheEndOfALineDoesNoHarm) {
    EXPECT_EQ(output("keep 1\r\n\r\n# x\r\nkeep 0 \r\nkeep 1 # y\r\nevents\r"),
              "keep 1\nkeep 0\nkeep 1\nevents 0\n");
}

TEST(CityScript, ACommentMayBeLongerThanAnyLine) {
    EXPECT_EQ(output("keep 1 #" + std::string(1000000, '#') + "\nkeep 0\n"), "keep 1\nkeep 0\n");
}

TEST(CityScript, NewMakesTheLandOfASeed) {
    City city;
    EXPECT_EQ(runText(city, "new 4294967295").out, "new 4294967295\n");
    EXPECT_EQ(city.seed, 4294967295u);
    City same;
    generateMap(same, 4294967295u);
    EXPECT_EQ(cityHashes(city).land, cityHashes(same).land);
}

TEST(CityScript, ToolsAnswerWithTheStatusTheyLeave) {
    EXPECT_EQ(output("road 3 4 street\nroad 3 4 street\nroad 3 4 avenue\nroad -1 4 street\n"),
              "road true 6 0\nroad false 16 0\nroad true 5 0\nroad false 3 0\n");
    EXPECT_EQ(output("build 3 5 4\nbuild 3 5 4\nbuild 9 9 0\nbuild 96 0 13\n"),
              "build true 21 4\nbuild false 15 0\nbuild false 19 0\nbuild false 12 0\n");
    EXPECT_EQ(output("busstop 3 4\nroad 3 4 street\nbusstop 3 4\nbusstop 3 4\n"),
              "busstop false 17 0\nroad true 6 0\nbusstop true 18 0\nbusstop false 18 0\n");
    EXPECT_EQ(output("road 3 4 street\nbulldoze 3 4\nbulldoze 3 4\nbulldoze -5 4\n"),
              "road true 6 0\nbulldoze true 23 0\nbulldoze false 19 0\nbulldoze false 19 0\n");
}

TEST(CityScript, ALineCountsTheCellsItLays) {
    City city = flatCity();
    EXPECT_EQ(runText(city, "line 10 10 14 12 street\n").out, "line 5\n");
    for (int x = 10; x <= 14; x++) EXPECT_EQ(city.cells[cellIndex(x, 5 + x / 2)].road, ROAD_STREET) << x;
    EXPECT_EQ(runText(city, "line 14 12 16 12 street\n").out, "line 2\n"); // its first cell is laid already
    EXPECT_EQ(runText(city, "line -3 50 2 50 avenue\n").out, "line 3\n");  // the part on the map
}

TEST(CityScript, ZonesAndDistrictsSayWhetherTheCellChanged) {
    EXPECT_EQ(output("zone 3 4 residential\nzone 3 4 residential\nzone 3 4 none\nzone 96 4 offices\n"),
              "zone true\nzone false\nzone true\nzone false\n");
    EXPECT_EQ(output("district 3 4 8\ndistrict 3 4 8\ndistrict 3 4 0\ndistrict -1 4 1\n"),
              "district true\ndistrict false\ndistrict true\ndistrict false\n");
}

TEST(CityScript, ARectangleTakesItsCornersInAnyOrder) {
    for (const char* corners : {"10 20 13 22", "13 20 10 22", "10 22 13 20", "13 22 10 20"}) {
        City city = flatCity();
        EXPECT_EQ(runText(city, "zonerect " + std::string(corners) + " commercial").out, "zonerect 12\n");
        for (int y = 20; y <= 22; y++)
            for (int x = 10; x <= 13; x++) EXPECT_EQ(city.cells[cellIndex(x, y)].zone, ZONE_COMMERCIAL);
    }
}

TEST(CityScript, ARectangleWorksOnItsPartOfTheMap) {
    EXPECT_EQ(output("zonerect -2147483648 -2147483648 2147483647 2147483647 offices"), "zonerect 9216\n");
    EXPECT_EQ(output("districtrect 90 90 100 100 3"), "districtrect 36\n");
    EXPECT_EQ(output("zonerect -5 -5 -1 -1 offices\ndistrictrect 96 0 200 9 1\nbulldozerect 0 96 9 99"),
              "zonerect 0\ndistrictrect 0\nbulldozerect 0\n");
}

TEST(CityScript, ARectangleRunsRowByRowAndLeavesTheLastStatus) {
    City city = flatCity();
    EXPECT_EQ(runText(city, "road 5 5 street\nzone 6 5 offices\nbulldozerect 5 5 6 6").out,
              "road true 6 0\nzone true\nbulldozerect 2\n");
    EXPECT_EQ(city.statusId, STATUS_NOTHING_HERE); // (6, 6) came last
    runText(city, "zone 6 6 offices\nbulldozerect 5 5 6 6");
    EXPECT_EQ(city.statusId, STATUS_ZONE_REMOVED);
    runText(city, "bulldozerect 200 200 300 300\nzonerect 0 0 3 3 offices");
    EXPECT_EQ(city.statusId, STATUS_ZONE_REMOVED);
}

TEST(CityScript, RatesAnswerWithTheirWholeRow) {
    EXPECT_EQ(output("tax 2 -3\ntax 9 1\ntax -1 1"),
              "tax 100 100 70 100\ntax 100 100 70 100\ntax 100 100 70 100\n");
    EXPECT_EQ(output("budget 7 50"), "budget 100 100 100 100 100 100 100 150\n");
    EXPECT_EQ(output("districttax 8\ndistricttax 0"),
              "districttax 1 1 1 1 1 1 1 1 2\ndistricttax 1 1 1 1 1 1 1 1 2\n");
    EXPECT_EQ(output("policy 1 4\npolicy 1 1\npolicy 9 2"),
              "policy 0 4 0 0 0 0 0 0 0\npolicy 0 5 0 0 0 0 0 0 0\npolicy 0 5 0 0 0 0 0 0 0\n");
}

TEST(CityScript, MoneyIsPrintedWithAllItsDigits) {
    EXPECT_EQ(output("money 79.99\nmoney 1e6\nmoney -0.5\nmoney 5e-324\nmoney 1.7976931348623157e308"),
              "money 79.989999999999995\nmoney 1000000\nmoney -0.5\nmoney 4.9406564584124654e-324\n"
              "money 1.7976931348623157e+308\n");
}

TEST(CityScript, TickAnswersWithTheDay) {
    EXPECT_EQ(output("tick 0\ntick 3\ntick 2"), "tick 0\ntick 3\ntick 5\n");
}

TEST(CityScript, KeepLetsAFinishedCityGoOn) {
    City city = flatCity();
    city.allMissionsDone = 1;
    city.missionIndex = 6;
    EXPECT_EQ(runText(city, "tick 3\nkeep 1\ntick 3\nkeep 0\ntick 3").out,
              "tick 0\nkeep 1\ntick 3\nkeep 0\ntick 3\n");
}

TEST(CityScript, SavesAndLoads) {
    const TempDir dir;
    const std::string path = dir.file("a.ovw");
    City city = flatCity();
    EXPECT_EQ(runText(city, "money 77\nsave " + path + "\nmoney 5\nload " + path).out,
              "money 77\nsave true\nmoney 5\nload true\n");
    EXPECT_EQ(city.money, 77.0);
    const uint64_t hash = cityHash(city);
    EXPECT_EQ(runText(city, "load " + dir.file("missing") + "\nsave " + dir.path.string() + "\nkeep 0").out,
              "load false\nsave false\nkeep 0\n"); // a false answer is no error
    EXPECT_EQ(cityHash(city), hash);
}

TEST(CityScript, EventsComeNewestFirstBehindTheirCount) {
    City city = flatCity();
    for (uint32_t i = 1; i <= 8; i++) postEvent(city, STATUS_FINISHED, i);
    EXPECT_EQ(runText(city, "events").out, "events 8 28:8 28:7 28:6 28:5 28:4 28:3\n");
    EXPECT_EQ(output("events"), "events 0\n");
}

struct BadLine {
    const char* line;
    const char* message;
};

constexpr BadLine BAD_LINES[] = {
    {"raod 1 2 street", "unknown command 'raod'"},
    {"Road 1 2 street", "unknown command 'Road'"},
    {"roads 1 2 street", "unknown command 'roads'"},
    {"\x1b[2J\x07 1", "unknown command '?[2J?'"},
    {"keep\v1", "unknown command 'keep?1'"},
    {"keep 1\rkeep 0", "wrong number of words for: keep FLAG"},
    {"road 1 2", "wrong number of words for: road X Y TYPE"},
    {"road 1 2 street 4", "wrong number of words for: road X Y TYPE"},
    {"line 1 2 3 4", "wrong number of words for: line X0 Y0 X1 Y1 TYPE"},
    {"stats now", "wrong number of words for: stats"},
    {"save", "wrong number of words for: save PATH"},
    {"save a b", "wrong number of words for: save PATH"},
    {"road one 2 street", "'one' cannot be X of: road X Y TYPE"},
    {"road 1 2.0 street", "'2.0' cannot be Y of: road X Y TYPE"},
    {"road 1 0x2 street", "'0x2' cannot be Y of: road X Y TYPE"},
    {"road 1 +2 street", "'+2' cannot be Y of: road X Y TYPE"},
    {"road 1 - street", "'-' cannot be Y of: road X Y TYPE"},
    {"road 1 2e0 street", "'2e0' cannot be Y of: road X Y TYPE"},
    {"road 2147483648 2 street", "'2147483648' cannot be X of: road X Y TYPE"},
    {"road -2147483649 2 street", "'-2147483649' cannot be X of: road X Y TYPE"},
    {"road 99999999999999999999 2 street", "'99999999999999999999' cannot be X of: road X Y TYPE"},
    {"road 1 2 rail", "'rail' cannot be TYPE of: road X Y TYPE"},
    {"road 1 2 Street", "'Street' cannot be TYPE of: road X Y TYPE"},
    {"road 1 2 1", "'1' cannot be TYPE of: road X Y TYPE"},
    {"zone 1 2 park", "'park' cannot be ZONE of: zone X Y ZONE"},
    {"zonerect 1 2 3 4 5", "'5' cannot be ZONE of: zonerect X0 Y0 X1 Y1 ZONE"},
    {"district 1 2 9", "'9' cannot be N of: district X Y N"},
    {"districtrect 1 2 3 4 -1", "'-1' cannot be N of: districtrect X0 Y0 X1 Y1 N"},
    {"build 1 2 14", "'14' cannot be KIND of: build X Y KIND"},
    {"build 1 2 -1", "'-1' cannot be KIND of: build X Y KIND"},
    {"policy 1 0", "'0' cannot be BIT of: policy D BIT"},
    {"policy 1 3", "'3' cannot be BIT of: policy D BIT"},
    {"policy 1 5", "'5' cannot be BIT of: policy D BIT"},
    {"keep 2", "'2' cannot be FLAG of: keep FLAG"},
    {"keep -1", "'-1' cannot be FLAG of: keep FLAG"},
    {"new -1", "'-1' cannot be SEED of: new SEED"},
    {"new 4294967296", "'4294967296' cannot be SEED of: new SEED"},
    {"tick -1", "'-1' cannot be DAYS of: tick DAYS"},
    {"tick 2147483648", "'2147483648' cannot be DAYS of: tick DAYS"},
    {"money nan", "'nan' cannot be AMOUNT of: money AMOUNT"},
    {"money inf", "'inf' cannot be AMOUNT of: money AMOUNT"},
    {"money -infinity", "'-infinity' cannot be AMOUNT of: money AMOUNT"},
    {"money 1e309", "'1e309' cannot be AMOUNT of: money AMOUNT"},
    {"money 1e", "'1e' cannot be AMOUNT of: money AMOUNT"},
    {"money 1,5", "'1,5' cannot be AMOUNT of: money AMOUNT"},
    {"money 0x10", "'0x10' cannot be AMOUNT of: money AMOUNT"},
};

TEST(CityScript, ALineThatIsNoCommandStopsTheRunWithItsReason) {
    for (const BadLine& bad : BAD_LINES) {
        City city = flatCity();
        const uint64_t hash = cityHash(city);
        const ScriptRun run = runText(city, "# first\nevents\n" + std::string(bad.line) + "\nkeep 1\n");
        EXPECT_EQ(run.status, 2);
        EXPECT_EQ(run.out, "events 0\n"); // what ran before is printed, what follows does not run
        EXPECT_EQ(run.err, "town.txt:3: " + std::string(bad.message) + "\n");
        EXPECT_EQ(cityHash(city), hash) << bad.line;
    }
}

TEST(CityScript, NumbersAtTheEndsOfTheirRangeAreTaken) {
    EXPECT_EQ(
        output("road -2147483648 2147483647 street\nroad -0 0 street\nnew 0\npolicy -5 2\nkeep 01\ntick 00"),
        "road false 3 0\nroad true 6 0\nnew 0\npolicy 0 0 0 0 0 0 0 0 0\nkeep 1\ntick 0\n");
}

TEST(CityScript, ALineThatIsTooLongIsRefused) {
    City city = flatCity();
    const ScriptRun run = runText(city, "\nsave " + std::string(100000, 'x') + "\n");
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.err, "town.txt:2: the line is too long\n");
}

TEST(CityScript, ALongWordIsCutInTheMessage) {
    City city = flatCity();
    EXPECT_EQ(runText(city, std::string(60, 'x')).err,
              "town.txt:1: unknown command '" + std::string(40, 'x') + "...'\n");
}

TEST(CityScript, AZeroByteIsALetterLikeOthers) {
    City city = flatCity();
    EXPECT_EQ(runText(city, std::string("keep 1\nkeep\0 1\n", 15)).err,
              "town.txt:2: unknown command 'keep?'\n");
}

// An input that fails the test if it has to wait while answers are held back.
struct Conversation : std::streambuf {
    std::ostringstream& out;
    std::vector<std::string> lines;
    size_t next = 0;
    std::vector<size_t> seen; // answered bytes that had reached the other side before each line

    Conversation(std::ostringstream& o, std::vector<std::string> l) : out(o), lines(std::move(l)) {}
    int underflow() override {
        if (next == lines.size()) return traits_type::eof();
        seen.push_back(out.str().size());
        std::string& line = lines[next++];
        setg(line.data(), line.data(), line.data() + line.size());
        return traits_type::to_int_type(line[0]);
    }
};

TEST(CityScript, AnswersBeforeItWaitsForTheNextLine) {
    std::ostringstream out;
    std::ostringstream err;
    Conversation conversation(out, {"keep 1\n", "keep 0\n", "events\n"});
    std::istream in(&conversation);
    City city = flatCity();
    EXPECT_EQ(runScript(city, "x", in, out, err), 0);
    EXPECT_EQ(conversation.seen, (std::vector<size_t>{0, 7, 14}));
}

TEST(CityScript, OutputThatCannotBeWrittenIsNoticed) {
    City city = flatCity();
    std::istringstream in("keep 1\n");
    std::ostringstream err;
    std::ostream out(nullptr);
    EXPECT_EQ(runScript(city, "x", in, out, err), SCRIPT_OUTPUT_LOST);
    EXPECT_EQ(err.str(), "x: the output cannot be written\n");
}

TEST(CityScript, ALineIsCheckedWithoutBeingRun) {
    const TempDir dir;
    std::string checked;
    for (const std::string& line :
         {"save " + dir.file("city"), std::string("tick 1"), std::string("  # no words")})
        EXPECT_TRUE(checkScriptLine(line, checked)) << line;
    EXPECT_FALSE(std::filesystem::exists(dir.file("city")));

    City city = flatCity();
    for (const char* line : {"fly", "tick", "tick x", "tick -1", "new 4294967296", "build 1 1 14"}) {
        std::string run;
        EXPECT_FALSE(runScriptLine(city, line, run));
        EXPECT_FALSE(checkScriptLine(line, checked));
        EXPECT_EQ(checked, run);
    }
}
