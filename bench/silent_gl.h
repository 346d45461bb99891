// The graphics card of the benchmarks: it copies what it is given, as a driver does, and draws nothing.
#pragma once

#include "view/gl/gl.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <type_traits>
#include <vector>

template<typename Result, typename... Arguments> Result APIENTRY doNothing(Arguments...) {
    if constexpr (!std::is_void_v<Result>) return Result();
}

template<typename Result, typename... Arguments> void silence(Result(APIENTRY*& slot)(Arguments...)) {
    slot = doNothing<Result, Arguments...>;
}

inline void copyBytes(const void* data, GLsizeiptr size) {
    static std::vector<uint8_t> store;
    store.resize(std::max(store.size(), static_cast<size_t>(size)));
    if (size > 0) std::memcpy(store.data(), data, static_cast<size_t>(size));
}

inline void APIENTRY giveName(GLsizei, GLuint* name) { *name = 1; }

inline GLuint APIENTRY giveShader(GLenum) { return 1; }
inline GLuint APIENTRY giveProgram() { return 1; }

inline void APIENTRY copyData(GLenum, GLsizeiptr size, const void* data, GLenum) { copyBytes(data, size); }
inline void APIENTRY copySubData(GLenum, GLintptr, GLsizeiptr size, const void* data) {
    copyBytes(data, size);
}

inline void APIENTRY sayYes(GLuint, GLenum, GLint* answer) { *answer = 1; }

inline void openGraphics() {
#define SILENCE_FUNCTION(name) silence(gl.name);
    GL_FUNCTIONS(SILENCE_FUNCTION)
#undef SILENCE_FUNCTION
    gl.GenVertexArrays = giveName; // a mesh without names counts as never uploaded
    gl.GenBuffers = giveName;
    gl.GenTextures = giveName;
    gl.CreateShader = giveShader;
    gl.CreateProgram = giveProgram;
    gl.GetShaderiv = sayYes;
    gl.GetProgramiv = sayYes;
    gl.BufferData = copyData;
    gl.BufferSubData = copySubData;
}
