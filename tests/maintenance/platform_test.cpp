// What the system does for the game: temporary files, and programs that outlive it.
#include "maintenance/platform.h"

#include "environment.h"
#include "maintenance/files.h"
#include "maintenance/ordinary_user.h"
#include "temp_dir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <chrono>
#include <functional>
#include <thread>

#include <dlfcn.h>
#include <fcntl.h>
#include <malloc.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;
using testing::HasSubstr;

static bool noProgramStarts = false;

// Found before the system's own, which it hands on to.
extern "C" int posix_spawnp(pid_t* child, const char* file, const posix_spawn_file_actions_t* actions,
                            const posix_spawnattr_t* attributes, char* const arguments[],
                            char* const environment[]) {
    if (noProgramStarts) return EAGAIN;
    static const auto original = reinterpret_cast<decltype(&posix_spawnp)>(dlsym(RTLD_NEXT, "posix_spawnp"));
    return original(child, file, actions, attributes, arguments, environment);
}

// Waits for a program that has been started to write it.
static std::string textOnceWritten(const std::string& path) {
    for (int i = 0; i < 1000 && !fileExists(path); i++)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    return readText(path);
}

class Platform : public testing::Test {
protected:
    // A program that runs `commands` and then writes the file "done".
    std::string program(const std::string& name, const std::string& commands) {
        writeText(dir.file(name),
                  "#!/bin/sh\ncd " + dir.path.string() + "\n{ " + commands + "\n} >new\nmv new done\n");
        return dir.file(name);
    }
    std::string written() { return textOnceWritten(dir.file("done")); }

    TempDir dir;
};

// --- Temporary files

class TemporaryFiles : public testing::Test {
protected:
    TemporaryFiles() {
        fs::permissions(dir.path, fs::perms(01777));
        setVariable("TMPDIR", dir.path.string());
    }
    ~TemporaryFiles() override {
        if (before.empty())
            unsetVariable("TMPDIR");
        else
            setVariable("TMPDIR", before);
    }

    static bool isOwn(const fs::path& folder) {
        struct stat status;
        return lstat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
               (status.st_mode & 07777) == 0700 && status.st_uid == geteuid();
    }
    // What the game makes of its folder's name when `leftover` has taken it.
    void expectAWayAround(const std::function<void(const std::string& name)>& leftover) {
        const std::string usual = fs::path(temporaryPath("a")).parent_path();
        fs::remove(usual);
        leftover(usual);
        const fs::path path = temporaryPath("a");
        EXPECT_NE(path.parent_path(), usual);
        EXPECT_EQ(path.parent_path().parent_path(), dir.path);
        EXPECT_TRUE(isOwn(path.parent_path()));
        EXPECT_TRUE(fs::exists(fs::symlink_status(usual)));
        fs::remove_all(usual);
    }

    TempDir dir;
    std::string before = variable("TMPDIR");
};

TEST_F(TemporaryFiles, LieInAFolderOfThePlayersOwn) {
    const fs::path path = temporaryPath("a");
    EXPECT_EQ(path.filename(), "a");
    EXPECT_EQ(path.parent_path().parent_path(), dir.path);
    EXPECT_TRUE(isOwn(path.parent_path()));
    EXPECT_EQ(fs::path(temporaryPath("b")).parent_path(), path.parent_path());
}

TEST_F(TemporaryFiles, EachPlayerHasAnotherFolder) {
    const fs::path ours = temporaryPath("a");
    const OrdinaryUser user; // who may neither read nor write in ours
    const fs::path theirs = temporaryPath("a");
    EXPECT_TRUE(isOwn(theirs.parent_path()));
    EXPECT_EQ(ours == theirs, getuid() == geteuid());
}

TEST_F(TemporaryFiles, LeftoversOfOthersAreNoHindrance) {
    expectAWayAround([](const std::string& name) { writeText(name, "a file"); });
    expectAWayAround([](const std::string& name) { fs::create_symlink("/nonexistent", name); });
    expectAWayAround([&](const std::string& name) { // even to a folder that would do
        const fs::path target = dir.path / "target";
        ASSERT_EQ(mkdir(target.c_str(), 0700), 0);
        fs::create_symlink(target, name);
    });
    expectAWayAround([](const std::string& name) { // where others may write
        fs::create_directory(name);
        fs::permissions(name, fs::perms(0777));
    });
    if (geteuid() != 0) return;
    expectAWayAround([](const std::string& name) { // of somebody else
        ASSERT_EQ(mkdir(name.c_str(), 0700), 0);
        ASSERT_EQ(chown(name.c_str(), 65534, 65534), 0);
    });
}

TEST_F(TemporaryFiles, HaveNoPlaceWhereNoFolderCanBeMade) {
    setVariable("TMPDIR", dir.file("missing"));
    EXPECT_EQ(temporaryPath("a"), "");
}

TEST_F(TemporaryFiles, WithoutAVariableLieWhereTheSystemHasThem) {
    for (const bool set : {true, false}) {
        set ? setVariable("TMPDIR", "") : unsetVariable("TMPDIR");
        const fs::path folder = fs::path(temporaryPath("a")).parent_path();
        EXPECT_EQ(folder.parent_path(), "/tmp");
        EXPECT_TRUE(isOwn(folder));
        std::error_code inUse; // by a game of this machine
        fs::remove(folder, inUse);
    }
}

// --- Programs

TEST_F(Platform, AFileThatWasFetchedIsMadeExecutableAndStarted) {
    const std::string path = program("setup", "echo started");
    ASSERT_EQ(fs::status(path).permissions() & fs::perms(0111), fs::perms::none);
    EXPECT_TRUE(shellOpen(path, false));
    EXPECT_EQ(written(), "started\n");
}

