#include "view/models/building_parts.h"

#include <cassert>
#include <cmath>

void moveVertices(MeshBuilder& builder, size_t first, const Vec3& offset) {
    assert(first <= builder.size());
    for (size_t i = first; i < builder.size(); i++) builder[i].position = builder[i].position + offset;
}

void addPlainBox(MeshBuilder& builder, const Vec3& min, const Vec3& max, const Vec3& colour, float emissive) {
    addBox(builder, min, max, colour, MATERIAL_PLAIN, emissive);
}

void addPost(MeshBuilder& builder, const Vec3& foot, float top, float thickness, const Vec3& colour) {
    const float half = thickness / 2.0f;
    addPlainBox(builder, {foot.x - half, foot.y, foot.z - half}, {foot.x + half, top, foot.z + half}, colour);
}

void addYard(MeshBuilder& builder, const Vec3& colour, int material) {
    addFlatQuad(builder, -4.0f, 4.0f, -4.0f, 4.0f, YARD, colour, material);
}

void addWarningLamp(MeshBuilder& builder, const Vec3& foot) {
    addPlainBox(builder, foot + Vec3{-0.14f, 0.0f, -0.14f}, foot + Vec3{0.14f, 0.28f, 0.14f}, WARNING_RED,
                1.0f);
}

void addTank(MeshBuilder& builder, const Vec3& foot, float radius, float height, float lidHeight,
             int segments, const Vec3& colour) {
    addFrustum(builder, foot, radius, height, radius, segments, colour, MATERIAL_PLAIN, 0.0f);
    addFrustum(builder, foot + Vec3{0.0f, height, 0.0f}, radius * 1.08f, lidHeight, 0.0f, segments,
               colour * 0.7f, MATERIAL_ROOF, 0.0f);
}

void addBench(MeshBuilder& builder, const Vec3& foot) {
    const Vec3 wood = {0.55f, 0.38f, 0.24f};
    addPlainBox(builder, foot + Vec3{-0.45f, 0.0f, -0.1f}, foot + Vec3{-0.35f, 0.4f, 0.1f}, STEEL_GREY);
    addPlainBox(builder, foot + Vec3{0.35f, 0.0f, -0.1f}, foot + Vec3{0.45f, 0.4f, 0.1f}, STEEL_GREY);
    addPlainBox(builder, foot + Vec3{-0.6f, 0.4f, -0.15f}, foot + Vec3{0.6f, 0.5f, 0.15f}, wood);
    addPlainBox(builder, foot + Vec3{-0.6f, 0.5f, -0.22f}, foot + Vec3{0.6f, 1.0f, -0.15f}, wood);
}

void addRooftopUnit(MeshBuilder& builder, const Vec3& min, const Vec3& max) {
    const Vec3 size = max - min;
    addPlainBox(builder, min, max, {0.74f, 0.75f, 0.77f});
    addPlainBox(builder, {min.x + 0.18f * size.x, min.y + 0.2f * size.y, max.z},
                {min.x + 0.82f * size.x, min.y + 0.8f * size.y, max.z + 0.05f}, {0.16f, 0.17f, 0.19f});
}

void addParapet(MeshBuilder& builder, float halfX, float halfZ, float bottom, float height,
                const Vec3& colour) {
    const float innerX = halfX - 0.15f;
    const float innerZ = halfZ - 0.15f;
    const float top = bottom + height;
    addPlainBox(builder, {-halfX, bottom, innerZ}, {halfX, top, halfZ}, colour);
    addPlainBox(builder, {-halfX, bottom, -halfZ}, {halfX, top, -innerZ}, colour);
    addPlainBox(builder, {-halfX, bottom, -innerZ}, {-innerX, top, innerZ}, colour);
    addPlainBox(builder, {innerX, bottom, -innerZ}, {halfX, top, innerZ}, colour);
}

