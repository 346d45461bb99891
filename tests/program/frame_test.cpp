#include "program/frame.h"

#include "app/game_fixture.h"
#include "program/talking_sdl.h"

#include <algorithm>
#include <string>

using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;

class FrameTest : public GameTest {
protected:
    bool step(float dt) {
        const bool goesOn = stepFrame(app, input, dt);
        input.keysPressed.fill(0);
        return goesOn;
    }
};

TEST_F(FrameTest, AStallAdvancesTheGameByATenthOfASecondAtMost) {
    app.speed = 3;
    step(5.0f);
    EXPECT_FLOAT_EQ(app.dayTimer, 0.3f);
}

TEST_F(FrameTest, OnlyALongerFrameIsShortened) {
    app.speed = 1;
    for (const auto& [dt, step_] : {std::pair{0.09f, 0.09f}, {0.1f, 0.1f}, {0.11f, 0.1f}}) {
        app.dayTimer = 0.0f;
        step(dt);
        EXPECT_EQ(app.dayTimer, step_);
        EXPECT_EQ(app.frameStats.frameTime, step_);
    }
}

TEST_F(FrameTest, AMeasureEndsAtHalfASecondAndNotBefore) {
    for (int frame = 0; frame < 7; frame++) step(0.0625f);
    EXPECT_EQ(app.frameStats.framesPerSecond, 0.0f);
    EXPECT_EQ(app.frameStats.frames, 7);
    step(0.0625f);
    EXPECT_EQ(app.frameStats.framesPerSecond, 16.0f);
}

TEST_F(FrameTest, FramesPerSecondAreMeasuredOverHalfASecond) {
    for (int frame = 0; frame < 9; frame++) step(0.05f);
    EXPECT_EQ(app.frameStats.framesPerSecond, 0.0f);
    step(0.0625f);
    EXPECT_NEAR(app.frameStats.framesPerSecond, 10.0f / 0.5125f, 1e-3f);
    EXPECT_EQ(app.frameStats.frames, 0);
    EXPECT_EQ(app.frameStats.timer, 0.0f);
}

TEST_F(FrameTest, TheFrameRateStandsOnEveryScreen) {
    ASSERT_TRUE(fontsInit(app.fonts, nullptr));
    app.settings.showFps = true;
    input.drawableWidth = 1280;
    input.drawableHeight = 720;
    for (const Screen screen : {SCREEN_LAUNCHER, SCREEN_TITLE, SCREEN_SETTINGS, SCREEN_GAME, SCREEN_END}) {
        app.screen = screen;
        app.fonts.runCache.clear();
        step(0.01f);
        const auto& runs = app.fonts.runCache;
        EXPECT_TRUE(std::any_of(runs.begin(), runs.end(), [](const auto& run) {
            return run.first.ends_with("|FPS 0");
        })) << screen;
    }
    fontsShutdown(app.fonts);
}

TEST_F(FrameTest, BeforeItIsInitialisedAFrameOnlyCounts) {
    app.initialised = false;
    app.speed = 1;
    input.keysPressed[KEY_F11] = 1;
    EXPECT_TRUE(step(0.1f));
    EXPECT_FALSE(app.settings.fullscreen);
    EXPECT_EQ(app.dayTimer, 0.0f);
    EXPECT_EQ(app.frameStats.frames, 1);
}

TEST_F(FrameTest, F11FlipsFullScreenOnEveryScreenAndSavesItAtOnce) {
    for (const Screen screen : {SCREEN_LAUNCHER, SCREEN_TITLE, SCREEN_SETTINGS, SCREEN_GAME, SCREEN_END}) {
        app.screen = screen;
        app.settings.fullscreen = false;
        app.displayDirty = false;
        input.keysPressed[KEY_F11] = 1;
        step(0.01f);
        EXPECT_TRUE(app.settings.fullscreen) << screen;
        EXPECT_TRUE(app.displayDirty) << screen;
        Settings saved;
        ASSERT_TRUE(loadSettings(saved, app.settingsPath));
        EXPECT_TRUE(saved.fullscreen) << screen;
    }
}

TEST_F(FrameTest, EscapeClosesTheLaunchersPageAndNothingElse) {
    app.screen = SCREEN_LAUNCHER;
    for (int page = 0; page < 4; page++) {
        app.launcherPage = static_cast<LauncherPage>(page);
        step(0.01f);
        EXPECT_EQ(app.launcherPage, page);
        input.keysPressed[KEY_ESC] = 1;
        EXPECT_TRUE(step(0.01f));
        EXPECT_EQ(app.launcherPage, 0);
        EXPECT_EQ(app.screen, SCREEN_LAUNCHER);
    }
}

