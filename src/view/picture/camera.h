// One orbit camera: the player moves the point it looks at, turns around it and zooms.
#pragma once

#include "input/input.h"
#include "view/gl/vec.h"

constexpr float CAMERA_FOCAL = 2.3652222f; // cotangent of half the vertical field of view of 0.8 rad
constexpr float CAMERA_INVERSE_FOCAL = 0.42279324f;
constexpr float CAMERA_NEAR = 2.0f;
constexpr float CAMERA_FAR = 4000.0f;

struct Camera {
    Vec3 target = {384.0f, 0.0f, 384.0f}; // y is not used: the ground gives the height
    float yaw = 0.0f;                     // radians; the eye lies towards (sin yaw, cos yaw)
    float pitch = 0.55f;                  // radians above the horizon, 0.52 to 1.35
    float distance = 330.0f;              // world units from the target, 40 to 420
    Input previousInput;                  // of the frame before: where the mouse was, what was held
};

// `dt` in seconds. The caller stores the frame's input in `previousInput` when the frame is done.
void updateCamera(Camera& camera, const Input& input, float dt);

// Keeps the whole view over the map, on the plane y = 0. `aspect` is width over height. A pose that is no
// number becomes that of a new camera.
void clampCamera(Camera& camera, float aspect);
// Of a drawable of that size; 1.6 without a height.
float viewAspect(int width, int height);

// From the target to the eye, a unit vector.
Vec3 cameraDirection(const Camera& camera);
