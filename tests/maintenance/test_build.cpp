#include "maintenance/test_build.h"

#include "maintenance/build_info.h"

#include <cstdio>

static char url[256] = "";

const char* const gameVersion = "0.2";
const char* const gameBuildDate = TEST_BUILD_DATE;
const char* const updateManifestUrl = url;

void setManifestUrl(const std::string& text) { std::snprintf(url, sizeof url, "%s", text.c_str()); }
