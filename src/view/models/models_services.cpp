#include "view/models/models_services.h"

constexpr Vec3 DARK_DOOR = {0.18f, 0.19f, 0.21f};

static void addPoliceRoof(MeshBuilder& builder, float hx, float hz, float roof) {
    addPlainBox(builder, {-hx + 0.1f, roof, -hz + 0.1f}, {hx - 0.1f, roof + 0.3f, hz - 0.1f},
                {0.20f, 0.22f, 0.26f});
    addPlainBox(builder, {-1.6f, roof + 0.3f, -0.4f}, {1.6f, 7.1f, 1.8f}, {0.40f, 0.42f, 0.46f});

    // Light bar, towards the street.
    addPlainBox(builder, {-0.9f, 7.1f, 1.2f}, {0.9f, 7.3f, 1.5f}, STEEL_GREY);
    addPlainBox(builder, {-0.8f, 7.3f, 1.15f}, {-0.1f, 7.65f, 1.55f}, {1.0f, 0.15f, 0.12f}, 1.0f);
    addPlainBox(builder, {0.1f, 7.3f, 1.15f}, {0.8f, 7.65f, 1.55f}, {0.15f, 0.35f, 1.0f}, 1.0f);
    addFlag(builder, {-2.6f, roof + 0.3f, -1.8f}, 12.0f);
}

void addPoliceStation(MeshBuilder& builder, const Lot&) {
    const float hx = 3.2f;
    const float hz = 2.88f;
    const float roof = 6.4f;
    addBox(builder, {-hx, 0.0f, -hz}, {hx, roof, hz}, {0.92f, 0.94f, 0.96f}, MATERIAL_WALL, 0.85f);
    addPlainBox(builder, {-hx - 0.06f, 1.4f, hz - 1.2f}, {hx + 0.06f, 2.2f, hz + 0.06f},
                {0.10f, 0.30f, 0.80f});
    addPlainBox(builder, {-2.24f, 4.4f, hz}, {2.24f, 5.4f, hz + 0.15f}, {0.10f, 0.18f, 0.40f}, 0.5f);
    addPlainBox(builder, {-0.9f, 0.0f, hz}, {0.9f, 2.6f, hz + 0.12f}, {0.30f, 0.36f, 0.44f}, 0.7f);
    addPoliceRoof(builder, hx, hz, roof);
}

static void addGarageBay(MeshBuilder& builder, float centreX, float halfWidth, float wallZ) {
    const float outer = halfWidth + 0.15f;
    const float frameZ = wallZ + 0.2f;
    addPlainBox(builder, {centreX - halfWidth, 0.0f, wallZ}, {centreX + halfWidth, 3.8f, wallZ + 0.08f},
                DARK_DOOR);
    addPlainBox(builder, {centreX - outer, 0.0f, wallZ}, {centreX - halfWidth, 3.8f, frameZ}, PALE_TRIM);
    addPlainBox(builder, {centreX + halfWidth, 0.0f, wallZ}, {centreX + outer, 3.8f, frameZ}, PALE_TRIM);
    addPlainBox(builder, {centreX - outer, 3.8f, wallZ}, {centreX + outer, 4.0f, frameZ}, PALE_TRIM);
    addPlainBox(builder, {centreX - halfWidth, 0.0f, wallZ}, {centreX + halfWidth, 0.75f, frameZ}, PALE_TRIM);
}

void addFireStation(MeshBuilder& builder, const Lot&) {
    const float hx = 3.2f;
    const float hz = 2.88f;
    const float roof = 7.0f;
    const Vec3 brick = {0.76f, 0.28f, 0.22f};
    addBox(builder, {-hx, 0.0f, -hz}, {hx, roof, hz}, brick, MATERIAL_WALL, 0.8f);
    addBox(builder, {-hx - 0.1f, roof, -hz - 0.1f}, {hx + 0.1f, roof + 0.3f, hz + 0.1f},
           {0.36f, 0.36f, 0.38f}, MATERIAL_ROOF, 0.0f);
    addPlainBox(builder, {-2.56f, 4.4f, hz}, {2.56f, 5.2f, hz + 0.15f}, {0.95f, 0.92f, 0.84f}, 0.5f);
    addGarageBay(builder, -1.5f, 1.2f, hz);
    addGarageBay(builder, 1.5f, 1.2f, hz);
    addWarningLamp(builder, {-1.92f, roof + 0.3f, 0.0f});

    // Hose tower at the front corner.
    const Vec3 tower = {2.64f, 0.0f, 2.32f};
    addBox(builder, {2.24f, roof, 1.92f}, {3.04f, 13.0f, 2.72f}, brick, MATERIAL_WALL, 0.8f);
    addFrustum(builder, tower + Vec3{0.0f, 13.0f, 0.0f}, 0.45f, 2.6f, 0.0f, 8, {0.30f, 0.30f, 0.33f},
               MATERIAL_ROOF, 0.0f);
    addWarningLamp(builder, tower + Vec3{0.0f, 15.56f, 0.0f});
}

