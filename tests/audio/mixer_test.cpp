#include "audio/mixer.h"

#include "allocation_count.h"
#include "audio/plain_sound.h"
#include "audio/sample_rate.h"
#include "audio/tracks.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

constexpr float UNIT = 1.0f / 32768.0f; // of 16-bit sound

class MixerTest : public testing::Test {
protected:
    // Left samples of the next buffers; the right ones must be the same when there is no music.
    std::vector<float> listen(int frames, int bufferFrames = 1024) {
        std::vector<float> left;
        for (int first = 0; first < frames; first += bufferFrames) {
            const int count = std::min(bufferFrames, frames - first);
            std::vector<float> stereo(static_cast<size_t>(2 * count));
            audioRender(audio, stereo.data(), count);
            for (size_t i = 0; i < stereo.size(); i += 2) left.push_back(stereo[i]);
        }
        return left;
    }

    int notes() const {
        return static_cast<int>(std::count_if(audio.voices.begin(), audio.voices.end(), [](const Voice& v) {
            return v.active && v.kind == VOICE_AMBIENT_NOTE;
        }));
    }

    void play(const Bytes& track) {
        audio.music.tracks = {trackOf(track)};
        musicSetMode(audio.music, MUSIC_GAME);
    }

    AudioEngine audio;
};

// How much of a frequency is in the sound: the amplitude of a sine of it.
static double tone(const std::vector<float>& sound, double frequency) {
    double real = 0.0;
    double imaginary = 0.0;
    for (size_t i = 0; i < sound.size(); i++) {
        const double angle = 6.283185307179586 * frequency * static_cast<double>(i) / SAMPLE_RATE;
        real += static_cast<double>(sound[i]) * std::cos(angle);
        imaginary += static_cast<double>(sound[i]) * std::sin(angle);
    }
    return 2.0 * std::hypot(real, imaginary) / static_cast<double>(sound.size());
}

// --- The engine at its start
// -----------------------------------------------------------------------------------

TEST_F(MixerTest, AnEngineIsConstructedQuietAndWithoutADevice) {
    EXPECT_EQ(audio.device, 0u);
    EXPECT_EQ(audio.musicVolume, 0.5f);
    EXPECT_EQ(audio.sfxVolume, 0.7f);
    EXPECT_EQ(audio.ambientLevel, 1.0f);
    EXPECT_EQ(audio.ambientTimer, 1.0f);
    EXPECT_EQ(audio.ambientPhaseA, 0.0f);
    EXPECT_EQ(audio.ambientPhaseB, 0.0f);
    EXPECT_EQ(audio.rng, 12345u);
    for (const Voice& voice : audio.voices) {
        EXPECT_FALSE(voice.active);
        EXPECT_EQ(voice.kind, 0);
        EXPECT_EQ(voice.wave, 0);
        for (const float value : {voice.time, voice.delay, voice.duration, voice.freqStart, voice.freqEnd,
                                  voice.gain, voice.phase})
            EXPECT_EQ(value, 0.0f);
        EXPECT_EQ(voice.noiseState, 1u);
    }
}

// --- The bed
// ---------------------------------------------------------------------------------------------------

TEST_F(MixerTest, TheBedIsTwoTonesAFifthApart) {
    audio.musicVolume = 1.0f;
    audio.ambientTimer = 100.0f;
    const std::vector<float> sound = listen(4 * SAMPLE_RATE);
    EXPECT_NEAR(tone(sound, 73.5), 0.8 * 0.035, 2e-4); // the slow wobble stands near zero
    EXPECT_NEAR(tone(sound, 110.25), 0.022, 2e-4);
    EXPECT_LT(tone(sound, 147.0), 2e-4);
    EXPECT_LT(tone(sound, 90.0), 2e-4);
}

TEST_F(MixerTest, TheSlowPartRestartsAtEveryBuffer) {
    audio.musicVolume = 1.0f;
    AudioEngine once = audio;
    std::vector<float> whole(2 * 8192);
    audioRender(once, whole.data(), 8192);
    const std::vector<float> parts = listen(8192, 64);
    const auto differenceAround = [&](size_t middle) {
        float largest = 0.0f;
        for (size_t i = middle - 300; i < middle + 300; i++) // a turn of the low tone
            largest = std::max(largest, std::fabs(parts[i] - whole[2 * i]));
        return largest;
    };
    EXPECT_NEAR(differenceAround(7000), 0.2 * std::sin(7000 * 0.43982297 / SAMPLE_RATE) * 0.035, 5e-5);
    EXPECT_LT(differenceAround(300), 5e-5f);
}

