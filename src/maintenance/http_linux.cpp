// HTTP with libcurl, which is loaded when the first address is asked for: most starts of the game need no
// network, and the library with all that it brings costs a start twelve milliseconds.
#include "maintenance/platform.h"

#include "maintenance/files.h"
#include "maintenance/http_limits.h"

#include <algorithm>
#include <cassert>
#include <chrono>
#include <csignal>
#include <memory>

#include <curl/curl.h>
#include <dlfcn.h>

#undef curl_easy_setopt // a macro that checks types, and only under its own name
#undef curl_easy_getinfo

constexpr int LONGEST_REDIRECTION = 10;     // hops
constexpr size_t HEADER_LIMIT = 256 * 1024; // bytes of one answer; a server must not fill our memory
constexpr long REDIRECTIONS[] = {301, 302, 303, 307, 308};

struct CurlLibrary {
    decltype(&curl_easy_init) init = nullptr;
    decltype(&curl_easy_cleanup) cleanup = nullptr;
    decltype(&curl_easy_setopt) setOption = nullptr;
    decltype(&curl_easy_getinfo) getInfo = nullptr;
    decltype(&curl_easy_perform) perform = nullptr;
    decltype(&curl_easy_header) header = nullptr;
    decltype(&curl_slist_append) appendLine = nullptr;
    decltype(&curl_slist_free_all) freeLines = nullptr;
    decltype(&curl_url) newUrl = nullptr;
    decltype(&curl_url_cleanup) freeUrl = nullptr;
    decltype(&curl_url_set) setUrl = nullptr;
    decltype(&curl_url_get) getUrl = nullptr;
    decltype(&curl_free) freeText = nullptr;
};

template<typename Function> static bool load(void* library, const char* name, Function& function) {
    function = reinterpret_cast<Function>(dlsym(library, name));
    return function != nullptr;
}

// False where it is missing or too old. It stays loaded to the end of the process: it does not survive less.
static bool loadCurl(CurlLibrary& curl) {
    void* library = dlopen("libcurl.so.4", RTLD_NOW);
    return library && load(library, "curl_easy_init", curl.init) &&
           load(library, "curl_easy_cleanup", curl.cleanup) &&
           load(library, "curl_easy_setopt", curl.setOption) &&
           load(library, "curl_easy_getinfo", curl.getInfo) &&
           load(library, "curl_easy_perform", curl.perform) &&
           load(library, "curl_easy_header", curl.header) &&
           load(library, "curl_slist_append", curl.appendLine) &&
           load(library, "curl_slist_free_all", curl.freeLines) && load(library, "curl_url", curl.newUrl) &&
           load(library, "curl_url_cleanup", curl.freeUrl) && load(library, "curl_url_set", curl.setUrl) &&
           load(library, "curl_url_get", curl.getUrl) && load(library, "curl_free", curl.freeText);
}

// --- Addresses

static bool isSecure(const std::string& url) { return url.starts_with("https:"); }

// `text` as seen from `base`, or by itself if `base` is empty, with what an address may not hold written in
// its escaped form. Empty if it is none, or not one of HTTP.
static std::string resolveUrl(const CurlLibrary& curl, const std::string& base, const std::string& text) {
    if (text.find('\0') != std::string::npos) return "";
    std::string resolved;
    CURLU* url = curl.newUrl();
    if (!url) return "";
    char* parts = nullptr;
    const unsigned flags = CURLU_URLENCODE | CURLU_ALLOW_SPACE;
    if ((base.empty() || curl.setUrl(url, CURLUPART_URL, base.c_str(), flags) == CURLUE_OK) &&
        curl.setUrl(url, CURLUPART_URL, text.c_str(), flags) == CURLUE_OK &&
        curl.getUrl(url, CURLUPART_URL, &parts, 0) == CURLUE_OK) {
        resolved = parts;
        curl.freeText(parts);
    }
    curl.freeUrl(url);
    return isSecure(resolved) || resolved.starts_with("http:") ? resolved : "";
}

// --- One answer

