#include "program/capture.h"

#include "app/tools.h"
#include "sim/city_helpers.h"
#include "temp_dir.h"
#include "ui/words/languages.h"
#include "view/gl/fake_gl.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <utility>

static App stateApplied(const std::string& text) {
    App app;
    applyStateString(app, text);
    return app;
}

// Sets a variable for the length of a test.
class Variable {
public:
    Variable(const char* variable, const char* value) : name(variable) { setenv(name, value, 1); }
    ~Variable() { unsetenv(name); }

private:
    const char* name;
};

// With a window of 16 by 9.
static Capture captured(App& app) { return applyCaptureHooks(app, 1600, 900); }

TEST(StateString, FocusLooksAtTheMiddleOfACell) {
    const App app = stateApplied("focus=10:20");
    EXPECT_EQ(app.camera.target, (Vec3{84.0f, 0.0f, 164.0f}));
}

TEST(StateString, AFocusWithoutColonOrNumbersIsSkipped) {
    const Vec3 start = App().camera.target;
    for (const char* text : {"focus=10", "focus=:", "focus=a:b", "focus=1:2:3", "focus=99999999999:1"})
        EXPECT_EQ(stateApplied(text).camera.target, start) << text;
}

TEST(StateString, OverlayByItsName) {
    const char* const names[] = {"normal", "traffic", "power", "water", "pollution", "happy"};
    for (int overlay = 0; overlay < OVERLAY_COUNT; overlay++) {
        const App app = stateApplied(std::string("overlay=traffic,overlay=") + names[overlay]);
        EXPECT_EQ(app.currentOverlay, overlay);
        EXPECT_EQ(app.meshes.overlayMode, overlay);
    }
    EXPECT_EQ(stateApplied("overlay=happy,overlay=nonsense").meshes.overlayMode, OVERLAY_HAPPY);
}

TEST(StateString, PanelByItsNameAndAnyOtherIsNone) {
    EXPECT_EQ(stateApplied("panel=budget").currentPanel, PANEL_BUDGET);
    EXPECT_EQ(stateApplied("panel=finance").currentPanel, PANEL_FINANCE);
    EXPECT_EQ(stateApplied("panel=stats").currentPanel, PANEL_STATISTICS);
    for (const char* other : {"panel=stats,panel=none", "panel=stats,panel=", "panel=stats,panel=statistics"})
        EXPECT_EQ(stateApplied(other).currentPanel, PANEL_NONE) << other;
}

TEST(StateString, OnlyOnePauses) {
    EXPECT_TRUE(stateApplied("pause=1").paused);
    for (const char* other : {"pause=1,pause=0", "pause=1,pause=", "pause=1,pause=10", "pause=1,pause=true"})
        EXPECT_FALSE(stateApplied(other).paused) << other;
}

TEST(StateString, SpeedIsHeldToThree) {
    for (int speed = 0; speed <= 3; speed++)
        EXPECT_EQ(stateApplied("speed=" + std::to_string(speed)).speed, speed);
    EXPECT_EQ(stateApplied("speed=4").speed, 3);
    EXPECT_EQ(stateApplied("speed=-1").speed, 0);
    for (const char* odd : {"speed=2,speed=", "speed=2,speed=fast", "speed=2,speed=1.5"})
        EXPECT_EQ(stateApplied(odd).speed, 2) << odd;
}

TEST(StateString, CategoryByItsNameWithItsFirstTool) {
    const std::pair<const char*, int> categories[] = {{"roads", TOOL_STREET},
                                                      {"zones", TOOL_RESIDENTIAL_ZONE},
                                                      {"services", TOOL_POLICE_STATION},
                                                      {"utilities", TOOL_GAS_POWER_PLANT},
                                                      {"districts", TOOL_PAINT_DISTRICT},
                                                      {"bulldoze", TOOL_BULLDOZE}};
    int category = CATEGORY_ROADS;
    for (const auto& [name, tool] : categories) {
        const App app = stateApplied(std::string("cat=") + name);
        EXPECT_EQ(app.currentCategory, category++) << name;
        EXPECT_EQ(app.currentTool, tool) << name;
    }
    const App app = stateApplied("cat=roads,cat=select");
    EXPECT_EQ(app.currentCategory, CATEGORY_SELECT);
    EXPECT_EQ(app.currentTool, TOOL_SELECT);
    EXPECT_EQ(stateApplied("cat=roads,cat=parks").currentCategory, CATEGORY_ROADS);
}

TEST(StateString, AnyToolIsTheOneForHomes) {
    for (const char* text : {"tool=", "tool=park", "cat=bulldoze,tool=1"}) {
        const App app = stateApplied(text);
        EXPECT_EQ(app.currentTool, TOOL_RESIDENTIAL_ZONE) << text;
        EXPECT_EQ(app.currentCategory, CATEGORY_ZONES) << text;
    }
}

