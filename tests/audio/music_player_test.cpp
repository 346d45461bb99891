#include "audio/music_player.h"

#include "audio/sample_rate.h"
#include "audio/tracks.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

static const FrameHeader NOISE = {.layer = 1};
static const Bytes RUBBISH(5000, 0x55);

class MusicPlayerTest : public testing::Test {
protected:
    void load(const std::vector<Bytes>& files) {
        player.tracks.clear();
        for (const Bytes& file : files) player.tracks.push_back(trackOf(file));
    }

    // The next stereo frames at the given volume.
    std::vector<float> mix(int frames, float volume = 1.0f) {
        std::vector<float> out(static_cast<size_t>(2 * frames));
        musicMix(player, out.data(), frames, volume);
        return out;
    }

    MusicPlayer player;
};

// All stereo frames of a track, in single precision, decoded in one go. The track has one rate.
static std::vector<float> decoded(const Bytes& file) {
    const MusicTrack track = trackOf(file);
    std::vector<float> all;
    mp3dec_t decoder = {};
    for (size_t at = 0; at < file.size();) {
        mp3dec_frame_info_t info = {};
        int16_t samples[MINIMP3_MAX_SAMPLES_PER_FRAME];
        const int count = mp3dec_decode_frame(&decoder, &track.bytes[at], static_cast<int>(file.size() - at),
                                              samples, &info);
        if (info.frame_bytes == 0) break;
        at += static_cast<size_t>(info.frame_bytes);
        for (int i = 0; i < count; i++) {
            all.push_back(static_cast<float>(samples[i * info.channels]) * 3.0517578e-05f);
            all.push_back(static_cast<float>(samples[i * info.channels + info.channels - 1]) *
                          3.0517578e-05f);
        }
    }
    return all;
}

// The rule of playing, applied to a whole decoded track until it ends.
static std::vector<float> played(const std::vector<float>& pcm, double step, float volume) {
    std::vector<float> out;
    size_t frame = 0;
    double position = 0.0;
    float clock = 0.0f;
    while (2 * frame + 3 < pcm.size()) {
        const float f = static_cast<float>(position);
        const float fade = std::min(1.0f, clock / 1.2f);
        for (size_t ear = 0; ear < 2; ear++) {
            const float a = pcm[2 * frame + ear];
            const float b = pcm[2 * frame + 2 + ear];
            out.push_back((b * f + a * (1 - f)) * volume * fade);
        }
        clock += 2.2675737e-05f;
        for (position += step; position >= 1.0; position -= 1.0) frame++;
    }
    return out;
}

static bool silent(const std::vector<float>& sound) {
    return std::all_of(sound.begin(), sound.end(), [](float x) { return x == 0.0f; });
}

// --- Modes
// -----------------------------------------------------------------------------------------------------

TEST_F(MusicPlayerTest, AFreshPlayerIsOffAndSilent) {
    load({noiseFrames(NOISE, 20)});
    EXPECT_EQ(player.mode, MUSIC_OFF);
    EXPECT_FALSE(player.active);
    EXPECT_EQ(MusicTrack().size + MusicTrack().start, 0u);
    EXPECT_EQ(player.trackIndex, 0u);
    EXPECT_EQ(player.openCount, 0u);
    EXPECT_EQ(player.filePos, 0u);
    EXPECT_EQ(player.readFrame, 0u);
    EXPECT_EQ(player.readFrac, 0.0);
    EXPECT_EQ(player.step, 1.0);
    EXPECT_EQ(player.fadeClock, 0.0f);
    EXPECT_TRUE(silent(mix(1000)));
    EXPECT_TRUE(musicOpen(player, 0));
    EXPECT_TRUE(silent(mix(1000))); // it is still off
}

TEST_F(MusicPlayerTest, AModeStartsTheFirstTrack) {
    load({noiseFrames(NOISE, 20), noiseFrames(NOISE, 20)});
    musicSetMode(player, MUSIC_GAME);
    EXPECT_TRUE(player.active);
    EXPECT_EQ(player.trackIndex, 0u);
    EXPECT_EQ(player.openCount, 1u);
    EXPECT_FALSE(silent(mix(1000)));
}

