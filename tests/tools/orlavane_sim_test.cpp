// The program itself, started as a player would start it.
#include "temp_dir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

#ifdef __linux__
#include <sys/wait.h>
#include <unistd.h>
#endif

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

TEST(OrlavaneSim, FillsAScriptAndLogsItsDays) {
    const TempDir dir;
    writeText(dir.file("town.txt"), "new {seed}\ntick {days}\n");
    const std::string csv = dir.file("days.csv");
    const ProgramRun run =
        runProgram("--set seed=7 --csv " + csv + " " + dir.file("town.txt") + " --progress --set days=3");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, "new 7\ntick 3\n");
    EXPECT_EQ(run.err, ""); // no terminal, no bar
    EXPECT_THAT(readText(csv), HasSubstr("\n1,3,"));

    const ProgramRun broken = runProgram("--set seed=7 --csv " + csv + " " + dir.file("town.txt"));
    EXPECT_EQ(broken.status, 2);
    EXPECT_EQ(broken.err, dir.file("town.txt") + ":2: '{days}' has no value\n");
    EXPECT_THAT(readText(csv), HasSubstr("\n1,3,")); // of the run that reached its end
}

TEST(OrlavaneSim, RefusesOptionsThatSayNothing) {
    const std::string usage = runProgram("--help").out;
    for (const char* arguments : {"--csv", "--set", "- --progress a"}) {
        const ProgramRun run = runProgram(arguments, "tick 1\n");
        EXPECT_EQ(run.status, 2) << arguments;
        EXPECT_EQ(run.out, "") << arguments;
        EXPECT_EQ(run.err, usage) << arguments;
    }
    EXPECT_EQ(runProgram("--set days", "tick 1\n").err,
              "--set days: is not NAME=VALUE, with a name of letters, digits and _\n");
    const ProgramRun nowhere = runProgram("--csv /nowhere/days.csv", "tick 1\n");
    EXPECT_EQ(nowhere.status, 1);
    EXPECT_EQ(nowhere.out, "");
    EXPECT_EQ(nowhere.err, "/nowhere/days.csv: cannot be opened\n");
}

#ifdef __linux__
TEST(OrlavaneSim, AFullDiskIsSaidSo) {
    const ProgramRun run = runProgram("--csv /dev/full", "tick 1\n");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err, "/dev/full: the table cannot be written; is the disk full?\n");
}

// The program at the other end of two pipes.
struct Dialogue {
    pid_t pid;
    FILE* toProgram;
    FILE* fromProgram;

    Dialogue() {
        int input[2];
        int output[2];
        EXPECT_EQ(pipe(input) | pipe(output), 0);
        pid = fork();
        if (pid == 0) {
            dup2(input[0], 0);
            dup2(output[1], 1);
            close(input[1]);
            close(output[0]);
            execl(ORLAVANE_SIM, ORLAVANE_SIM, "-", nullptr);
            _exit(127);
        }
        close(input[0]);
        close(output[1]);
        toProgram = fdopen(input[1], "w");
        fromProgram = fdopen(output[0], "r");
    }
    ~Dialogue() {
        fclose(toProgram);
        fclose(fromProgram);
        int status = 0;
        waitpid(pid, &status, 0);
        EXPECT_EQ(status, 0);
    }

    std::string ask(const std::string& line) {
        fputs((line + "\n").c_str(), toProgram);
        fflush(toProgram);
        char answer[4096] = "";
        return fgets(answer, sizeof answer, fromProgram) ? answer : "no answer";
    }
};

TEST(OrlavaneSim, AnswersEachLineOfADialogueBeforeTheNextIsAsked) {
    Dialogue dialogue;
    EXPECT_EQ(dialogue.ask("road 48 48 street"), "road true 6 0\n");
    EXPECT_EQ(dialogue.ask("tick 3"), "tick 3\n");
    EXPECT_EQ(dialogue.ask("keep 1"), "keep 1\n");
}

// The sanitizers' own memory is many times the limit.
#ifndef ORLAVANE_SANITIZED
// A city with a thousand buildings and more, from north to south.
static void buildLargeCity(Dialogue& dialogue) {
    dialogue.ask("money 1e9");
    for (int y = 1; y < 96; y += 3) {
        const std::string row = std::to_string(y);
        const std::string next = std::to_string(y + 1);
        dialogue.ask("line 0 " + row + " 95 " + row + " street");
        for (int x = y % 7; x < 96; x += 9) {
            dialogue.ask("build " + std::to_string(x) + " " + next + " 12");
            dialogue.ask("build " + std::to_string(x + 1) + " " + next + " 13");
        }
        dialogue.ask("zonerect 0 " + next + " 60 " + next + " residential");
        dialogue.ask("zonerect 61 " + next + " 95 " + next + " industrial");
    }
    EXPECT_EQ(dialogue.ask("tick 150"), "tick 150\n");
}

TEST(OrlavaneSim, ALargeCityStaysUnder12Megabytes) {
    const TempDir dir;
    Dialogue dialogue;
    buildLargeCity(dialogue);
    EXPECT_EQ(dialogue.ask("save " + dir.file("a")), "save true\n");
    EXPECT_EQ(dialogue.ask("load " + dir.file("a")), "load true\n");
    EXPECT_EQ(dialogue.ask("fields " + dir.file("b")), "fields true\n");

    EXPECT_GT(std::filesystem::file_size(dir.file("a")), 149431u + 1000 * 44);
    const std::string status = readText("/proc/" + std::to_string(dialogue.pid) + "/status");
    const size_t at = status.find("VmHWM:");
    ASSERT_NE(at, std::string::npos);
    EXPECT_LT(std::stoi(status.substr(at + 6)), 12 * 1024); // kB
}
#endif
#endif
