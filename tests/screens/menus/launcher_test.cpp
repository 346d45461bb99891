#include "screens/screen_fixture.h"

#include "environment.h"
#include "maintenance/files.h"
#include "maintenance/platform.h"
#include "ui/words/languages.h"
#include "ui/words/strings.h"

#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

namespace fs = std::filesystem;

constexpr float PANEL_X = 320.0f; // in a window of 1280 by 720
constexpr float PANEL_Y = 50.0f;
constexpr float QUESTION_Y = 210.0f; // of the lower panel
constexpr UiColor PRIMARY = {0.80f, 0.58f, 0.20f, 1.0f};
constexpr UiColor NORMAL = {0.30f, 0.26f, 0.22f, 1.0f};
constexpr UiColor DISABLED = {0.28f, 0.28f, 0.29f, 1.0f};

class LauncherTest : public ScreenTest {
protected:
    LauncherTest() {
        app.screen = SCREEN_LAUNCHER;
        app.exeDir = folder + "game/";
        app.exePath = app.exeDir + EXECUTABLE_NAME;
        fs::create_directories(app.exeDir);
    }

    void writeFile(const std::string& path, size_t size = 10) {
        std::ofstream(path, std::ios::binary) << std::string(size, 'x');
    }
    void writeSave() {
        writeFile(app.savePath);
        app.saveExists = true;
    }

    // The lines that begin at x, joined.
    std::string paragraphAt(float x) const {
        std::string joined;
        for (const DrawnText& line : texts())
            if (line.rect.x == x) joined += line.text;
        return joined;
    }

    // The panel stands in the window and is `height` high.
    void expectPanel(float height) {
        const float top = (720.0f - height) / 2.0f;
        const uint32_t frame = packed(colFrame);
        const uint32_t body = packed(colPanel);
        EXPECT_EQ(colorAt(340.0f, top + 0.5f), frame);
        EXPECT_EQ(colorAt(340.0f, top + 2.5f), body);
        EXPECT_EQ(colorAt(340.0f, top + height - 0.5f), frame);
        EXPECT_NE(colorAt(340.0f, top - 0.5f), frame);
        EXPECT_NE(colorAt(340.0f, top + height + 0.5f), frame);
        EXPECT_EQ(colorAt(320.5f, 360.0f), frame);
        EXPECT_EQ(colorAt(322.5f, 360.0f), body);
        EXPECT_EQ(colorAt(959.5f, 360.0f), frame);
    }

    void expectButton(uint32_t id, UiRect rect) {
        EXPECT_EQ(buttonAt(rect.x + 0.5f, rect.y + 0.5f), id);
        EXPECT_EQ(buttonAt(rect.x + rect.w - 0.5f, rect.y + rect.h - 0.5f), id);
        EXPECT_EQ(buttonAt(rect.x - 0.5f, rect.y + 20.0f), 0u);
        EXPECT_EQ(buttonAt(rect.x + rect.w + 0.5f, rect.y + 20.0f), 0u);
        EXPECT_EQ(buttonAt(rect.x + 20.0f, rect.y - 0.5f), 0u);
        EXPECT_EQ(buttonAt(rect.x + 20.0f, rect.y + rect.h + 0.5f), 0u);
    }

    void expectCentred(const std::string& what, float y, int size, UiColor color, bool bold) {
        const DrawnText drawn = text(what);
        EXPECT_EQ(drawn.middle(), 640.0f) << what;
        EXPECT_EQ(drawn.rect.y, y) << what;
        EXPECT_EQ(drawn.size, size) << what;
        EXPECT_EQ(drawn.color, packed(color)) << what;
        EXPECT_EQ(drawn.bold, bold) << what;
    }
};

// --- Main page
// --------------------------------------------------------------------------------------------

TEST_F(LauncherTest, TheWindowIsDimmedAndThePanelIs640By620) {
    show();
    EXPECT_EQ(windowShades(), (std::vector<std::pair<float, float>>{{0.35f, 0.8f}}));
    expectPanel(620.0f);
}

