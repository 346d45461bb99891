// What is rebuilt, and when.
#pragma once

#include "sim/city.h"
#include "view/world_meshes.h"

// Stores the overlay, and makes all that shows it stale if it changed. A mode that does not exist changes
// nothing.
void setOverlay(WorldMeshes& meshes, int mode);

// Rebuilds the ground where the city's dirty marks call it stale, clears these marks, and makes the water the
// first time. Once a frame, before drawing.
void updateWorldMeshes(WorldMeshes& meshes, City& city);
