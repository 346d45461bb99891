// The coloured quad over the cell under the cursor.
#pragma once

#include "sim/city.h"
#include "view/world/world_meshes.h"

// Takes the highlight away when not `visible` or off the map. Uploads on a change only.
void updateHover(WorldMeshes& meshes, const City& city, int cellX, int cellY, bool visible,
                 const Vec3& colour);

// The cell must be on the map.
void buildHoverMesh(MeshBuilder& builder, const City& city, int cellX, int cellY, const Vec3& colour);
