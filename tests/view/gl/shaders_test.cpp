// The fixed texts and how they meet the passes.
#include "view/gl/gl.h"
#include "view/gl/shader_program.h"
#include "view/gl/shaders.h"
#include "view/picture/shading.h"

#include <gmock/gmock.h>

#include <cstring>

using testing::HasSubstr;
using testing::Not;

static const char* const TEXTS[] = {
    WORLD_VERTEX_TEXT,   WORLD_FRAGMENT_TEXT, SHADOW_VERTEX_TEXT, SHADOW_FRAGMENT_TEXT, WATER_VERTEX_TEXT,
    WATER_FRAGMENT_TEXT, SKY_VERTEX_TEXT,     SKY_FRAGMENT_TEXT,  UI_VERTEX_TEXT,       UI_FRAGMENT_TEXT};

TEST(ShaderTexts, AllTenBeginWithTheirVersion) {
    EXPECT_EQ(std::size(TEXTS), 10u);
    for (const std::string text : TEXTS) EXPECT_TRUE(text.starts_with("#version 330 core\n")) << text;
}

// The table's own functions, while a test stands in between.
static GlFunctions realGl;

class Shaders : public GlTest {
protected:
    void SetUp() override {
        GlTest::SetUp();
        realGl = gl;
    }
    void TearDown() override { gl = realGl; }

    Renderer renderer;
    std::string log;
};

static int lookUpCount;
static std::vector<std::string> unknownUniforms;

TEST_F(Shaders, EveryUniformThatAFrameSetsIsInItsProgram) {
    ASSERT_TRUE(initRenderer(renderer, &log)) << log;
    EXPECT_EQ(log, "");
    gl.GetUniformLocation = [](GLuint program, const GLchar* name) {
        const GLint location = realGl.GetUniformLocation(program, name);
        lookUpCount++;
        if (location < 0) unknownUniforms.emplace_back(name);
        return location;
    };
    FrameParams params = lookFrom({10, 20, 30}, {}, 12.0f);
    params.shadowSize = 1024;
    renderFrame(renderer, params, WorldMeshes{});
    EXPECT_EQ(lookUpCount, 29);
    EXPECT_THAT(unknownUniforms, testing::IsEmpty());
    destroyRenderer(renderer);
}

TEST_F(Shaders, ABrokenWaterProgramStopsTheStartWithItsOwnErrorAloneAndTheSkyIsLinked) {
    gl.ShaderSource = [](GLuint shader, GLsizei count, const GLchar* const* texts, const GLint* lengths) {
        const char* broken = "#version 330 core\nvoid main() { brokenWater(); }\n";
        realGl.ShaderSource(shader, count, *texts == WATER_FRAGMENT_TEXT ? &broken : texts, lengths);
    };
    EXPECT_FALSE(initRenderer(renderer, &log));
    EXPECT_NE(renderer.worldProgram, 0u);
    EXPECT_NE(renderer.shadowProgram, 0u);
    EXPECT_EQ(renderer.waterProgram, 0u);
    EXPECT_NE(renderer.skyProgram, 0u);

    uint32_t shader = 0;
    std::string waterError;
    shader = compileShader(GL_FRAGMENT_SHADER, WATER_FRAGMENT_TEXT, &waterError);
    EXPECT_EQ(shader, 0u);
    EXPECT_THAT(waterError, HasSubstr("brokenWater"));
    EXPECT_EQ(log, waterError);
    destroyRenderer(renderer);
}

TEST_F(Shaders, NoPassReliesOnWhatTheInterfaceLeft) {
    ASSERT_TRUE(initRenderer(renderer, &log)) << log;
    WorldMeshes meshes;
    MeshBuilder builder;
    addFlatQuad(builder, -100, 100, -100, 100, 0, {0.4f, 0.4f, 0.4f}, MATERIAL_TERRAIN);
    addBox(builder, {-10, 0, -10}, {10, 30, 10}, {0.6f, 0.4f, 0.4f}, MATERIAL_WALL, 1);
    uploadMesh(meshes.roadMesh, builder, false);
    MeshBuilder water;
    addFlatQuad(water, -200, 200, -200, 200, 6, {}, MATERIAL_WATER_EDGE);
    uploadMesh(meshes.waterMesh, water, false);
    FrameParams params = lookFrom({60, 50, 70}, {}, 9.0f);
    params.shadowSize = 1024;
    renderFrame(renderer, params, meshes);
    const Picture before = readPicture();

    gl.Disable(GL_DEPTH_TEST);
    gl.DepthFunc(GL_NEVER);
    gl.Enable(GL_BLEND);
    gl.BlendFunc(GL_ONE, GL_ONE);
    gl.Enable(GL_POLYGON_OFFSET_FILL);
    gl.Viewport(3, 3, 20, 20);
    gl.ActiveTexture(GL_TEXTURE1);
    gl.UseProgram(0);
    gl.ClearColor(1, 0, 1, 0);
    renderFrame(renderer, params, meshes);
    EXPECT_EQ(readPicture().rgba, before.rgba);

    params.shadowSize = 0;
    renderFrame(renderer, params, meshes);
    const Picture unshadowed = readPicture();
    EXPECT_NE(unshadowed.rgba, before.rgba);
    gl.Enable(GL_SCISSOR_TEST);
    gl.Scissor(0, 0, 10, 10);
    renderFrame(renderer, params, meshes);
    EXPECT_EQ(readPicture().rgba, unshadowed.rgba);
    destroyMesh(meshes.roadMesh);
    destroyMesh(meshes.waterMesh);
    destroyRenderer(renderer);
}

