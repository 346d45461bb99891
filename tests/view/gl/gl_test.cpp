#include "view/gl/gl.h"
#include "view/gl/gl_context.h"

#include <set>

static const std::vector<std::string> NAMES = {
    "glClearColor",
    "glClear",
    "glViewport",
    "glScissor",
    "glEnable",
    "glDisable",
    "glDepthFunc",
    "glDepthMask",
    "glBlendFunc",
    "glCullFace",
    "glFrontFace",
    "glPolygonOffset",
    "glPixelStorei",
    "glDrawArrays",
    "glFinish",
    "glGenTextures",
    "glDeleteTextures",
    "glBindTexture",
    "glTexImage2D",
    "glTexParameteri",
    "glActiveTexture",
    "glGenVertexArrays",
    "glDeleteVertexArrays",
    "glBindVertexArray",
    "glGenBuffers",
    "glDeleteBuffers",
    "glBindBuffer",
    "glBufferData",
    "glBufferSubData",
    "glEnableVertexAttribArray",
    "glDisableVertexAttribArray",
    "glVertexAttribPointer",
    "glCreateShader",
    "glShaderSource",
    "glCompileShader",
    "glGetShaderiv",
    "glGetShaderInfoLog",
    "glDeleteShader",
    "glCreateProgram",
    "glAttachShader",
    "glBindAttribLocation",
    "glLinkProgram",
    "glGetProgramiv",
    "glGetProgramInfoLog",
    "glDeleteProgram",
    "glUseProgram",
    "glGetUniformLocation",
    "glUniform1i",
    "glUniform1f",
    "glUniform2f",
    "glUniform3f",
    "glUniform4f",
    "glUniformMatrix4fv",
    "glGenFramebuffers",
    "glDeleteFramebuffers",
    "glBindFramebuffer",
    "glFramebufferTexture2D",
    "glCheckFramebufferStatus",
    "glDrawBuffer",
    "glReadBuffer",
    "glReadPixels",
};

// A driver that lacks some functions, and what it was asked for.
struct Driver {
    std::set<std::string> missing;
    std::vector<std::string> asked;
};

static Driver* currentDriver = nullptr;

static void* findFunction(const char* name) {
    currentDriver->asked.emplace_back(name);
    static char function; // never called
    return currentDriver->missing.contains(name) ? nullptr : &function;
}

class GlTable : public testing::Test {
protected:
    GlTable() { currentDriver = &driver; }
    ~GlTable() override { gl = before; }

    bool load() {
        testing::internal::CaptureStderr();
        const bool complete = loadGlFunctions(findFunction);
        errors = testing::internal::GetCapturedStderr();
        return complete;
    }

    Driver driver;
    std::string errors;
    GlFunctions before = gl;
};

TEST_F(GlTable, AsksForAll61FunctionsInOrder) {
    EXPECT_TRUE(load());
    EXPECT_EQ(driver.asked, NAMES);
    EXPECT_EQ(driver.asked.size(), 61u);
    EXPECT_EQ(errors, "");
}

TEST_F(GlTable, SaysEachMissingFunctionInTableOrder) {
    driver.missing = {"glReadPixels", "glClear", "glUniform4f"};
    EXPECT_FALSE(load());
    EXPECT_EQ(errors, "missing GL function glClear\n"
                      "missing GL function glUniform4f\n"
                      "missing GL function glReadPixels\n");
    EXPECT_EQ(driver.asked, NAMES);
    EXPECT_EQ(gl.Clear, nullptr);
    EXPECT_NE(gl.Viewport, nullptr);
}

TEST_F(GlTable, ADriverWithoutAnythingIsToldWhollyAndRefused) {
    driver.missing = {NAMES.begin(), NAMES.end()};
    std::string expected;
    for (const std::string& name : NAMES) expected += "missing GL function " + name + "\n";
    EXPECT_FALSE(load());
    EXPECT_EQ(errors, expected);
}

TEST_F(GlTable, FunctionsThatNobodyCallsAreRequiredAllTheSame) {
    driver.missing = {"glCullFace", "glFrontFace"};
    EXPECT_FALSE(load());
    EXPECT_EQ(errors, "missing GL function glCullFace\nmissing GL function glFrontFace\n");
}

TEST_F(GlTest, ARealDriverHasAllFunctions) {
    EXPECT_TRUE(loadGlFunctions());
    EXPECT_NE(gl.ReadPixels, nullptr);
}

TEST_F(GlTest, APixelHasFourSamplesAsInTheGame) {
    int samples = 0;
    EXPECT_EQ(SDL_GL_GetAttribute(SDL_GL_MULTISAMPLESAMPLES, &samples), 0) << SDL_GetError();
    EXPECT_EQ(samples, 4);
}
