#include "app/session.h"

#include "app/game_fixture.h"
#include "app/tools.h"
#include "sim/city_helpers.h"
#include "sim/map_generation.h"
#include "sim/save_file.h"
#include "view/street/street_life_mesh.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <ctime>
#include <fstream>
#include <limits>

using testing::ElementsAre;
using testing::IsEmpty;

class SessionTest : public GameTest {};

// --- Starting, saving, loading
// ----------------------------------------------------------------------------------

TEST_F(SessionTest, ANewCityResetsTheSession) {
    setTool(app, TOOL_PARK);
    setCurrentOverlay(app, OVERLAY_POWER);
    app.currentPanel = PANEL_FINANCE;
    app.paintDistrict = 5;
    app.dayTimer = 12.5f;
    app.speed = 3;
    app.paused = true;
    selectCell(app, 4, 4);
    app.screen = SCREEN_TITLE;
    app.camera.distance = 50.0f;
    newCity(app);
    EXPECT_EQ(app.screen, SCREEN_GAME);
    EXPECT_EQ(app.currentTool, TOOL_SELECT);
    EXPECT_EQ(app.currentCategory, CATEGORY_SELECT);
    EXPECT_EQ(app.currentOverlay, OVERLAY_NORMAL);
    EXPECT_EQ(app.meshes.overlayMode, OVERLAY_NORMAL);
    EXPECT_EQ(app.currentPanel, PANEL_NONE);
    EXPECT_EQ(app.speed, 1);
    EXPECT_FALSE(app.paused);
    EXPECT_EQ(app.selectedCellX, -1);
    EXPECT_EQ(app.camera.target, (Vec3{384.0f, 0.0f, 384.0f}));
    EXPECT_EQ(app.camera.yaw, 0.8f);
    EXPECT_EQ(app.camera.pitch, 0.95f);
    EXPECT_EQ(app.camera.distance, 190.0f);
    EXPECT_EQ(app.statusId, STATUS_WELCOME);
    EXPECT_EQ(app.statusTimer, 6.0f);
    EXPECT_EQ(app.lastEventCount, app.city.eventCount);
    EXPECT_EQ(app.paintDistrict, 5); // keeps the last value
    EXPECT_EQ(app.dayTimer, 12.5f);  // goes on
}

TEST_F(SessionTest, TheSeedOfANewCityIsTheClock) {
    const auto before = static_cast<uint32_t>(std::time(nullptr)) & 0x7FFFFFFFu;
    newCity(app);
    EXPECT_GE(app.city.seed, before);
    EXPECT_LE(app.city.seed, before + 5);
}

TEST_F(SessionTest, TheTourStartsWithTheFirstCityOnly) {
    newCity(app);
    EXPECT_EQ(app.tutorialStep, -1);
    app.settings.tutorialDone = false;
    newCity(app);
    EXPECT_EQ(app.tutorialStep, 0);
}

TEST_F(SessionTest, ANewCityEndsARunningTourAndBeginsItsOwn) {
    for (const bool done : {true, false}) {
        app.settings.tutorialDone = done;
        app.tutorialStep = 3;
        app.tutorialCard = {10, 10, 480, 210};
        newCity(app);
        EXPECT_EQ(app.tutorialStep, done ? -1 : 0);
        EXPECT_EQ(app.tutorialCard.w, 0.0f); // of the old step
        EXPECT_EQ(app.settings.tutorialDone, done);
    }
}

TEST_F(SessionTest, ALoadEndsARunningTour) {
    app.settings.tutorialDone = false;
    saveGame(app);
    app.tutorialStep = 3;
    app.tutorialCard = {10, 10, 480, 210};
    loadGame(app);
    EXPECT_EQ(app.tutorialStep, -1);
    EXPECT_EQ(app.tutorialCard.w, 0.0f);
    EXPECT_FALSE(app.settings.tutorialDone); // it was neither finished nor skipped
}

TEST_F(SessionTest, AFailedLoadLeavesTheTourRunning) {
    app.tutorialStep = 3;
    loadGame(app);
    EXPECT_EQ(app.tutorialStep, 3);
}

