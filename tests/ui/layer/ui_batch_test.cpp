#include "ui/layer/ui_batch.h"

#include "ui/layer/ui_helpers.h"
#include "ui/layer/ui_shapes.h"
#include "ui/layer/ui_text.h"
#include "view/gl/fake_gl.h"
#include "view/gl/gl_context.h"

#include <gmock/gmock.h>

#include <cstddef>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr UiColor RED = {1.0f, 0.0f, 0.0f, 1.0f};

// --- The start and the end

TEST(UiStart, BuildsTheProgramAndTellsTheLayoutOfAVertex) {
    FakeGl fake;
    FontSystem fonts;
    Ui ui;
    std::string error;
    ASSERT_TRUE(uiInit(ui, fonts, &error)) << error;
    EXPECT_EQ(ui.fonts, &fonts);
    EXPECT_TRUE(ui.program && ui.vao && ui.vbo);
    EXPECT_THAT(callsOf(fake, "VertexAttribPointer"),
                ElementsAre(glCall("VertexAttribPointer", 0, 2, GL_FLOAT, GL_FALSE, 32, 0),
                            glCall("VertexAttribPointer", 1, 2, GL_FLOAT, GL_FALSE, 32, 8),
                            glCall("VertexAttribPointer", 2, 4, GL_FLOAT, GL_FALSE, 32, 16)));
    EXPECT_THAT(callsOf(fake, "EnableVertexAttribArray"), SizeIs(3));
    uiDestroy(ui);
}

TEST(UiStart, AProgramThatCannotBeBuiltIsToldAndEndsIt) {
    FakeGl fake;
    fake.compiles = false;
    FontSystem fonts;
    Ui ui;
    std::string error;
    EXPECT_FALSE(uiInit(ui, fonts, &error));
    EXPECT_NE(error, "");
    EXPECT_EQ(ui.vao, 0u);
    uiDestroy(ui);
    EXPECT_THAT(callsOf(fake, "DeleteBuffers"), IsEmpty());
}

TEST(UiStart, TheEndDeletesEveryNameOnce) {
    FakeGl fake;
    FontSystem fonts;
    Ui ui;
    uiInit(ui, fonts, nullptr);
    const Ui before = ui;
    fake.calls.clear();
    uiDestroy(ui);
    EXPECT_THAT(fake.calls, testing::UnorderedElementsAre(glCall("DeleteProgram", before.program),
                                                          glCall("DeleteBuffers", 1, before.vbo),
                                                          glCall("DeleteVertexArrays", 1, before.vao)));
    EXPECT_EQ(ui.program, 0u);
    EXPECT_EQ(ui.vao, 0u);
    EXPECT_EQ(ui.vbo, 0u);
    fake.calls.clear();
    uiDestroy(ui);
    EXPECT_THAT(fake.calls, IsEmpty());
}

// --- A frame

TEST(UiFrame, BeginsWithTheWindowTheMouseAndNothingDrawn) {
    Ui ui;
    uiBeginFrame(ui, 800, 600, pressAt(3.5f, 4.5f));
    EXPECT_EQ(ui.screenW, 800);
    EXPECT_EQ(ui.screenH, 600);
    EXPECT_EQ(ui.mouseX, 3.5f);
    EXPECT_EQ(ui.mouseY, 4.5f);
    EXPECT_EQ(ui.mouseDown, 1);
    EXPECT_EQ(ui.mousePressed, 1);
    EXPECT_EQ(ui.mouseReleased, 0);

    uiRect(ui, {0, 0, 5, 5}, RED);
    ui.activeId = 7;
    const size_t capacity = ui.vertices.capacity();
    uiBeginFrame(ui, 800, 600, releaseAt(0, 0));
    EXPECT_THAT(ui.vertices, IsEmpty());
    EXPECT_THAT(ui.commands, IsEmpty());
    EXPECT_EQ(ui.vertices.capacity(), capacity);
    EXPECT_EQ(ui.mouseReleased, 1);
    EXPECT_EQ(ui.mouseDown, 0);
    EXPECT_EQ(ui.activeId, 7u); // the one thing that outlives a frame
}

TEST(UiFrame, AWindowHasAPixelAtLeast) {
    Ui ui;
    uiBeginFrame(ui, 0, -20, {});
    EXPECT_EQ(ui.screenW, 1);
    EXPECT_EQ(ui.screenH, 1);
}

TEST(UiFrame, TheScaleFollowsTheHeightOnly) {
    const struct {
        int height;
        float scale;
    } rows[] = {{480, 0.75f}, {540, 0.75f}, {720, 1.0f}, {1080, 1.5f},
                {1440, 2.0f}, {2160, 2.0f}, {1, 0.75f}};
    for (const auto& row : rows)
        for (const int width : {320, 5000}) {
            Ui ui;
            uiBeginFrame(ui, width, row.height, {});
            EXPECT_EQ(uiScale(ui), row.scale) << row.height;
        }
}

// --- The batch