TEST_F(MusicPlayerTest, TheSameModeAgainChangesNothing) {
    load({noiseFrames(NOISE, 20)});
    musicSetMode(player, MUSIC_MENU);
    mix(500);
    musicSetMode(player, MUSIC_MENU);
    EXPECT_EQ(player.openCount, 1u);
    EXPECT_EQ(player.readFrame, 500u);
}

TEST_F(MusicPlayerTest, EveryChangeOfModeStartsOverWithANewFade) {
    load({noiseFrames(NOISE, 8), noiseFrames(NOISE, 200)});
    musicSetMode(player, MUSIC_GAME);
    mix(20000);
    EXPECT_EQ(player.trackIndex, 1u);
    EXPECT_GT(player.fadeClock, 0.3f);
    musicSetMode(player, MUSIC_MENU);
    EXPECT_EQ(player.trackIndex, 0u);
    EXPECT_EQ(player.fadeClock, 0.0f);
    EXPECT_EQ(player.readFrame, 0u);
    mix(100);
    musicSetMode(player, MUSIC_GAME);
    EXPECT_EQ(player.fadeClock, 0.0f);
}

TEST_F(MusicPlayerTest, OffStopsThePlayer) {
    load({noiseFrames(NOISE, 20)});
    musicSetMode(player, MUSIC_MENU);
    musicSetMode(player, MUSIC_OFF);
    EXPECT_FALSE(player.active);
    EXPECT_TRUE(silent(mix(1000)));
}

TEST_F(MusicPlayerTest, WithoutTracksTheModeIsKeptAndNothingPlays) {
    musicSetMode(player, MUSIC_GAME);
    EXPECT_EQ(player.mode, MUSIC_GAME);
    EXPECT_FALSE(player.active);
    EXPECT_EQ(player.openCount, 0u);
    EXPECT_TRUE(silent(mix(1000)));
}

// --- Opening
// ---------------------------------------------------------------------------------------------------

TEST_F(MusicPlayerTest, OpeningResetsTheStream) {
    load({noiseFrames({.layer = 1, .rateIndex = 1}, 50)});
    musicSetMode(player, MUSIC_MENU);
    mix(5000);
    EXPECT_TRUE(musicOpen(player, 0));
    EXPECT_EQ(player.openCount, 2u);
    EXPECT_EQ(player.readFrame, 0u);
    EXPECT_EQ(player.readFrac, 0.0);
    EXPECT_EQ(player.fadeClock, 0.0f);
    EXPECT_EQ(player.pcm.size(), 2u * 384);
    EXPECT_EQ(player.filePos, frameSize({.layer = 1, .rateIndex = 1}));
    EXPECT_NE(player.step, 1.0);

    load({RUBBISH});
    EXPECT_FALSE(musicOpen(player, 0));
    EXPECT_EQ(player.step, 1.0); // until a frame has been decoded
    EXPECT_EQ(player.pcm.size(), 0u);
    EXPECT_EQ(player.filePos, RUBBISH.size());
}

TEST_F(MusicPlayerTest, UnplayableTracksAreSkippedRoundAndRound) {
    load({{}, noiseFrames(NOISE, 20), RUBBISH, {0xFF}});
    musicSetMode(player, MUSIC_GAME);
    EXPECT_EQ(player.trackIndex, 1u);
    EXPECT_EQ(player.openCount, 2u);
    EXPECT_TRUE(musicOpen(player, 2));
    EXPECT_EQ(player.trackIndex, 1u);
    EXPECT_EQ(player.openCount, 6u); // rubbish, one byte, none, and the one that plays
}

TEST_F(MusicPlayerTest, WithNothingPlayableThePlayerStopsUntilTheModeChanges) {
    load({RUBBISH, {}});
    musicSetMode(player, MUSIC_GAME);
    EXPECT_FALSE(player.active);
    EXPECT_EQ(player.openCount, 2u);
    mix(10000);
    EXPECT_EQ(player.openCount, 2u);
    musicSetMode(player, MUSIC_MENU);
    EXPECT_EQ(player.openCount, 4u);
}