TEST_F(SessionTest, TimeRunsInTheFirstCityThatIsLoaded) {
    saveGame(app);
    app.screen = SCREEN_TITLE;
    loadGame(app);
    frame(0.1f);
    EXPECT_EQ(app.speed, 1);
    EXPECT_GT(app.city.hourOfDay, 9.0f);
}

TEST_F(SessionTest, ALoadFromTheTitleLooksFromWhereANewGameDoes) {
    saveGame(app);
    app.screen = SCREEN_TITLE;
    app.camera.target = {100.0f, 0.0f, 100.0f};
    app.camera.yaw = 2.0f;
    app.camera.pitch = 0.55f;
    app.camera.distance = 330.0f;
    loadGame(app);
    EXPECT_EQ(app.camera.target, (Vec3{384.0f, 0.0f, 384.0f}));
    EXPECT_EQ(app.camera.yaw, 0.8f);
    EXPECT_EQ(app.camera.pitch, 0.95f);
    EXPECT_EQ(app.camera.distance, 190.0f);
}

TEST_F(SessionTest, AFailedLoadLeavesTheTitlesView) {
    app.screen = SCREEN_TITLE;
    app.camera.distance = 330.0f;
    loadGame(app);
    EXPECT_EQ(app.camera.distance, 330.0f);
}

TEST_F(SessionTest, SavingAndLoadingGoRoundTrip) {
    app.city.money = 4321.0;
    cell(30, 30).road = ROAD_AVENUE;
    press(KEY_F5);
    EXPECT_EQ(app.statusId, STATUS_GAME_SAVED);
    EXPECT_EQ(app.statusArg, 0u);
    EXPECT_EQ(app.statusTimer, 6.0f);
    EXPECT_TRUE(app.saveExists);

    app.city.money = 1.0;
    cell(30, 30).road = ROAD_NONE;
    app.currentPanel = PANEL_BUDGET;
    selectCell(app, 3, 3);
    const Camera camera = app.camera;
    app.dayTimer = 7.0f;
    press(KEY_F9);
    EXPECT_EQ(app.city.money, 4321.0);
    EXPECT_EQ(cell(30, 30).road, ROAD_AVENUE);
    EXPECT_EQ(app.statusId, STATUS_LOADED);
    EXPECT_EQ(app.statusArg, 0u);
    EXPECT_EQ(app.currentPanel, PANEL_NONE);
    EXPECT_EQ(app.selectedCellX, -1);
    EXPECT_EQ(app.lastEventCount, app.city.eventCount);
    EXPECT_EQ(app.dayTimer, 7.0f);
    EXPECT_EQ(app.camera.target, camera.target); // a load does not move the camera
    EXPECT_EQ(app.camera.distance, camera.distance);
}

TEST_F(SessionTest, TheHighlightOfTheOldLandIsGoneAfterALoadAndANewCity) {
    saveGame(app);
    for (void (*const enter)(App&) : {loadGame, newCity}) {
        app.city = flatCity();
        point(50, 50);
        frame();
        ASSERT_EQ(app.meshes.hoverX, 50);
        enter(app);
        EXPECT_EQ(app.meshes.hoverX, -1);
        EXPECT_EQ(app.meshes.hoverMesh.vertexCount, 0);
        EXPECT_FALSE(app.hoverValid);
    }
}

TEST_F(SessionTest, TheHighlightLiesOnTheLandThatF9Brings) {
    saveGame(app);
    point(50, 50);
    frame();
    gl.recording = true;
    press(KEY_F9);
    const std::string quad = glCall("BufferData", GL_ARRAY_BUFFER, 6 * 56, &app, GL_STATIC_DRAW);
    const auto uploads = callsOf(gl, "BufferData");
    EXPECT_EQ(std::count(uploads.begin(), uploads.end(), quad), 1);
    EXPECT_EQ(app.meshes.hoverX, 50);
}

TEST_F(SessionTest, AFailedSaveKeepsWhatIsKnownOfTheOldOne) {
    app.savePath = folder + "nowhere/savegame.ovw";
    press(KEY_F5);
    EXPECT_EQ(app.statusId, STATUS_SAVE_FAILED);
    EXPECT_EQ(app.statusArg, 0u);
    EXPECT_FALSE(app.saveExists);
    app.saveExists = true;
    press(KEY_F5);
    EXPECT_TRUE(app.saveExists);
}

