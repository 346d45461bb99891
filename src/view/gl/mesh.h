// A vertex buffer on the graphics card, kept until it is stale, so that what stands still is not sent again.
#pragma once

#include "view/gl/mesh_builder.h"

#include <cstdint>

struct Mesh {
    uint32_t vertexArray = 0; // GL names, 0 = not yet created
    uint32_t vertexBuffer = 0;
    int32_t vertexCount = 0;
    uint64_t capacity = 0;    // bytes of the buffer's storage
    uint64_t fingerprint = 0; // of what it was built from (view/gl/fingerprint.h), 0 = never built
};

// Replaces the mesh's content. A dynamic mesh is filled each frame, so its storage grows and never shrinks.
void uploadMesh(Mesh& mesh, const MeshBuilder& builder, bool dynamic);
// Draws nothing for a mesh that was never filled.
void drawMesh(const Mesh& mesh);
void destroyMesh(Mesh& mesh);
