#include "view/picture/camera.h"

#include "allocation_count.h"
#include "view/picture/camera_cases.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string_view>

constexpr float NOT_A_NUMBER = std::numeric_limits<float>::quiet_NaN();
constexpr float ENDLESS = std::numeric_limits<float>::infinity();

static Camera cameraAt(const CameraPose& pose) {
    Camera camera;
    camera.target = {pose.x, 0.0f, pose.z};
    camera.yaw = pose.yaw;
    camera.pitch = pose.pitch;
    camera.distance = pose.distance;
    return camera;
}

static void expectPose(const Camera& camera, const CameraPose& pose) {
    EXPECT_NEAR(camera.target.x, pose.x, 0.02f);
    EXPECT_NEAR(camera.target.z, pose.z, 0.02f);
    EXPECT_NEAR(camera.yaw, pose.yaw, 1e-4f);
    EXPECT_NEAR(camera.pitch, pose.pitch, 1e-4f);
    EXPECT_NEAR(camera.distance, pose.distance, 0.02f);
}

static void expectSane(const Camera& camera) {
    EXPECT_TRUE(std::isfinite(camera.target.x));
    EXPECT_TRUE(std::isfinite(camera.target.z));
    EXPECT_TRUE(std::isfinite(camera.yaw));
    EXPECT_GE(camera.pitch, 0.52f);
    EXPECT_LE(camera.pitch, 1.35f);
    EXPECT_GE(camera.distance, 40.0f);
    EXPECT_LE(camera.distance, 420.0f);
}

// The pose of a new game: near enough for the whole view to lie on the map.
static Camera newGameCamera() { return cameraAt({384, 384, 0.8f, 0.95f, 190}); }

static Input stillInput() {
    Input input;
    input.drawableWidth = 1280;
    input.drawableHeight = 720;
    input.mouseX = 640;
    input.mouseY = 360;
    return input;
}

static void hold(Input& input, char held) {
    switch (held) {
    case '(':
        input.rightHeld = 1;
        return;
    case ')':
        input.middleHeld = 1;
        return;
    default:
        const std::string_view letters = "WASDQE^v<>"; // in the order of Key
        input.keysHeld[letters.find(held)] = 1;
    }
}

static Input inputOf(const CameraFrameCase& row) {
    Input input;
    input.drawableWidth = row.width;
    input.drawableHeight = row.height;
    input.mouseX = row.mouse[0];
    input.mouseY = row.mouse[1];
    input.wheel = row.wheel;
    for (const char* held = row.held; *held; held++) hold(input, *held);
    return input;
}

TEST(Camera, AFrameOfInputMovesThePoseAsTheTableSays) {
    for (const CameraFrameCase& row : CAMERA_FRAME_CASES) {
        SCOPED_TRACE(row.name);
        Camera camera = cameraAt(row.before);
        camera.previousInput.mouseX = row.previousMouse[0];
        camera.previousInput.mouseY = row.previousMouse[1];
        updateCamera(camera, inputOf(row), row.dt);
        expectPose(camera, row.after);
    }
}

TEST(Camera, TheClampLeavesThePoseThatTheTableSays) {
    for (const CameraClampCase& row : CAMERA_CLAMP_CASES) {
        SCOPED_TRACE(testing::Message() << "aspect " << row.aspect << " pitch " << row.before.pitch);
        Camera camera = cameraAt(row.before);
        clampCamera(camera, row.aspect);
        expectPose(camera, row.after);
    }
}

TEST(Camera, TheEyeLiesTowardsTheYawAndAboveTheHorizon) {
    EXPECT_LT(length(cameraDirection(cameraAt({0, 0, 0, 0.6f, 1})) - Vec3{0, std::sin(0.6f), std::cos(0.6f)}),
              1e-6f);
    EXPECT_LT(length(cameraDirection(cameraAt({0, 0, 1.5707964f, 0.6f, 1})) -
                     Vec3{std::cos(0.6f), std::sin(0.6f), 0}),
              1e-6f);
    EXPECT_NEAR(length(cameraDirection(newGameCamera())), 1.0f, 1e-6f);
}

TEST(Camera, PanningForwardMovesAwayFromTheEye) {
    Camera camera = newGameCamera();
    const Vec3 eye = cameraDirection(camera);
    Input input = stillInput();
    input.keysHeld[KEY_W] = 1;
    updateCamera(camera, input, 0.05f);
    const Vec3 moved = camera.target - newGameCamera().target;
    EXPECT_NEAR(length(moved), 190.0f * 0.9f * 0.05f, 1e-3f);
    EXPECT_LT(dot(moved, eye), 0.0f);
    EXPECT_NEAR(cross(moved, eye).y, 0.0f, 1e-3f);
}

TEST(Camera, AKeyAndAnEdgeTogetherPanAtTwiceTheSpeed) {
    Camera byKey = newGameCamera();
    Input input = stillInput();
    input.keysHeld[KEY_W] = 1;
    updateCamera(byKey, input, 0.01f);

    Camera byBoth = newGameCamera();
    input.mouseY = 9;
    updateCamera(byBoth, input, 0.01f);
    const Vec3 start = newGameCamera().target;
    EXPECT_NEAR(byBoth.target.x - start.x, 2 * (byKey.target.x - start.x), 1e-3f);
    EXPECT_NEAR(byBoth.target.z - start.z, 2 * (byKey.target.z - start.z), 1e-3f);
    EXPECT_GT(length(byKey.target - start), 1.0f);
}

