#include "ui/logo/logo.h"
#include "ui/logo/logo_texture.h"
#include "view/gl/fake_gl.h"
#include "view/gl/gl_context.h"

#include <gmock/gmock.h>

using testing::ElementsAre;

class LogoTexture : public GlTest {};

TEST_F(LogoTexture, HoldsTheLogosPixelsAndIsLeftUnbound) {
    const GLuint texture = makeLogoTexture(64, nullptr, nullptr);
    GLint bound = -1;
    const auto getIntegerv =
        reinterpret_cast<decltype(&glGetIntegerv)>(SDL_GL_GetProcAddress("glGetIntegerv"));
    getIntegerv(GL_TEXTURE_BINDING_2D, &bound);
    EXPECT_EQ(bound, 0);

    GLuint framebuffer = 0;
    gl.GenFramebuffers(1, &framebuffer);
    gl.BindFramebuffer(GL_FRAMEBUFFER, framebuffer);
    gl.FramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, texture, 0);
    ASSERT_EQ(gl.CheckFramebufferStatus(GL_FRAMEBUFFER), static_cast<GLenum>(GL_FRAMEBUFFER_COMPLETE));
    std::vector<uint8_t> seen(64 * 64 * 4);
    gl.ReadPixels(0, 0, 64, 64, GL_RGBA, GL_UNSIGNED_BYTE, seen.data());
    gl.BindFramebuffer(GL_FRAMEBUFFER, 0);
    gl.DeleteFramebuffers(1, &framebuffer);
    gl.DeleteTextures(1, &texture);

    std::vector<uint8_t> logo;
    paintLogo(64, logo);
    EXPECT_EQ(seen, logo);
}

TEST(LogoTextureCalls, AreLinearAndHeldToTheEdge) {
    FakeGl fake;
    const GLuint texture = makeLogoTexture(16, nullptr, nullptr);
    EXPECT_THAT(fake.calls,
                ElementsAre("GenTextures(1)", glCall("BindTexture", GL_TEXTURE_2D, texture),
                            glCall("TexImage2D", GL_TEXTURE_2D, 0, GL_RGBA8, 16, 16, 0, GL_RGBA,
                                   GL_UNSIGNED_BYTE, "data"),
                            glCall("TexParameteri", GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR),
                            glCall("TexParameteri", GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR),
                            glCall("TexParameteri", GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE),
                            glCall("TexParameteri", GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE),
                            glCall("BindTexture", GL_TEXTURE_2D, 0)));
}

TEST(LogoTextureCalls, ASizeBelow16CountsAs16AndIsTold) {
    FakeGl fake;
    const struct {
        int asked;
        int made;
    } rows[] = {{-5, 16}, {0, 16}, {7, 16}, {15, 16}, {16, 16}, {17, 17}};
    for (const auto& row : rows) {
        int width = 0;
        int height = 0;
        EXPECT_NE(makeLogoTexture(row.asked, &width, &height), 0u);
        EXPECT_EQ(width, row.made) << row.asked;
        EXPECT_EQ(height, row.made) << row.asked;
    }
    int width = 0;
    makeLogoTexture(20, &width, nullptr);
    EXPECT_EQ(width, 20);
}
