// What the building models have in common: the lot they are drawn for, the palettes, and the small pieces
// that several of them share. A model is drawn around its lot's centre, its front towards +z, with y = 0 at
// its base; the building mesh moves it to its place. Parts are of plain material unless they say otherwise.
#pragma once

#include "view/gl/mesh_builder.h"

#include <array>
#include <cassert>
#include <cstddef>

// The base of every model lies this far under the ground, so that a sloping cell shows no gap.
constexpr float GROUND = 0.6f;
// Lawns and yards lie a little over the ground; on a level cell it would otherwise flicker through them.
constexpr float YARD = GROUND + 0.12f;

struct Lot {
    float x = 0.0f; // world position of the centre, a source of chance
    float z = 0.0f;
    float halfX = 3.2f;
    float halfZ = 3.2f;
    int level = 1;
    float t = 0.0f; // seed, 0 to 1
};

// clang-format off
constexpr std::array<Vec3, 5> wallPalette = {{
    {0.93f, 0.92f, 0.89f}, {0.84f, 0.88f, 0.90f}, {0.95f, 0.90f, 0.78f}, {0.78f, 0.52f, 0.40f},
    {0.88f, 0.84f, 0.80f}}};
constexpr std::array<Vec3, 3> roofPalette = {{
    {0.30f, 0.32f, 0.36f}, {0.45f, 0.30f, 0.25f}, {0.25f, 0.27f, 0.30f}}};
constexpr std::array<Vec3, 4> awningPalette = {{
    {0.85f, 0.25f, 0.22f}, {0.20f, 0.48f, 0.85f}, {0.95f, 0.70f, 0.20f}, {0.22f, 0.68f, 0.46f}}};
constexpr std::array<Vec3, 3> balconyPalette = {{
    {0.58f, 0.60f, 0.63f}, {0.88f, 0.85f, 0.80f}, {0.50f, 0.38f, 0.30f}}};
// clang-format on

constexpr Vec3 STEEL_GREY = {0.40f, 0.41f, 0.45f};
constexpr Vec3 TRIM = {0.84f, 0.84f, 0.82f};
constexpr Vec3 PALE_TRIM = {0.94f, 0.94f, 0.94f};
constexpr Vec3 WARNING_RED = {1.0f, 0.14f, 0.12f};
constexpr Vec3 DARK_WOOD = {0.30f, 0.20f, 0.14f};
constexpr Vec3 CONCRETE = {0.66f, 0.65f, 0.62f};
constexpr Vec3 LIT_GLASS = {0.55f, 0.66f, 0.72f};
constexpr Vec3 WARM_LIGHT = {1.0f, 0.93f, 0.72f};
constexpr Vec3 WHITE = {1.0f, 1.0f, 1.0f};

// The row for a value from 0 to 1. The factor stays just under the row count, so that 1 still has a row.
template<size_t N> const Vec3& paletteRow(const std::array<Vec3, N>& palette, float value) {
    assert(value >= 0.0f && value <= 1.0f);
    const int row = static_cast<int>(value * (static_cast<float>(N) - 0.001f));
    return palette[static_cast<size_t>(row) % N];
}

void moveVertices(MeshBuilder& builder, size_t first, const Vec3& offset);

void addPlainBox(MeshBuilder& builder, const Vec3& min, const Vec3& max, const Vec3& colour,
                 float emissive = 0.0f);
// A square post from `foot` up to the height `top`.
void addPost(MeshBuilder& builder, const Vec3& foot, float top, float thickness, const Vec3& colour);
// Lawn or paving over the whole lot, at YARD.
void addYard(MeshBuilder& builder, const Vec3& colour, int material);
// A red lamp, 0.28 high, standing on `foot`.
void addWarningLamp(MeshBuilder& builder, const Vec3& foot);
// A cylinder with a flat cone as its lid, which adds `lidHeight`. The wall is plain, the lid a roof.
void addTank(MeshBuilder& builder, const Vec3& foot, float radius, float height, float lidHeight,
             int segments, const Vec3& colour);

// Looks towards +z; `foot` is under the middle of the seat.
void addBench(MeshBuilder& builder, const Vec3& foot);
// A box with a dark grille towards +z.
void addRooftopUnit(MeshBuilder& builder, const Vec3& min, const Vec3& max);
// Four thin walls just inside a rectangle around the centre.
void addParapet(MeshBuilder& builder, float halfX, float halfZ, float bottom, float height,
                const Vec3& colour);
// From `start` to `end` along x or along z, at one height, since the rail is a single box.
void addFence(MeshBuilder& builder, const Vec3& start, const Vec3& end, float height, const Vec3& colour);
void addLotFence(MeshBuilder& builder, const Vec3& colour);
// On the wall at `wallZ`, as wide as `halfWidth` on both sides of the centre; `bottom` is the slab's
// underside.
void addBalcony(MeshBuilder& builder, float halfWidth, float wallZ, float depth, float bottom,
                const Vec3& colour);
void addRoofTank(MeshBuilder& builder, const Vec3& foot, float radius, float height);
// `count` vertical bars on each side of a shaft around the centre.
void addWallMullions(MeshBuilder& builder, float halfX, float halfZ, float bottom, float top, int count,
                     const Vec3& colour);
// A pole up to the height `top`, with a red and white flag towards +x.
void addFlag(MeshBuilder& builder, const Vec3& foot, float top);
