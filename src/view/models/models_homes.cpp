#include "view/models/models_homes.h"

void addHouse(MeshBuilder& builder, const Lot& lot) {
    const float hx = lot.halfX;
    const float hz = lot.halfZ;
    const float u = hash01(static_cast<uint32_t>(lot.x * 7.0f), static_cast<uint32_t>(lot.z * 7.0f), 3);
    const Vec3 wall = paletteRow(wallPalette, lot.t);
    const Vec3 roof = paletteRow(roofPalette, u);
    const float glow = 0.6f + 0.3f * lot.t;

    // Body and chimney.
    addGabledBox(builder, {-hx, 0.0f, -hz}, {0.85f * hx, 4.8f, hz}, 2.8f, wall, roof, glow);
    const Vec3 chimney = {0.35f * hx, 0.0f, -0.4f * hz};
    addPlainBox(builder, chimney + Vec3{-0.35f, 5.3f, -0.35f}, chimney + Vec3{0.35f, 7.88f, 0.35f},
                mix(wall, {0.55f, 0.30f, 0.24f}, 0.6f));
    addPlainBox(builder, chimney + Vec3{-0.45f, 7.88f, -0.45f}, chimney + Vec3{0.45f, 8.08f, 0.45f},
                {0.35f, 0.35f, 0.37f});

    // Side wing with its flat roof and its door.
    addBox(builder, {0.85f * hx, 0.0f, -0.6f * hz}, {hx + 0.2f, 3.0f, 0.2f * hz}, mix(wall, WHITE, 0.2f),
           MATERIAL_WALL, glow / 2.0f);
    addBox(builder, {0.85f * hx - 0.1f, 3.0f, -0.7f * hz}, {hx + 0.3f, 3.3f, 0.3f * hz}, roof, MATERIAL_ROOF,
           0.0f);
    addPlainBox(builder, {0.85f * hx + 0.08f, 0.15f, 0.2f * hz}, {hx + 0.12f, 2.6f, 0.2f * hz + 0.08f},
                {0.22f, 0.22f, 0.25f});

    // Front door under its porch.
    const float doorX = 0.1f * hx;
    const float porchZ = hz + 0.75f;
    addPlainBox(builder, {doorX - 0.45f, 0.0f, hz}, {doorX + 0.45f, 2.3f, hz + 0.08f}, DARK_WOOD);
    addPlainBox(builder, {doorX - 0.9f, 2.5f, hz}, {doorX + 0.9f, 2.7f, porchZ}, PALE_TRIM);
    addPost(builder, {doorX - 0.8f, 0.0f, porchZ - 0.1f}, 2.5f, 0.14f, PALE_TRIM);
    addPost(builder, {doorX + 0.8f, 0.0f, porchZ - 0.1f}, 2.5f, 0.14f, PALE_TRIM);

    // Lawn, path and hedge.
    addYard(builder, {0.42f, 0.66f, 0.32f}, MATERIAL_TERRAIN);
    addFlatQuad(builder, doorX - 0.45f, doorX + 0.45f, hz, 4.0f, YARD + 0.04f, {0.70f, 0.70f, 0.68f},
                MATERIAL_PLAIN);
    addBox(builder, {-3.9f, GROUND, -2.6f}, {-3.45f, GROUND + 0.8f, 2.2f}, {0.20f, 0.46f, 0.22f},
           MATERIAL_TERRAIN, 0.0f);
}

