#include "screens/screen_fixture.h"

#include "program/frame.h"
#include "ui/words/languages.h"

#include <algorithm>
#include <cstdlib>

ScreenTest::ScreenTest() {
    setCurrentLanguage(0);
    EXPECT_TRUE(fontsInit(app.fonts, nullptr));
    app.logoTexture = 1000000;
    app.screen = SCREEN_TITLE;
    resize(1280, 720);
    moveTo(-1.0f, -1.0f);
}

ScreenTest::~ScreenTest() {
    fontsShutdown(app.fonts);
    setCurrentLanguage(0);
}

void ScreenTest::resize(int width, int height) {
    input.drawableWidth = width;
    input.drawableHeight = height;
}

void ScreenTest::show() {
    stepFrame(app, input, 0.0f);
    input.leftPressed = input.leftReleased = 0;
    input.keysPressed.fill(0);
}

void ScreenTest::pressKey(Key key) {
    input.keysPressed[key] = 1;
    show();
}

void ScreenTest::moveTo(float x, float y) {
    input.mouseX = x;
    input.mouseY = y;
}

void ScreenTest::clickAt(float x, float y) {
    moveTo(x, y);
    input.leftPressed = input.leftHeld = 1;
    show();
    input.leftHeld = 0;
    input.leftReleased = 1;
    show();
}

void ScreenTest::clickOn(const char* label) {
    show();
    const UiRect rect = text(label).rect;
    clickAt(rect.x + rect.w / 2.0f, rect.y + rect.h / 2.0f);
}

uint32_t ScreenTest::buttonAt(float x, float y) {
    moveTo(x, y);
    input.leftPressed = input.leftHeld = 1;
    show();
    const uint32_t id = app.ui.activeId;
    moveTo(-1.0f, -1.0f); // so that the release is no click
    input.leftHeld = 0;
    input.leftReleased = 1;
    show();
    return id;
}

// "22b|4294967295|Quit" is a text of size 22, bold, white.
static DrawnText parseRunKey(const std::string& key) {
    DrawnText run;
    char* end = nullptr;
    run.size = static_cast<int>(std::strtol(key.c_str(), &end, 10));
    run.bold = *end == 'b';
    run.color = static_cast<uint32_t>(std::strtoul(end + (run.bold ? 2 : 1), &end, 10));
    run.text = end + 1;
    return run;
}

std::vector<DrawnText> ScreenTest::texts() const {
    std::vector<DrawnText> drawn;
    for (const UiDrawCommand& command : app.ui.commands) {
        const auto cached =
            std::find_if(app.fonts.runCache.begin(), app.fonts.runCache.end(),
                         [&](const auto& run) { return run.second.texture == command.texture; });
        if (cached == app.fonts.runCache.end()) continue;
        DrawnText run = parseRunKey(cached->first);
        for (uint32_t i = command.first; i < command.first + command.count; i += 6) {
            const UiVertex& corner = app.ui.vertices[i];
            const UiVertex& opposite = app.ui.vertices[i + 2];
            run.rect = {corner.x, corner.y, opposite.x - corner.x, opposite.y - corner.y};
            drawn.push_back(run);
        }
    }
    return drawn;
}

bool ScreenTest::shows(const std::string& text) const {
    const std::vector<DrawnText> drawn = texts();
    return std::any_of(drawn.begin(), drawn.end(), [&](const DrawnText& run) { return run.text == text; });
}

DrawnText ScreenTest::text(const std::string& text) const {
    for (const DrawnText& run : texts())
        if (run.text == text) return run;
    ADD_FAILURE() << "not drawn: " << text;
    return {};
}

static float side(const UiVertex& a, const UiVertex& b, float x, float y) {
    return (b.x - a.x) * (y - a.y) - (b.y - a.y) * (x - a.x);
}

static bool covers(const UiVertex* corner, float x, float y) {
    const float first = side(corner[0], corner[1], x, y);
    const float second = side(corner[1], corner[2], x, y);
    const float third = side(corner[2], corner[0], x, y);
    return (first >= 0 && second >= 0 && third >= 0) || (first <= 0 && second <= 0 && third <= 0);
}

uint32_t ScreenTest::colorAt(float x, float y) const {
    UiColor color = {};
    for (const UiDrawCommand& command : app.ui.commands) {
        if (command.texture != 0) continue;
        for (uint32_t i = command.first; i < command.first + command.count; i += 3) {
            const UiVertex* corner = &app.ui.vertices[i];
            if (covers(corner, x, y)) color = {corner->r, corner->g, corner->b, corner->a};
        }
    }
    return packed(color);
}

uint32_t ScreenTest::textureAt(float x, float y) const {
    uint32_t texture = 0;
    for (const UiDrawCommand& command : app.ui.commands)
        for (uint32_t i = command.first; i < command.first + command.count; i += 3)
            if (command.texture != 0 && covers(&app.ui.vertices[i], x, y)) {
                const UiVertex& corner = app.ui.vertices[i];
                for (const float channel : {corner.r, corner.g, corner.b, corner.a})
                    EXPECT_EQ(channel, 1.0f) << "a picture keeps its colours";
                texture = command.texture;
            }
    return texture;
}

std::vector<std::pair<float, float>> ScreenTest::windowShades() const {
    std::vector<std::pair<float, float>> shades;
    const auto& v = app.ui.vertices;
    for (size_t i = 0; i + 2 < v.size(); i++)
        if (v[i].x == 0.0f && v[i].y == 0.0f && v[i + 2].x == static_cast<float>(app.ui.screenW) &&
            v[i + 2].y == static_cast<float>(app.ui.screenH)) {
            for (const UiVertex& corner : {v[i], v[i + 2]})
                EXPECT_EQ(corner.r + corner.g + corner.b, 0.0f) << "a shade is black";
            shades.emplace_back(v[i].a, v[i + 2].a);
        }
    return shades;
}

uint32_t packed(UiColor color) {
    uint32_t bytes = 0;
    for (const float channel : {color.r, color.g, color.b, color.a})
        bytes = bytes << 8 | static_cast<uint32_t>(channel * 255.0f + 0.5f);
    return bytes;
}
