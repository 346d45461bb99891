// Any bytes as an update manifest: what is accepted can do no harm, and what is refused changes nothing.
#include "maintenance/manifest.h"
#include "maintenance/sha256.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstdlib>
#include <tuple>

static auto fields(const UpdateManifest& m) { return std::tie(m.version, m.date, m.sha256, m.file); }

static void check(bool holds) {
    if (!holds) std::abort();
}

static void checkAccepted(const UpdateManifest& manifest) {
    check(manifest.sha256.size() == 64);
    check(std::all_of(manifest.sha256.begin(), manifest.sha256.end(),
                      [](unsigned char c) { return std::isxdigit(c) != 0; }));
    check(hashEquals(manifest.sha256, manifest.sha256));
    check(!manifest.file.empty() && manifest.file.find_first_of("/\\:") == std::string::npos);
    for (const std::string* value : {&manifest.version, &manifest.date, &manifest.file})
        check(value->find('"') == std::string::npos);
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    const UpdateManifest before = {"version", "date", "sha256", "file"};
    UpdateManifest manifest = before;
    if (!parseManifest(text, manifest)) {
        check(fields(manifest) == fields(before));
        return 0;
    }
    checkAccepted(manifest);

    // What can be written is read back as it was.
    std::string written;
    UpdateManifest again;
    if (!formatManifest(manifest, written)) return 0;
    check(parseManifest(written, again) && fields(again) == fields(manifest));
    return 0;
}