TEST_F(MusicPlayerTest, OneFrameIsEnoughForATrackAndLessIsNot) {
    load({noiseFrame(NOISE, 1)});
    EXPECT_TRUE(musicOpen(player, 0));
    Bytes cut = noiseFrame(NOISE, 1);
    cut.pop_back();
    load({cut});
    EXPECT_FALSE(musicOpen(player, 0));
    EXPECT_FALSE(player.active);
}

TEST_F(MusicPlayerTest, OpeningWithoutTracksFails) {
    player.active = true;
    EXPECT_FALSE(musicOpen(player, 0));
    EXPECT_FALSE(player.active);
}

TEST_F(MusicPlayerTest, NextGoesOnToTheFollowingTrackAndRound) {
    load({noiseFrames(NOISE, 9), noiseFrames(NOISE, 9), noiseFrames(NOISE, 9)});
    musicSetMode(player, MUSIC_GAME);
    for (const uint32_t expected : {1u, 2u, 0u}) {
        EXPECT_TRUE(musicNext(player));
        EXPECT_EQ(player.trackIndex, expected);
    }
}

TEST_F(MusicPlayerTest, PlayOpensExactlyTheGivenTrack) {
    load({noiseFrames(NOISE, 9), RUBBISH, noiseFrames(NOISE, 9)});
    musicSetMode(player, MUSIC_GAME);
    EXPECT_TRUE(musicPlay(player, 2));
    EXPECT_EQ(player.trackIndex, 2u);
    EXPECT_FALSE(musicPlay(player, 1));
    EXPECT_FALSE(player.active);
    EXPECT_FALSE(musicPlay(player, 3));
}

// --- Decoding
// --------------------------------------------------------------------------------------------------

TEST_F(MusicPlayerTest, AMonoTrackAtHalfTheRatePlaysAtItsSpeedInBothEars) {
    const Bytes file = noiseFrames({.version = 2, .layer = 1, .mono = true}, 60);
    load({file});
    musicSetMode(player, MUSIC_MENU);
    EXPECT_EQ(player.step, 0.5);
    const std::vector<float> sound = mix(40000);
    EXPECT_FALSE(silent(sound));
    for (size_t i = 0; i < sound.size(); i += 2) ASSERT_EQ(sound[i], sound[i + 1]);
    std::vector<float> expected = played(decoded(file), 0.5, 1.0f);
    expected.resize(sound.size());
    EXPECT_EQ(sound, expected);
}

TEST_F(MusicPlayerTest, EveryRateHasItsStep) {
    const std::pair<FrameHeader, double> rates[] = {
        {{.rateIndex = 0}, 1.0},
        {{.rateIndex = 1}, 48000.0 / 44100.0},
        {{.rateIndex = 2}, 32000.0 / 44100.0},
        {{.version = 2, .rateIndex = 0}, 0.5},
        {{.version = 2, .rateIndex = 1}, 24000.0 / 44100.0},
        {{.version = 2, .rateIndex = 2}, 16000.0 / 44100.0},
        {{.version = 25, .rateIndex = 0}, 0.25},
        {{.version = 25, .rateIndex = 1}, 12000.0 / 44100.0},
        {{.version = 25, .rateIndex = 2}, 8000.0 / 44100.0},
    };
    for (const auto& [header, step] : rates) {
        load({silentFrames(header, 5)});
        EXPECT_TRUE(musicOpen(player, 0));
        EXPECT_EQ(player.step, step);
    }
}

TEST_F(MusicPlayerTest, ARateThatChangesWithinATrackAppliesAtOnce) {
    load({joined({noiseFrames(NOISE, 12), noiseFrames({.layer = 1, .rateIndex = 1}, 12)})});
    musicSetMode(player, MUSIC_MENU);
    mix(10 * 384);
    EXPECT_EQ(player.step, 1.0);
    mix(384); // the decoder gives up the frame before the change
    EXPECT_NEAR(player.step, 1.088, 1e-3);
}

TEST_F(MusicPlayerTest, WhatIsNoAudioIsPassedOver) {
    Bytes tag = {'I', 'D', '3', 4, 0, 0, 0x7F, 0x7F, 0x7F, 0x7F}; // claims 256 megabytes
    tag.resize(700, 'x');
    const Bytes music = joined({noiseFrames(NOISE, 12), RUBBISH, noiseFrames(NOISE, 12, 99)});
    load({joined({tag, music})});
    musicSetMode(player, MUSIC_MENU);
    const std::vector<float> expected = played(decoded(music), 1.0, 1.0f);
    EXPECT_GE(expected.size(), 2u * 22 * 384);
    EXPECT_EQ(mix(static_cast<int>(expected.size() / 2)), expected);
    EXPECT_EQ(player.openCount, 1u);
}