// Position in pixels from the upper left, texture place, colour.
struct UiCorner {
    float x, y, u, v, r, g, b, a;
};

static void drawUiTriangle(uint32_t program, const UiCorner (&corners)[3], bool textured) {
    uint32_t vertexArray = 0;
    uint32_t buffer = 0;
    gl.GenVertexArrays(1, &vertexArray);
    gl.GenBuffers(1, &buffer);
    gl.BindVertexArray(vertexArray);
    gl.BindBuffer(GL_ARRAY_BUFFER, buffer);
    gl.BufferData(GL_ARRAY_BUFFER, sizeof corners, corners, GL_STREAM_DRAW);
    const int components[] = {2, 2, 4};
    uintptr_t offset = 0;
    for (uint32_t place = 0; place < 3; place++) {
        gl.EnableVertexAttribArray(place);
        gl.VertexAttribPointer(place, components[place], GL_FLOAT, GL_FALSE, sizeof(UiCorner),
                               reinterpret_cast<const void*>(offset));
        offset += static_cast<uintptr_t>(components[place]) * sizeof(float);
    }
    gl.UseProgram(program);
    gl.Uniform2f(gl.GetUniformLocation(program, "uScreen"), PICTURE_WIDTH, PICTURE_HEIGHT);
    gl.Uniform1i(gl.GetUniformLocation(program, "uTex"), 0);
    gl.Uniform1i(gl.GetUniformLocation(program, "uUseTex"), textured);
    gl.DrawArrays(GL_TRIANGLES, 0, 3);
    gl.BindVertexArray(0);
    gl.DeleteBuffers(1, &buffer);
    gl.DeleteVertexArrays(1, &vertexArray);
}

TEST_F(Shaders, TheInterfaceDrawsInPixelsFromTheUpperLeftWithColourOrColourTimesTexture) {
    uint32_t program = 0;
    ASSERT_TRUE(linkProgram(program, UI_VERTEX_TEXT, UI_FRAGMENT_TEXT, &log)) << log;
    // A texture of two texels: dark red, then full green.
    const uint8_t texels[] = {128, 0, 0, 255, 0, 255, 0, 255};
    uint32_t texture = 0;
    gl.GenTextures(1, &texture);
    gl.BindTexture(GL_TEXTURE_2D, texture);
    gl.TexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    gl.TexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    gl.TexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 2, 1, 0, GL_RGBA, GL_UNSIGNED_BYTE, texels);
    gl.Viewport(0, 0, PICTURE_WIDTH, PICTURE_HEIGHT);

    // The corner at the upper left, 40 pixels along each side, left half of the texture on its left half.
    const UiCorner corners[3] = {
        {0, 0, 0, 0, 1, 0.8f, 0.6f, 1}, {40, 0, 1, 0, 1, 0.8f, 0.6f, 1}, {0, 40, 0, 0, 1, 0.8f, 0.6f, 1}};
    for (const bool textured : {false, true}) {
        gl.ClearColor(0, 0, 0, 1);
        gl.Clear(GL_COLOR_BUFFER_BIT);
        drawUiTriangle(program, corners, textured);
        const Picture picture = readPicture();
        const Vec3 colour = {1, 0.8f, 0.6f};
        expectColour(pixelAt(picture, 5, PICTURE_HEIGHT - 3),
                     textured ? Vec3{128.0f / 255.0f, 0, 0} : colour);
        expectColour(pixelAt(picture, 30, PICTURE_HEIGHT - 3), textured ? Vec3{0, 0.8f, 0} : colour);
        expectColour(pixelAt(picture, 2, PICTURE_HEIGHT - 35),
                     textured ? Vec3{128.0f / 255.0f, 0, 0} : colour);
        expectColour(pixelAt(picture, 30, PICTURE_HEIGHT - 30), {});
        // To the pixel at both ends of its sides.
        expectColour(pixelAt(picture, 38, PICTURE_HEIGHT - 1), textured ? Vec3{0, 0.8f, 0} : colour);
        expectColour(pixelAt(picture, 40, PICTURE_HEIGHT - 1), {});
        expectColour(pixelAt(picture, 0, PICTURE_HEIGHT - 39),
                     textured ? Vec3{128.0f / 255.0f, 0, 0} : colour);
        expectColour(pixelAt(picture, 0, PICTURE_HEIGHT - 41), {});
        expectColour(pixelAt(picture, 5, 3), {});
    }
    gl.DeleteTextures(1, &texture);
    deleteProgram(program);
}
