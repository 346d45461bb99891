#include "view/gl/mesh.h"

#include "view/gl/gl.h"

#include <cassert>
#include <cstddef>

static void fillBuffer(Mesh& mesh, const MeshBuilder& builder, bool dynamic) {
    const uint64_t size = builder.size() * sizeof(Vertex);
    const Vertex* data = builder.empty() ? nullptr : builder.data();
    if (dynamic && mesh.capacity != 0 && mesh.capacity >= size) {
        if (size != 0) gl.BufferSubData(GL_ARRAY_BUFFER, 0, static_cast<GLsizeiptr>(size), data);
        return;
    }
    gl.BufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(size), data,
                  dynamic ? GL_DYNAMIC_DRAW : GL_STATIC_DRAW);
    mesh.capacity = size;
}

static void setAttribute(uint32_t place, int components, size_t offset) {
    gl.EnableVertexAttribArray(place);
    gl.VertexAttribPointer(place, components, GL_FLOAT, GL_FALSE, sizeof(Vertex),
                           reinterpret_cast<const void*>(offset)); // NOLINT(performance-no-int-to-ptr)
}

void uploadMesh(Mesh& mesh, const MeshBuilder& builder, bool dynamic) {
    assert(builder.size() % 3 == 0 && builder.size() <= INT32_MAX);
    assert((mesh.vertexArray == 0) == (mesh.vertexBuffer == 0)); // made and destroyed together
    if (mesh.vertexArray == 0) {
        gl.GenVertexArrays(1, &mesh.vertexArray);
        gl.GenBuffers(1, &mesh.vertexBuffer);
    }
    gl.BindVertexArray(mesh.vertexArray);
    gl.BindBuffer(GL_ARRAY_BUFFER, mesh.vertexBuffer);
    fillBuffer(mesh, builder, dynamic);
    setAttribute(0, 3, offsetof(Vertex, position));
    setAttribute(1, 3, offsetof(Vertex, normal));
    setAttribute(2, 3, offsetof(Vertex, colour));
    setAttribute(3, 3, offsetof(Vertex, material)); // with emissive and the unused float
    setAttribute(4, 2, offsetof(Vertex, u));
    gl.BindVertexArray(0);
    mesh.vertexCount = static_cast<int32_t>(builder.size());
}

void drawMesh(const Mesh& mesh) {
    if (mesh.vertexArray == 0 || mesh.vertexCount == 0) return;
    assert(mesh.vertexBuffer != 0 && mesh.vertexCount % 3 == 0);
    gl.BindVertexArray(mesh.vertexArray);
    gl.DrawArrays(GL_TRIANGLES, 0, mesh.vertexCount);
}

void destroyMesh(Mesh& mesh) {
    if (mesh.vertexBuffer != 0) gl.DeleteBuffers(1, &mesh.vertexBuffer);
    if (mesh.vertexArray != 0) gl.DeleteVertexArrays(1, &mesh.vertexArray);
    mesh = {};
}