TEST(StateString, SelectTakesTheBuildingOnTheCellElseTheCell) {
    App app;
    app.city = flatCity();
    addBuilding(app.city, 2, 3, KIND_PARK);
    addBuilding(app.city, 7, 8, KIND_SCHOOL);
    applyStateString(app, "select=7:8");
    EXPECT_EQ(app.selectedBuilding, 1);
    EXPECT_EQ(app.selectedCellX, -1);
    applyStateString(app, "select=8:7");
    EXPECT_EQ(app.selectedBuilding, -1);
    EXPECT_EQ(app.selectedCellX, 8);
    EXPECT_EQ(app.selectedCellY, 7);
    applyStateString(app, "select=9");
    EXPECT_EQ(app.selectedCellX, 8);
    applyStateString(app, "select=96:0"); // there is no such cell
    EXPECT_EQ(app.selectedCellX, -1);
}

TEST(StateString, TheTourStartsAtItsStep) {
    EXPECT_EQ(stateApplied("tutorial=0").tutorialStep, 0);
    EXPECT_EQ(stateApplied("tutorial=5").tutorialStep, 5);
    EXPECT_EQ(stateApplied("tutorial=5,tutorial=-1").tutorialStep, -1);
    EXPECT_EQ(stateApplied("tutorial=5,tutorial=next").tutorialStep, 5);
}

TEST(StateString, TheDistrictThatIsPainted) {
    EXPECT_EQ(stateApplied("district=3").paintDistrict, 3);
    EXPECT_EQ(stateApplied("district=3,district=north").paintDistrict, 3);
}

TEST(StateString, TheHourIsTheCitys) {
    EXPECT_EQ(stateApplied("hour=21.5").city.hourOfDay, 21.5f);
    for (const char* odd : {"hour=", "hour=noon", "hour=nan", "hour=inf", "hour=1e99", "hour=3h", "hour=3=4"})
        EXPECT_EQ(stateApplied(odd).city.hourOfDay, 9.0f) << odd;
}

TEST(StateString, TheDistanceIsTheCameras) {
    EXPECT_EQ(stateApplied("dist=90.5").camera.distance, 90.5f);
    EXPECT_EQ(stateApplied("dist=far").camera.distance, App().camera.distance);
}

TEST(StateString, TheCalendarDayIsHeldToTheFirst) {
    EXPECT_EQ(stateApplied("calday=100").city.calendarDay, 100);
    EXPECT_EQ(stateApplied("calday=1").city.calendarDay, 1);
    EXPECT_EQ(stateApplied("calday=-1").city.calendarDay, 0);
    EXPECT_EQ(stateApplied("calday=100,calday=7days").city.calendarDay, 100);
}

TEST(StateString, AKeyIsItsWholeName) {
    for (const char* text : {"spee=3", "speeds=3", " speed=3", "Speed=3", "speed =3"})
        EXPECT_EQ(stateApplied(text).speed, 1) << text;
}

TEST(StateString, EveryLanguageCodeChoosesOneAndUnknownOnesEnglish) {
    const std::pair<const char*, const char*> codes[] = {
        {"de", "de"}, {"EN", "en"},    {"PL", "pl"}, {"en-US", "en"},   {"hi", "hi"},
        {"xx", "en"}, {"pt_BR", "pt"}, {"", "en"},   {"zh-Hant", "zh"}, {"english", "en"}};
    for (const auto& [value, code] : codes) {
        const App app = stateApplied(std::string("lang=") + value);
        EXPECT_STREQ(languageAt(currentLanguage()).code, code) << value;
        EXPECT_EQ(app.settings.language, currentLanguage()) << value;
        EXPECT_EQ(app.fonts.language, currentLanguage()) << value;
    }
    setCurrentLanguage(0);
}

TEST(StateString, ScreensByTheirNames) {
    EXPECT_EQ(stateApplied("screen=title").screen, SCREEN_TITLE);
    EXPECT_EQ(stateApplied("screen=end").screen, SCREEN_END);
    EXPECT_EQ(stateApplied("screen=title,screen=launcher").screen, SCREEN_LAUNCHER);
    EXPECT_EQ(stateApplied("screen=nowhere").screen, SCREEN_LAUNCHER);
}

TEST(StateString, TheLaunchersPagesByTheirNames) {
    EXPECT_EQ(stateApplied("launcher=files").launcherPage, 1);
    EXPECT_EQ(stateApplied("launcher=saves").launcherPage, 2);
    EXPECT_EQ(stateApplied("launcher=uninstall").launcherPage, 3);
    EXPECT_EQ(stateApplied("launcher=files,launcher=other").launcherPage, 0);
    EXPECT_EQ(stateApplied("screen=title,launcher=saves").screen, SCREEN_LAUNCHER);
}