TEST_F(LauncherTest, LogoNameAndVersionStandAtTheTop) {
    show();
    EXPECT_EQ(textureAt(585.5f, PANEL_Y + 20.5f), app.logoTexture);
    EXPECT_EQ(textureAt(694.5f, PANEL_Y + 129.5f), app.logoTexture);
    EXPECT_EQ(textureAt(584.5f, PANEL_Y + 60.0f), 0u);
    EXPECT_EQ(textureAt(640.0f, PANEL_Y + 19.5f), 0u);
    expectCentred("Orlavane", PANEL_Y + 140.0f, 40, colGold, true);
    expectCentred("Version 0.2", PANEL_Y + 186.0f, 18, colMuted, false);
}

TEST_F(LauncherTest, EachUpdateStateHasItsTextAndColor) {
    struct Status {
        UpdateState state;
        const char* text;
        UiColor color;
    };
    const Status all[] = {
        {UPDATE_UNCONFIGURED, "Updates are not set up yet.", colText},
        {UPDATE_CHECKING, "Checking for updates...", colText},
        {UPDATE_CURRENT, "You have the latest version.", colGood},
        {UPDATE_NEWER, "A new version 9.1 is available. Click Update to get it.", colGold},
        {UPDATE_DIFFERENT, "The server has a different version than this one.", colText},
        {UPDATE_OFFLINE, "Could not reach the update server.", colBad},
        {UPDATE_DOWNLOADING, "Downloading the update...", colText},
        {UPDATE_DOWNLOAD_FAILED, "The update could not be downloaded. Try again later.", colBad},
    };
    app.updateManifest.version = "9.1";
    for (const Status& status : all) {
        app.updateState = status.state;
        show();
        EXPECT_EQ(paragraphAt(PANEL_X + 40.0f), status.text);
        for (const DrawnText& line : texts()) {
            if (line.rect.x != PANEL_X + 40.0f) continue;
            EXPECT_EQ(line.color, packed(status.color)) << line.text;
            EXPECT_EQ(line.size, 18);
            EXPECT_GE(line.rect.y, PANEL_Y + 218.0f);
            EXPECT_LE(line.right(), PANEL_X + 600.0f);
        }
    }
    app.updateState = UPDATE_IDLE;
    show();
    EXPECT_EQ(paragraphAt(PANEL_X + 40.0f), "");
}

TEST_F(LauncherTest, ALongVersionNameStaysInItsBox) {
    app.updateState = UPDATE_NEWER;
    app.updateManifest.version = std::string(60000, '9');
    show();
    for (const DrawnText& line : texts()) {
        EXPECT_GE(line.rect.x, PANEL_X) << line.text;
        EXPECT_LE(line.right(), PANEL_X + 640.0f) << line.text;
    }
}

TEST_F(LauncherTest, FiveButtonsOf340By44Stand53Apart) {
    writeSave();
    for (uint32_t i = 0; i < 5; i++)
        expectButton(450 + i, {470.0f, PANEL_Y + 300.0f + 53.0f * static_cast<float>(i), 340.0f, 44.0f});
    for (const char* label : {"Update", "Open game", "Game files", "Delete saves", "Uninstall"}) {
        EXPECT_EQ(text(label).size, 20);
        EXPECT_FALSE(text(label).bold);
    }
}

TEST_F(LauncherTest, OpenGameIsPrimaryAndUpdateOnlyWhenThereIsANewerBuild) {
    writeSave();
    app.updateState = UPDATE_CURRENT;
    show();
    const UiColor colors[] = {NORMAL, PRIMARY, NORMAL, NORMAL, NORMAL};
    for (int i = 0; i < 5; i++)
        EXPECT_EQ(colorAt(480.0f, PANEL_Y + 322.0f + 53.0f * static_cast<float>(i)), packed(colors[i])) << i;
    app.updateState = UPDATE_NEWER;
    show();
    EXPECT_EQ(colorAt(480.0f, PANEL_Y + 322.0f), packed(PRIMARY));
}

