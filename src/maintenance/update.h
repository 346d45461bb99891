// Whether the update server has another build than this one.
#pragma once

#include <cstdint>
#include <string>

enum UpdateState : uint8_t {
    UPDATE_IDLE, // before start-up has finished
    UPDATE_UNCONFIGURED,
    UPDATE_CHECKING,
    UPDATE_CURRENT,
    UPDATE_NEWER,
    UPDATE_DIFFERENT,
    UPDATE_OFFLINE,
    UPDATE_DOWNLOADING,
    UPDATE_DOWNLOAD_FAILED
};

// What the server says of its build.
struct UpdateManifest {
    std::string version;
    std::string date; // year-month-day
    std::string sha256;
    std::string file;
};
