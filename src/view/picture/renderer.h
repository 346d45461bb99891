// Draws one picture of the city: shadow map, sky, scene, water. It knows meshes, not the city.
#pragma once

#include "view/gl/vec.h"
#include "view/world/world_meshes.h"

#include <string>

struct Renderer {
    uint32_t worldProgram = 0; // GL names, 0 = none
    uint32_t shadowProgram = 0;
    uint32_t waterProgram = 0;
    uint32_t skyProgram = 0;
    uint32_t skyVertexArray = 0; // empty: the core profile draws nothing without one
    uint32_t shadowFramebuffer = 0;
    uint32_t shadowTexture = 0;
    int32_t shadowSize = 0; // texels a side, 0 = no shadow map
    Mat4 lightViewProj = IDENTITY;
};

struct FrameParams {
    int32_t width = 1; // framebuffer pixels, at least 1
    int32_t height = 1;
    Mat4 viewProj = IDENTITY;
    Vec3 cameraPos;
    Vec3 cameraTarget;
    float hour = 12.0f; // 0 to 24
    int32_t overcast = 0;
    float time = 0.0f;      // seconds, moves the water
    int32_t shadowSize = 0; // wanted texels a side, or 0
};

// Needs a current context and a loaded function table. Tries every program, so that `log` tells all that
// fail.
bool initRenderer(Renderer& renderer, std::string* log);
void destroyRenderer(Renderer& renderer);

void renderFrame(Renderer& renderer, const FrameParams& params, const WorldMeshes& meshes);
