#include "audio/audio_engine.h"

#include "audio/mixer.h"
#include "audio/tracks.h"
#include "temp_dir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <SDL.h>

#include <fstream>

#ifdef __linux__
#include "audio/watched_device.h"
#endif

class AudioEngineTest : public testing::Test {
protected:
    AudioEngineTest() { SDL_setenv("SDL_AUDIODRIVER", "dummy", 1); }
    ~AudioEngineTest() override {
        audioShutdown(audio);
        SDL_QuitSubSystem(SDL_INIT_AUDIO);
    }

    // Effects alone: the bed has notes of its own.
    int sounding() {
        SDL_LockAudioDevice(audio.device);
        int count = 0;
        for (const Voice& voice : audio.voices) count += voice.active && voice.kind != VOICE_AMBIENT_NOTE;
        SDL_UnlockAudioDevice(audio.device);
        return count;
    }

    AudioEngine audio;
};

TEST_F(AudioEngineTest, TheDeviceOpensAndPlays) {
    std::string log;
    ASSERT_TRUE(audioInit(audio, &log));
    EXPECT_EQ(log, "");
    EXPECT_NE(audio.device, 0u);
    EXPECT_EQ(SDL_GetAudioDeviceStatus(audio.device), SDL_AUDIO_PLAYING);
    SDL_PauseAudioDevice(audio.device, 1);
    audioPlayEffect(audio, SOUND_CLICK);
    EXPECT_EQ(sounding(), 1);
    SDL_PauseAudioDevice(audio.device, 0);
    for (int i = 0; i < 500 && sounding() > 0; i++) SDL_Delay(10);
    EXPECT_EQ(sounding(), 0); // the audio thread has played it to its end
}

#ifdef __linux__ // where SDL's calls can be watched
TEST_F(AudioEngineTest, TheDeviceIsAskedForStereoFloatsInBuffersOf1024Frames) {
    ASSERT_TRUE(audioInit(audio, nullptr));
    const SDL_AudioSpec& wanted = watchedDevice().wanted;
    EXPECT_EQ(wanted.freq, 44100);
    EXPECT_EQ(wanted.format, AUDIO_F32);
    EXPECT_EQ(wanted.channels, 2);
    EXPECT_EQ(wanted.samples, 1024);
    EXPECT_EQ(wanted.userdata, &audio);
    EXPECT_EQ(watchedDevice().allowedChanges, 0); // SDL converts
}

TEST_F(AudioEngineTest, TheCallbackReplacesAllThatTheStreamHolds) {
    ASSERT_TRUE(audioInit(audio, nullptr));
    SDL_PauseAudioDevice(audio.device, 1); // so that only we call it
    audioPlayEffect(audio, SOUND_BUILD);
    AudioEngine same = audio;
    std::vector<float> expected(2 * 500);
    audioRender(same, expected.data(), 500);
    expected.resize(2 * 501, 7.0f);
    std::vector<float> stream(2 * 501, 7.0f);
    watchedDevice().wanted.callback(&audio, reinterpret_cast<Uint8*>(stream.data()), 500 * 8);
    EXPECT_EQ(stream, expected);
}

TEST_F(AudioEngineTest, EffectsModesAndTracksChangeUnderTheLock) {
    const TempDir dir;
    const Bytes track = noiseFrames({.layer = 1}, 12);
    writeText(dir.file("music1.mp3"), {track.begin(), track.end()});
    ASSERT_TRUE(audioInit(audio, nullptr));
    SDL_PauseAudioDevice(audio.device, 1);
    std::vector<std::string> seen;
    watchedDevice().onLock = [&](const std::string& what) {
        seen.push_back(what + (freeVoice(audio.voices) == audio.voices.data() ? "" : " effect") +
                       (audio.music.tracks.empty() ? "" : " tracks") +
                       (audio.music.mode == MUSIC_OFF ? "" : " mode"));
    };
    audioPlayEffect(audio, SOUND_BUILD);
    audioLoadMusic(audio, dir.file(""), nullptr);
    audioSetMusicMode(audio, MUSIC_MENU);
    audioPlayEffect(audio, SOUND_COUNT);
    audioSetVolumes(audio, 1.0f, 1.0f); // is no reason to wait
    watchedDevice().onLock = nullptr;
    EXPECT_THAT(seen, testing::ElementsAre("lock", "unlock effect",                           //
                                           "lock effect", "unlock effect tracks",             //
                                           "lock effect tracks", "unlock effect tracks mode", //
                                           "lock effect tracks mode", "unlock effect tracks mode"));
}
#endif

