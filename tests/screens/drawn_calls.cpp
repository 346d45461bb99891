#include "screens/drawn_calls.h"

#include "ui/layer/ui_text.h"

#include <algorithm>
#include <cstring>
#include <utility>

static std::vector<DrawnCall>& noted() {
    static std::vector<DrawnCall> calls;
    return calls;
}

std::vector<DrawnCall> takeDrawnCalls() { return std::exchange(noted(), {}); }

static void note(const std::string& what, UiColor color, std::vector<float> lengths,
                 std::vector<float> details = {}) {
    noted().push_back({what, color, std::move(lengths), std::move(details)});
}

static void note(const std::string& what, UiRect rect, UiColor color, std::vector<float> details = {}) {
    note(what, color, {rect.x, rect.y, rect.w, rect.h}, std::move(details));
}

static float width(const char* text, int size) {
    return static_cast<float>(std::strlen(text)) * static_cast<float>(size) * 0.25f;
}

// asm names are those that the linker gives to what it sends here.

void rect(Ui&, UiRect rect, UiColor color) asm("__wrap__Z6uiRectR2Ui6UiRect7UiColor");
void rect(Ui&, UiRect rect, UiColor color) { note("rect", rect, color); }

void textured(Ui&, UiRect rect, uint32_t, UiColor color) asm("__wrap__Z14uiTexturedRectR2Ui6UiRectj7UiColor");
void textured(Ui&, UiRect rect, uint32_t, UiColor color) { note("picture", rect, color); }

void gradient(Ui&, UiRect rect, UiColor top, UiColor) asm("__wrap__Z14uiGradientRectR2Ui6UiRect7UiColorS1_");
void gradient(Ui&, UiRect rect, UiColor top, UiColor) { note("gradient", rect, top); }

void frame(Ui&, UiRect rect, float thickness, UiColor color) asm("__wrap__Z7uiFrameR2Ui6UiRectf7UiColor");
void frame(Ui&, UiRect rect, float thickness, UiColor color) { note("frame", rect, color, {thickness}); }

void roundRect(Ui&, UiRect rect, float radius,
               UiColor color) asm("__wrap__Z11uiRoundRectR2Ui6UiRectf7UiColor");
void roundRect(Ui&, UiRect rect, float radius, UiColor color) { note("round", rect, color, {radius}); }

void triangle(Ui&, float x0, float y0, float x1, float y1, float x2, float y2,
              UiColor color) asm("__wrap__Z10uiTriangleR2Uiffffff7UiColor");
void triangle(Ui&, float x0, float y0, float x1, float y1, float x2, float y2, UiColor color) {
    note("triangle", color, {x0, y0, x1, y1, x2, y2});
}

void line(Ui&, float x0, float y0, float x1, float y1, float width,
          UiColor color) asm("__wrap__Z6uiLineR2Uifffff7UiColor");
void line(Ui&, float x0, float y0, float x1, float y1, float width, UiColor color) {
    note("line", color, {x0, y0, x1, y1}, {width});
}

void arcFan(Ui&, float cx, float cy, float radius, float, float, int,
            UiColor color) asm("__wrap__Z8uiArcFanR2Uifffffi7UiColor");
void arcFan(Ui&, float cx, float cy, float radius, float, float, int, UiColor color) {
    note("fan", color, {cx, cy, radius});
}

float textAt(Ui&, float x, float y, const char* text, int size, UiColor color, int align,
             bool bold) asm("__wrap__Z6uiTextR2UiffPKci7UiColorib");
float textAt(Ui&, float x, float y, const char* text, int size, UiColor color, int, bool) {
    note(std::string("text ") + text, color, {x, y, static_cast<float>(size)});
    return width(text, size);
}

float textIn(Ui&, UiRect rect, const char* text, int size, UiColor color, int align, float padding,
             bool bold) asm("__wrap__Z12uiTextInRectR2Ui6UiRectPKci7UiColorifb");
float textIn(Ui&, UiRect rect, const char* text, int size, UiColor color, int, float padding, bool) {
    note(std::string("text ") + text, color, {rect.x, rect.y, rect.w, rect.h, static_cast<float>(size)},
         {padding});
    return width(text, size);
}

void wrapped(Ui&, UiRect rect, const char* text, int size, UiColor color,
             float gap) asm("__wrap__Z13uiWrappedTextR2Ui6UiRectPKci7UiColorf");
void wrapped(Ui&, UiRect rect, const char* text, int size, UiColor color, float gap) {
    note(std::string("text ") + text, color, {rect.x, rect.y, rect.w, rect.h, static_cast<float>(size)},
         {gap});
}

float textWidth(Ui&, const char* text, int size, bool) asm("__wrap__Z11uiTextWidthR2UiPKcib");
float textWidth(Ui&, const char* text, int size, bool) { return width(text, size); }

float lineHeight(Ui&, int size, bool) asm("__wrap__Z12uiLineHeightR2Uiib");
float lineHeight(Ui&, int size, bool) { return static_cast<float>(size) * 1.5f; }

int fitSize(Ui&, const char* text, int size, float maxWidth, bool) asm("__wrap__Z13uiFitFontSizeR2UiPKcifb");
int fitSize(Ui&, const char*, int size, float, bool) { return size; }
