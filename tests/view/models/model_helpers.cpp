#include "view/models/model_helpers.h"

#include "view/models/building_look.h"

#include <algorithm>
#include <cmath>
#include <cstring>

Lot makeLot(float t, int level) { return {388.0f, 388.0f, 3.2f, 3.2f, level, t}; }

Bounds boundsOf(const MeshBuilder& mesh) {
    Bounds bounds = {mesh.at(0).position, mesh.at(0).position};
    for (const Vertex& vertex : mesh) {
        const Vec3& p = vertex.position;
        bounds.min = {std::min(bounds.min.x, p.x), std::min(bounds.min.y, p.y), std::min(bounds.min.z, p.z)};
        bounds.max = {std::max(bounds.max.x, p.x), std::max(bounds.max.y, p.y), std::max(bounds.max.z, p.z)};
    }
    return bounds;
}

MeshBuilder buildingsOf(const City& city) {
    std::vector<BuildingLook> looks;
    collectBuildingLooks(looks, city);
    MeshBuilder mesh;
    for (const BuildingLook& look : looks) addBuildingLook(mesh, look);
    return mesh;
}

std::array<MeshBuilder, 36> buildingBlocksOf(const City& city) {
    std::vector<BuildingLook> looks;
    collectBuildingLooks(looks, city);
    std::array<MeshBuilder, 36> blocks;
    for (const BuildingLook& look : looks) addBuildingLook(blocks.at(look.y / 16 * 6 + look.x / 16), look);
    return blocks;
}

void expectNear(const Vec3& seen, const Vec3& expected, float tolerance) {
    EXPECT_NEAR(seen.x, expected.x, tolerance) << "x";
    EXPECT_NEAR(seen.y, expected.y, tolerance) << "y";
    EXPECT_NEAR(seen.z, expected.z, tolerance) << "z";
}

static bool isNear(const Vec3& a, const Vec3& b) {
    return std::abs(a.x - b.x) < 1e-4f && std::abs(a.y - b.y) < 1e-4f && std::abs(a.z - b.z) < 1e-4f;
}

static bool isNear(const Vertex& a, const Vertex& b) {
    return isNear(a.position, b.position) && isNear(a.normal, b.normal) && isNear(a.colour, b.colour) &&
           a.material == b.material && std::abs(a.emissive - b.emissive) < 1e-5f && a.u == b.u && a.v == b.v;
}

testing::AssertionResult contains(const MeshBuilder& mesh, const MeshBuilder& part) {
    const auto nearVertex = [](const Vertex& a, const Vertex& b) { return isNear(a, b); };
    if (std::search(mesh.begin(), mesh.end(), part.begin(), part.end(), nearVertex) != mesh.end())
        return testing::AssertionSuccess();
    const Bounds bounds = boundsOf(part);
    return testing::AssertionFailure()
           << "no such piece from (" << bounds.min.x << ", " << bounds.min.y << ", " << bounds.min.z
           << ") to (" << bounds.max.x << ", " << bounds.max.y << ", " << bounds.max.z << ")";
}

testing::AssertionResult hasBox(const MeshBuilder& mesh, const Vec3& min, const Vec3& max, const Vec3& colour,
                                int material, float emissive) {
    MeshBuilder box;
    addBox(box, min, max, colour, material, emissive);
    return contains(mesh, box);
}

testing::AssertionResult hasFlatQuad(const MeshBuilder& mesh, float x0, float x1, float z0, float z1,
                                     float height, const Vec3& colour, int material) {
    MeshBuilder quad;
    addFlatQuad(quad, x0, x1, z0, z1, height, colour, material);
    return contains(mesh, quad);
}

testing::AssertionResult hasFrustum(const MeshBuilder& mesh, const Vec3& foot, float bottomRadius,
                                    float height, float topRadius, int segments, const Vec3& colour,
                                    int material, float emissive) {
    MeshBuilder frustum;
    addFrustum(frustum, foot, bottomRadius, height, topRadius, segments, colour, material, emissive);
    return contains(mesh, frustum);
}

bool isSame(const MeshBuilder& a, const MeshBuilder& b) {
    if (a.size() != b.size()) return false;
    return a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(Vertex)) == 0;
}

MeshBuilder verticesOfColour(const MeshBuilder& mesh, const Vec3& colour) {
    MeshBuilder found;
    for (const Vertex& vertex : mesh)
        if (isNear(vertex.colour, colour)) found.push_back(vertex);
    return found;
}

int materialsOf(const MeshBuilder& mesh) {
    int bits = 0;
    for (const Vertex& vertex : mesh) bits |= 1 << static_cast<int>(vertex.material);
    return bits;
}

std::vector<Vec3> lampsOf(const MeshBuilder& mesh) {
    std::vector<Vec3> lamps;
    for (size_t i = 0; i + 30 <= mesh.size(); i++) {
        if (static_cast<int>(mesh[i].material) != MATERIAL_PLAIN || mesh[i].emissive != 1.0f) continue;
        const Bounds bounds = boundsOf(MeshBuilder(mesh.begin() + i, mesh.begin() + i + 30));
        if (!hasBox(MeshBuilder(mesh.begin() + i, mesh.begin() + i + 30), bounds.min, bounds.max,
                    mesh[i].colour, MATERIAL_PLAIN, 1.0f))
            continue;
        const Vec3 middle = (bounds.min + bounds.max) * 0.5f;
        lamps.push_back({middle.x, bounds.min.y, middle.z});
        i += 29;
    }
    return lamps;
}
