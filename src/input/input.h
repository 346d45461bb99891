// What the player's hands did, filled once a frame by the main loop and read by every screen.
#pragma once

#include <array>
#include <cstdint>

enum Key {
    KEY_W,
    KEY_A,
    KEY_S,
    KEY_D,
    KEY_Q,
    KEY_E,
    KEY_UP,
    KEY_DOWN,
    KEY_LEFT,
    KEY_RIGHT,
    KEY_ESC,
    KEY_SPACE,
    KEY_1,
    KEY_2,
    KEY_3,
    KEY_R,
    KEY_Z,
    KEY_C,
    KEY_I,
    KEY_P,
    KEY_O,
    KEY_T,
    KEY_K,
    KEY_X,
    KEY_V,
    KEY_F5,
    KEY_F9,
    KEY_F11,
    KEY_ENTER,
    KEY_B,
    KEY_Y,
    KEY_F,
    KEY_H,
    KEY_L,
    KEY_J,
    KEY_G,
    KEY_M,
    KEY_N,
    KEY_U,
    KEY_TAB,
    KEY_COUNT
};
static_assert(KEY_COUNT == 40);

// Both coordinates of a pointer that is nowhere: over no widget, at no edge of the window, above no land.
constexpr float POINTER_NOWHERE = -1e6f;

struct Input {
    float mouseX = POINTER_NOWHERE; // drawable pixels
    float mouseY = POINTER_NOWHERE;
    uint8_t leftHeld = 0;
    uint8_t leftPressed = 0; // this frame
    uint8_t leftReleased = 0;
    uint8_t rightHeld = 0;
    uint8_t middleHeld = 0;
    float wheel = 0.0f; // steps of this frame, positive away from the user
    std::array<uint8_t, KEY_COUNT> keysHeld = {};
    std::array<uint8_t, KEY_COUNT> keysPressed = {}; // this frame, without repeats
    int32_t drawableWidth = 0;                       // pixels
    int32_t drawableHeight = 0;
};

inline bool pointerIsSomewhere(const Input& input) { return input.mouseX != POINTER_NOWHERE; }