TEST_F(MixerTest, TheBedIsTheSameInBothEarsAndFollowsTheMusicVolumeOnly) {
    std::vector<float> stereo(2 * 512);
    audio.musicVolume = 0.0f;
    audio.sfxVolume = 1.0f;
    audioRender(audio, stereo.data(), 512);
    EXPECT_TRUE(std::all_of(stereo.begin(), stereo.end(), [](float x) { return x == 0.0f; }));
    audio.musicVolume = 1.0f;
    audioRender(audio, stereo.data(), 512);
    EXPECT_NE(stereo[300], 0.0f);
    for (size_t i = 0; i < stereo.size(); i += 2) ASSERT_EQ(stereo[i], stereo[i + 1]);
}

TEST_F(MixerTest, EffectsFollowTheEffectsVolumeOnly) {
    audio.musicVolume = 0.0f;
    audio.sfxVolume = 0.25f;
    startEffect(audio.voices, audio.rng, SOUND_DAY_BELL);
    AudioEngine loud = audio;
    const float quiet = listen(2000).back();
    audio = loud;
    audio.sfxVolume = 0.5f;
    EXPECT_FLOAT_EQ(listen(2000).back(), 2.0f * quiet);
}

TEST_F(MixerTest, TheBedMakesWayForMusicAndComesBackWhenItEnds) {
    play(silentFrames({}, 200)); // 5.2 seconds
    listen(2 * SAMPLE_RATE);
    EXPECT_NEAR(audio.ambientLevel, std::exp(-3.0f), 1e-3f); // 1.5 a second
    audio.music.tracks.clear();
    audio.music.pcm.clear();
    audio.music.readFrame = 0;
    audio.music.active = false;
    const float before = audio.ambientLevel;
    listen(SAMPLE_RATE);
    EXPECT_NEAR(1.0f - audio.ambientLevel, (1.0f - before) * std::exp(-1.5f), 1e-3f);
}

TEST_F(MixerTest, TheBedKeepsItsLevelInAModeWithoutTracks) {
    musicSetMode(audio.music, MUSIC_MENU);
    listen(SAMPLE_RATE);
    EXPECT_EQ(audio.ambientLevel, 1.0f);
}

TEST_F(MixerTest, TheBedKeepsItsLevelWhereMusicIsOpenButOff) {
    audio.music.tracks = {trackOf(silentFrames({}, 20))};
    ASSERT_TRUE(musicOpen(audio.music, 0));
    listen(1024);
    EXPECT_EQ(audio.ambientLevel, 1.0f);
}

// --- Ambient notes
// ---------------------------------------------------------------------------------------------

TEST_F(MixerTest, TheFirstNoteComesAfterASecondAndTheNextByChance) {
    listen(SAMPLE_RATE - 2048);
    EXPECT_EQ(notes(), 0);
    listen(4096);
    ASSERT_EQ(notes(), 1);
    const Voice& note = audio.voices[0];
    uint32_t state = 12345;
    const float pause = noiseUnit(state) * 1.6f + 1.2f;
    const int index = static_cast<int>(noiseUnit(state) * 6.0f) % 6;
    const float frequencies[] = {293.66f, 329.63f, 349.23f, 392.0f, 440.0f, 523.25f};
    EXPECT_EQ(audio.rng, state);
    EXPECT_EQ(note.freqStart, frequencies[index]);
    EXPECT_EQ(note.freqEnd, frequencies[index]);
    EXPECT_EQ(note.duration, 2.2f);
    EXPECT_EQ(note.gain, 0.1f);
    EXPECT_EQ(note.wave, WAVE_SINE);
    EXPECT_EQ(note.noiseState, 3u);
    EXPECT_NEAR(audio.ambientTimer + note.time, pause, 1e-3f);
}

TEST_F(MixerTest, PausesAreOfOnePointTwoToTwoPointEightSecondsAndEveryNoteComes) {
    std::array<int, 6> heard = {};
    const float frequencies[] = {293.66f, 329.63f, 349.23f, 392.0f, 440.0f, 523.25f};
    for (int i = 0; i < 300; i++) {
        audio.voices = {};
        audio.ambientTimer = 0.0f;
        listen(1);
        EXPECT_GE(audio.ambientTimer, 1.2f);
        EXPECT_LE(audio.ambientTimer, 2.8f);
        const auto* found =
            std::find(std::begin(frequencies), std::end(frequencies), audio.voices[0].freqStart);
        ASSERT_NE(found, std::end(frequencies));
        heard[static_cast<size_t>(found - frequencies)]++;
    }
    EXPECT_GT(*std::min_element(heard.begin(), heard.end()), 20);
}

