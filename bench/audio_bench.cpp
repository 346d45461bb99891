// One buffer of the audio callback, 1024 frames or 23.2 ms, as the game renders it and in the plain form,
// with its share of that time. The hash of the first second in 16 bits tells whether the sound has changed;
// the two forms may differ in a last bit here and there.
#include "audio/mixer.h"
#include "audio/plain_sound.h"
#include "audio/sample_rate.h"
#include "audio/tracks.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>

constexpr int BUFFER_FRAMES = 1024;

using Render = void (*)(AudioEngine& audio, float* stereo, int frames);

// Every voice sounds, with music or with the bed. The voices are set back before each buffer, so that none
// ends.
static AudioEngine busyEngine(bool withVoices, bool withMusic) {
    AudioEngine audio;
    if (withMusic) {
        static const Bytes track = lameTrack(44100, 2, 20.0f, "-b 320");
        audio.music.tracks.push_back(trackOf(track));
        musicSetMode(audio.music, MUSIC_GAME);
    }
    for (int i = 0; withVoices && freeVoice(audio.voices); i++)
        startEffect(audio.voices, audio.rng, i % SOUND_COUNT);
    for (Voice& voice : audio.voices) voice.delay = 0.0f;
    return audio;
}

static uint64_t hashOfFirstSecond(AudioEngine audio, Render render) {
    uint64_t hash = 14695981039346656037u;
    std::vector<float> buffer(2 * BUFFER_FRAMES);
    for (int frame = 0; frame < SAMPLE_RATE; frame += BUFFER_FRAMES) {
        std::fill(buffer.begin(), buffer.end(), 0.0f);
        render(audio, buffer.data(), BUFFER_FRAMES);
        for (const float sample : buffer)
            hash = (hash ^ static_cast<uint64_t>(std::lround(sample * 32767.0f) + 32768)) * 1099511628211u;
    }
    return hash;
}

static void runBuffers(benchmark::State& state, Render render, bool withVoices, bool withMusic) {
    AudioEngine audio = busyEngine(withVoices, withMusic);
    char label[32];
    std::snprintf(label, sizeof label, "%016llx",
                  static_cast<unsigned long long>(hashOfFirstSecond(audio, render)));
    state.SetLabel(label);
    const Voices voices = audio.voices;
    std::vector<float> buffer(2 * BUFFER_FRAMES);
    for (auto _ : state) {
        audio.voices = voices;
        std::fill(buffer.begin(), buffer.end(), 0.0f);
        render(audio, buffer.data(), BUFFER_FRAMES);
        benchmark::DoNotOptimize(buffer.data());
    }
    const double percent = static_cast<double>(BUFFER_FRAMES) / SAMPLE_RATE / 100.0; // seconds
    state.counters["percent_of_buffer"] = benchmark::Counter(
        percent, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

BENCHMARK_CAPTURE(runBuffers, bed, audioRender, false, false)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(runBuffers, bed_plain, plainRender, false, false)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(runBuffers, music, audioRender, false, true)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(runBuffers, voices, audioRender, true, false)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(runBuffers, voices_plain, plainRender, true, false)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(runBuffers, all, audioRender, true, true)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(runBuffers, all_plain, plainRender, true, true)->Unit(benchmark::kMicrosecond);
