#include "view/picture/camera.h"

#include "sim/city.h"

#include <algorithm>
#include <cassert>
#include <limits>

constexpr float LOWEST_PITCH = 0.52f;
constexpr float HIGHEST_PITCH = 1.35f;
constexpr float NEAREST = 40.0f;
constexpr float FARTHEST = 420.0f;
constexpr float MAP_MARGIN = 16.0f; // world units that stay out of sight along each side of the map
constexpr float EDGE_PIXELS = 10.0f;

// What the view shows of the plane y = 0, relative to the target.
struct Footprint {
    float lowX = std::numeric_limits<float>::infinity();
    float highX = -std::numeric_limits<float>::infinity();
    float lowZ = std::numeric_limits<float>::infinity();
    float highZ = -std::numeric_limits<float>::infinity();
    bool complete = false; // false when a ray of the view misses the plane
};

Vec3 cameraDirection(const Camera& camera) {
    const float level = std::cos(camera.pitch);
    return {std::sin(camera.yaw) * level, std::sin(camera.pitch), std::cos(camera.yaw) * level};
}

// Of a camera at distance 1: the footprint grows with the distance, so that one is enough for all distances.
static Footprint unitFootprint(const Camera& camera, float aspect) {
    assert(camera.pitch >= LOWEST_PITCH && camera.pitch <= HIGHEST_PITCH); // above the plane, not overhead
    const Vec3 eye = cameraDirection(camera);
    const Vec3 forward = normalised(Vec3{} - eye);
    const Vec3 right = normalised(cross(forward, {0.0f, 1.0f, 0.0f}));
    const Vec3 up = cross(right, forward);

    Footprint footprint;
    for (int row = -3; row <= 3; row++)
        for (int column = -3; column <= 3; column++) {
            const float a = static_cast<float>(column) / 3.0f;
            const float b = static_cast<float>(row) / 3.0f;
            const Vec3 ray =
                forward + right * (a * aspect * CAMERA_INVERSE_FOCAL) + up * (b * CAMERA_INVERSE_FOCAL);
            const float rayLength = length(ray);
            // Written so that an aspect that is no number misses as well.
            if (!(rayLength > 1e-8f) || !(ray.y / rayLength < -0.0001f)) return footprint;
            const Vec3 hit = eye + ray * (-eye.y / ray.y);
            footprint.lowX = std::min(footprint.lowX, hit.x);
            footprint.highX = std::max(footprint.highX, hit.x);
            footprint.lowZ = std::min(footprint.lowZ, hit.z);
            footprint.highZ = std::max(footprint.highZ, hit.z);
        }
    footprint.complete = true;
    return footprint;
}

static bool fitsOnMap(const Footprint& unit, float distance) {
    constexpr float room = MAP_WIDTH - 2.0f * MAP_MARGIN;
    return unit.complete && (unit.highX - unit.lowX) * distance <= room &&
           (unit.highZ - unit.lowZ) * distance <= room;
}

// The upper limit wins when the view is too large for both.
static float clampTarget(float target, float low, float high) {
    return std::min(std::max(target, MAP_MARGIN - low), MAP_WIDTH - MAP_MARGIN - high);
}

// Odd state strings and pointers can make any pose. An infinite pitch or distance is left to the clamp.
static void repairPose(Camera& camera) {
    const Camera fresh;
    if (!std::isfinite(camera.target.x)) camera.target.x = fresh.target.x;
    if (!std::isfinite(camera.target.z)) camera.target.z = fresh.target.z;
    if (!std::isfinite(camera.yaw)) camera.yaw = fresh.yaw;
    if (std::isnan(camera.pitch)) camera.pitch = fresh.pitch;
    if (std::isnan(camera.distance)) camera.distance = fresh.distance;
}

