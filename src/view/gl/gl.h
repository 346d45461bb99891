// The OpenGL entry points, fetched by name once the context exists. Nothing is linked statically, so that a
// driver that lacks one is told apart from a crash. A few are called by nobody, because a driver that lacks
// even those has no OpenGL 3.3 and is better refused at the start.
#pragma once

#define GL_GLEXT_PROTOTYPES // only for the types of the functions
#include <SDL.h>
#include <SDL_opengl.h>

// clang-format off
#define GL_FUNCTIONS(X) \
    X(ClearColor) X(Clear) X(Viewport) X(Scissor) X(Enable) X(Disable) X(DepthFunc) X(DepthMask) \
    X(BlendFunc) X(CullFace) X(FrontFace) X(PolygonOffset) X(PixelStorei) X(DrawArrays) X(Finish) \
    X(GenTextures) X(DeleteTextures) X(BindTexture) X(TexImage2D) X(TexParameteri) X(ActiveTexture) \
    X(GenVertexArrays) X(DeleteVertexArrays) X(BindVertexArray) X(GenBuffers) X(DeleteBuffers) \
    X(BindBuffer) X(BufferData) X(BufferSubData) X(EnableVertexAttribArray) X(DisableVertexAttribArray) \
    X(VertexAttribPointer) X(CreateShader) X(ShaderSource) X(CompileShader) X(GetShaderiv) \
    X(GetShaderInfoLog) X(DeleteShader) X(CreateProgram) X(AttachShader) X(BindAttribLocation) \
    X(LinkProgram) X(GetProgramiv) X(GetProgramInfoLog) X(DeleteProgram) X(UseProgram) \
    X(GetUniformLocation) X(Uniform1i) X(Uniform1f) X(Uniform2f) X(Uniform3f) X(Uniform4f) \
    X(UniformMatrix4fv) X(GenFramebuffers) X(DeleteFramebuffers) X(BindFramebuffer) \
    X(FramebufferTexture2D) X(CheckFramebufferStatus) X(DrawBuffer) X(ReadBuffer) X(ReadPixels)
// clang-format on

// gl.Clear(...) calls glClear.
struct GlFunctions {
#define FUNCTION_POINTER(name) decltype(&::gl##name) name = nullptr; // NOLINT(bugprone-macro-parentheses)
    GL_FUNCTIONS(FUNCTION_POINTER)
#undef FUNCTION_POINTER
};

// The one table of the process: a GL context belongs to the process, not to a record.
extern GlFunctions gl;

// Finds an entry point by name; nullptr when the driver lacks it.
using GlLoader = void* (*)(const char* name);

// Fills the table right after the context was made current; true when none was missing. Tries every name, so
// that the error stream tells all that are.
bool loadGlFunctions(GlLoader loader = SDL_GL_GetProcAddress);
