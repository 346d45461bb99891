// The roads: a thin skin over the ground, one quad a road cell, all in one mesh. Their edge lines are the
// shader's; a street and an avenue look alike.
#pragma once

#include "sim/city.h"
#include "view/world/world_meshes.h"

void buildRoadMesh(MeshBuilder& builder, const City& city, int overlayMode);
// With the current overlay.
void buildRoadMesh(WorldMeshes& meshes, const City& city);
