#include "maintenance/uninstall.h"

#include "maintenance/full_disk.h"
#include "temp_dir.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

namespace fs = std::filesystem;

// Runs the text with commands of our own in place of "rm" and "sleep": each only writes down what was asked.
static std::vector<std::string> rehearse(const TempDir& dir, const std::string& text) {
    fs::create_directories(dir.path / "bin");
    for (const char* name : {"rm", "rmdir", "sleep"}) {
        writeText(dir.file(std::string("bin/") + name),
                  "#!/bin/sh\necho " + std::string(name) + " \"$@\" >>" + dir.file("log") + "\n");
        fs::permissions(dir.file(std::string("bin/") + name), fs::perms(0755));
    }
    writeText(dir.file("script.sh"), text);
    const std::string command = "PATH=" + dir.file("bin") + " /bin/sh " + dir.file("script.sh");
    EXPECT_EQ(std::system(command.c_str()), 0);

    std::vector<std::string> lines;
    std::ifstream log(dir.file("log"));
    for (std::string line; std::getline(log, line);) lines.push_back(line);
    return lines;
}

TEST(ShellRemovalScript, GivesUpOnTheFolderAfter120RoundsAndGoesOn) {
    const TempDir dir;
    fs::create_directory(dir.path / "Orlavane");
    const std::vector<std::string> log =
        rehearse(dir, shellRemovalScript({dir.file("Orlavane"), "/d", "/m"}));
    ASSERT_EQ(log.size(), 244u);
    for (size_t i = 0; i < 240; i += 2) {
        EXPECT_EQ(log[i], "sleep 1");
        EXPECT_EQ(log[i + 1], "rm -rf -- " + dir.file("Orlavane"));
    }
    EXPECT_EQ(log[240], "rm -f -- /d");
    EXPECT_EQ(log[241], "rm -f -- /m");
    EXPECT_EQ(log[242], "rm -f -- " + dir.file("script.sh"));
    EXPECT_EQ(log[243], "rmdir -- " + dir.path.string());
}

TEST(ShellRemovalScript, IsSatisfiedOnceTheFolderIsGone) {
    const TempDir dir;
    const std::vector<std::string> log = rehearse(dir, shellRemovalScript({dir.file("Orlavane"), "", ""}));
    ASSERT_EQ(log.size(), 4u);
    EXPECT_EQ(log[0], "sleep 1");
    EXPECT_EQ(log[1], "rm -rf -- " + dir.file("Orlavane"));
    EXPECT_EQ(log[2], "rm -f -- " + dir.file("script.sh"));
}

TEST(ShellRemovalScript, IsWrittenWholeOrNotAtAll) {
    const TempDir dir;
    const FullDisk disk(20000);
    for (const size_t size : {0, 20000, 20001, 100000}) { // the third is found out when the file is closed
        const std::string text(size, '#');
        EXPECT_EQ(writeScript(dir.file("script.sh"), text), size <= 20000) << size;
        EXPECT_EQ(readText(dir.file("script.sh")), size <= 20000 ? text : "") << size;
        EXPECT_EQ(fs::exists(dir.file("script.sh")), size <= 20000) << size;
    }
}

// --- For real

// All that lies in a folder: what each path holds, or where it leads.
static std::map<std::string, std::string> treeOf(const fs::path& folder) {
    std::map<std::string, std::string> tree;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
        const std::string path = entry.path().lexically_relative(folder).string();
        tree[path] = entry.is_symlink()     ? "leads to " + fs::read_symlink(entry).string()
                     : entry.is_directory() ? "a folder"
                                            : "holds " + readText(entry.path().string());
    }
    return tree;
}

class RealRemoval : public testing::Test {
protected:
    RealRemoval() {
        for (const char* folder : {"games/Orlavane/music/deep", "games/Orlavane2", "precious/deep", "desktop",
                                   "menu", "temporary", "bin"})
            fs::create_directories(dir.path / folder);
        for (const char* file :
             {"games/Orlavane/Orlavane", "games/Orlavane/.hidden", "games/Orlavane/a b", "games/Orlavane/-rf",
              "games/Orlavane/music/music1.mp3", "games/Orlavane/music/deep/x", "games/Orlavane2/Orlavane",
              "games/Orlavane.bak", "games/other", "precious/file", "precious/deep/file",
              "desktop/orlavane.desktop", "desktop/other.desktop", "menu/orlavane.desktop",
              "menu/orlavane.desktop.bak", "menu/other.desktop"})
            writeText(dir.file(file), file);
        fs::create_symlink("../../precious", dir.path / "games/Orlavane/link");
        fs::create_symlink(dir.path / "precious/file", dir.path / "games/Orlavane/music/link");
        fs::create_symlink("..", dir.path / "games/Orlavane/up");
        fs::create_symlink("Orlavane", dir.path / "games/elsewhere");
        writeText(dir.file("bin/sleep"), "#!/bin/sh\n");
        fs::permissions(dir.path / "bin/sleep", fs::perms(0755));
    }

    // Runs the script from the temporary folder. What has gone then is `named` with all that lay in it.
    void expectOnlyTheseGo(const Removal& removal, const std::vector<std::string>& named) {
        writeText(dir.file("temporary/script.sh"), shellRemovalScript(removal));
        std::map<std::string, std::string> expected = treeOf(dir.path);
        std::erase_if(expected, [&](const auto& entry) {
            return std::any_of(named.begin(), named.end(), [&](const std::string& gone) {
                return entry.first == gone || entry.first.starts_with(gone + "/");
            });
        });
        const std::string command = "PATH=" + dir.file("bin") + ":$PATH exec /bin/sh " +
                                    dir.file("temporary/script.sh") + " 2>/dev/null";
        [[maybe_unused]] const int ignored = std::system(command.c_str());
        EXPECT_EQ(treeOf(dir.path), expected);
    }

    TempDir dir;
};

TEST_F(RealRemoval, TakesTheFolderTheShortcutsAndItselfAndNothingMore) {
    expectOnlyTheseGo(
        {dir.file("games/Orlavane"), dir.file("desktop/orlavane.desktop"), dir.file("menu/orlavane.desktop")},
        {"games/Orlavane", "desktop/orlavane.desktop", "menu/orlavane.desktop", "temporary"});
}

TEST_F(RealRemoval, WithoutShortcutsTakesNone) {
    expectOnlyTheseGo({dir.file("games/Orlavane"), "", ""}, {"games/Orlavane", "temporary"});
}

TEST_F(RealRemoval, WhatElseLiesBesideTheScriptStays) {
    writeText(dir.file("temporary/other"), "");
    expectOnlyTheseGo({dir.file("games/Orlavane"), "", ""}, {"games/Orlavane", "temporary/script.sh"});
}

TEST_F(RealRemoval, LinksInThePlaceOfFolderAndShortcutsAreNotFollowed) {
    fs::create_symlink("../precious", dir.path / "games/linked");
    fs::create_symlink("../precious/file", dir.path / "desktop/linked");
    fs::create_symlink("../precious/deep", dir.path / "menu/linked");
    expectOnlyTheseGo({dir.file("games/linked"), dir.file("desktop/linked"), dir.file("menu/linked")},
                      {"games/linked", "desktop/linked", "menu/linked", "temporary"});
}

TEST_F(RealRemoval, AShortcutThatIsAFolderStays) {
    expectOnlyTheseGo({dir.file("games/Orlavane"), dir.file("precious"), ""},
                      {"games/Orlavane", "temporary"});
}
