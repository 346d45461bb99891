// Questions about a model's geometry: is this very piece in it, how far does it reach, what is it made of.
#pragma once

#include "sim/city.h"
#include "view/models/building_parts.h"

#include <gtest/gtest.h>

#include <array>
#include <vector>

struct Bounds {
    Vec3 min;
    Vec3 max;
};

// The lot in the middle of cell (48, 48), with the usual half sizes.
Lot makeLot(float t = 0.5f, int level = 1);

Bounds boundsOf(const MeshBuilder& mesh);
void expectNear(const Vec3& seen, const Vec3& expected, float tolerance = 1e-4f);

// The vertices of `part` stand in the mesh one after another, up to rounding.
testing::AssertionResult contains(const MeshBuilder& mesh, const MeshBuilder& part);
testing::AssertionResult hasBox(const MeshBuilder& mesh, const Vec3& min, const Vec3& max, const Vec3& colour,
                                int material = MATERIAL_PLAIN, float emissive = 0.0f);
testing::AssertionResult hasFlatQuad(const MeshBuilder& mesh, float x0, float x1, float z0, float z1,
                                     float height, const Vec3& colour, int material);
testing::AssertionResult hasFrustum(const MeshBuilder& mesh, const Vec3& foot, float bottomRadius,
                                    float height, float topRadius, int segments, const Vec3& colour,
                                    int material = MATERIAL_PLAIN, float emissive = 0.0f);

// Everything that stands in the city: as one mesh, and by the chunk of its cell.
MeshBuilder buildingsOf(const City& city);
std::array<MeshBuilder, 36> buildingBlocksOf(const City& city);

// Byte for byte.
bool isSame(const MeshBuilder& a, const MeshBuilder& b);

// All vertices of one colour.
MeshBuilder verticesOfColour(const MeshBuilder& mesh, const Vec3& colour);
// A bit for each material in use.
int materialsOf(const MeshBuilder& mesh);
// Where the boxes of plain material and full glow stand: the middle of their floor.
std::vector<Vec3> lampsOf(const MeshBuilder& mesh);