TEST(StateString, TheLaunchersFilesAreReadWhenTheirPageIsOpened) {
    App app;
    app.exeDir = "/bin/";
    applyStateString(app, "launcher=saves");
    EXPECT_TRUE(app.gameFiles.empty());
    applyStateString(app, "launcher=files");
    EXPECT_FALSE(app.gameFiles.empty());
}

TEST(StateString, TheUpdateStatesByTheirNames) {
    EXPECT_EQ(stateApplied("update=checking").updateState, UPDATE_CHECKING);
    EXPECT_EQ(stateApplied("update=current").updateState, UPDATE_CURRENT);
    EXPECT_EQ(stateApplied("update=offline").updateState, UPDATE_OFFLINE);
    const App newer = stateApplied("update=newer,update=downloading");
    EXPECT_EQ(newer.updateState, UPDATE_NEWER);
    EXPECT_EQ(newer.updateManifest.version, "0.2");
    EXPECT_EQ(stateApplied("update=current,update=offline").updateManifest.version, "");
}

TEST(StateString, SettingsLeadBackToTheGameOnlyFromTheGame) {
    App app;
    applyStateString(app, "screen=settings");
    EXPECT_EQ(app.screen, SCREEN_SETTINGS);
    EXPECT_EQ(app.returnScreen, SCREEN_TITLE);
    app.screen = SCREEN_GAME;
    applyStateString(app, "screen=settings");
    EXPECT_EQ(app.returnScreen, SCREEN_GAME);
    EXPECT_EQ(stateApplied("pause=1,screen=settings").returnScreen, SCREEN_GAME);
    EXPECT_EQ(stateApplied("screen=settings,pause=1").returnScreen, SCREEN_TITLE); // each acts at once
}

TEST(StateString, PiecesAreAppliedInOrderAndWhatIsNotUnderstoodIsSkipped) {
    const App app = stateApplied(",,hour=3,noise,=,==,unknown=5,hour=4,");
    EXPECT_EQ(app.city.hourOfDay, 4.0f);
    EXPECT_EQ(stateApplied(std::string(1 << 20, ',')).screen, SCREEN_LAUNCHER);
    EXPECT_EQ(stateApplied(std::string(1 << 20, '=')).screen, SCREEN_LAUNCHER);
}

TEST(Capture, UnsetVariablesChangeNothing) {
    App app;
    const Capture capture = captured(app);
    EXPECT_FALSE(capture.shotPath.has_value());
    EXPECT_EQ(capture.frameLimit, 40);
    EXPECT_EQ(app.screen, SCREEN_LAUNCHER);
}

TEST(Capture, DemoNeedsALeadingOne) {
    for (const char* value : {"", "0", "yes", " 1"}) {
        const Variable demo("OV_DEMO", value);
        App app;
        captured(app);
        EXPECT_EQ(app.screen, SCREEN_LAUNCHER) << value;
    }
    const Variable demo("OV_DEMO", "1x");
    App app;
    captured(app);
    EXPECT_EQ(app.screen, SCREEN_GAME);
    EXPECT_EQ(app.camera.distance, 150.0f);
    EXPECT_EQ(app.camera.target, (Vec3{388.0f, 0.0f, 388.0f}));
}

TEST(Capture, AFrameCountThatIsNoNumberIsForty) {
    for (const char* value : {"", "many", "7 frames", "99999999999999999999"}) {
        const Variable frames("OV_FRAMES", value);
        App app;
        EXPECT_EQ(captured(app).frameLimit, 40) << value;
    }
    const Variable frames("OV_FRAMES", "3");
    App app;
    EXPECT_EQ(captured(app).frameLimit, 3);
}

TEST(Capture, SettingsVariableOpensTheOptionsEvenWhenEmptyAndTheStateStringComesLast) {
    const Variable settings("OV_SETTINGS", "");
    App app;
    captured(app);
    EXPECT_EQ(app.screen, SCREEN_SETTINGS);
    EXPECT_EQ(app.returnScreen, SCREEN_TITLE);

    const Variable state("OV_STATE", "screen=title");
    captured(app);
    EXPECT_EQ(app.screen, SCREEN_TITLE);
}

// The view of the state string in a window of that size.
static Camera poseOf(const char* text, int width, int height) {
    const Variable state("OV_STATE", text);
    App app;
    applyCaptureHooks(app, width, height);
    return app.camera;
}

TEST(Capture, ThePoseOfTheWholeStateStringIsHeldToTheMapOnEveryScreen) {
    for (const char* screen : {"", ",screen=end", ",screen=settings", ",screen=title", ",launcher=saves"}) {
        Camera held;
        held.target = {4.0f, 0.0f, 764.0f};
        held.distance = 100.0f;
        clampCamera(held, 1600.0f / 900.0f);
        ASSERT_GT(held.target.x, 4.0f);
        // The distance comes last: the place is not held to the one before it.
        const Camera camera = poseOf((std::string("focus=0:95") + screen + ",dist=100").c_str(), 1600, 900);
        EXPECT_EQ(camera.target, held.target) << screen;
        EXPECT_EQ(camera.distance, 100.0f) << screen;
    }
}

