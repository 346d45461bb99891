#include "maintenance/manifest.h"

#include <algorithm>
#include <cassert>
#include <cctype>
#include <tuple>

bool manifestField(std::string_view text, std::string_view key, std::string& out) {
    assert(!key.empty() && key.find('"') == std::string_view::npos);
    const std::string quotedKey = '"' + std::string(key) + '"';
    const size_t found = text.find(quotedKey);
    if (found == std::string_view::npos) return false;
    const size_t colon = text.find(':', found + quotedKey.size());
    if (colon == std::string_view::npos) return false;
    const size_t open = text.find('"', colon);
    if (open == std::string_view::npos) return false;
    const size_t close = text.find('"', open + 1);
    if (close == std::string_view::npos) return false;

    out = text.substr(open + 1, close - open - 1);
    return true;
}

static bool isSha256(const std::string& text) {
    return text.size() == 64 &&
           std::all_of(text.begin(), text.end(), [](unsigned char c) { return std::isxdigit(c) != 0; });
}

// Without a separator or a drive a hostile manifest cannot name a path.
static bool isPlainFileName(const std::string& name) {
    return !name.empty() && name.find_first_of("/\\:") == std::string::npos;
}

bool parseManifest(std::string_view text, UpdateManifest& out) {
    UpdateManifest read;
    manifestField(text, "version", read.version);
    manifestField(text, "date", read.date);
    if (!manifestField(text, "sha256", read.sha256) || !isSha256(read.sha256)) return false;
    if (!manifestField(text, "file", read.file) || !isPlainFileName(read.file)) return false;

    out = std::move(read);
    return true;
}

static auto fields(const UpdateManifest& m) { return std::tie(m.version, m.date, m.sha256, m.file); }

bool formatManifest(const UpdateManifest& manifest, std::string& out) {
    const std::string text = "{\n  \"version\": \"" + manifest.version + "\",\n  \"date\": \"" +
                             manifest.date + "\",\n  \"sha256\": \"" + manifest.sha256 +
                             "\",\n  \"file\": \"" + manifest.file + "\"\n}\n";
    UpdateManifest readBack;
    if (!parseManifest(text, readBack) || fields(readBack) != fields(manifest)) return false;
    out = text;
    return true;
}