TEST_F(FrameTest, AFinishedUpdateTaskIsTakenUpOnEveryScreen) {
    for (const Screen screen : {SCREEN_LAUNCHER, SCREEN_TITLE, SCREEN_SETTINGS, SCREEN_GAME, SCREEN_END}) {
        app.screen = screen;
        app.updateState = UPDATE_CHECKING;
        app.updateTask = std::make_shared<UpdateTask>();
        EXPECT_TRUE(step(0.01f));
        EXPECT_EQ(app.updateState, UPDATE_CHECKING) << screen;
        app.updateTask->done = 1;
        EXPECT_TRUE(step(0.01f));
        EXPECT_EQ(app.updateState, UPDATE_OFFLINE) << screen;
        EXPECT_EQ(app.updateTask, nullptr) << screen;
    }
}

TEST_F(FrameTest, TheMenusShowTheTurningLand) {
    for (const Screen screen : {SCREEN_LAUNCHER, SCREEN_TITLE, SCREEN_SETTINGS}) {
        app.screen = screen;
        app.returnScreen = SCREEN_TITLE;
        app.camera.yaw = 1.0f;
        app.camera.distance = 60.0f;
        input.keysHeld[KEY_W] = 1; // the player's keys do not move it
        step(0.1f);
        EXPECT_FLOAT_EQ(app.camera.yaw, 1.004f);
        EXPECT_EQ(app.camera.pitch, 0.55f);
        EXPECT_EQ(app.camera.distance, 330.0f);
        EXPECT_EQ(app.camera.target, (Vec3{384.0f, 0.0f, 384.0f}));
    }
}

TEST_F(FrameTest, OptionsOpenedFromTheGameAndTheEndScreenKeepItsView) {
    app.speed = 1;
    for (const Screen screen : {SCREEN_SETTINGS, SCREEN_END}) {
        app.screen = screen;
        app.returnScreen = SCREEN_GAME;
        app.city.cellDirty.assign(CELL_COUNT, 1);
        step(0.1f);
        EXPECT_EQ(app.camera.distance, 190.0f);
        EXPECT_EQ(app.dayTimer, 0.0f);
        EXPECT_EQ(app.city.cellDirty[0], 0); // what is stale is still rebuilt
    }
}

TEST_F(FrameTest, TheGameAndItsOptionsPlayTheGamesMusicAndEveryOtherScreenTheMenus) {
    const auto modeOn = [&](Screen screen, Screen returnScreen) {
        app.screen = screen;
        app.returnScreen = returnScreen;
        step(0.01f);
        return app.audio.music.mode;
    };
    EXPECT_EQ(modeOn(SCREEN_LAUNCHER, SCREEN_TITLE), MUSIC_MENU);
    EXPECT_EQ(modeOn(SCREEN_TITLE, SCREEN_TITLE), MUSIC_MENU);
    EXPECT_EQ(modeOn(SCREEN_SETTINGS, SCREEN_TITLE), MUSIC_MENU);
    EXPECT_EQ(modeOn(SCREEN_GAME, SCREEN_TITLE), MUSIC_GAME);
    EXPECT_EQ(modeOn(SCREEN_SETTINGS, SCREEN_GAME), MUSIC_GAME);
    EXPECT_EQ(modeOn(SCREEN_END, SCREEN_GAME), MUSIC_MENU);
}

TEST_F(FrameTest, MusicIsAskedForOnlyWhenItChanges) {
    app.screen = SCREEN_TITLE;
    step(0.01f);
    EXPECT_EQ(app.musicMode, MUSIC_MENU);
    app.audio.music.mode = MUSIC_OFF; // whatever becomes of the player
    step(0.01f);
    EXPECT_EQ(app.audio.music.mode, MUSIC_OFF);
    app.screen = SCREEN_GAME;
    step(0.01f);
    EXPECT_EQ(app.audio.music.mode, MUSIC_GAME);
}

TEST_F(FrameTest, ANewScreensMusicBeginsWithItsFirstWholeFrame) {
    app.city.bankrupt = 1;
    step(0.01f);
    EXPECT_EQ(app.screen, SCREEN_END);
    EXPECT_EQ(app.audio.music.mode, MUSIC_GAME);
    step(0.01f);
    EXPECT_EQ(app.audio.music.mode, MUSIC_MENU);
}

