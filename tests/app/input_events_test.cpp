#include "app/input_events.h"

#include <gtest/gtest.h>

#include <string>

static SDL_Event keyEvent(uint32_t type, SDL_Keycode keycode, bool repeat = false) {
    SDL_Event event = {};
    event.type = type;
    event.key.state = type == SDL_KEYDOWN ? SDL_PRESSED : SDL_RELEASED;
    event.key.repeat = repeat;
    event.key.keysym.sym = keycode;
    return event;
}

static SDL_Event buttonEvent(uint32_t type, uint8_t button) {
    SDL_Event event = {};
    event.type = type;
    event.button.button = button;
    event.button.state = type == SDL_MOUSEBUTTONDOWN ? SDL_PRESSED : SDL_RELEASED;
    return event;
}

static SDL_Event wheelEvent(int steps) {
    SDL_Event event = {};
    event.type = SDL_MOUSEWHEEL;
    event.wheel.y = steps;
    return event;
}

static SDL_Event motionEvent(int x, int y) {
    SDL_Event event = {};
    event.type = SDL_MOUSEMOTION;
    event.motion.x = x;
    event.motion.y = y;
    return event;
}

static int indexOf(SDL_Keycode keycode, SDL_Scancode scancode = SDL_SCANCODE_UNKNOWN) {
    SDL_Keysym keysym = {};
    keysym.sym = keycode;
    keysym.scancode = scancode;
    return keyIndex(keysym);
}

TEST(Input, EveryKeyHasItsPlaceInTheTable) {
    const struct {
        SDL_Keycode keycode;
        int index;
    } table[] = {
        {SDLK_w, 0},  {SDLK_a, 1},    {SDLK_s, 2},    {SDLK_d, 3},     {SDLK_q, 4},       {SDLK_e, 5},
        {SDLK_UP, 6}, {SDLK_DOWN, 7}, {SDLK_LEFT, 8}, {SDLK_RIGHT, 9}, {SDLK_ESCAPE, 10}, {SDLK_SPACE, 11},
        {SDLK_1, 12}, {SDLK_2, 13},   {SDLK_3, 14},   {SDLK_r, 15},    {SDLK_z, 16},      {SDLK_c, 17},
        {SDLK_i, 18}, {SDLK_p, 19},   {SDLK_o, 20},   {SDLK_t, 21},    {SDLK_k, 22},      {SDLK_x, 23},
        {SDLK_v, 24}, {SDLK_F5, 25},  {SDLK_F9, 26},  {SDLK_F11, 27},  {SDLK_RETURN, 28}, {SDLK_b, 29},
        {SDLK_y, 30}, {SDLK_f, 31},   {SDLK_h, 32},   {SDLK_l, 33},    {SDLK_j, 34},      {SDLK_g, 35},
        {SDLK_m, 36}, {SDLK_n, 37},   {SDLK_u, 38},   {SDLK_TAB, 39},
    };
    ASSERT_EQ(std::size(table), static_cast<size_t>(KEY_COUNT));
    for (const auto& row : table) EXPECT_EQ(indexOf(row.keycode), row.index) << SDL_GetKeyName(row.keycode);
}

TEST(Input, AKeyThatIsNotListedIsIgnored) {
    Input input;
    handleInputEvent(input, keyEvent(SDL_KEYDOWN, SDLK_F1), {});
    handleInputEvent(input, keyEvent(SDL_KEYDOWN, SDLK_COMMA), {});
    for (int key = 0; key < KEY_COUNT; key++) {
        EXPECT_EQ(input.keysHeld[key], 0);
        EXPECT_EQ(input.keysPressed[key], 0);
    }
}

TEST(Input, LayoutsWithoutLatinLettersUseTheKeyAtTheSamePlace) {
    EXPECT_EQ(indexOf(0x446, SDL_SCANCODE_W), KEY_W);          // Cyrillic
    EXPECT_EQ(indexOf(SDLK_AMPERSAND, SDL_SCANCODE_1), KEY_1); // French digits need Shift
    EXPECT_EQ(indexOf(SDLK_w, SDL_SCANCODE_Z), KEY_W);         // French letters are Latin: the letter counts
    EXPECT_EQ(indexOf(SDLK_COMMA, SDL_SCANCODE_W), -1);        // so does a Latin mark
    EXPECT_EQ(indexOf(0x446, SDL_SCANCODE_COMMA), -1);
}

