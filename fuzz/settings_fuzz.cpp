// Any bytes as a settings file: the record is in range afterwards, and comes back equal from what it saves.
#include "app/settings.h"
#include "temp_dir.h"

#include <cstdlib>
#include <tuple>

static auto fields(const Settings& s) {
    return std::tie(s.language, s.resolution, s.fullscreen, s.quality, s.vsync, s.showFps, s.musicVolume,
                    s.sfxVolume, s.tutorialDone);
}

static void check(bool holds) {
    if (!holds) std::abort();
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const TempDir dir;
    const std::string path = dir.file("settings.ini");
    writeText(path, std::string(reinterpret_cast<const char*>(data), size));

    Settings settings;
    check(loadSettings(settings, path));
    check(settings.language <= 13 && settings.resolution <= 2 && settings.quality <= 2);
    check(settings.musicVolume >= 0 && settings.musicVolume <= 100);
    check(settings.sfxVolume >= 0 && settings.sfxVolume <= 100);
    int width = 0;
    int height = 0;
    resolutionSize(settings, width, height);
    check(width >= 1280 && width <= 1920 && height >= 720 && height <= 1080);
    check(shadowMapSize(settings) % 1024 == 0);

    Settings again;
    check(saveSettings(settings, path) && loadSettings(again, path));
    check(fields(again) == fields(settings));
    return 0;
}
