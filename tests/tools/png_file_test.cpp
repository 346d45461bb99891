#include "png_file.h"
#include "temp_dir.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <set>
#include <zlib.h>

using Bytes = std::vector<uint8_t>;

static uint32_t numberAt(const Bytes& png, size_t at) {
    return uint32_t{png[at]} << 24 | uint32_t{png[at + 1]} << 16 | uint32_t{png[at + 2]} << 8 | png[at + 3];
}

// What lies between the begin of the file, the header's 25 bytes, and the end's 12: the one chunk of pixels.
static Bytes filteredRowsOf(const Bytes& png, size_t size) {
    const size_t chunk = 8 + 25;
    const size_t length = numberAt(png, chunk);
    EXPECT_EQ(png.size(), chunk + 12 + length + 12);
    Bytes rows(size + 1); // room for one byte too many
    uLongf got = rows.size();
    EXPECT_EQ(uncompress(rows.data(), &got, png.data() + chunk + 8, length), Z_OK);
    EXPECT_EQ(got, size);
    rows.resize(size);
    return rows;
}

// As the standard tells a reader to do it, pixel by pixel. Says which filters it met.
static Bytes pixelsOf(const Bytes& png, int width, int height, int channels, std::set<int>& filters) {
    const int bytes = width * channels;
    const Bytes rows = filteredRowsOf(png, static_cast<size_t>((bytes + 1) * height));
    Bytes pixels;
    const auto pixel = [&](int y, int i) {
        return y < 0 || i < 0 ? 0 : int{pixels[static_cast<size_t>(y * bytes + i)]};
    };
    for (int y = 0; y < height; y++) {
        const int filter = rows[static_cast<size_t>(y * (bytes + 1))];
        filters.insert(filter);
        for (int i = 0; i < bytes; i++) {
            const int a = pixel(y, i - channels);
            const int b = pixel(y - 1, i);
            const int c = pixel(y - 1, i - channels);
            const int p = a + b - c;
            const int nearest = std::abs(p - a) <= std::abs(p - b) && std::abs(p - a) <= std::abs(p - c) ? a
                                : std::abs(p - b) <= std::abs(p - c)                                     ? b
                                                                                                         : c;
            const int guesses[] = {0, a, b, (a + b) / 2, nearest};
            pixels.push_back(
                static_cast<uint8_t>(rows[static_cast<size_t>(y * (bytes + 1) + 1 + i)] + guesses[filter]));
        }
    }
    return pixels;
}

// Noise, flat parts, slopes and repetitions: something for every filter.
static Bytes mixedPixels(int width, int height, int channels) {
    Bytes pixels;
    uint32_t noise = 1;
    for (int y = 0; y < height; y++)
        for (int i = 0; i < width * channels; i++) {
            noise = noise * 1664525u + 1013904223u;
            const int kinds[] = {
                static_cast<int>(noise >> 24), 200, i * 7, y * 5, i * 3 + y * 3, (i + y) * y / 9};
            pixels.push_back(static_cast<uint8_t>(kinds[(y / 8) % 6]));
        }
    return pixels;
}

TEST(PngFile, HoldsEveryPixelOfThePicture) {
    std::set<int> filters;
    for (const int channels : {3, 4})
        for (const auto& [width, height] : {std::pair{1, 1}, {1, 7}, {9, 1}, {64, 96}, {130, 57}}) {
            const Bytes pixels = mixedPixels(width, height, channels);
            const Bytes png = encodePng(width, height, channels, pixels);
            EXPECT_EQ(pixelsOf(png, width, height, channels, filters), pixels);
        }
    EXPECT_EQ(filters, (std::set{0, 1, 2, 3, 4}));
}

TEST(PngFile, SaysItsSizeAndItsColours) {
    const Bytes png = encodePng(5, 300, 3, mixedPixels(5, 300, 3));
    const Bytes begin = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n', 0, 0, 0, 13, 'I', 'H', 'D', 'R'};
    EXPECT_EQ(Bytes(png.begin(), png.begin() + 16), begin);
    EXPECT_EQ(numberAt(png, 16), 5u);
    EXPECT_EQ(numberAt(png, 20), 300u);
    EXPECT_EQ(Bytes(png.begin() + 24, png.begin() + 29), (Bytes{8, 2, 0, 0, 0}));
    EXPECT_EQ(numberAt(png, 29), crc32(0, png.data() + 12, 17));
    EXPECT_EQ(encodePng(1, 1, 4, {1, 2, 3, 4})[25], 6);
}

TEST(PngFile, MakesAFlatPictureSmall) {
    EXPECT_LT(encodePng(640, 480, 4, Bytes(640 * 480 * 4, 77)).size(), 3000u);
}

TEST(PngFile, IsNotWrittenWhereNothingCanBe) {
    const TempDir folder;
    EXPECT_FALSE(writeFile(folder.file("missing/picture.png"), {1, 2, 3}));
    EXPECT_FALSE(writeFile("/dev/full", {1, 2, 3}));
    EXPECT_TRUE(writeFile(folder.file("picture.png"), {1, 2, 3}));
}
