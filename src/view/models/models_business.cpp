#include "view/models/models_business.h"

#include <cassert>

// Slopes from the wall at 4.7 down to its outer edge at 4.2.
static void addAwning(MeshBuilder& builder, float hx, float wallZ, const Vec3& colour) {
    const float edgeZ = wallZ + 0.75f;
    const Vec3 slopeNormal = normalised(Vec3{0.0f, 0.75f, 0.5f});
    addQuad(builder, {-hx, 4.2f, edgeZ}, {hx, 4.2f, edgeZ}, {hx, 4.7f, wallZ}, {-hx, 4.7f, wallZ},
            slopeNormal, colour, 0.0f, MATERIAL_PLAIN);
    for (const float side : {-1.0f, 1.0f})
        addTriangle(builder, {side * hx, 4.2f, wallZ}, {side * hx, 4.2f, edgeZ}, {side * hx, 4.7f, wallZ},
                    {side, 0.0f, 0.0f}, colour, 0.0f, MATERIAL_PLAIN);
}

static void addShopFront(MeshBuilder& builder, float hx, float hz, const Vec3& signColour) {
    const float windowEnd = hx - 0.6f;
    addBox(builder, {-windowEnd, 0.8f, hz}, {windowEnd, 3.8f, hz + 0.08f}, {0.60f, 0.72f, 0.78f},
           MATERIAL_GLASS, 0.8f);
    for (int i = 0; i < 4; i++) {
        const float x = windowEnd * (static_cast<float>(i + 1) / 2.5f - 1.0f);
        addPlainBox(builder, {x - 0.07f, 0.8f, hz}, {x + 0.07f, 3.8f, hz + 0.14f}, STEEL_GREY);
    }
    addAwning(builder, hx, hz, signColour);
    addPlainBox(builder, {-0.8f * hx, 4.8f, hz}, {0.8f * hx, 5.7f, hz + 0.2f}, signColour, 0.45f);
}

static void addShopRoofSign(MeshBuilder& builder, float hx, float hz, float roof, const Vec3& signColour) {
    const float signZ = hz - 0.8f;
    addPost(builder, {-0.4f * hx, roof, signZ - 0.1f}, roof + 2.4f, 0.2f, STEEL_GREY);
    addPost(builder, {0.4f * hx, roof, signZ - 0.1f}, roof + 2.4f, 0.2f, STEEL_GREY);
    addPlainBox(builder, {-0.6f * hx, roof + 0.4f, signZ}, {0.6f * hx, roof + 2.6f, signZ + 0.25f},
                signColour, 0.5f);
}

void addShop(MeshBuilder& builder, const Lot& lot) {
    const float hx = lot.halfX;
    const float hz = lot.halfZ;
    const float u = hash01(static_cast<uint32_t>(lot.x), static_cast<uint32_t>(lot.z), 9);
    const Vec3 wall = mix(paletteRow(wallPalette, lot.t), {0.90f, 0.88f, 0.84f}, 0.5f);
    const Vec3& signColour = paletteRow(awningPalette, u);
    const float roof = lot.level == 1 ? 6.5f : 13.0f;

    addBox(builder, {-hx, 0.0f, -hz}, {hx, roof, hz}, wall, MATERIAL_WALL, 0.7f + 0.25f * lot.t);
    addPlainBox(builder, {-hx, roof, hz - 0.2f}, {hx, roof + 0.2f, hz}, TRIM);
    addRooftopUnit(builder, {0.4f, roof, -2.2f}, {2.2f, roof + 1.2f, -0.8f});
    addShopFront(builder, hx, hz, signColour);
    if (lot.level > 1)
        addPlainBox(builder, {-hx - 0.12f, 8.2f, -hz - 0.12f}, {hx + 0.12f, 8.5f, hz + 0.12f}, TRIM);
    if (lot.level > 2) addShopRoofSign(builder, hx, hz, roof, signColour);
}

constexpr Vec3 MULLION = {0.78f, 0.80f, 0.84f};

static void addShaft(MeshBuilder& builder, const Lot& lot, float scale, float bottom, float top,
                     int mullionCount) {
    const float hx = scale * lot.halfX;
    const float hz = scale * lot.halfZ;
    const Vec3 glass = {0.42f + 0.10f * lot.t, 0.56f + 0.06f * lot.t, 0.68f};
    addBox(builder, {-hx, bottom, -hz}, {hx, top, hz}, glass, MATERIAL_GLASS, 0.85f + 0.15f * lot.t);
    addWallMullions(builder, hx, hz, bottom, top, mullionCount, MULLION);
}

static void addOfficeRoof(MeshBuilder& builder, const Lot& lot, float scale, float bottom, float top) {
    const float hx = scale * lot.halfX + 0.14f; // over the mullions
    const float hz = scale * lot.halfZ + 0.14f;
    addBox(builder, {-hx, bottom, -hz}, {hx, top, hz}, STEEL_GREY, MATERIAL_ROOF, 0.0f);
}

static void addLowOffice(MeshBuilder& builder, const Lot& lot) {
    const float hx = lot.halfX;
    const float hz = lot.halfZ;
    const float shaft = 0.94f; // leaves a ledge, so that the podium reads as one
    addBox(builder, {-hx, 0.0f, -hz}, {hx, 3.0f, hz}, paletteRow(wallPalette, lot.t), MATERIAL_WALL, 0.8f);
    addBox(builder, {-0.6f * hx, 0.0f, hz}, {0.6f * hx, 2.9f, hz + 0.08f}, LIT_GLASS, MATERIAL_GLASS, 0.8f);
    addPlainBox(builder, {-0.7f * hx, 2.9f, hz}, {0.7f * hx, 3.2f, hz + 0.75f}, {0.30f, 0.32f, 0.36f});
    addShaft(builder, lot, shaft, 3.0f, 20.0f, 3);
    addOfficeRoof(builder, lot, shaft, 20.0f, 20.6f);
    addRooftopUnit(builder, {-1.2f, 20.6f, -0.9f}, {1.0f, 21.8f, 0.7f});
    addWarningLamp(builder, {0.0f, 21.8f, 0.0f});
}

