#include "view/building_mesh.h"

#include "view/fingerprint.h"

// Vertices of a crane over a tall tower. A block rarely gains more in a day, so that a builder with this much
// room beside what the block had does not move while it grows.
constexpr size_t LARGEST_LOOK = 4000;

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

static void buildBlock(MeshBuilder& builder, const std::vector<BuildingLook>& looks, int block) {
    builder.clear();
    for (const BuildingLook& look : looks)
        if (blockOf(look) == block) addBuildingLook(builder, look);
}

void buildBuildingMeshes(WorldMeshes& meshes, const City& city) {
    std::vector<BuildingLook>& looks = meshes.buildingLooks;
    collectBuildingLooks(looks, city);
    const std::array<uint64_t, CHUNK_COUNT> fingerprints = fingerprintBlocks(looks);

    MeshBuilder builder;
    for (int block = 0; block < CHUNK_COUNT; block++) {
        Mesh& mesh = meshes.buildingBlocks[block];
        if (fingerprints[block] == mesh.fingerprint) continue;
        builder.reserve(static_cast<size_t>(mesh.vertexCount) + LARGEST_LOOK);
        buildBlock(builder, looks, block);
        uploadMesh(mesh, builder, false);
        mesh.fingerprint = fingerprints[block];
    }
}