TEST_F(SessionTest, AFailedLoadLeavesEverythingAsItWas) {
    app.currentPanel = PANEL_BUDGET;
    const uint64_t before = cityHash(app.city);
    app.screen = SCREEN_TITLE;
    loadGame(app);
    EXPECT_EQ(app.statusId, STATUS_NO_SAVED_GAME);
    EXPECT_EQ(app.statusArg, 0u);
    EXPECT_EQ(app.screen, SCREEN_TITLE);
    EXPECT_EQ(app.currentPanel, PANEL_BUDGET);
    EXPECT_EQ(cityHash(app.city), before);

    std::ofstream(app.savePath) << "OVW2 and nothing behind it";
    loadGame(app);
    EXPECT_EQ(app.statusId, STATUS_NO_SAVED_GAME);
    EXPECT_EQ(app.statusArg, 0u);
    EXPECT_EQ(cityHash(app.city), before);
}

TEST_F(SessionTest, WhilePausedF9WorksAndF5DoesNot) {
    press(KEY_F5);
    app.city.money = 7.0;
    app.paused = true;
    press(KEY_F5);
    EXPECT_TRUE(app.paused);
    press(KEY_F9);
    EXPECT_FALSE(app.paused);
    EXPECT_EQ(app.city.money, 150000.0);
}

// --- Keys
// -------------------------------------------------------------------------------------------------------

TEST_F(SessionTest, EscapeClosesMenuPanelAndSelectionInThisOrderAndThenOpensTheMenu) {
    app.paused = true;
    app.currentPanel = PANEL_STATISTICS;
    selectCell(app, 5, 5);
    press(KEY_ESC);
    EXPECT_FALSE(app.paused);
    EXPECT_EQ(app.currentPanel, PANEL_STATISTICS);
    press(KEY_ESC);
    EXPECT_EQ(app.currentPanel, PANEL_NONE);
    EXPECT_EQ(app.selectedCellX, 5);
    press(KEY_ESC);
    EXPECT_EQ(app.selectedCellX, -1);
    EXPECT_FALSE(app.paused);
    press(KEY_ESC);
    EXPECT_TRUE(app.paused);
}

TEST_F(SessionTest, ASelectedBuildingIsClearedByEscapeToo) {
    addBuilding(app.city, 5, 5, KIND_PARK);
    selectCell(app, 5, 5);
    press(KEY_ESC);
    EXPECT_EQ(app.selectedBuilding, -1);
    EXPECT_FALSE(app.paused);
}

TEST_F(SessionTest, ACellAtTheEdgeOfTheMapIsASelectionLikeOthers) {
    selectCell(app, 0, 0);
    press(KEY_ESC);
    EXPECT_EQ(app.selectedCellX, -1);
    EXPECT_FALSE(app.paused);
}

TEST_F(SessionTest, KeysOfAFrameThatOpensTheMenuAreNotRead) {
    app.speed = 1;
    input.keysPressed[KEY_3] = 1;
    press(KEY_ESC);
    EXPECT_TRUE(app.paused);
    EXPECT_EQ(app.speed, 1);
}

TEST_F(SessionTest, KeysOfAFrameThatClosesTheMenuAreRead) {
    app.paused = true;
    input.keysPressed[KEY_3] = 1;
    press(KEY_ESC);
    EXPECT_EQ(app.speed, 3);
}

TEST_F(SessionTest, SpaceStopsAndStartsTimeAndTheDigitsSetItsSpeed) {
    app.speed = 2;
    press(KEY_SPACE);
    EXPECT_EQ(app.speed, 0);
    press(KEY_SPACE);
    EXPECT_EQ(app.speed, 1);
    press(KEY_3);
    EXPECT_EQ(app.speed, 3);
    press(KEY_2);
    EXPECT_EQ(app.speed, 2);
    press(KEY_1);
    EXPECT_EQ(app.speed, 1);
    setSpeed(app, 9);
    EXPECT_EQ(app.speed, 3);
    setSpeed(app, -9);
    EXPECT_EQ(app.speed, 0);
}