static void addMiddleOffice(MeshBuilder& builder, const Lot& lot) {
    addShaft(builder, lot, 1.0f, 0.0f, 14.0f, 4);
    addShaft(builder, lot, 0.66f, 14.0f, 38.0f, 3);
    addOfficeRoof(builder, lot, 0.66f, 38.0f, 38.6f);
    addPlainBox(builder, {-1.0f, 38.6f, -0.6f}, {1.0f, 40.0f, 0.6f}, {0.74f, 0.75f, 0.77f});
    addWarningLamp(builder, {0.0f, 40.0f, 0.0f});
}

static void addHighOffice(MeshBuilder& builder, const Lot& lot) {
    addShaft(builder, lot, 1.0f, 0.0f, 30.0f, 4);
    addShaft(builder, lot, 0.7f, 30.0f, 62.0f, 3);
    addOfficeRoof(builder, lot, 0.7f, 62.0f, 62.8f);
    addFrustum(builder, {0.0f, 62.8f, 0.0f}, 0.35f, 9.0f, 0.05f, 6, STEEL_GREY, MATERIAL_PLAIN, 0.0f);
    addWarningLamp(builder, {0.0f, 71.8f, 0.0f});
}

void addOfficeTower(MeshBuilder& builder, const Lot& lot) {
    assert(lot.level >= 1 && lot.level <= 3);
    if (lot.level == 1) return addLowOffice(builder, lot);
    if (lot.level == 2) return addMiddleOffice(builder, lot);
    addHighOffice(builder, lot);
}

static void addFactoryHalls(MeshBuilder& builder, float hx, float hz, const Vec3& wall, float glow) {
    const Vec3 roof = {0.42f, 0.44f, 0.47f};
    const float back = -0.9f * hz;
    const float front = 0.1f * hz;
    addGabledBox(builder, {-hx, 0.0f, back}, {0.2f * hx, 6.0f, front}, 1.6f, wall, roof, glow);
    addGabledBox(builder, {-0.2f * hx, 0.0f, back}, {hx, 6.0f, front}, 2.4f, wall, roof, glow);

    const Vec3 serviceWall = mix(wall, WHITE, 0.25f);
    const float stepX = 0.16f * hx;
    addBox(builder, {stepX - 0.4f * hx, 0.0f, front}, {stepX, 3.2f, 0.52f * hz}, serviceWall, MATERIAL_WALL,
           glow);
    addBox(builder, {stepX, 0.0f, front}, {stepX + 0.3f * hx, 2.8f, 0.4f * hz}, serviceWall, MATERIAL_WALL,
           glow);
}

static void addFactoryChimney(MeshBuilder& builder, float hx, float hz, float top) {
    const Vec3 foot = {0.6f * hx, 0.0f, -0.5f * hz};
    addFrustum(builder, foot, 0.85f, top, 0.55f, 8, {0.62f, 0.46f, 0.40f}, MATERIAL_PLAIN, 0.0f);
    addFrustum(builder, foot + Vec3{0.0f, top - 1.1f, 0.0f}, 0.66f, 0.5f, 0.66f, 8, WARNING_RED,
               MATERIAL_PLAIN, 1.0f);
}

// The second tank, the tall stack, and the pipes that lead over the halls to the chimney.
static void addFactoryExtension(MeshBuilder& builder, float hx, float hz) {
    const Vec3 stack = {-0.85f * hx, 0.0f, -0.7f * hz};
    const float chimneyX = 0.6f * hx;
    addTank(builder, {0.55f * hx, 0.0f, 0.8f * hz}, 0.18f * hz, 8.0f, 0.5f, 14, {0.70f, 0.72f, 0.74f});
    addFrustum(builder, stack, 0.5f, 32.0f, 0.35f, 8, {0.55f, 0.55f, 0.57f}, MATERIAL_PLAIN, 0.0f);
    addWarningLamp(builder, stack + Vec3{0.0f, 32.0f, 0.0f});
    addPlainBox(builder, {stack.x, 9.0f, stack.z - 0.1f}, {chimneyX, 9.5f, stack.z + 0.4f}, STEEL_GREY);
}

void addFactory(MeshBuilder& builder, const Lot& lot) {
    const float hx = lot.halfX;
    const float hz = lot.halfZ;
    const Vec3 wall = mix({0.60f, 0.62f, 0.64f}, {0.76f, 0.72f, 0.66f}, lot.t);

    addFactoryHalls(builder, hx, hz, wall, 0.35f + 0.3f * lot.t);
    addYard(builder, {0.52f, 0.51f, 0.49f}, MATERIAL_PLAIN);
    addFactoryChimney(builder, hx, hz, 22.0f + 2.0f * static_cast<float>(lot.level));
    if (lot.level >= 2)
        addTank(builder, {-0.6f * hx, 0.0f, 0.55f * hz}, 0.38f * hz, 13.0f, 0.7f, 12, {0.80f, 0.80f, 0.78f});
    if (lot.level >= 3) addFactoryExtension(builder, hx, hz);
}
