// The constants of a build that is later than the game's, for an update to bring.
#include "maintenance/build_info.h"

#include <cstdlib>

const char* const gameVersion = "0.9";
const char* const gameBuildDate = "2027-01-01";
const char* const updateManifestUrl =
    std::getenv("TEST_MANIFEST_URL") ? std::getenv("TEST_MANIFEST_URL") : "";
