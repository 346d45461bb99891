#include "maintenance/build_info.h"

#include <gtest/gtest.h>

#include <cctype>
#include <string>

TEST(BuildInfo, TheDateIsTenBytesOfYearMonthAndDay) {
    const std::string date = gameBuildDate;
    ASSERT_EQ(date.size(), 10u);
    for (size_t i = 0; i < date.size(); i++) {
        const bool dash = i == 4 || i == 7;
        EXPECT_TRUE(dash ? date[i] == '-' : std::isdigit(static_cast<unsigned char>(date[i])) != 0) << date;
    }
}

TEST(BuildInfo, ABuildHasAVersionAndMayHaveAServer) {
    EXPECT_STREQ(gameVersion, ORLAVANE_VERSION);
    EXPECT_STREQ(updateManifestUrl, ORLAVANE_UPDATE_MANIFEST_URL);
}
