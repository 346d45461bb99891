// What is rebuilt, and when.
#pragma once

#include "sim/city.h"
#include "view/world_meshes.h"

// Stores the overlay (0 to 5), and rebuilds everything at the next update if it changed.
void setOverlay(WorldMeshes& meshes, int mode);

// Rebuilds whatever the city's dirty marks call stale, and clears them. Once a frame, before drawing.
void updateWorldMeshes(WorldMeshes& meshes, City& city);
