// Everything that stands: bus stops, construction sites and finished buildings. One static mesh for the cells
// of each chunk of the ground, so that a change sends a block and not the city.
#pragma once

#include "sim/city.h"
#include "view/world/world_meshes.h"

// Builds and uploads only the blocks that look different from their mesh: the city marks its buildings stale
// far more often than their looks change.
void buildBuildingMeshes(WorldMeshes& meshes, const City& city);
