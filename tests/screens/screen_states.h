// Every screen and part of one in each of its states, and how much it draws there.
#pragma once

#include "app/game_fixture.h"
#include "screens/drawn_calls.h"

struct ScreenState {
    const char* name;
    void (*draw)(App& app, const Input& input);
    const char* counts; // of what is drawn in a window of 1280 by 720
    void (*prepare)(App& app);
};

const std::vector<ScreenState>& screenStates();

// A game in that state, on level land and with the pointer outside the window.
struct GameInState : GameTest {
    explicit GameInState(const ScreenState& entered);

    // What a frame asks for.
    std::vector<DrawnCall> callsAt(int width, int height);

    const ScreenState& state;
    using GameTest::app;
    using GameTest::folder;

private:
    void TestBody() override {}
};
