#include "view/gl/graphics_memory.h"

#include <cstring>

static GraphicsMemory* current = nullptr;

static void APIENTRY bindBuffer(GLenum, GLuint buffer) { current->bound = buffer; }

static void countBytes(GLsizeiptr size) {
    current->uploads++;
    current->bytesSent += static_cast<uint64_t>(size);
}

static void APIENTRY bufferData(GLenum, GLsizeiptr size, const void* data, GLenum) {
    const Vertex* vertices = static_cast<const Vertex*>(data);
    current->buffers[current->bound].assign(vertices, vertices + size / sizeof(Vertex));
    countBytes(size);
}

static void APIENTRY bufferSubData(GLenum, GLintptr, GLsizeiptr size, const void* data) {
    std::memcpy(current->buffers[current->bound].data(), data, static_cast<size_t>(size));
    countBytes(size);
}

GraphicsMemory::GraphicsMemory() {
    current = this;
    fake.recording = false;
    gl.BindBuffer = bindBuffer;
    gl.BufferData = bufferData;
    gl.BufferSubData = bufferSubData;
}

GraphicsMemory::~GraphicsMemory() { current = nullptr; }

bool shows(const GraphicsMemory& memory, const Mesh& mesh, const MeshBuilder& expected) {
    const auto found = memory.buffers.find(mesh.vertexBuffer);
    if (found == memory.buffers.end()) return false;
    const std::vector<Vertex>& vertices = found->second;
    return mesh.vertexCount == static_cast<int>(expected.size()) && vertices.size() == expected.size() &&
           (vertices.empty() ||
            std::memcmp(vertices.data(), expected.data(), vertices.size() * sizeof(Vertex)) == 0);
}
