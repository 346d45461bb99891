#include "maintenance/uninstall.h"
#include "temp_dir.h"

#include <gtest/gtest.h>

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
