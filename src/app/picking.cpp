#include "app/picking.h"

#include <algorithm>
#include <cassert>

constexpr float MENU_HOUR = 17.6f; // the evening light behind the menus
constexpr float MARCH_STEP = 1.5f; // world units
constexpr int MARCH_LIMIT = 934;   // steps: 1,400 units, more than from corner to corner of the map
constexpr int BISECTIONS = 10;

struct Ray {
    Vec3 start;
    Vec3 direction;
};

static Vec3 pointAt(const Ray& ray, float s) { return ray.start + ray.direction * s; }

void buildFrameParams(FrameParams& out, const App& app, const Input& input, float time) {
    const Camera& camera = app.camera;
    out.width = std::max(input.drawableWidth, 1);
    out.height = std::max(input.drawableHeight, 1);
    const float aspect = static_cast<float>(out.width) / static_cast<float>(out.height);

    const float ground = heightAt(app.city, camera.target.x, camera.target.z);
    out.cameraTarget = {camera.target.x, ground, camera.target.z};
    out.cameraPos = out.cameraTarget + cameraDirection(camera) * camera.distance;
    out.viewProj = multiply(perspective(CAMERA_FOCAL, aspect, CAMERA_NEAR, CAMERA_FAR),
                            lookAt(out.cameraPos, out.cameraTarget, {0.0f, 1.0f, 0.0f}));

    const bool inPlay = showsCityInPlay(app);
    out.hour = inPlay ? app.city.hourOfDay : MENU_HOUR;
    out.overcast = inPlay ? app.city.raining : 0;
    out.time = time;
    out.shadowSize = shadowMapSize(app.settings);
}

// From the near plane through the mouse; false when the view is too odd to have one.
static bool mouseRay(const App& app, const Input& input, Ray& ray) {
    assert(input.drawableWidth > 0 && input.drawableHeight > 0);
    const float ndcX = 2.0f * input.mouseX / static_cast<float>(input.drawableWidth) - 1.0f;
    const float ndcY = 1.0f - 2.0f * input.mouseY / static_cast<float>(input.drawableHeight);
    FrameParams params;
    buildFrameParams(params, app, input, 0.0f);
    const Mat4 toWorld = inverse(params.viewProj);
    ray.start = transformPoint(toWorld, {ndcX, ndcY, -1.0f});
    const Vec3 difference = transformPoint(toWorld, {ndcX, ndcY, 1.0f}) - ray.start;
    if (!(length(difference) > 0.0f)) return false;
    ray.direction = normalised(difference);
    return true;
}

// There is no ground off the map: a ray that comes in below the edge of the land hits it there.
static bool underGround(const City& city, const Vec3& p) {
    const bool overMap = p.x >= 0.0f && p.x < MAP_WIDTH && p.z >= 0.0f && p.z < MAP_WIDTH;
    return overMap && heightAt(city, p.x, p.z) > p.y;
}

// Where the ray enters the ground: the point just under it, because the one above may lie beside the map.
static Vec3 groundHit(const City& city, const Ray& ray, float above, float below) {
    assert(above <= below && underGround(city, pointAt(ray, below)));
    for (int i = 0; i < BISECTIONS; i++) {
        const float middle = (above + below) * 0.5f;
        if (underGround(city, pointAt(ray, middle)))
            below = middle;
        else
            above = middle;
    }
    return pointAt(ray, below);
}

bool pickCell(const App& app, const Input& input, int& outX, int& outY) {
    if (input.drawableWidth <= 0 || input.drawableHeight <= 0 || !pointerIsSomewhere(input)) return false;
    Ray ray;
    if (!mouseRay(app, input, ray)) return false;

    for (int step = 0; step < MARCH_LIMIT; step++) {
        const float s = static_cast<float>(step) * MARCH_STEP;
        if (!underGround(app.city, pointAt(ray, s))) continue;
        const Vec3 hit = groundHit(app.city, ray, std::max(s - MARCH_STEP, 0.0f), s);
        outX = static_cast<int>(std::floor(hit.x / CELL_WIDTH));
        outY = static_cast<int>(std::floor(hit.z / CELL_WIDTH));
        return inMap(outX, outY);
    }
    return false;
}
