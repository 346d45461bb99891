// What is rebuilt, and when.
#pragma once

#include "sim/city.h"
#include "view/world/world_meshes.h"

// Stores the overlay, and makes all that shows it stale if it changed. A mode that does not exist changes
// nothing.
void setOverlay(WorldMeshes& meshes, int mode);

// Brings up to date whatever the city's dirty marks call stale, and clears them. Once a frame, before
// drawing. The first time it makes the water as well.
void updateWorldMeshes(WorldMeshes& meshes, City& city);
