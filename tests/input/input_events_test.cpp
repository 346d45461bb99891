#include "input/input_events.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>

static SDL_Event keyEvent(uint32_t type, SDL_Keycode keycode, bool repeat = false) {
    SDL_Event event = {};
    event.type = type;
    event.key.state = type == SDL_KEYDOWN ? SDL_PRESSED : SDL_RELEASED;
    event.key.repeat = repeat;
    event.key.keysym.sym = keycode;
    return event;
}

static SDL_Event buttonEvent(uint32_t type, uint8_t button, int x = 0, int y = 0) {
    SDL_Event event = {};
    event.type = type;
    event.button.x = x;
    event.button.y = y;
    event.button.button = button;
    event.button.state = type == SDL_MOUSEBUTTONDOWN ? SDL_PRESSED : SDL_RELEASED;
    return event;
}

static SDL_Event wheelEvent(int steps, int x = 0, int y = 0) {
    SDL_Event event = {};
    event.type = SDL_MOUSEWHEEL;
    event.wheel.y = steps;
    event.wheel.mouseX = x;
    event.wheel.mouseY = y;
    return event;
}

static SDL_Event motionEvent(int x, int y) {
    SDL_Event event = {};
    event.type = SDL_MOUSEMOTION;
    event.motion.x = x;
    event.motion.y = y;
    return event;
}

