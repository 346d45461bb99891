#include "view/models/models_services.h"

static void addPond(MeshBuilder& builder, float x0, float x1, float z0, float z1) {
    const Vec3 stone = {0.62f, 0.61f, 0.58f};
    const Vec3 water = {0.20f, 0.44f, 0.58f};
    const float rim = 0.2f;
    const float top = YARD + 0.3f;
    addFlatQuad(builder, x0, x1, z0, z1, YARD + 0.1f, water, MATERIAL_PLAIN);
    addPlainBox(builder, {x0, YARD, z0}, {x1, top, z0 + rim}, stone);
    addPlainBox(builder, {x0, YARD, z1 - rim}, {x1, top, z1}, stone);
    addPlainBox(builder, {x0, YARD, z0 + rim}, {x0 + rim, top, z1 - rim}, stone);
    addPlainBox(builder, {x1 - rim, YARD, z0 + rim}, {x1, top, z1 - rim}, stone);

    const Vec3 fountain = {(x0 + x1) / 2.0f, YARD + 0.1f, (z0 + z1) / 2.0f};
    addFrustum(builder, fountain, 0.5f, 0.4f, 0.35f, 8, stone, MATERIAL_PLAIN, 0.0f);
    addFrustum(builder, fountain + Vec3{0.0f, 0.4f, 0.0f}, 0.14f, 1.0f, 0.05f, 6, {0.80f, 0.90f, 0.95f},
               MATERIAL_PLAIN, 0.0f);
}

static void addLampPost(MeshBuilder& builder, const Vec3& foot) {
    addPost(builder, foot, foot.y + 2.6f, 0.12f, STEEL_GREY);
    addPlainBox(builder, foot + Vec3{-0.2f, 2.6f, -0.2f}, foot + Vec3{0.2f, 3.0f, 0.2f}, WARM_LIGHT, 1.0f);
}

static void addParkTree(MeshBuilder& builder, const Vec3& foot, float size, float shape) {
    const Vec3 leaves = mix({0.16f, 0.42f, 0.18f}, {0.30f, 0.54f, 0.22f}, shape);
    const bool rounded = shape >= 0.45f;
    addPost(builder, foot, foot.y + 1.6f * size, 0.4f, {0.40f, 0.28f, 0.18f});
    addFrustum(builder, foot + Vec3{0.0f, 1.6f * size, 0.0f}, 1.5f * size, (rounded ? 2.8f : 4.2f) * size,
               rounded ? 0.4f * size : 0.0f, 7, leaves, MATERIAL_TERRAIN, 0.0f);
}

// Five trees where chance puts them, but none on the pond and its path, nor in the flowers beyond them.
static void addParkTrees(MeshBuilder& builder, const Lot& lot) {
    const uint32_t place = static_cast<uint32_t>(lot.x) * 1024u + static_cast<uint32_t>(lot.z);
    uint32_t drawn = 0;
    const auto draw = [&] { return hash01(place, drawn++, 30); };
    for (int i = 0; i < 5; i++) {
        const float alongX = draw() * 2.0f - 1.0f;
        const float alongZ = draw() * 2.0f - 1.0f;
        const float size = 0.8f + 0.5f * lot.t + 0.3f * draw();
        const float shape = draw();

        const float border = 4.8f - 1.5f * size; // the crown reaches over the lot, but not to the next walls
        const float x = alongX * border;
        float z = alongZ * border;
        const bool onPond = x > -2.4f && x < 2.6f && z > -1.6f && z < 2.0f;
        const bool inFlowers = x > 2.0f && x < 3.8f && z > -0.8f && z < 1.0f;
        if (onPond || inFlowers) z = z > 0.2f ? border : -border;
        addParkTree(builder, {x, YARD, z}, size, shape);
    }
}

void addPark(MeshBuilder& builder, const Lot& lot) {
    addYard(builder, {0.36f, 0.62f, 0.30f}, MATERIAL_TERRAIN);
    addFlatQuad(builder, -3.5f, 3.5f, -3.5f, 3.5f, YARD + 0.02f, {0.40f, 0.68f, 0.34f}, MATERIAL_TERRAIN);
    addFlatQuad(builder, -2.2f, 2.4f, 1.25f, 1.8f, YARD + 0.04f, {0.72f, 0.70f, 0.66f}, MATERIAL_PLAIN);
    addPond(builder, -2.2f, 0.2f, -1.4f, 1.0f);
    addFlatQuad(builder, 0.7f, 2.0f, -0.6f, 0.8f, YARD + 0.04f, {0.85f, 0.30f, 0.38f}, MATERIAL_PLAIN);
    addFlatQuad(builder, 2.2f, 3.6f, -0.6f, 0.8f, YARD + 0.04f, {0.92f, 0.78f, 0.25f}, MATERIAL_PLAIN);
    const float besidePath = 1.08f;
    addBench(builder, {0.9f, YARD, besidePath});
    addLampPost(builder, {-2.0f, YARD, besidePath});
    addLampPost(builder, {2.1f, YARD, besidePath});
    addParkTrees(builder, lot);
}