static void addHelipad(MeshBuilder& builder, const Vec3& centre) {
    const float top = 0.15f;
    const float letter = top + 0.05f;
    addFrustum(builder, centre, 1.8f, top, 1.8f, 16, {0.32f, 0.34f, 0.37f}, MATERIAL_PLAIN, 0.0f);
    addPlainBox(builder, centre + Vec3{-0.85f, top, -1.0f}, centre + Vec3{-0.5f, letter, 1.0f}, PALE_TRIM);
    addPlainBox(builder, centre + Vec3{0.5f, top, -1.0f}, centre + Vec3{0.85f, letter, 1.0f}, PALE_TRIM);
    addPlainBox(builder, centre + Vec3{-0.5f, top, -0.18f}, centre + Vec3{0.5f, letter, 0.18f}, PALE_TRIM);
}

void addHospital(MeshBuilder& builder, const Lot&) {
    const float hx = 3.36f;
    const float hz = 3.2f;
    const float wallTop = 10.0f;
    const float roof = 10.4f;
    addBox(builder, {-hx, 0.0f, -hz}, {hx, wallTop, hz}, {0.93f, 0.95f, 0.95f}, MATERIAL_WALL, 0.85f);
    addBox(builder, {-hx - 0.1f, wallTop, -hz - 0.1f}, {hx + 0.1f, roof, hz + 0.1f}, {0.66f, 0.69f, 0.71f},
           MATERIAL_ROOF, 0.0f);

    const Vec3 red = {0.86f, 0.13f, 0.13f};
    addPlainBox(builder, {-1.3f, 7.5f, hz}, {1.3f, 8.5f, hz + 0.15f}, red, 0.6f);
    addPlainBox(builder, {-0.5f, 6.7f, hz}, {0.5f, 9.3f, hz + 0.15f}, red, 0.6f);
    addBox(builder, {-1.8f, 0.0f, hz}, {1.8f, 3.9f, hz + 0.1f}, LIT_GLASS, MATERIAL_GLASS, 0.8f);
    addPlainBox(builder, {-2.1f, 3.4f, hz}, {2.1f, 3.65f, hz + 0.8f}, PALE_TRIM);

    addHelipad(builder, {-1.2f, roof, 0.9f});
    addRooftopUnit(builder, {-0.6f, roof, -2.6f}, {1.2f, roof + 1.1f, -1.5f});
    addPlainBox(builder, {2.0f, roof, -2.4f}, {2.9f, 12.0f, -0.6f}, PALE_TRIM);
    addWarningLamp(builder, {2.45f, 12.0f, -1.5f});
}

static void addClock(MeshBuilder& builder, float centreX, float wallZ) {
    const Vec3 dark = {0.12f, 0.12f, 0.12f};
    const float y = 12.6f;
    const float faceZ = wallZ + 0.05f;
    const float handZ = wallZ + 0.1f;
    addQuad(builder, {centreX - 0.65f, y - 0.65f, faceZ}, {centreX + 0.65f, y - 0.65f, faceZ},
            {centreX + 0.65f, y + 0.65f, faceZ}, {centreX - 0.65f, y + 0.65f, faceZ}, {0.0f, 0.0f, 1.0f},
            {0.97f, 0.97f, 0.95f}, 0.5f, MATERIAL_PLAIN);
    addPlainBox(builder, {centreX - 0.05f, y, faceZ}, {centreX + 0.05f, y + 0.5f, handZ}, dark);
    addPlainBox(builder, {centreX, y - 0.05f, faceZ}, {centreX + 0.35f, y + 0.05f, handZ}, dark);
}