void clampCamera(Camera& camera, float aspect) {
    repairPose(camera);
    camera.pitch = std::clamp(camera.pitch, LOWEST_PITCH, HIGHEST_PITCH);
    camera.distance = std::clamp(camera.distance, NEAREST, FARTHEST);

    const Footprint unit = unitFootprint(camera, aspect);
    // In steps, not to the exact fit, otherwise the same state strings would give other pictures.
    while (camera.distance > NEAREST && !fitsOnMap(unit, camera.distance))
        camera.distance = std::max(camera.distance * 0.95f, NEAREST);
    camera.target.x = clampTarget(camera.target.x, unit.lowX * camera.distance, unit.highX * camera.distance);
    camera.target.z = clampTarget(camera.target.z, unit.lowZ * camera.distance, unit.highZ * camera.distance);
}

float viewAspect(int width, int height) {
    return height > 0 ? static_cast<float>(width) / static_cast<float>(height) : 1.6f;
}

static float heldAxis(const Input& input, Key plus, Key otherPlus, Key minus, Key otherMinus) {
    float axis = 0.0f;
    if (input.keysHeld[plus] || input.keysHeld[otherPlus]) axis += 1.0f;
    if (input.keysHeld[minus] || input.keysHeld[otherMinus]) axis -= 1.0f;
    return axis;
}

// The mouse near a side of the window pans as a key would, and adds to the keys; not in a drag, which would
// otherwise slide away where it reaches a side.
static void addEdgePan(const Input& input, float& forward, float& right) {
    const float width = static_cast<float>(input.drawableWidth);
    const float height = static_cast<float>(input.drawableHeight);
    const bool inside =
        input.mouseX >= 0.0f && input.mouseX < width && input.mouseY >= 0.0f && input.mouseY < height;
    if (!inside || input.rightHeld || input.middleHeld) return;

    if (input.mouseX < EDGE_PIXELS) right -= 1.0f;
    if (input.mouseX > width - EDGE_PIXELS) right += 1.0f;
    if (input.mouseY < EDGE_PIXELS) forward += 1.0f;
    if (input.mouseY > height - EDGE_PIXELS) forward -= 1.0f;
}

static void moveTarget(Camera& camera, float right, float forward) {
    const float sinYaw = std::sin(camera.yaw);
    const float cosYaw = std::cos(camera.yaw);
    camera.target.x += cosYaw * right - sinYaw * forward;
    camera.target.z += -sinYaw * right - cosYaw * forward;
}

void updateCamera(Camera& camera, const Input& input, float dt) {
    float forward = heldAxis(input, KEY_W, KEY_UP, KEY_S, KEY_DOWN);
    float right = heldAxis(input, KEY_D, KEY_RIGHT, KEY_A, KEY_LEFT);
    addEdgePan(input, forward, right);
    // The higher the view, the faster it pans, so that the ground crosses the window at the same pace.
    const float panSpeed = camera.distance * 0.9f * dt;
    moveTarget(camera, right * panSpeed, forward * panSpeed);

    if (input.keysHeld[KEY_Q]) camera.yaw -= 1.8f * dt;
    if (input.keysHeld[KEY_E]) camera.yaw += 1.8f * dt;

    // Otherwise a pointer that comes into the window with a button held would spin the view.
    const bool known = pointerIsSomewhere(input) && pointerIsSomewhere(camera.previousInput);
    const float dx = known ? input.mouseX - camera.previousInput.mouseX : 0.0f;
    const float dy = known ? input.mouseY - camera.previousInput.mouseY : 0.0f;
    if (input.rightHeld) {
        camera.yaw -= dx * 0.005f;
        camera.pitch += dy * 0.003f;
    }
    if (input.middleHeld) { // sideways the ground follows the hand, up and down it goes against it
        const float grip = camera.distance * 0.0022f;
        moveTarget(camera, -dx * grip, -dy * grip);
    }
    if (input.wheel != 0.0f) camera.distance *= std::pow(0.88f, input.wheel);

    clampCamera(camera, viewAspect(input.drawableWidth, input.drawableHeight));
}
