#include "view/models/models_utilities.h"

#include <cmath>

static void addStorageTank(MeshBuilder& builder, const Vec3& foot, float radius, float height,
                           const Vec3& colour) {
    addFrustum(builder, foot, radius, height, radius, 16, colour, MATERIAL_PLAIN, 0.0f);
    addFrustum(builder, foot + Vec3{0.0f, 1.0f, 0.0f}, radius * 1.04f, 0.3f, radius * 1.04f, 16,
               colour * 0.8f, MATERIAL_PLAIN, 0.0f);
    addFrustum(builder, foot + Vec3{0.0f, height, 0.0f}, radius * 1.04f, 0.35f, 0.0f, 16, colour * 0.9f,
               MATERIAL_PLAIN, 0.0f);
}

static void addGasStack(MeshBuilder& builder, const Vec3& foot) {
    addFrustum(builder, foot, 0.6f, 24.0f, 0.45f, 10, {0.50f, 0.48f, 0.46f}, MATERIAL_PLAIN, 0.0f);
    addFrustum(builder, foot + Vec3{0.0f, 24.0f, 0.0f}, 0.5f, 1.2f, 0.5f, 10, {1.0f, 0.60f, 0.20f},
               MATERIAL_PLAIN, 0.0f);
}

// One pipe past the tanks, and one from it to each stack.
static void addGasPipes(MeshBuilder& builder, float leftStackX, float rightStackX, float stackZ) {
    const Vec3 rust = {0.60f, 0.35f, 0.25f};
    const float bottom = GROUND + 1.6f;
    const float top = GROUND + 1.9f;
    const float z = -0.35f;
    addPlainBox(builder, {-3.3f, bottom, z}, {3.3f, top, z + 0.3f}, rust);
    for (const float x : {leftStackX, rightStackX})
        addPlainBox(builder, {x - 0.15f, bottom, z + 0.3f}, {x + 0.15f, top, stackZ}, rust);
}

void addGasPlant(MeshBuilder& builder, const Lot&) {
    const float stackZ = 2.7f;
    addStorageTank(builder, {-2.0f, 0.0f, -2.0f}, 1.75f, 7.5f, {0.82f, 0.84f, 0.86f});
    addStorageTank(builder, {1.3f, 0.0f, -1.8f}, 1.5f, 6.0f, {0.78f, 0.80f, 0.84f});
    addStorageTank(builder, {1.9f, 0.0f, 1.7f}, 1.8f, 9.0f, {0.70f, 0.72f, 0.76f});
    addGasPipes(builder, -3.0f, -1.0f, stackZ);
    addPlainBox(builder, {2.9f, 0.0f, -3.5f}, {3.6f, GROUND + 1.8f, -2.6f}, {0.55f, 0.55f, 0.58f});
    addGasStack(builder, {-1.0f, 0.0f, stackZ});
    addGasStack(builder, {-3.0f, 0.0f, stackZ});
    addLotFence(builder, STEEL_GREY);
}

// One quad, because the shader draws the cells from its texture coordinates.
static void addSolarPanel(MeshBuilder& builder, float x, float z) {
    const float low = GROUND + 1.2f;
    const float high = GROUND + 3.0f;
    const Vec3 normal = normalised(Vec3{0.0f, 1.4f, -1.8f});
    addPlainBox(builder, {x + 0.7f, GROUND, z}, {x + 0.8f, low, z + 0.12f}, STEEL_GREY);
    addQuad(builder, {x, low, z}, {x + 1.5f, low, z}, {x + 1.5f, high, z + 1.4f}, {x, high, z + 1.4f}, normal,
            WHITE, 0.0f, MATERIAL_SOLAR_PANEL);
}

void addSolarFarm(MeshBuilder& builder, const Lot&) {
    for (int row = 0; row < 3; row++)
        for (int column = 0; column < 4; column++)
            addSolarPanel(builder, -3.0f + 1.7f * static_cast<float>(column),
                          -2.2f + 1.8f * static_cast<float>(row));
    addPlainBox(builder, {3.0f, GROUND, -3.6f}, {3.7f, GROUND + 1.6f, -2.9f}, {0.85f, 0.86f, 0.88f});
}