TEST(Capture, AWiderWindowHoldsThePoseNearer) {
    const float square = poseOf("dist=900", 900, 900).distance;
    EXPECT_LE(square, 420.0f);
    EXPECT_LT(poseOf("dist=900", 1600, 900).distance, square);
    EXPECT_EQ(poseOf("dist=900", 1600, 0).distance,
              poseOf("dist=900", 1600, 1000).distance); // 1.6 without a height
}

TEST(Capture, WithoutAStateStringThePoseIsLeftAlone) {
    App app;
    app.camera.target = {0.0f, 0.0f, 0.0f};
    captured(app);
    EXPECT_EQ(app.camera.target, Vec3{});
}

TEST(Capture, WithoutTheVariableNoFrameIsTheLast) {
    Capture capture;
    for (int frame = 0; frame < 100; frame++) EXPECT_FALSE(captureFrame(capture, 0, 0));
}

TEST(Capture, AnEmptyPathEndsTheRunWithoutAPicture) {
    const FakeGl fake;
    const Variable shot("OV_SHOT", "");
    const Variable frames("OV_FRAMES", "3");
    App app;
    Capture capture = captured(app);
    EXPECT_FALSE(captureFrame(capture, 640, 360));
    EXPECT_FALSE(captureFrame(capture, 640, 360));
    EXPECT_TRUE(captureFrame(capture, 640, 360));
    EXPECT_TRUE(callsOf(fake, "ReadPixels").empty());
}

TEST(Capture, TheCountStartsAtOneSoThatALimitOfZeroIsNeverMet) {
    Capture capture{"/nonexistent/picture.bmp", 0, 0};
    for (int frame = 0; frame < 100; frame++) EXPECT_FALSE(captureFrame(capture, 0, 0));
    capture = Capture{"/nonexistent/picture.bmp", 3, 0};
    EXPECT_FALSE(captureFrame(capture, 0, 0));
    EXPECT_FALSE(captureFrame(capture, 0, 0));
    EXPECT_TRUE(captureFrame(capture, 0, 0));
}

// Rows from the bottom, as OpenGL has them: red counts columns, green rows.
static void APIENTRY paintPixels(GLint left, GLint bottom, GLsizei width, GLsizei height, GLenum, GLenum,
                                 void* data) {
    auto* pixel = static_cast<uint8_t*>(data);
    for (int y = bottom; y < bottom + height; y++)
        for (int x = left; x < left + width; x++, pixel += 3) {
            pixel[0] = static_cast<uint8_t>(x);
            pixel[1] = static_cast<uint8_t>(y);
            pixel[2] = 200;
        }
}

TEST(Capture, ThePictureIsThatOfTheBackBuffer) {
    const FakeGl fake;
    gl.ReadPixels = paintPixels;
    const TempDir dir;
    Capture capture{dir.file("picture.bmp"), 1, 0};
    EXPECT_TRUE(captureFrame(capture, 5, 3)); // no row is a multiple of four bytes
    EXPECT_EQ(callsOf(fake, "PixelStorei"), std::vector{glCall("PixelStorei", GL_PACK_ALIGNMENT, 1)});
    EXPECT_EQ(callsOf(fake, "ReadBuffer"), std::vector{glCall("ReadBuffer", GL_BACK)});
    SDL_Surface* picture = SDL_LoadBMP(dir.file("picture.bmp").c_str());
    ASSERT_NE(picture, nullptr);
    EXPECT_EQ(picture->w, 5);
    EXPECT_EQ(picture->h, 3);
    EXPECT_EQ(picture->format->BitsPerPixel, 24);
    for (int y = 0; y < 3; y++)
        for (int x = 0; x < 5; x++) {
            const uint8_t* bgr = static_cast<const uint8_t*>(picture->pixels) + y * picture->pitch + x * 3;
            EXPECT_EQ(bgr[2], x);
            EXPECT_EQ(bgr[1], 2 - y);
            EXPECT_EQ(bgr[0], 200);
        }
    SDL_FreeSurface(picture);
}

TEST(Capture, AWindowWithoutAreaGivesNoPicture) {
    const FakeGl fake;
    for (const auto& [width, height] : {std::pair{0, 3}, {5, 0}, {-5, 3}, {5, -3}}) {
        Capture capture{"/nonexistent/picture.bmp", 1, 0};
        EXPECT_TRUE(captureFrame(capture, width, height));
    }
    EXPECT_TRUE(callsOf(fake, "ReadPixels").empty());
}
