#include "view/gl/fake_gl.h"
#include "view/gl/gl_context.h"
#include "view/gl/mesh.h"

#include <gmock/gmock.h>

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

static MeshBuilder triangles(int count) {
    MeshBuilder builder;
    for (int i = 0; i < count; i++) addTriangle(builder, {}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {}, 0.0f, 0);
    return builder;
}

static bool isEmpty(const Mesh& mesh) {
    return mesh.vertexArray == 0 && mesh.vertexBuffer == 0 && mesh.vertexCount == 0 && mesh.capacity == 0;
}

TEST(Mesh, TheFirstUploadMakesBufferAndLayout) {
    FakeGl fake;
    Mesh mesh;
    uploadMesh(mesh, triangles(2), false);
    EXPECT_THAT(
        fake.calls,
        ElementsAre("GenVertexArrays(1)", "GenBuffers(1)", glCall("BindVertexArray", mesh.vertexArray),
                    glCall("BindBuffer", GL_ARRAY_BUFFER, mesh.vertexBuffer),
                    glCall("BufferData", GL_ARRAY_BUFFER, 6 * 56, &mesh, GL_STATIC_DRAW),
                    "EnableVertexAttribArray(0)", glCall("VertexAttribPointer", 0, 3, GL_FLOAT, 0, 56, 0),
                    "EnableVertexAttribArray(1)", glCall("VertexAttribPointer", 1, 3, GL_FLOAT, 0, 56, 12),
                    "EnableVertexAttribArray(2)", glCall("VertexAttribPointer", 2, 3, GL_FLOAT, 0, 56, 24),
                    "EnableVertexAttribArray(3)", glCall("VertexAttribPointer", 3, 3, GL_FLOAT, 0, 56, 36),
                    "EnableVertexAttribArray(4)", glCall("VertexAttribPointer", 4, 2, GL_FLOAT, 0, 56, 48),
                    "BindVertexArray(0)"));
    EXPECT_NE(mesh.vertexArray, mesh.vertexBuffer);
    EXPECT_EQ(mesh.vertexCount, 6);
    EXPECT_EQ(mesh.capacity, 6u * 56u);
}

TEST(Mesh, ALaterUploadKeepsTheObjects) {
    FakeGl fake;
    Mesh mesh;
    uploadMesh(mesh, triangles(1), false);
    const Mesh first = mesh;
    fake.calls.clear();
    uploadMesh(mesh, triangles(2), false);
    EXPECT_THAT(callsOf(fake, "GenVertexArrays"), IsEmpty());
    EXPECT_THAT(callsOf(fake, "GenBuffers"), IsEmpty());
    EXPECT_EQ(mesh.vertexArray, first.vertexArray);
    EXPECT_EQ(mesh.vertexBuffer, first.vertexBuffer);
}

TEST(Mesh, AStaticMeshIsSpecifiedAnewEachTime) {
    FakeGl fake;
    Mesh mesh;
    uploadMesh(mesh, triangles(2), false);
    fake.calls.clear();
    uploadMesh(mesh, triangles(1), false);
    EXPECT_THAT(fake.calls, Contains(glCall("BufferData", GL_ARRAY_BUFFER, 3 * 56, &mesh, GL_STATIC_DRAW)));
    EXPECT_EQ(mesh.capacity, 3u * 56u);
    EXPECT_EQ(mesh.vertexCount, 3);
}

TEST(Mesh, ADynamicMeshThatShrinksKeepsItsStorageAndIsRefilledUpToIt) {
    FakeGl fake;
    Mesh mesh;
    uploadMesh(mesh, triangles(3), true);
    EXPECT_THAT(fake.calls, Contains(glCall("BufferData", GL_ARRAY_BUFFER, 9 * 56, &mesh, GL_DYNAMIC_DRAW)));
    for (const int count : {1, 3}) {
        fake.calls.clear();
        uploadMesh(mesh, triangles(count), true);
        EXPECT_THAT(callsOf(fake, "BufferData"), IsEmpty());
        EXPECT_THAT(fake.calls, Contains(glCall("BufferSubData", GL_ARRAY_BUFFER, 0, count * 3 * 56, &mesh)));
        EXPECT_EQ(mesh.capacity, 9u * 56u);
        EXPECT_EQ(mesh.vertexCount, count * 3);
    }
}

