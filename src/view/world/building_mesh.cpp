#include "view/world/building_mesh.h"

#include "view/gl/fingerprint.h"

#include <algorithm>
#include <cassert>

static int blockOf(const BuildingLook& look) { return look.y / CHUNK_SIZE * CHUNK_ROW + look.x / CHUNK_SIZE; }

static std::array<uint64_t, CHUNK_COUNT> fingerprintBlocks(const std::vector<BuildingLook>& looks) {
    std::array<uint64_t, CHUNK_COUNT> fingerprints;
    fingerprints.fill(FINGERPRINT_START);
    for (const BuildingLook& look : looks) {
        uint64_t& fingerprint = fingerprints[blockOf(look)];
        for (const uint32_t word : std::bit_cast<std::array<uint32_t, 4>>(look))
            fingerprint = mixFingerprint(fingerprint, word);
    }
    return fingerprints;
}

// So that a builder need not move while it grows: a block rarely gains more in a day than a crane over a
// tower. Memory that is never written to costs nothing.
static size_t roomForAnyBlock(const WorldMeshes& meshes) {
    constexpr int LARGEST_LOOK = 4000; // vertices
    int largest = 0;
    for (const Mesh& block : meshes.buildingBlocks) largest = std::max(largest, block.vertexCount);
    return static_cast<size_t>(largest) + LARGEST_LOOK;
}

static void addBlock(MeshBuilder& builder, const std::vector<BuildingLook>& looks, int block) {
    assert(builder.empty());
    for (const BuildingLook& look : looks)
        if (blockOf(look) == block) addBuildingLook(builder, look);
}

bool buildBuildingMeshes(WorldMeshes& meshes, const City& city, uint64_t byteLimit) {
    std::vector<BuildingLook>& looks = meshes.buildingLooks;
    collectBuildingLooks(looks, city);
    const std::array<uint64_t, CHUNK_COUNT> fingerprints = fingerprintBlocks(looks);

    MeshBuilder builder;
    uint64_t sent = 0;
    for (int block = 0; block < CHUNK_COUNT; block++) {
        Mesh& mesh = meshes.buildingBlocks[block];
        if (fingerprints[block] == mesh.fingerprint) continue;
        if (sent >= byteLimit) return false;
        builder.clear();
        builder.reserve(roomForAnyBlock(meshes));
        addBlock(builder, looks, block);
        uploadMesh(mesh, builder, false);
        mesh.fingerprint = fingerprints[block];
        sent += builder.size() * sizeof(Vertex);
    }
    return true;
}
