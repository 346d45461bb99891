#include "app/picking.h"

#include "allocation_count.h"
#include "sim/map_generation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

static void setCamera(App& app, float x, float z, float yaw, float pitch, float distance) {
    app.camera.target = {x, 0.0f, z};
    app.camera.yaw = yaw;
    app.camera.pitch = pitch;
    app.camera.distance = distance;
}

// A game on flat land at the given height, seen as at the start of a new game.
static App flatGame(float height) {
    App app;
    std::fill(app.city.heights.begin(), app.city.heights.end(), height);
    app.screen = SCREEN_GAME;
    setCamera(app, 384, 384, 0.8f, 0.95f, 190);
    return app;
}

static App hillyGame() {
    App app = flatGame(0.0f);
    generateMap(app.city, 0);
    return app;
}

static Input windowInput() {
    Input input;
    input.drawableWidth = 1280;
    input.drawableHeight = 720;
    input.mouseX = 640;
    input.mouseY = 360;
    return input;
}

// Puts the mouse where the frame shows a point of the world; false when it is out of sight.
static bool pointAt(const App& app, Input& input, const Vec3& p) {
    FrameParams params;
    buildFrameParams(params, app, input, 0.0f);
    const Vec3 ndc = transformPoint(params.viewProj, p);
    input.mouseX = (ndc.x + 1.0f) / 2.0f * static_cast<float>(input.drawableWidth);
    input.mouseY = (1.0f - ndc.y) / 2.0f * static_cast<float>(input.drawableHeight);
    return std::abs(ndc.x) < 1.0f && std::abs(ndc.y) < 1.0f && std::abs(ndc.z) < 1.0f;
}

static Vec3 cellCentre(const City& city, int x, int y) {
    const float worldX = (static_cast<float>(x) + 0.5f) * CELL_WIDTH;
    const float worldZ = (static_cast<float>(y) + 0.5f) * CELL_WIDTH;
    return {worldX, heightAt(city, worldX, worldZ), worldZ};
}

// Every cell in sight is picked by pointing at its centre. Gives their number.
static int expectEveryCellInSightPicksItself(const App& app) {
    Input input = windowInput();
    int inSight = 0;
    for (int y = 0; y < GRID_SIZE; y++)
        for (int x = 0; x < GRID_SIZE; x++) {
            if (!pointAt(app, input, cellCentre(app.city, x, y))) continue;
            int pickedX = -1;
            int pickedY = -1;
            EXPECT_TRUE(pickCell(app, input, pickedX, pickedY)) << x << ", " << y;
            EXPECT_EQ(pickedX, x) << x << ", " << y;
            EXPECT_EQ(pickedY, y) << x << ", " << y;
            inSight++;
        }
    return inSight;
}

TEST(FrameParams, TheFrameFollowsTheWindowButNeverVanishes) {
    App app;
    FrameParams params;
    Input input = windowInput();
    buildFrameParams(params, app, input, 12.5f);
    EXPECT_EQ(params.width, 1280);
    EXPECT_EQ(params.height, 720);
    EXPECT_EQ(params.time, 12.5f);
    input.drawableWidth = -3;
    input.drawableHeight = 0;
    buildFrameParams(params, app, input, 0.0f);
    EXPECT_EQ(params.width, 1);
    EXPECT_EQ(params.height, 1);
    for (const float value : params.viewProj) EXPECT_TRUE(std::isfinite(value));
}

TEST(FrameParams, TheCameraStandsOverTheGroundUnderItsTarget) {
    App app = hillyGame();
    setCamera(app, 200, 500, 0.4f, 0.7f, 120);
    app.camera.target.y = 77.0f; // not used
    FrameParams params;
    buildFrameParams(params, app, windowInput(), 0.0f);
    EXPECT_EQ(params.cameraTarget, (Vec3{200, heightAt(app.city, 200, 500), 500}));
    const Vec3 offset = params.cameraPos - params.cameraTarget;
    EXPECT_NEAR(offset.x, 120.0f * std::sin(0.4f) * std::cos(0.7f), 1e-3f);
    EXPECT_NEAR(offset.y, 120.0f * std::sin(0.7f), 1e-3f);
    EXPECT_NEAR(offset.z, 120.0f * std::cos(0.4f) * std::cos(0.7f), 1e-3f);
}

TEST(FrameParams, TheTargetIsInTheMiddleAndTheViewIs46DegreesHigh) {
    const App app = flatGame(10.0f);
    FrameParams params;
    buildFrameParams(params, app, windowInput(), 0.0f);
    const Vec3 middle = transformPoint(params.viewProj, params.cameraTarget);
    EXPECT_NEAR(middle.x, 0.0f, 1e-4f);
    EXPECT_NEAR(middle.y, 0.0f, 1e-4f);

    // A point on the upper border of the view, 0.4 radians above its axis.
    const Vec3 forward = normalised(params.cameraTarget - params.cameraPos);
    const Vec3 right = normalised(cross(forward, {0, 1, 0}));
    const Vec3 up = cross(right, forward);
    const Vec3 onBorder = params.cameraPos + (forward + up * std::tan(0.4f)) * 100.0f;
    EXPECT_NEAR(transformPoint(params.viewProj, onBorder).y, 1.0f, 1e-4f);
    const Vec3 onSide = params.cameraPos + (forward + right * (std::tan(0.4f) * 1280.0f / 720.0f)) * 100.0f;
    EXPECT_NEAR(transformPoint(params.viewProj, onSide).x, 1.0f, 1e-4f);
}

