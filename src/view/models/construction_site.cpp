#include "view/models/construction_site.h"

#include "view/models/building_parts.h"

#include <algorithm>
#include <cassert>

constexpr Vec3 CRANE_YELLOW = {0.95f, 0.80f, 0.15f};
constexpr float REBAR_HEIGHT = 1.1f; // over the core

// Four thin boxes around the core, their upper edge at `top`.
static void addFloorRing(MeshBuilder& builder, float halfX, float halfZ, float top) {
    const Vec3 brown = {0.58f, 0.44f, 0.27f};
    const float outerX = halfX + 0.15f;
    const float outerZ = halfZ + 0.15f;
    const float bottom = top - 0.25f;
    addPlainBox(builder, {-outerX, bottom, halfZ}, {outerX, top, outerZ}, brown);
    addPlainBox(builder, {-outerX, bottom, -outerZ}, {outerX, top, -halfZ}, brown);
    addPlainBox(builder, {-outerX, bottom, -halfZ}, {-halfX, top, halfZ}, brown);
    addPlainBox(builder, {halfX, bottom, -halfZ}, {outerX, top, halfZ}, brown);
}

static void addCore(MeshBuilder& builder, float halfX, float halfZ, float finalHeight, float coreTop) {
    addPlainBox(builder, {-halfX, -0.4f, -halfZ}, {halfX, coreTop, halfZ}, CONCRETE);
    for (const float x : {-halfX + 0.3f, halfX - 0.3f})
        for (const float z : {-halfZ + 0.3f, halfZ - 0.3f})
            addPost(builder, {x, coreTop, z}, coreTop + REBAR_HEIGHT, 0.16f, STEEL_GREY);

    const float floorHeight = std::max(finalHeight * 0.125f, 3.2f);
    for (int floor = 1; static_cast<float>(floor) * floorHeight < coreTop - 0.6f; floor++)
        addFloorRing(builder, halfX, halfZ, static_cast<float>(floor) * floorHeight);
    addFloorRing(builder, halfX, halfZ, coreTop);
}

static void addScaffold(MeshBuilder& builder, float halfX, float halfZ, float finalHeight) {
    for (const float x : {-halfX - 0.5f, halfX + 0.5f})
        for (const float z : {-halfZ - 0.5f, halfZ + 0.5f})
            addPost(builder, {x, -0.5f, z}, finalHeight, 0.2f, STEEL_GREY);
}

// A flat bar from `start` to `end`, 0.14 high.
static void addLatticeBar(MeshBuilder& builder, const Vec3& start, const Vec3& end, const Vec3& normal) {
    const Vec3 thickness = {0.0f, 0.14f, 0.0f};
    addQuad(builder, start - thickness, end - thickness, end, start, normal, CRANE_YELLOW, 0.0f,
            MATERIAL_PLAIN);
}

// Around the vertical axis. Each section has a bar and a diagonal on its four sides.
static void addMast(MeshBuilder& builder, float top) {
    const float half = 0.35f;
    const Vec3 corners[4] = {{-half, 0, -half}, {half, 0, -half}, {half, 0, half}, {-half, 0, half}};
    for (const Vec3& corner : corners) addPost(builder, corner, top, 0.16f, CRANE_YELLOW);

    // No real mast needs more than 32 sections, but that of a damaged save may be 1500 high.
    const float section = std::max(4.0f, top / 32.0f);
    for (int index = 0; static_cast<float>(index) * section < top; index++) {
        const float bottom = static_cast<float>(index) * section;
        const Vec3 low = {0.0f, bottom, 0.0f};
        const Vec3 high = {0.0f, std::min(bottom + section, top), 0.0f};
        for (int side = 0; side < 4; side++) {
            const Vec3& start = corners[side];
            const Vec3& end = corners[(side + 1) % 4];
            const Vec3 normal = normalised(start + end);
            addLatticeBar(builder, start + high, end + high, normal);
            addLatticeBar(builder, start + low, end + high, normal);
        }
    }
}

// The jib reaches over the lot, towards -x.
static void addJib(MeshBuilder& builder, float bottom) {
    const float chord = bottom - 1.1f;
    addPlainBox(builder, {-5.6f, bottom, -0.2f}, {2.4f, bottom + 0.35f, 0.2f}, CRANE_YELLOW);
    addPlainBox(builder, {-4.8f, chord, -0.1f}, {-0.35f, chord + 0.15f, 0.1f}, CRANE_YELLOW);
    for (int i = 0; i < 3; i++) {
        const float x = -0.35f - 1.5f * static_cast<float>(i);
        addLatticeBar(builder, {x, bottom, 0.0f}, {x - 1.45f, chord + 0.15f, 0.0f}, {0.0f, 0.0f, 1.0f});
    }
    addPlainBox(builder, {1.4f, bottom - 0.8f, -0.4f}, {2.3f, bottom, 0.4f}, {0.25f, 0.25f, 0.27f});
}

// Around the mast. The load hangs where it is seen, over the core and clear of its rebar.
static void addCrane(MeshBuilder& builder, float top, float coreTop) {
    const float jib = top - 0.9f;
    const float hookX = -5.4f;
    const float loadBottom = coreTop + REBAR_HEIGHT + 0.2f;
    const float loadTop = loadBottom + 0.7f;
    addMast(builder, top);
    addJib(builder, jib);
    const Vec3 cab = {0.88f, 0.88f, 0.86f};
    addPlainBox(builder, {-0.45f, top - 2.4f, 0.35f}, {0.45f, top - 1.0f, 1.15f}, cab);
    addPlainBox(builder, {hookX - 0.2f, jib - 0.5f, -0.2f}, {hookX + 0.2f, jib - 0.05f, 0.2f}, STEEL_GREY);
    addPost(builder, {hookX, loadTop, 0.0f}, jib, 0.06f, STEEL_GREY);
    addPlainBox(builder, {hookX - 0.5f, loadBottom, -0.5f}, {hookX + 0.5f, loadTop, 0.5f},
                {0.62f, 0.46f, 0.30f});
    addPlainBox(builder, {-0.43f, top, -0.43f}, {0.43f, top + 0.1f, 0.43f}, CRANE_YELLOW);
    addWarningLamp(builder, {0.0f, top + 0.1f, 0.0f});
}

void addConstructionSite(MeshBuilder& builder, const Vec3& centre, float halfX, float halfZ,
                         float finalHeight, float progress, float t) {
    assert(halfX > 0.0f && halfZ > 0.0f && finalHeight > 0.0f && t >= 0.0f && t <= 1.0f);
    const float built = progress > 0.0f ? std::min(progress, 1.0f) : 0.0f; // also for a NaN
    const float coreTop = std::max(finalHeight * built, 0.5f);

    const size_t first = builder.size();
    addCrane(builder, finalHeight + 9.0f + 2.0f * t, coreTop);
    moveVertices(builder, first, {0.85f * halfX, 0.0f, -0.85f * halfZ});
    addCore(builder, halfX, halfZ, finalHeight, coreTop);
    addScaffold(builder, halfX, halfZ, finalHeight);
    addLotFence(builder, TRIM);
    moveVertices(builder, first, centre);
}
