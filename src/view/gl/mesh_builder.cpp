#include "view/gl/mesh_builder.h"

#include "sim/hash.h"

#include <algorithm>
#include <cassert>

[[maybe_unused]] static bool isMaterial(int material) {
    return material >= MATERIAL_TERRAIN && material <= MATERIAL_PLAIN;
}

void addVertex(MeshBuilder& builder, const Vec3& position, const Vec3& normal, const Vec3& colour,
               float emissive, int material, float u, float v) {
    assert(isMaterial(material));
    builder.push_back({position, normal, colour, static_cast<float>(material), emissive, 0.0f, u, v});
}

void addTriangle(MeshBuilder& builder, const Vec3& a, const Vec3& b, const Vec3& c, const Vec3& normal,
                 const Vec3& colour, float emissive, int material) {
    assert(isMaterial(material));
    const float surface = static_cast<float>(material);
    builder.insert(builder.end(), {{a, normal, colour, surface, emissive, 0.0f, 0.0f, 0.0f},
                                   {b, normal, colour, surface, emissive, 0.0f, 1.0f, 0.0f},
                                   {c, normal, colour, surface, emissive, 0.0f, 1.0f, 1.0f}});
}

void addQuad(MeshBuilder& builder, const Vec3& a, const Vec3& b, const Vec3& c, const Vec3& d,
             const Vec3& normal, const Vec3& colour, float emissive, int material) {
    assert(isMaterial(material));
    const float surface = static_cast<float>(material);
    const Vertex first = {a, normal, colour, surface, emissive, 0.0f, 0.0f, 0.0f};
    const Vertex third = {c, normal, colour, surface, emissive, 0.0f, 1.0f, 1.0f};
    builder.insert(builder.end(), {first,
                                   {b, normal, colour, surface, emissive, 0.0f, 1.0f, 0.0f},
                                   third,
                                   first,
                                   third,
                                   {d, normal, colour, surface, emissive, 0.0f, 0.0f, 1.0f}});
}

void addBox(MeshBuilder& builder, const Vec3& min, const Vec3& max, const Vec3& colour, int material,
            float emissive) {
    assert(min.x <= max.x && min.y <= max.y && min.z <= max.z); // otherwise its normals would point inwards
    addQuad(builder, {max.x, min.y, min.z}, {max.x, min.y, max.z}, {max.x, max.y, max.z},
            {max.x, max.y, min.z}, {1.0f, 0.0f, 0.0f}, colour, emissive, material);
    addQuad(builder, {min.x, min.y, min.z}, {min.x, min.y, max.z}, {min.x, max.y, max.z},
            {min.x, max.y, min.z}, {-1.0f, 0.0f, 0.0f}, colour, emissive, material);
    addQuad(builder, {min.x, max.y, min.z}, {max.x, max.y, min.z}, {max.x, max.y, max.z},
            {min.x, max.y, max.z}, {0.0f, 1.0f, 0.0f}, colour, emissive, material);
    addQuad(builder, {min.x, min.y, max.z}, {max.x, min.y, max.z}, {max.x, max.y, max.z},
            {min.x, max.y, max.z}, {0.0f, 0.0f, 1.0f}, colour, emissive, material);
    addQuad(builder, {min.x, min.y, min.z}, {max.x, min.y, min.z}, {max.x, max.y, min.z},
            {min.x, max.y, min.z}, {0.0f, 0.0f, -1.0f}, colour, emissive, material);
}

void addFlatQuad(MeshBuilder& builder, float x0, float x1, float z0, float z1, float height,
                 const Vec3& colour, int material) {
    assert(x0 < x1 && z0 < z1);
    addQuad(builder, {x0, height, z0}, {x1, height, z0}, {x1, height, z1}, {x0, height, z1},
            {0.0f, 1.0f, 0.0f}, colour, 0.0f, material);
}

void addGabledBox(MeshBuilder& builder, const Vec3& min, const Vec3& max, float gableHeight,
                  const Vec3& wallColour, const Vec3& roofColour, float emissive) {
    addBox(builder, min, max, wallColour, MATERIAL_WALL, emissive);

    const float halfDepth = std::max((max.z - min.z) / 2.0f, 0.001f);
    const float slope = gableHeight / halfDepth;
    const float steepness = std::sqrt(slope * slope + 1.0f);
    const Vec3 ridgeStart = {min.x, max.y + gableHeight, (min.z + max.z) / 2.0f};
    const Vec3 ridgeEnd = {max.x, ridgeStart.y, ridgeStart.z};
    const Vec3 lowEavesStart = {min.x, max.y, min.z};
    const Vec3 lowEavesEnd = {max.x, max.y, min.z};
    const Vec3 highEavesStart = {min.x, max.y, max.z};
    const Vec3 highEavesEnd = {max.x, max.y, max.z};

    addQuad(builder, lowEavesStart, lowEavesEnd, ridgeEnd, ridgeStart,
            {0.0f, 1.0f / steepness, -slope / steepness}, roofColour, 0.0f, MATERIAL_ROOF);
    addQuad(builder, highEavesStart, highEavesEnd, ridgeEnd, ridgeStart,
            {0.0f, 1.0f / steepness, slope / steepness}, roofColour, 0.0f, MATERIAL_ROOF);
    addTriangle(builder, lowEavesStart, highEavesStart, ridgeStart, {-1.0f, 0.0f, 0.0f}, wallColour, emissive,
                MATERIAL_WALL);
    addTriangle(builder, lowEavesEnd, highEavesEnd, ridgeEnd, {1.0f, 0.0f, 0.0f}, wallColour, emissive,
                MATERIAL_WALL);
}

// The direction on the circle, `turn` segments of `segments` round.
static Vec3 circleDirection(float turn, int segments) {
    const float angle = 6.2831855f * turn / static_cast<float>(segments);
    return {std::cos(angle), 0.0f, std::sin(angle)};
}

void addFrustum(MeshBuilder& builder, const Vec3& baseCentre, float bottomRadius, float height,
                float topRadius, int segments, const Vec3& colour, int material, float emissive) {
    assert(segments >= 3 && bottomRadius >= 0.0f && topRadius >= 0.0f);
    const Vec3 topCentre = {baseCentre.x, baseCentre.y + height, baseCentre.z};
    Vec3 end = circleDirection(0.0f, segments);
    for (int i = 0; i < segments; i++) {
        const Vec3 start = end;
        end = circleDirection(static_cast<float>(i + 1), segments);
        const Vec3 middle = circleDirection(static_cast<float>(i) + 0.5f, segments);
        const Vec3 outward = {height * middle.x, bottomRadius - topRadius, height * middle.z};
        const float outwardLength = length(outward);
        const Vec3 normal = outwardLength > 1e-8f ? outward * (1.0f / outwardLength) : Vec3{0.0f, 1.0f, 0.0f};
        const Vec3 topStart = topCentre + start * topRadius;
        const Vec3 topEnd = topCentre + end * topRadius;

        addQuad(builder, baseCentre + start * bottomRadius, baseCentre + end * bottomRadius, topEnd, topStart,
                normal, colour, emissive, material);
        if (topRadius > 0.0f)
            addTriangle(builder, topCentre, topStart, topEnd, {0.0f, 1.0f, 0.0f}, colour, emissive, material);
    }
}

// In another order every tree would stand elsewhere and every house change its colours.
float hash01(uint32_t a, uint32_t b, uint32_t salt) { return hashUnit(b, salt, a); }
