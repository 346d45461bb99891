#include "audio/plain_sound.h"

#include <algorithm>
#include <cmath>

static constexpr float DT = 2.2675737e-05f;
static constexpr float TURN = 6.2831855f;

static uint32_t step(uint32_t& state) { return state = state * 1664525u + 1013904223u; }
static float unit(uint32_t state) { return static_cast<float>(state >> 8) / 16777215.0f; }

// A voice in each row; an effect has one to three.
struct PlainRow {
    int effect;
    int kind;
    int wave;
    float freqStart;
    float freqEnd;
    float duration;
    float gain;
    float delay;
};

static constexpr PlainRow EFFECTS[] = {
    {0, 0, 0, 1400, 1100, 0.05f, 0.3f, 0}, // click
    {1, 1, 0, 160, 70, 0.18f, 0.55f, 0},   // build
    {1, 2, 2, 0, 0, 0.08f, 0.2f, 0},
    {2, 2, 2, 0, 0, 0.3f, 0.45f, 0}, // demolish
    {2, 1, 0, 120, 60, 0.25f, 0.25f, 0},
    {3, 0, 0, 1046, 1046, 0.08f, 0.3f, 0}, // chime
    {3, 0, 0, 1568, 1568, 0.16f, 0.25f, 0.08f},
    {4, 3, 1, 180, 150, 0.16f, 0.22f, 0}, // refused
    {5, 0, 0, 523, 523, 0.14f, 0.28f, 0}, // mission
    {5, 0, 0, 659, 659, 0.14f, 0.28f, 0.14f},
    {5, 0, 0, 784, 784, 0.3f, 0.28f, 0.28f},
    {6, 4, 0, 880, 880, 1.6f, 0.2f, 0}, // day bell
    {6, 4, 0, 1320, 1320, 1.2f, 0.08f, 0},
};

static void startPlainVoice(AudioEngine& audio, const PlainRow& row) {
    for (Voice& voice : audio.voices) {
        if (voice.active) continue;
        voice = {.active = 1,
                 .kind = static_cast<VoiceKind>(row.kind),
                 .wave = static_cast<VoiceWave>(row.wave),
                 .delay = row.delay,
                 .duration = row.duration,
                 .freqStart = row.freqStart,
                 .freqEnd = row.freqEnd,
                 .gain = row.gain,
                 .noiseState = static_cast<uint32_t>(unit(step(audio.rng)) * 100000.0f) + 7};
        return;
    }
}

void plainStartEffect(AudioEngine& audio, int effect) {
    for (const PlainRow& row : EFFECTS)
        if (row.effect == effect) startPlainVoice(audio, row);
}

static float rawSample(Voice& voice) {
    if (voice.wave == WAVE_SQUARE) return std::sin(voice.phase) < 0.0f ? -1.0f : 1.0f;
    if (voice.wave == WAVE_NOISE)
        return static_cast<float>(step(voice.noiseState) >> 8) * 1.1920929e-07f - 1.0f;
    return std::sin(voice.phase);
}

static float voiceFrame(Voice& voice) {
    if (voice.delay > 0.0f) {
        voice.delay -= DT;
        return 0.0f;
    }
    voice.time += DT;
    if (voice.time >= voice.duration) {
        voice.active = 0;
        return 0.0f;
    }
    const float t = voice.time / voice.duration;
    const float f = (voice.freqEnd - voice.freqStart) * t + voice.freqStart;
    voice.phase += f * TURN * DT;
    if (voice.phase > TURN) voice.phase -= TURN;
    float sample = rawSample(voice);
    float attack;
    float decay;
    if (voice.kind == VOICE_AMBIENT_NOTE) {
        attack = std::min(1.0f, voice.time * 40.0f);
        decay = std::exp(-2.2f * voice.time);
        sample += 0.3f * std::sin(2.0f * voice.phase);
    } else {
        attack = std::min(1.0f, voice.time * 300.0f);
        decay = std::exp((voice.duration > 0.5f ? 0.6f : 1.5f) * (-6.0f * t));
    }
    return attack * decay * sample * voice.gain;
}

static void ambientNote(AudioEngine& audio) {
    static const float notes[] = {293.66f, 329.63f, 349.23f, 392.0f, 440.0f, 523.25f};
    const uint32_t r1 = step(audio.rng);
    const uint32_t r2 = step(audio.rng);
    audio.ambientTimer = unit(r1) * 1.6f + 1.2f;
    const int index = static_cast<int>(unit(r2) * 6.0f) % 6;
    if (audio.ambientLevel < 0.5f) return;
    for (Voice& voice : audio.voices) {
        if (voice.active) continue;
        voice = {};
        voice.active = 1;
        voice.kind = VOICE_AMBIENT_NOTE;
        voice.duration = 2.2f;
        voice.gain = 0.1f;
        voice.freqStart = voice.freqEnd = notes[index];
        voice.noiseState = 3;
        return;
    }
}

static float ambientFrame(AudioEngine& audio, int i, float target) {
    audio.ambientLevel += (target - audio.ambientLevel) * 3.4013603e-05f;
    audio.ambientPhaseA += 0.010471976f;
    if (audio.ambientPhaseA > TURN) audio.ambientPhaseA -= TURN;
    audio.ambientPhaseB += 0.015707964f;
    if (audio.ambientPhaseB > TURN) audio.ambientPhaseB -= TURN;
    const float s1 = std::sin(static_cast<float>(i) * 0.43982297f * DT + audio.ambientPhaseA * 0.0f);
    const float s2 = std::sin(audio.ambientPhaseA);
    const float s3 = std::sin(audio.ambientPhaseB);
    const float ambient = ((0.2f * s1 + 0.8f) * (s2 * 0.035f) + s3 * 0.022f) * audio.ambientLevel;
    audio.ambientTimer -= DT;
    if (audio.ambientTimer <= 0.0f) ambientNote(audio);
    return ambient;
}

static float clipped(float x) {
    if (std::fabs(x) <= 0.8f) return x;
    const float size = 0.8f + 0.19999999f * std::tanh((std::fabs(x) - 0.8f) / 0.19999999f);
    return x < 0.0f ? -size : size;
}

void plainRender(AudioEngine& audio, float* stereo, int frames) {
    musicMix(audio.music, stereo, frames, audio.musicVolume);
    const float target = audio.music.mode == MUSIC_OFF || !audio.music.active ? 1.0f : 0.0f;
    for (int i = 0; i < frames; i++) {
        const float ambient = ambientFrame(audio, i, target);
        float voiceSum = 0.0f;
        for (Voice& voice : audio.voices)
            if (voice.active) voiceSum += voiceFrame(voice);
        const float m = ambient * audio.musicVolume + voiceSum * audio.sfxVolume;
        stereo[2 * i] = clipped(stereo[2 * i] + m);
        stereo[2 * i + 1] = clipped(stereo[2 * i + 1] + m);
    }
}
