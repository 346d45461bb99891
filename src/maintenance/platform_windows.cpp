// Our texts are UTF-8. The calls that end in A read them in the code page of the system, and a text that it
// cannot hold is refused before the call.
#include "maintenance/platform.h"

#include "maintenance/files.h"
#include "maintenance/http_limits.h"
#include "maintenance/uninstall.h"

#include <windows.h>

#include <shellapi.h>
#include <wininet.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <memory>

const char* const EXECUTABLE_NAME = "Orlavane.exe";
const char* const PATH_SEPARATORS = "/\\";

constexpr const char* REMOVAL_SCRIPT = "orlavane-uninstall.cmd";

// --- Texts

static std::string toUtf8(const std::wstring& wide) {
    const int length = static_cast<int>(wide.size());
    const int size = WideCharToMultiByte(CP_UTF8, 0, wide.data(), length, nullptr, 0, nullptr, nullptr);
    std::string text(static_cast<size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, wide.data(), length, text.data(), size, nullptr, nullptr);
    return text;
}

// False if the code page lacks one of its characters. None is replaced by a similar one, because that may
// be the name of another folder.
static bool toCodePage(const std::string& text, UINT codePage, std::string& out) {
    if (codePage == CP_UTF8) {
        out = text;
        return true;
    }
    const std::wstring wide = nativePath(text).wstring();
    const int length = static_cast<int>(wide.size());
    BOOL replaced = FALSE;
    const int size = WideCharToMultiByte(codePage, WC_NO_BEST_FIT_CHARS, wide.data(), length, nullptr, 0,
                                         nullptr, &replaced);
    if (replaced || (size == 0 && length > 0)) return false;
    out.assign(static_cast<size_t>(size), '\0');
    WideCharToMultiByte(codePage, WC_NO_BEST_FIT_CHARS, wide.data(), length, out.data(), size, nullptr,
                        nullptr);
    return true;
}

// False if it is unset.
static bool readVariable(const wchar_t* name, std::string& value) {
    const wchar_t* wide = _wgetenv(name);
    if (wide) value = toUtf8(wide);
    return wide != nullptr;
}

// --- Files

static std::string temporaryFolder() {
    std::string folder = ".";
    readVariable(L"TEMP", folder);
    return folder;
}

std::string temporaryPath(const std::string& name) { return temporaryFolder() + "\\" + name; }

std::string knownTemporaryPath(const std::string& name) { return temporaryPath(name); }

void setEnvironmentVariable(const char* name, const std::string& value) {
    SetEnvironmentVariableW(nativePath(name).c_str(), nativePath(value).c_str());
}

std::FILE* createFile(const std::string& path) {
    deleteFile(path);
    return _wfopen(nativePath(path).c_str(), L"wb");
}

bool shellOpen(const std::string& path, bool hidden) {
    std::string file;
    if (!toCodePage(path, GetACP(), file)) return false;
    const int showMode = hidden ? SW_HIDE : SW_SHOWNORMAL;
    const HINSTANCE result = ShellExecuteA(nullptr, "open", file.c_str(), nullptr, nullptr, showMode);
    return reinterpret_cast<INT_PTR>(result) > 32;
}

// --- The window

void confirmWindowSize(SDL_Window*) {} // Windows answers SDL at once

// --- Removal

// The shortcuts that a setup program leaves.
static Removal whatToRemove(const std::string& exeDir) {
    Removal removal;
    removal.folder = normalizeWindowsPath(exeDir);
    std::string folder;
    if (readVariable(L"USERPROFILE", folder))
        removal.desktopLink = normalizeWindowsPath(folder + "/Desktop/Orlavane.lnk");
    if (readVariable(L"APPDATA", folder))
        removal.menuLink =
            normalizeWindowsPath(folder + "/Microsoft/Windows/Start Menu/Programs/Orlavane.lnk");
    return removal;
}

// The code page in which the command interpreter reads a script: the system's own, whatever this program has
// chosen for itself.
static UINT interpreterCodePage() {
    DWORD codePage = 0;
    const int size = GetLocaleInfoW(LOCALE_SYSTEM_DEFAULT, LOCALE_IDEFAULTCODEPAGE | LOCALE_RETURN_NUMBER,
                                    reinterpret_cast<wchar_t*>(&codePage), sizeof codePage / sizeof(wchar_t));
    return size > 0 && codePage != 0 ? codePage : GetOEMCP();
}

// The script has a working folder of its own, and a path must say the same in both.
static bool isAbsolute(const std::string& path) { return nativePath(path).is_absolute(); }

