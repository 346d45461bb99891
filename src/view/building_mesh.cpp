#include "view/building_mesh.h"

#include "view/building_look.h"

void buildBuildingMesh(MeshBuilder& builder, const City& city) {
    std::vector<BuildingLook> looks;
    collectBuildingLooks(looks, city);
    builder.clear();
    builder.reserve(looks.size() * TYPICAL_VERTEX_COUNT);
    for (const BuildingLook& look : looks) addBuildingLook(builder, look);
}

void buildBuildingMesh(WorldMeshes& meshes, const City& city) {
    const bool changed = updateBuildingMeshCache(meshes.buildingCache, city);
    const bool uploaded = meshes.buildingMesh.vertexArray != 0;
    if (uploaded && !changed) return;

    uploadMesh(meshes.buildingMesh, meshes.buildingCache.vertices, false);
}