static void addSchoolYard(MeshBuilder& builder) {
    addYard(builder, {0.40f, 0.64f, 0.32f}, MATERIAL_TERRAIN);
    addFlatQuad(builder, -3.2f, 0.9f, 0.9f, 3.4f, YARD + 0.04f, {0.86f, 0.78f, 0.58f}, MATERIAL_PLAIN);
    addFence(builder, {-3.7f, 0.0f, 3.8f}, {1.2f, 0.0f, 3.8f}, 1.5f, PALE_TRIM);
    addFlag(builder, {2.3f, 0.0f, 2.9f}, 9.0f);
}

void addSchool(MeshBuilder& builder, const Lot&) {
    const float hx = 3.6f;
    const float back = -3.6f;
    const float front = 0.2f;
    addBox(builder, {-hx, 0.0f, back}, {hx, 7.5f, front}, {0.90f, 0.76f, 0.46f}, MATERIAL_WALL, 0.8f);
    addBox(builder, {-hx - 0.1f, 7.5f, back - 0.1f}, {hx + 0.1f, 8.0f, front + 0.1f}, {0.42f, 0.30f, 0.24f},
           MATERIAL_ROOF, 0.0f);
    addPlainBox(builder, {-1.6f, 0.0f, front}, {-0.2f, 2.7f, front + 0.1f}, DARK_WOOD);

    // Clock tower, half before the main block.
    const float towerX = 2.2f;
    const float towerFront = 1.1f;
    addBox(builder, {towerX - 0.95f, 0.0f, towerFront - 1.9f}, {towerX + 0.95f, 16.0f, towerFront},
           {0.92f, 0.80f, 0.52f}, MATERIAL_WALL, 0.8f);
    addFrustum(builder, {towerX, 16.0f, towerFront - 0.95f}, 1.35f, 2.6f, 0.0f, 8, {0.48f, 0.20f, 0.16f},
               MATERIAL_ROOF, 0.0f);
    addClock(builder, towerX, towerFront);
    addSchoolYard(builder);
}

static void addDepotBay(MeshBuilder& builder, float centreX, float wallZ) {
    const float half = 0.85f;
    addPlainBox(builder, {centreX - half, 0.0f, wallZ}, {centreX + half, 3.2f, wallZ + 0.08f}, DARK_DOOR);
    for (int i = 0; i < 4; i++) {
        const float y = 0.9f + 0.6f * static_cast<float>(i);
        addPlainBox(builder, {centreX - half, y, wallZ}, {centreX + half, y + 0.3f, wallZ + 0.15f},
                    {0.62f, 0.64f, 0.66f});
    }
}

void addBusDepot(MeshBuilder& builder, const Lot&) {
    const float half = 3.2f;
    const float front = 1.0f;
    const float roof = 4.6f;
    const Vec3 busYellow = {0.96f, 0.74f, 0.16f};
    addBox(builder, {-half, 0.0f, -half}, {half, roof, front}, {0.72f, 0.76f, 0.80f}, MATERIAL_WALL, 0.6f);
    addBox(builder, {-half, roof, -half}, {half, roof + 0.35f, front + 0.25f}, {0.28f, 0.34f, 0.42f},
           MATERIAL_ROOF, 0.0f);
    addRooftopUnit(builder, {-2.4f, roof + 0.35f, -2.4f}, {-0.8f, roof + 1.25f, -1.2f});
    for (const float x : {-2.1f, 0.0f, 2.1f}) addDepotBay(builder, x, front);
    addPlainBox(builder, {-2.2f, 3.5f, front}, {2.2f, 4.3f, front + 0.15f}, busYellow, 0.5f);

    // Forecourt with the line board and the timetable under it.
    addFlatQuad(builder, -half, half, front, half, YARD, {0.30f, 0.31f, 0.33f}, MATERIAL_PLAIN);
    addPost(builder, {2.85f, 0.0f, 2.8f}, 4.2f, 0.16f, STEEL_GREY);
    addPlainBox(builder, {2.5f, 3.3f, 2.88f}, {3.2f, 4.1f, 3.0f}, {0.20f, 0.48f, 0.85f}, 0.6f);
    addPlainBox(builder, {2.55f, 1.8f, 2.88f}, {3.15f, 2.9f, 3.0f}, PALE_TRIM, 0.4f);
}
