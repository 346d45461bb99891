#include "audio/voices.h"

#include "audio/sample_rate.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <set>
#include <vector>

class VoicesTest : public testing::Test {
protected:
    int sounding() const {
        return static_cast<int>(
            std::count_if(voices.begin(), voices.end(), [](const Voice& v) { return v.active; }));
    }

    // What the voices sound in the next frames.
    std::vector<float> listen(int frames) {
        std::vector<float> sound(static_cast<size_t>(frames));
        for (int first = 0; first < frames; first += BLOCK_FRAMES)
            addVoices(voices, &sound[static_cast<size_t>(first)], std::min(BLOCK_FRAMES, frames - first));
        return sound;
    }

    Voice& only(const Voice& voice) {
        voices = {};
        voices[0] = voice;
        voices[0].active = 1;
        return voices[0];
    }

    Voices voices;
    uint32_t rng = 12345;
};

// --- Starting
// --------------------------------------------------------------------------------------------------

TEST_F(VoicesTest, TheGeneratorIsTheKnownOne) {
    uint32_t state = 12345;
    EXPECT_EQ(nextNoise(state), 87628868u);
    EXPECT_EQ(nextNoise(state), 71072467u);
}

TEST_F(VoicesTest, EveryEffectStartsItsVoices) {
    const int counts[SOUND_COUNT] = {1, 2, 2, 2, 1, 3, 2};
    for (int effect = 0; effect < SOUND_COUNT; effect++) {
        voices = {};
        startEffect(voices, rng, effect);
        EXPECT_EQ(sounding(), counts[effect]) << effect;
    }
}

TEST_F(VoicesTest, TheMissionIsThreeTonesOneAfterTheOther) {
    startEffect(voices, rng, SOUND_MISSION);
    const float frequencies[] = {523.0f, 659.0f, 784.0f};
    const float durations[] = {0.14f, 0.14f, 0.3f};
    const float delays[] = {0.0f, 0.14f, 0.28f};
    for (size_t i = 0; i < 3; i++) {
        EXPECT_EQ(voices[i].kind, VOICE_TONE);
        EXPECT_EQ(voices[i].wave, WAVE_SINE);
        EXPECT_EQ(voices[i].freqStart, frequencies[i]);
        EXPECT_EQ(voices[i].freqEnd, frequencies[i]);
        EXPECT_EQ(voices[i].duration, durations[i]);
        EXPECT_EQ(voices[i].delay, delays[i]);
        EXPECT_EQ(voices[i].gain, 0.28f);
        EXPECT_EQ(voices[i].time, 0.0f);
        EXPECT_EQ(voices[i].phase, 0.0f);
    }
}

TEST_F(VoicesTest, OtherValuesStartNothing) {
    for (const int effect : {-1, 7, 8, 255, 256, 1 << 30}) startEffect(voices, rng, effect);
    EXPECT_EQ(sounding(), 0);
    EXPECT_EQ(rng, 12345u);
}

TEST_F(VoicesTest, ATwentyFifthVoiceIsNotHeard) {
    for (int i = 0; i < 24; i++) startEffect(voices, rng, SOUND_CLICK);
    EXPECT_EQ(sounding(), 24);
    const uint32_t before = rng;
    startEffect(voices, rng, SOUND_REFUSED);
    EXPECT_EQ(sounding(), 24);
    EXPECT_TRUE(
        std::none_of(voices.begin(), voices.end(), [](const Voice& v) { return v.kind == VOICE_BUZZ; }));
    EXPECT_EQ(rng, before); // and takes no random step
}

TEST_F(VoicesTest, OneFreeVoiceSoundsTheFirstHalfOfAnEffectOfTwo) {
    for (int i = 0; i < VOICE_COUNT; i++) startEffect(voices, rng, SOUND_CLICK);
    voices[17].active = 0;
    startEffect(voices, rng, SOUND_BUILD);
    EXPECT_EQ(voices[17].kind, VOICE_THUMP);
    EXPECT_EQ(sounding(), VOICE_COUNT);
}

