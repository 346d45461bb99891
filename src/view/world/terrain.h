// The ground: one heightfield whose colours also carry seasons, zones, districts and overlays. In 36 meshes,
// so that an edit rebuilds the block around it.
#pragma once

#include "sim/city.h"
#include "view/world/world_meshes.h"

// Rebuilds chunk 0 to 35: into a builder, or straight into its mesh with the current overlay.
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

// Corners of the grid, 0 to 96 each way: the place, `lift` world units over the ground, and the unit normal.
Vec3 cornerPosition(const City& city, int cornerX, int cornerY, float lift = 0.0f);
Vec3 terrainNormal(const City& city, int cornerX, int cornerY);