using Clock = std::chrono::steady_clock;

struct Transfer {
    const CurlLibrary& curl;
    CURL* handle;
    std::string* body;
    const std::string& filePath;
    const HttpOptions& options;
    const long timeLeftMs; // 0 for no end

    bool accepted = false; // the answer has status 200, and what follows is its content
    std::FILE* file = nullptr;
    size_t headerSize = 0;
    uint64_t contentSize = 0;
    bool waiting = false; // for data, from lastData on
    Clock::time_point lastData = {};
};

static long statusCode(const Transfer& transfer) {
    long status = 0;
    transfer.curl.getInfo(transfer.handle, CURLINFO_RESPONSE_CODE, &status);
    return status;
}

static void noteData(Transfer& transfer) {
    transfer.waiting = true;
    transfer.lastData = Clock::now();
}

static int onConnected(void* data, char*, char*, int, int) {
    noteData(*static_cast<Transfer*>(data));
    return CURL_PREREQFUNC_OK;
}

// Called about once a second. Anything but 0 ends the transfer.
static int onProgress(void* data, curl_off_t, curl_off_t, curl_off_t, curl_off_t) {
    const Transfer& transfer = *static_cast<Transfer*>(data);
    return transfer.waiting &&
           Clock::now() - transfer.lastData >= std::chrono::milliseconds(transfer.options.timeoutMs);
}

static uint64_t statedLength(const Transfer& transfer) {
    curl_header* length = nullptr;
    if (transfer.curl.header(transfer.handle, "Content-Length", 0, CURLH_HEADER, -1, &length) != CURLHE_OK)
        return 0;
    return readLength(length->value);
}

// Once for each line. Less than its size ends the transfer: of an answer that is not 200 nothing is read.
static size_t onHeaderLine(char* line, size_t, size_t size, void* data) {
    Transfer& transfer = *static_cast<Transfer*>(data);
    noteData(transfer);
    transfer.headerSize += size;
    if (transfer.headerSize > HEADER_LIMIT) return 0;
    const bool headerEnds = line[0] == '\r' || line[0] == '\n';
    const long status = statusCode(transfer);
    if (!headerEnds || status / 100 == 1 || transfer.accepted) return size;
    if (status != 200) return 0;

    transfer.accepted = true;
    if (statedLength(transfer) > lengthLimit(transfer.options, transfer.body)) return 0;
    if (transfer.filePath.empty()) return size;
    transfer.file = createFile(transfer.filePath);
    return transfer.file ? size : 0;
}

static size_t onContent(char* bytes, size_t, size_t size, void* data) {
    Transfer& transfer = *static_cast<Transfer*>(data);
    noteData(transfer);
    transfer.contentSize += size;
    if (transfer.contentSize > lengthLimit(transfer.options, transfer.body)) return 0;
    if (transfer.body) transfer.body->append(bytes, size);
    return transfer.file ? std::fwrite(bytes, 1, size, transfer.file) : size;
}

static void setTransferOptions(Transfer& transfer, const std::string& url, const curl_slist* headers) {
    const auto set = [&](CURLoption option, auto value) {
        transfer.curl.setOption(transfer.handle, option, value);
    };
    set(CURLOPT_URL, url.c_str());
    set(CURLOPT_PROTOCOLS_STR, "http,https");
    set(CURLOPT_USERAGENT, "Orlavane");
    set(CURLOPT_HTTPHEADER, headers);
    set(CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L); // a proxy's
    set(CURLOPT_NOSIGNAL, 1L);                 // we are one thread of several
    set(CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(transfer.options.timeoutMs));
    set(CURLOPT_TIMEOUT_MS, transfer.timeLeftMs);
    if (!transfer.options.certificates.empty()) set(CURLOPT_CAINFO, transfer.options.certificates.c_str());

    set(CURLOPT_PREREQFUNCTION, onConnected);
    set(CURLOPT_PREREQDATA, &transfer);
    set(CURLOPT_NOPROGRESS, 0L);
    set(CURLOPT_XFERINFOFUNCTION, onProgress);
    set(CURLOPT_XFERINFODATA, &transfer);
    set(CURLOPT_HEADERFUNCTION, onHeaderLine);
    set(CURLOPT_HEADERDATA, &transfer);
    set(CURLOPT_WRITEFUNCTION, onContent);
    set(CURLOPT_WRITEDATA, &transfer);
}