TEST_F(FrameTest, WithoutADeviceTheMusicIsOff) {
    app.audio.device = 0;
    step(0.01f);
    EXPECT_EQ(app.audio.music.mode, MUSIC_OFF);
}

TEST_F(FrameTest, VolumesArePercentOfTheSettings) {
    app.settings.musicVolume = 25;
    app.settings.sfxVolume = 100;
    applyVolumes(app);
    EXPECT_EQ(app.audio.musicVolume, 0.25f);
    EXPECT_EQ(app.audio.sfxVolume, 1.0f);
}

TEST_F(FrameTest, TheLoopEndsWhenThePlayerQuits) {
    EXPECT_TRUE(step(0.01f));
    app.quitRequested = true;
    EXPECT_FALSE(step(0.01f));
}

TEST_F(FrameTest, AMinimisedGameTakesUpAFinishedUpdateTask) {
    app.updateState = UPDATE_CHECKING;
    app.updateTask = std::make_shared<UpdateTask>();
    EXPECT_TRUE(restFrame(app));
    EXPECT_EQ(app.updateState, UPDATE_CHECKING);
    app.updateTask->done = 1;
    EXPECT_TRUE(restFrame(app));
    EXPECT_EQ(app.updateState, UPDATE_OFFLINE);
}

TEST_F(FrameTest, AMinimisedGameEndsWhenItsSetupProgramHasBegun) {
    app.quitRequested = true; // what a fetched update leaves behind
    EXPECT_FALSE(restFrame(app));
}

TEST_F(FrameTest, TheInputIsKeptForTheNextFramesMouseDelta) {
    input.mouseX = 123.0f;
    step(0.01f);
    EXPECT_EQ(app.camera.previousInput.mouseX, 123.0f);
}

TEST_F(FrameTest, ThePicturesTimeBeginsWithTheFirstFrame) {
    talkingSdl().clockStep = 7.0;
    gl.recording = true;
    for (const char* seconds : {", 0)", ", 7)", ", 14)"}) {
        gl.calls.clear();
        step(0.01f);
        EXPECT_THAT(callsOf(gl, "Uniform1f"), Contains(EndsWith(seconds)));
    }
    talkingSdl().clockStep = 0.0;
}

TEST_F(FrameTest, BeforeTheMouseHasMovedTheViewStandsAndNothingIsPointedAt) {
    const Vec3 target = app.camera.target;
    Input untouched;
    untouched.drawableWidth = 1600;
    untouched.drawableHeight = 900;
    input = untouched;
    for (int frame = 0; frame < 60; frame++) step(0.1f);
    EXPECT_EQ(app.camera.target, target);
    EXPECT_EQ(app.meshes.hoverX, -1);
    EXPECT_FALSE(app.hoverValid);
}

TEST_F(FrameTest, AnyWindowSizeIsSurvived) {
    for (const auto& [width, height] :
         {std::pair{0, 0}, {1, 1}, {0, 900}, {1600, 0}, {8000, 300}, {-5, -5}}) {
        input.drawableWidth = width;
        input.drawableHeight = height;
        EXPECT_TRUE(step(0.01f)) << width << " by " << height;
    }
}

// --- Nothing more than that

TEST_F(FrameTest, AScreenThatStandsIsSilentAndAsksNothingOfTheSystem) {
    app.settings.showFps = true;
    app.saveExists = true;
    app.tutorialStep = 1;
    for (int screen = SCREEN_LAUNCHER; screen <= SCREEN_END; screen++)
        for (int page = 0; page < 4; page++) {
            app.screen = static_cast<Screen>(screen);
            app.launcherPage = static_cast<LauncherPage>(page);
            app.currentPanel = static_cast<uint8_t>(page);
            app.returnScreen = page % 2 == 0 ? SCREEN_TITLE : SCREEN_GAME;
            app.paused = page == 3;
            const Settings before = app.settings;
            for (int frame = 0; frame < 3; frame++) step(0.05f);
            EXPECT_THAT(asked(), IsEmpty()) << screen << ", " << page;
            EXPECT_THAT(heard(), IsEmpty()) << screen << ", " << page;
            EXPECT_EQ(app.screen, screen);
            EXPECT_EQ(app.settings.fullscreen, before.fullscreen);
            EXPECT_FALSE(app.displayDirty || app.quitRequested);
        }
}

TEST_F(FrameTest, F11WritesTheSettingsAndNothingElse) {
    input.keysPressed[KEY_F11] = 1;
    step(0.01f);
    EXPECT_THAT(asked(), ElementsAre("writes " + app.settingsPath));
    EXPECT_THAT(heard(), IsEmpty());
}
