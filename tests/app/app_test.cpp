#include "app/app.h"

#include "maintenance/platform.h"
#include "sim/city_helpers.h"
#include "sim/map_generation.h"
#include "temp_dir.h"
#include "ui/words/languages.h"
#include "view/gl/fake_gl.h"

#include <gtest/gtest.h>

#include <cstdlib>

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
