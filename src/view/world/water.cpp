#include "view/world/water.h"

#include "sim/city.h"

void buildWaterMesh(WorldMeshes& meshes) {
    const Vec3 colour = {0.20f, 0.42f, 0.55f}; // the shader makes its own
    MeshBuilder builder;
    addQuad(builder, {0.0f, WATER_HEIGHT, 0.0f}, {MAP_WIDTH, WATER_HEIGHT, 0.0f},
            {MAP_WIDTH, WATER_HEIGHT, MAP_WIDTH}, {0.0f, WATER_HEIGHT, MAP_WIDTH}, {0.0f, 1.0f, 0.0f}, colour,
            0.0f, MATERIAL_WATER_EDGE);
    uploadMesh(meshes.waterMesh, builder, false);
    meshes.waterBuilt = 1;
}
