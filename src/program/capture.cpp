#include "program/capture.h"

#include "app/session.h"
#include "app/tools.h"
#include "app/upkeep.h"
#include "program/demo_city.h"
#include "ui/words/languages.h"
#include "view/gl/gl.h"

#include <algorithm>
#include <cassert>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <vector>

// --- The state string

static bool readInt(std::string_view text, int& out) {
    int value;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) return false;
    out = value;
    return true;
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

// "x:y". False without a colon between two whole numbers.
static bool readPair(std::string_view text, int& x, int& y) {
    const size_t colon = text.find(':');
    return colon != std::string_view::npos && readInt(text.substr(0, colon), x) &&
           readInt(text.substr(colon + 1), y);
}

static void applyPanel(App& app, std::string_view value) {
    const int panel = indexIn({"budget", "finance", "stats"}, value) + 1;
    app.currentPanel = static_cast<uint8_t>(panel);
}

static void applyPause(App& app, std::string_view value) { app.paused = value == "1"; }

static void applyFocus(App& app, std::string_view value) {
    int x;
    int y;
    if (!readPair(value, x, y)) return;
    app.camera.target = {(static_cast<float>(x) + 0.5f) * CELL_WIDTH, 0.0f,
                         (static_cast<float>(y) + 0.5f) * CELL_WIDTH};
}

static void applySpeed(App& app, std::string_view value) {
    int speed;
    if (readInt(value, speed)) setSpeed(app, speed);
}

static void applyOverlay(App& app, std::string_view value) {
    setCurrentOverlay(app, indexIn({"normal", "traffic", "power", "water", "pollution", "happy"}, value));
}

static void applyCategory(App& app, std::string_view value) {
    setCategory(
        app, indexIn({"select", "roads", "zones", "services", "utilities", "districts", "bulldoze"}, value));
}

// Any value will do: the key only puts a tool into the hand.
static void applyTool(App& app, std::string_view) { setTool(app, TOOL_RESIDENTIAL_ZONE); }

static void applyLanguage(App& app, std::string_view value) {
    chooseLanguage(app, languageFromCode(std::string(value).c_str()));
}

static void applyHour(App& app, std::string_view value) { readFloat(value, app.city.hourOfDay); }

static void applyDistance(App& app, std::string_view value) { readFloat(value, app.camera.distance); }

static void applySelect(App& app, std::string_view value) {
    int x;
    int y;
    if (readPair(value, x, y)) selectCell(app, x, y);
}

static void applyScreen(App& app, std::string_view value) {
    if (value == "settings") {
        app.returnScreen = app.paused || app.screen == SCREEN_GAME ? SCREEN_GAME : SCREEN_TITLE;
        app.screen = SCREEN_SETTINGS;
    }
    if (value == "title") app.screen = SCREEN_TITLE;
    if (value == "end") app.screen = SCREEN_END;
    if (value == "launcher") app.screen = SCREEN_LAUNCHER;
}

static void applyCalendarDay(App& app, std::string_view value) {
    if (readInt(value, app.city.calendarDay)) app.city.calendarDay = std::max(app.city.calendarDay, 0);
}

static void applyUpdate(App& app, std::string_view value) {
    if (value == "current") app.updateState = UPDATE_CURRENT;
    if (value == "newer") {
        app.updateState = UPDATE_NEWER;
        app.updateManifest.version = "0.2";
    }
    if (value == "offline") app.updateState = UPDATE_OFFLINE;
    if (value == "checking") app.updateState = UPDATE_CHECKING;
}

static void applyTutorial(App& app, std::string_view value) {
    int step;
    if (readInt(value, step)) startTutorial(app, step);
}

static void applyLauncher(App& app, std::string_view value) {
    app.screen = SCREEN_LAUNCHER;
    app.launcherPage = static_cast<LauncherPage>(indexIn({"files", "saves", "uninstall"}, value) + 1);
    if (app.launcherPage == LAUNCHER_FILES) refreshGameFiles(app);
}

static void applyDistrict(App& app, std::string_view value) { readInt(value, app.paintDistrict); }

struct StateKey {
    std::string_view name;
    void (*apply)(App& app, std::string_view value);
};

static constexpr StateKey STATE_KEYS[] = {
    {"panel", applyPanel},        {"pause", applyPause},       {"focus", applyFocus},
    {"speed", applySpeed},        {"overlay", applyOverlay},   {"cat", applyCategory},
    {"tool", applyTool},          {"lang", applyLanguage},     {"hour", applyHour},
    {"dist", applyDistance},      {"select", applySelect},     {"screen", applyScreen},
    {"calday", applyCalendarDay}, {"update", applyUpdate},     {"tutorial", applyTutorial},
    {"launcher", applyLauncher},  {"district", applyDistrict},
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

Capture applyCaptureHooks(App& app, int width, int height) {
    Capture capture;
    const char* demo = std::getenv("OV_DEMO");
    if (demo && demo[0] == '1') buildDemoCity(app, 60);
    if (const char* shot = std::getenv("OV_SHOT")) capture.shotPath = shot;
    if (const char* frames = std::getenv("OV_FRAMES")) readInt(frames, capture.frameLimit);
    if (std::getenv("OV_SETTINGS")) {
        app.screen = SCREEN_SETTINGS;
        app.returnScreen = SCREEN_TITLE;
    }
    if (const char* state = std::getenv("OV_STATE")) {
        applyStateString(app, state);
        clampCamera(app.camera, viewAspect(width, height));
    }
    return capture;
}

// --- The picture

// A picture that cannot be written is no reason to disturb anyone: the run ends all the same.
static void writeScreenshot(const std::string& path, int width, int height) {
    if (path.empty() || width <= 0 || height <= 0) return;
    SDL_Surface* surface = SDL_CreateRGBSurfaceWithFormat(0, width, height, 24, SDL_PIXELFORMAT_RGB24);
    if (!surface) return;

    const size_t rowBytes = static_cast<size_t>(width) * 3;
    assert(static_cast<size_t>(surface->pitch) >= rowBytes);
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
    if (!capture.shotPath) return false;
    capture.frameCount++;
    if (capture.frameCount != capture.frameLimit) return false;
    writeScreenshot(*capture.shotPath, width, height);
    return true;
}