TEST_F(MixerTest, TheTopOfTheChanceIsTheFirstNoteAgain) {
    uint32_t state = 0; // such that the second step from it gives exactly 1
    for (;; state++) {
        uint32_t next = state;
        nextNoise(next);
        if (noiseUnit(next) == 1.0f) break;
    }
    audio.rng = state;
    audio.ambientTimer = 0.0f;
    listen(1);
    EXPECT_EQ(audio.voices[0].freqStart, 293.66f);
}

TEST_F(MixerTest, UnderMusicNoNotesBeginButTheirClockRunsOn) {
    audio.ambientLevel = 0.45f;
    audio.ambientTimer = 0.0f;
    listen(1);
    EXPECT_EQ(notes(), 0);
    EXPECT_NE(audio.rng, 12345u);
    EXPECT_GE(audio.ambientTimer, 1.2f);

    // The level of a half is enough, once the frame has moved it: nothing below is.
    float level = 0.49998f;
    while (level + (1.0f - level) * 3.4013603e-05f < 0.5f) level = std::nextafter(level, 1.0f);
    for (const float before : {std::nextafter(level, 0.0f), level}) {
        audio.ambientLevel = before;
        audio.ambientTimer = 0.0f;
        listen(1);
        EXPECT_EQ(notes(), before == level ? 1 : 0);
    }
    EXPECT_EQ(audio.ambientLevel, 0.5f);
}

TEST_F(MixerTest, ANoteIsDueInTheFrameInWhichItsTimeIsUp) {
    for (const float time : {FRAME_TIME, std::nextafter(FRAME_TIME, 1.0f)}) {
        audio = {};
        audio.ambientTimer = time;
        listen(1);
        EXPECT_EQ(notes(), time == FRAME_TIME ? 1 : 0);
    }
}

TEST_F(MixerTest, ANoteWithoutAFreeVoiceIsDropped) {
    while (freeVoice(audio.voices)) startEffect(audio.voices, audio.rng, SOUND_DAY_BELL);
    audio.ambientTimer = 0.0f;
    listen(1);
    EXPECT_EQ(notes(), 0);
    EXPECT_GE(audio.ambientTimer, 1.2f);
}

TEST_F(MixerTest, ANoteTakesTheVoiceThatEndedInTheFrameBefore) {
    for (const int frame : {1, 5, 63, 64, 65, 1000}) {
        audio = {};
        while (Voice* voice = freeVoice(audio.voices)) *voice = {.active = 1, .duration = 100.0f};
        audio.voices[7].duration = (static_cast<float>(frame) + 0.5f) * FRAME_TIME; // ends in this frame
        audio.ambientTimer = (static_cast<float>(frame) + 1.5f) * FRAME_TIME;       // due one frame later
        listen(1024);
        EXPECT_EQ(audio.voices[7].kind, VOICE_AMBIENT_NOTE) << frame;
        audio.voices[7].kind = VOICE_TONE;
        EXPECT_EQ(notes(), 0);
    }
}

// --- Loudness
// --------------------------------------------------------------------------------------------------

TEST_F(MixerTest, SoundUpToFourFifthsPassesUnchanged) {
    for (const float x : {0.0f, 0.1f, -0.5f, 0.79999f, 0.8f, -0.8f}) EXPECT_EQ(softClip(x), x);
}

TEST_F(MixerTest, LouderSoundIsBentAndNeverLeavesTheRange) {
    float before = 0.8f;
    for (float x = 0.81f; x < 3.0f; x += 0.01f) {
        EXPECT_EQ(softClip(x), 0.8f + 0.19999999f * std::tanh((x - 0.8f) / 0.19999999f));
        EXPECT_EQ(softClip(-x), -softClip(x));
        EXPECT_GE(softClip(x), before);
        EXPECT_LE(softClip(x), x);
        before = softClip(x);
    }
    for (const float x : {3.0f, 10.0f, 1e6f, 3e38f}) {
        EXPECT_LE(softClip(x), 1.0f);
        EXPECT_GE(softClip(-x), -1.0f);
    }
}