TEST(FrameParams, DepthRunsFrom2To4000) {
    const App app = flatGame(10.0f);
    FrameParams params;
    buildFrameParams(params, app, windowInput(), 0.0f);
    const Vec3 forward = normalised(params.cameraTarget - params.cameraPos);
    EXPECT_NEAR(transformPoint(params.viewProj, params.cameraPos + forward * 2.0f).z, -1.0f, 1e-3f);
    EXPECT_NEAR(transformPoint(params.viewProj, params.cameraPos + forward * 4000.0f).z, 1.0f, 1e-3f);
}

TEST(FrameParams, TheCityInPlayGivesHourAndWeatherAndTheMenusTheirEvening) {
    App app;
    app.city.hourOfDay = 3.25f;
    app.city.raining = 1;
    FrameParams params;
    const auto expectLight = [&](Screen screen, Screen returnScreen, float hour, int overcast) {
        app.screen = screen;
        app.returnScreen = returnScreen;
        buildFrameParams(params, app, windowInput(), 0.0f);
        EXPECT_EQ(params.hour, hour) << screen;
        EXPECT_EQ(params.overcast, overcast) << screen;
    };
    expectLight(SCREEN_GAME, SCREEN_TITLE, 3.25f, 1);
    expectLight(SCREEN_END, SCREEN_TITLE, 3.25f, 1);
    expectLight(SCREEN_SETTINGS, SCREEN_GAME, 3.25f, 1);
    expectLight(SCREEN_SETTINGS, SCREEN_TITLE, 17.6f, 0);
    expectLight(SCREEN_TITLE, SCREEN_GAME, 17.6f, 0);
    expectLight(SCREEN_LAUNCHER, SCREEN_TITLE, 17.6f, 0);
}

TEST(FrameParams, ShadowsFollowTheSetting) {
    App app;
    FrameParams params;
    const auto shadowSizeAt = [&](int quality) {
        app.settings.quality = quality;
        buildFrameParams(params, app, windowInput(), 0.0f);
        return params.shadowSize;
    };
    EXPECT_EQ(shadowSizeAt(0), 0);
    EXPECT_EQ(shadowSizeAt(1), 1024);
    EXPECT_EQ(shadowSizeAt(2), 2048);
}

TEST(Picking, EveryCellInSightOfFlatLandPicksItself) {
    for (const float yaw : {0.0f, 0.8f, 2.5f, -2.0f}) {
        App app = flatGame(10.0f);
        app.camera.yaw = yaw;
        EXPECT_GT(expectEveryCellInSightPicksItself(app), 100);
    }
}

TEST(Picking, ALowViewReachesFarCells) {
    App app = flatGame(6.0f);
    setCamera(app, 384, 500, 0.0f, 0.52f, 150);
    EXPECT_GT(expectEveryCellInSightPicksItself(app), 1000);
}

TEST(Picking, HillsArePickedWhereTheyStand) {
    App app = hillyGame();
    for (const Vec3& target : {Vec3{140, 0, 630}, Vec3{660, 0, 122}, Vec3{384, 0, 384}}) {
        setCamera(app, target.x, target.z, 0.8f, 1.35f, 150);
        EXPECT_GT(expectEveryCellInSightPicksItself(app), 100);
    }
}

TEST(Picking, AHillHidesWhatLiesBehindIt) {
    App app = flatGame(0.0f);
    for (int x = 0; x < CORNER_SIDE; x++)
        app.city.heights[cornerIndex(x, 50)] = 40.0f; // a ridge along z = 400
    setCamera(app, 384, 440, 0.0f, 0.52f, 100);
    Input input = windowInput();
    ASSERT_TRUE(pointAt(app, input, {384, 0, 380}));
    int x = -1;
    int y = -1;
    ASSERT_TRUE(pickCell(app, input, x, y));
    EXPECT_EQ(y, 50); // the side of the ridge that faces the eye
}

TEST(Picking, TheVeryEdgeOfTheMapIsCell95) {
    App app = flatGame(0.0f);
    for (const float yaw : {0.0f, 0.8f, 1.5707964f, 3.1415927f}) { // along the edge and from outside it
        setCamera(app, 767.99f, 400, yaw, 0.95f, 60);
        Input input = windowInput();
        ASSERT_TRUE(pointAt(app, input, {767.99f, 0.0f, 404.0f}));
        int x = -1;
        int y = -1;
        ASSERT_TRUE(pickCell(app, input, x, y));
        EXPECT_EQ(x, 95);
        EXPECT_EQ(y, 50);
    }
}

