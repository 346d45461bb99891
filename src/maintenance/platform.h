// The only door to the operating system besides SDL: platform_linux.cpp with http_linux.cpp and
// window_linux.cpp, or platform_windows.cpp, stand behind it.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>

struct SDL_Window;

// File name of the game's executable in the program's folder.
extern const char* const EXECUTABLE_NAME;
// The characters that part the folders of a path.
extern const char* const PATH_SEPARATORS;

// A file of that name in the temporary folder; on Linux, where that is everybody's, in a folder inside it
// that is the player's alone and is made for it. Empty if there can be none.
std::string temporaryPath(const std::string& name);

// The same, if a file of that name can be there; no folder is made for it. What lies under a longer name,
// because somebody else had taken the usual one, is not found again.
std::string knownTemporaryPath(const std::string& name);

// For the programs that are started from now on.
void setEnvironmentVariable(const char* name, const std::string& value);

// Opens a new file for writing, in place of an earlier file or link but of nothing else. What stood there is
// removed and not written through, so that nobody can have laid a link or kept the file open. nullptr on
// failure.
std::FILE* createFile(const std::string& path);

// Opens a folder in the system's own browser, or starts a program; `hidden` without a window. It outlives the
// game. False if it could not be started.
bool shellOpen(const std::string& path, bool hidden);

// Starts the script that removes the game's folder and its shortcuts once the game has ended. False if
// nothing has begun, as in a folder that the player may not remove.
bool startRemoval(const std::string& exeDir);

// After SDL has asked for another size of a window: makes it believe the size that the window has. By itself
// it takes what it asked for as granted, but X11's window managers may refuse.
void confirmWindowSize(SDL_Window* window);

// How far httpFetch goes. The defaults are the game's; tests are less patient.
struct HttpOptions {
    int timeoutMs = 10000; // to connect, and then without any data
    int totalMs = 0;       // for the answer and all that leads to it, however much comes; 0 for no end
    uint64_t fileLimit = 512 * 1024 * 1024;
    std::string certificates; // a file with the authorities to trust, empty for the system's
};
constexpr size_t HTTP_BODY_LIMIT = 65536;

// HTTP GET into a text (unless null) and into a file (unless empty). True only for status 200 and a whole
// body within the limits; after a failure the file is gone. Nothing comes from a cache or goes into one.
bool httpFetch(const std::string& url, std::string* body, const std::string& filePath,
               const HttpOptions& options = {});
