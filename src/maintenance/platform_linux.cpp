#include "maintenance/platform.h"

const char* const EXECUTABLE_NAME = "Orlavane";
