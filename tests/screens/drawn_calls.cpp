#include "screens/drawn_calls.h"

#include "ui/layer/ui_text.h"

#include <cstring>
#include <map>
#include <utility>

static std::vector<DrawnCall>& noted() {
    static std::vector<DrawnCall> calls;
    return calls;
}

static int& openedFolders() {
    static int count = 0;
    return count;
}

std::vector<DrawnCall> takeDrawnCalls() { return std::exchange(noted(), {}); }
int takeOpenedFolders() { return std::exchange(openedFolders(), 0); }

std::string countsOf(const std::vector<DrawnCall>& calls) {
    std::map<std::string, int> counts;
    for (const DrawnCall& call : calls) counts[call.kind]++;
    std::string told;
    for (const auto& [kind, count] : counts)
        told += (told.empty() ? "" : ", ") + kind + " " + std::to_string(count);
    return told;
}

static void note(const char* kind, UiColor color, std::vector<float> lengths) {
    noted().push_back({kind, "", color, std::move(lengths)});
}

// The smallest size of the top bar's texts is 12, and they are narrower in it than in all others.
static float letterHeight(const Ui& ui, int size) {
    return (size > uiFontSize(ui, 12.0f) ? 16.0f : 12.0f) * uiScale(ui);
}

static float width(const Ui& ui, const char* text, int size) {
    return static_cast<float>(std::strlen(text)) * letterHeight(ui, size) * 0.25f;
}

// asm names are those that the linker gives to what it sends here.

void rect(Ui&, UiRect rect, UiColor color) asm("__wrap__Z6uiRectR2Ui6UiRect7UiColor");
void rect(Ui&, UiRect rect, UiColor color) { note("rect", color, {rect.x, rect.y, rect.w, rect.h}); }

void textured(Ui&, UiRect rect, uint32_t, UiColor color) asm("__wrap__Z14uiTexturedRectR2Ui6UiRectj7UiColor");
void textured(Ui&, UiRect rect, uint32_t, UiColor color) {
    note("picture", color, {rect.x, rect.y, rect.w, rect.h});
}

void gradient(Ui&, UiRect rect, UiColor top, UiColor) asm("__wrap__Z14uiGradientRectR2Ui6UiRect7UiColorS2_");
void gradient(Ui&, UiRect rect, UiColor top, UiColor) {
    note("gradient", top, {rect.x, rect.y, rect.w, rect.h});
}

void frame(Ui&, UiRect rect, float thickness, UiColor color) asm("__wrap__Z7uiFrameR2Ui6UiRectf7UiColor");
void frame(Ui&, UiRect rect, float thickness, UiColor color) {
    note("frame", color, {rect.x, rect.y, rect.w, rect.h, thickness});
}

void roundRect(Ui&, UiRect rect, float radius,
               UiColor color) asm("__wrap__Z11uiRoundRectR2Ui6UiRectf7UiColor");
void roundRect(Ui&, UiRect rect, float radius, UiColor color) {
    note("round", color, {rect.x, rect.y, rect.w, rect.h, radius});
}

void triangle(Ui&, float x0, float y0, float x1, float y1, float x2, float y2,
              UiColor color) asm("__wrap__Z10uiTriangleR2Uiffffff7UiColor");
void triangle(Ui&, float x0, float y0, float x1, float y1, float x2, float y2, UiColor color) {
    note("triangle", color, {x0, y0, x1, y1, x2, y2});
}

void line(Ui&, float x0, float y0, float x1, float y1, float width,
          UiColor color) asm("__wrap__Z6uiLineR2Uifffff7UiColor");
void line(Ui&, float x0, float y0, float x1, float y1, float width, UiColor color) {
    note("line", color, {x0, y0, x1, y1, width});
}

bool button(Ui&, uint32_t id, UiRect rect, const char* label, bool enabled, bool primary, int size,
            bool bold) asm("__wrap__Z8uiButtonR2Uij6UiRectPKcbbib");
bool button(Ui&, uint32_t id, UiRect rect, const char* label, bool, bool, int size, bool) {
    noted().push_back({"button", label, {}, {rect.x, rect.y, rect.w, rect.h}, size, id});
    return false;
}

void bar(Ui&, UiRect rect, float fraction, UiColor fill,
         UiColor track) asm("__wrap__Z13uiProgressBarR2Ui6UiRectf7UiColorS2_");
void bar(Ui&, UiRect rect, float, UiColor fill, UiColor) {
    note("bar", fill, {rect.x, rect.y, rect.w, rect.h});
}

void meter(Ui&, float x, float y, float w, const char* caption, float value,
           UiColor fill) asm("__wrap__Z10uiMeterRowR2UifffPKcf7UiColor");
void meter(Ui&, float x, float y, float w, const char* caption, float, UiColor fill) {
    noted().push_back({"meter", caption, fill, {x, y, w}});
}

float textAt(Ui& ui, float x, float y, const char* text, int size, UiColor color, int align,
             bool bold) asm("__wrap__Z6uiTextR2UiffPKci7UiColorib");
float textAt(Ui& ui, float x, float y, const char* text, int size, UiColor color, int, bool) {
    noted().push_back({"text", text, color, {x, y}, size});
    return width(ui, text, size);
}

void wrapped(Ui&, UiRect rect, const char* text, int size, UiColor color,
             float gap) asm("__wrap__Z13uiWrappedTextR2Ui6UiRectPKci7UiColorf");
void wrapped(Ui&, UiRect rect, const char* text, int size, UiColor color, float gap) {
    noted().push_back({"paragraph", text, color, {rect.x, rect.y, rect.w, rect.h, gap}, size});
}

float textWidth(Ui& ui, const char* text, int size, bool) asm("__wrap__Z11uiTextWidthR2UiPKcib");
float textWidth(Ui& ui, const char* text, int size, bool) { return width(ui, text, size); }

float lineHeight(Ui& ui, int size, bool) asm("__wrap__Z12uiLineHeightR2Uiib");
float lineHeight(Ui& ui, int size, bool) { return letterHeight(ui, size) * 1.5f; }

int fitSize(Ui&, const char* text, int size, float maxWidth, bool) asm("__wrap__Z13uiFitFontSizeR2UiPKcifb");
int fitSize(Ui&, const char* text, int size, float maxWidth, bool) {
    noted().push_back({"fitting", text, {}, {maxWidth}, size});
    return size;
}

bool openFolder(const std::string& path, bool hidden) asm(
    "__wrap__Z9shellOpenRKNSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEEb");
bool openFolder(const std::string&, bool) {
    openedFolders()++;
    return true;
}
