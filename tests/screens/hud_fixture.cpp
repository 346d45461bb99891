#include "screens/hud_fixture.h"

#include "app/hud_layout.h"
#include "app/tools.h"
#include "screens/game/game_screen.h"
#include "screens/menus/end_screen.h"
#include "ui/layer/ui_helpers.h"

#include <algorithm>
#include <cmath>

float middleX(UiRect rect) { return rect.x + rect.w / 2.0f; }
float middleY(UiRect rect) { return rect.y + rect.h / 2.0f; }

HudTest::HudTest() {
    EXPECT_TRUE(fontsInit(app.fonts, nullptr));
    resize(1280, 720);
    input.mouseX = input.mouseY = -1000.0f;
}

HudTest::~HudTest() { fontsShutdown(app.fonts); }

void HudTest::resize(int width, int height) {
    input.drawableWidth = width;
    input.drawableHeight = height;
}

void HudTest::draw() {
    uiBeginFrame(app.ui, input.drawableWidth, input.drawableHeight, input);
    const bool ended = app.screen == SCREEN_END;
    drawGameScreen(app, input);
    if (ended) drawEndScreen(app, input);
    drawFpsLabel(app, input);
    input.leftPressed = input.leftReleased = 0;
}

void HudTest::click(float x, float y) {
    input.mouseX = x;
    input.mouseY = y;
    input.leftPressed = input.leftHeld = 1;
    draw();
    input.leftHeld = 0;
    input.leftReleased = 1;
    draw();
    input.mouseX = input.mouseY = -1000.0f;
    draw();
}

void HudTest::click(UiRect button) { click(middleX(button), middleY(button)); }

void HudTest::clickOn(const std::string& words) {
    draw();
    click(textOf(words).rect);
}

static UiRect rectOf(const UiVertex* corners) {
    return {corners[0].x, corners[0].y, corners[2].x - corners[0].x, corners[2].y - corners[0].y};
}

void HudTest::expectCoveredCategoryIsDead(int category) {
    resize(640, 600);
    draw();
    const UiRect button = categoryButton(hudLayout(app.ui), category);
    click(button.x + button.w - 10.0f, middleY(button));
    EXPECT_EQ(app.currentCategory, CATEGORY_SELECT);
    click(button.x + 10.0f, middleY(button));
    EXPECT_EQ(app.currentCategory, category);
}

std::vector<Label> HudTest::texts() const {
    std::vector<Label> found;
    for (const DrawnText& drawn : drawnTexts(app.ui)) {
        const size_t bar = drawn.key.find('|');
        const auto color = static_cast<uint32_t>(std::stoull(drawn.key.substr(bar + 1)));
        found.push_back({::textOf(drawn),
                         std::stoi(drawn.key),
                         drawn.key[bar - 1] == 'b',
                         color,
                         {drawn.x, drawn.y, drawn.w, drawn.h}});
    }
    return found;
}

std::vector<DrawnRect> HudTest::rects() const {
    std::vector<DrawnRect> found;
    for (const UiDrawCommand& command : app.ui.commands) {
        if (command.texture != 0) continue;
        for (uint32_t at = command.first; at + 6 <= command.first + command.count; at += 3) {
            const UiVertex* v = &app.ui.vertices[at];
            const bool upright = v[0].y == v[1].y && v[1].x == v[2].x && v[2].y == v[5].y &&
                                 v[5].x == v[0].x && v[3].x == v[0].x && v[3].y == v[0].y &&
                                 v[4].x == v[2].x && v[4].y == v[2].y;
            if (upright) found.push_back({rectOf(v), {v->r, v->g, v->b, v->a}});
        }
    }
    return found;
}

bool HudTest::says(const std::string& words) const {
    const auto all = texts();
    return std::any_of(all.begin(), all.end(), [&](const Label& text) { return text.words == words; });
}

Label HudTest::textOf(const std::string& words) const {
    std::vector<Label> found = texts();
    std::erase_if(found, [&](const Label& text) { return text.words != words; });
    EXPECT_EQ(found.size(), 1u) << words;
    return found.empty() ? Label{} : found.front();
}

static bool near(float a, float b) { return std::fabs(a - b) < 0.02f; }

// The tables give two digits, so that any other colour is farther off.
static bool same(UiColor a, UiColor b) {
    const auto sameChannel = [](float one, float other) { return std::fabs(one - other) < 0.001f; };
    return sameChannel(a.r, b.r) && sameChannel(a.g, b.g) && sameChannel(a.b, b.b) && sameChannel(a.a, b.a);
}

static uint32_t packed(UiColor color) {
    uint32_t word = 0;
    for (const float channel : {color.r, color.g, color.b, color.a})
        word = word << 8 | static_cast<uint32_t>(channel * 255.0f + 0.5f);
    return word;
}

void HudTest::expectText(const std::string& words, float x, float y, int size, UiColor color, int align,
                         bool bold) const {
    std::string others;
    for (const Label& text : texts()) {
        if (text.words != words) continue;
        const float anchor = text.rect.x + text.rect.w * 0.5f * static_cast<float>(align);
        if (near(anchor, x) && near(text.rect.y, y) && text.size == size && text.bold == bold &&
            text.color == packed(color))
            return;
        others += " (" + std::to_string(anchor) + ", " + std::to_string(text.rect.y) + ") size " +
                  std::to_string(text.size) + (text.bold ? " bold" : "") + " colour " +
                  std::to_string(text.color);
    }
    ADD_FAILURE() << words << " is not at (" << x << ", " << y << ") in size " << size << ", but:" << others;
}

bool HudTest::drew(UiRect rect, UiColor color) const {
    const auto all = rects();
    return std::any_of(all.begin(), all.end(), [&](const DrawnRect& drawn) {
        return near(drawn.rect.x, rect.x) && near(drawn.rect.y, rect.y) && near(drawn.rect.w, rect.w) &&
               near(drawn.rect.h, rect.h) && same(drawn.color, color);
    });
}

ButtonLook HudTest::look(UiRect button) const {
    constexpr float RADIUS = 6.0f;
    const UiRect body = {button.x + RADIUS, button.y, button.w - 2.0f * RADIUS, button.h};
    if (drew(body, {0.30f, 0.26f, 0.22f, 1.0f})) return NORMAL;
    if (drew(body, {0.80f, 0.58f, 0.20f, 1.0f})) return PRIMARY;
    return drew(body, {0.28f, 0.28f, 0.29f, 1.0f}) ? DISABLED : NO_BUTTON;
}