TEST(Camera, TwoKeysOfOneDirectionCountOnce) {
    Camera one = newGameCamera();
    Camera two = newGameCamera();
    Input input = stillInput();
    input.keysHeld[KEY_D] = 1;
    updateCamera(one, input, 0.02f);
    input.keysHeld[KEY_RIGHT] = 1;
    updateCamera(two, input, 0.02f);
    EXPECT_EQ(one.target, two.target);
}

TEST(Camera, AHeldMouseButtonStopsThePanAtTheEdges) {
    for (uint8_t Input::*button : {&Input::rightHeld, &Input::middleHeld}) {
        Camera camera = newGameCamera();
        Input input = stillInput();
        input.mouseX = 0;
        input.*button = 1;
        camera.previousInput = input;
        updateCamera(camera, input, 0.05f);
        EXPECT_EQ(camera.target, newGameCamera().target);
    }
}

TEST(Camera, APointerThatIsNowherePansNothing) {
    Camera camera = newGameCamera();
    Input input = stillInput();
    input.mouseX = input.mouseY = POINTER_NOWHERE;
    for (int frame = 0; frame < 60; frame++) updateCamera(camera, input, 0.1f);
    EXPECT_EQ(camera.target, newGameCamera().target);
}

TEST(Camera, AHeldButtonTurnsTheViewOnlyBetweenTwoKnownPlaces) {
    for (uint8_t Input::*button : {&Input::rightHeld, &Input::middleHeld}) {
        Camera camera = newGameCamera();
        Input input = stillInput();
        input.*button = 1;
        updateCamera(camera, input, 0.01f); // the pointer comes from nowhere
        EXPECT_EQ(camera.target, newGameCamera().target);
        EXPECT_EQ(camera.yaw, newGameCamera().yaw);
        camera.previousInput = input;
        input.mouseX = input.mouseY = POINTER_NOWHERE;
        updateCamera(camera, input, 0.01f);
        EXPECT_EQ(camera.target, newGameCamera().target);
        EXPECT_EQ(camera.yaw, newGameCamera().yaw);
    }
}

TEST(Camera, NoWheelLeavesTheDistanceUntouchedToTheBit) {
    Camera camera = newGameCamera();
    camera.distance = 187.65432f;
    for (int frame = 0; frame < 1000; frame++) updateCamera(camera, stillInput(), 0.016f);
    EXPECT_EQ(camera.distance, 187.65432f);
}

TEST(Camera, ARestingCameraStaysWhereItIsToTheBit) {
    Camera camera = newGameCamera();
    updateCamera(camera, stillInput(), 0.1f);
    EXPECT_EQ(camera.target, newGameCamera().target);
    EXPECT_EQ(camera.yaw, 0.8f);
    EXPECT_EQ(camera.pitch, 0.95f);
}

TEST(Camera, WheelStepsForwardAndBackMeetAgain) {
    Camera camera = newGameCamera();
    Input input = stillInput();
    input.wheel = 2;
    updateCamera(camera, input, 0.01f);
    EXPECT_NEAR(camera.distance, 190.0f * 0.88f * 0.88f, 1e-3f);
    input.wheel = -2;
    updateCamera(camera, input, 0.01f);
    EXPECT_NEAR(camera.distance, 190.0f, 1e-3f);
}

TEST(Camera, ALowWideViewIsPulledInUntilItLiesOnTheMap) {
    Camera camera = cameraAt({384, 384, 0.3f, 0.52f, 420});
    clampCamera(camera, 21.0f / 9.0f);
    EXPECT_LT(camera.distance, 420.0f);
    const float distance = camera.distance;
    clampCamera(camera, 21.0f / 9.0f);
    EXPECT_EQ(camera.distance, distance);
}

TEST(Camera, AVeryWideViewEndsAtTheNearestDistance) {
    for (const float aspect : {12.0f, 30.0f, 5000.0f, 1e30f}) {
        Camera camera = cameraAt({384, 384, 0.8f, 0.52f, 420});
        clampCamera(camera, aspect);
        EXPECT_EQ(camera.distance, 40.0f);
        expectSane(camera);
    }
}

TEST(Camera, OddPosesAndAspectsEndInASanePose) {
    const float odd[] = {NOT_A_NUMBER, ENDLESS, -ENDLESS, 1e38f, -1e38f, 0.0f};
    for (const float value : odd)
        for (const float other : odd) {
            Camera camera = cameraAt({value, other, value, other, value});
            clampCamera(camera, other);
            expectSane(camera);
        }
}

TEST(Camera, OddInputEndsInASanePose) {
    const float odd[] = {NOT_A_NUMBER, ENDLESS, -ENDLESS, 1e38f, -1e30f, 0.1f};
    for (const float value : odd)
        for (const int side : {0, -1, 1, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
            Camera camera = newGameCamera();
            Input input;
            input.mouseX = input.mouseY = input.wheel = value;
            input.drawableWidth = side;
            input.drawableHeight = 720;
            input.rightHeld = input.middleHeld = 1;
            input.keysHeld.fill(1);
            updateCamera(camera, input, value);
            expectSane(camera);
            input.drawableWidth = 1280;
            input.drawableHeight = side;
            updateCamera(camera, input, value);
            expectSane(camera);
        }
}

TEST(Camera, AFrameTakesNothingFromTheHeap) {
    Camera camera = newGameCamera();
    Input input = stillInput();
    input.keysHeld[KEY_A] = 1;
    input.wheel = -1;
    const uint64_t before = allocationCount();
    for (int frame = 0; frame < 10; frame++) updateCamera(camera, input, 0.016f);
    EXPECT_EQ(allocationCount(), before);
}