TEST_F(MusicPlayerTest, LayersTwoAndThreeAndFreeFormatAreDecodedToo) {
    load({silentFrames({.layer = 2}, 6)});
    EXPECT_TRUE(musicOpen(player, 0));
    EXPECT_EQ(player.pcm.size(), 2u * 1152);

    Bytes frame = headerBytes({.bitrateIndex = 0});
    frame.resize(600);
    load({joined(std::vector<Bytes>(6, frame))});
    EXPECT_TRUE(musicOpen(player, 0));
    EXPECT_EQ(player.filePos, 600u);
}

TEST_F(MusicPlayerTest, HeadersOfNoRateOrLengthAreNoAudio) {
    for (const FrameHeader& header : {FrameHeader{.rateIndex = 3}, FrameHeader{.bitrateIndex = 15}}) {
        Bytes frame = headerBytes(header);
        frame.resize(417);
        load({joined(std::vector<Bytes>(20, frame))});
        EXPECT_FALSE(musicOpen(player, 0));
    }
}

// --- Mixing
// ----------------------------------------------------------------------------------------------------

TEST_F(MusicPlayerTest, MusicIsAddedToWhatTheBufferHolds) {
    load({noiseFrames(NOISE, 20)});
    musicSetMode(player, MUSIC_MENU);
    MusicPlayer copy = player;
    const std::vector<float> alone = mix(1000);
    std::vector<float> out(2000, 0.25f);
    musicMix(copy, out.data(), 1000, 1.0f);
    for (size_t i = 0; i < out.size(); i++) ASSERT_FLOAT_EQ(out[i], 0.25f + alone[i]);
}

TEST_F(MusicPlayerTest, NoFramesDoNothing) {
    load({noiseFrames(NOISE, 20)});
    musicSetMode(player, MUSIC_MENU);
    musicMix(player, nullptr, 0, 1.0f);
    musicMix(player, nullptr, -5, 1.0f);
    EXPECT_EQ(player.readFrame, 0u);
    EXPECT_EQ(player.fadeClock, 0.0f);
}

TEST_F(MusicPlayerTest, ATrackIsResampledInAStraightLine) {
    for (const FrameHeader& header : {FrameHeader{.layer = 1}, FrameHeader{.layer = 1, .rateIndex = 1},
                                      FrameHeader{.layer = 1, .rateIndex = 2}}) {
        const Bytes file = noiseFrames(header, 100);
        load({file});
        musicSetMode(player, MUSIC_OFF);
        musicSetMode(player, MUSIC_MENU);
        const std::vector<float> expected = played(decoded(file), player.step, 0.8f);
        const std::vector<float> sound = mix(static_cast<int>(expected.size() / 2), 0.8f);
        EXPECT_EQ(sound, expected) << header.rateIndex;
        EXPECT_EQ(player.openCount, header.rateIndex + 1u); // not one frame into the next pass
    }
}

TEST_F(MusicPlayerTest, TheSizeOfTheBuffersIsNotHeard) {
    load({noiseFrames({.layer = 1, .rateIndex = 1}, 40)});
    musicSetMode(player, MUSIC_GAME);
    MusicPlayer other = player;
    const std::vector<float> whole = mix(30000);
    std::vector<float> parts(60000);
    std::mt19937 random(5);
    for (int first = 0; first < 30000;) {
        const int count = std::min(30000 - first, 1 + static_cast<int>(random() % 700));
        musicMix(other, &parts[static_cast<size_t>(2 * first)], count, 1.0f);
        first += count;
    }
    EXPECT_EQ(parts, whole);
}

