#include "app/upkeep.h"

#include "maintenance/files.h"
#include "maintenance/full_disk.h"
#include "maintenance/ordinary_user.h"
#include "maintenance/platform.h"
#include "temp_dir.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <thread>

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;

class Uninstall : public testing::Test {
protected:
    Uninstall() {
        for (const char* folder : {"temporary", "home/Desktop", "home/.local/share/applications"})
            fs::create_directories(dir.path / folder);
        setenv("TMPDIR", dir.file("temporary").c_str(), 1);
        setenv("HOME", dir.file("home").c_str(), 1);
        unsetenv("XDG_DATA_HOME");
    }
    ~Uninstall() override { unsetenv("TMPDIR"); }

    // The game in a folder of that name, with some files in it.
    void install(const std::string& folder, const std::string& program = "Orlavane") {
        app.exeDir = dir.file(folder) + "/";
        app.exePath = app.exeDir + "Orlavane";
        fs::create_directories(app.exeDir + "music");
        fs::copy_file("/bin/sleep", app.exeDir + program);
        writeText(app.exeDir + "music/music1.mp3", "la");
        writeText(app.exeDir + ".hidden", "");
    }

    void makeScripts() {
        fs::create_directory(scripts);
        fs::permissions(scripts, fs::perms(0700));
    }

    void expectNothingHappened() {
        EXPECT_FALSE(app.quitRequested);
        EXPECT_FALSE(fileExists(script));
        EXPECT_TRUE(fileExists(app.exeDir + "music/music1.mp3"));
    }

    bool goneSoon(const std::string& path) {
        for (int i = 0; i < 1000 && fileExists(path); i++)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        return !fileExists(path);
    }
    bool finishedSoon() { return goneSoon(scripts); }

    TempDir dir;
    std::string scripts = dir.file("temporary/orlavane-" + std::to_string(geteuid())); // a folder
    std::string script = scripts + "/orlavane-uninstall.sh";
    App app;
};

TEST_F(Uninstall, RemovesFolderAndShortcutsWhileTheProgramStillRuns) {
    install("games/Orlavane");
    const std::string desktop = dir.file("home/Desktop/orlavane.desktop");
    const std::string menu = dir.file("home/.local/share/applications/orlavane.desktop");
    writeText(desktop, "");
    writeText(menu, "");
    writeText(dir.file("home/.local/share/savegame.ovw"), "city");
    writeText(dir.file("games/other"), "");
    pid_t game = 0;
    char* words[] = {app.exePath.data(), const_cast<char*>("60"), nullptr};
    ASSERT_EQ(posix_spawn(&game, app.exePath.c_str(), nullptr, nullptr, words, environ), 0);

    uninstallGame(app);
    EXPECT_TRUE(app.quitRequested);
    EXPECT_TRUE(goneSoon(app.exeDir));
    EXPECT_TRUE(finishedSoon());
    EXPECT_EQ(waitpid(game, nullptr, WNOHANG), 0) << "the game was to go on";
    EXPECT_FALSE(fileExists(desktop));
    EXPECT_FALSE(fileExists(menu));
    EXPECT_TRUE(fs::is_empty(dir.path / "temporary"));
    EXPECT_EQ(readText(dir.file("home/.local/share/savegame.ovw")), "city");
    EXPECT_TRUE(fileExists(dir.file("games/other")));
    kill(game, SIGKILL);
    waitpid(game, nullptr, 0);
}

TEST_F(Uninstall, AnyNameOnTheWayIsSafe) {
    const std::string odd = "a b 'c' \"d\" $HOME $(touch bad) `touch bad`;\ntouch bad\n#\\ -rf * ?\xff";
    install(odd + "/Orlavane");
    setenv("HOME", dir.file("home").c_str(), 1);
    setenv("XDG_DATA_HOME", dir.file(odd).c_str(), 1);
    fs::create_directory(dir.file(odd + "/applications"));
    writeText(dir.file(odd + "/applications/orlavane.desktop"), "");
    writeText(dir.file(odd + "/kept"), "");
    fs::create_directory(dir.path / odd / "tmp");
    setenv("TMPDIR", dir.file(odd + "/tmp").c_str(), 1);

    uninstallGame(app);
    EXPECT_TRUE(app.quitRequested);
    EXPECT_TRUE(goneSoon(dir.file(odd + "/tmp/" + fs::path(scripts).filename().string())));
    EXPECT_FALSE(fileExists(app.exeDir));
    EXPECT_FALSE(fileExists(dir.file(odd + "/applications/orlavane.desktop")));
    EXPECT_TRUE(fileExists(dir.file(odd + "/kept")));
    EXPECT_FALSE(fileExists("/bad"));
    EXPECT_FALSE(fileExists("bad"));
    unsetenv("XDG_DATA_HOME");
}

