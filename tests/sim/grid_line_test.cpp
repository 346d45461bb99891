#include "sim/grid_line.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

static std::string lineCells(int x0, int y0, int x1, int y1) {
    std::string text;
    walkLine(x0, y0, x1, y1, [&text](int x, int y) {
        text += (text.empty() ? "" : " ") + std::to_string(x) + "," + std::to_string(y);
    });
    return text;
}

TEST(GridLine, APointIsOneCell) { EXPECT_EQ(lineCells(5, 7, 5, 7), "5,7"); }

TEST(GridLine, RunsStraightInBothDirections) {
    EXPECT_EQ(lineCells(1, 2, 4, 2), "1,2 2,2 3,2 4,2");
    EXPECT_EQ(lineCells(3, 5, 3, 3), "3,5 3,4 3,3");
}

TEST(GridLine, DiagonalsStepBothWaysAtOnce) { EXPECT_EQ(lineCells(0, 0, -2, 2), "0,0 -1,1 -2,2"); }

TEST(GridLine, SplitsAFlatSlopeInTheMiddle) {
    EXPECT_EQ(lineCells(0, 0, 2, 1), "0,0 1,0 2,1");
    EXPECT_EQ(lineCells(0, 0, 5, 2), "0,0 1,0 2,1 3,1 4,2 5,2");
}

TEST(GridLine, TheWayBackMayTakeOtherCells) { EXPECT_EQ(lineCells(2, 1, 0, 0), "2,1 1,1 0,0"); }

TEST(GridLine, ReachesEveryEndInTheLongerDistanceOfSteps) {
    for (int x = -9; x <= 9; x++)
        for (int y = -9; y <= 9; y++) {
            int cells = 0;
            int lastX = 0;
            int lastY = 0;
            walkLine(0, 0, x, y, [&](int cx, int cy) {
                cells++;
                ASSERT_TRUE(std::abs(cx - lastX) <= 1 && std::abs(cy - lastY) <= 1);
                lastX = cx;
                lastY = cy;
            });
            EXPECT_EQ(cells, std::max(std::abs(x), std::abs(y)) + 1);
            EXPECT_TRUE(lastX == x && lastY == y);
        }
}

TEST(GridLine, EndsAtTheLastNumbersThereAre) {
    constexpr int LAST = std::numeric_limits<int>::max();
    constexpr int FIRST = std::numeric_limits<int>::min();
    EXPECT_EQ(lineCells(LAST - 1, FIRST + 1, LAST, FIRST), "2147483646,-2147483647 2147483647,-2147483648");
}