TEST_F(MusicPlayerTest, ATrackFadesInOverOnePointTwoSeconds) {
    const Bytes file = noiseFrames(NOISE, 160);
    load({file});
    musicSetMode(player, MUSIC_MENU);
    const std::vector<float> sound = mix(60000);
    const std::vector<float> pcm = decoded(file);
    EXPECT_EQ(sound[0], 0.0f);
    for (size_t i = 1000; i < 52920; i += 777)
        EXPECT_NEAR(sound[2 * i], pcm[2 * i] * static_cast<float>(i) / 52920.0f, 4e-4f) << i;
    for (size_t i = 53100; i < 60000; i += 77) EXPECT_EQ(sound[2 * i], pcm[2 * i]) << i;
}

TEST_F(MusicPlayerTest, TheSeamBetweenTracksLosesNothingAndTheNextFadesIn) {
    const Bytes first = noiseFrames(NOISE, 10, 1);
    const Bytes second = noiseFrames(NOISE, 20, 500);
    load({first, second});
    musicSetMode(player, MUSIC_GAME);
    std::vector<float> expected = played(decoded(first), 1.0, 1.0f);
    EXPECT_EQ(expected.size(), 2u * (10 * 384 - 1)); // the last frame has none to go to
    const std::vector<float> after = played(decoded(second), 1.0, 1.0f);
    expected.insert(expected.end(), after.begin(), after.end());
    EXPECT_EQ(mix(static_cast<int>(expected.size() / 2)), expected);
    EXPECT_EQ(player.trackIndex, 1u);
}

TEST_F(MusicPlayerTest, TheMenuPlaysItsFirstTrackForEver) {
    const Bytes file = noiseFrames(NOISE, 5);
    load({file, noiseFrames(NOISE, 5, 99)});
    musicSetMode(player, MUSIC_MENU);
    const std::vector<float> pass = played(decoded(file), 1.0, 1.0f);
    for (int i = 0; i < 5; i++) EXPECT_EQ(mix(5 * 384 - 1), pass);
    EXPECT_EQ(player.openCount, 5u);
}

TEST_F(MusicPlayerTest, TheMenuTakesTheFirstTrackThatPlays) {
    load({RUBBISH, noiseFrames(NOISE, 5), noiseFrames(NOISE, 5)});
    musicSetMode(player, MUSIC_MENU);
    mix(3 * 5 * 384);
    EXPECT_EQ(player.trackIndex, 1u);
}

TEST_F(MusicPlayerTest, TheGamePlaysAllTracksInOrderRoundAndRound) {
    load({noiseFrames(NOISE, 5), noiseFrames(NOISE, 5), RUBBISH, noiseFrames(NOISE, 5)});
    musicSetMode(player, MUSIC_GAME);
    std::vector<uint32_t> order;
    for (int i = 0; i < 7; i++) {
        mix(1);
        order.push_back(player.trackIndex);
        mix(5 * 384 - 2);
    }
    EXPECT_EQ(order, (std::vector<uint32_t>{0, 1, 3, 0, 1, 3, 0}));
}

TEST_F(MusicPlayerTest, ASingleTrackInTheGameLoopsWithAFadeAtEachPass) {
    const Bytes file = noiseFrames(NOISE, 6);
    load({file});
    musicSetMode(player, MUSIC_GAME);
    const std::vector<float> pass = played(decoded(file), 1.0, 1.0f);
    for (int i = 0; i < 3; i++) EXPECT_EQ(mix(static_cast<int>(pass.size() / 2)), pass);
    EXPECT_EQ(player.openCount, 3u);
}

TEST_F(MusicPlayerTest, ATrackThatIsCutOffEndsThere) {
    Bytes file = noiseFrames(NOISE, 10);
    file.resize(file.size() - 200);
    load({file, noiseFrames(NOISE, 10)});
    musicSetMode(player, MUSIC_GAME);
    mix(9 * 384 - 1);
    EXPECT_EQ(player.trackIndex, 0u);
    mix(1);
    EXPECT_EQ(player.trackIndex, 1u);
}

TEST_F(MusicPlayerTest, WhenTheTracksAreGoneTheRestOfTheBufferStaysAsItIs) {
    const Bytes file = noiseFrames(NOISE, 4);
    load({file});
    musicSetMode(player, MUSIC_GAME);
    player.tracks[0].size = 0; // nothing more can be decoded
    std::vector<float> out(2 * 1000, 0.5f);
    musicMix(player, out.data(), 1000, 1.0f);
    EXPECT_NE(out[2 * 382], 0.5f);
    for (size_t i = 2 * 383; i < out.size(); i++) ASSERT_EQ(out[i], 0.5f);
    EXPECT_FALSE(player.active);
    EXPECT_EQ(player.openCount, 2u);
}

