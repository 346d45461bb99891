// The meshes of the city, kept up to date from its dirty marks.
#pragma once

#include "view/gl/mesh.h"
#include "view/models/building_look.h"

#include <array>

constexpr int CHUNK_SIZE = 16; // cells a side
constexpr int CHUNK_ROW = 6;
constexpr int CHUNK_COUNT = CHUNK_ROW * CHUNK_ROW;

// In the order of the Tab key.
enum Overlay : uint8_t {
    OVERLAY_NORMAL,
    OVERLAY_TRAFFIC,
    OVERLAY_POWER,
    OVERLAY_WATER,
    OVERLAY_POLLUTION,
    OVERLAY_HAPPY,
    OVERLAY_COUNT
};

struct WorldMeshes {
    std::array<Mesh, CHUNK_COUNT> terrainChunks; // row by row
    Mesh roadMesh;
    std::array<Mesh, CHUNK_COUNT> buildingBlocks; // what stands on the cells of each chunk
    Mesh treeMesh;
    Mesh waterMesh;
    Mesh hoverMesh;
    Mesh streetLifeMesh;
    uint8_t overlayMode = OVERLAY_NORMAL;
    uint8_t rebuildAll = 0;
    int32_t hoverX = -1; // -1 = no highlight
    int32_t hoverY = -1;
    Vec3 hoverColour;
    uint8_t waterBuilt = 0;
    int32_t lastSeason = 0;
    // Kept, so that a frame takes nothing from the heap.
    std::vector<BuildingLook> buildingLooks;
    MeshBuilder streetLifeBuilder;
};
