// The bodies of the vehicles, made anew each frame.
#pragma once

#include "view/street/street_life.h"
#include "view/world/world_meshes.h"

void buildStreetLifeMesh(MeshBuilder& builder, const City& city, const StreetLife& streetLife);
void buildStreetLifeMesh(WorldMeshes& meshes, const City& city, const StreetLife& streetLife);
