#include "app/settings.h"
#include "temp_dir.h"

#include <gtest/gtest.h>

static std::string describe(const Settings& s) {
    std::string text;
    for (const int value : {s.language, s.resolution, int{s.fullscreen}, s.quality, int{s.vsync},
                            int{s.showFps}, s.musicVolume, s.sfxVolume, int{s.tutorialDone}})
        text += std::to_string(value) + " ";
    return text;
}

// Text of a settings file, and what a record of defaults holds after it.
struct LoadRow {
    const char* name;
    std::string text;
    Settings expected;
};

static const LoadRow LOAD_ROWS[] = {
    {"an empty file changes nothing", "", {}},
    {"a file that sets one key leaves the rest", "fullscreen=1\n", {.fullscreen = true}},
    {"the last line needs no end", "language=3\nquality=2", {.language = 3, .quality = 2}},
    {"the last language stays", "language=13\n", {.language = 13}},
    {"detection stays", "language=-1\n", {.language = -1}},
    {"a language past the table becomes detection", "language=14\n", {.language = -1}},
    {"so does the largest number", "language=2147483647\n", {.language = -1}},
    {"the lowest resolution stays", "resolution=0\n", {.resolution = 0}},
    {"a negative resolution stays", "resolution=-2\n", {.resolution = -2}},
    {"a resolution past the table becomes the middle one", "resolution=3\n", {.resolution = 1}},
    {"a negative quality stays", "quality=-4\n", {.quality = -4}},
    {"a quality past the table becomes the middle one", "quality=3\n", {.quality = 1}},
    {"volumes are held to 100", "musicVolume=140\nsfxVolume=120\n", {.musicVolume = 100, .sfxVolume = 100}},
    {"volumes are held to 0", "musicVolume=-1\nsfxVolume=-5\n", {.musicVolume = 0, .sfxVolume = 0}},
    {"both ends of a volume stay", "musicVolume=100\nsfxVolume=0\n", {.musicVolume = 100, .sfxVolume = 0}},
    {"any number but 0 is true", "fullscreen=-1\nshowFps=7\n", {.fullscreen = true, .showFps = true}},
    {"a word is 0", "vsync=yes\nshowFps=true\n", {.vsync = false}},
    {"minus zero is 0", "vsync=-0\n", {.vsync = false}},
    {"no value is 0", "vsync=\nmusicVolume=", {.vsync = false, .musicVolume = 0}},
    {"a number ends at the first other letter", "musicVolume=30abc\n", {.musicVolume = 30}},
    {"and at a point", "musicVolume=30.9\n", {.musicVolume = 30}},
    {"zeros may lead", "musicVolume=000033\n", {.musicVolume = 33}},
    {"blanks and a plus may lead", "musicVolume= \t+44\n", {.musicVolume = 44}},
    {"blanks of all kinds may lead", "musicVolume=\t\v\f\r44\n", {.musicVolume = 44}},
    {"their neighbours may not",
     "musicVolume=\x08"
     "44\nsfxVolume=\x0e"
     "44\n",
     {.musicVolume = 0, .sfxVolume = 0}},
    {"a number ends with its last digit",
     "musicVolume=9/5\nsfxVolume=10:5\n",
     {.musicVolume = 9, .sfxVolume = 10}},
    {"no blank behind the sign", "musicVolume=- 5\n", {.musicVolume = 0}},
    {"numbers of any length are held to the range",
     "resolution=-99999999999999999999999\nmusicVolume=99999999999999999999999\nquality=4294967298\n",
     {.resolution = -2147483647 - 1, .quality = 1, .musicVolume = 100}},
    {"keys know their case", "Language=3\nLANGUAGE=4\n", {}},
    {"a key ends at the equals sign", "language =3\n language=3\nlanguage2=3\nlanguag=3\n=3\n", {}},
    {"an unknown key is passed over", "volume=3\nlanguage=3\n", {.language = 3}},
    {"the first equals sign counts", "language==5\n", {.language = 0}},
    {"a carriage return does no harm",
     "language=3\r\nmusicVolume=75\r\nfullscreen=1\r\n",
     {.language = 3, .fullscreen = true, .musicVolume = 75}},
    {"empty lines are passed over", "\n\nlanguage=3\n\n\nquality=2\n\n", {.language = 3, .quality = 2}},
    {"lines without an equals sign are passed over",
     "[settings]\nlanguage\n# no\nlanguage=4\n",
     {.language = 4}},
    {"the last of two lines counts, and only it is repaired", "quality=9\nquality=2\n", {.quality = 2}},
    {"keys come in any order",
     "tutorialDone=1\nsfxVolume=10\nmusicVolume=20\nlanguage=2\n",
     {.language = 2, .musicVolume = 20, .sfxVolume = 10, .tutorialDone = true}},
    {"a long line is passed over", std::string(5000, 'x') + "\nlanguage=4\n", {.language = 4}},
    {"a long key is passed over", std::string(5000, 'x') + "=1\nlanguage=4\n", {.language = 4}},
    {"a zero byte is a letter like others",
     std::string("language\0=5\nlanguage=6\0007\n", 24),
     {.language = 6}},
};