// A platform around the tower at half its height, with eight railing posts.
static void addServiceRing(MeshBuilder& builder, const Vec3& colour) {
    addFrustum(builder, {0.0f, 14.0f, 0.0f}, 1.25f, 0.18f, 1.25f, 12, colour, MATERIAL_PLAIN, 0.0f);
    for (int i = 0; i < 8; i++) {
        const float angle = static_cast<float>(i) * 6.2831855f / 8.0f;
        addPost(builder, {1.15f * std::cos(angle), 14.18f, 1.15f * std::sin(angle)}, 15.2f, 0.1f, STEEL_GREY);
    }
}

// Thin towards its tip; in the plane of the rotor, `angle` from straight up.
static void addBlade(MeshBuilder& builder, const Vec3& hub, float angle) {
    const Vec3 outward = {std::sin(angle), std::cos(angle), 0.0f};
    const Vec3 across = {std::cos(angle), -std::sin(angle), 0.0f};
    const Vec3 tip = hub + outward * 9.5f;
    addQuad(builder, hub - across * 0.45f, hub + across * 0.45f, tip + across * 0.12f, tip - across * 0.12f,
            {0.0f, 0.0f, 1.0f}, {0.95f, 0.95f, 0.96f}, 0.0f, MATERIAL_PLAIN);
}

void addWindTurbine(MeshBuilder& builder, const Lot& lot) {
    const Vec3 white = {0.90f, 0.91f, 0.93f};
    addPlainBox(builder, {-1.6f, 0.0f, -1.6f}, {1.6f, GROUND + 0.25f, 1.6f}, CONCRETE);
    addPlainBox(builder, {1.8f, GROUND, 0.4f}, {2.8f, GROUND + 1.3f, 1.4f}, {0.55f, 0.60f, 0.58f});
    addFrustum(builder, {0.0f, GROUND, 0.0f}, 0.95f, 28.0f - GROUND, 0.5f, 12, white, MATERIAL_PLAIN, 0.0f);
    addServiceRing(builder, white);

    addPlainBox(builder, {-0.6f, 28.0f, -1.7f}, {0.6f, 29.2f, 0.9f}, white);
    addPlainBox(builder, {-0.4f, 28.2f, 0.9f}, {0.4f, 29.0f, 1.4f}, STEEL_GREY);
    for (int i = 0; i < 3; i++)
        addBlade(builder, {0.0f, 28.6f, 1.3f}, static_cast<float>(i) * 2.0943952f + lot.t * 6.2831855f);
}

void addWaterPump(MeshBuilder& builder, const Lot&) {
    const Vec3 blue = {0.30f, 0.48f, 0.62f};
    const Vec3 tank = {1.5f, 0.0f, -1.2f};

    // Pump house.
    addBox(builder, {-2.9f, 0.0f, -0.8f}, {-0.1f, 3.6f, 2.2f}, {0.80f, 0.82f, 0.84f}, MATERIAL_WALL, 0.7f);
    addBox(builder, {-3.05f, 3.6f, -0.95f}, {0.05f, 3.9f, 2.35f}, {0.30f, 0.36f, 0.44f}, MATERIAL_ROOF, 0.0f);
    addPlainBox(builder, {-1.95f, 0.0f, 2.2f}, {-1.05f, 2.5f, 2.28f}, STEEL_GREY);
    addPlainBox(builder, {-1.65f, 2.9f, 2.2f}, {-1.35f, 3.2f, 2.45f}, WARM_LIGHT, 1.0f);

    addFrustum(builder, tank, 1.6f, 12.8f, 1.6f, 14, {0.72f, 0.78f, 0.82f}, MATERIAL_PLAIN, 0.0f);
    addFrustum(builder, tank + Vec3{0.0f, 12.8f, 0.0f}, 1.7f, 1.2f, 0.0f, 14, blue, MATERIAL_ROOF, 0.0f);

    // Pipes from the tank to the house and to the front, where they go into the ground.
    addPlainBox(builder, {-1.6f, 1.0f, -1.5f}, {0.2f, 1.7f, -0.9f}, blue);
    addPlainBox(builder, {-1.6f, 1.0f, -0.9f}, {-1.0f, 1.7f, -0.8f}, blue);
    addPlainBox(builder, {1.2f, 1.0f, 0.2f}, {1.8f, 1.7f, 2.6f}, blue);
    addPlainBox(builder, {1.1f, 0.0f, 2.6f}, {1.9f, 1.8f, 3.2f}, blue);
}