TEST_F(VoicesTest, TheFirstFreeVoiceIsTakenAndCleared) {
    startEffect(voices, rng, SOUND_DAY_BELL);
    startEffect(voices, rng, SOUND_CLICK);
    listen(3000); // the click is over
    EXPECT_FALSE(voices[2].active);
    EXPECT_GT(voices[2].phase, 0.0f);
    startEffect(voices, rng, SOUND_REFUSED);
    EXPECT_EQ(voices[2].kind, VOICE_BUZZ);
    EXPECT_EQ(voices[2].phase, 0.0f);
    EXPECT_EQ(voices[2].time, 0.0f);
}

TEST_F(VoicesTest, EveryVoiceTakesOneRandomStepForItsSeed) {
    startEffect(voices, rng, SOUND_MISSION);
    uint32_t expected = 12345;
    for (size_t i = 0; i < 3; i++)
        EXPECT_EQ(voices[i].noiseState, static_cast<uint32_t>(noiseUnit(expected) * 100000.0f) + 7);
    EXPECT_EQ(rng, expected);
}

TEST_F(VoicesTest, NoiseDiffersFromOneStartToTheNext) {
    std::set<uint32_t> seeds;
    std::set<float> sounds;
    for (int i = 0; i < 20; i++) {
        voices = {};
        startEffect(voices, rng, SOUND_DEMOLISH);
        seeds.insert(voices[0].noiseState);
        sounds.insert(listen(400)[399]);
    }
    EXPECT_EQ(seeds.size(), 20u);
    EXPECT_EQ(sounds.size(), 20u);
}

// --- Time
// ------------------------------------------------------------------------------------------------------

TEST_F(VoicesTest, AVoiceWaitsForItsDelayAndTheFrameThatEndsItIsSilent) {
    Voice& voice = only({.delay = 2.5f * FRAME_TIME,
                         .duration = 1.0f,
                         .freqStart = 5000.0f,
                         .freqEnd = 5000.0f,
                         .gain = 1.0f});
    const std::vector<float> sound = listen(5);
    EXPECT_EQ(sound[0], 0.0f);
    EXPECT_EQ(sound[1], 0.0f);
    EXPECT_EQ(sound[2], 0.0f); // the delay falls below 0 here
    EXPECT_GT(sound[3], 0.0f);
    EXPECT_EQ(voice.time, FRAME_TIME + FRAME_TIME);
    EXPECT_LT(voice.delay, 0.0f);
}

TEST_F(VoicesTest, AVoiceEndsWithItsDuration) {
    for (int effect = 0; effect < SOUND_COUNT; effect++) {
        voices = {};
        startEffect(voices, rng, effect);
        float length = 0.0f;
        for (const Voice& voice : voices)
            if (voice.active) length = std::max(length, voice.delay + voice.duration);
        const int frames = static_cast<int>(length * SAMPLE_RATE);
        const int drift = frames / 500 + 2; // the clock of a voice adds up single-precision steps
        listen(frames - drift);
        EXPECT_GT(sounding(), 0) << effect;
        listen(2 * drift);
        EXPECT_EQ(sounding(), 0) << effect;
    }
}

TEST_F(VoicesTest, ThePitchMovesInAStraightLine) {
    only({.duration = 1.0f, .freqStart = 1000.0f, .freqEnd = 400.0f, .gain = 1.0f});
    listen(SAMPLE_RATE / 4);
    float before = voices[0].phase;
    listen(1);
    float step = voices[0].phase - before;
    if (step < 0.0f) step += TWO_PI;
    EXPECT_NEAR(step / TWO_PI * SAMPLE_RATE, 850.0f, 0.5f);
}

TEST_F(VoicesTest, ThePhaseStaysWithinATurn) {
    only({.duration = 1.0f, .freqStart = 1568.0f, .freqEnd = 1568.0f, .gain = 1.0f});
    for (int i = 0; i < 20000; i++) {
        listen(1);
        ASSERT_GE(voices[0].phase, 0.0f);
        ASSERT_LE(voices[0].phase, TWO_PI);
    }
}