TEST_F(Platform, NoShellReadsTheName) {
    const std::string path = program("a b'\"$(touch bad)\n; touch bad;", "echo started");
    EXPECT_TRUE(shellOpen(path, false));
    EXPECT_EQ(written(), "started\n");
    EXPECT_FALSE(fileExists(dir.file("bad")));
    EXPECT_FALSE(fileExists("bad"));
}

TEST_F(Platform, WhatIsNoProgramIsNotStarted) {
    writeText(dir.file("text"), "touch " + dir.file("bad"));
    EXPECT_FALSE(shellOpen(dir.file("text"), false));
    EXPECT_FALSE(shellOpen(dir.file("missing"), false));
    EXPECT_FALSE(shellOpen("", false));
    EXPECT_FALSE(shellOpen("/dev/null", false));
    EXPECT_FALSE(fileExists(dir.file("bad")));
}

TEST_F(Platform, AStartedProgramIsInASessionOfItsOwnWithoutOurFiles) {
    std::FILE* ours = std::fopen(dir.file("ours").c_str(), "w");
    ASSERT_TRUE(shellOpen(program("p", "cut -d' ' -f6 /proc/self/stat; echo; ls -l /proc/$$/fd"), true));
    const std::string text = written();
    std::fclose(ours);
    EXPECT_NE(std::stol(text), getsid(0));
    EXPECT_EQ(text.find("ours"), std::string::npos) << text;
    EXPECT_THAT(text, HasSubstr("/dev/null"));
}

// Stands in for the streams that a program inherits.
struct OurStreams {
    int before[3];

    explicit OurStreams(const std::string& path) {
        const int file = open(path.c_str(), O_RDWR | O_CREAT, 0600);
        for (int i = 0; i < 3; i++) {
            before[i] = dup(i);
            dup2(file, i);
        }
        close(file);
    }
    ~OurStreams() {
        for (int i = 0; i < 3; i++) {
            dup2(before[i], i);
            close(before[i]);
        }
    }
    OurStreams(const OurStreams&) = delete;
    OurStreams& operator=(const OurStreams&) = delete;
};

TEST_F(Platform, OnlyAHiddenProgramIsWithoutOutputAndNoneHasOurInput) {
    writeText(dir.file("p"), "#!/bin/sh\ncd " + dir.path.string() +
                                 "\ntext=$(readlink /proc/$$/fd/0 /proc/$$/fd/1 /proc/$$/fd/2)\n"
                                 "echo \"$text\" >new\nmv new done\n");
    for (const bool hidden : {true, false}) {
        fs::remove(dir.file("done"));
        {
            const OurStreams streams(dir.file("ours"));
            shellOpen(dir.file("p"), hidden);
        }
        const std::string output = hidden ? "/dev/null\n" : dir.file("ours") + "\n";
        EXPECT_EQ(written(), "/dev/null\n" + output + output);
    }
}

TEST_F(Platform, AProgramThatCannotStartLeavesNothingInMemory) {
    const std::string path = program("p", "echo");
    noProgramStarts = true;
    EXPECT_FALSE(shellOpen(path, true));
    const size_t before = mallinfo2().uordblks;
    for (int i = 0; i < 200; i++) EXPECT_FALSE(shellOpen(path, true));
    EXPECT_LT(mallinfo2().uordblks, before + 20000);
    noProgramStarts = false;
}

TEST_F(Platform, AProgramThatHasEndedLeavesNothingBehind) {
    ASSERT_TRUE(shellOpen(program("p", "echo"), false));
    written();
    for (int i = 0; waitpid(-1, nullptr, WNOHANG | WNOWAIT) != -1; i++) {
        ASSERT_LT(i, 1000) << "nobody has waited for the child";
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
}

TEST_F(Platform, AFolderIsShownByTheDesktopsOwnBrowser) {
    const std::string browser = program("xdg-open", "printf '%s' \"$1\"");
    fs::permissions(browser, fs::perms(0755));
    const std::string before = getenv("PATH");
    setenv("PATH", (dir.path.string() + ":" + before).c_str(), 1);
    fs::create_directory(dir.path / "game 'folder'\n$HOME");
    EXPECT_TRUE(shellOpen(dir.file("game 'folder'\n$HOME") + "/", false));
    EXPECT_EQ(written(), dir.file("game 'folder'\n$HOME") + "/");
    setenv("PATH", "/nowhere", 1);
    EXPECT_FALSE(shellOpen(dir.path.string(), false));
    setenv("PATH", before.c_str(), 1);
}

// --- Removal

TEST_F(TemporaryFiles, ARemovalThatCannotStartLeavesTheGameAndNoScript) {
    fs::create_directory(dir.path / "Orlavane");
    writeText(dir.file("Orlavane/music1.mp3"), "la");
    noProgramStarts = true;
    EXPECT_FALSE(startRemoval(dir.file("Orlavane/")));
    noProgramStarts = false;
    EXPECT_TRUE(fs::is_empty(fs::path(temporaryPath("a")).parent_path()));
    EXPECT_EQ(readText(dir.file("Orlavane/music1.mp3")), "la");
}

// --- New files

TEST_F(Platform, ANewFileTakesThePlaceOfAnEarlierOneAndOfNothingElse) {
    writeText(dir.file("mine"), "precious");
    fs::create_symlink("mine", dir.path / "link");
    std::FILE* file = createFile(dir.file("link"));
    ASSERT_TRUE(file);
    std::fputs("new", file);
    std::fclose(file);
    EXPECT_EQ(readText(dir.file("mine")), "precious");
    EXPECT_EQ(readText(dir.file("link")), "new");
    EXPECT_FALSE(createFile(dir.path.string()));
    EXPECT_FALSE(createFile("/dev/null"));
}