TEST_F(SessionTest, TabGoesThroughAllSixOverlays) {
    for (int step = 1; step <= 6; step++) {
        press(KEY_TAB);
        EXPECT_EQ(app.currentOverlay, step % 6);
        EXPECT_EQ(app.meshes.overlayMode, step % 6);
    }
    setCurrentOverlay(app, 6);
    setCurrentOverlay(app, -1);
    EXPECT_EQ(app.currentOverlay, 0);
}

// --- Time
// -------------------------------------------------------------------------------------------------------

TEST_F(SessionTest, TheTwoClocksRunIndependently) {
    app.speed = 1;
    frame(0.1f);
    EXPECT_FLOAT_EQ(app.dayTimer, 0.1f);
    EXPECT_FLOAT_EQ(app.city.hourOfDay, 9.0f + 0.1f * 24.0f / 1200.0f);
    EXPECT_EQ(app.city.day, 0);
}

TEST_F(SessionTest, AtSpeedThreeATenthOfASecondIsThree) {
    app.speed = 3;
    frame(0.1f);
    EXPECT_FLOAT_EQ(app.dayTimer, 0.3f);
}

TEST_F(SessionTest, ADayTakesFortyFiveSecondsAndIsHeard) {
    app.speed = 1;
    app.dayTimer = 44.95f;
    frame(0.1f);
    EXPECT_EQ(app.city.day, 1);
    EXPECT_NEAR(app.dayTimer, 0.05f, 1e-4f);
    EXPECT_THAT(heard(), ElementsAre(SOUND_DAY_BELL));
}

TEST_F(SessionTest, ADayEndsAtFortyFiveSecondsAndNotBefore) {
    app.speed = 1;
    app.dayTimer = 44.5f;
    frame(0.25f);
    EXPECT_EQ(app.city.day, 0);
    frame(0.25f);
    EXPECT_EQ(app.city.day, 1);
    EXPECT_EQ(app.dayTimer, 0.0f);
}

TEST_F(SessionTest, DaysThatAreOverdueAreNotSkipped) {
    app.speed = 1;
    app.dayTimer = 45.0f * 3 + 1.0f;
    frame(0.1f);
    EXPECT_EQ(app.city.day, 3);
    EXPECT_EQ(heard(), std::vector(3, SOUND_DAY_BELL));
}

TEST_F(SessionTest, MidnightTurnsTheCalendar) {
    app.speed = 1;
    app.city.hourOfDay = 23.999f;
    frame(0.1f);
    EXPECT_EQ(app.city.calendarDay, 1);
    EXPECT_GE(app.city.hourOfDay, 0.0f);
    EXPECT_LT(app.city.hourOfDay, 0.01f);
}

TEST_F(SessionTest, MidnightItselfIsTheNextDay) {
    app.speed = 1;
    app.city.hourOfDay = 23.5f;
    frame(12.5f);
    EXPECT_EQ(app.city.calendarDay, 0);
    frame(12.5f);
    EXPECT_EQ(app.city.calendarDay, 1);
    EXPECT_EQ(app.city.hourOfDay, 0.0f);
    frame(2500.0f); // two days and two hours
    EXPECT_EQ(app.city.calendarDay, 3);
    EXPECT_FLOAT_EQ(app.city.hourOfDay, 2.0f);
}

TEST_F(SessionTest, WildHoursFromASaveComeToAnEnd) {
    app.speed = 1;
    for (const float hour : {1e30f, -1e30f, std::numeric_limits<float>::infinity(), std::nanf("")}) {
        app.city.hourOfDay = hour;
        app.city.calendarDay = std::numeric_limits<int32_t>::max();
        frame(0.1f);
        EXPECT_TRUE(app.city.hourOfDay < 24.0f) << hour;
        EXPECT_EQ(app.city.calendarDay, std::numeric_limits<int32_t>::max());
    }
}

TEST_F(SessionTest, HoursOfManyDaysAreCountedUpToAMillion) {
    app.speed = 1;
    app.city.hourOfDay = 24.0f * 41000.0f;
    frame();
    EXPECT_EQ(app.city.calendarDay, 41000);
    EXPECT_EQ(app.city.hourOfDay, 0.0f);
    for (const float wild : {24.0f * 42000.0f, -24.0f * 42000.0f}) {
        app.city.hourOfDay = wild;
        frame();
        EXPECT_EQ(app.city.calendarDay, 41000);
        EXPECT_EQ(app.city.hourOfDay, 0.0f);
    }
}

