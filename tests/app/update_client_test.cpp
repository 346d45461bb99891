// The update client as a whole: real servers, real worker threads, real files, and a setup program that
// starts.
#include "app/update_client.h"

#include "maintenance/fake_threads.h"
#include "maintenance/files.h"
#include "maintenance/full_disk.h"
#include "maintenance/sha256.h"
#include "maintenance/test_build.h"
#include "maintenance/web_server.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

static void aMoment() { std::this_thread::sleep_for(std::chrono::milliseconds(5)); }

// --- Without a server

class UpdateClient : public testing::Test {
protected:
    UpdateClient() {
        fakeThreads() = {};
        setManifestUrl("");
        app.exeDir = dir.path.string() + "/";
        fs::create_directory(dir.path / "temporary");
        setenv("TMPDIR", dir.file("temporary").c_str(), 1);
    }
    ~UpdateClient() override { unsetenv("TMPDIR"); }

    TempDir dir;
    std::string fetchedFolder = dir.file("temporary/orlavane-" + std::to_string(geteuid()));
    std::string fetched = fetchedFolder + "/Orlavane-setup-update.exe";
    App app;
};

TEST_F(UpdateClient, ABuildWithoutAServerStartsNothing) {
    updateStartCheck(app);
    EXPECT_EQ(app.updateState, UPDATE_UNCONFIGURED);
    EXPECT_EQ(app.updateTask, nullptr);
    EXPECT_EQ(fakeThreads().created, 0);
    updatePoll(app);
    EXPECT_EQ(app.updateState, UPDATE_UNCONFIGURED);
}

TEST_F(UpdateClient, AFinishedUpdateIsThrownAwayAndNothingElse) {
    deleteFinishedUpdate(app);
    EXPECT_FALSE(fileExists(fetchedFolder)); // none is made only to look into it

    ASSERT_EQ(mkdir(fetchedFolder.c_str(), 0700), 0);
    writeText(fetched, "an update");
    writeText(dir.file("Orlavane-setup.exe"), "an update");
    writeText(fetchedFolder + "/other", "");
    deleteFinishedUpdate(app);
    EXPECT_FALSE(fileExists(fetched));
    EXPECT_TRUE(fileExists(fetchedFolder + "/other"));
    EXPECT_TRUE(fileExists(dir.file("Orlavane-setup.exe")));
}

TEST_F(UpdateClient, AnUpdateThatAnotherGameMayBeAboutToStartIsNotThrownAwayForTenMinutes) {
    const auto lastedFor = [this](int seconds) {
        writeText(fetched, "an update");
        fs::last_write_time(fetched, fs::file_time_type::clock::now() - std::chrono::seconds(seconds));
        deleteFinishedUpdate(app);
        return fileExists(fetched);
    };
    ASSERT_EQ(mkdir(fetchedFolder.c_str(), 0700), 0);
    for (const char* installed : {"", "an older one"}) {
        if (*installed) writeText(dir.file("Orlavane-setup.exe"), installed);
        EXPECT_TRUE(lastedFor(0));
        EXPECT_TRUE(lastedFor(590));
        EXPECT_FALSE(lastedFor(600));
        EXPECT_FALSE(lastedFor(-100)); // of a clock that was wrong
    }
}

TEST_F(UpdateClient, AFolderThatOthersMayWriteInIsNotLookedInto) {
    fs::create_directory(fetchedFolder);
    fs::permissions(fetchedFolder, fs::perms(0777));
    writeText(fetched, "somebody's");
    writeText(dir.file("Orlavane-setup.exe"), "somebody's");
    deleteFinishedUpdate(app);
    EXPECT_TRUE(fileExists(fetched));
}

TEST_F(UpdateClient, TheButtonRestsWhileThereIsNothingToPressItFor) {
    for (const UpdateState state : {UPDATE_UNCONFIGURED, UPDATE_CHECKING, UPDATE_DOWNLOADING})
        EXPECT_FALSE(canPressUpdate(state)) << state;
    for (const UpdateState state : {UPDATE_IDLE, UPDATE_CURRENT, UPDATE_NEWER, UPDATE_DIFFERENT,
                                    UPDATE_OFFLINE, UPDATE_DOWNLOAD_FAILED})
        EXPECT_TRUE(canPressUpdate(state)) << state;
}

TEST_F(UpdateClient, WithoutATaskThePollChangesNothing) {
    for (int state = UPDATE_IDLE; state <= UPDATE_DOWNLOAD_FAILED; state++) {
        app.updateState = static_cast<UpdateState>(state);
        updatePoll(app);
        EXPECT_EQ(app.updateState, state);
    }
    EXPECT_FALSE(updateUnderWay(app));
}