TEST(Input, ARepeatedKeyDownHoldsButDoesNotPress) {
    Input input;
    handleInputEvent(input, keyEvent(SDL_KEYDOWN, SDLK_w, true), {});
    EXPECT_EQ(input.keysHeld[KEY_W], 1);
    EXPECT_EQ(input.keysPressed[KEY_W], 0);
}

TEST(Input, HeldBytesSurviveTheFrameAndEdgesDoNot) {
    Input input;
    handleInputEvent(input, keyEvent(SDL_KEYDOWN, SDLK_SPACE), {});
    handleInputEvent(input, buttonEvent(SDL_MOUSEBUTTONDOWN, SDL_BUTTON_LEFT), {});
    handleInputEvent(input, buttonEvent(SDL_MOUSEBUTTONDOWN, SDL_BUTTON_RIGHT), {});
    handleInputEvent(input, buttonEvent(SDL_MOUSEBUTTONDOWN, SDL_BUTTON_MIDDLE), {});
    handleInputEvent(input, wheelEvent(2), {});
    EXPECT_EQ(input.keysPressed[KEY_SPACE], 1);
    EXPECT_EQ(input.leftPressed, 1);
    EXPECT_EQ(input.leftReleased, 0);
    EXPECT_EQ(input.wheel, 2.0f);

    beginInputFrame(input);
    EXPECT_EQ(input.keysPressed[KEY_SPACE], 0);
    EXPECT_EQ(input.leftPressed, 0);
    EXPECT_EQ(input.wheel, 0.0f);
    EXPECT_EQ(input.keysHeld[KEY_SPACE], 1);
    EXPECT_TRUE(input.leftHeld && input.rightHeld && input.middleHeld);
}

TEST(Input, ReleasesClearWhatIsHeld) {
    Input input;
    for (const uint8_t button : {SDL_BUTTON_LEFT, SDL_BUTTON_RIGHT, SDL_BUTTON_MIDDLE})
        handleInputEvent(input, buttonEvent(SDL_MOUSEBUTTONDOWN, button), {});
    handleInputEvent(input, keyEvent(SDL_KEYDOWN, SDLK_e), {});
    beginInputFrame(input);
    for (const uint8_t button : {SDL_BUTTON_LEFT, SDL_BUTTON_RIGHT, SDL_BUTTON_MIDDLE})
        handleInputEvent(input, buttonEvent(SDL_MOUSEBUTTONUP, button), {});
    handleInputEvent(input, keyEvent(SDL_KEYUP, SDLK_e), {});
    EXPECT_FALSE(input.leftHeld || input.rightHeld || input.middleHeld);
    EXPECT_EQ(input.leftReleased, 1);
    EXPECT_EQ(input.keysHeld[KEY_E], 0);
}

TEST(Input, BeforeTheFirstMotionThePointerIsNowhere) {
    Input input;
    EXPECT_FALSE(pointerIsSomewhere(input));
    handleInputEvent(input, keyEvent(SDL_KEYDOWN, SDLK_w), {});
    EXPECT_FALSE(pointerIsSomewhere(input));
    handleInputEvent(input, motionEvent(0, 0), {});
    EXPECT_TRUE(pointerIsSomewhere(input));
}

TEST(Input, WheelStepsOfAFrameAddUp) {
    Input input;
    handleInputEvent(input, wheelEvent(1), {});
    handleInputEvent(input, wheelEvent(-3), {});
    EXPECT_EQ(input.wheel, -2.0f);
}

TEST(Input, TheMouseIsMeasuredInDrawablePixels) {
    Input input;
    handleInputEvent(input, motionEvent(100, 50), pixelRatio(800, 600, 1600, 900));
    EXPECT_EQ(input.mouseX, 200.0f);
    EXPECT_EQ(input.mouseY, 75.0f);
}

TEST(Input, WithoutAWindowSizeTheRatioIsOne) {
    const PixelRatio ratio = pixelRatio(0, -5, 1600, 900);
    EXPECT_EQ(ratio.x, 1.0f);
    EXPECT_EQ(ratio.y, 1.0f);
}
