// The roads: a thin skin over the ground, one quad a road cell, all in one mesh. Lanes and kerbs are the
// shader's.
#pragma once

#include "sim/city.h"
#include "view/world/world_meshes.h"

void buildRoadMesh(MeshBuilder& builder, const City& city, int overlayMode);
// With the current overlay. The mesh stays as it is when it was last built from the same.
void buildRoadMesh(WorldMeshes& meshes, const City& city);
