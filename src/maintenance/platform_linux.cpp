#include "maintenance/platform.h"

#include "maintenance/files.h"
#include "maintenance/uninstall.h"

#include <SDL_thread.h>

#include <cassert>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;

const char* const EXECUTABLE_NAME = "Orlavane";
const char* const PATH_SEPARATORS = "/";

constexpr const char* REMOVAL_SCRIPT = "orlavane-uninstall.sh";
constexpr const char* DESKTOP_ENTRY = "orlavane.desktop";

// --- Files

// Empty if it is unset.
static std::string variable(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

// Not a link to one: it could lead elsewhere tomorrow.
static bool isOwnFolder(const std::string& path) {
    struct stat status;
    return lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == geteuid() &&
           (status.st_mode & 07777) == 0700;
}

static std::string usualTemporaryFolder() {
    const std::string shared = variable("TMPDIR");
    return (shared.empty() ? "/tmp" : shared) + "/orlavane-" + std::to_string(geteuid());
}

// A folder that nobody else can read or write, always the same one if it can be had. Whatever another user
// has put in its place, there is a name that is free. Empty if there is no room for a folder.
static std::string ownTemporaryFolder() {
    std::string path = usualTemporaryFolder();
    if (mkdir(path.c_str(), 0700) == 0 || isOwnFolder(path)) return path;
    path += "-XXXXXX";
    return mkdtemp(path.data()) ? path : "";
}

std::string temporaryPath(const std::string& name) {
    assert(name.find('/') == std::string::npos);
    const std::string folder = ownTemporaryFolder();
    return folder.empty() ? "" : folder + "/" + name;
}

std::string knownTemporaryPath(const std::string& name) {
    assert(name.find('/') == std::string::npos);
    const std::string folder = usualTemporaryFolder();
    return isOwnFolder(folder) ? folder + "/" + name : "";
}

void setEnvironmentVariable(const char* name, const std::string& value) { setenv(name, value.c_str(), 1); }

std::FILE* createFile(const std::string& path) {
    deleteFile(path);
    const int descriptor = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    return descriptor >= 0 ? fdopen(descriptor, "wb") : nullptr;
}

// --- Starting programs

static int waitForChild(void* data) {
    const std::unique_ptr<pid_t> child(static_cast<pid_t*>(data));
    waitpid(*child, nullptr, 0);
    return 0;
}

// Somebody must take note of a child's end, or it stays in the system's list until the game has ended.
static void startWaiting(pid_t child) {
    auto data = std::make_unique<pid_t>(child);
    SDL_Thread* waiter = SDL_CreateThread(waitForChild, "orlavane-child", data.get());
    if (!waiter) return;
    static_cast<void>(data.release()); // the waiter's now
    SDL_DetachThread(waiter);
}

// In a session of its own, so that it outlives the terminal, with none of our files open. Without output if
// `hidden`.
static bool startDetached(std::vector<std::string> words, bool hidden) {
    std::vector<char*> arguments(words.size() + 1); // with a null at the end
    for (size_t i = 0; i < words.size(); i++) arguments[i] = words[i].data();

    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDWR, 0);
    if (hidden) {
        posix_spawn_file_actions_adddup2(&actions, 0, 1);
        posix_spawn_file_actions_adddup2(&actions, 0, 2);
    }
    posix_spawn_file_actions_addclosefrom_np(&actions, 3);

    pid_t child = 0;
    const int error = posix_spawnp(&child, arguments[0], &actions, &attributes, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    posix_spawnattr_destroy(&attributes);
    if (error != 0) return false;
    startWaiting(child);
    return true;
}

bool shellOpen(const std::string& path, bool hidden) {
    struct stat status;
    if (stat(path.c_str(), &status) != 0) return false;
    if (S_ISDIR(status.st_mode)) return startDetached({"xdg-open", path}, hidden);
    if (!S_ISREG(status.st_mode)) return false;
    chmod(path.c_str(), status.st_mode | S_IXUSR); // files that were fetched are not executable
    return startDetached({path}, hidden);
}

// --- Removal

// The desktop entries that a setup program leaves: on the desktop and in the menu.
static Removal whatToRemove(const std::string& folder) {
    const std::string home = variable("HOME");
    std::string data = variable("XDG_DATA_HOME");
    if (data.empty() && !home.empty()) data = home + "/.local/share";

    Removal removal;
    removal.folder = folder;
    if (home.starts_with('/')) removal.desktopLink = home + "/Desktop/" + DESKTOP_ENTRY;
    if (data.starts_with('/')) removal.menuLink = data + "/applications/" + DESKTOP_ENTRY;
    return removal;
}

// Whether what lies in the folder may be taken out of it.
static bool mayEmpty(const fs::path& folder) {
    return faccessat(AT_FDCWD, folder.c_str(), W_OK | X_OK, AT_EACCESS) == 0;
}

// Whether the folder may be removed with all that is in it. Asked while the game runs, because later the
// script has nobody to tell. A link goes without what it leads to.
static bool mayRemove(const fs::path& folder) {
    if (!mayEmpty(folder.parent_path()) || !mayEmpty(folder)) return false;
    std::error_code error;
    fs::recursive_directory_iterator entry(folder, error);
    while (!error && entry != fs::recursive_directory_iterator()) {
        const fs::file_type type = entry->symlink_status(error).type();
        if (error || (type == fs::file_type::directory && !mayEmpty(entry->path()))) return false;
        entry.increment(error);
    }
    return !error;
}

bool startRemoval(const std::string& exeDir) {
    const std::string folder = exeDir.substr(0, exeDir.find_last_not_of('/') + 1);
    if (!exeDir.starts_with('/') || !mayRemove(folder)) return false;

    // The script runs in another folder than the game: a path must say the same in both.
    std::error_code error;
    const std::string script = fs::absolute(temporaryPath(REMOVAL_SCRIPT), error).string();
    if (error || !writeScript(script, shellRemovalScript(whatToRemove(folder)))) return false;
    if (startDetached({"/bin/sh", script}, true)) return true;
    deleteFile(script);
    return false;
}
