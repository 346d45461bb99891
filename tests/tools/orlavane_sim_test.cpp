// The program itself, started as a player would start it.
#include "temp_dir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

using testing::HasSubstr;
using testing::StartsWith;

struct ProgramRun {
    int status;
    std::string out;
    std::string err;
};

static ProgramRun runProgram(const std::string& arguments, const std::string& input = "") {
    const TempDir dir;
    writeText(dir.file("in"), input);
    const std::string command = std::string(ORLAVANE_SIM) + " " + arguments + " < " + dir.file("in") + " > " +
                                dir.file("out") + " 2> " + dir.file("err");
    const int status = std::system(command.c_str());
#ifdef _WIN32
    const int exitStatus = status;
#else
    const int exitStatus = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
#endif
    return {exitStatus, readText(dir.file("out")), readText(dir.file("err"))};
}

TEST(OrlavaneSim, RunsTheScriptInAFile) {
    const TempDir dir;
    writeText(dir.file("town.txt"), "# a road\r\nroad 48 48 street\r\ntick 2\r\n");
    const ProgramRun run = runProgram(dir.file("town.txt"));
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, "road true 6 0\ntick 2\n");
    EXPECT_EQ(run.err, "");
}

TEST(OrlavaneSim, RunsTheScriptOnStandardInput) {
    for (const char* arguments : {"", "-"}) {
        const ProgramRun run = runProgram(arguments, "tick 1\n");
        EXPECT_EQ(run.status, 0);
        EXPECT_EQ(run.out, "tick 1\n");
    }
}

TEST(OrlavaneSim, BeginsOnTheLandOfSeed0) {
    const TempDir dir;
    const std::string save = "save " + dir.file("a") + "\nevents\nnew 0\nsave " + dir.file("b") + "\n";
    const ProgramRun run = runProgram("-", save);
    EXPECT_EQ(run.out, "save true\nevents 1 1:0\nnew 0\nsave true\n");
    EXPECT_TRUE(readText(dir.file("a")) == readText(dir.file("b")));
}

TEST(OrlavaneSim, ABadLineEndsWithItsPlaceAndStatus2) {
    const TempDir dir;
    writeText(dir.file("town.txt"), "tick 1\nfly\ntick 1\n");
    const ProgramRun run = runProgram(dir.file("town.txt"));
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.out, "tick 1\n");
    EXPECT_EQ(run.err, dir.file("town.txt") + ":2: unknown command 'fly'\n");
    EXPECT_EQ(runProgram("-", "fly\n").err, "stdin:1: unknown command 'fly'\n");
}

TEST(OrlavaneSim, AFileThatCannotBeReadIsSaidSo) {
    const TempDir dir;
    const ProgramRun missing = runProgram(dir.file("missing.txt"));
    EXPECT_EQ(missing.status, 2);
    EXPECT_EQ(missing.err, dir.file("missing.txt") + ": cannot be opened\n");
    const ProgramRun folder = runProgram(dir.path.string());
    EXPECT_EQ(folder.status, 2);
    EXPECT_THAT(folder.err, StartsWith(dir.path.string() + ": cannot be "));
}

TEST(OrlavaneSim, ExplainsItself) {
    const ProgramRun help = runProgram("--help");
    EXPECT_EQ(help.status, 0);
    EXPECT_THAT(help.out, HasSubstr("usage: orlavane-sim [FILE]"));
    EXPECT_THAT(help.out, HasSubstr("  zonerect X0 Y0 X1 Y1 ZONE\n"));
    const ProgramRun tooMany = runProgram("a b");
    EXPECT_EQ(tooMany.status, 2);
    EXPECT_EQ(tooMany.out, "");
    EXPECT_EQ(tooMany.err, help.out);
}