TEST_F(AudioEngineTest, ShutdownClosesTheDeviceAndMayComeTwice) {
    ASSERT_TRUE(audioInit(audio, nullptr));
    const uint32_t device = audio.device;
    audioShutdown(audio);
    EXPECT_EQ(audio.device, 0u);
    EXPECT_EQ(SDL_GetAudioDeviceStatus(device), SDL_AUDIO_STOPPED);
    audioShutdown(audio);
}

TEST_F(AudioEngineTest, WithoutAnAudioSystemTheReasonIsTold) {
    SDL_setenv("SDL_AUDIODRIVER", "nonsense", 1);
    std::string log = "before\n";
    EXPECT_FALSE(audioInit(audio, &log));
    EXPECT_EQ(log, "before\nNo audio: " + std::string(SDL_GetError()) + "\n");
    EXPECT_EQ(audio.device, 0u);
    EXPECT_FALSE(audioInit(audio, nullptr));
}

TEST_F(AudioEngineTest, WithoutADeviceTheReasonIsTold) {
    SDL_setenv("SDL_AUDIODRIVER", "disk", 1);
    SDL_setenv("SDL_DISKAUDIOFILE", "/nonexistent/sound.raw", 1);
    std::string log;
    EXPECT_FALSE(audioInit(audio, &log));
    EXPECT_EQ(log, "No audio device: " + std::string(SDL_GetError()) + "\n");
    EXPECT_EQ(audio.device, 0u);
    EXPECT_FALSE(audioInit(audio, nullptr));
}

TEST_F(AudioEngineTest, WithoutADeviceEffectsAndModesDoNothingAndTheTracksAreRead) {
    const TempDir dir;
    writeText(dir.file("music1.mp3"), "some bytes");
    std::string log;
    EXPECT_TRUE(audioLoadMusic(audio, dir.file(""), &log));
    EXPECT_EQ(log, "Music: 1 track(s)\n");
    EXPECT_EQ(audio.music.tracks.size(), 1u);
    audioPlayEffect(audio, SOUND_BUILD);
    audioSetMusicMode(audio, MUSIC_MENU);
    EXPECT_EQ(freeVoice(audio.voices), audio.voices.data());
    EXPECT_EQ(audio.rng, 12345u);
    EXPECT_EQ(audio.music.mode, MUSIC_OFF);
    EXPECT_EQ(audio.music.openCount, 0u);
}

TEST_F(AudioEngineTest, VolumesAreStoredWithAndWithoutADevice) {
    audioSetVolumes(audio, 0.25f, 1.0f);
    EXPECT_EQ(audio.musicVolume, 0.25f);
    EXPECT_EQ(audio.sfxVolume, 1.0f);
    ASSERT_TRUE(audioInit(audio, nullptr));
    audioSetVolumes(audio, 0.0f, 0.95f);
    EXPECT_EQ(audio.musicVolume, 0.0f);
    EXPECT_EQ(audio.sfxVolume, 0.95f);
}

TEST_F(AudioEngineTest, AnEffectThatDoesNotExistStartsNothing) {
    ASSERT_TRUE(audioInit(audio, nullptr));
    for (const int effect : {-1, 7, 1000}) audioPlayEffect(audio, effect);
    EXPECT_EQ(sounding(), 0);
}

TEST_F(AudioEngineTest, VolumesMusicAndEffectsChangeWhileTheCallbackRuns) {
    const TempDir dir;
    const Bytes first = noiseFrames({.layer = 1}, 12);
    const Bytes second = silentFrames({}, 3);
    writeText(dir.file("music1.mp3"), {first.begin(), first.end()});
    writeText(dir.file("music2.mp3"), {second.begin(), second.end()});
    ASSERT_TRUE(audioInit(audio, nullptr));
    for (int i = 0; i < 300; i++) {
        if (i % 50 == 0) audioLoadMusic(audio, dir.file(""), nullptr);
        audioPlayEffect(audio, i % (SOUND_COUNT + 1));
        audioSetMusicMode(audio, i % 3 == 0 ? MUSIC_MENU : MUSIC_GAME);
        audioSetVolumes(audio, static_cast<float>(i % 5) / 4.0f, static_cast<float>(i % 7) / 4.0f);
        SDL_Delay(2);
    }
    SDL_LockAudioDevice(audio.device);
    EXPECT_EQ(audio.music.tracks.size(), 2u);
    EXPECT_GT(audio.music.openCount, 100u);
    SDL_UnlockAudioDevice(audio.device);
}