TEST_F(UpdateClient, ADownloadNeedsANewerBuild) {
    for (int state = UPDATE_IDLE; state <= UPDATE_DOWNLOAD_FAILED; state++) {
        if (state == UPDATE_NEWER) continue;
        app.updateState = static_cast<UpdateState>(state);
        updateStartDownload(app);
        EXPECT_EQ(app.updateState, state);
        EXPECT_EQ(app.updateTask, nullptr);
    }
}

// --- With one

class Update : public UpdateClient {
protected:
    Update() { setManifestUrl(server.url("/manifest.json")); }

    void publish(const std::string& date, const std::string& sha256, const std::string& file = "setup.exe") {
        server.publish("manifest.json", R"({"version": "0.3", "date": ")" + date + R"(", "sha256": ")" +
                                            sha256 + R"(", "file": ")" + file + "\"}");
    }
    // A setup program that leaves a trace, and the manifest of a newer build.
    void publishSetup() {
        server.publish("setup.exe", setup);
        publish("2027-01-01", sha256Text(setup));
    }
    UpdateState finish() {
        for (int i = 0; i < 6000 && app.updateTask; i++) {
            updatePoll(app);
            aMoment();
        }
        return app.updateState;
    }
    UpdateState check() {
        updateStartCheck(app);
        return finish();
    }
    UpdateState download() {
        pressUpdate(app);
        return finish();
    }

    WebServer server;
    std::string setup = "#!/bin/sh\nprintf %s \"$ORLAVANE_FOLDER\" >'" + dir.file("new") + "'\nmv '" +
                        dir.file("new") + "' '" + dir.file("started") + "'\n";
};

TEST_F(Update, ACheckRunsOnAThreadOfItsOwn) {
    publishSetup();
    updateStartCheck(app);
    EXPECT_EQ(app.updateState, UPDATE_CHECKING);
    EXPECT_TRUE(app.updateTask);
    EXPECT_EQ(fakeThreads().created, 1);
    EXPECT_EQ(fakeThreads().lastName, "orlavane-update");
    EXPECT_EQ(finish(), UPDATE_NEWER);
    EXPECT_EQ(app.updateTask, nullptr);
}

TEST_F(Update, ALaterBuildIsNewerAndItsManifestIsKept) {
    publishSetup();
    EXPECT_EQ(check(), UPDATE_NEWER);
    EXPECT_EQ(app.updateManifest.version, "0.3");
    EXPECT_EQ(app.updateManifest.date, "2027-01-01");
    EXPECT_EQ(app.updateManifest.sha256, sha256Text(setup));
    EXPECT_EQ(app.updateManifest.file, "setup.exe");
}

TEST_F(Update, ThePlayersCopyOfTheSetupProgramTellsTheBuild) {
    publishSetup();
    writeText(dir.file("Orlavane-setup.exe"), setup);
    EXPECT_EQ(check(), UPDATE_CURRENT);
    writeText(dir.file("Orlavane-setup.exe"), setup + "#");
    EXPECT_EQ(check(), UPDATE_NEWER);
}

TEST_F(Update, AFolderInThePlaceOfThatCopyIsNoCopy) {
    publishSetup();
    fs::create_directory(dir.path / "Orlavane-setup.exe");
    EXPECT_EQ(check(), UPDATE_NEWER);
}

TEST_F(Update, APipeInThePlaceOfThatCopyHoldsUpNobody) {
    publishSetup();
    ASSERT_EQ(mkfifo(dir.file("Orlavane-setup.exe").c_str(), 0600), 0); // nobody will ever write to it
    EXPECT_EQ(check(), UPDATE_NEWER);
}

TEST_F(Update, TheHashOfTheManifestMayHaveCapitals) {
    std::string hash = sha256Text("mine");
    for (char& c : hash) c = static_cast<char>(std::toupper(c));
    publish("2027-01-01", hash);
    writeText(dir.file("Orlavane-setup.exe"), "mine");
    EXPECT_EQ(check(), UPDATE_CURRENT);
}

TEST_F(Update, ABuildThatIsNotLaterIsDifferent) {
    publish(TEST_BUILD_DATE, sha256Text("other"));
    EXPECT_EQ(check(), UPDATE_DIFFERENT);
    publish("", sha256Text("other"));
    EXPECT_EQ(check(), UPDATE_DIFFERENT);
}

TEST_F(Update, AManifestThatIsNoneIsOfflineAndTheLastOneStays) {
    publishSetup();
    ASSERT_EQ(check(), UPDATE_NEWER);
    for (const char* hash : {"12", "g", ""}) {
        publish("2028-01-01", hash);
        EXPECT_EQ(check(), UPDATE_OFFLINE) << hash;
    }
    for (const char* file : {"../x.exe", "C:x.exe", "a\\b", ""}) {
        publish("2028-01-01", sha256Text(setup), file);
        EXPECT_EQ(check(), UPDATE_OFFLINE) << file;
    }
    EXPECT_EQ(app.updateManifest.date, "2027-01-01");
}

