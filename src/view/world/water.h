// The one flat sheet of water over the whole map; the ground hides it wherever it rises above the sheet.
#pragma once

#include "view/world/world_meshes.h"

constexpr float WATER_HEIGHT = 6.0f; // world units

void buildWaterMesh(WorldMeshes& meshes);
