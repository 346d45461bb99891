// Everything that stands, in one static mesh: bus stops, construction sites and finished buildings.
#pragma once

#include "sim/city.h"
#include "view/mesh_builder.h"
#include "view/world_meshes.h"

// Replaces the builder's content.
void buildBuildingMesh(MeshBuilder& builder, const City& city);
// Uploads nothing when the mesh already shows the city: the city marks its buildings stale far more often
// than their looks change.
void buildBuildingMesh(WorldMeshes& meshes, const City& city);