TEST_F(MixerTest, AllVoicesAtOnceStayInRange) {
    while (freeVoice(audio.voices)) startEffect(audio.voices, audio.rng, SOUND_BUILD);
    audio.sfxVolume = 1.2f; // as the options can leave it
    const std::vector<float> sound = listen(SAMPLE_RATE / 4);
    EXPECT_LE(*std::max_element(sound.begin(), sound.end()), 1.0f);
    EXPECT_GE(*std::min_element(sound.begin(), sound.end()), -1.0f);
    EXPECT_GT(*std::max_element(sound.begin(), sound.end()), 0.99f);
}

// --- The plain form
// --------------------------------------------------------------------------------------------

static void expectSameState(const AudioEngine& a, const AudioEngine& b) {
    ASSERT_EQ(a.ambientLevel, b.ambientLevel);
    ASSERT_EQ(a.ambientPhaseA, b.ambientPhaseA);
    ASSERT_EQ(a.ambientPhaseB, b.ambientPhaseB);
    ASSERT_EQ(a.ambientTimer, b.ambientTimer);
    ASSERT_EQ(a.rng, b.rng);
    for (size_t i = 0; i < a.voices.size(); i++) {
        ASSERT_EQ(a.voices[i].active, b.voices[i].active) << i;
        ASSERT_EQ(a.voices[i].kind, b.voices[i].kind) << i;
        ASSERT_EQ(a.voices[i].wave, b.voices[i].wave) << i;
        ASSERT_EQ(a.voices[i].time, b.voices[i].time) << i;
        ASSERT_EQ(a.voices[i].delay, b.voices[i].delay) << i;
        ASSERT_EQ(a.voices[i].duration, b.voices[i].duration) << i;
        ASSERT_EQ(a.voices[i].freqStart, b.voices[i].freqStart) << i;
        ASSERT_EQ(a.voices[i].freqEnd, b.voices[i].freqEnd) << i;
        ASSERT_EQ(a.voices[i].gain, b.voices[i].gain) << i;
        ASSERT_EQ(a.voices[i].phase, b.voices[i].phase) << i;
        ASSERT_EQ(a.voices[i].noiseState, b.voices[i].noiseState) << i;
    }
}

// Renders the next buffer of both; each sample may differ by `tolerance`.
static void compareBuffer(AudioEngine& fast, AudioEngine& plain, int frames, float tolerance = UNIT) {
    std::vector<float> a(static_cast<size_t>(2 * frames));
    std::vector<float> b = a;
    audioRender(fast, a.data(), frames);
    plainRender(plain, b.data(), frames);
    for (size_t i = 0; i < a.size(); i++) ASSERT_NEAR(a[i], b[i], tolerance) << "at " << i;
    ASSERT_NO_FATAL_FAILURE(expectSameState(fast, plain));
}

// Plays the same evening on both, in buffers of any length, and holds them against each other.
static void comparePlainAndFast(AudioEngine fast, int buffers, int maxFrames, uint32_t seed) {
    AudioEngine plain = fast;
    std::mt19937 random(seed);
    for (int buffer = 0; buffer < buffers; buffer++) {
        if (random() % 3 == 0) {
            const int effect = static_cast<int>(random() % SOUND_COUNT);
            startEffect(fast.voices, fast.rng, effect);
            plainStartEffect(plain, effect);
        }
        if (random() % 40 == 0) {
            const auto mode = static_cast<MusicMode>(random() % 3);
            musicSetMode(fast.music, mode);
            musicSetMode(plain.music, mode);
        }
        const int frames = 1 + static_cast<int>(random() % static_cast<uint32_t>(maxFrames));
        ASSERT_NO_FATAL_FAILURE(compareBuffer(fast, plain, frames)) << "buffer " << buffer;
    }
}

TEST_F(MixerTest, EveryEffectIsThatOfThePlainForm) {
    for (int effect = -1; effect <= SOUND_COUNT; effect++) {
        audio = {};
        audio.sfxVolume = 1.0f;
        audio.ambientTimer = 100.0f;
        AudioEngine plain = audio;
        startEffect(audio.voices, audio.rng, effect);
        plainStartEffect(plain, effect);
        expectSameState(audio, plain);
        for (int i = 0; i < 70; i++) // the longest sounds for 1.6 seconds
            ASSERT_NO_FATAL_FAILURE(compareBuffer(audio, plain, 1024)) << effect;
        EXPECT_EQ(freeVoice(audio.voices), audio.voices.data()) << effect;
    }
}

