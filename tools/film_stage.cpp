#include "film_stage.h"

#include "app/picking.h"
#include "program/capture.h"
#include "sheet_window.h"
#include "sim/map_generation.h"
#include "view/gl/gl.h"
#include "view/street/street_life_mesh.h"
#include "view/world/rebuild.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <numbers>
#include <sstream>
#include <string_view>

constexpr int OVERSAMPLING = 2; // samples of a pixel, each way
constexpr double SLOW_ORBIT = 4.0;
constexpr FilmSpan DEFAULT_HOURS = {7.0, 9.0};
constexpr FilmSpan DEFAULT_CALDAY = {70.0, 70.0};
constexpr float STREET_PACE =
    3.0f; // of a game second in a second of the film: as fast as the game can be set
constexpr float START_YAW = 0.5f;
constexpr float PITCHES[] = {0.6f, 0.65f, 0.7f, 0.75f, 0.8f, 0.85f}; // radians, from the flattest
constexpr float SHARES[] = {0.85f, 0.9f, 0.95f, 1.0f, 1.05f, 1.1f, 1.15f, 1.2f};
constexpr float SHIFT_ALLOWED = 7.0f * CELL_WIDTH;

template<class Number> static bool isNumber(std::string_view text) {
    Number number = 0;
    const char* end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && rest == end && std::abs(number) <= std::numeric_limits<Number>::max();
}

static bool isPieceOfAState(std::string_view piece) {
    const size_t equals = std::min(piece.find('='), piece.size());
    const std::string_view name = piece.substr(0, equals);
    const std::string_view value = piece.substr(std::min(equals + 1, piece.size()));
    if (name == "dist" || name == "hour") return isNumber<float>(value);
    if (name == "calday") return isNumber<int>(value);
    if (name == "focus") {
        const size_t colon = value.find(':');
        return colon != std::string_view::npos && isNumber<int>(value.substr(0, colon)) &&
               isNumber<int>(value.substr(colon + 1));
    }
    constexpr std::string_view OVERLAYS[] = {"normal", "traffic", "power", "water", "pollution", "happy"};
    return name == "overlay" &&
           std::find(std::begin(OVERLAYS), std::end(OVERLAYS), value) != std::end(OVERLAYS);
}

bool isTheStateOfAFilm(const std::string& state) {
    std::istringstream pieces(state + ",");
    for (std::string piece; std::getline(pieces, piece, ',');)
        if (!isPieceOfAState(piece)) return false;
    return true;
}

static double valueAt(const FilmSpan& span, const FilmScene& scene, int frame) {
    const double share = scene.frameCount > 1 ? static_cast<double>(frame) / (scene.frameCount - 1) : 0.0;
    return span.first + (span.last - span.first) * share;
}

// --- The camera

// Looks at the middle of the box. At a share of 1 a round city of its width fills the picture's height.
static Camera lookAtBox(const CellBox& box, float pitch, float share) {
    Camera camera;
    camera.yaw = START_YAW;
    camera.pitch = pitch;
    if (box.x0 > box.x1) return camera; // no city: the middle of the land
    camera.target.x = static_cast<float>(box.x0 + box.x1 + 1) * 0.5f * CELL_WIDTH;
    camera.target.z = static_cast<float>(box.y0 + box.y1 + 1) * 0.5f * CELL_WIDTH;
    const float width = static_cast<float>(box.x1 - box.x0 + 1) * CELL_WIDTH;
    const float depth = static_cast<float>(box.y1 - box.y0 + 1) * CELL_WIDTH;
    camera.distance = std::hypot(width, depth) * 0.5f * CAMERA_FOCAL * std::sin(pitch) / share;
    return camera;
}

static Camera cameraAt(const FilmStage& stage, int frame) {
    const FilmScene& scene = stage.scene;
    Camera camera = stage.pose;
    const double degrees = stage.orbit * frame / scene.format.framesPerSecond;
    camera.yaw += static_cast<float>(std::fmod(degrees, 360.0) * std::numbers::pi / 180.0);
    clampCamera(camera, viewAspect(scene.format.width, scene.format.height));
    return camera;
}

// The frame that is pushed farthest away from the map's rim, or pulled in by it.
struct RimPush {
    float distance = 0.0f; // that all frames can keep
    float shift = 0.0f;    // of the target, world units
};

static RimPush pushFromRim(const FilmStage& stage) {
    RimPush push = {stage.pose.distance};
    for (int frame = 0; frame < stage.scene.frameCount; frame++) {
        const Camera camera = cameraAt(stage, frame);
        push.distance = std::min(push.distance, camera.distance);
        push.shift = std::max({push.shift, std::abs(camera.target.x - stage.pose.target.x),
                               std::abs(camera.target.z - stage.pose.target.z)});
    }
    return push;
}