TEST(SettingsFile, EveryLineIsReadByTheRules) {
    const TempDir dir;
    for (const LoadRow& row : LOAD_ROWS) {
        writeText(dir.file("settings.ini"), row.text);
        Settings settings;
        EXPECT_TRUE(loadSettings(settings, dir.file("settings.ini"))) << row.name;
        EXPECT_EQ(describe(settings), describe(row.expected)) << row.name;
    }
}

TEST(SettingsFile, ValuesThatStoodInTheRecordAreRepairedToo) {
    const TempDir dir;
    writeText(dir.file("settings.ini"), "");
    Settings settings{.language = 40,
                      .resolution = 7,
                      .quality = 5,
                      .vsync = false,
                      .musicVolume = 300,
                      .sfxVolume = -9,
                      .tutorialDone = true};
    EXPECT_TRUE(loadSettings(settings, dir.file("settings.ini")));
    EXPECT_EQ(describe(settings), "-1 1 0 1 0 0 100 0 1 ");
}

TEST(SettingsFile, WithoutAFileTheRecordKeepsItsValues) {
    const TempDir dir;
    Settings settings{.language = 40, .resolution = 7, .quality = 5, .musicVolume = 300, .sfxVolume = -9};
    const std::string before = describe(settings);
    EXPECT_FALSE(loadSettings(settings, dir.file("missing.ini")));
    EXPECT_FALSE(loadSettings(settings, dir.path.string()));
    EXPECT_FALSE(loadSettings(settings, ""));
    EXPECT_EQ(describe(settings), before);
}

TEST(SettingsFile, AnyBytesAreReadToTheEnd) {
    const TempDir dir;
    std::string bytes;
    for (int i = 0; i < 100000; i++) bytes += static_cast<char>(i * 31 + i / 256);
    writeText(dir.file("settings.ini"), bytes + "\nlanguage=9\n");
    Settings settings;
    EXPECT_TRUE(loadSettings(settings, dir.file("settings.ini")));
    EXPECT_EQ(settings.language, 9);
}

TEST(SettingsFile, WhatLiesBehindTheFirstMegabyteIsNotRead) {
    const TempDir dir;
    const std::string first((1 << 20) - 11, 'x');
    writeText(dir.file("settings.ini"), first + "\nlanguage=" + "11\n"); // the second digit is cut off
    Settings settings;
    EXPECT_TRUE(loadSettings(settings, dir.file("settings.ini")));
    EXPECT_EQ(settings.language, 1);
}

TEST(SettingsFile, IsWrittenAsNineLinesInAFixedOrder) {
    const TempDir dir;
    ASSERT_TRUE(saveSettings({}, dir.file("settings.ini")));
    EXPECT_EQ(readText(dir.file("settings.ini")),
              "language=-1\nresolution=1\nfullscreen=0\nquality=1\nvsync=1\nshowFps=0\nmusicVolume=50\n"
              "sfxVolume=70\ntutorialDone=0\n");
}

TEST(SettingsFile, IsWrittenUnrepairedAndRepairedWhenItIsRead) {
    const TempDir dir;
    const Settings odd{.resolution = -2, .quality = -1, .sfxVolume = 120};
    ASSERT_TRUE(saveSettings(odd, dir.file("settings.ini")));
    EXPECT_EQ(readText(dir.file("settings.ini")),
              "language=-1\nresolution=-2\nfullscreen=0\nquality=-1\nvsync=1\nshowFps=0\nmusicVolume=50\n"
              "sfxVolume=120\ntutorialDone=0\n");
    Settings settings;
    ASSERT_TRUE(loadSettings(settings, dir.file("settings.ini")));
    EXPECT_EQ(describe(settings), "-1 -2 0 -1 1 0 50 100 0 ");
}

TEST(SettingsFile, EveryFieldComesBack) {
    const TempDir dir;
    const Settings all{13, 2, true, 2, false, true, 5, 95, true};
    ASSERT_TRUE(saveSettings({}, dir.file("settings.ini")));
    ASSERT_TRUE(saveSettings(all, dir.file("settings.ini")));
    Settings settings;
    ASSERT_TRUE(loadSettings(settings, dir.file("settings.ini")));
    EXPECT_EQ(describe(settings), describe(all));
}

TEST(SettingsFile, AFailedWriteIsFalse) {
    const TempDir dir;
    EXPECT_FALSE(saveSettings({}, dir.path.string()));
    EXPECT_FALSE(saveSettings({}, dir.file("missing/settings.ini")));
#ifdef __linux__
    EXPECT_FALSE(saveSettings({}, "/dev/full"));
#endif
}

TEST(Settings, ResolutionIsHeldToItsTable) {
    const auto size = [](int resolution) {
        int width = 0;
        int height = 0;
        resolutionSize({.resolution = resolution}, width, height);
        return std::to_string(width) + "x" + std::to_string(height);
    };
    for (const int low : {-2147483647, -4, -2, 0}) EXPECT_EQ(size(low), "1280x720");
    EXPECT_EQ(size(1), "1600x900");
    for (const int high : {2, 3, 4, 2147483647}) EXPECT_EQ(size(high), "1920x1080");
}

TEST(Settings, AnyQualityBut0And2HasTheMiddleShadows) {
    EXPECT_EQ(shadowMapSize({.quality = 0}), 0);
    EXPECT_EQ(shadowMapSize({.quality = 2}), 2048);
    for (const int quality : {-4, -2, -1, 1, 3, 4, 2147483647})
        EXPECT_EQ(shadowMapSize({.quality = quality}), 1024);
}
