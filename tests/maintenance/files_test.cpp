#include "maintenance/files.h"

#include "temp_dir.h"

#include <gtest/gtest.h>

#include <ctime>

namespace fs = std::filesystem;

TEST(Files, AFileIsThereOrNot) {
    const TempDir dir;
    EXPECT_FALSE(fileExists(dir.file("a")));
    writeText(dir.file("a"), "");
    EXPECT_TRUE(fileExists(dir.file("a")));
    EXPECT_TRUE(fileExists(dir.path.string()));
    EXPECT_FALSE(fileExists(""));
}

TEST(Files, ModifiedIsInSecondsSince1970) {
    const TempDir dir;
    const std::time_t before = std::time(nullptr) - 2; // the clock of files may lag a little
    writeText(dir.file("a"), "x");
    EXPECT_GE(fileModified(dir.file("a")), before);
    EXPECT_LE(fileModified(dir.file("a")), std::time(nullptr));
}

#ifdef __linux__
TEST(Files, ModifiedIsRoundedDownToTheSecond) {
    const TempDir dir;
    writeText(dir.file("a"), "x");
    const std::string touch = "touch -d '1970-01-12 13:46:40.9 UTC' " + dir.file("a");
    ASSERT_EQ(std::system(touch.c_str()), 0);
    EXPECT_EQ(fileModified(dir.file("a")), 1000000);
}
#endif

TEST(Files, ModifiedOfAFileThatIsNotThereIs0) {
    const TempDir dir;
    EXPECT_EQ(fileModified(dir.file("a")), 0);
}

TEST(Files, DeletingTakesFilesAndLeavesFolders) {
    const TempDir dir;
    writeText(dir.file("a"), "x");
    EXPECT_TRUE(deleteFile(dir.file("a")));
    EXPECT_FALSE(fileExists(dir.file("a")));
    EXPECT_FALSE(deleteFile(dir.file("a")));
    fs::create_directory(dir.path / "folder");
    EXPECT_FALSE(deleteFile(dir.file("folder")));
    EXPECT_TRUE(fileExists(dir.file("folder")));
}

#ifdef __linux__
TEST(Files, DeletingALinkLeavesWhatItPointsTo) {
    const TempDir dir;
    writeText(dir.file("target"), "x");
    fs::create_symlink(dir.path / "target", dir.path / "link");
    EXPECT_TRUE(deleteFile(dir.file("link")));
    EXPECT_FALSE(fileExists(dir.file("link")));
    EXPECT_EQ(readText(dir.file("target")), "x");
}

TEST(Files, DevicesStay) {
    EXPECT_FALSE(deleteFile("/dev/null"));
    EXPECT_TRUE(fileExists("/dev/null"));
}
#endif
