// The screens without a window: the real frame with a scripted pointer, real fonts, and a GL table that draws
// nothing. What a frame draws is read off the batch.
#pragma once

#include "app/game_fixture.h"

#include <string>
#include <utility>
#include <vector>

struct DrawnText {
    std::string text;
    UiRect rect = {}; // of its picture
    int size = 0;
    bool bold = false;
    uint32_t color = 0; // red, green, blue, alpha from the highest byte down

    float middle() const { return rect.x + rect.w / 2.0f; }
    float right() const { return rect.x + rect.w; }
};

uint32_t packed(UiColor color);

class ScreenTest : public GameTest {
protected:
    ScreenTest(); // in English, in a window of 1280 by 720, where the scale is 1
    ~ScreenTest() override;

    void resize(int width, int height);
    // One frame of the screen that stands. What happened only in this frame is forgotten after it.
    void show();
    void pressKey(Key key); // and one frame

    void moveTo(float x, float y);
    void clickAt(float x, float y);      // press and release, a frame each
    void clickOn(const char* label);     // in the middle of that text
    uint32_t buttonAt(float x, float y); // the id of the button that takes a press there, 0 for none

    // Of the last frame.
    std::vector<DrawnText> texts() const;
    bool shows(const std::string& text) const;
    DrawnText text(const std::string& text) const; // the test fails when it was not drawn
    uint32_t colorAt(float x, float y) const;      // packed, of the topmost solid shape there
    // Alpha at the top and at the bottom of each shape that fills the window, in the order of drawing.
    std::vector<std::pair<float, float>> windowShades() const;
    uint32_t textureAt(float x, float y) const; // topmost, 0 for none
};
