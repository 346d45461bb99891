#include "maintenance/update_task.h"

#include "maintenance/test_build.h"

#include <gtest/gtest.h>

static UpdateState verdict(const std::string& date, const std::string& localSha256 = "aa",
                           const std::string& serverSha256 = "bb") {
    UpdateTask task;
    task.ok = true;
    task.manifest.date = date;
    task.manifest.sha256 = serverSha256;
    task.localSha256 = localSha256;
    return updateVerdict(task, TEST_BUILD_DATE);
}

TEST(UpdateVerdict, WithoutAManifestTheServerIsOffline) {
    UpdateTask task;
    task.localSha256 = task.manifest.sha256 = "aa";
    EXPECT_EQ(updateVerdict(task, TEST_BUILD_DATE), UPDATE_OFFLINE);
}

TEST(UpdateVerdict, TheSameHashIsTheSameBuildWhateverTheDates) {
    for (const char* date : {"", "2020-01-01", TEST_BUILD_DATE, "2030-01-01"})
        EXPECT_EQ(verdict(date, "aa", "AA"), UPDATE_CURRENT) << date;
}

TEST(UpdateVerdict, WithoutADateItIsDifferent) { EXPECT_EQ(verdict(""), UPDATE_DIFFERENT); }

TEST(UpdateVerdict, ALaterDateIsNewerAndAnyOtherIsDifferent) {
    EXPECT_EQ(verdict("2026-10-31"), UPDATE_NEWER);
    EXPECT_EQ(verdict("2027-01-01"), UPDATE_NEWER);
    EXPECT_EQ(verdict("2026-10-30"), UPDATE_DIFFERENT);
    EXPECT_EQ(verdict("2026-10-29"), UPDATE_DIFFERENT);
    EXPECT_EQ(verdict("1999-12-31"), UPDATE_DIFFERENT);
}

TEST(UpdateVerdict, DatesAreComparedByteByByteAndThenByLength) {
    EXPECT_EQ(verdict("2026-10-300"), UPDATE_NEWER);
    EXPECT_EQ(verdict("2026-10-3"), UPDATE_DIFFERENT);
    EXPECT_EQ(verdict("3"), UPDATE_NEWER);
    EXPECT_EQ(verdict("\xff"), UPDATE_NEWER);
    EXPECT_EQ(verdict("10000-01-01"), UPDATE_DIFFERENT);
}

TEST(UpdateVerdict, WithoutAHashOfOurOwnOnlyTheDateSpeaks) {
    EXPECT_EQ(verdict("2026-10-31", ""), UPDATE_NEWER);
    EXPECT_EQ(verdict("2026-10-30", ""), UPDATE_DIFFERENT);
}

TEST(UrlFolder, EndsWithTheLastSlash) {
    EXPECT_EQ(urlFolder("http://host/a/b/manifest.json"), "http://host/a/b/");
    EXPECT_EQ(urlFolder("http://host/a/"), "http://host/a/");
    EXPECT_EQ(urlFolder("manifest"), "");
    EXPECT_EQ(urlFolder(""), "");
}