TEST_F(MixerTest, TheLongestBufferIsThatOfThePlainForm) {
    audio.musicVolume = 1.0f;
    audio.ambientTimer = 100.0f;
    AudioEngine plain = audio;
    compareBuffer(audio, plain, 65536, 1e-6f);
}

TEST_F(MixerTest, TheSoundIsThatOfThePlainForm) {
    audio.musicVolume = 1.0f;
    audio.sfxVolume = 1.0f;
    comparePlainAndFast(audio, 1000, 2047, 1);
}

TEST_F(MixerTest, TheSoundUnderMusicIsThatOfThePlainForm) {
    audio.musicVolume = 1.2f;
    play(noiseFrames({.layer = 1}, 60));
    comparePlainAndFast(audio, 400, 2047, 2);
}

TEST_F(MixerTest, SmallBuffersSoundLikeThePlainFormToo) { comparePlainAndFast(audio, 4000, 130, 3); }

TEST_F(MixerTest, EveryKindOfVoiceAtEveryLengthIsThatOfThePlainForm) {
    audio.sfxVolume = 1.0f;
    for (int kind = 0; kind <= VOICE_AMBIENT_NOTE; kind++)
        for (int wave = 0; wave <= 3; wave++)
            for (const float duration : {0.0f, 1e-5f, FRAME_TIME, 1e-3f, 0.05f, 0.5f, 0.6f, 2.2f}) {
                audio.voices = {};
                audio.voices[3] = {.active = 1,
                                   .kind = static_cast<VoiceKind>(kind),
                                   .wave = static_cast<VoiceWave>(wave),
                                   .delay = 0.002f,
                                   .duration = duration,
                                   .freqStart = 1400.0f,
                                   .freqEnd = 90.0f,
                                   .gain = 0.55f};
                ASSERT_NO_FATAL_FAILURE(comparePlainAndFast(audio, 6, 1024, 4)) << kind << wave << duration;
            }
}

// The phase in front of which a step leads to exactly one turn.
static float aStepBeforeTheTurn(float step) {
    float phase = TWO_PI - step;
    while (phase + step < TWO_PI) phase = std::nextafter(phase, TWO_PI);
    while (phase + step > TWO_PI) phase = std::nextafter(phase, 0.0f);
    EXPECT_EQ(phase + step, TWO_PI);
    return phase;
}

TEST_F(MixerTest, APhaseOfExactlyOneTurnStaysAsInThePlainForm) {
    audio.ambientPhaseA = aStepBeforeTheTurn(0.010471976f);
    audio.ambientPhaseB = aStepBeforeTheTurn(0.015707964f);
    audio.voices[0] = {.active = 1,
                       .duration = 1.0f,
                       .freqStart = 440.0f,
                       .freqEnd = 440.0f,
                       .gain = 1.0f,
                       .phase = aStepBeforeTheTurn(440.0f * TWO_PI * FRAME_TIME)};
    AudioEngine plain = audio;
    compareBuffer(audio, plain, 1);
    EXPECT_EQ(audio.ambientPhaseA, TWO_PI);
    EXPECT_EQ(audio.ambientPhaseB, TWO_PI);
    EXPECT_EQ(audio.voices[0].phase, TWO_PI);
}

// --- Memory
// ----------------------------------------------------------------------------------------------------

TEST_F(MixerTest, WithoutMusicTheCallbackAllocatesNothing) {
    std::vector<float> stereo(2 * 1024);
    audio.ambientTimer = 0.01f;
    while (freeVoice(audio.voices)) startEffect(audio.voices, audio.rng, SOUND_MISSION);
    const uint64_t before = allocationCount();
    for (int i = 0; i < 200; i++) {
        startEffect(audio.voices, audio.rng, i % SOUND_COUNT);
        audioRender(audio, stereo.data(), 1024);
    }
    EXPECT_EQ(allocationCount(), before);
}

TEST_F(MixerTest, TheMusicBufferGrowsToItsSizeAndStays) {
    play(noiseFrames({.layer = 1}, 400));
    std::vector<float> stereo(2 * 1024);
    for (int i = 0; i < 40; i++) audioRender(audio, stereo.data(), 1024);
    const uint64_t before = allocationCount();
    for (int i = 0; i < 200; i++) audioRender(audio, stereo.data(), 1024);
    EXPECT_EQ(allocationCount(), before);
}
