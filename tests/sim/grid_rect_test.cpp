#include "sim/grid_rect.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

static std::string rectCells(int x0, int y0, int x1, int y1) {
    std::string text;
    walkRect(x0, y0, x1, y1, [&text](int x, int y) {
        text += (text.empty() ? "" : " ") + std::to_string(x) + "," + std::to_string(y);
    });
    return text;
}

TEST(GridRect, RunsRowByRowFromTheTopWhateverTheCorners) {
    for (const std::string& cells :
         {rectCells(4, 7, 6, 8), rectCells(6, 7, 4, 8), rectCells(4, 8, 6, 7), rectCells(6, 8, 4, 7)})
        EXPECT_EQ(cells, "4,7 5,7 6,7 4,8 5,8 6,8");
    EXPECT_EQ(rectCells(5, 7, 5, 7), "5,7");
}

TEST(GridRect, IsCutToTheMap) {
    EXPECT_EQ(rectCells(-3, -1, 1, 0), "0,0 1,0");
    EXPECT_EQ(rectCells(200, 94, 95, 300), "95,94 95,95");
    for (const int off : {-1, GRID_SIZE, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
        EXPECT_EQ(rectCells(off, 0, off, 95), "");
        EXPECT_EQ(rectCells(0, off, 95, off), "");
    }
    int count = 0;
    walkRect(std::numeric_limits<int>::max(), std::numeric_limits<int>::min(),
             std::numeric_limits<int>::min(), std::numeric_limits<int>::max(), [&](int, int) { count++; });
    EXPECT_EQ(count, CELL_COUNT);
}
