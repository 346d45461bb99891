// Everything that stands: bus stops, construction sites and finished buildings. One static mesh for the cells
// of each chunk of the ground, so that a change sends a block and not the city.
#pragma once

#include "sim/city.h"
#include "view/world/world_meshes.h"

// What one frame may send before the rest waits for the next, in bytes. A day on a full map changes 20 MB and
// more, which would be felt in one frame and is not seen over four.
constexpr uint64_t BUILDING_BYTES_A_FRAME = 4'000'000;

// Builds and uploads only the blocks that look different from their mesh: the city marks its buildings stale
// far more often than their looks change. Begins no further block once byteLimit is reached; false when one
// is left to do.
bool buildBuildingMeshes(WorldMeshes& meshes, const City& city, uint64_t byteLimit = UINT64_MAX);
