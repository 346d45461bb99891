#include "maintenance/uninstall.h"

#include "maintenance/files.h"
#include "maintenance/platform.h"

#include <algorithm>
#include <cassert>

constexpr const char* GAME_FOLDER = "Orlavane";

static std::string withoutTrailing(const std::string& text, const char* characters) {
    return text.substr(0, text.find_last_not_of(characters) + 1);
}

bool isGameFolder(const std::string& path, const char* separators) {
    const std::string folder = withoutTrailing(path, separators);
    return folder.substr(folder.find_last_of(separators) + 1) == GAME_FOLDER;
}

std::string normalizeWindowsPath(const std::string& path) {
    std::string normal = path;
    std::replace(normal.begin(), normal.end(), '/', '\\');
    return withoutTrailing(normal, "\\");
}

// In double quotes; the interpreter takes a single "%" for the begin of a variable even there.
static std::string quotedForWindows(const std::string& path) {
    std::string quoted = "\"";
    for (const char c : path) quoted += c == '%' ? std::string("%%") : std::string(1, c);
    return quoted + '"';
}

// `rd` fails while the ending game holds its files, so it is tried for two minutes, once a second: that is
// what two pings to this computer take. The shortcuts go in any case, because what they lead to is broken.
std::string windowsRemovalScript(const Removal& removal) {
    assert(!removal.folder.empty() && removal.folder.back() != '\\');
    const std::string folder = quotedForWindows(removal.folder);
    std::string text = "@echo off\r\n"
                       "set n=0\r\n"
                       ":wait\r\n"
                       "set /a n+=1\r\n"
                       "if %n% gtr 120 goto done\r\n"
                       "ping -n 2 127.0.0.1 >nul\r\n"
                       "rd /s /q " +
                       folder +
                       " >nul 2>&1\r\n"
                       "if exist " +
                       folder +
                       " goto wait\r\n"
                       ":done\r\n";
    for (const std::string& link : {removal.desktopLink, removal.menuLink})
        if (!link.empty()) text += "del /q " + quotedForWindows(link) + " >nul 2>&1\r\n";
    return text + "(goto) 2>nul & del \"%~f0\"\r\n"; // must stay the last: no script is left to read on
}

// In single quotes nothing is special to a shell but the single quote itself.
static std::string quotedForShell(const std::string& path) {
    std::string quoted = "'";
    for (const char c : path) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return quoted + "'";
}

std::string shellRemovalScript(const Removal& removal) {
    assert(removal.folder.starts_with('/') && !removal.folder.ends_with('/')); // because it leaves our folder
    const std::string folder = quotedForShell(removal.folder);
    std::string text = "cd /\n"
                       "n=0\n"
                       "while [ $n -lt 120 ]; do\n"
                       "    n=$((n + 1))\n"
                       "    sleep 1\n"
                       "    rm -rf -- " +
                       folder +
                       "\n"
                       "    [ -e " +
                       folder +
                       " ] || break\n"
                       "done\n";
    for (const std::string& link : {removal.desktopLink, removal.menuLink})
        if (!link.empty()) text += "rm -f -- " + quotedForShell(link) + "\n";
    return text + "rm -f -- \"$0\"\n"
                  "rmdir -- \"${0%/*}\"\n"; // which stays if something else lies there
}

bool writeScript(const std::string& path, const std::string& text) {
    std::FILE* file = createFile(path);
    if (!file) return false;
    const bool written = std::fwrite(text.data(), 1, text.size(), file) == text.size();
    const bool closed = std::fclose(file) == 0;
    if (!written || !closed) deleteFile(path);
    return written && closed;
}
