#include "maintenance/update.h"

#include "app/app.h"
#include "maintenance/build_info.h"
#include "maintenance/files.h"
#include "maintenance/platform.h"
#include "maintenance/sha256.h"

#include <SDL.h>

#include <memory>

// Whoever installs the game leaves a copy of the setup program in its folder: the hash of that file tells
// which build this is.
constexpr const char* INSTALLED_SETUP = "Orlavane-setup.exe";
constexpr const char* FETCHED_SETUP = "Orlavane-setup-update.exe";
// Tells the setup program which folder to update; a player may have chosen any.
constexpr const char* FOLDER_VARIABLE = "ORLAVANE_FOLDER";

// --- The worker
// ------------------------------------------------------------------------------------------------

bool httpGetText(const std::string& url, std::string& out, int timeLimitMs) {
    out.clear();
    HttpOptions options;
    options.totalMs = timeLimitMs;
    return httpFetch(url, &out, "", options);
}

bool httpGetFile(const std::string& url, const std::string& path) { return httpFetch(url, nullptr, path); }

static bool runCheck(UpdateTask& task) {
    std::string text;
    if (!httpGetText(task.url, text, task.timeLimitMs) || !parseManifest(text, task.manifest)) return false;
    if (!task.localPath.empty()) sha256File(task.localPath, task.localSha256);
    return true;
}

static bool runDownload(const UpdateTask& task) {
    if (task.destPath.empty() || !httpGetFile(task.url, task.destPath)) return false;
    std::string sha256;
    if (sha256File(task.destPath, sha256) && hashEquals(sha256, task.expectedSha256)) return true;
    deleteFile(task.destPath);
    return false;
}

void updateTaskRun(UpdateTask& task) {
    task.ok = task.isDownload ? runDownload(task) : runCheck(task);
    task.done.exchange(1);
}

// --- Starting a task
// -------------------------------------------------------------------------------------------

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

void deleteFinishedUpdate() { deleteTemporaryFile(FETCHED_SETUP); }

std::string urlFolder(const std::string& url) { return url.substr(0, url.rfind('/') + 1); }

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
// --------------------------------------------------------------------------------------

UpdateState updateVerdict(const UpdateTask& task, const std::string& buildDate) {
    if (!task.ok) return UPDATE_OFFLINE;
    if (hashEquals(task.localSha256, task.manifest.sha256)) return UPDATE_CURRENT;
    return task.manifest.date > buildDate ? UPDATE_NEWER : UPDATE_DIFFERENT; // no date is later than none
}

static void finishCheck(App& app, const UpdateTask& task) {
    if (task.ok) app.updateManifest = task.manifest;
    app.updateState = updateVerdict(task, gameBuildDate);
}

// The setup program replaces the running files, and brings the game up again.
static void finishDownload(App& app, const UpdateTask& task) {
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
