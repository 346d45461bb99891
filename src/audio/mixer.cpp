#include "audio/mixer.h"

#include "audio/sample_rate.h"
#include "audio/wave_shapes.h"

#include <algorithm>
#include <atomic>
#include <cassert>
#include <cmath>

using Block = std::array<float, BLOCK_FRAMES>;

constexpr float CLIP_KNEE = 0.8f;
constexpr float CLIP_ROOM = 0.19999999f;       // just below 1 - CLIP_KNEE, so that 1 is never passed
constexpr float AMBIENT_RATE = 3.4013603e-05f; // a frame: 1.5 a second
constexpr float AMBIENT_STEP_A = 0.010471976f; // radians a frame: 73.5 Hz
constexpr float AMBIENT_STEP_B = 0.015707964f; // 110.25 Hz
constexpr float NOTE_FREQUENCIES[] = {293.66f, 329.63f, 349.23f, 392.0f, 440.0f, 523.25f}; // hertz

float softClip(float value) {
    const float size = std::fabs(value);
    if (size <= CLIP_KNEE) return value;
    return std::copysign(CLIP_KNEE + CLIP_ROOM * std::tanh((size - CLIP_KNEE) / CLIP_ROOM), value);
}

// Both random steps are taken even when no note sounds, so that the generator runs on under the music.
static void startAmbientNote(AudioEngine& audio) {
    audio.ambientTimer = noiseUnit(audio.rng) * 1.6f + 1.2f;
    const int index = static_cast<int>(noiseUnit(audio.rng) * 6.0f) % 6; // because noiseUnit reaches 1
    static_assert(std::size(NOTE_FREQUENCIES) == 6);
    if (audio.ambientLevel < 0.5f) return;
    Voice* voice = freeVoice(audio.voices);
    if (!voice) return;
    *voice = {.active = 1,
              .kind = VOICE_AMBIENT_NOTE,
              .wave = WAVE_SINE,
              .duration = 2.2f,
              .freqStart = NOTE_FREQUENCIES[index],
              .freqEnd = NOTE_FREQUENCIES[index],
              .gain = 0.1f,
              .noiseState = 3};
}

struct BlockSound {
    Block level = {};
    Block phaseA = {};
    Block phaseB = {};
    Block voices = {};
};

static void advancePhase(float& phase, float step) {
    phase += step;
    if (phase > TWO_PI) phase -= TWO_PI;
}

// Moves the engine on by a block. Where a note begins, the voices are first summed up to there, because it
// takes the place of one that has just ended.
static void walkBlock(AudioEngine& audio, float target, int frames, BlockSound& sound) {
    int summed = 0;
    for (int i = 0; i < frames; i++) {
        audio.ambientLevel += (target - audio.ambientLevel) * AMBIENT_RATE;
        advancePhase(audio.ambientPhaseA, AMBIENT_STEP_A);
        advancePhase(audio.ambientPhaseB, AMBIENT_STEP_B);
        sound.level[i] = audio.ambientLevel;
        sound.phaseA[i] = audio.ambientPhaseA;
        sound.phaseB[i] = audio.ambientPhaseB;
        audio.ambientTimer -= FRAME_TIME;
        if (audio.ambientTimer > 0.0f) continue;
        addVoices(audio.voices, &sound.voices[summed], i - summed);
        summed = i;
        startAmbientNote(audio);
    }
    addVoices(audio.voices, &sound.voices[summed], frames - summed);
}

// The drone's slow part counts from the start of each buffer, `first` frames back, so that it barely moves:
// otherwise the drone would swell every 14 seconds.
static void fillBed(const BlockSound& sound, int first, Block& bed) {
    for (int i = 0; i < BLOCK_FRAMES; i++) {
        const float slow = sineOfPhase(static_cast<float>(first + i) * 0.43982297f * FRAME_TIME);
        const float low = sineOfPhase(sound.phaseA[i]);
        const float fifth = sineOfPhase(sound.phaseB[i]);
        bed[i] = ((0.2f * slow + 0.8f) * (low * 0.035f) + fifth * 0.022f) * sound.level[i];
    }
}

// The main thread writes the volumes without the lock: a buffer may mix an old one with a new one.
static float readVolume(float& volume) {
    return std::atomic_ref<float>(volume).load(std::memory_order_relaxed);
}

void audioRender(AudioEngine& audio, float* stereo, int frames) {
    assert(frames <= 65536); // no buffer of SDL is longer; at 630,000 the slow part would pass a turn
    assert(audio.ambientLevel >= 0.0f && audio.ambientLevel <= 1.0f);
    const float musicVolume = readVolume(audio.musicVolume);
    const float sfxVolume = readVolume(audio.sfxVolume);
    musicMix(audio.music, stereo, frames, musicVolume);
    const bool silent = audio.music.mode == MUSIC_OFF || !audio.music.active;
    const float target = silent ? 1.0f : 0.0f;

    for (int first = 0; first < frames; first += BLOCK_FRAMES) {
        const int count = std::min(BLOCK_FRAMES, frames - first);
        BlockSound sound;
        Block bed;
        walkBlock(audio, target, count, sound);
        fillBed(sound, first, bed);
        float* out = stereo + 2 * first;
        for (int i = 0; i < count; i++) {
            const float mono = bed[i] * musicVolume + sound.voices[i] * sfxVolume;
            out[2 * i] = softClip(out[2 * i] + mono);
            out[2 * i + 1] = softClip(out[2 * i + 1] + mono);
        }
    }
}
