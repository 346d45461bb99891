#include "view/gl/gl_context.h"

#include "view/gl/gl.h"
#include "view/picture/camera.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>

// Read by the leak checker, if there is one: the driver keeps memory of its own to the end.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() {
    return "leak:_dri.so\nleak:libgallium\nleak:libLLVM\n";
}

// Window and context live as long as the process, so that the driver is still loaded when leaks are told
// apart.
static bool openHiddenWindow() {
    if (SDL_Init(SDL_INIT_VIDEO) != 0) return false;
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_MAJOR_VERSION, 3);
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_MINOR_VERSION, 3);
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_PROFILE_MASK, SDL_GL_CONTEXT_PROFILE_CORE);
    SDL_GL_SetAttribute(SDL_GL_DEPTH_SIZE, 24);
    SDL_GL_SetAttribute(SDL_GL_MULTISAMPLEBUFFERS, 1);
    SDL_GL_SetAttribute(SDL_GL_MULTISAMPLESAMPLES, 4);
    SDL_Window* window = SDL_CreateWindow("Orlavane tests", 0, 0, PICTURE_WIDTH, PICTURE_HEIGHT,
                                          SDL_WINDOW_OPENGL | SDL_WINDOW_HIDDEN);
#ifdef _WIN32 // whose end waits for threads of the driver that it has ended before
    std::atexit([] {
        SDL_GL_DeleteContext(SDL_GL_GetCurrentContext());
        SDL_Quit();
    });
#endif
    return window != nullptr && SDL_GL_CreateContext(window) != nullptr && loadGlFunctions();
}

void GlTest::SetUp() {
    static const bool open = openHiddenWindow();
    ASSERT_TRUE(open) << SDL_GetError();
}

// A function that the game has no use for.
#define GL_FUNCTION(name) reinterpret_cast<decltype(&::name)>(SDL_GL_GetProcAddress(#name))

// By way of a texture, on a unit that nothing else uses: a copy is the mean of each pixel's samples, like the
// picture on the screen, while some drivers read one sample alone.
Picture readPicture(int width, int height) {
    static const auto copyTexImage = GL_FUNCTION(glCopyTexImage2D);
    static const auto getTexImage = GL_FUNCTION(glGetTexImage);
    Picture picture{width, height, std::vector<uint8_t>(static_cast<size_t>(width) * height * 4)};
    uint32_t texture = 0;
    gl.GenTextures(1, &texture);
    gl.ActiveTexture(GL_TEXTURE7);
    gl.BindTexture(GL_TEXTURE_2D, texture);
    gl.BindFramebuffer(GL_FRAMEBUFFER, 0);
    copyTexImage(GL_TEXTURE_2D, 0, GL_RGBA8, 0, 0, width, height, 0);
    getTexImage(GL_TEXTURE_2D, 0, GL_RGBA, GL_UNSIGNED_BYTE, picture.rgba.data());
    gl.DeleteTextures(1, &texture);
    gl.ActiveTexture(GL_TEXTURE0);
    return picture;
}

Vec3 pixelAt(const Picture& picture, int x, int y) {
    EXPECT_TRUE(x >= 0 && x < picture.width && y >= 0 && y < picture.height) << x << ", " << y;
    x = std::clamp(x, 0, picture.width - 1);
    y = std::clamp(y, 0, picture.height - 1);
    const uint8_t* pixel = &picture.rgba[(static_cast<size_t>(y) * picture.width + x) * 4];
    return Vec3{static_cast<float>(pixel[0]), static_cast<float>(pixel[1]), static_cast<float>(pixel[2])} *
           (1.0f / 255.0f);
}

int differentPixels(const Picture& a, const Picture& b, int tolerance) {
    EXPECT_EQ(a.rgba.size(), b.rgba.size());
    int count = 0;
    for (size_t pixel = 0; pixel < a.rgba.size(); pixel += 4) {
        int difference = 0;
        for (size_t i = pixel; i < pixel + 4; i++)
            difference = std::max(difference, std::abs(a.rgba[i] - b.rgba[i]));
        count += difference > tolerance;
    }
    return count;
}

void writePicture(const Picture& picture, const std::string& path) {
    std::ofstream file(path, std::ios::binary);
    file << "P6\n" << picture.width << ' ' << picture.height << "\n255\n";
    for (int y = picture.height - 1; y >= 0; y--)
        for (int x = 0; x < picture.width; x++)
            file.write(reinterpret_cast<const char*>(
                           &picture.rgba[(static_cast<size_t>(y) * picture.width + x) * 4]),
                       3);
}

FrameParams lookFrom(const Vec3& eye, const Vec3& target, float hour) {
    FrameParams params;
    params.width = PICTURE_WIDTH;
    params.height = PICTURE_HEIGHT;
    const float aspect = static_cast<float>(params.width) / static_cast<float>(params.height);
    params.viewProj = multiply(perspective(CAMERA_FOCAL, aspect, CAMERA_NEAR, CAMERA_FAR),
                               lookAt(eye, target, {0.0f, 1.0f, 0.0f}));
    params.cameraPos = eye;
    params.cameraTarget = target;
    params.hour = hour;
    return params;
}

Vec3 colourAt(const Picture& picture, const FrameParams& params, const Vec3& point) {
    const Vec3 ndc = transformPoint(params.viewProj, point);
    const float x = (ndc.x * 0.5f + 0.5f) * static_cast<float>(params.width);
    const float y = (ndc.y * 0.5f + 0.5f) * static_cast<float>(params.height);
    return pixelAt(picture, static_cast<int>(std::floor(x)), static_cast<int>(std::floor(y)));
}

void expectColour(const Vec3& seen, const Vec3& expected, float tolerance) {
    EXPECT_NEAR(seen.x, std::clamp(expected.x, 0.0f, 1.0f), tolerance) << "red";
    EXPECT_NEAR(seen.y, std::clamp(expected.y, 0.0f, 1.0f), tolerance) << "green";
    EXPECT_NEAR(seen.z, std::clamp(expected.z, 0.0f, 1.0f), tolerance) << "blue";
}