// Whether the player may. Somebody in the folder is no obstacle: as yet the game itself works there.
static bool mayRemove(const std::string& folder) {
    const DWORD everybody = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const HANDLE handle = CreateFileW(nativePath(folder).c_str(), DELETE, everybody, nullptr, OPEN_EXISTING,
                                      FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (handle == INVALID_HANDLE_VALUE) return GetLastError() != ERROR_ACCESS_DENIED;
    CloseHandle(handle);
    return true;
}

bool startRemoval(const std::string& exeDir) {
    const Removal removal = whatToRemove(exeDir);
    const std::string script = temporaryPath(REMOVAL_SCRIPT);
    std::string text;
    std::string known;
    if (!isAbsolute(removal.folder) || !mayRemove(removal.folder) || !toCodePage(script, GetACP(), known) ||
        !toCodePage(windowsRemovalScript(removal), interpreterCodePage(), text))
        return false;
    if (!writeScript(script, text)) return false;

    // Nobody can remove the folder that a program works in, and the script inherits ours.
    std::error_code error;
    const std::filesystem::path before = std::filesystem::current_path(error);
    const std::filesystem::path scriptPath = std::filesystem::absolute(nativePath(script), error);
    std::filesystem::current_path(nativePath(temporaryFolder()), error);
    if (!error && shellOpen(toUtf8(scriptPath.wstring()), true)) return true;
    std::filesystem::current_path(before, error);
    deleteFile(script);
    return false;
}

// --- HTTP

struct CloseInternet {
    void operator()(HINTERNET handle) const { InternetCloseHandle(handle); }
};
using Internet = std::unique_ptr<void, CloseInternet>;

// A session with an end: when its time is up it is closed, and whatever still waits on it fails.
class InternetSession {
public:
    explicit InternetSession(const HttpOptions& options)
        : handle(InternetOpenA("Orlavane", INTERNET_OPEN_TYPE_PRECONFIG, nullptr, nullptr, 0)) {
        DWORD timeout = static_cast<DWORD>(options.timeoutMs);
        InternetSetOptionA(handle, INTERNET_OPTION_CONNECT_TIMEOUT, &timeout, sizeof timeout);
        InternetSetOptionA(handle, INTERNET_OPTION_RECEIVE_TIMEOUT, &timeout, sizeof timeout);
        if (options.totalMs > 0)
            CreateTimerQueueTimer(&timer, nullptr, timeIsUp, this, static_cast<DWORD>(options.totalMs), 0,
                                  WT_EXECUTEONLYONCE);
    }
    ~InternetSession() {
        // Waits for a close that is under way.
        if (timer) DeleteTimerQueueTimer(nullptr, timer, INVALID_HANDLE_VALUE);
        close();
    }
    InternetSession(const InternetSession&) = delete;
    InternetSession& operator=(const InternetSession&) = delete;

    HINTERNET get() const { return handle; } // null from its end on

private:
    static void CALLBACK timeIsUp(void* session, BOOLEAN) { static_cast<InternetSession*>(session)->close(); }
    void close() {
        if (const HINTERNET open = handle.exchange(nullptr)) InternetCloseHandle(open);
    }

    std::atomic<HINTERNET> handle;
    HANDLE timer = nullptr;
};

// What no address holds as it is goes escaped, since its bytes would be read in the code page of the system.
// False if it holds control characters.
static bool escapeUrl(const std::string& url, std::string& escaped) {
    for (const char c : url) {
        const auto value = static_cast<unsigned char>(c);
        char code[4];
        std::snprintf(code, sizeof code, "%%%02X", value);
        if (value < 0x20 || value == 0x7F) return false;
        escaped += value == 0x20 || value > 0x7F ? code : std::string(1, c);
    }
    return true;
}

static bool isStatus200(HINTERNET answer) {
    DWORD status = 0;
    DWORD size = sizeof status;
    return HttpQueryInfoA(answer, HTTP_QUERY_STATUS_CODE | HTTP_QUERY_FLAG_NUMBER, &status, &size, nullptr) &&
           status == 200;
}

static uint64_t statedLength(HINTERNET answer) {
    char text[64] = "";
    DWORD size = sizeof text;
    return HttpQueryInfoA(answer, HTTP_QUERY_CONTENT_LENGTH, text, &size, nullptr) ? readLength(text) : 0;
}

// To the end of the answer. False on an error of the connection or the disk, or past the limit.
static bool readAnswer(HINTERNET answer, std::string* body, std::FILE* file, uint64_t limit) {
    if (statedLength(answer) > limit) return false;
    std::array<char, 16384> buffer;
    uint64_t length = 0;
    for (;;) {
        // No more than there is, because a read waits until it has all that it asks for; at the end, one
        // byte.
        DWORD there = 0;
        if (!InternetQueryDataAvailable(answer, &there, 0, 0)) return false;
        DWORD size = std::clamp<DWORD>(there, 1, static_cast<DWORD>(buffer.size()));
        if (!InternetReadFile(answer, buffer.data(), size, &size)) return false;
        if (size == 0) return true;
        length += size;
        if (length > limit) return false;
        if (body) body->append(buffer.data(), size);
        if (file && std::fwrite(buffer.data(), 1, size, file) != size) return false;
    }
}

static bool readToFile(HINTERNET answer, std::string* body, const std::string& filePath, uint64_t limit) {
    std::FILE* file = createFile(filePath);
    bool ok = file && readAnswer(answer, body, file, limit);
    if (file) ok = std::fclose(file) == 0 && ok;
    if (!ok) deleteFile(filePath);
    return ok;
}

// Redirections are the system's business: it follows none from https to http.
bool httpFetch(const std::string& url, std::string* body, const std::string& filePath,
               const HttpOptions& options) {
    std::string escaped;
    if (!escapeUrl(url, escaped)) return false;
    const InternetSession session(options);
    const DWORD flags = INTERNET_FLAG_RELOAD | INTERNET_FLAG_NO_CACHE_WRITE;
    const Internet answer(InternetOpenUrlA(session.get(), escaped.c_str(), nullptr, 0, flags, 0));
    if (!answer || !isStatus200(answer.get())) return false;
    const uint64_t limit = lengthLimit(options, body);
    if (filePath.empty()) return readAnswer(answer.get(), body, nullptr, limit);
    return readToFile(answer.get(), body, filePath, limit);
}