TEST_F(MusicPlayerTest, ConsumedSoundIsDroppedInOneMovePastAThreshold) {
    load({noiseFrames(NOISE, 200)});
    musicSetMode(player, MUSIC_MENU);
    mix(8192);
    EXPECT_EQ(player.readFrame, 8192u);
    mix(1);
    EXPECT_EQ(player.readFrame, 8193u); // moved with the next frame
    mix(1);
    EXPECT_EQ(player.readFrame, 1u);
    size_t longest = 0;
    for (int i = 0; i < 60; i++) {
        mix(1024);
        longest = std::max(longest, player.pcm.size() / 2);
    }
    EXPECT_LE(longest, 8192u + 2 + 384);
}

// --- Hostile files
// ---------------------------------------------------------------------------------------------

// Plays a while of it and holds what must be so of any file.
static void survive(const std::vector<Bytes>& files, int frames) {
    MusicPlayer player;
    for (const Bytes& file : files) player.tracks.push_back(trackOf(file));
    musicSetMode(player, MUSIC_GAME);
    std::vector<float> out(static_cast<size_t>(2 * frames));
    musicMix(player, out.data(), frames, 1.0f);
    for (const float sample : out) ASSERT_TRUE(std::fabs(sample) <= 1.0f);
    ASSERT_LE(player.filePos, player.tracks[player.trackIndex].size);
    ASSERT_LE(2 * player.readFrame, player.pcm.size());
    ASSERT_TRUE(player.readFrac >= 0.0 && player.readFrac < 1.0);
}

#ifdef __linux__ // where lame is
TEST_F(MusicPlayerTest, ATrackCutAnywhereIsSurvived) {
    const Bytes whole = lameTrack(44100, 2, 0.3f, "-b 64");
    for (size_t size = 0; size < whole.size(); size += size < 600 ? 1 : 37)
        survive({Bytes(whole.begin(), whole.begin() + static_cast<ptrdiff_t>(size))}, 3000);
}

TEST_F(MusicPlayerTest, DamagedTracksAreSurvived) {
    const Bytes whole = lameTrack(32000, 2, 0.5f, "-V 4");
    std::mt19937 random(11);
    for (int i = 0; i < 300; i++) {
        Bytes damaged = whole;
        for (int hits = 1 + static_cast<int>(random() % 60); hits > 0; hits--)
            damaged[random() % damaged.size()] = static_cast<uint8_t>(random());
        survive({damaged}, 4000);
    }
}
#endif

TEST_F(MusicPlayerTest, RandomBytesBehindEveryHeaderAreSurvived) {
    std::mt19937 random(12);
    for (const int version : {1, 2, 25})
        for (int layer = 1; layer <= (version == 25 ? 1 : 3); layer++) // 2.5 knows layer 3 alone
            for (int rateIndex = 0; rateIndex <= 3; rateIndex++)
                for (int bitrateIndex = 0; bitrateIndex <= 15; bitrateIndex++) {
                    const FrameHeader header = {version, version == 25 ? 3 : layer, bitrateIndex, rateIndex,
                                                random() % 2 == 0};
                    Bytes file;
                    const size_t size = rateIndex == 3 || bitrateIndex % 15 == 0 ? 500 : frameSize(header);
                    for (int frame = 0; frame < 6; frame++) {
                        Bytes bytes = headerBytes(header);
                        while (bytes.size() < size) bytes.push_back(static_cast<uint8_t>(random()));
                        file.insert(file.end(), bytes.begin(), bytes.end());
                    }
                    survive({file, RUBBISH}, 4000);
                }
}

TEST_F(MusicPlayerTest, RandomBytesAreSurvived) {
    std::mt19937 random(13);
    for (int i = 0; i < 200; i++) {
        Bytes file(random() % 3000);
        for (uint8_t& byte : file) byte = random() % 3 == 0 ? 0xFF : static_cast<uint8_t>(random());
        survive({file}, 2000);
    }
}
