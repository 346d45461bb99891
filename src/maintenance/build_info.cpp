#include "maintenance/build_info.h"

const char* const gameVersion = ORLAVANE_VERSION;
const char* const gameBuildDate = ORLAVANE_BUILD_DATE;
const char* const updateManifestUrl = ORLAVANE_UPDATE_MANIFEST_URL;
