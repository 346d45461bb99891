// The voices of the synthesised sounds: each a short tone or hiss with a falling loudness. Nothing stops one
// early.
#pragma once

#include <array>
#include <cstdint>

constexpr int VOICE_COUNT = 24;
constexpr int BLOCK_FRAMES = 64;     // the longest stretch that is worked out at once
constexpr float TWO_PI = 6.2831855f; // radians

// The family of a voice. Only the ambient note has a shape of its own.
enum VoiceKind : int32_t {
    VOICE_TONE,
    VOICE_THUMP,
    VOICE_HISS,
    VOICE_BUZZ,
    VOICE_BELL,
    VOICE_AMBIENT_NOTE
};

enum VoiceWave : int32_t { // any other value sounds as sine
    WAVE_SINE,
    WAVE_SQUARE,
    WAVE_NOISE
};

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

struct Voice {
    uint8_t active = 0;
    VoiceKind kind = VOICE_TONE;
    VoiceWave wave = WAVE_SINE;
    float time = 0.0f;      // seconds sounded so far
    float delay = 0.0f;     // seconds still to wait
    float duration = 0.0f;  // seconds
    float freqStart = 0.0f; // hertz, moving in a straight line to freqEnd over the duration
    float freqEnd = 0.0f;
    float gain = 0.0f;
    float phase = 0.0f; // radians, 0 to TWO_PI
    uint32_t noiseState = 1;
};

using Voices = std::array<Voice, VOICE_COUNT>;

// The generator of all chance in the sounds.
inline uint32_t nextNoise(uint32_t& state) { return state = state * 1664525u + 1013904223u; }
// 0 to 1, both ends included.
inline float noiseUnit(uint32_t& state) { return static_cast<float>(nextNoise(state) >> 8) / 16777215.0f; }

// Null when all sound: whatever comes on top of them is not heard.
Voice* freeVoice(Voices& voices);

// Starts the voices of an effect; a value above the last one starts nothing.
void startEffect(Voices& voices, uint32_t& rng, int effect);

// Adds what the voices sound in the next frames, at most BLOCK_FRAMES, to `sum`, which is mono.
void addVoices(Voices& voices, float* sum, int frames);
