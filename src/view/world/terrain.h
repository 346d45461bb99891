// The ground: one heightfield in 36 meshes, whose colours also carry seasons, zones, districts and overlays.
#pragma once

#include "sim/city.h"
#include "view/world/world_meshes.h"

// Rebuilds chunk 0 to 35: into a builder, or straight into its mesh with the current overlay. The mesh stays
// as it is when it was last built from the same.
void buildTerrainChunk(MeshBuilder& builder, const City& city, int overlayMode, int chunkIndex);
void buildTerrainChunk(WorldMeshes& meshes, const City& city, int chunkIndex);

// The cells that a chunk shows: its own and, as the corners along its border mix their colours, those right
// beside it.
struct ChunkCells {
    int x0;
    int y0;
    int x1; // one past the last
    int y1;
};
ChunkCells cellsOfChunk(int chunkIndex);

// A corner of the grid, 0 to 96 each way, `lift` world units over the ground.
Vec3 cornerPosition(const City& city, int cornerX, int cornerY, float lift = 0.0f);
// The unit normal at a corner, 0 to 96 each way.
Vec3 terrainNormal(const City& city, int cornerX, int cornerY);
