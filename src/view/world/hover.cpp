#include "view/world/hover.h"

#include "view/world/terrain.h"

#include <cassert>

constexpr float HOVER_LIFT = 0.35f; // world units: over the roads as well
constexpr float HOVER_BRIGHTNESS = 0.55f;

// Of the ground's material, so that night and shadow darken it too; its emissive of 1 shows nothing there.
void buildHoverMesh(MeshBuilder& builder, const City& city, int cellX, int cellY, const Vec3& colour) {
    assert(inMap(cellX, cellY));
    addQuad(builder, cornerPosition(city, cellX, cellY, HOVER_LIFT),
            cornerPosition(city, cellX + 1, cellY, HOVER_LIFT),
            cornerPosition(city, cellX + 1, cellY + 1, HOVER_LIFT),
            cornerPosition(city, cellX, cellY + 1, HOVER_LIFT), {0.0f, 1.0f, 0.0f}, colour * HOVER_BRIGHTNESS,
            1.0f, MATERIAL_TERRAIN);
}

static void showHover(WorldMeshes& meshes, const City& city, int cellX, int cellY, const Vec3& colour) {
    if (meshes.hoverX == cellX && meshes.hoverY == cellY && meshes.hoverColour == colour) return;

    meshes.hoverX = cellX;
    meshes.hoverY = cellY;
    meshes.hoverColour = colour;
    MeshBuilder builder;
    buildHoverMesh(builder, city, cellX, cellY, colour);
    uploadMesh(meshes.hoverMesh, builder, false);
}

static void hideHover(WorldMeshes& meshes) {
    if (meshes.hoverX < 0) return;

    destroyMesh(meshes.hoverMesh);
    meshes.hoverX = -1;
    meshes.hoverY = -1;
}

void updateHover(WorldMeshes& meshes, const City& city, int cellX, int cellY, bool visible,
                 const Vec3& colour) {
    if (visible && inMap(cellX, cellY))
        showHover(meshes, city, cellX, cellY, colour);
    else
        hideHover(meshes);
}
