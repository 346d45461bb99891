// A game on level land without a window: real session, camera and tools, and a GL table that draws nothing.
#pragma once

#include "app/app.h"
#include "temp_dir.h"
#include "view/gl/fake_gl.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

class GameTest : public testing::Test {
protected:
    GameTest();

    // One frame of the game screen. What happened only in this frame is forgotten after it.
    void frame(float dt = 0.0f);
    void press(Key key); // and one frame

    // Puts the mouse on the middle of a cell as the camera sees it; far off the map it points into the sky.
    void point(int x, int y);
    void pointOffTheMap();
    // Moves to a cell, presses or releases the left button there, and runs the frame.
    void pressAt(int x, int y);
    void dragTo(int x, int y);
    void releaseAt(int x, int y);
    void click(int x, int y);

    Cell& cell(int x, int y) { return app.city.cells[cellIndex(x, y)]; }
    // What came since the test asked before. All effects that began, by their number:
    std::vector<SoundEffect> heard();
    // Files that were opened, folders listed, programs and threads started by the game itself, in order:
    // "reads /path", "writes /path", "lists /path", "starts program", "thread name".
    static std::vector<std::string> asked();

    FakeGl gl;
    App app;
    Input input;
    TempDir files;
    const std::string folder = files.file(""); // of this test's files, with a separator at its end
};
