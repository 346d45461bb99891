// Geometry made on the processor: the one vertex layout and the primitives that all generators work with.
// Positions are world positions, every triangle is three full vertices, and nothing is indexed.
#pragma once

#include "view/gl/vec.h"

#include <cstdint>
#include <vector>

// What the fragment shader makes of a surface. It tells them apart at the half between two, because a whole
// number need not arrive whole inside a triangle.
enum Material {
    MATERIAL_TERRAIN,
    MATERIAL_WALL,
    MATERIAL_ROOF,
    MATERIAL_ROAD,
    MATERIAL_WATER_EDGE,
    MATERIAL_GLASS,
    MATERIAL_SOLAR_PANEL,
    MATERIAL_PLAIN
};

struct Vertex {
    Vec3 position;
    Vec3 normal; // unit length
    Vec3 colour;
    float material = 0.0f;
    float emissive = 0.0f; // windows' glow at night, or the own light of plain surfaces
    float unused = 0.0f;
    float u = 0.0f; // read by the road and solar-panel materials only
    float v = 0.0f;
};
static_assert(sizeof(Vertex) == 56);

using MeshBuilder = std::vector<Vertex>;

void addVertex(MeshBuilder& builder, const Vec3& position, const Vec3& normal, const Vec3& colour,
               float emissive, int material, float u, float v);
void addTriangle(MeshBuilder& builder, const Vec3& a, const Vec3& b, const Vec3& c, const Vec3& normal,
                 const Vec3& colour, float emissive, int material);
// Triangles a, b, c and a, c, d.
void addQuad(MeshBuilder& builder, const Vec3& a, const Vec3& b, const Vec3& c, const Vec3& d,
             const Vec3& normal, const Vec3& colour, float emissive, int material);
// Five faces: a box has no floor, since every box stands on something.
void addBox(MeshBuilder& builder, const Vec3& min, const Vec3& max, const Vec3& colour, int material,
            float emissive);
void addFlatQuad(MeshBuilder& builder, float x0, float x1, float z0, float z1, float height,
                 const Vec3& colour, int material);
// A box with a saddle roof whose ridge runs along x.
void addGabledBox(MeshBuilder& builder, const Vec3& min, const Vec3& max, float gableHeight,
                  const Vec3& wallColour, const Vec3& roofColour, float emissive);
// A cone or cylinder around the vertical axis, with flat sides; capped on top when the top radius is above 0.
void addFrustum(MeshBuilder& builder, const Vec3& baseCentre, float bottomRadius, float height,
                float topRadius, int segments, const Vec3& colour, int material, float emissive);

// The hash behind all variety of the view, 0 to 1: the same city always gives the same meshes.
float hash01(uint32_t a, uint32_t b, uint32_t salt);