static SDL_Event windowEvent(uint8_t change) {
    SDL_Event event = {};
    event.type = SDL_WINDOWEVENT;
    event.window.event = change;
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
    InputReader reader;
    const Input& input = reader.input;
    handleInputEvent(reader, keyEvent(SDL_KEYDOWN, SDLK_F1), {});
    handleInputEvent(reader, keyEvent(SDL_KEYDOWN, SDLK_COMMA), {});
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

TEST(Input, OnlyLettersAndDigitsHaveAPlaceOnTheKeyboard) {
    constexpr SDL_Keycode CYRILLIC = 0x446;
    EXPECT_EQ(indexOf(CYRILLIC, SDL_SCANCODE_A), KEY_A); // the first letter and the last
    EXPECT_EQ(indexOf(CYRILLIC, SDL_SCANCODE_Z), KEY_Z);
    EXPECT_EQ(indexOf(CYRILLIC, SDL_SCANCODE_1), KEY_1);
    EXPECT_EQ(indexOf(CYRILLIC, SDL_SCANCODE_3), KEY_3);
    for (const SDL_Scancode scancode : {SDL_SCANCODE_4, SDL_SCANCODE_9, SDL_SCANCODE_0, SDL_SCANCODE_UNKNOWN,
                                        SDL_SCANCODE_RETURN, SDL_SCANCODE_F5})
        EXPECT_EQ(indexOf(CYRILLIC, scancode), -1) << scancode;
    EXPECT_EQ(indexOf(SDLK_AMPERSAND, SDL_SCANCODE_3), KEY_3);
    EXPECT_EQ(indexOf(SDLK_F1, SDL_SCANCODE_W), -1); // keys without a letter are where they are
    EXPECT_EQ(indexOf(127, SDL_SCANCODE_W), -1);     // the last Latin code
    EXPECT_EQ(indexOf(128, SDL_SCANCODE_W), KEY_W);
}

TEST(Input, BeginsWithNothingHeldAndNothingPressed) {
    const Input input;
    EXPECT_EQ(input.mouseX, POINTER_NOWHERE);
    EXPECT_EQ(input.mouseY, POINTER_NOWHERE);
    EXPECT_FALSE(input.leftHeld || input.leftPressed || input.leftReleased);
    EXPECT_FALSE(input.rightHeld || input.middleHeld);
    EXPECT_EQ(input.wheel, 0.0f);
    for (int key = 0; key < KEY_COUNT; key++)
        EXPECT_FALSE(input.keysHeld[key] || input.keysPressed[key]) << key;
    EXPECT_EQ(input.drawableWidth, 0);
    EXPECT_EQ(input.drawableHeight, 0);
}

TEST(Input, ARepeatedKeyDownHoldsButDoesNotPress) {
    InputReader reader;
    const Input& input = reader.input;
    handleInputEvent(reader, keyEvent(SDL_KEYDOWN, SDLK_w, true), {});
    EXPECT_EQ(input.keysHeld[KEY_W], 1);
    EXPECT_EQ(input.keysPressed[KEY_W], 0);
}

TEST(Input, HeldBytesSurviveTheFrameAndEdgesDoNot) {
    InputReader reader;
    const Input& input = reader.input;
    handleInputEvent(reader, keyEvent(SDL_KEYDOWN, SDLK_SPACE), {});
    handleInputEvent(reader, buttonEvent(SDL_MOUSEBUTTONDOWN, SDL_BUTTON_LEFT), {});
    handleInputEvent(reader, buttonEvent(SDL_MOUSEBUTTONDOWN, SDL_BUTTON_RIGHT), {});
    handleInputEvent(reader, buttonEvent(SDL_MOUSEBUTTONDOWN, SDL_BUTTON_MIDDLE), {});
    handleInputEvent(reader, wheelEvent(2), {});
    EXPECT_EQ(input.keysPressed[KEY_SPACE], 1);
    EXPECT_EQ(input.leftPressed, 1);
    EXPECT_EQ(input.leftReleased, 0);
    EXPECT_EQ(input.wheel, 2.0f);

    beginInputFrame(reader);
    EXPECT_EQ(input.keysPressed[KEY_SPACE], 0);
    EXPECT_EQ(input.leftPressed, 0);
    EXPECT_EQ(input.wheel, 0.0f);
    EXPECT_EQ(input.keysHeld[KEY_SPACE], 1);
    EXPECT_TRUE(input.leftHeld && input.rightHeld && input.middleHeld);
}

TEST(Input, ReleasesClearWhatIsHeld) {
    InputReader reader;
    const Input& input = reader.input;
    for (const uint8_t button : {SDL_BUTTON_LEFT, SDL_BUTTON_RIGHT, SDL_BUTTON_MIDDLE})
        handleInputEvent(reader, buttonEvent(SDL_MOUSEBUTTONDOWN, button), {});
    handleInputEvent(reader, keyEvent(SDL_KEYDOWN, SDLK_e), {});
    beginInputFrame(reader);
    for (const uint8_t button : {SDL_BUTTON_LEFT, SDL_BUTTON_RIGHT, SDL_BUTTON_MIDDLE})
        handleInputEvent(reader, buttonEvent(SDL_MOUSEBUTTONUP, button), {});
    handleInputEvent(reader, keyEvent(SDL_KEYUP, SDLK_e), {});
    EXPECT_FALSE(input.leftHeld || input.rightHeld || input.middleHeld);
    EXPECT_EQ(input.leftReleased, 1);
    EXPECT_EQ(input.keysHeld[KEY_E], 0);
}

TEST(Input, WheelStepsOfAFrameAddUp) {
    InputReader reader;
    const Input& input = reader.input;
    handleInputEvent(reader, wheelEvent(1), {});
    handleInputEvent(reader, wheelEvent(-3), {});
    EXPECT_EQ(input.wheel, -2.0f);
}

TEST(Input, TheMouseIsMeasuredInDrawablePixels) {
    InputReader reader;
    const Input& input = reader.input;
    handleInputEvent(reader, motionEvent(100, 50), pixelRatio(800, 600, 1600, 900));
    endInputFrame(reader);
    EXPECT_EQ(input.mouseX, 200.0f);
    EXPECT_EQ(input.mouseY, 75.0f);
}

TEST(Input, WithoutAWindowSizeTheRatioIsOne) {
    const PixelRatio ratio = pixelRatio(0, -5, 1600, 900);
    EXPECT_EQ(ratio.x, 1.0f);
    EXPECT_EQ(ratio.y, 1.0f);
    const PixelRatio across = pixelRatio(1, 0, 3, 900); // each axis by itself
    EXPECT_EQ(across.x, 3.0f);
    EXPECT_EQ(across.y, 1.0f);
    const PixelRatio down = pixelRatio(0, 1, 1600, 3);
    EXPECT_EQ(down.x, 1.0f);
    EXPECT_EQ(down.y, 3.0f);
}

// --- Where the pointer is

class Pointer : public testing::Test {
protected:
    // A frame of these events.
    void frame(std::initializer_list<SDL_Event> events) {
        beginInputFrame(reader);
        for (const SDL_Event& event : events) handleInputEvent(reader, event, {});
        endInputFrame(reader);
    }
    void expectAt(float x, float y) const {
        EXPECT_EQ(input.mouseX, x);
        EXPECT_EQ(input.mouseY, y);
    }
    bool somewhere() const { return pointerIsSomewhere(input); }

    InputReader reader;
    const Input& input = reader.input;
};

TEST_F(Pointer, BeforeTheFirstMouseEventItIsNowhere) {
    EXPECT_FALSE(somewhere());
    frame({windowEvent(SDL_WINDOWEVENT_FOCUS_GAINED), windowEvent(SDL_WINDOWEVENT_ENTER),
           keyEvent(SDL_KEYDOWN, SDLK_w)});
    EXPECT_FALSE(somewhere());
    frame({motionEvent(0, 0)});
    expectAt(0, 0);
}

TEST_F(Pointer, ThePressOfAMouseThatNeverMovedTellsItsPlace) {
    frame({buttonEvent(SDL_MOUSEBUTTONDOWN, SDL_BUTTON_LEFT, 70, 80)});
    expectAt(70, 80);
    EXPECT_EQ(input.leftPressed, 1);
}

TEST_F(Pointer, SoDoesItsWheel) {
    frame({wheelEvent(1, 70, 80)});
    expectAt(70, 80);
    EXPECT_EQ(input.wheel, 1.0f);
}

TEST_F(Pointer, OutsideTheWindowItIsNowhere) {
    frame({motionEvent(5, 100)});
    frame({motionEvent(0, 100), windowEvent(SDL_WINDOWEVENT_LEAVE)}); // held to the border on its way out
    EXPECT_FALSE(somewhere());
    frame({});
    EXPECT_FALSE(somewhere());
    frame({windowEvent(SDL_WINDOWEVENT_ENTER)}); // where it left
    expectAt(0, 100);
}

TEST_F(Pointer, WhileAnotherWindowHasTheFocusItIsNowhere) {
    frame({motionEvent(5, 100)});
    frame({windowEvent(SDL_WINDOWEVENT_FOCUS_LOST)});
    EXPECT_FALSE(somewhere());
    frame({motionEvent(6, 101), wheelEvent(1)}); // over the window, and not for it
    EXPECT_FALSE(somewhere());
    EXPECT_EQ(input.wheel, 0.0f);
    frame({buttonEvent(SDL_MOUSEBUTTONDOWN, SDL_BUTTON_LEFT, 6, 101)});
    EXPECT_FALSE(somewhere());
    EXPECT_FALSE(input.leftPressed || input.leftHeld);
    frame({motionEvent(7, 102), windowEvent(SDL_WINDOWEVENT_FOCUS_GAINED)});
    expectAt(7, 102);
}

TEST_F(Pointer, AButtonThatWentDownInsideKeepsItUntilItIsUp) {
    for (const uint8_t button : {SDL_BUTTON_LEFT, SDL_BUTTON_RIGHT, SDL_BUTTON_MIDDLE}) {
        frame({windowEvent(SDL_WINDOWEVENT_ENTER), windowEvent(SDL_WINDOWEVENT_FOCUS_GAINED)});
        frame({buttonEvent(SDL_MOUSEBUTTONDOWN, button, 5, 100)});
        frame({windowEvent(SDL_WINDOWEVENT_LEAVE), windowEvent(SDL_WINDOWEVENT_FOCUS_LOST),
               motionEvent(-30, 100)});
        expectAt(-30, 100);
        frame({buttonEvent(SDL_MOUSEBUTTONUP, button, -40, 100), windowEvent(SDL_WINDOWEVENT_LEAVE)});
        EXPECT_EQ(somewhere(), button == SDL_BUTTON_LEFT); // whose release acts
        frame({});
        EXPECT_FALSE(somewhere());
    }
}

// --- A key held while the focus comes

TEST_F(Pointer, AKeyThatIsDownWhenTheFocusComesHoldsButIsNotPressed) {
    frame({windowEvent(SDL_WINDOWEVENT_FOCUS_LOST)});
    frame({windowEvent(SDL_WINDOWEVENT_FOCUS_GAINED), keyEvent(SDL_KEYDOWN, SDLK_TAB)});
    EXPECT_EQ(input.keysHeld[KEY_TAB], 1);
    EXPECT_EQ(input.keysPressed[KEY_TAB], 0);
    frame({keyEvent(SDL_KEYUP, SDLK_TAB), keyEvent(SDL_KEYDOWN, SDLK_TAB)});
    EXPECT_EQ(input.keysPressed[KEY_TAB], 1);
}

TEST_F(Pointer, AKeyThatIsPressedAndReleasedRightAfterTheFocusCameIsPressed) {
    frame({windowEvent(SDL_WINDOWEVENT_FOCUS_GAINED), keyEvent(SDL_KEYDOWN, SDLK_F5),
           keyEvent(SDL_KEYUP, SDLK_F5)});
    EXPECT_EQ(input.keysPressed[KEY_F5], 1);
}

// --- Frames

class InputFrames : public Pointer {
protected:
    InputFrames() { SDL_InitSubSystem(SDL_INIT_EVENTS); }
    ~InputFrames() override { SDL_QuitSubSystem(SDL_INIT_EVENTS); }

    static void happen(std::initializer_list<SDL_Event> events) {
        for (SDL_Event event : events) SDL_PushEvent(&event);
    }
    bool read() { return readInputFrame(reader, {}); }
};

TEST_F(InputFrames, AReleaseAndTheNextPressAreTwoFramesEachAtItsPlace) {
    happen({motionEvent(10, 10), buttonEvent(SDL_MOUSEBUTTONDOWN, SDL_BUTTON_LEFT, 10, 10),
            motionEvent(60, 10), buttonEvent(SDL_MOUSEBUTTONUP, SDL_BUTTON_LEFT, 60, 10), motionEvent(90, 10),
            buttonEvent(SDL_MOUSEBUTTONDOWN, SDL_BUTTON_LEFT, 90, 10), motionEvent(95, 10)});
    const struct {
        float x;
        int pressed, released, held;
    } frames[] = {{10, 1, 0, 1}, {60, 0, 1, 0}, {90, 1, 0, 1}, {95, 0, 0, 1}, {95, 0, 0, 1}};
    for (const auto& frame : frames) {
        EXPECT_TRUE(read());
        expectAt(frame.x, 10);
        EXPECT_EQ(input.leftPressed, frame.pressed) << frame.x;
        EXPECT_EQ(input.leftReleased, frame.released) << frame.x;
        EXPECT_EQ(input.leftHeld, frame.held) << frame.x;
    }
}

TEST_F(InputFrames, AllElseOfAFrameIsReadAtOnce) {
    happen({motionEvent(10, 10), wheelEvent(1), keyEvent(SDL_KEYDOWN, SDLK_w), motionEvent(20, 10),
            wheelEvent(1), keyEvent(SDL_KEYDOWN, SDLK_F5)});
    EXPECT_TRUE(read());
    EXPECT_EQ(input.wheel, 2.0f);
    EXPECT_TRUE(input.keysPressed[KEY_W] && input.keysPressed[KEY_F5]);
}

TEST_F(InputFrames, ThePlayersWishToLeaveEndsTheLoop) {
    SDL_Event quit = {};
    quit.type = SDL_QUIT;
    happen({quit});
    EXPECT_FALSE(read());
    EXPECT_TRUE(read());
}
