// The game's interface under a scripted pointer, with real fonts and a GL table that draws nothing: tests
// read what was drawn off the vertex list.
#pragma once

#include "app/game_fixture.h"
#include "ui/layer/ui_text.h"

#include <string>
#include <vector>

// A text on the screen.
struct Label {
    std::string words;
    int size;
    bool bold;
    uint32_t color; // r << 24 | g << 16 | b << 8 | a
    UiRect rect;
};

// Solid and upright.
struct DrawnRect {
    UiRect rect;
    UiColor color;
};

enum ButtonLook {
    NO_BUTTON,
    NORMAL,
    PRIMARY,
    DISABLED
};

class HudTest : public GameTest {
protected:
    HudTest();
    ~HudTest() override;

    void resize(int width, int height);
    // One frame of the interface; what happened only in this frame is forgotten after it.
    void draw();
    // Presses and releases the left button, and draws once more with the pointer away.
    void click(float x, float y);
    void click(UiRect button);
    void clickOn(const std::string& words);
    // In a narrow window, where a card in its middle covers the right ends of the category buttons.
    void expectCoveredCategoryIsDead(int category);

    std::vector<Label> texts() const;
    std::vector<DrawnRect> rects() const;
    bool says(const std::string& words) const;
    // Of a text that is drawn once.
    Label textOf(const std::string& words) const;
    // `x` is the left end, the middle or the right end by `align`.
    void expectText(const std::string& words, float x, float y, int size, UiColor color,
                    int align = ALIGN_LEFT, bool bold = false) const;
    bool drew(UiRect rect, UiColor color) const;
    ButtonLook look(UiRect button) const;
};

// The middle of the rectangle in both directions.
float middleX(UiRect rect);
float middleY(UiRect rect);