// The whole city, seen as flat as the land around it allows: a flat view reaches far, and past the rim of
// the map it may not. A city that is too near to the rim is seen from nearer.
static void setUpCamera(FilmStage& stage, const CellBox& box) {
    RimPush push;
    for (const float share : SHARES)
        for (const float pitch : PITCHES) {
            stage.app.camera = lookAtBox(box, pitch, share);
            applyStateString(stage.app, stage.scene.state);
            stage.pose = stage.app.camera;
            push = pushFromRim(stage);
            if (push.shift <= SHIFT_ALLOWED && push.distance == stage.pose.distance) return;
        }
    stage.pose.distance = push.distance; // one for all frames: it would jump on the way round
}

// --- The picture

bool openStage(FilmStage& stage, const FilmScene& scene, const CellBox& box, std::string& reason) {
    stage.scene = scene;
    App& app = stage.app;
    stage.orbit = scene.orbit.value_or(scene.state.empty() ? SLOW_ORBIT : 0.0);
    setUpCamera(stage, box);

    const int width = scene.format.width * OVERSAMPLING;
    const int height = scene.format.height * OVERSAMPLING;
    SDL_setenv("SDL_VIDEODRIVER", "offscreen", 0); // no display is needed
    int drawnWidth = 0;
    int drawnHeight = 0;
    const bool open = openSheetWindow("orlavane-film", width, height);
    if (open) SDL_GL_GetDrawableSize(SDL_GL_GetCurrentWindow(), &drawnWidth, &drawnHeight);
    if (!open || drawnWidth != width || drawnHeight != height || !initRenderer(app.renderer, &reason)) {
        if (reason.empty()) reason = SDL_GetError();
        reason.insert(0, "pictures of this size cannot be drawn here: ");
        return false;
    }
    app.settings.quality = 2; // the finest shadows
    app.screen = SCREEN_GAME;
    generateMap(app.city, 0);
    stage.samples.resize(static_cast<size_t>(width) * height * 3);
    stage.picture.resize(static_cast<size_t>(scene.format.width) * scene.format.height * 3);
    return true;
}

// The mean of each pixel's samples, and the rows from the top. Drawing larger smooths the windows and roofs
// that the shaders paint, which several samples of each pixel's rim would not.
static void readPicture(FilmStage& stage) {
    const int width = stage.scene.format.width;
    const int height = stage.scene.format.height;
    gl.PixelStorei(GL_PACK_ALIGNMENT, 1);
    gl.ReadBuffer(GL_BACK);
    gl.ReadPixels(0, 0, width * OVERSAMPLING, height * OVERSAMPLING, GL_RGB, GL_UNSIGNED_BYTE,
                  stage.samples.data());
    const size_t stride = static_cast<size_t>(width) * OVERSAMPLING * 3;
    uint8_t* out = stage.picture.data();
    for (int y = height - 1; y >= 0; y--) {
        const uint8_t* low = &stage.samples[static_cast<size_t>(y) * OVERSAMPLING * stride];
        const uint8_t* high = low + stride;
        for (int x = 0; x < width; x++, low += 6, high += 6)
            for (int c = 0; c < 3; c++)
                *out++ = static_cast<uint8_t>((low[c] + low[c + 3] + high[c] + high[c + 3] + 2) / 4);
    }
}

static void setTime(FilmStage& stage, int frame) {
    const FilmScene& scene = stage.scene;
    City& city = stage.app.city;
    city.hourOfDay = static_cast<float>(valueAt(DEFAULT_HOURS, scene, frame));
    city.calendarDay = static_cast<int32_t>(valueAt(DEFAULT_CALDAY, scene, frame));
    applyStateString(stage.app, scene.state);
    if (scene.hour) city.hourOfDay = static_cast<float>(std::fmod(valueAt(*scene.hour, scene, frame), 24.0));
    if (scene.calday) city.calendarDay = static_cast<int32_t>(valueAt(*scene.calday, scene, frame));
}

void drawFrame(FilmStage& stage, int frame) {
    App& app = stage.app;
    // The script's own clock goes on untouched: what it saves does not depend on being filmed.
    const float hour = app.city.hourOfDay;
    const int32_t calendarDay = app.city.calendarDay;
    setTime(stage, frame);
    app.camera = cameraAt(stage, frame);

    const float second = 1.0f / static_cast<float>(stage.scene.format.framesPerSecond);
    updateStreetLife(app.streetLife, app.city, second * STREET_PACE, app.city.population);
    do updateWorldMeshes(app.meshes, app.city);
    while (app.city.buildingsDirty); // a film has the time that a player has not
    buildStreetLifeMesh(app.meshes, app.city, app.streetLife);
    Input input;
    input.drawableWidth = stage.scene.format.width * OVERSAMPLING;
    input.drawableHeight = stage.scene.format.height * OVERSAMPLING;
    FrameParams params;
    buildFrameParams(params, app, input, static_cast<float>(frame) * second);
    params.overcast = 0; // some days of rain would be a flicker
    renderFrame(app.renderer, params, app.meshes);
    readPicture(stage);

    app.city.hourOfDay = hour;
    app.city.calendarDay = calendarDay;
}
