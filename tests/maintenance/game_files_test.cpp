#include "maintenance/game_files.h"

#include "environment.h"
#include "maintenance/files.h"
#include "maintenance/ordinary_user.h"
#include "temp_dir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ctime>
#include <sys/stat.h>
#include <utime.h>

namespace fs = std::filesystem;
using testing::ElementsAre;

static std::vector<std::string> names(const std::string& folder) {
    std::vector<std::string> list;
    for (const GameFile& file : listFiles(folder)) list.push_back(file.name);
    return list;
}

TEST(GameFiles, HaveNameSizeAndTime) {
    const TempDir dir;
    writeText(dir.file("a.bin"), std::string(12345, 'x'));
    utimbuf times = {1000000, 1000000};
    ASSERT_EQ(utime(dir.file("a.bin").c_str(), &times), 0);
    const std::vector<GameFile> files = listFiles(dir.path.string() + "/");
    ASSERT_EQ(files.size(), 1u);
    EXPECT_EQ(files[0].name, "a.bin");
    EXPECT_EQ(files[0].size, 12345);
    EXPECT_EQ(files[0].modified, 1000000);
    EXPECT_EQ(GameFile().size, 0);
    EXPECT_EQ(GameFile().modified, 0);
}

TEST(GameFiles, AreSortedByTheBytesOfTheirNames) {
    const TempDir dir;
    for (const char* name : {"b", "a", "Z", "aa", "\xc3\xa4"}) writeText(dir.file(name), "");
    EXPECT_THAT(names(dir.path.string()), ElementsAre("Z", "a", "aa", "b", "\xc3\xa4"));
}

TEST(GameFiles, FoldersAndWhatLiesInThemAreNotListed) {
    const TempDir dir;
    fs::create_directories(dir.path / "folder/deeper");
    writeText(dir.file("folder/inside"), "x");
    writeText(dir.file("outside"), "x");
    EXPECT_THAT(names(dir.path.string()), ElementsAre("outside"));
}

#ifdef __linux__
TEST(GameFiles, PipesAndSocketsAreNoFiles) {
    const TempDir dir;
    ASSERT_EQ(mkfifo(dir.file("pipe").c_str(), 0600), 0);
    EXPECT_THAT(names(dir.path.string()), ElementsAre());
}

TEST(GameFiles, ALinkCountsByWhatItPointsTo) {
    const TempDir dir;
    writeText(dir.file("file"), "12345");
    fs::create_directory(dir.path / "folder");
    fs::create_symlink("file", dir.path / "to-file");
    fs::create_symlink("folder", dir.path / "to-folder");
    fs::create_symlink("nothing", dir.path / "to-nothing");
    fs::create_symlink("circle", dir.path / "circle");
    fs::create_symlink("round", dir.path / "about");
    fs::create_symlink("about", dir.path / "round");
    fs::create_symlink("..", dir.path / "folder/up");
    EXPECT_THAT(names(dir.path.string()), ElementsAre("file", "to-file"));
    EXPECT_EQ(listFiles(dir.path.string())[1].size, 5);
}
#endif

TEST(GameFiles, AFolderThatIsEmptyMissingOrNoneListsNothing) {
    const TempDir dir;
    writeText(dir.file("file"), "");
    fs::create_directory(dir.path / "empty");
    EXPECT_TRUE(listFiles(dir.file("empty")).empty());
    EXPECT_TRUE(listFiles(dir.file("missing")).empty());
    EXPECT_TRUE(listFiles(dir.file("file")).empty());
    EXPECT_TRUE(listFiles("").empty());
}

#ifdef __linux__
TEST(GameFiles, AFolderThatMayNotBeReadListsNothing) {
    const TempDir dir;
    writeText(dir.file("file"), "");
    fs::permissions(dir.path, fs::perms(0300));
    {
        const OrdinaryUser user;
        EXPECT_TRUE(listFiles(dir.path.string()).empty());
    }
    fs::permissions(dir.path, fs::perms(0700));
}

TEST(GameFiles, AFileWhoseStatusCannotBeReadHasNeitherSizeNorTime) {
    const TempDir dir;
    writeText(dir.file("file"), "12345");
    fs::permissions(dir.path, fs::perms(0444)); // its names may be read, and nothing more
    std::vector<GameFile> files;
    {
        const OrdinaryUser user;
        files = listFiles(dir.path.string());
    }
    fs::permissions(dir.path, fs::perms(0700));
    ASSERT_EQ(files.size(), 1u);
    EXPECT_EQ(files[0].size, -1);
    EXPECT_EQ(files[0].modified, 0);
    EXPECT_EQ(fileSizeText(files[0].size), "-1 B");
    EXPECT_EQ(fileTimeText(files[0].modified), "-");
}

TEST(GameFiles, TenThousandFilesAreListed) {
    const TempDir dir;
    for (int i = 0; i < 10000; i++) writeText(dir.file("file" + std::to_string(10000 + i)), "");
    const std::vector<std::string> list = names(dir.path.string());
    ASSERT_EQ(list.size(), 10000u);
    EXPECT_EQ(list.front(), "file10000");
    EXPECT_EQ(list.back(), "file19999");
}

