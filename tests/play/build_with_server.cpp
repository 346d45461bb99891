// The constants of a build whose update server the tests name when they start it. The game itself can only be
// given one when it is built.
#include "maintenance/build_info.h"

#include <cstdlib>

const char* const gameVersion = "0.2";
const char* const gameBuildDate = "2026-10-30";
const char* const updateManifestUrl =
    std::getenv("TEST_MANIFEST_URL") ? std::getenv("TEST_MANIFEST_URL") : "";
