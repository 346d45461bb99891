#include "view/world/road_mesh.h"

#include "view/gl/fingerprint.h"
#include "view/world/terrain.h"

#include <algorithm>

constexpr float ROAD_LIFT = 0.18f; // world units: keeps the road over the ground without a depth bias

// Under the traffic overlay, from an empty to a full road.
constexpr Vec3 FREE_COLOUR = {0.25f, 0.78f, 0.36f};
constexpr Vec3 BUSY_COLOUR = {0.95f, 0.80f, 0.20f};
constexpr Vec3 JAM_COLOUR = {0.90f, 0.18f, 0.14f};

constexpr float PLAIN_BRIGHTNESS = 0.92f;
constexpr float DIMMED_BRIGHTNESS = 0.55f; // under a data overlay the roads step back

// A load that is no number counts as none.
static Vec3 trafficColour(float load) {
    if (load > 1.0f) return JAM_COLOUR;
    if (load >= 0.5f) return mix(BUSY_COLOUR, JAM_COLOUR, 2.0f * (load - 0.5f));
    return load > 0.0f ? mix(FREE_COLOUR, BUSY_COLOUR, 2.0f * load) : FREE_COLOUR;
}

static Vec3 roadColour(const City& city, int overlayMode, int x, int y) {
    if (overlayMode == OVERLAY_TRAFFIC) return trafficColour(city.trafficLoad[cellIndex(x, y)]);
    const float brightness = overlayMode == OVERLAY_NORMAL ? PLAIN_BRIGHTNESS : DIMMED_BRIGHTNESS;
    const float k = hash01(static_cast<uint32_t>(x), static_cast<uint32_t>(y), 3) * 0.08f + brightness;
    return {0.27f * k, 0.27f * k, 0.29f * k};
}

static Vertex roadCorner(const City& city, int x, int y, const Vec3& colour, float u, float v) {
    return {cornerPosition(city, x, y, ROAD_LIFT),
            terrainNormal(city, x, y),
            colour,
            MATERIAL_ROAD,
            0.0f,
            0.0f,
            u,
            v};
}

// u runs along x and v along z, whatever the road's direction, since no cell knows its neighbours: the pale
// lines run along z on every road.
static void addRoadCell(MeshBuilder& builder, const City& city, int x, int y, const Vec3& colour) {
    const Vertex a = roadCorner(city, x, y, colour, 0.0f, 0.0f);
    const Vertex b = roadCorner(city, x + 1, y, colour, 1.0f, 0.0f);
    const Vertex c = roadCorner(city, x + 1, y + 1, colour, 1.0f, 1.0f);
    const Vertex d = roadCorner(city, x, y + 1, colour, 0.0f, 1.0f);
    builder.insert(builder.end(), {a, b, c, a, c, d});
}

void buildRoadMesh(MeshBuilder& builder, const City& city, int overlayMode) {
    const auto roadCells = std::count_if(city.cells.begin(), city.cells.end(),
                                         [](const Cell& cell) { return cell.road != ROAD_NONE; });
    builder.reserve(builder.size() + static_cast<size_t>(roadCells) * 6);
    for (int y = 0; y < GRID_SIZE; y++)
        for (int x = 0; x < GRID_SIZE; x++)
            if (city.cells[cellIndex(x, y)].road != ROAD_NONE)
                addRoadCell(builder, city, x, y, roadColour(city, overlayMode, x, y));
}

static uint64_t roadFingerprint(const City& city, int overlayMode) {
    uint64_t fingerprint = mixFingerprint(FINGERPRINT_START, static_cast<uint32_t>(overlayMode));
    for (const float height : city.heights) fingerprint = mixFingerprint(fingerprint, height);
    for (uint32_t i = 0; i < CELL_COUNT; i++) {
        if (city.cells[i].road == ROAD_NONE) continue;
        fingerprint = mixFingerprint(fingerprint, i);
        if (overlayMode == OVERLAY_TRAFFIC) fingerprint = mixFingerprint(fingerprint, city.trafficLoad[i]);
    }
    return fingerprint;
}

void buildRoadMesh(WorldMeshes& meshes, const City& city) {
    const uint64_t fingerprint = roadFingerprint(city, meshes.overlayMode);
    if (fingerprint == meshes.roadMesh.fingerprint) return;

    MeshBuilder builder;
    buildRoadMesh(builder, city, meshes.overlayMode);
    uploadMesh(meshes.roadMesh, builder, false);
    meshes.roadMesh.fingerprint = fingerprint;
}
