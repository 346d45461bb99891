#include "view/gl/fake_gl.h"

#include <gtest/gtest.h>

#include <cstring>
#include <type_traits>

static FakeGl* current = nullptr;

template<typename... Arguments> static void record(const char* name, Arguments... arguments) {
    if (current->recording) current->calls.push_back(glCall(name, arguments...));
}

// One function for each member of the table.
template<auto Member, typename Function> struct Recorder;
template<auto Member, typename Result, typename... Arguments>
struct Recorder<Member, Result(APIENTRY*)(Arguments...)> {
    static inline const char* name = nullptr;

    static Result APIENTRY call(Arguments... arguments) {
        record(name, arguments...);
        if constexpr (!std::is_void_v<Result>) return static_cast<Result>(++current->lastName);
    }
};

static void APIENTRY genTextures(GLsizei count, GLuint* names) {
    record("GenTextures", count);
    *names = ++current->lastName;
}
static void APIENTRY genBuffers(GLsizei count, GLuint* names) {
    record("GenBuffers", count);
    *names = ++current->lastName;
}
static void APIENTRY genVertexArrays(GLsizei count, GLuint* names) {
    record("GenVertexArrays", count);
    *names = ++current->lastName;
}
static void APIENTRY genFramebuffers(GLsizei count, GLuint* names) {
    record("GenFramebuffers", count);
    *names = ++current->lastName;
}
static void APIENTRY getShaderiv(GLuint shader, GLenum what, GLint* answer) {
    record("GetShaderiv", shader, what);
    *answer = current->compiles;
}
static void APIENTRY getProgramiv(GLuint program, GLenum what, GLint* answer) {
    record("GetProgramiv", program, what);
    *answer = current->links;
}
// Writes as much as it may, and no final zero: that one is the caller's.
static void APIENTRY getShaderInfoLog(GLuint shader, GLsizei size, GLsizei*, GLchar* text) {
    record("GetShaderInfoLog", shader, size);
    std::memset(text, 's', static_cast<size_t>(size) - 1);
}
static void APIENTRY getProgramInfoLog(GLuint program, GLsizei size, GLsizei*, GLchar* text) {
    record("GetProgramInfoLog", program, size);
    std::memset(text, 'p', static_cast<size_t>(size) - 1);
}
static GLenum APIENTRY checkFramebufferStatus(GLenum target) {
    record("CheckFramebufferStatus", target);
    return current->framebufferStatus;
}
static GLint APIENTRY getUniformLocation(GLuint program, const GLchar* name) {
    record("GetUniformLocation", program, name);
    return 0;
}
static void APIENTRY vertexAttribPointer(GLuint place, GLint components, GLenum type, GLboolean normalised,
                                         GLsizei stride, const void* offset) {
    record("VertexAttribPointer", place, components, type, normalised, stride,
           reinterpret_cast<uintptr_t>(offset));
}

FakeGl::FakeGl() : before(gl) {
    EXPECT_EQ(current, nullptr);
    current = this;
#define RECORD_FUNCTION(function)                                                                            \
    {                                                                                                        \
        using Record = Recorder<&GlFunctions::function, decltype(gl.function)>;                              \
        Record::name = #function;                                                                            \
        gl.function = Record::call;                                                                          \
    }
    GL_FUNCTIONS(RECORD_FUNCTION)
#undef RECORD_FUNCTION
    gl.GenTextures = genTextures;
    gl.GenBuffers = genBuffers;
    gl.GenVertexArrays = genVertexArrays;
    gl.GenFramebuffers = genFramebuffers;
    gl.GetShaderiv = getShaderiv;
    gl.GetProgramiv = getProgramiv;
    gl.GetShaderInfoLog = getShaderInfoLog;
    gl.GetProgramInfoLog = getProgramInfoLog;
    gl.CheckFramebufferStatus = checkFramebufferStatus;
    gl.GetUniformLocation = getUniformLocation;
    gl.VertexAttribPointer = vertexAttribPointer;
}

FakeGl::~FakeGl() {
    gl = before;
    current = nullptr;
}

std::vector<std::string> callsOf(const FakeGl& fake, const std::string& name) {
    std::vector<std::string> found;
    for (const std::string& call : fake.calls)
        if (call.starts_with(name + "(")) found.push_back(call);
    return found;
}

std::vector<std::string> callsWithoutUniforms(const FakeGl& fake) {
    std::vector<std::string> found;
    for (const std::string& call : fake.calls)
        if (call.find("Uniform") == std::string::npos) found.push_back(call);
    return found;
}