TEST_F(Update, AManifestOfMoreThan65536BytesIsOffline) {
    const std::string text = "\"sha256\": \"" + sha256Text("x") + R"(", "file": "a")";
    server.publish("manifest.json", text + std::string(65536 - text.size(), ' '));
    EXPECT_EQ(check(), UPDATE_DIFFERENT);
    server.publish("manifest.json", text + std::string(65537 - text.size(), ' '));
    EXPECT_EQ(check(), UPDATE_OFFLINE);
}

TEST_F(Update, AServerThatAnswersOtherwiseIsOffline) {
    for (const char* path : {"/status/404", "/status/500", "/loop/0", "/cut", "/noise", "/missing"}) {
        setManifestUrl(server.url(path));
        EXPECT_EQ(check(), UPDATE_OFFLINE) << path;
    }
    setManifestUrl("http://127.0.0.1:1/manifest.json");
    EXPECT_EQ(check(), UPDATE_OFFLINE);
}

TEST_F(Update, ThePressedButtonChecksAgain) {
    EXPECT_EQ(check(), UPDATE_OFFLINE);
    publish("", sha256Text("other"));
    pressUpdate(app);
    EXPECT_EQ(app.updateState, UPDATE_CHECKING);
    EXPECT_EQ(finish(), UPDATE_DIFFERENT);
    publishSetup();
    pressUpdate(app);
    EXPECT_EQ(finish(), UPDATE_NEWER);
}

TEST_F(Update, ADownloadIsProvedStartedAndEndsTheGame) {
    publishSetup();
    ASSERT_EQ(check(), UPDATE_NEWER);
    pressUpdate(app);
    EXPECT_EQ(app.updateState, UPDATE_DOWNLOADING);
    EXPECT_EQ(finish(), UPDATE_DOWNLOADING);
    EXPECT_TRUE(app.quitRequested);
    EXPECT_EQ(app.updateTask, nullptr);
    EXPECT_EQ(readText(fetched), setup);
    for (int i = 0; i < 2000 && !fileExists(dir.file("started")); i++) aMoment();
    EXPECT_EQ(readText(dir.file("started")), app.exeDir); // the folder that it is to update
}

TEST_F(Update, ACheckAndADownloadAskOnceEachAndThePollsBetweenThemNever) {
    const auto requests = [&] {
        const std::string heads = server.requests();
        std::vector<std::string> paths;
        for (size_t at = heads.find("GET "); at != std::string::npos; at = heads.find("GET ", at + 1))
            paths.push_back(heads.substr(at + 4, heads.find(' ', at + 4) - at - 4));
        return paths;
    };
    publishSetup();
    ASSERT_EQ(check(), UPDATE_NEWER);
    for (int i = 0; i < 20; i++) updatePoll(app);
    EXPECT_THAT(requests(), ElementsAre("/manifest.json"));
    EXPECT_EQ(fakeThreads().created, 1);
    EXPECT_EQ(download(), UPDATE_DOWNLOADING);
    for (int i = 0; i < 20; i++) updatePoll(app);
    EXPECT_THAT(requests(), ElementsAre("/manifest.json", "/setup.exe"));
    EXPECT_EQ(fakeThreads().created, 3); // the last waits for the program that was started
    EXPECT_EQ(fakeThreads().lastName, "orlavane-child");
}

TEST_F(Update, AHashThatDiffersByOneDigitFailsAndTheFileIsGone) {
    std::string hash = sha256Text(setup);
    hash.back() = hash.back() == '0' ? '1' : '0';
    server.publish("setup.exe", setup);
    publish("2027-01-01", hash);
    ASSERT_EQ(check(), UPDATE_NEWER);
    EXPECT_EQ(download(), UPDATE_DOWNLOAD_FAILED);
    EXPECT_FALSE(app.quitRequested);
    EXPECT_FALSE(fileExists(fetched));
    EXPECT_FALSE(fileExists(dir.file("started")));
}

TEST_F(Update, AMissingSetupProgramFails) {
    publish("2027-01-01", sha256Text(setup), "missing.exe");
    ASSERT_EQ(check(), UPDATE_NEWER);
    EXPECT_EQ(download(), UPDATE_DOWNLOAD_FAILED);
    EXPECT_FALSE(app.quitRequested);
    EXPECT_FALSE(fileExists(fetched));
}

TEST_F(Update, AVerifiedFileThatCannotStartStaysAndFails) {
    setup = "no program";
    publishSetup();
    ASSERT_EQ(check(), UPDATE_NEWER);
    EXPECT_EQ(download(), UPDATE_DOWNLOAD_FAILED);
    EXPECT_FALSE(app.quitRequested);
    EXPECT_EQ(readText(fetched), "no program");
}

