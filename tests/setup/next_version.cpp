// The constants of the version that follows the one with an update server of the tests' choice.
#include "maintenance/build_info.h"

#include <cstdlib>

const char* const gameVersion = "0.3";
const char* const gameBuildDate = "2026-12-01";
const char* const updateManifestUrl =
    std::getenv("TEST_MANIFEST_URL") ? std::getenv("TEST_MANIFEST_URL") : "";
