// The 2-D layer: screen functions append triangles once a frame, and one upload draws them over the picture.
// There are no widget objects; what outlives a frame is which widget holds the mouse, and where panels stood.
//
//     uiBeginFrame(ui, width, height, input);
//     uiRoundRect(ui, {10, 10, 200, 40}, 6, colPanel);
//     if (uiButton(ui, 100, {20, 60, 120, 30}, tr(STR_BACK), true, false, 16)) ...
//     uiFlush(ui);
#pragma once

#include "input/input.h"
#include "ui/text/fonts.h"

#include <cstdint>
#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>

struct UiRect {
    float x, y, w, h; // window pixels, origin at the top left
};

inline bool contains(UiRect rect, float x, float y) {
    return rect.x <= x && x < rect.x + rect.w && rect.y <= y && y < rect.y + rect.h;
}

struct UiColor {
    float r, g, b, a;
};

constexpr UiColor colGold = {0.95f, 0.78f, 0.36f, 1.0f};
constexpr UiColor colText = {0.96f, 0.92f, 0.82f, 1.0f};
constexpr UiColor colMuted = {0.72f, 0.68f, 0.60f, 1.0f};
constexpr UiColor colHint = {0.70f, 0.66f, 0.56f, 1.0f};
constexpr UiColor colFrame = {0.62f, 0.52f, 0.36f, 1.0f};
constexpr UiColor colPanel = {0.09f, 0.085f, 0.08f, 0.93f};
constexpr UiColor colBad = {0.95f, 0.45f, 0.40f, 1.0f};
constexpr UiColor colGood = {0.45f, 0.86f, 0.52f, 1.0f};
constexpr UiColor colRain = {0.70f, 0.82f, 0.95f, 1.0f};

struct UiVertex {
    float x, y;
    float u, v;
    float r, g, b, a;
};
static_assert(sizeof(UiVertex) == 32);

// Leaves new elements unset, for a list whose every element is written right after it grew.
template<typename T> struct UnsetAllocator : std::allocator<T> {
    template<typename U> struct rebind { using other = UnsetAllocator<U>; };
    template<typename U> void construct(U* place) { ::new (static_cast<void*>(place)) U; }
    template<typename U, typename... Arguments> void construct(U* place, Arguments&&... arguments) {
        std::construct_at(place, std::forward<Arguments>(arguments)...);
    }
};

// A run of vertices under one texture, 0 for solid shapes.
struct UiDrawCommand {
    uint32_t texture;
    uint32_t first;
    uint32_t count;
};

struct Ui {
    FontSystem* fonts = nullptr; // set by uiInit; may hold no font
    uint32_t program = 0;
    uint32_t vao = 0;
    uint32_t vbo = 0;
    int32_t screenUniform = -1; // places in the program
    int32_t textureUniform = -1;
    int32_t useTextureUniform = -1;
    std::vector<UiVertex, UnsetAllocator<UiVertex>> vertices; // both keep their memory from frame to frame
    std::vector<UiDrawCommand> commands;
    int32_t screenW = 1; // drawable pixels, at least 1
    int32_t screenH = 1;
    float mouseX = 0.0f; // drawable pixels
    float mouseY = 0.0f;
    uint8_t mouseDown = 0;
    uint8_t mousePressed = 0; // this frame
    uint8_t mouseReleased = 0;
    uint32_t activeId = 0; // the widget that holds the mouse, 0 for none
    // Panels drawn so far, and those of the whole frame before: the pointer does not reach what they cover.
    std::vector<UiRect> panels;
    std::vector<UiRect> panelsBefore;
};

// False with the driver's message when the program cannot be built.
bool uiInit(Ui& ui, FontSystem& fonts, std::string* errorText);
void uiDestroy(Ui& ui);

void uiBeginFrame(Ui& ui, int width, int height, const Input& input);
void uiFlush(Ui& ui);

// Room for vertices under a texture. The caller writes each of them before the next call.
UiVertex* uiBatch(Ui& ui, uint32_t texture, uint32_t vertexCount);

// The scale of every length on the screens: 1 in a window 720 pixels high, 0.75 to 2.
float uiScale(const Ui& ui);
float uiScale(int screenH);
