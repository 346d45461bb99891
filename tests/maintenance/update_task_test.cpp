#include "maintenance/update_task.h"

#include "maintenance/files.h"
#include "maintenance/sha256.h"
#include "maintenance/test_build.h"
#include "maintenance/web_server.h"

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

// --- The worker's body

class UpdateTaskRun : public testing::Test {
protected:
    // A download of `served` that must have the hash of `announced`.
    bool download(const std::string& served, const std::string& announced) {
        server.publish("setup.exe", served);
        UpdateTask task;
        task.isDownload = true;
        task.url = server.url("/setup.exe");
        task.destPath = dir.file("fetched");
        task.expectedSha256 = sha256Text(announced);
        updateTaskRun(task);
        EXPECT_EQ(task.done, 1u);
        return task.ok;
    }

    WebServer server;
    TempDir dir;
};

TEST_F(UpdateTaskRun, ADownloadIsWhatWasAnnouncedToTheByte) {
    const std::string announced(100000, 'x');
    for (const std::string& served :
         {std::string(), announced.substr(1), announced + "x", "y" + announced.substr(1)}) {
        EXPECT_FALSE(download(served, announced)) << served.size();
        EXPECT_FALSE(fileExists(dir.file("fetched"))) << served.size();
    }
    EXPECT_TRUE(download(announced, announced));
    EXPECT_EQ(readText(dir.file("fetched")), announced);
    EXPECT_TRUE(download("", ""));
    EXPECT_EQ(readText(dir.file("fetched")), "");
}

TEST_F(UpdateTaskRun, ADownloadWithoutAPlaceIsNotFetched) {
    UpdateTask task;
    task.isDownload = true;
    task.url = server.url("/body/3");
    task.expectedSha256 = sha256Text("xxx");
    updateTaskRun(task);
    EXPECT_EQ(task.done, 1u);
    EXPECT_FALSE(task.ok);
    EXPECT_EQ(server.requests(), "");
}

TEST_F(UpdateTaskRun, ACheckReadsTheManifestAndTheHashOfOurOwn) {
    server.publish("manifest.json", "\"sha256\": \"" + sha256Text("new") + R"(", "file": "setup.exe")");
    writeText(dir.file("mine"), "mine");
    for (const std::string& local : {std::string(), dir.file("missing"), dir.file("mine")}) {
        UpdateTask task;
        task.url = server.url("/manifest.json");
        task.localPath = local;
        updateTaskRun(task);
        EXPECT_EQ(task.done, 1u);
        EXPECT_TRUE(task.ok);
        EXPECT_EQ(task.manifest.file, "setup.exe");
        EXPECT_EQ(task.localSha256, local == dir.file("mine") ? sha256Text("mine") : "") << local;
    }
}

TEST_F(UpdateTaskRun, ACheckWithoutAManifestFails) {
    for (const char* path : {"/missing", "/body/3", "/body/65537"}) {
        UpdateTask task;
        task.url = server.url(path);
        updateTaskRun(task);
        EXPECT_EQ(task.done, 1u);
        EXPECT_FALSE(task.ok) << path;
    }
}