TEST_F(LauncherTest, UpdateIsDisabledWithoutAServerAndWhileATaskRuns) {
    for (int state = UPDATE_IDLE; state <= UPDATE_DOWNLOAD_FAILED; state++) {
        app.updateState = static_cast<UpdateState>(state);
        const bool disabled =
            state == UPDATE_UNCONFIGURED || state == UPDATE_CHECKING || state == UPDATE_DOWNLOADING;
        EXPECT_EQ(buttonAt(640.0f, PANEL_Y + 320.0f), disabled ? 0u : 450u) << state;
        EXPECT_EQ(colorAt(480.0f, PANEL_Y + 322.0f) == packed(DISABLED), disabled) << state;
    }
}

TEST_F(LauncherTest, UpdateChecksAgain) {
    app.updateState = UPDATE_OFFLINE;
    clickOn("Update");
    EXPECT_EQ(app.updateState, UPDATE_UNCONFIGURED); // this build has no server
    show();
    EXPECT_TRUE(shows("Updates are not set up yet."));
}

TEST_F(LauncherTest, UpdateFetchesANewerBuild) {
    app.updateState = UPDATE_NEWER;
    app.updateManifest.file = "nowhere";
    clickOn("Update");
    EXPECT_EQ(app.updateState, UPDATE_DOWNLOADING);
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (app.updateState == UPDATE_DOWNLOADING && std::chrono::steady_clock::now() < deadline) show();
    EXPECT_EQ(app.updateState, UPDATE_DOWNLOAD_FAILED); // there is nothing at no address
    EXPECT_FALSE(app.quitRequested);
}

TEST_F(LauncherTest, OpenGameLeadsToTheTitleScreen) {
    clickOn("Open game");
    EXPECT_EQ(app.screen, SCREEN_TITLE);
    show();
    EXPECT_TRUE(shows("New city"));
}

TEST_F(LauncherTest, WithoutASaveTheLineSaysSoAndDeletingIsDisabled) {
    show();
    expectCentred("No saved game.", PANEL_Y + 300.0f + 4 * 53.0f + 44.0f + 16.0f, 16, colMuted, false);
    EXPECT_EQ(colorAt(480.0f, PANEL_Y + 322.0f + 3 * 53.0f), packed(DISABLED));
    clickOn("Delete saves");
    EXPECT_EQ(app.launcherPage, LAUNCHER_MAIN);
}

TEST_F(LauncherTest, TheSavesTimeIsShownInLocalTime) {
    writeSave();
    std::tm local = {};
    local.tm_year = 126;
    local.tm_mon = 9;
    local.tm_mday = 5;
    local.tm_hour = 18;
    local.tm_min = 7;
    local.tm_isdst = -1;
    const auto age =
        std::chrono::system_clock::now() - std::chrono::system_clock::from_time_t(std::mktime(&local));
    fs::last_write_time(app.savePath, fs::file_time_type::clock::now() -
                                          std::chrono::duration_cast<fs::file_time_type::duration>(age) +
                                          std::chrono::seconds(5));
    show();
    expectCentred("Saved game: 05.10.2026 18:07", PANEL_Y + 572.0f, 16, colMuted, false);
}

TEST_F(LauncherTest, ASaveThatVanishedHasNoTime) {
    app.saveExists = true;
    show();
    EXPECT_TRUE(shows("Saved game: -"));
}

TEST_F(LauncherTest, EscClosesTheOpenPageAndDoesNothingOnTheMainPage) {
    for (const LauncherPage page :
         {LAUNCHER_MAIN, LAUNCHER_FILES, LAUNCHER_DELETE_SAVE, LAUNCHER_UNINSTALL}) {
        app.launcherPage = page;
        pressKey(KEY_ESC);
        EXPECT_EQ(app.launcherPage, LAUNCHER_MAIN) << page;
        EXPECT_EQ(app.screen, SCREEN_LAUNCHER) << page;
        EXPECT_TRUE(shows("Open game")) << page; // in the same frame
    }
}

