// make-manifest SETUP_PROGRAM MANIFEST [VERSION [DATE]]: writes the manifest that offers the setup program to
// every game that asks the update server, by default under the version and date of this build.
#include "maintenance/build_info.h"
#include "maintenance/files.h"
#include "maintenance/manifest.h"
#include "maintenance/platform.h"
#include "maintenance/sha256.h"

#include <cctype>
#include <cstdio>
#include <fstream>

namespace fs = std::filesystem;

constexpr int REFUSED = 1;
constexpr int WRONG_USE = 2;

static int refuse(const std::string& what, const char* why) {
    std::fprintf(stderr, "make-manifest: %s %s\n", what.c_str(), why);
    return REFUSED;
}

// The game compares dates byte by byte, which orders only this form.
static bool isDate(const std::string& text) {
    const std::string form = "0000-00-00";
    if (text.size() != form.size()) return false;
    for (size_t i = 0; i < form.size(); i++) {
        const bool fits =
            form[i] == '-' ? text[i] == '-' : std::isdigit(static_cast<unsigned char>(text[i])) != 0;
        if (!fits) return false;
    }
    return true;
}

// What an address holds as it stands. Of anything else a server may make another name, and then no game gets
// the file.
static bool isFetchableName(const std::string& name) {
    const char* letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789._-";
    return name.find_first_not_of(letters) == std::string::npos;
}

// Under another name first: whoever asks the server meanwhile gets the old one or the new one, and never a
// part.
static bool writeWhole(const std::string& path, const std::string& text) {
    const std::string part = path + ".new";
    std::ofstream file(nativePath(part), std::ios::binary);
    file << text;
    file.close();
    std::error_code error;
    if (file) fs::rename(nativePath(part), nativePath(path), error);
    if (file && !error) return true;
    deleteFile(part);
    return false;
}

int main(int argc, char** argv) {
    if (argc < 3 || argc > 5) {
        std::fprintf(stderr, "usage: make-manifest SETUP_PROGRAM MANIFEST [VERSION [DATE]]\n");
        return WRONG_USE;
    }
    const std::string setup = argv[1];
    const std::string path = argv[2];
    UpdateManifest manifest;
    manifest.version = argc > 3 ? argv[3] : gameVersion;
    manifest.date = argc > 4 ? argv[4] : gameBuildDate;
    manifest.file = fs::path(setup).filename().string();

    std::error_code error;
    if (!isDate(manifest.date)) return refuse(manifest.date, "is no date of the form 2026-10-30");
    if (!isFetchableName(manifest.file))
        return refuse(setup, "has a name that not every game could fetch: only letters, digits, \".\", \"_\" "
                             "and \"-\" stand in an address as they are");
    const uintmax_t size = fs::file_size(nativePath(setup), error);
    if (!error && size > HttpOptions().fileLimit) return refuse(setup, "is longer than the game will fetch");
    if (error || !sha256File(setup, manifest.sha256)) return refuse(setup, "cannot be read");
    std::string text;
    if (!formatManifest(manifest, text)) return refuse(path, "cannot hold that version");
    if (!writeWhole(path, text)) return refuse(path, "cannot be written");
    std::fputs(text.c_str(), stdout);
    return 0;
}
