#include "view/world/rebuild.h"

#include "sim/calendar.h"
#include "view/world/building_mesh.h"
#include "view/world/road_mesh.h"
#include "view/world/terrain.h"
#include "view/world/trees.h"
#include "view/world/water.h"

#include <algorithm>
#include <cstring>

void setOverlay(WorldMeshes& meshes, int mode) {
    if (mode == meshes.overlayMode || mode < 0 || mode >= OVERLAY_COUNT) return;
    meshes.overlayMode = static_cast<uint8_t>(mode);
    meshes.rebuildAll = 1;
}

static bool chunkIsDirty(const City& city, int chunkIndex) {
    static constexpr uint8_t CLEAN_ROW[CHUNK_SIZE + 2] = {};
    const ChunkCells cells = cellsOfChunk(chunkIndex);
    const size_t width = static_cast<size_t>(cells.x1 - cells.x0);
    for (int y = cells.y0; y < cells.y1; y++)
        if (std::memcmp(&city.cellDirty[cellIndex(cells.x0, y)], CLEAN_ROW, width) != 0) return true;
    return false;
}

// A new city or a loaded one marks every cell.
static bool isNewLand(const City& city) {
    for (int chunk = 0; chunk < CHUNK_COUNT; chunk++)
        if (!chunkIsDirty(city, chunk)) return false;
    return true;
}

static void updateTerrain(WorldMeshes& meshes, City& city, bool all) {
    bool rebuilt = false;
    for (int chunk = 0; chunk < CHUNK_COUNT; chunk++) {
        if (!all && !chunkIsDirty(city, chunk)) continue;
        buildTerrainChunk(meshes, city, chunk);
        rebuilt = true;
    }
    // All of them, since each lies in a chunk that is now up to date.
    if (rebuilt) std::fill(city.cellDirty.begin(), city.cellDirty.end(), uint8_t{0});
}

// Takes the marks that make the whole ground stale; true when there was one.
static bool takeGroundMarks(WorldMeshes& meshes, City& city) {
    const int now = season(city);
    bool all = meshes.rebuildAll || city.overlayDirty;
    if (now != meshes.lastSeason) {
        city.zonesDirty = 1; // the trees change with the season
        all = true;
    }
    meshes.lastSeason = now;
    meshes.rebuildAll = 0;
    city.overlayDirty = 0;
    return all;
}

void updateWorldMeshes(WorldMeshes& meshes, City& city) {
    const bool all = takeGroundMarks(meshes, city);
    const bool newLand = isNewLand(city);
    updateTerrain(meshes, city, all);
    if (!meshes.waterBuilt) buildWaterMesh(meshes);
    if (city.roadsDirty || all) {
        buildRoadMesh(meshes, city);
        city.roadsDirty = 0;
    }
    if (city.zonesDirty) {
        buildTreeMesh(meshes, city);
        city.zonesDirty = 0;
    }
    if (city.buildingsDirty) {
        // The old city's houses must not stand on new land, not for one frame.
        const uint64_t byteLimit = newLand ? UINT64_MAX : BUILDING_BYTES_A_FRAME;
        city.buildingsDirty = !buildBuildingMeshes(meshes, city, byteLimit);
    }
}