TEST_F(Update, AFolderInThePlaceOfTheDownloadFailsAndStays) {
    publishSetup();
    fs::create_directory(fetchedFolder);
    fs::permissions(fetchedFolder, fs::perms(0700));
    fs::create_directory(fetched);
    writeText(fetched + "/precious", "");
    ASSERT_EQ(check(), UPDATE_NEWER);
    EXPECT_EQ(download(), UPDATE_DOWNLOAD_FAILED);
    EXPECT_TRUE(fileExists(fetched + "/precious"));
}

TEST_F(Update, ADownloadThatDoesNotFitOnTheDiskFailsAndTheFileIsGone) {
    setup += std::string(20000, '#');
    publishSetup();
    ASSERT_EQ(check(), UPDATE_NEWER);
    const FullDisk disk(10000);
    EXPECT_EQ(download(), UPDATE_DOWNLOAD_FAILED);
    EXPECT_FALSE(app.quitRequested);
    EXPECT_FALSE(fileExists(fetched));
}

TEST_F(Update, ATemporaryFolderThatCannotBeWrittenFails) {
    publishSetup();
    setenv("TMPDIR", dir.file("missing").c_str(), 1);
    ASSERT_EQ(check(), UPDATE_NEWER);
    EXPECT_EQ(download(), UPDATE_DOWNLOAD_FAILED);
    EXPECT_FALSE(app.quitRequested);
    EXPECT_FALSE(fileExists(dir.file("missing")));
    EXPECT_THAT(server.requests(), Not(HasSubstr("GET /setup.exe"))); // for nothing
}

TEST_F(Update, LeftoversOfAnotherUserStopNoDownload) {
    publishSetup();
    writeText(fetchedFolder, "not ours");
    fs::create_directory(dir.path / "temporary/Orlavane-setup-update.exe");
    ASSERT_EQ(check(), UPDATE_NEWER);
    EXPECT_EQ(download(), UPDATE_DOWNLOADING);
    EXPECT_TRUE(app.quitRequested);
    EXPECT_EQ(readText(fetchedFolder), "not ours");
}

TEST_F(Update, AfterAFailureTheButtonChecksAgain) {
    publish("2027-01-01", sha256Text(setup), "missing.exe");
    ASSERT_EQ(check(), UPDATE_NEWER);
    ASSERT_EQ(download(), UPDATE_DOWNLOAD_FAILED);
    publishSetup();
    pressUpdate(app);
    EXPECT_EQ(app.updateState, UPDATE_CHECKING);
    EXPECT_EQ(finish(), UPDATE_NEWER);
}

TEST_F(Update, WithoutAThreadTheTaskRunsAtOnceAndTheNextPollTakesItUp) {
    publishSetup();
    fakeThreads().refuse = true;
    updateStartCheck(app);
    EXPECT_EQ(app.updateState, UPDATE_CHECKING);
    ASSERT_TRUE(app.updateTask);
    EXPECT_EQ(app.updateTask->done, 1u);
    updatePoll(app);
    EXPECT_EQ(app.updateState, UPDATE_NEWER);
}

TEST_F(Update, ASlowServerHoldsUpNobody) {
    setManifestUrl(server.url("/drip/30/10")); // three seconds
    updateStartCheck(app);
    for (int i = 0; i < 20; i++) {
        updatePoll(app);
        EXPECT_EQ(app.updateState, UPDATE_CHECKING);
        EXPECT_TRUE(updateUnderWay(app));
        aMoment();
    }
    EXPECT_EQ(finish(), UPDATE_OFFLINE);
}

TEST_F(Update, ACheckEndsAfterAMinuteHoweverMuchComes) {
    EXPECT_EQ(UpdateTask().timeLimitMs, 60000);
    UpdateTask task;
    task.url = server.url("/drip/300/10"); // half a minute
    task.timeLimitMs = 1500;
    const auto start = std::chrono::steady_clock::now();
    updateTaskRun(task);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(15));
    EXPECT_EQ(task.done, 1u);
    EXPECT_FALSE(task.ok);
}

TEST_F(Update, ATaskThatTheGameHasGivenUpIsFinishedAllTheSame) {
    publishSetup();
    updateStartCheck(app);
    const std::shared_ptr<UpdateTask> task = app.updateTask;
    app.updateTask = nullptr;
    for (int i = 0; i < 6000 && task->done == 0; i++) aMoment();
    EXPECT_EQ(task->done, 1u);
    EXPECT_TRUE(task->ok);
    updatePoll(app);
    EXPECT_EQ(app.updateState, UPDATE_CHECKING);
}

TEST_F(Update, AForcedStateIsOverruledByWhatTheServerSays) {
    publishSetup();
    updateStartCheck(app);
    app.updateState = UPDATE_OFFLINE;
    EXPECT_EQ(finish(), UPDATE_NEWER);
}
