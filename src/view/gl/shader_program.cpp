#include "view/gl/shader_program.h"

#include "view/gl/gl.h"

#include <cassert>

constexpr int LOG_SIZE = 1024;

// The same places for every program, so that one vertex array serves them all. The texts of the interface
// name places of their own, which win.
static constexpr const char* ATTRIBUTES[] = {"aPos", "aNrm", "aCol", "aData", "aUV"};

uint32_t compileShader(uint32_t type, const char* text, std::string* log) {
    assert(type == GL_VERTEX_SHADER || type == GL_FRAGMENT_SHADER);
    const uint32_t shader = gl.CreateShader(type);
    gl.ShaderSource(shader, 1, &text, nullptr);
    gl.CompileShader(shader);
    GLint compiled = GL_FALSE;
    gl.GetShaderiv(shader, GL_COMPILE_STATUS, &compiled);
    if (compiled) return shader;

    char message[LOG_SIZE] = {};
    gl.GetShaderInfoLog(shader, LOG_SIZE, nullptr, message);
    if (log) *log += message;
    gl.DeleteShader(shader);
    return 0;
}

bool linkProgram(uint32_t& programSlot, const char* vertexText, const char* fragmentText, std::string* log) {
    deleteProgram(programSlot);
    const uint32_t vertexShader = compileShader(GL_VERTEX_SHADER, vertexText, log);
    if (vertexShader == 0) return false;
    const uint32_t fragmentShader = compileShader(GL_FRAGMENT_SHADER, fragmentText, log);
    if (fragmentShader == 0) {
        gl.DeleteShader(vertexShader);
        return false;
    }

    const uint32_t program = gl.CreateProgram();
    gl.AttachShader(program, vertexShader);
    gl.AttachShader(program, fragmentShader);
    for (uint32_t place = 0; place < std::size(ATTRIBUTES); place++)
        gl.BindAttribLocation(program, place, ATTRIBUTES[place]);
    gl.LinkProgram(program);
    gl.DeleteShader(vertexShader);
    gl.DeleteShader(fragmentShader);
    GLint linked = GL_FALSE;
    gl.GetProgramiv(program, GL_LINK_STATUS, &linked);
    if (linked) {
        programSlot = program;
        return true;
    }

    char message[LOG_SIZE] = {};
    gl.GetProgramInfoLog(program, LOG_SIZE, nullptr, message);
    if (log) *log += message;
    gl.DeleteProgram(program);
    return false;
}

void deleteProgram(uint32_t& programSlot) {
    if (programSlot == 0) return;
    gl.DeleteProgram(programSlot);
    programSlot = 0;
}
