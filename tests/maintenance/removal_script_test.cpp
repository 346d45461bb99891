// What the removal reads and writes, without removing anything.
#include "maintenance/uninstall.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

using testing::HasSubstr;
using testing::Not;

// --- Paths

TEST(NormalizeWindowsPath, TurnsSlashesAndDropsTheLastOnes) {
    EXPECT_EQ(normalizeWindowsPath("C:/Games/Orlavane"), "C:\\Games\\Orlavane");
    EXPECT_EQ(normalizeWindowsPath("C:\\Games/Orlavane\\//"), "C:\\Games\\Orlavane");
    EXPECT_EQ(normalizeWindowsPath("///"), "");
    EXPECT_EQ(normalizeWindowsPath(""), "");
}

TEST(GameFolder, IsCalledOrlavaneExactly) {
    for (const char* path :
         {"C:\\Games\\Orlavane\\", "C:/Games/Orlavane", "C:/Orlavane//\\/", "Orlavane", "/Orlavane"})
        EXPECT_TRUE(isGameFolder(path, "/\\")) << path;
    for (const char* path :
         {"C:/Games/orlavane/", "C:/Orlavane2", "C:/Orlavane-setup/", "C:/Orlavane/bin/", "./", "", "/",
          "/usr/lib/games/orlavane/", "C:/ Orlavane", "C:/Orlavane ", "C:/MyOrlavane", "C:Orlavane"})
        EXPECT_FALSE(isGameFolder(path, "/\\")) << path;
}

TEST(GameFolder, ABackslashPartsFoldersOnlyWhereTheSystemSaysSo) {
    EXPECT_TRUE(isGameFolder("/home/me/my\\Orlavane/", "/\\"));
    EXPECT_FALSE(isGameFolder("/home/me/my\\Orlavane/", "/"));
    EXPECT_FALSE(isGameFolder("/home/me/Orlavane\\", "/"));
}

// --- The script for Windows

TEST(WindowsRemovalScript, WaitsRemovesAndEndsWithItself) {
    EXPECT_EQ(
        windowsRemovalScript({"C:\\Games\\Orlavane", "C:\\Users\\me\\Desktop\\Orlavane.lnk", "D:\\m.lnk"}),
        "@echo off\r\n"
        "set n=0\r\n"
        ":wait\r\n"
        "set /a n+=1\r\n"
        "if %n% gtr 120 goto done\r\n"
        "ping -n 2 127.0.0.1 >nul\r\n"
        "rd /s /q \"C:\\Games\\Orlavane\" >nul 2>&1\r\n"
        "if exist \"C:\\Games\\Orlavane\" goto wait\r\n"
        ":done\r\n"
        "del /q \"C:\\Users\\me\\Desktop\\Orlavane.lnk\" >nul 2>&1\r\n"
        "del /q \"D:\\m.lnk\" >nul 2>&1\r\n"
        "(goto) 2>nul & del \"%~f0\"\r\n");
}

TEST(WindowsRemovalScript, WithoutShortcutsHasNoLineForThem) {
    EXPECT_THAT(windowsRemovalScript({"C:\\Orlavane", "", ""}), Not(HasSubstr("del /q")));
    EXPECT_THAT(windowsRemovalScript({"C:\\Orlavane", "", "m"}),
                HasSubstr(":done\r\ndel /q \"m\" >nul 2>&1\r\n("));
}

TEST(WindowsRemovalScript, EveryLineEndsWithCarriageReturnAndLineFeed) {
    const std::string text = windowsRemovalScript({"C:\\Orlavane", "a", "b"});
    EXPECT_EQ(text.substr(text.size() - 2), "\r\n");
    for (size_t i = 0; i + 1 < text.size(); i++) EXPECT_EQ(text[i] == '\r', text[i + 1] == '\n') << i;
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 12);
}

TEST(WindowsRemovalScript, APercentSignInAPathIsDoubled) {
    const std::string text = windowsRemovalScript({"C:\\100%\\%TEMP%\\Orlavane", "%a%", "b%"});
    EXPECT_THAT(text, HasSubstr("rd /s /q \"C:\\100%%\\%%TEMP%%\\Orlavane\" >nul"));
    EXPECT_THAT(text, HasSubstr("if exist \"C:\\100%%\\%%TEMP%%\\Orlavane\" goto"));
    EXPECT_THAT(text, HasSubstr("del /q \"%%a%%\" >nul"));
    EXPECT_THAT(text, HasSubstr("del /q \"b%%\" >nul"));
}
