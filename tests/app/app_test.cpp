#include "app/app.h"

#include "app/session.h"
#include "maintenance/platform.h"
#include "sim/city_helpers.h"
#include "sim/map_generation.h"
#include "temp_dir.h"
#include "ui/words/languages.h"
#include "view/gl/fake_gl.h"

#include <gtest/gtest.h>

#include <SDL.h>

#include <cstdlib>
#include <iterator>

#include <unistd.h>

// The start of the game on a GL table that draws nothing.
class AppInit : public testing::Test {
protected:
    AppInit() {
        setenv("SDL_AUDIODRIVER", "dummy", 1);
        fake.recording = false;
    }
    ~AppInit() override {
        appShutdown(app);
        setCurrentLanguage(0);
    }

    bool start() { return appInit(app, folder, notes); }

    FakeGl fake;
    TempDir dir;
    std::string folder = dir.path.string() + "/";
    App app;
    std::string notes;
};

TEST(App, BeginsWithNothingOpenNothingChosenAndTimeRunning) {
    const App app;
    EXPECT_EQ(app.screen, SCREEN_LAUNCHER);
    EXPECT_EQ(app.returnScreen, SCREEN_TITLE);
    EXPECT_EQ(app.launcherPage, LAUNCHER_MAIN);
    EXPECT_FALSE(app.initialised || app.saveExists || app.paused || app.quitRequested || app.displayDirty);
    EXPECT_EQ(app.tutorialStep, -1);
    EXPECT_EQ(app.tutorialCard.w, 0.0f);
    EXPECT_EQ(app.currentTool, 0);
    EXPECT_EQ(app.currentCategory, 0);
    EXPECT_EQ(app.currentOverlay, OVERLAY_NORMAL);
    EXPECT_EQ(app.currentPanel, PANEL_NONE);
    EXPECT_EQ(app.paintDistrict, 0);
    EXPECT_EQ(app.speed, 1);
    EXPECT_EQ(app.dayTimer, 0.0f);
    EXPECT_FALSE(app.hoverValid || app.dragging || app.rightDragOnHud || app.middleDragOnHud);
    EXPECT_EQ(app.selectedBuilding, -1);
    EXPECT_EQ(app.selectedBuildingCell, -1);
    EXPECT_EQ(app.selectedCellX, -1);
    EXPECT_EQ(app.selectedCellY, -1);
    EXPECT_EQ(app.statusId, 0);
    EXPECT_EQ(app.statusTimer, 0.0f);
    EXPECT_EQ(app.lastEventCount, 0u);
    EXPECT_EQ(app.logoTexture, 0u);
    EXPECT_EQ(app.logoWidth, 0);
    EXPECT_EQ(app.updateState, UPDATE_IDLE);
    EXPECT_EQ(app.updateTask, nullptr);
    EXPECT_EQ(app.musicMode, MUSIC_OFF);
    EXPECT_EQ(app.logoTexture, 0u);
    EXPECT_EQ(app.frameStats.framesPerSecond, 0.0f);
    EXPECT_EQ(app.frameStats.timer, 0.0f);
    EXPECT_EQ(app.frameStats.frames, 0);
    EXPECT_EQ(app.firstFrameCounter, 0u);
}

TEST_F(AppInit, TheLauncherStandsBeforeTheLandOfSeedZero) {
    EXPECT_FALSE(app.initialised);
    ASSERT_TRUE(start());
    EXPECT_TRUE(app.initialised);
    EXPECT_EQ(app.screen, SCREEN_LAUNCHER);
    EXPECT_EQ(app.launcherPage, LAUNCHER_MAIN);
    City land;
    generateMap(land, 0);
    EXPECT_EQ(cityHashes(app.city), cityHashes(land));
    EXPECT_EQ(app.camera.target, (Vec3{384.0f, 0.0f, 384.0f}));
    EXPECT_NE(app.logoTexture, 0u);
    EXPECT_EQ(app.logoWidth, 256);
    EXPECT_EQ(app.logoHeight, 256);
    EXPECT_EQ(app.updateState, UPDATE_UNCONFIGURED); // this build names no server
    EXPECT_EQ(notes, "No music files found; playing without music\n");
}

TEST_F(AppInit, FilesLieInThePreferenceFolderAndBesideTheProgram) {
    ASSERT_TRUE(start());
    EXPECT_EQ(app.savePath, folder + "savegame.ovw");
    EXPECT_EQ(app.settingsPath, folder + "settings.ini");
    EXPECT_EQ(app.exeDir, std::filesystem::canonical("/proc/self/exe").parent_path().string() + "/");
    EXPECT_EQ(app.exePath, app.exeDir + EXECUTABLE_NAME);
}

TEST_F(AppInit, WritesNothing) {
    ASSERT_TRUE(start());
    EXPECT_TRUE(std::filesystem::is_empty(folder));
}

TEST_F(AppInit, ASaveThatCanBeOpenedCanBeContinued) {
    ASSERT_TRUE(start());
    EXPECT_FALSE(app.saveExists);
    appShutdown(app);
    writeText(folder + "savegame.ovw", "whatever it holds");
    ASSERT_TRUE(start());
    EXPECT_TRUE(app.saveExists);
}

TEST_F(AppInit, TheSettingsAreInForceFromTheStart) {
    writeText(folder + "settings.ini", "language=4\nmusicVolume=25\nsfxVolume=75\ntutorialDone=1\n");
    ASSERT_TRUE(start());
    EXPECT_STREQ(languageAt(currentLanguage()).code, "de");
    EXPECT_EQ(app.fonts.language, 4);
    EXPECT_EQ(app.settings.language, 4);
    EXPECT_EQ(app.audio.musicVolume, 0.25f);
    EXPECT_EQ(app.audio.sfxVolume, 0.75f);
    EXPECT_TRUE(app.settings.tutorialDone);
}

