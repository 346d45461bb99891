// What the program asks to be heard.
#pragma once

#include <array>
#include <cstdint>

enum SoundEffect : uint8_t {
    SOUND_CLICK,
    SOUND_BUILD,
    SOUND_DEMOLISH,
    SOUND_CHIME,
    SOUND_REFUSED,
    SOUND_MISSION,
    SOUND_DAY_BELL,
    SOUND_COUNT
};

struct AudioEngine {
    std::array<uint32_t, SOUND_COUNT> played = {}; // how often each effect was asked for
};

// A value above the last effect plays nothing.
void audioPlayEffect(AudioEngine& audio, int effect);