TEST_F(LauncherTest, TheScaleFollowsTheHeightFromThreeQuartersToTwo) {
    const struct {
        int height;
        int nameSize;
        float panelHeight;
    } sizes[] = {
        {400, 30, 465.0f}, {540, 30, 465.0f}, {720, 40, 620.0f}, {1440, 80, 1240.0f}, {2160, 80, 1240.0f}};
    for (const auto& size : sizes) {
        resize(2000, size.height);
        show();
        EXPECT_EQ(text("Orlavane").size, size.nameSize) << size.height;
        const float top = (static_cast<float>(size.height) - size.panelHeight) / 2.0f;
        EXPECT_FLOAT_EQ(text("Orlavane").rect.y, top + 140.0f * size.panelHeight / 620.0f) << size.height;
    }
}

TEST_F(LauncherTest, ItSpeaksEveryLanguageWithinItsPanel) {
    app.updateState = UPDATE_DOWNLOAD_FAILED;
    for (int language = 0; language < LANGUAGE_COUNT; language++) {
        chooseLanguage(app, language);
        show();
        for (const int id : {STR_UPDATE_BUTTON, STR_OPEN_GAME, STR_GAME_FILES, STR_DELETE_SAVES,
                             STR_UNINSTALL, STR_NO_SAVED_GAME})
            EXPECT_TRUE(shows(tr(id))) << languageAt(language).code << ": " << tr(id);
        for (const DrawnText& line : texts()) {
            EXPECT_GE(line.rect.x, PANEL_X) << line.text;
            EXPECT_LE(line.right(), PANEL_X + 640.0f) << line.text;
        }
    }
}

// --- Files page
// -------------------------------------------------------------------------------------------

TEST_F(LauncherTest, GameFilesListsTheFolderAnew) {
    writeFile(app.exeDir + "old");
    clickOn("Game files");
    EXPECT_EQ(app.launcherPage, LAUNCHER_FILES);
    show();
    EXPECT_TRUE(shows("old"));
    pressKey(KEY_ESC);
    writeFile(app.exeDir + "new");
    fs::remove(app.exeDir + "old");
    clickOn("Game files");
    show();
    EXPECT_TRUE(shows("new"));
    EXPECT_FALSE(shows("old"));
}

TEST_F(LauncherTest, TheFilesPageShowsItsTitleAndTheFolder) {
    app.launcherPage = LAUNCHER_FILES;
    app.exeDir = "/games/Orlavane/";
    show();
    expectPanel(620.0f);
    expectCentred("Game files", PANEL_Y + 22.0f, 34, colGold, true);
    const DrawnText path = text("/games/Orlavane/");
    EXPECT_EQ(path.rect.x, PANEL_X + 36.0f);
    EXPECT_EQ(path.rect.y, PANEL_Y + 66.0f);
    EXPECT_EQ(path.size, 14);
    EXPECT_EQ(path.color, packed(colMuted));
}

TEST_F(LauncherTest, ALongFolderNameWrapsIntoTwoLines) {
    app.launcherPage = LAUNCHER_FILES;
    app.exeDir = "/" + std::string(90, 'w') + "/" + std::string(900, 'i') + "/";
    show();
    int lines = 0;
    for (const DrawnText& line : texts())
        if (line.rect.x == PANEL_X + 36.0f && line.rect.y < PANEL_Y + 112.0f) {
            EXPECT_LE(line.rect.w, 568.0f);
            lines++;
        }
    EXPECT_EQ(lines, 2); // what does not fit is left out
}

TEST_F(LauncherTest, AnEmptyListSaysSo) {
    clickOn("Game files");
    show();
    expectCentred("No game files found.", PANEL_Y + 130.0f, 18, colText, false);
}

TEST_F(LauncherTest, AFilesRowHasItsNameSizeAndTime) {
    app.launcherPage = LAUNCHER_FILES;
    app.gameFiles = {{"Orlavane", 2411724, 0}, {"readme", 1536, 0}, {"tiny", 1023, 0}, {"odd", -1, 0}};
    show();
    const char* details[] = {"2.3 MB   -", "1.5 KB   -", "1023 B   -", "-1 B   -"};
    for (size_t i = 0; i < 4; i++) {
        const float top = PANEL_Y + 112.0f + 26.0f * static_cast<float>(i);
        const DrawnText name = text(app.gameFiles[i].name == "Orlavane" ? "Orlavane" : app.gameFiles[i].name);
        EXPECT_EQ(name.rect.x, PANEL_X + 36.0f);
        EXPECT_EQ(name.rect.y, top);
        EXPECT_EQ(name.size, 17);
        EXPECT_EQ(name.color, packed(colText));
        const DrawnText detail = text(details[i]);
        EXPECT_EQ(detail.right(), PANEL_X + 604.0f);
        EXPECT_EQ(detail.rect.y, top);
        EXPECT_EQ(detail.size, 16);
        EXPECT_EQ(detail.color, packed(colMuted));
    }
    EXPECT_FALSE(shows("No game files found."));
}

