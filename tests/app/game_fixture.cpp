#include "app/game_fixture.h"

#include "app/session.h"
#include "sim/city_helpers.h"
#include "view/picking.h"

#include <filesystem>

GameTest::GameTest() {
    gl.recording = false;
    app.ui.fonts = &app.fonts; // without a font, so that nothing is written
    const auto* test = testing::UnitTest::GetInstance()->current_test_info();
    folder = testing::TempDir() + test->test_suite_name() + "." + test->name() + "/";
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder);
    app.savePath = folder + "savegame.ovw";
    app.settingsPath = folder + "settings.ini";
    app.settings.tutorialDone = true;
    app.city = flatCity();
    app.screen = SCREEN_GAME;
    app.initialised = true;
    app.camera.target = {384.0f, 0.0f, 384.0f};
    app.camera.yaw = 0.8f;
    app.camera.pitch = 0.95f;
    app.camera.distance = 190.0f;
    input.drawableWidth = 1600;
    input.drawableHeight = 900;
    point(48, 48);
}

void GameTest::frame(float dt) {
    stepGame(app, input, dt);
    app.camera.previousInput = input;
    input.leftPressed = input.leftReleased = 0;
    input.wheel = 0.0f;
    input.keysPressed.fill(0);
}

void GameTest::press(Key key) {
    input.keysPressed[key] = 1;
    frame();
}

void GameTest::point(int x, int y) {
    FrameParams params;
    buildFrameParams(params, app, input, 0.0f);
    const float worldX = (static_cast<float>(x) + 0.5f) * CELL_WIDTH;
    const float worldZ = (static_cast<float>(y) + 0.5f) * CELL_WIDTH;
    const Vec3 seen = transformPoint(params.viewProj, {worldX, heightAt(app.city, worldX, worldZ), worldZ});
    input.mouseX = (seen.x + 1.0f) / 2.0f * 1600.0f;
    input.mouseY = (1.0f - seen.y) / 2.0f * 900.0f;
}

void GameTest::pointOffTheMap() {
    input.mouseX = 800.0f;
    input.mouseY = -100000.0f;
}

void GameTest::pressAt(int x, int y) {
    point(x, y);
    input.leftPressed = input.leftHeld = 1;
    frame();
}

void GameTest::dragTo(int x, int y) {
    point(x, y);
    frame();
}

void GameTest::releaseAt(int x, int y) {
    point(x, y);
    input.leftHeld = 0;
    input.leftReleased = 1;
    frame();
}

void GameTest::click(int x, int y) {
    pressAt(x, y);
    releaseAt(x, y);
}