TEST_F(Uninstall, LinksInTheFolderAreRemovedAndNotFollowed) {
    install("Orlavane");
    fs::create_directory(dir.path / "precious");
    writeText(dir.file("precious/file"), "kept");
    fs::create_symlink(dir.path / "precious", app.exeDir + "link");
    fs::create_symlink("circle", app.exeDir + "circle");
    app.exeDir += "//";
    uninstallGame(app);
    EXPECT_TRUE(finishedSoon());
    EXPECT_FALSE(fileExists(dir.file("Orlavane")));
    EXPECT_EQ(readText(dir.file("precious/file")), "kept");
}

TEST_F(Uninstall, AFolderOfAnotherNameStays) {
    for (const char* folder : {"orlavane", "Orlavane2", "Orlavane-setup", "Orlavane/bin", "my\\Orlavane"}) {
        install(folder);
        uninstallGame(app);
        expectNothingHappened();
    }
}

TEST_F(Uninstall, AFolderWithoutTheGameStays) {
    install("Orlavane", "orlavane");
    uninstallGame(app);
    expectNothingHappened();
}

TEST_F(Uninstall, AFolderOfNoKnownPlaceStays) {
    install("Orlavane");
    const fs::path before = fs::current_path();
    const App installed = app;
    fs::current_path(app.exeDir);
    app.exeDir = "./";
    uninstallGame(app);
    fs::current_path(dir.path);
    app.exeDir = "Orlavane/";
    uninstallGame(app);
    fs::current_path(before);
    app.exeDir = installed.exeDir;
    expectNothingHappened();
}

TEST_F(Uninstall, AScriptThatCannotBeWrittenChangesNothing) {
    install("Orlavane");
    setenv("TMPDIR", dir.file("missing").c_str(), 1);
    uninstallGame(app);
    expectNothingHappened();
    setenv("TMPDIR", dir.file("temporary").c_str(), 1);
    makeScripts();
    fs::create_directory(script);
    uninstallGame(app);
    EXPECT_FALSE(app.quitRequested);
    EXPECT_TRUE(fileExists(app.exePath));
}

TEST_F(Uninstall, AScriptThatFitsOnTheDiskOnlyInPartIsNotStarted) {
    install("Orlavane");
    const FullDisk disk(20);
    uninstallGame(app);
    expectNothingHappened();
}

TEST_F(Uninstall, AnEarlierScriptIsReplacedAndALinkNotFollowed) {
    install("Orlavane");
    writeText(dir.file("mine"), "precious");
    makeScripts();
    fs::create_symlink(dir.path / "mine", script);
    uninstallGame(app);
    EXPECT_TRUE(app.quitRequested);
    EXPECT_TRUE(finishedSoon());
    EXPECT_FALSE(fileExists(app.exeDir));
    EXPECT_EQ(readText(dir.file("mine")), "precious");
}

TEST_F(Uninstall, LeftoversOfAnotherUserStopNothing) {
    install("Orlavane");
    writeText(scripts, "not ours");
    fs::create_directory(dir.path / "temporary/orlavane-uninstall.sh");
    uninstallGame(app);
    EXPECT_TRUE(app.quitRequested);
    EXPECT_TRUE(goneSoon(app.exeDir));
    EXPECT_EQ(readText(scripts), "not ours");
}

TEST_F(Uninstall, AFolderThatThePlayerMayNotRemoveStays) {
    fs::permissions(dir.path / "temporary", fs::perms(01777));
    install("games/Orlavane");
    const fs::path parent = dir.path / "games";
    for (const fs::path& locked : {parent, parent / "Orlavane", parent / "Orlavane/music"}) {
        for (const fs::path& folder : {parent, parent / "Orlavane", parent / "Orlavane/music"})
            fs::permissions(folder, fs::perms(folder == locked ? 0555 : 0777));
        const OrdinaryUser user;
        EXPECT_FALSE(startRemoval(app.exeDir)) << locked;
        uninstallGame(app);
        EXPECT_FALSE(app.quitRequested) << locked;
    }
    fs::permissions(parent / "Orlavane/music", fs::perms(0755));
    EXPECT_TRUE(fs::is_empty(dir.path / "temporary"));
    EXPECT_TRUE(fileExists(app.exeDir + "music/music1.mp3"));
}

TEST_F(Uninstall, WhereALinkLeadsNeedNotBeThePlayers) {
    install("games/Orlavane");
    fs::create_directory(dir.path / "precious");
    fs::permissions(dir.path / "precious", fs::perms(0555));
    fs::create_symlink(dir.path / "precious", app.exeDir + "link");
    for (const char* folder : {"games", "games/Orlavane", "games/Orlavane/music"})
        fs::permissions(dir.path / folder, fs::perms(0777));
    fs::permissions(dir.path / "temporary", fs::perms(01777));
    const OrdinaryUser user;
    EXPECT_TRUE(startRemoval(app.exeDir));
    EXPECT_TRUE(goneSoon(app.exeDir));
    EXPECT_TRUE(fileExists(dir.file("precious")));
}

TEST_F(Uninstall, WithoutAHomeOnlyTheFolderGoes) {
    install("Orlavane");
    unsetenv("HOME");
    uninstallGame(app);
    EXPECT_TRUE(finishedSoon());
    EXPECT_FALSE(fileExists(app.exeDir));
}