TEST_F(LauncherTest, OfThirteenFilesTheLastByNameIsMissing) {
    for (char name = 'a'; name <= 'm'; name++) writeFile(app.exeDir + name);
    clickOn("Game files");
    show();
    for (char name = 'a'; name <= 'l'; name++)
        EXPECT_EQ(text(std::string(1, name)).rect.y,
                  PANEL_Y + 112.0f + 26.0f * static_cast<float>(name - 'a'));
    EXPECT_FALSE(shows("m"));
}

TEST_F(LauncherTest, ANameWiderThanItsRowRunsUnderTheDetails) {
    app.launcherPage = LAUNCHER_FILES;
    app.gameFiles = {{std::string(200, 'w'), 5, 0}};
    show();
    EXPECT_GT(text(std::string(200, 'w')).right(), text("5 B   -").rect.x);
    EXPECT_EQ(texts().back().text, "Back");
}

TEST_F(LauncherTest, TheFilesPageHasTwoButtons) {
    app.launcherPage = LAUNCHER_FILES;
    expectButton(455, {PANEL_X + 36.0f, PANEL_Y + 556.0f, 278.0f, 44.0f});
    expectButton(456, {PANEL_X + 326.0f, PANEL_Y + 556.0f, 278.0f, 44.0f});
    EXPECT_EQ(colorAt(PANEL_X + 46.0f, PANEL_Y + 578.0f), packed(PRIMARY));
    EXPECT_EQ(colorAt(PANEL_X + 336.0f, PANEL_Y + 578.0f), packed(NORMAL));
    clickOn("Back");
    EXPECT_EQ(app.launcherPage, LAUNCHER_MAIN);
}

#ifndef _WIN32
// The browser of folders is a program of the player's desktop; here one that writes down its argument.
TEST_F(LauncherTest, OpenFolderShowsTheGamesFolderAndStaysOnThePage) {
    const std::string seen = folder + "seen";
    std::ofstream(folder + "xdg-open")
        << "#!/bin/sh\nprintf %s \"$1\" > '" << seen << ".part'\nmv '" << seen << ".part' '" << seen << "'\n";
    fs::permissions(folder + "xdg-open", fs::perms::owner_all);
    const std::string path = std::getenv("PATH");
    setenv("PATH", (folder + ":" + path).c_str(), 1);
    app.launcherPage = LAUNCHER_FILES;
    clickOn("Open folder");
    setenv("PATH", path.c_str(), 1);
    EXPECT_EQ(app.launcherPage, LAUNCHER_FILES);
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!fs::exists(seen) && std::chrono::steady_clock::now() < deadline)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    std::stringstream argument;
    argument << std::ifstream(seen).rdbuf();
    EXPECT_EQ(argument.str(), app.exeDir);
}

TEST_F(LauncherTest, AFolderThatCannotBeOpenedIsIgnored) {
    app.exeDir = folder + "gone/";
    app.launcherPage = LAUNCHER_FILES;
    clickOn("Open folder");
    EXPECT_EQ(app.launcherPage, LAUNCHER_FILES);
    EXPECT_FALSE(app.quitRequested);
}
#endif

// --- Confirmation pages
// -----------------------------------------------------------------------------------