TEST(GameFiles, NamesAreShownAsUtf8WhateverTheirBytes) {
    const TempDir dir;
    const std::string good = "\xc3\xa9\xe6\xbc\xa2\xf0\x9f\x8f\x99\xef\xbf\xbd";
    const std::string mark = "\xef\xbf\xbd";
    // Single bytes, a cut character, an overlong form, a surrogate, beyond the last plane.
    for (const std::string& name :
         {good, std::string("1\xff"), std::string("2\xc3"), std::string("3\xc0\xaf"),
          std::string("4\xed\xa0\x80"), std::string("5\xf4\x90\x80\x80"), std::string("6\xe6\xbc"),
          std::string("7\xe0\x80\x80"), std::string("8\x80z")})
        writeText(dir.file(name), "");
    EXPECT_THAT(names(dir.path.string()),
                ElementsAre("1" + mark, "2" + mark, "3" + mark + mark, "4" + mark + mark + mark,
                            "5" + mark + mark + mark + mark, "6" + mark + mark, "7" + mark + mark + mark,
                            "8" + mark + "z", good));
}

TEST(GameFiles, AtTheEdgesOfUtf8NamesAreShownAsTheyAre) {
    const std::string mark = "\xef\xbf\xbd";
    const auto shown = [](const std::string& name) {
        const TempDir dir;
        writeText(dir.file(name), "");
        return names(dir.path.string()).at(0);
    };
    for (const char* name :
         {"\x01", "\x7f", "\xc2\x80", "\xdf\xbf", "\xe0\xa0\x80", "\xe1\x80\x80", "\xec\xbf\xbf",
          "\xed\x80\x80", "\xed\x9f\xbf", "\xee\x80\x80", "\xef\xbf\xbf", "\xf0\x90\x80\x80",
          "\xf0\xbf\xbf\xbf", "\xf1\x80\x80\x80", "\xf3\xbf\xbf\xbf", "\xf4\x80\x80\x80", "\xf4\x8f\xbf\xbf"})
        EXPECT_EQ(shown(name), name);
    // Each of these bytes is one too small or too large for its place.
    for (const char* name :
         {"\x80", "\xbf", "\xc1\xbf", "\xc2\xc0", "\xdf\xc0", "\xe0\x9f\xbf", "\xe1\x80\xc0", "\xed\xa0\x80",
          "\xee\xc0\x80", "\xf0\x8f\xbf\xbf", "\xf1\x80\x80\xc0", "\xf1\x80\xc0\x80", "\xf4\x90\x80\x80",
          "\xf5\x80\x80\x80", "\xff"}) {
        std::string marks;
        for (size_t i = 0; i < std::string(name).size(); i++) marks += mark;
        EXPECT_EQ(shown(name), marks) << name;
    }
    EXPECT_EQ(shown("\xc2\x7f"), mark + "\x7f");
    EXPECT_EQ(shown("\xe1\x80\x7f"), mark + mark + "\x7f");
    EXPECT_EQ(shown("\xf1\x80\x80\x7f"), mark + mark + mark + "\x7f");
}

TEST(GameFiles, AFileWithANameThatIsNoTextHasItsSize) {
    const TempDir dir;
    writeText(dir.file("\xff\xfe"), "123");
    const std::vector<GameFile> files = listFiles(dir.path.string());
    ASSERT_EQ(files.size(), 1u);
    EXPECT_EQ(files[0].size, 3);
    EXPECT_GT(files[0].modified, 1000000000);
}
#endif

TEST(FileSizeText, InBytesKilobytesAndMegabytes) {
    EXPECT_EQ(fileSizeText(0), "0 B");
    EXPECT_EQ(fileSizeText(1023), "1023 B");
    EXPECT_EQ(fileSizeText(1024), "1.0 KB");
    EXPECT_EQ(fileSizeText(12800), "12.5 KB");
    EXPECT_EQ(fileSizeText(1048575), "1024.0 KB");
    EXPECT_EQ(fileSizeText(1048576), "1.0 MB");
    EXPECT_EQ(fileSizeText(5'000'000'000), "4768.4 MB");
    EXPECT_EQ(fileSizeText(-1), "-1 B");
}

TEST(FileTimeText, IsLocalTimeToTheMinute) {
    setVariable("TZ", "XYZ-2"); // two hours before Greenwich
    tzset();
    EXPECT_EQ(fileTimeText(1793467530), "31.10.2026 19:25");
#ifdef __linux__ // where time does not begin in 1970
    EXPECT_EQ(fileTimeText(-1), "01.01.1970 01:59");
#endif
    unsetVariable("TZ");
    tzset();
}

TEST(FileTimeText, WithoutATimeIsADash) {
    EXPECT_EQ(fileTimeText(0), "-");
    EXPECT_EQ(fileTimeText(INT64_MAX), "-");
}