void addFence(MeshBuilder& builder, const Vec3& start, const Vec3& end, float height, const Vec3& colour) {
    assert(start.y == end.y && (start.x == end.x || start.z == end.z) && !(start == end));
    const float railTop = start.y + height;
    const float railBottom = railTop - 0.06f;
    const int gapCount = static_cast<int>(std::ceil(length(end - start) / 0.9f));
    for (int i = 0; i <= gapCount; i++) {
        const float along = static_cast<float>(i) / static_cast<float>(gapCount);
        addPost(builder, mix(start, end, along), railBottom, 0.1f, colour);
    }
    addPlainBox(builder, {start.x - 0.05f, railBottom, start.z - 0.05f},
                {end.x + 0.05f, railTop, end.z + 0.05f}, colour);
}

void addLotFence(MeshBuilder& builder, const Vec3& colour) {
    const float edge = 3.9f;
    const float height = GROUND + 1.0f;
    addFence(builder, {-edge, 0.0f, edge}, {edge, 0.0f, edge}, height, colour);
    addFence(builder, {-edge, 0.0f, -edge}, {edge, 0.0f, -edge}, height, colour);
    addFence(builder, {-edge, 0.0f, -edge}, {-edge, 0.0f, edge}, height, colour);
    addFence(builder, {edge, 0.0f, -edge}, {edge, 0.0f, edge}, height, colour);
}

void addBalcony(MeshBuilder& builder, float halfWidth, float wallZ, float depth, float bottom,
                const Vec3& colour) {
    const float slabTop = bottom + 0.2f;
    const float fenceZ = wallZ + depth - 0.05f;
    const float fenceEnd = halfWidth - 0.05f;
    addPlainBox(builder, {-halfWidth, bottom, wallZ}, {halfWidth, slabTop, wallZ + depth}, colour);
    addFence(builder, {-fenceEnd, slabTop, fenceZ}, {fenceEnd, slabTop, fenceZ}, 0.8f, colour);
}

void addRoofTank(MeshBuilder& builder, const Vec3& foot, float radius, float height) {
    addTank(builder, foot, radius, height, 0.35f * radius, 10, {0.62f, 0.63f, 0.64f});
}

void addWallMullions(MeshBuilder& builder, float halfX, float halfZ, float bottom, float top, int count,
                     const Vec3& colour) {
    assert(count > 0);
    const float half = 0.08f;
    const float standOff = 0.14f;
    for (int i = 0; i < count; i++) {
        const float along = (static_cast<float>(i) + 0.5f) / static_cast<float>(count) * 2.0f - 1.0f;
        const float x = along * halfX;
        const float z = along * halfZ;
        addPlainBox(builder, {x - half, bottom, halfZ}, {x + half, top, halfZ + standOff}, colour);
        addPlainBox(builder, {x - half, bottom, -halfZ - standOff}, {x + half, top, -halfZ}, colour);
        addPlainBox(builder, {halfX, bottom, z - half}, {halfX + standOff, top, z + half}, colour);
        addPlainBox(builder, {-halfX - standOff, bottom, z - half}, {-halfX, top, z + half}, colour);
    }
}

void addFlag(MeshBuilder& builder, const Vec3& foot, float top) {
    const Vec3 red = {0.85f, 0.20f, 0.20f};
    const Vec3 white = {0.95f, 0.95f, 0.95f};
    const Vec3 towardsViewer = {0.0f, 0.0f, 1.0f};
    const float end = foot.x + 1.5f;
    addPost(builder, foot, top, 0.12f, STEEL_GREY);
    addQuad(builder, {foot.x, top - 0.55f, foot.z}, {end, top - 0.55f, foot.z}, {end, top - 0.1f, foot.z},
            {foot.x, top - 0.1f, foot.z}, towardsViewer, red, 0.0f, MATERIAL_PLAIN);
    addQuad(builder, {foot.x, top - 1.0f, foot.z}, {end, top - 1.0f, foot.z}, {end, top - 0.55f, foot.z},
            {foot.x, top - 0.55f, foot.z}, towardsViewer, white, 0.0f, MATERIAL_PLAIN);
}