TEST_F(VoicesTest, AWaveOutsideTheListSoundsAsSine) {
    const Voice sine = {.duration = 0.5f, .freqStart = 700.0f, .freqEnd = 300.0f, .gain = 0.5f};
    Voice other = sine;
    other.wave = static_cast<VoiceWave>(9);
    only(sine);
    const std::vector<float> expected = listen(500);
    only(other);
    EXPECT_EQ(listen(500), expected);
}

TEST_F(VoicesTest, ALongEffectFallsLessWithinItsLength) {
    const auto levelAtHalf = [&](float duration) {
        only({.wave = WAVE_SQUARE,
              .duration = duration,
              .freqStart = 100.0f,
              .freqEnd = 100.0f,
              .gain = 1.0f});
        return std::fabs(listen(static_cast<int>(duration / 2 * SAMPLE_RATE)).back());
    };
    EXPECT_NEAR(levelAtHalf(0.5f), std::exp(-4.5f), 1e-4f); // not above half a second
    EXPECT_NEAR(levelAtHalf(0.6f), std::exp(-1.8f), 1e-4f);
}

TEST_F(VoicesTest, EffectsRiseInAThreeHundredthOfASecond) {
    only({.wave = WAVE_SQUARE, .duration = 100.0f, .freqStart = 50.0f, .freqEnd = 50.0f, .gain = 1.0f});
    const std::vector<float> sound = listen(300);
    EXPECT_NEAR(sound[72], 73 * FRAME_TIME * 300.0f, 1e-3f);
    EXPECT_NEAR(sound[200], 1.0f, 1e-3f);
}

TEST_F(VoicesTest, AnAmbientNoteRisesSlowlyFallsInSecondsAndHasASecondHarmonic) {
    only(
        {.kind = VOICE_AMBIENT_NOTE, .duration = 2.2f, .freqStart = 441.0f, .freqEnd = 441.0f, .gain = 1.0f});
    const std::vector<float> sound = listen(2 * SAMPLE_RATE);
    const auto expected = [](int i) { // the frame after i others
        const double time = (i + 1) / 44100.0;
        const double phase = time * 441.0 * 6.283185307;
        return std::min(1.0, time * 40.0) * std::exp(-2.2 * time) *
               (std::sin(phase) + 0.3 * std::sin(2 * phase));
    };
    for (int i = 0; i < 2 * SAMPLE_RATE; i += 7)
        ASSERT_NEAR(sound[static_cast<size_t>(i)], expected(i), 5e-3) << i;
}

TEST_F(VoicesTest, NoiseLiesInMinusOneToBelowOneAndIgnoresThePitch) {
    Voice voice = {.wave = WAVE_NOISE, .duration = 1e6f, .gain = 1.0f, .noiseState = 99};
    only(voice);
    const std::vector<float> sound = listen(20000);
    voice.freqStart = voice.freqEnd = 900.0f;
    only(voice);
    EXPECT_EQ(listen(20000), sound);
    EXPECT_GT(voices[0].phase, 0.0f); // it runs on all the same
    const auto [low, high] = std::minmax_element(sound.begin() + 200, sound.end());
    EXPECT_GE(*low, -1.0f);
    EXPECT_LT(*low, -0.99f);
    EXPECT_LT(*high, 1.0f);
    EXPECT_GT(*high, 0.99f);
}

TEST_F(VoicesTest, TheSquareHasTheSignOfTheSineAtEveryPhase) {
    const auto squareAt = [&](float phase) {
        only({.wave = WAVE_SQUARE, .duration = 1e6f, .gain = 1.0f, .phase = phase}).time = 1.0f;
        return listen(1)[0];
    };
    const auto expected = [](float phase) { return std::sin(phase) < 0.0f ? -1.0f : 1.0f; };
    for (const float middle : {0.0f, 3.14159274f, TWO_PI}) {
        float phase = middle;
        for (int i = 0; i < 50; i++) phase = std::nextafter(phase, 0.0f);
        for (int i = 0; i < 100 && phase <= TWO_PI; i++, phase = std::nextafter(phase, 7.0f))
            ASSERT_NEAR(squareAt(phase), expected(phase), 1e-4f) << phase;
    }
    for (float phase = 0.0f; phase <= TWO_PI; phase += 0.001f)
        ASSERT_NEAR(squareAt(phase), expected(phase), 1e-4f);
}
