// make-icons FOLDER: paints the logo into the icon files of a release.
#include "icon_files.h"
#include "png_file.h"
#include "ui/logo.h"

#include <cstdio>
#include <string>

constexpr int ICON_SIZES[] = {16, 32, 48, 64, 128, 256};

static bool save(const std::string& path, const std::vector<uint8_t>& bytes) {
    const bool written = writeFile(path, bytes);
    if (!written) std::fprintf(stderr, "make-icons: cannot write %s\n", path.c_str());
    return written;
}

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: make-icons FOLDER\n");
        return 2;
    }
    const std::string stem = std::string(argv[1]) + "/orlavane";
    std::vector<IconPicture> pictures;
    for (const int size : ICON_SIZES) {
        std::vector<uint8_t> pixels;
        paintLogo(size, pixels);
        pictures.push_back({size, encodePng(size, size, 4, pixels)});
        if (!save(stem + "-" + std::to_string(size) + ".png", pictures.back().png)) return 1;
    }
    return save(stem + ".ico", encodeIco(pictures)) ? 0 : 1;
}
