// The trees of the whole map: one cone on each wooded cell that nothing was built on.
#pragma once

#include "sim/city.h"
#include "view/world/world_meshes.h"

void buildTreeMesh(MeshBuilder& builder, const City& city);
void buildTreeMesh(WorldMeshes& meshes, const City& city);
