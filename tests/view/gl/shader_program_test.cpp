#include "view/gl/fake_gl.h"
#include "view/gl/gl_context.h"
#include "view/gl/shader_program.h"
#include "view/gl/shaders.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

static const char* const BROKEN_TEXT = "#version 330 core\nvoid main() { thisIsNoFunction(); }\n";
// Compiles, and does not link: the sky's vertex stage writes a vec2.
static const char* const MISMATCHED_TEXT =
    "#version 330 core\nin vec3 vNdc;\nout vec4 oCol;\nvoid main() { oCol = vec4(vNdc, 1.0); }\n";

class ShaderProgram : public GlTest {
protected:
    uint32_t slot = 0;
    std::string log;
};

TEST_F(ShaderProgram, AGoodTextCompilesWithoutAWord) {
    const uint32_t shader = compileShader(GL_VERTEX_SHADER, SHADOW_VERTEX_TEXT, &log);
    EXPECT_NE(shader, 0u);
    EXPECT_EQ(log, "");
    gl.DeleteShader(shader);
}

TEST_F(ShaderProgram, ABrokenTextAddsTheDriversWordsToTheLog) {
    log = "before ";
    EXPECT_EQ(compileShader(GL_FRAGMENT_SHADER, BROKEN_TEXT, &log), 0u);
    EXPECT_TRUE(log.starts_with("before "));
    EXPECT_THAT(log, HasSubstr("thisIsNoFunction"));
}

TEST_F(ShaderProgram, TheLogIsOptional) {
    EXPECT_EQ(compileShader(GL_FRAGMENT_SHADER, BROKEN_TEXT, nullptr), 0u);
    EXPECT_FALSE(linkProgram(slot, SKY_VERTEX_TEXT, MISMATCHED_TEXT, nullptr));
}

TEST_F(ShaderProgram, AProgramThatDoesNotLinkSaysWhy) {
    EXPECT_FALSE(linkProgram(slot, SKY_VERTEX_TEXT, MISMATCHED_TEXT, &log));
    EXPECT_EQ(slot, 0u);
    EXPECT_THAT(log, HasSubstr("vNdc"));
}

TEST_F(ShaderProgram, AFailureInAnOccupiedSlotLeavesItEmpty) {
    for (const char* text : {BROKEN_TEXT, MISMATCHED_TEXT}) {
        ASSERT_TRUE(linkProgram(slot, SKY_VERTEX_TEXT, SKY_FRAGMENT_TEXT, &log)) << log;
        EXPECT_FALSE(linkProgram(slot, SKY_VERTEX_TEXT, text, &log));
        EXPECT_EQ(slot, 0u);
    }
}

TEST_F(ShaderProgram, CanBeRebuiltInPlace) {
    ASSERT_TRUE(linkProgram(slot, SKY_VERTEX_TEXT, SKY_FRAGMENT_TEXT, &log));
    ASSERT_TRUE(linkProgram(slot, SHADOW_VERTEX_TEXT, SHADOW_FRAGMENT_TEXT, &log));
    EXPECT_GE(gl.GetUniformLocation(slot, "uLightVP"), 0);
    EXPECT_EQ(gl.GetUniformLocation(slot, "uZenith"), -1);
    deleteProgram(slot);
}

TEST(ShaderProgramCalls, AttributesArePlacedBeforeLinkingAndTheShadersDroppedAfterIt) {
    FakeGl fake;
    uint32_t slot = 0;
    EXPECT_TRUE(linkProgram(slot, "vertex", "fragment", nullptr));
    EXPECT_THAT(fake.calls,
                ElementsAre(glCall("CreateShader", GL_VERTEX_SHADER), "ShaderSource(1, 1, data, null)",
                            "CompileShader(1)", glCall("GetShaderiv", 1, GL_COMPILE_STATUS),
                            glCall("CreateShader", GL_FRAGMENT_SHADER), "ShaderSource(2, 1, data, null)",
                            "CompileShader(2)", glCall("GetShaderiv", 2, GL_COMPILE_STATUS),
                            "CreateProgram()", "AttachShader(3, 1)", "AttachShader(3, 2)",
                            "BindAttribLocation(3, 0, aPos)", "BindAttribLocation(3, 1, aNrm)",
                            "BindAttribLocation(3, 2, aCol)", "BindAttribLocation(3, 3, aData)",
                            "BindAttribLocation(3, 4, aUV)", "LinkProgram(3)", "DeleteShader(1)",
                            "DeleteShader(2)", glCall("GetProgramiv", 3, GL_LINK_STATUS)));
    EXPECT_EQ(slot, 3u);
}

TEST(ShaderProgramCalls, AFailedLinkLeavesNoObjects) {
    FakeGl fake;
    fake.links = false;
    uint32_t slot = 77;
    std::string log;
    EXPECT_FALSE(linkProgram(slot, "vertex", "fragment", &log));
    EXPECT_EQ(fake.calls.front(), "DeleteProgram(77)");
    EXPECT_EQ(fake.calls.back(), "DeleteProgram(3)");
    EXPECT_THAT(callsOf(fake, "DeleteShader"), ElementsAre("DeleteShader(1)", "DeleteShader(2)"));
    EXPECT_EQ(slot, 0u);
    EXPECT_EQ(log, std::string(1023, 'p'));
}

TEST(ShaderProgramCalls, AShaderThatFailsIsDeletedAndItsWordsHeldTo1024Bytes) {
    FakeGl fake;
    fake.compiles = false;
    std::string log;
    EXPECT_EQ(compileShader(GL_VERTEX_SHADER, "", &log), 0u);
    EXPECT_THAT(callsOf(fake, "GetShaderInfoLog"), ElementsAre("GetShaderInfoLog(1, 1024)"));
    EXPECT_THAT(callsOf(fake, "DeleteShader"), ElementsAre("DeleteShader(1)"));
    EXPECT_EQ(log, std::string(1023, 's'));
}

TEST(ShaderProgramCalls, AVertexStageThatFailsEndsTheLink) {
    FakeGl fake;
    fake.compiles = false;
    uint32_t slot = 0;
    EXPECT_FALSE(linkProgram(slot, "", "", nullptr));
    EXPECT_EQ(callsOf(fake, "CreateShader").size(), 1u);
    EXPECT_THAT(callsOf(fake, "CreateProgram"), IsEmpty());
}

TEST(ShaderProgramCalls, DeletingZeroesTheSlotAndAnEmptySlotIsLeftAlone) {
    FakeGl fake;
    uint32_t slot = 9;
    deleteProgram(slot);
    EXPECT_THAT(fake.calls, ElementsAre("DeleteProgram(9)"));
    EXPECT_EQ(slot, 0u);
    deleteProgram(slot);
    EXPECT_EQ(fake.calls.size(), 1u);
}
