// One flat sheet over the whole map: the ground hides it wherever it rises above, so that no shore is built.
#pragma once

#include "view/world/world_meshes.h"

constexpr float WATER_HEIGHT = 6.0f; // world units

void buildWaterMesh(WorldMeshes& meshes);
