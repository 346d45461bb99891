#include "progress_bar.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

using testing::StartsWith;

// What a bar writes that began at 100 s.
struct Watched {
    std::ostringstream out;
    ProgressBar bar{out};

    Watched() { bar.begin(100.0); }
    std::string update(int64_t done, int64_t all, double now) {
        out.str("");
        bar.update(done, all, now);
        return out.str();
    }
    std::string end() {
        out.str("");
        bar.end();
        return out.str();
    }
};

TEST(ProgressBar, ShortTicksShowNothing) {
    Watched watched;
    EXPECT_EQ(watched.update(9, 10, 100.4), "");
    EXPECT_EQ(watched.end(), "");
}

TEST(ProgressBar, TellsDaysAndTimeLeft) {
    Watched watched;
    EXPECT_THAT(watched.update(10, 40, 101.0),
                StartsWith("\r[#######.......................] 10 of 40 days, 3 s left "));
    EXPECT_THAT(watched.update(20, 40, 300.0),
                StartsWith("\r[###############...............] 20 of 40 days, 3 min left "));
    EXPECT_THAT(watched.update(30, 40, 100000.0),
                StartsWith("\r[######################........] 30 of 40 days, 9 h left "));
    EXPECT_THAT(watched.update(40, 40, 100001.0),
                StartsWith("\r[##############################] 40 of 40 days, 0 s left "));
}

TEST(ProgressBar, MovesTenTimesASecond) {
    Watched watched;
    EXPECT_NE(watched.update(1, 100, 101.0), "");
    EXPECT_EQ(watched.update(2, 100, 101.05), "");
    EXPECT_NE(watched.update(3, 100, 101.11), "");
}

TEST(ProgressBar, IsWipedAtTheEndAndBeginsAnew) {
    Watched watched;
    const std::string line = watched.update(1, 2, 101.0);
    EXPECT_EQ(watched.end(), "\r" + std::string(line.size() - 2, ' ') + "\r");
    EXPECT_EQ(watched.end(), "");
    watched.bar.begin(200.0);
    EXPECT_EQ(watched.update(1, 2, 200.3), "");
}