TEST_F(SessionTest, AtSpeedZeroTheClocksStandAndTheToolsWork) {
    app.speed = 0;
    app.dayTimer = 44.99f;
    setTool(app, TOOL_STREET);
    pressAt(50, 50);
    frame(0.1f);
    EXPECT_EQ(app.city.day, 0);
    EXPECT_EQ(app.dayTimer, 44.99f);
    EXPECT_EQ(app.city.hourOfDay, 9.0f);
    EXPECT_EQ(cell(50, 50).road, ROAD_STREET);
}

TEST_F(SessionTest, WhilePausedTheCameraMovesAndTimeAndToolsDoNot) {
    app.paused = true;
    app.speed = 3;
    setTool(app, TOOL_STREET);
    input.keysHeld[KEY_W] = 1;
    const float before = app.camera.target.z;
    pressAt(50, 50);
    frame(0.1f);
    EXPECT_NE(app.camera.target.z, before);
    EXPECT_EQ(app.dayTimer, 0.0f);
    EXPECT_EQ(cell(50, 50).road, ROAD_NONE);
    EXPECT_EQ(app.meshes.hoverX, -1);
}

TEST_F(SessionTest, TheWheelOverTheInterfaceIsNotTheCameras) {
    const auto distanceAfterAStepAt = [&](float x, float y) {
        app.camera.distance = 190.0f;
        input.mouseX = x;
        input.mouseY = y;
        input.wheel = 1.0f;
        frame();
        return app.camera.distance;
    };
    EXPECT_LT(distanceAfterAStepAt(800, 450), 190.0f);
    EXPECT_EQ(distanceAfterAStepAt(800, 20), 190.0f);  // the top bar
    EXPECT_EQ(distanceAfterAStepAt(100, 300), 190.0f); // the tools
    EXPECT_EQ(distanceAfterAStepAt(1500, 300), 190.0f);
    EXPECT_EQ(distanceAfterAStepAt(800, 850), 190.0f);
}

TEST_F(SessionTest, ADragThatBeganOnTheInterfaceIsNotTheCameras) {
    const Camera before = app.camera;
    for (uint8_t Input::*button : {&Input::rightHeld, &Input::middleHeld}) {
        input.mouseX = 100; // the tools
        input.mouseY = 300;
        input.*button = 1;
        frame();
        input.mouseX = 800; // over the land, where it would turn or pull
        frame();
        input.mouseX = 850;
        frame();
        EXPECT_EQ(app.camera.yaw, before.yaw);
        EXPECT_EQ(app.camera.target, before.target);
        input.*button = 0;
        frame();
    }
}

TEST_F(SessionTest, ADragOfTheViewGoesOnOverTheInterface) {
    input.mouseX = 800;
    input.mouseY = 450;
    frame();
    input.rightHeld = 1;
    frame();
    input.mouseX = 100;
    frame();
    const float turned = app.camera.yaw;
    EXPECT_NE(turned, 0.8f);
    input.mouseX = 50;
    frame();
    EXPECT_NE(app.camera.yaw, turned);
}

TEST_F(SessionTest, TheTopEdgePansUnderTheBar) {
    const Vec3 before = app.camera.target;
    input.mouseX = 800;
    input.mouseY = 5;
    frame(0.05f);
    EXPECT_NE(app.camera.target, before);
}

TEST_F(SessionTest, AFinishedMissionIsHeard) {
    app.speed = 1;
    layRoads(app.city, 40, 40, 59, 40);
    for (int x = 40; x < 60; x++) cell(x, 41).zone = ZONE_RESIDENTIAL;
    app.dayTimer = 45.0f;
    frame(0.01f);
    EXPECT_EQ(app.city.missionIndex, 1);
    EXPECT_THAT(heard(), ElementsAre(SOUND_MISSION, SOUND_DAY_BELL));
    EXPECT_EQ(app.statusId, STATUS_MISSION_COMPLETE);
}