TEST(Picking, PointsBesideTheMapPickNothing) {
    App app = flatGame(0.0f);
    setCamera(app, 760, 400, 0.0f, 0.95f, 60);
    Input input = windowInput();
    ASSERT_TRUE(pointAt(app, input, {768.5f, 0.0f, 404.0f}));
    int x = -7;
    int y = -7;
    EXPECT_FALSE(pickCell(app, input, x, y));
}

TEST(Picking, TheFirstEdgeOfTheMapIsCell0) {
    App app = flatGame(0.0f);
    setCamera(app, 300, 0.01f, 1.5707964f, 0.95f, 60);
    Input input = windowInput();
    ASSERT_TRUE(pointAt(app, input, {300.0f, 0.0f, 0.01f}));
    int x = -1;
    int y = -1;
    ASSERT_TRUE(pickCell(app, input, x, y));
    EXPECT_EQ(x, 37);
    EXPECT_EQ(y, 0);
}

TEST(Picking, ARayThatComesOntoTheMapBelowItsGroundHitsTheEdge) {
    App app = flatGame(50.0f);
    setCamera(app, -60, 388, -1.5707964f, 0.52f, 100); // the eye far out in the west, looking east
    Input input = windowInput();
    ASSERT_TRUE(pointAt(app, input, {0.0f, 20.0f, 388.0f})); // 30 under the land's edge
    int x = -1;
    int y = -1;
    ASSERT_TRUE(pickCell(app, input, x, y));
    EXPECT_EQ(x, 0);
    EXPECT_EQ(y, 48);
}

TEST(Picking, ARayThatStartsUnderTheGroundHitsWhereItStarts) {
    App app = flatGame(0.0f);
    setCamera(app, 384, 384, 0.0f, 0.52f, 40);
    // A hill over the eye, which stands 35 units south of its target.
    for (int y = 51; y < 55; y++)
        for (int x = 45; x < 52; x++) app.city.heights[cornerIndex(x, y)] = 200.0f;
    Input input = windowInput();
    input.mouseX = 640;
    input.mouseY = 360;
    int x = -1;
    int y = -1;
    ASSERT_TRUE(pickCell(app, input, x, y));
    EXPECT_EQ(x, 48);
    EXPECT_EQ(y, 52);
}

TEST(Picking, TheSkyPicksNothing) {
    App app = flatGame(0.0f);
    setCamera(app, 384, 384, 0.0f, 0.1f, 100);
    Input input = windowInput();
    input.mouseX = 640;
    input.mouseY = 0;
    int x;
    int y;
    EXPECT_FALSE(pickCell(app, input, x, y));
}

TEST(Picking, APointerThatIsNowherePicksNothing) {
    App app = flatGame(10.0f);
    setCamera(app, 384, 384, 0.0f, 1.35f, 190); // from where land is seen in all directions
    Input input = windowInput();
    int x;
    int y;
    EXPECT_TRUE(pickCell(app, input, x, y));
    input.mouseX = input.mouseY = POINTER_NOWHERE;
    EXPECT_FALSE(pickCell(app, input, x, y));
}

TEST(Picking, AWindowWithoutAreaPicksNothing) {
    const App app = flatGame(10.0f);
    for (const int side : {0, -5}) {
        Input input = windowInput();
        int x;
        int y;
        input.drawableHeight = side;
        EXPECT_FALSE(pickCell(app, input, x, y));
        input = windowInput();
        input.drawableWidth = side;
        EXPECT_FALSE(pickCell(app, input, x, y));
    }
}

TEST(Picking, OddMiceAndPosesAndHeightsEndWithoutACellOffTheMap) {
    const float odd[] = {std::numeric_limits<float>::quiet_NaN(),
                         std::numeric_limits<float>::infinity(),
                         -1e38f,
                         1e30f,
                         0.0f,
                         300.0f};
    for (const float value : odd)
        for (const float other : odd) {
            App app = hillyGame();
            Input input = windowInput();
            input.mouseX = value;
            input.mouseY = other;
            int x = 0;
            int y = 0;
            EXPECT_TRUE(!pickCell(app, input, x, y) || inMap(x, y));
            input.mouseX = 640;
            input.mouseY = 360;
            setCamera(app, value, other, other, value, value);
            EXPECT_TRUE(!pickCell(app, input, x, y) || inMap(x, y));
            app = hillyGame();
            std::fill(app.city.heights.begin(), app.city.heights.begin() + CORNER_COUNT / 2, value);
            EXPECT_TRUE(!pickCell(app, input, x, y) || inMap(x, y));
        }
}

TEST(Picking, AFrameTakesNothingFromTheHeap) {
    const App app = hillyGame();
    Input input = windowInput();
    input.mouseX = 500;
    input.mouseY = 300;
    const uint64_t before = allocationCount();
    FrameParams params;
    buildFrameParams(params, app, input, 1.0f);
    int x;
    int y;
    const bool picked = pickCell(app, input, x, y);
    EXPECT_EQ(allocationCount(), before);
    EXPECT_TRUE(picked);
}
