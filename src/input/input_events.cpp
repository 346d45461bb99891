#include "input/input_events.h"

#include <cassert>

PixelRatio pixelRatio(int windowWidth, int windowHeight, int drawableWidth, int drawableHeight) {
    PixelRatio ratio;
    if (windowWidth > 0) ratio.x = static_cast<float>(drawableWidth) / static_cast<float>(windowWidth);
    if (windowHeight > 0) ratio.y = static_cast<float>(drawableHeight) / static_cast<float>(windowHeight);
    return ratio;
}

// In the order of Key.
static constexpr std::array<SDL_Keycode, KEY_COUNT> KEYCODES = {
    SDLK_w,      SDLK_a,     SDLK_s, SDLK_d, SDLK_q, SDLK_e,  SDLK_UP, SDLK_DOWN, SDLK_LEFT,   SDLK_RIGHT,
    SDLK_ESCAPE, SDLK_SPACE, SDLK_1, SDLK_2, SDLK_3, SDLK_r,  SDLK_z,  SDLK_c,    SDLK_i,      SDLK_p,
    SDLK_o,      SDLK_t,     SDLK_k, SDLK_x, SDLK_v, SDLK_F5, SDLK_F9, SDLK_F11,  SDLK_RETURN, SDLK_b,
    SDLK_y,      SDLK_f,     SDLK_h, SDLK_l, SDLK_j, SDLK_g,  SDLK_m,  SDLK_n,    SDLK_u,      SDLK_TAB};
static_assert(KEYCODES[KEY_F11] == SDLK_F11 && KEYCODES[KEY_U] == SDLK_u && KEYCODES[KEY_TAB] == SDLK_TAB);

static int indexOfKeycode(SDL_Keycode keycode) {
    for (int key = 0; key < KEY_COUNT; key++)
        if (KEYCODES[key] == keycode) return key;
    return -1;
}

// The key that an English keyboard has at the same place, because layouts whose letters are not Latin have
// no W to press, and on some the digits need Shift.
static SDL_Keycode englishKeycode(SDL_Scancode scancode) {
    if (scancode >= SDL_SCANCODE_A && scancode <= SDL_SCANCODE_Z) return SDLK_a + (scancode - SDL_SCANCODE_A);
    if (scancode >= SDL_SCANCODE_1 && scancode <= SDL_SCANCODE_9) return SDLK_1 + (scancode - SDL_SCANCODE_1);
    return SDLK_UNKNOWN;
}

int keyIndex(const SDL_Keysym& keysym) {
    const int index = indexOfKeycode(keysym.sym);
    const bool isDigitKey = keysym.scancode >= SDL_SCANCODE_1 && keysym.scancode <= SDL_SCANCODE_9;
    const bool isLatin = keysym.sym < 128 || (keysym.sym & SDLK_SCANCODE_MASK) != 0;
    if (index >= 0 || (isLatin && !isDigitKey)) return index;
    return indexOfKeycode(englishKeycode(keysym.scancode));
}

static void seePointer(InputReader& reader, int x, int y, const PixelRatio& ratio) {
    reader.pointerX = static_cast<float>(x) * ratio.x;
    reader.pointerY = static_cast<float>(y) * ratio.y;
    reader.pointerInside = true;
}

static void setButton(InputReader& reader, const SDL_MouseButtonEvent& button) {
    const uint8_t down = button.state == SDL_PRESSED;
    if (down && !reader.windowFocused) return;
    Input& input = reader.input;
    if (button.button == SDL_BUTTON_RIGHT) input.rightHeld = down;
    if (button.button == SDL_BUTTON_MIDDLE) input.middleHeld = down;
    if (button.button != SDL_BUTTON_LEFT) return;
    input.leftHeld = down;
    if (down)
        input.leftPressed = 1;
    else
        input.leftReleased = 1;
}

static void setKey(Input& input, const SDL_KeyboardEvent& key) {
    const int index = keyIndex(key.keysym);
    if (index < 0) return;
    input.keysHeld[index] = key.state == SDL_PRESSED;
    if (key.state == SDL_PRESSED && key.repeat == 0) input.keysPressed[index] = 1;
}

static void followWindow(InputReader& reader, uint8_t change) {
    if (change == SDL_WINDOWEVENT_ENTER) reader.pointerInside = true;
    if (change == SDL_WINDOWEVENT_LEAVE) reader.pointerInside = false;
    if (change == SDL_WINDOWEVENT_FOCUS_LOST) reader.windowFocused = false;
    if (change == SDL_WINDOWEVENT_FOCUS_GAINED) reader.windowFocused = reader.focusCame = true;
}

void beginInputFrame(InputReader& reader) {
    Input& input = reader.input;
    input.leftPressed = 0;
    input.leftReleased = 0;
    input.wheel = 0.0f;
    input.keysPressed.fill(0);
    reader.focusCame = false;
}

void handleInputEvent(InputReader& reader, const SDL_Event& event, const PixelRatio& ratio) {
    switch (event.type) {
    case SDL_MOUSEMOTION:
        seePointer(reader, event.motion.x, event.motion.y, ratio);
        break;
    case SDL_MOUSEBUTTONDOWN:
    case SDL_MOUSEBUTTONUP:
        seePointer(reader, event.button.x, event.button.y, ratio);
        setButton(reader, event.button);
        break;
    case SDL_MOUSEWHEEL:
        seePointer(reader, event.wheel.mouseX, event.wheel.mouseY, ratio);
        reader.input.wheel += static_cast<float>(event.wheel.y);
        break;
    case SDL_KEYDOWN:
    case SDL_KEYUP:
        setKey(reader.input, event.key);
        break;
    case SDL_WINDOWEVENT:
        followWindow(reader, event.window.event);
        break;
    default:
        break;
    }
}

// SDL reports a key that was down when the focus came as one that went down just then: its press was meant
// for another window, or for the switch between them. A key that is already up again was meant for the game.
static void forgetKeysOfOtherWindows(Input& input) {
    for (int key = 0; key < KEY_COUNT; key++)
        if (input.keysHeld[key]) input.keysPressed[key] = 0;
}

void endInputFrame(InputReader& reader) {
    Input& input = reader.input;
    const bool held = input.leftHeld || input.rightHeld || input.middleHeld || input.leftReleased;
    assert(!held || reader.pointerX != POINTER_NOWHERE); // a button's event tells where it happened
    const bool somewhere = held || (reader.pointerInside && reader.windowFocused);
    input.mouseX = somewhere ? reader.pointerX : POINTER_NOWHERE;
    input.mouseY = somewhere ? reader.pointerY : POINTER_NOWHERE;
    if (!somewhere) input.wheel = 0.0f;
    if (reader.focusCame) forgetKeysOfOtherWindows(input);
}

bool readInputFrame(InputReader& reader, const PixelRatio& ratio) {
    beginInputFrame(reader);
    bool running = true;
    bool full = false;
    SDL_Event event;
    // SDL_PollEvent would gather newer events, whose places may count in another size of the window.
    while (!full && SDL_PeepEvents(&event, 1, SDL_GETEVENT, SDL_FIRSTEVENT, SDL_LASTEVENT) > 0) {
        handleInputEvent(reader, event, ratio);
        if (event.type == SDL_QUIT) running = false;
        full = event.type == SDL_MOUSEBUTTONDOWN || event.type == SDL_MOUSEBUTTONUP;
    }
    endInputFrame(reader);
    return running;
}