// --- Street life

class StreetLifeInPlay : public SessionTest {
protected:
    // Days have passed in the city: so many people were counted at the end of the last.
    void settle(float people) {
        layRoads(app.city, 20, 40, 75, 40);
        layRoads(app.city, 48, 20, 48, 75);
        app.city.historyCount = 3;
        app.city.history[HISTORY_POPULATION] = {10000.0f, 0.0f, people};
        app.city.population = 7;
    }
    // The streets fill as for so many people.
    void expectPopulation(int population) {
        app.speed = 3;
        app.dayTimer = -100.0f; // no day ends meanwhile
        app.streetLife = {};
        StreetLife expected;
        for (int i = 0; i < 150; i++) {
            frame(0.1f);
            updateStreetLife(expected, app.city, 0.3f, population);
        }
        EXPECT_TRUE(app.streetLife == expected) << population;
    }
};

TEST_F(StreetLifeInPlay, IsSteppedByTheGamesTimeWithTheLastPopulation) {
    settle(250.6f);
    StreetLife expected;
    for (const int speed : {3, 1, 0, 2}) {
        app.speed = speed;
        for (int i = 0; i < 20; i++) {
            frame(0.1f);
            updateStreetLife(expected, app.city, static_cast<float>(speed) * 0.1f, 250);
            ASSERT_TRUE(app.streetLife == expected) << speed << " " << i;
        }
    }
    EXPECT_GT(expected.vehicles.size(), 3u);
}

TEST_F(StreetLifeInPlay, StandsInThePauseAndCountsNobodyBeforeTheFirstDay) {
    settle(5000.0f);
    app.city.historyCount = 0;
    app.speed = 3;
    StreetLife expected;
    for (int i = 0; i < 30; i++) {
        app.paused = i >= 20;
        frame(0.1f);
        updateStreetLife(expected, app.city, app.paused ? 0.0f : 0.3f, 0);
        ASSERT_TRUE(app.streetLife == expected) << i;
    }
}

TEST_F(StreetLifeInPlay, ChartsThatNoCityHasCountForSomeNumber) {
    for (const float charted : {-250.0f, std::nanf(""), 0.0f}) {
        settle(charted);
        expectPopulation(0);
    }
    for (const float charted : {1e9f, 1e30f}) {
        settle(charted);
        expectPopulation(1000000000);
    }
}

TEST_F(StreetLifeInPlay, TheLastEntryOfAFullChartCounts) {
    settle(400.0f);
    app.city.history[HISTORY_POPULATION].fill(0.0f);
    app.city.history[HISTORY_POPULATION][HISTORY_LENGTH - 1] = 600.0f;
    for (const int count : {HISTORY_LENGTH, HISTORY_LENGTH + 5}) { // the second as in a wild save
        app.city.historyCount = count;
        expectPopulation(600);
    }
    app.city.history[HISTORY_POPULATION][0] = 500.0f;
    app.city.historyCount = 1;
    expectPopulation(500);
}

TEST_F(StreetLifeInPlay, ItsMeshFollowsEachFrame) {
    settle(400.0f);
    for (int i = 0; i < 20; i++) {
        frame(0.1f);
        MeshBuilder expected;
        buildStreetLifeMesh(expected, app.city, app.streetLife);
        ASSERT_EQ(app.meshes.streetLifeMesh.vertexCount, static_cast<int32_t>(expected.size())) << i;
        ASSERT_TRUE(expected.empty() || std::memcmp(app.meshes.streetLifeBuilder.data(), expected.data(),
                                                    expected.size() * sizeof(Vertex)) == 0)
            << i;
    }
    EXPECT_GT(app.meshes.streetLifeMesh.vertexCount, 0);
}

TEST_F(StreetLifeInPlay, ANewCityAndALoadedOneBeginWithEmptyStreets) {
    saveGame(app);
    for (void (*const enter)(App&) : {loadGame, newCity}) {
        settle(400.0f);
        for (int i = 0; i < 20; i++) frame(0.1f);
        ASSERT_FALSE(app.streetLife.vehicles.empty());
        const uint32_t rng = app.streetLife.rng;
        enter(app);
        StreetLife empty;
        empty.rng = rng;
        EXPECT_TRUE(app.streetLife == empty);
    }
}

