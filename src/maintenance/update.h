// Whether the update server has another build than this one.
#pragma once

#include "maintenance/manifest.h"

#include <cstdint>

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