void addApartmentBlock(MeshBuilder& builder, const Lot& lot) {
    const float hx = lot.halfX;
    const float hz = lot.halfZ;
    const Vec3 wall = paletteRow(wallPalette, lot.t);
    const Vec3 trim = mix(wall, WHITE, 0.35f);
    const float bodyTop = 10.0f;
    const float corniceTop = bodyTop + 0.45f;
    const float roofTop = corniceTop + 0.15f;

    addBox(builder, {-hx, 0.0f, -hz}, {hx, bodyTop, hz}, wall, MATERIAL_WALL, 0.7f + 0.25f * lot.t);
    addPlainBox(builder, {-hx - 0.2f, bodyTop, -hz - 0.2f}, {hx + 0.2f, corniceTop, hz + 0.2f}, trim);
    addBox(builder, {-hx - 0.05f, corniceTop, -hz - 0.05f}, {hx + 0.05f, roofTop, hz + 0.05f},
           {0.45f, 0.45f, 0.47f}, MATERIAL_ROOF, 0.0f);
    addParapet(builder, hx + 0.1f, hz + 0.1f, corniceTop, 0.9f, trim);
    addRoofTank(builder, {1.12f, roofTop, -0.96f}, 0.8f, 1.6f);

    addPlainBox(builder, {-0.45f, 0.0f, hz}, {0.45f, 2.2f, hz + 0.08f}, DARK_WOOD);
    addBalcony(builder, 2.24f, hz, 0.8f, 3.3f, balconyPalette[1]);
    addBalcony(builder, 2.24f, hz, 0.8f, 6.6f, balconyPalette[2]);
}

static void addTowerRoof(MeshBuilder& builder, float hx, float hz, float bodyTop) {
    const float capTop = bodyTop + 0.7f;
    const float roofTop = capTop + 0.15f;
    addPlainBox(builder, {-hx - 0.4f, bodyTop, -hz - 0.4f}, {hx + 0.4f, capTop, hz + 0.4f}, TRIM);
    addBox(builder, {-hx, capTop, -hz}, {hx, roofTop, hz}, {0.40f, 0.40f, 0.42f}, MATERIAL_ROOF, 0.0f);
    addParapet(builder, hx + 0.15f, hz + 0.15f, capTop, 0.7f, TRIM);

    addRooftopUnit(builder, {-2.6f, roofTop, 0.9f}, {-1.2f, roofTop + 1.0f, 2.0f});
    addRooftopUnit(builder, {-0.8f, roofTop, 0.9f}, {0.4f, roofTop + 1.0f, 2.0f});
    addRoofTank(builder, {-1.5f, roofTop, -1.5f}, 1.0f, 2.0f);
    addBox(builder, {0.35f * hx, roofTop, 0.1f * hz}, {0.95f * hx, roofTop + 3.0f, 0.75f * hz}, TRIM,
           MATERIAL_PLAIN, 0.0f);
    const Vec3 mast = {0.7f * hx, roofTop, -0.55f * hz};
    addPost(builder, mast, roofTop + 5.0f, 0.16f, STEEL_GREY);
    addWarningLamp(builder, mast + Vec3{0.0f, 5.0f, 0.0f});
}

void addResidentialTower(MeshBuilder& builder, const Lot& lot) {
    const float hx = lot.halfX;
    const float hz = lot.halfZ;
    const Vec3 wall = mix(paletteRow(wallPalette, lot.t), {0.90f, 0.90f, 0.88f}, 0.4f);
    const float bodyTop = 21.0f;

    addBox(builder, {-hx, 0.0f, -hz}, {hx, bodyTop, hz}, wall, MATERIAL_WALL, 0.75f + 0.2f * lot.t);
    addPlainBox(builder, {-hx, 0.0f, hz}, {-hx + 0.45f, bodyTop, hz + 0.25f}, TRIM);
    addPlainBox(builder, {hx - 0.45f, 0.0f, hz}, {hx, bodyTop, hz + 0.25f}, TRIM);
    addTowerRoof(builder, hx, hz, bodyTop);

    for (int floor = 2; floor <= 6; floor++)
        addBalcony(builder, 0.42f * hx, hz, 0.8f, 3.2f * static_cast<float>(floor),
                   balconyPalette[floor % 3]);

    addBox(builder, {-0.45f * hx, 0.0f, hz}, {0.45f * hx, 3.0f, hz + 0.1f}, LIT_GLASS, MATERIAL_GLASS, 0.8f);
    addPlainBox(builder, {-0.6f * hx, 3.0f, hz}, {0.6f * hx, 3.3f, hz + 0.7f}, {0.30f, 0.32f, 0.36f});
}