TEST(UiBatch, ARunOfOneTextureIsOneCommand) {
    Ui ui;
    for (int i = 0; i < 50; i++) uiRect(ui, {0, 0, 5, 5}, RED);
    uiLine(ui, 0, 0, 5, 5, 1, RED);
    ASSERT_THAT(ui.commands, SizeIs(1));
    EXPECT_EQ(ui.commands[0].count, 306u);

    uiTexturedRect(ui, {0, 0, 5, 5}, 9, RED);
    uiTexturedRect(ui, {5, 0, 5, 5}, 9, RED);
    uiTexturedRect(ui, {5, 0, 5, 5}, 8, RED);
    uiRect(ui, {0, 0, 5, 5}, RED);
    ASSERT_THAT(ui.commands, SizeIs(4));
    EXPECT_EQ(ui.commands[1].texture, 9u);
    EXPECT_EQ(ui.commands[1].first, 306u);
    EXPECT_EQ(ui.commands[1].count, 12u);
    EXPECT_EQ(ui.commands[2].texture, 8u);
    EXPECT_EQ(ui.commands[3].texture, 0u);
    expectWholeBatch(ui);
}

// --- Onto the screen

struct UiFlush : testing::Test {
    FakeGl fake;
    FontSystem fonts;
    Ui ui;

    void SetUp() override {
        ASSERT_TRUE(uiInit(ui, fonts, nullptr));
        uiBeginFrame(ui, 640, 400, {});
        fake.calls.clear();
    }
};

TEST_F(UiFlush, WithNothingDrawnTouchesNothing) {
    uiFlush(ui);
    EXPECT_THAT(fake.calls, IsEmpty());
}

TEST_F(UiFlush, UploadsOnceAndDrawsEveryCommandInItsOrder) {
    uiRect(ui, {0, 0, 5, 5}, RED);
    uiTexturedRect(ui, {0, 0, 5, 5}, 9, RED);
    uiFlush(ui);
    EXPECT_THAT(fake.calls,
                ElementsAre(glCall("Disable", GL_DEPTH_TEST), glCall("Disable", GL_CULL_FACE),
                            glCall("Disable", GL_SCISSOR_TEST), glCall("Enable", GL_BLEND),
                            glCall("BlendFunc", GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA),
                            glCall("BindVertexArray", ui.vao), glCall("BindBuffer", GL_ARRAY_BUFFER, ui.vbo),
                            glCall("BufferData", GL_ARRAY_BUFFER, 12 * 32, "data", GL_STREAM_DRAW),
                            glCall("UseProgram", ui.program), glCall("Uniform2f", ui.screenUniform, 640, 400),
                            glCall("Uniform1i", ui.textureUniform, 0), glCall("ActiveTexture", GL_TEXTURE0),
                            glCall("Uniform1i", ui.useTextureUniform, 0),
                            glCall("BindTexture", GL_TEXTURE_2D, 0), glCall("DrawArrays", GL_TRIANGLES, 0, 6),
                            glCall("Uniform1i", ui.useTextureUniform, 1),
                            glCall("BindTexture", GL_TEXTURE_2D, 9), glCall("DrawArrays", GL_TRIANGLES, 6, 6),
                            glCall("BindTexture", GL_TEXTURE_2D, 0), glCall("BindVertexArray", 0),
                            glCall("Disable", GL_BLEND)));
}

// --- Seen

class UiPicture : public GlTest {
protected:
    FontSystem fonts;
    Ui ui;

    void SetUp() override {
        GlTest::SetUp();
        ASSERT_TRUE(fontsInit(fonts, nullptr));
        std::string error;
        ASSERT_TRUE(uiInit(ui, fonts, &error)) << error;
        gl.Viewport(0, 0, PICTURE_WIDTH, PICTURE_HEIGHT);
        gl.ClearColor(0, 0, 0, 1);
        gl.Clear(GL_COLOR_BUFFER_BIT);
        uiBeginFrame(ui, PICTURE_WIDTH, PICTURE_HEIGHT, {});
    }
    void TearDown() override {
        uiDestroy(ui);
        fontsShutdown(fonts);
    }
    // x and y of the window, y down.
    Vec3 seenAt(int x, int y) { return pixelAt(readPicture(), x, PICTURE_HEIGHT - 1 - y); }
};

TEST_F(UiPicture, APixelOfTheListIsAPixelOfTheWindow) {
    uiRect(ui, {10, 20, 30, 5}, RED);
    uiFlush(ui);
    for (const auto& [x, y] : {std::pair(10, 20), std::pair(39, 24)}) expectColour(seenAt(x, y), {1, 0, 0});
    for (const auto& [x, y] : {std::pair(9, 20), std::pair(40, 24), std::pair(10, 19), std::pair(39, 25)})
        expectColour(seenAt(x, y), {0, 0, 0});
}

TEST_F(UiPicture, LaterCallsLieOnTopAndBlend) {
    uiRect(ui, {0, 0, 20, 20}, RED);
    uiRect(ui, {0, 0, 10, 20}, {0, 0, 1, 0.25f});
    gl.Enable(GL_DEPTH_TEST);
    uiFlush(ui);
    expectColour(seenAt(5, 5), {0.75f, 0, 0.25f});
    expectColour(seenAt(15, 5), {1, 0, 0});
}

TEST_F(UiPicture, ATextShowsInItsColourOverThePicture) {
    uiText(ui, 20, 30, "\xE2\x96\x88\xE2\x96\x88", 40, {0, 1, 0.5f, 1}); // two full blocks
    uiFlush(ui);
    expectColour(seenAt(40, 50), {0, 1, 0.5f});
    expectColour(seenAt(10, 50), {0, 0, 0});
}

TEST_F(UiPicture, ASolidShapeBesideATextIsNotTextured) {
    uiText(ui, 0, 0, "x", 20, RED);
    uiRect(ui, {100, 100, 20, 20}, {0, 1, 0, 1});
    uiFlush(ui);
    expectColour(seenAt(110, 110), {0, 1, 0});
}
