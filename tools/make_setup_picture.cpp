// make-setup-picture FILE: paints what stands beside the first and the last page of the set-up program for
// Windows, a BMP of 164 by 314: the logo over a dusk sky.
#include "ui/logo/logo.h"

#include <cmath>
#include <cstdio>
#include <string>

constexpr int WIDTH = 164;
constexpr int HEIGHT = 314;
constexpr int LOGO_SIZE = 120;
constexpr int LOGO_TOP = 40;
constexpr int ROW_BYTES = (3 * WIDTH + 3) / 4 * 4;
constexpr int HEADER_BYTES = 54;
constexpr float SKY_TOP[] = {16, 20, 44};
constexpr float SKY_BOTTOM[] = {126, 74, 92};

static void append(std::string& bytes, uint32_t value, int count) {
    for (int i = 0; i < count; i++) bytes += static_cast<char>(value >> (8 * i));
}

static std::string bmpHeader() {
    std::string header = "BM";
    append(header, HEADER_BYTES + ROW_BYTES * HEIGHT, 4);
    append(header, 0, 4);
    append(header, HEADER_BYTES, 4);
    append(header, 40, 4); // of the second part
    append(header, WIDTH, 4);
    append(header, HEIGHT, 4); // the last row first
    append(header, 1, 2);
    append(header, 24, 2); // bits
    header.resize(HEADER_BYTES, '\0');
    return header;
}

// A channel of the picture, 0 red to 2 blue.
static uint8_t colourAt(const std::vector<uint8_t>& logo, int x, int y, int channel) {
    const float down = static_cast<float>(y) / (HEIGHT - 1);
    float colour = std::lerp(SKY_TOP[channel], SKY_BOTTOM[channel], down);
    const int logoX = x - (WIDTH - LOGO_SIZE) / 2;
    const int logoY = y - LOGO_TOP;
    if (logoX >= 0 && logoX < LOGO_SIZE && logoY >= 0 && logoY < LOGO_SIZE) {
        const uint8_t* pixel = &logo[static_cast<size_t>(4) * (logoY * LOGO_SIZE + logoX)];
        colour = std::lerp(colour, static_cast<float>(pixel[channel]), static_cast<float>(pixel[3]) / 255.0f);
    }
    return static_cast<uint8_t>(std::lround(colour));
}

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: make-setup-picture FILE\n");
        return 2;
    }
    std::vector<uint8_t> logo;
    paintLogo(LOGO_SIZE, logo);
    std::string bytes = bmpHeader();
    for (int y = HEIGHT - 1; y >= 0; y--) {
        for (int x = 0; x < WIDTH; x++)
            for (int channel = 2; channel >= 0; channel--) append(bytes, colourAt(logo, x, y, channel), 1);
        append(bytes, 0, ROW_BYTES - 3 * WIDTH);
    }
    std::FILE* file = std::fopen(argv[1], "wb");
    const bool written = file && std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    const bool closed = file && std::fclose(file) == 0;
    if (!written || !closed) std::fprintf(stderr, "make-setup-picture: cannot write %s\n", argv[1]);
    return written && closed ? 0 : 1;
}