TEST(Mesh, ADynamicMeshThatOutgrowsItsStorageGetsMore) {
    FakeGl fake;
    Mesh mesh;
    uploadMesh(mesh, triangles(1), true);
    fake.calls.clear();
    uploadMesh(mesh, triangles(2), true);
    EXPECT_THAT(fake.calls, Contains(glCall("BufferData", GL_ARRAY_BUFFER, 6 * 56, &mesh, GL_DYNAMIC_DRAW)));
    EXPECT_THAT(callsOf(fake, "BufferSubData"), IsEmpty());
    EXPECT_EQ(mesh.capacity, 6u * 56u);
}

TEST(Mesh, AnEmptyUploadMakesTheObjectsAndDrawsNothing) {
    for (const bool dynamic : {false, true}) {
        FakeGl fake;
        Mesh mesh;
        uploadMesh(mesh, {}, dynamic);
        EXPECT_NE(mesh.vertexArray, 0u);
        EXPECT_NE(mesh.vertexBuffer, 0u);
        EXPECT_EQ(mesh.vertexCount, 0);
        EXPECT_THAT(fake.calls, Contains(glCall("BufferData", GL_ARRAY_BUFFER, 0, static_cast<Mesh*>(nullptr),
                                                dynamic ? GL_DYNAMIC_DRAW : GL_STATIC_DRAW)));
        fake.calls.clear();
        drawMesh(mesh);
        EXPECT_THAT(fake.calls, IsEmpty());
    }
}

TEST(Mesh, ADynamicMeshThatBecomesEmptyLeavesItsStorageAlone) {
    FakeGl fake;
    Mesh mesh;
    uploadMesh(mesh, triangles(2), true);
    fake.calls.clear();
    uploadMesh(mesh, {}, true);
    EXPECT_THAT(callsOf(fake, "BufferData"), IsEmpty());
    EXPECT_THAT(callsOf(fake, "BufferSubData"), IsEmpty());
    EXPECT_EQ(mesh.capacity, 6u * 56u);
    EXPECT_EQ(mesh.vertexCount, 0);
}

TEST(Mesh, DrawsAllItsTriangles) {
    FakeGl fake;
    Mesh mesh;
    uploadMesh(mesh, triangles(2), false);
    fake.calls.clear();
    drawMesh(mesh);
    EXPECT_THAT(fake.calls, ElementsAre(glCall("BindVertexArray", mesh.vertexArray),
                                        glCall("DrawArrays", GL_TRIANGLES, 0, 6)));
}

TEST(Mesh, OneThatWasNeverFilledIsNotDrawn) {
    FakeGl fake;
    drawMesh(Mesh{});
    drawMesh(Mesh{0, 0, 3, 168});
    EXPECT_THAT(fake.calls, IsEmpty());
}

TEST(Mesh, DestroyingDeletesBothObjects) {
    FakeGl fake;
    Mesh mesh;
    uploadMesh(mesh, triangles(1), true);
    const Mesh old = mesh;
    fake.calls.clear();
    destroyMesh(mesh);
    EXPECT_THAT(fake.calls, ElementsAre(glCall("DeleteBuffers", 1, old.vertexBuffer),
                                        glCall("DeleteVertexArrays", 1, old.vertexArray)));
    EXPECT_TRUE(isEmpty(mesh));
}

TEST(Mesh, DestroyingOneNeverUploadedCallsNothingAndALaterUploadWorks) {
    FakeGl fake;
    Mesh mesh;
    destroyMesh(mesh);
    EXPECT_THAT(fake.calls, IsEmpty());
    EXPECT_TRUE(isEmpty(mesh));
    uploadMesh(mesh, triangles(1), false);
    EXPECT_NE(mesh.vertexArray, 0u);
    EXPECT_EQ(mesh.vertexCount, 3);
}