// The address that the answer leads to instead; empty if it leads nowhere, or from a secure place to an open
// one. libcurl would follow by itself, but it has no way to refuse that step alone.
static std::string redirection(const Transfer& transfer, const std::string& url) {
    const long status = statusCode(transfer);
    if (std::find(std::begin(REDIRECTIONS), std::end(REDIRECTIONS), status) == std::end(REDIRECTIONS))
        return "";
    curl_header* location = nullptr;
    if (transfer.curl.header(transfer.handle, "Location", 0, CURLH_HEADER, -1, &location) != CURLHE_OK)
        return "";
    const std::string target = resolveUrl(transfer.curl, url, location->value);
    return isSecure(url) && !isSecure(target) ? "" : target;
}

// Fetches `url`; if its answer leads elsewhere, `url` becomes that address, otherwise empty.
static bool fetchOnce(Transfer& transfer, std::string& url, const curl_slist* headers) {
    assert(!transfer.accepted && !transfer.file); // each hop has a transfer of its own
    setTransferOptions(transfer, url, headers);
    bool ok = transfer.curl.perform(transfer.handle) == CURLE_OK && transfer.accepted;
    if (transfer.file) ok = std::fclose(transfer.file) == 0 && ok;
    if (!ok && transfer.accepted && !transfer.filePath.empty()) deleteFile(transfer.filePath);
    url = transfer.accepted ? "" : redirection(transfer, url);
    return ok;
}

// To write where nobody listens any more raises a signal that would end the game. While this lives it waits
// in front of our thread, and then it is dropped.
struct PipeSignalBlocked {
    sigset_t pipe;
    sigset_t before;

    PipeSignalBlocked() {
        sigemptyset(&pipe);
        sigaddset(&pipe, SIGPIPE);
        pthread_sigmask(SIG_BLOCK, &pipe, &before);
    }
    ~PipeSignalBlocked() {
        const timespec now = {};
        sigtimedwait(&pipe, nullptr, &now);
        pthread_sigmask(SIG_SETMASK, &before, nullptr);
    }
    PipeSignalBlocked(const PipeSignalBlocked&) = delete;
    PipeSignalBlocked& operator=(const PipeSignalBlocked&) = delete;
};

// What is left of the time that began at `start`, in milliseconds: 0 without a limit, and never with one.
static long timeLeft(const HttpOptions& options, Clock::time_point start) {
    if (options.totalMs == 0) return 0;
    const auto gone = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start);
    return std::max(1l, static_cast<long>(options.totalMs - gone.count()));
}

bool httpFetch(const std::string& url, std::string* body, const std::string& filePath,
               const HttpOptions& options) {
    assert(options.timeoutMs > 0 && options.totalMs >= 0);
    CurlLibrary curl;
    if (!loadCurl(curl)) return false;
    const PipeSignalBlocked blocked;
    const std::unique_ptr<CURL, decltype(curl.cleanup)> handle(curl.init(), curl.cleanup);
    // Caches on the way are told to ask the server, too.
    const std::unique_ptr<curl_slist, decltype(curl.freeLines)> headers(
        curl.appendLine(curl.appendLine(nullptr, "Cache-Control: no-cache"), "Pragma: no-cache"),
        curl.freeLines);
    if (!handle || !headers) return false;

    const Clock::time_point start = Clock::now();
    std::string address = resolveUrl(curl, "", url);
    for (int hop = 0; hop <= LONGEST_REDIRECTION && !address.empty(); hop++) {
        Transfer transfer = {curl, handle.get(), body, filePath, options, timeLeft(options, start)};
        if (fetchOnce(transfer, address, headers.get())) return true;
    }
    return false;
}
