#include "app/update_client.h"

#include "maintenance/build_info.h"
#include "maintenance/files.h"
#include "maintenance/platform.h"
#include "maintenance/sha256.h"

#include <SDL.h>

#include <cassert>
#include <ctime>
#include <memory>

// Whoever installs the game leaves a copy of the setup program in its folder: the hash of that file tells
// which build this is.
constexpr const char* INSTALLED_SETUP = "Orlavane-setup.exe";
constexpr const char* FETCHED_SETUP = "Orlavane-setup-update.exe";
constexpr int FRESH_SECONDS = 600;
// Tells the setup program which folder to update; a player may have chosen any.
constexpr const char* FOLDER_VARIABLE = "ORLAVANE_FOLDER";

// --- Starting a task

using TaskShare = std::shared_ptr<UpdateTask>;

static int runWorker(void* data) {
    const std::unique_ptr<TaskShare> task(static_cast<TaskShare*>(data));
    updateTaskRun(**task);
    return 0;
}

static void startTask(App& app, const TaskShare& task) {
    app.updateTask = task;
    auto share = std::make_unique<TaskShare>(task);
    SDL_Thread* worker = SDL_CreateThread(runWorker, "orlavane-update", share.get());
    if (!worker) return updateTaskRun(*task);
    static_cast<void>(share.release()); // the worker's now, perhaps already gone
    SDL_DetachThread(worker);
}

void updateStartCheck(App& app) {
    const std::string url = updateManifestUrl;
    if (url.empty()) {
        app.updateState = UPDATE_UNCONFIGURED;
        return;
    }
    app.updateState = UPDATE_CHECKING;
    const auto task = std::make_shared<UpdateTask>();
    task->url = url;
    task->localPath = app.exeDir + INSTALLED_SETUP;
    startTask(app, task);
}

static bool areTheSame(const std::string& path, const std::string& other) {
    std::string sha256;
    std::string otherSha256;
    return sha256File(path, sha256) && sha256File(other, otherSha256) && hashEquals(sha256, otherSha256);
}

// Another game that fetches a file, or is about to start it, has written to it a moment ago.
static bool isFresh(const std::string& path) {
    const int64_t age = static_cast<int64_t>(std::time(nullptr)) - fileModified(path);
    return age >= 0 && age < FRESH_SECONDS;
}

void deleteFinishedUpdate(const App& app) {
    const std::string fetched = knownTemporaryPath(FETCHED_SETUP);
    if (fetched.empty()) return;
    if (areTheSame(fetched, app.exeDir + INSTALLED_SETUP) || !isFresh(fetched)) deleteFile(fetched);
}

void updateStartDownload(App& app) {
    if (app.updateState != UPDATE_NEWER) return;
    app.updateState = UPDATE_DOWNLOADING;
    const auto task = std::make_shared<UpdateTask>();
    task->isDownload = true;
    task->url = urlFolder(updateManifestUrl) + app.updateManifest.file;
    task->destPath = temporaryPath(FETCHED_SETUP);
    task->expectedSha256 = app.updateManifest.sha256;
    startTask(app, task);
}

bool canPressUpdate(UpdateState state) {
    return state != UPDATE_UNCONFIGURED && state != UPDATE_CHECKING && state != UPDATE_DOWNLOADING;
}

void pressUpdate(App& app) {
    if (app.updateState == UPDATE_NEWER)
        updateStartDownload(app);
    else
        updateStartCheck(app);
}

// --- Taking up its result

static void finishCheck(App& app, const UpdateTask& task) {
    assert(task.done == 1); // until then the record is the worker's
    if (task.ok) app.updateManifest = task.manifest;
    app.updateState = updateVerdict(task, gameBuildDate);
}

// The setup program replaces the running files, and brings the game up again.
static void finishDownload(App& app, const UpdateTask& task) {
    assert(task.done == 1);
    setEnvironmentVariable(FOLDER_VARIABLE, app.exeDir);
    if (task.ok && shellOpen(task.destPath, false))
        app.quitRequested = true;
    else
        app.updateState = UPDATE_DOWNLOAD_FAILED;
}

bool updateUnderWay(const App& app) { return app.updateTask && app.updateTask->done == 0; }

void updatePoll(App& app) {
    if (!app.updateTask || updateUnderWay(app)) return;
    const TaskShare task = std::move(app.updateTask);
    if (task->isDownload)
        finishDownload(app, *task);
    else
        finishCheck(app, *task);
}
