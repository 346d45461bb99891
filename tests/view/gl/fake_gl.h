// A GL table that draws nothing and writes down what it was asked, for the rules about calls.
#pragma once

#include "view/gl/gl.h"

#include <sstream>
#include <string>
#include <vector>

// While it lives, the process-wide table is this one; there can be one at a time.
struct FakeGl {
    FakeGl();
    ~FakeGl();
    FakeGl(const FakeGl&) = delete;
    FakeGl& operator=(const FakeGl&) = delete;

    std::vector<std::string> calls; // as glCall writes them
    bool recording = true;
    bool compiles = true;
    bool links = true;
    GLenum framebufferStatus = GL_FRAMEBUFFER_COMPLETE;
    uint32_t lastName = 0; // names of all kinds count up from 1
    GlFunctions before;
};

// The calls of one function.
std::vector<std::string> callsOf(const FakeGl& fake, const std::string& name);
// The calls but those of the uniforms.
std::vector<std::string> callsWithoutUniforms(const FakeGl& fake);

inline std::string argumentText(const char* text) { return text; }
inline std::string argumentText(const GLuint* name) { return std::to_string(*name); }
inline std::string argumentText(GLuint*) { return "names"; }
template<typename Value> std::string argumentText(Value* pointer) { return pointer ? "data" : "null"; }
template<typename Value> std::string argumentText(Value value) {
    std::ostringstream text;
    text << +value;
    return text.str();
}

// "BindTexture(3553, 7)": constants as numbers, pointers as "data" or "null", a name to delete by its value.
template<typename... Arguments> std::string glCall(const char* name, Arguments... arguments) {
    std::string text = std::string(name) + "(";
    ((text += argumentText(arguments) + ", "), ...);
    if (sizeof...(arguments) > 0) text.resize(text.size() - 2);
    return text + ")";
}
