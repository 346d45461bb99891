#include "view/world/trees.h"

#include "sim/calendar.h"
#include "view/gl/fingerprint.h"

#include <algorithm>

constexpr int TREE_SIDES = 6;
constexpr int TREE_VERTICES = TREE_SIDES * 6;

// By season, from spring to winter.
constexpr Vec3 SEASON_TINTS[] = {
    {1.10f, 1.22f, 1.00f}, {1.0f, 1.0f, 1.0f}, {1.45f, 0.95f, 0.45f}, {0.90f, 0.92f, 0.95f}};

static bool hasTree(const Cell& cell) {
    return cell.hasTrees != 0 && cell.road == ROAD_NONE && cell.buildingIndex < 0;
}

// Not far from the middle of its cell, so that it hardly reaches over a road beside it.
static void addTree(MeshBuilder& builder, const City& city, uint32_t cellX, uint32_t cellY,
                    const Vec3& tint) {
    const float x = (hash01(cellX, cellY, 21) * 0.4f + 0.3f + static_cast<float>(cellX)) * CELL_WIDTH;
    const float z = (hash01(cellX, cellY, 22) * 0.4f + 0.3f + static_cast<float>(cellY)) * CELL_WIDTH;
    const float size = hash01(cellX, cellY, 23) * 0.5f + 0.8f;
    const float t = hash01(cellX, cellY, 24);
    const Vec3 colour = {(0.13f + 0.09f * t) * tint.x, (0.32f + 0.13f * t) * tint.y,
                         (0.12f + 0.05f * t) * tint.z};
    addFrustum(builder, {x, heightAt(city, x, z), z}, 2.4f * size, 7.0f * size, 0.0f, TREE_SIDES, colour,
               MATERIAL_TERRAIN, 0.0f);
}

void buildTreeMesh(MeshBuilder& builder, const City& city) {
    const Vec3 tint = SEASON_TINTS[season(city)];
    const auto trees = std::count_if(city.cells.begin(), city.cells.end(), hasTree);
    builder.reserve(builder.size() + static_cast<size_t>(trees) * TREE_VERTICES);
    for (uint32_t y = 0; y < GRID_SIZE; y++)
        for (uint32_t x = 0; x < GRID_SIZE; x++)
            if (hasTree(city.cells[y * GRID_SIZE + x])) addTree(builder, city, x, y, tint);
}

static uint64_t treeFingerprint(const City& city) {
    uint64_t fingerprint = mixFingerprint(FINGERPRINT_START, static_cast<uint32_t>(season(city)));
    for (const float height : city.heights) fingerprint = mixFingerprint(fingerprint, height);
    for (uint32_t i = 0; i < CELL_COUNT; i++)
        if (hasTree(city.cells[i])) fingerprint = mixFingerprint(fingerprint, i);
    return fingerprint;
}

void buildTreeMesh(WorldMeshes& meshes, const City& city) {
    const uint64_t fingerprint = treeFingerprint(city);
    if (fingerprint == meshes.treeMesh.fingerprint) return;

    MeshBuilder builder;
    buildTreeMesh(builder, city);
    uploadMesh(meshes.treeMesh, builder, false);
    meshes.treeMesh.fingerprint = fingerprint;
}
