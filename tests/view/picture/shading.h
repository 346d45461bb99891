// The shading worked out once more on the processor, for the tests that compare it with drawn pixels.
#pragma once

#include "view/gl/gl_context.h"
#include "view/picture/sky.h"
#include "view/world/world_meshes.h"

// A renderer and its meshes, for one test.
class ShadingTest : public GlTest {
protected:
    void SetUp() override;
    void TearDown() override;

    Picture draw(const FrameParams& params);
    // The geometry alone, and the colour at a point of it.
    Picture drawn(const MeshBuilder& builder, const FrameParams& params);
    Vec3 drawnAt(const MeshBuilder& builder, const FrameParams& params, const Vec3& point);

    Renderer renderer;
    WorldMeshes meshes;
};

// A surface in the light of the frame's hour; `sunShare` is 0 in full shadow.
Vec3 litColour(const Vec3& base, const Vec3& normal, const FrameParams& params, float sunShare = 1.0f);
// The colour seen from the camera through the air.
Vec3 fogged(const Vec3& colour, const Vec3& point, const FrameParams& params);
Vec3 times(const Vec3& a, const Vec3& b);