// --- News and the end
// -------------------------------------------------------------------------------------------

TEST_F(SessionTest, NewsShowsTheNewestEventForSixSeconds) {
    postEvent(app.city, STATUS_FINISHED, KIND_SCHOOL);
    postEvent(app.city, STATUS_FINISHED, KIND_PARK);
    frame(0.1f);
    EXPECT_EQ(app.statusId, STATUS_FINISHED);
    EXPECT_EQ(app.statusArg, static_cast<uint32_t>(KIND_PARK));
    EXPECT_EQ(app.statusTimer, 6.0f);
    frame(0.1f);
    EXPECT_FLOAT_EQ(app.statusTimer, 5.9f);
}

TEST_F(SessionTest, NewsWithoutAnEntryIsTakenNoteOfInSilence) {
    app.statusId = STATUS_STREET_BUILT;
    app.city.eventCount = 12;
    app.city.events.clear();
    frame();
    EXPECT_EQ(app.lastEventCount, 12u);
    EXPECT_EQ(app.statusId, STATUS_STREET_BUILT);
}

TEST_F(SessionTest, TheStatusLineCountsDownToItsEndAndNoFurther) {
    showStatus(app, STATUS_STREET_BUILT, 0);
    app.paused = true; // there too
    frame(5.5f);
    EXPECT_EQ(app.statusTimer, 0.5f);
    frame(0.5f);
    EXPECT_EQ(app.statusTimer, 0.0f);
    frame(0.5f);
    EXPECT_EQ(app.statusTimer, 0.0f);
}

TEST_F(SessionTest, BankruptcyEndsTheGame) {
    selectCell(app, 4, 4);
    app.city.bankrupt = 1;
    frame();
    EXPECT_EQ(app.screen, SCREEN_END);
    EXPECT_EQ(app.selectedCellX, -1);
}

TEST_F(SessionTest, FinishedMissionsEndTheGameUntilThePlayerKeepsBuilding) {
    app.city.allMissionsDone = 1;
    app.city.keepPlaying = 1;
    frame();
    EXPECT_EQ(app.screen, SCREEN_GAME);
    app.city.keepPlaying = 0;
    frame();
    EXPECT_EQ(app.screen, SCREEN_END);
}

TEST_F(SessionTest, ALoadedBankruptCityGoesStraightBackToItsEnd) {
    app.city.bankrupt = 1;
    saveGame(app);
    app.city.bankrupt = 0;
    loadGame(app);
    EXPECT_EQ(app.screen, SCREEN_GAME);
    frame();
    EXPECT_EQ(app.screen, SCREEN_END);
}

// --- Nothing more than that
// -------------------------------------------------------------------------------------

TEST_F(SessionTest, TimeGoesByInSilenceAndAsksNothingOfTheSystem) {
    app.speed = 3;
    for (int i = 0; i < 140; i++) {
        point(40 + i % 16, 48);
        frame(0.1f);
    }
    EXPECT_EQ(app.city.day, 0);
    EXPECT_THAT(heard(), IsEmpty());
    EXPECT_THAT(asked(), IsEmpty());
}

TEST_F(SessionTest, KeysAndANewCityPlayNothingAndTouchNoFile) {
    for (int key = 0; key < KEY_COUNT; key++)
        if (key != KEY_F5 && key != KEY_F9) {
            press(static_cast<Key>(key));
            app.paused = false;
        }
    app.settings.tutorialDone = false;
    newCity(app);
    frame(0.1f);
    EXPECT_THAT(heard(), IsEmpty());
    EXPECT_THAT(asked(), IsEmpty());
    EXPECT_FALSE(app.quitRequested || app.displayDirty || app.saveExists);
}

TEST_F(SessionTest, ASaveAndALoadTouchTheirFileAlone) {
    press(KEY_F5);
    EXPECT_THAT(asked(), ElementsAre("writes " + app.savePath));
    press(KEY_F9);
    EXPECT_THAT(asked(), ElementsAre("reads " + app.savePath));
    EXPECT_THAT(heard(), IsEmpty());
}
