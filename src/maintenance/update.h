// Asks the update server whether it has another build than this one, fetches that build's setup program,
// proves it by its hash, starts it and ends the game. The main thread starts tasks and polls them once a
// frame; a worker thread does all that may wait. Both share one task, and nothing but its `done` while it
// runs.
#pragma once

#include "maintenance/manifest.h"

#include <atomic>
#include <cstdint>
#include <string>

struct App;

enum UpdateState : uint8_t {
    UPDATE_IDLE,         // before start-up has finished
    UPDATE_UNCONFIGURED, // this build has no server
    UPDATE_CHECKING,
    UPDATE_CURRENT,   // the server has this build
    UPDATE_NEWER,     // a later one
    UPDATE_DIFFERENT, // another one that is not later
    UPDATE_OFFLINE,   // no manifest came, or none that could be understood
    UPDATE_DOWNLOADING,
    UPDATE_DOWNLOAD_FAILED
};

// However slowly a server drips, a manifest is not waited for any longer. A download may take its time.
constexpr int CHECK_TIME_LIMIT_MS = 60000;

struct UpdateTask {
    // Set before the worker starts, and only read from then on.
    bool isDownload = false; // or a check of the manifest
    std::string url;
    std::string localPath;      // for a check: the file that tells which build this is, may be empty
    std::string destPath;       // for a download: the file to write; empty if there is no place for it
    std::string expectedSha256; // for a download: the hash that it must have
    int timeLimitMs = CHECK_TIME_LIMIT_MS; // for a check: until the manifest is there

    // The worker's last act on the task sets it to 1; what stands below is nobody else's before.
    std::atomic<uint32_t> done = 0;
    bool ok = false;
    UpdateManifest manifest;
    std::string localSha256; // empty if `localPath` could not be hashed
};

void updateStartCheck(App& app);
// Does nothing unless a newer build has been found.
void updateStartDownload(App& app);
// At the start: the setup program that brought this build has done its work, or could not.
void deleteFinishedUpdate();
// Once a frame: takes up the result of a task that is done. A download that proved right is started, and the
// game asked to end.
void updatePoll(App& app);
// True while a worker may be at the network.
bool updateUnderWay(const App& app);

// The launcher's Update button.
bool canPressUpdate(UpdateState state);
void pressUpdate(App& app);

// What a finished check says of a build of that date.
UpdateState updateVerdict(const UpdateTask& task, const std::string& buildDate);
// The worker's body; it may run on any thread.
void updateTaskRun(UpdateTask& task);

bool httpGetText(const std::string& url, std::string& out, int timeLimitMs = CHECK_TIME_LIMIT_MS);
bool httpGetFile(const std::string& url, const std::string& path);
// All up to and including the last "/"; empty without one.
std::string urlFolder(const std::string& url);
