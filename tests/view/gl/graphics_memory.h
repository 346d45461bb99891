// A GL table that draws nothing and keeps what is sent to it, for the rules about what lies on the card.
#pragma once

#include "view/gl/fake_gl.h"
#include "view/gl/mesh.h"

#include <map>

// While it lives, the process-wide table is this one; there can be one at a time.
struct GraphicsMemory {
    GraphicsMemory();
    ~GraphicsMemory();
    GraphicsMemory(const GraphicsMemory&) = delete;
    GraphicsMemory& operator=(const GraphicsMemory&) = delete;

    FakeGl fake; // records no calls
    std::map<GLuint, std::vector<Vertex>> buffers;
    GLuint bound = 0;
    int uploads = 0; // since the test set them to 0
    uint64_t bytesSent = 0;
};

// The very vertices, byte for byte.
bool shows(const GraphicsMemory& memory, const Mesh& mesh, const MeshBuilder& expected);
