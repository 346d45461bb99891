// What is rebuilt, and when: no more than once a frame, however many marks the rules have raised.
#pragma once

#include "sim/city.h"
#include "view/world/world_meshes.h"

// Stores the overlay, and makes all that shows it stale if it changed. A mode that does not exist changes
// nothing.
void setOverlay(WorldMeshes& meshes, int mode);

// Brings up to date whatever the city's dirty marks call stale, and clears them. Once a frame, before
// drawing. After a large change some buildings wait for the next frames, and their mark stays. The first time
// it makes the water as well, which is the same in every land.
void updateWorldMeshes(WorldMeshes& meshes, City& city);