TEST_F(AppInit, ALanguageThatWasNeverChosenIsTheSystems) {
    const int system = preferredLanguage();
    setCurrentLanguage(system == 7 ? 8 : 7);
    ASSERT_TRUE(start());
    EXPECT_EQ(currentLanguage(), system);
    EXPECT_EQ(app.fonts.language, system);
    EXPECT_EQ(app.settings.language, -1);
}

TEST_F(AppInit, AFinishedUpdateIsThrownAwayAtTheStart) {
    setenv("TMPDIR", folder.c_str(), 1);
    const std::filesystem::path own = folder + "orlavane-" + std::to_string(geteuid());
    std::filesystem::create_directory(own);
    std::filesystem::permissions(own, std::filesystem::perms(0700));
    writeText(own / "Orlavane-setup-update.exe", "an update");
    std::filesystem::last_write_time(own / "Orlavane-setup-update.exe",
                                     std::filesystem::file_time_type::clock::now() - std::chrono::hours(1));
    EXPECT_TRUE(start());
    unsetenv("TMPDIR");
    EXPECT_TRUE(std::filesystem::is_empty(own));
}

static bool baseIsKnown = true;

// Found before SDL's own.
extern "C" char* SDL_GetBasePath() {
    return baseIsKnown ? SDL_strdup((std::filesystem::canonical("/proc/self/exe").parent_path() / "").c_str())
                       : nullptr;
}

TEST_F(AppInit, AProgramThatDoesNotKnowItsFolderTakesTheWorkingOne) {
    baseIsKnown = false;
    EXPECT_TRUE(start());
    baseIsKnown = true;
    EXPECT_EQ(app.exeDir, "./");
}

// The first argument of all calls together: how many names were made or given back.
static int namesOf(const FakeGl& fake, const std::string& function) {
    int names = 0;
    for (const std::string& call : callsOf(fake, function))
        names += std::stoi(call.substr(function.size() + 1));
    return names;
}

TEST_F(AppInit, TheShutdownGivesBackWhateverTheStartAndTheGameTook) {
    const auto openFiles = [] {
        const std::filesystem::directory_iterator files("/proc/self/fd");
        return std::distance(begin(files), end(files));
    };
    writeText(folder + "savegame.ovw", "");
    writeText(folder + "settings.ini", "");
    ASSERT_TRUE(start()); // what libraries keep for the whole process is open by now
    appShutdown(app);
    const auto before = openFiles();
    app.audio = {};
    fake.recording = true;
    ASSERT_TRUE(start());
    newCity(app);
    layRoads(app.city, 40, 48, 56, 48);
    addBuilding(app.city, 48, 47, KIND_PARK);
    app.city.buildingsDirty = app.city.roadsDirty = 1;
    Input input;
    input.drawableWidth = 1600;
    input.drawableHeight = 900;
    input.mouseX = 800.0f;
    input.mouseY = 450.0f;
    for (int frame = 0; frame < 100; frame++) stepGame(app, input, 0.1f);
    ASSERT_GT(app.meshes.hoverMesh.vertexCount, 0);
    ASSERT_GT(app.meshes.streetLifeMesh.vertexCount, 0);
    appShutdown(app);
    EXPECT_EQ(namesOf(fake, "DeleteBuffers"), namesOf(fake, "GenBuffers"));
    EXPECT_EQ(namesOf(fake, "DeleteVertexArrays"), namesOf(fake, "GenVertexArrays"));
    EXPECT_EQ(namesOf(fake, "DeleteTextures"), namesOf(fake, "GenTextures"));
    EXPECT_EQ(namesOf(fake, "DeleteFramebuffers"), namesOf(fake, "GenFramebuffers"));
    EXPECT_EQ(callsOf(fake, "DeleteProgram").size(), callsOf(fake, "CreateProgram").size());
    EXPECT_EQ(app.logoTexture, 0u);
    EXPECT_EQ(app.audio.device, 0u);
    EXPECT_EQ(openFiles(), before);
}

TEST_F(AppInit, AChosenLanguageForgetsTheWordsOfTheOldOne) {
    ASSERT_TRUE(start());
    app.fonts.runCache["20|0|Quit"] = {};
    chooseLanguage(app, 4);
    EXPECT_TRUE(app.fonts.runCache.empty());
    EXPECT_EQ(app.settings.language, 4);
    EXPECT_EQ(currentLanguage(), 4);
    EXPECT_EQ(app.fonts.language, 4);
}

TEST_F(AppInit, WithoutTheInterfacesShadersItFailsAndSaysWhy) {
    fake.compiles = false;
    EXPECT_FALSE(start());
    EXPECT_FALSE(app.initialised);
    EXPECT_NE(notes.find("sss"), std::string::npos); // the compiler's log
}

// The interface has two shaders and comes first.
static void APIENTRY compileTwo(GLuint, GLenum, GLint* status) {
    static int asked = 0;
    *status = asked++ < 2;
}

TEST_F(AppInit, WithoutTheWorldsShadersItFailsAndSaysWhy) {
    gl.GetShaderiv = compileTwo;
    EXPECT_FALSE(start());
    EXPECT_FALSE(app.initialised);
    EXPECT_NE(app.logoTexture, 0u); // which stands between the two
    EXPECT_NE(notes.find("sss"), std::string::npos);
}
