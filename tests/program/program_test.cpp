#include "program/program.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>

// A start that fails ends the process with 1 and says why. Each runs in a process of its own.

static void* loadNothing(const char*) { return nullptr; }

static void* loadAllButTwo(const char* name) {
    if (std::strcmp(name, "glFinish") == 0 || std::strcmp(name, "glReadPixels") == 0) return nullptr;
    return SDL_GL_GetProcAddress(name);
}

static void APIENTRY refuseShader(GLuint, GLenum, GLint* status) { *status = GL_FALSE; }

static void APIENTRY tellWhy(GLuint, GLsizei, GLsizei*, GLchar* log) {
    std::strcpy(log, "0:1: no such language\n");
}

static void* loadBadCompiler(const char* name) {
    if (std::strcmp(name, "glGetShaderiv") == 0) return reinterpret_cast<void*>(&refuseShader);
    if (std::strcmp(name, "glGetShaderInfoLog") == 0) return reinterpret_cast<void*>(&tellWhy);
    return SDL_GL_GetProcAddress(name);
}

class ProgramDeathTest : public testing::Test {
protected:
    void SetUp() override {
        testing::GTEST_FLAG(death_test_style) = "threadsafe";
        setenv("HOME", testing::TempDir().c_str(), 1);
        setenv("SDL_AUDIODRIVER", "dummy", 1);
        unsetenv("DISPLAY"); // no message box either
    }
};

TEST_F(ProgramDeathTest, ADriverWithoutTheFunctionsIsRefused) {
    EXPECT_EXIT(std::exit(runProgram(loadNothing)), testing::ExitedWithCode(1),
                "missing GL function glClearColor\nmissing GL function glClear\n(.|\n)*"
                "missing GL function glReadPixels\n"
                "This computer's graphics driver is missing OpenGL 3.3 functions.\n"
                "Please update the graphics driver.\n");
}

TEST_F(ProgramDeathTest, EveryMissingFunctionIsNamedInOrder) {
    EXPECT_EXIT(
        std::exit(runProgram(loadAllButTwo)), testing::ExitedWithCode(1),
        "^missing GL function glFinish\nmissing GL function glReadPixels\nThis computer's graphics driver");
}

TEST_F(ProgramDeathTest, ADriverThatCompilesNoShaderEndsTheStartWithItsLog) {
    EXPECT_EXIT(std::exit(runProgram(loadBadCompiler)), testing::ExitedWithCode(1),
                "^The game could not start.\n\nNo music files found; playing without music\n"
                "(0:1: no such language\n)+");
}
