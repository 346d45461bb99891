#include "app/capture.h"

#include "view/gl.h"
#include "view/rebuild.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <vector>

// --- The state string
// -------------------------------------------------------------------------------------------

static bool readInt(std::string_view text, int& out) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), out);
    return error == std::errc() && end == text.data() + text.size();
}

static bool readFloat(std::string_view text, float& out) {
    float value;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(value)) return false;
    out = value;
    return true;
}

// The place of `word` in the list, -1 when it is not there.
static int indexIn(const std::vector<std::string_view>& words, std::string_view word) {
    const auto found = std::find(words.begin(), words.end(), word);
    return found == words.end() ? -1 : static_cast<int>(found - words.begin());
}

static void setFocus(App& app, std::string_view value) {
    const size_t colon = value.find(':');
    int x;
    int y;
    if (colon == std::string_view::npos || !readInt(value.substr(0, colon), x) ||
        !readInt(value.substr(colon + 1), y))
        return;
    app.camera.target = {(static_cast<float>(x) + 0.5f) * CELL_WIDTH, 0.0f,
                         (static_cast<float>(y) + 0.5f) * CELL_WIDTH};
}

static void setOverlayByName(App& app, std::string_view value) {
    const int mode = indexIn({"normal", "traffic", "power", "water", "pollution", "happy"}, value);
    if (mode >= 0) setOverlay(app.meshes, mode);
}

static void setScreen(App& app, std::string_view value) {
    if (value == "settings") {
        app.returnScreen = app.screen == SCREEN_GAME ? SCREEN_GAME : SCREEN_TITLE;
        app.screen = SCREEN_SETTINGS;
    }
    if (value == "title") app.screen = SCREEN_TITLE;
    if (value == "end") app.screen = SCREEN_END;
    if (value == "launcher") app.screen = SCREEN_LAUNCHER;
}

static void setHour(App& app, std::string_view value) { readFloat(value, app.city.hourOfDay); }

static void setDistance(App& app, std::string_view value) { readFloat(value, app.camera.distance); }

static void setCalendarDay(App& app, std::string_view value) {
    if (readInt(value, app.city.calendarDay)) app.city.calendarDay = std::max(app.city.calendarDay, 0);
}

struct StateKey {
    std::string_view name;
    void (*apply)(App& app, std::string_view value);
};

static constexpr StateKey STATE_KEYS[] = {
    {"focus", setFocus},   {"overlay", setOverlayByName}, {"hour", setHour},
    {"dist", setDistance}, {"screen", setScreen},         {"calday", setCalendarDay},
};

static void applyStatePiece(App& app, std::string_view piece) {
    const size_t equals = piece.find('=');
    if (equals == std::string_view::npos) return;
    for (const StateKey& key : STATE_KEYS)
        if (key.name == piece.substr(0, equals)) key.apply(app, piece.substr(equals + 1));
}

void applyStateString(App& app, const std::string& text) {
    for (size_t start = 0; start <= text.size();) {
        const size_t comma = std::min(text.find(',', start), text.size());
        applyStatePiece(app, std::string_view(text).substr(start, comma - start));
        start = comma + 1;
    }
}

// --- The variables
// ----------------------------------------------------------------------------------------------

// Enters the game screen with the city as it is.
static void enterDemo(App& app) {
    app.screen = SCREEN_GAME;
    app.camera.target = {388.0f, 0.0f, 388.0f};
    app.camera.yaw = 0.7f;
    app.camera.pitch = 0.75f;
    app.camera.distance = 150.0f;
}

Capture applyCaptureHooks(App& app) {
    Capture capture;
    const char* demo = std::getenv("OV_DEMO");
    if (demo && demo[0] == '1') enterDemo(app);
    if (const char* shot = std::getenv("OV_SHOT")) capture.shotPath = shot;
    if (const char* frames = std::getenv("OV_FRAMES")) readInt(frames, capture.frameLimit);
    if (std::getenv("OV_SETTINGS")) {
        app.screen = SCREEN_SETTINGS;
        app.returnScreen = SCREEN_TITLE;
    }
    if (const char* state = std::getenv("OV_STATE")) applyStateString(app, state);
    return capture;
}

// --- The picture
// ------------------------------------------------------------------------------------------------

// A picture that cannot be written is no reason to disturb anyone: the run ends all the same.
static void writeScreenshot(const std::string& path, int width, int height) {
    if (width <= 0 || height <= 0) return;
    SDL_Surface* surface = SDL_CreateRGBSurfaceWithFormat(0, width, height, 24, SDL_PIXELFORMAT_RGB24);
    if (!surface) return;

    const size_t rowBytes = static_cast<size_t>(width) * 3;
    std::vector<uint8_t> pixels(rowBytes * static_cast<size_t>(height));
    gl.PixelStorei(GL_PACK_ALIGNMENT, 1);
    gl.ReadBuffer(GL_BACK);
    gl.ReadPixels(0, 0, width, height, GL_RGB, GL_UNSIGNED_BYTE, pixels.data());
    for (int y = 0; y < height; y++) // OpenGL counts rows from the bottom
        std::memcpy(static_cast<uint8_t*>(surface->pixels) + static_cast<size_t>(y) * surface->pitch,
                    &pixels[static_cast<size_t>(height - 1 - y) * rowBytes], rowBytes);
    SDL_SaveBMP(surface, path.c_str());
    SDL_FreeSurface(surface);
}

bool captureFrame(Capture& capture, int width, int height) {
    if (capture.shotPath.empty()) return false;
    capture.frameCount++;
    if (capture.frameCount != capture.frameLimit) return false;
    writeScreenshot(capture.shotPath, width, height);
    return true;
}
