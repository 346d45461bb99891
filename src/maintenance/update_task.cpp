#include "maintenance/update_task.h"

#include "maintenance/files.h"
#include "maintenance/platform.h"
#include "maintenance/sha256.h"

#include <cassert>

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
    assert(task.done == 0);
    task.ok = task.isDownload ? runDownload(task) : runCheck(task);
    task.done.exchange(1);
}

UpdateState updateVerdict(const UpdateTask& task, const std::string& buildDate) {
    assert(!task.isDownload);
    if (!task.ok) return UPDATE_OFFLINE;
    // First, because a server may publish the same build again under a later date.
    if (hashEquals(task.localSha256, task.manifest.sha256)) return UPDATE_CURRENT;
    return task.manifest.date > buildDate ? UPDATE_NEWER : UPDATE_DIFFERENT; // an empty date never is later
}

std::string urlFolder(const std::string& url) { return url.substr(0, url.rfind('/') + 1); }