TEST_F(LauncherTest, BothQuestionsStandOnALowerPanelWithTwoButtons) {
    const struct {
        LauncherPage page;
        const char* question;
        UiColor yes;
    } pages[] = {
        {LAUNCHER_DELETE_SAVE, "Delete the saved game? This cannot be undone.", NORMAL},
        {LAUNCHER_UNINSTALL,
         "Uninstall Orlavane? The game files and shortcuts will be removed. Your saves stay.", PRIMARY},
    };
    for (const auto& page : pages) {
        app.launcherPage = page.page;
        expectButton(457, {426.0f, QUESTION_Y + 220.0f, 200.0f, 44.0f});
        expectButton(458, {654.0f, QUESTION_Y + 220.0f, 200.0f, 44.0f});
        expectPanel(300.0f);
        EXPECT_EQ(paragraphAt(PANEL_X + 36.0f), page.question);
        EXPECT_EQ(texts().front().rect.y, QUESTION_Y + 40.0f);
        EXPECT_EQ(texts().front().size, 22);
        EXPECT_EQ(texts().front().color, packed(colText));
        EXPECT_EQ(colorAt(436.0f, QUESTION_Y + 242.0f), packed(page.yes));
        EXPECT_EQ(colorAt(664.0f, QUESTION_Y + 242.0f), packed(NORMAL));
        clickOn("No");
        EXPECT_EQ(app.launcherPage, LAUNCHER_MAIN);
    }
}

TEST_F(LauncherTest, YesDeletesTheSaveAndTheMainPageShowsItAtOnce) {
    writeSave();
    clickOn("Delete saves");
    EXPECT_EQ(app.launcherPage, LAUNCHER_DELETE_SAVE);
    clickOn("Yes");
    EXPECT_FALSE(fs::exists(app.savePath));
    EXPECT_FALSE(app.saveExists);
    EXPECT_EQ(app.launcherPage, LAUNCHER_MAIN);
    show();
    EXPECT_TRUE(shows("No saved game."));
    EXPECT_EQ(colorAt(480.0f, PANEL_Y + 322.0f + 3 * 53.0f), packed(DISABLED));
}

TEST_F(LauncherTest, NoKeepsTheSave) {
    writeSave();
    clickOn("Delete saves");
    clickOn("No");
    EXPECT_TRUE(fs::exists(app.savePath));
    EXPECT_TRUE(app.saveExists);
}

TEST_F(LauncherTest, ADeletionThatFailsShowsInTheSaveThatStays) {
    fs::create_directories(app.savePath + "/kept"); // no file that could be deleted
    app.saveExists = true;
    clickOn("Delete saves");
    clickOn("Yes");
    EXPECT_TRUE(app.saveExists);
    EXPECT_EQ(app.launcherPage, LAUNCHER_MAIN);
}

TEST_F(LauncherTest, UninstallAsksFirst) {
    clickOn("Uninstall");
    EXPECT_EQ(app.launcherPage, LAUNCHER_UNINSTALL);
    EXPECT_FALSE(app.quitRequested);
}

TEST_F(LauncherTest, ARefusedRemovalLeavesThePageAsItIs) {
    writeFile(app.exePath); // in a folder of another name
    app.launcherPage = LAUNCHER_UNINSTALL;
    clickOn("Yes");
    EXPECT_EQ(app.launcherPage, LAUNCHER_UNINSTALL);
    EXPECT_FALSE(app.quitRequested);
    EXPECT_TRUE(fs::exists(app.exePath));
}

#ifndef _WIN32
TEST_F(LauncherTest, YesRemovesTheGameAndEndsIt) {
    app.exeDir = folder + "Orlavane/";
    app.exePath = app.exeDir + EXECUTABLE_NAME;
    fs::create_directories(app.exeDir);
    writeFile(app.exePath);
    const std::string temporary = variable("TMPDIR");
    const std::string home = variable("HOME");
    setVariable("TMPDIR", folder);
    setVariable("HOME", folder);
    app.launcherPage = LAUNCHER_UNINSTALL;
    clickOn("Yes");
    temporary.empty() ? unsetVariable("TMPDIR") : setVariable("TMPDIR", temporary);
    setVariable("HOME", home);
    EXPECT_TRUE(app.quitRequested);
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (fs::exists(app.exeDir) && std::chrono::steady_clock::now() < deadline)
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_FALSE(fs::exists(app.exeDir));
}
#endif
