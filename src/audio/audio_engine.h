// Everything that is heard: one device, a quiet generated bed, synthesised effects, and the music stream. The
// functions are called from the main thread; the audio thread of SDL runs audioRender under the lock of the
// device.
#pragma once

#include "audio/music_player.h"
#include "audio/voices.h"

#include <cstdint>
#include <string>

struct AudioEngine {
    uint32_t device = 0;      // of SDL, 0 for none: the game is silent
    float musicVolume = 0.5f; // 1 leaves a track as loud as it is; also that of the bed's tones
    float sfxVolume = 0.7f;   // also that of the bed's notes, because they are voices
    MusicPlayer music;
    float ambientLevel = 1.0f; // of the bed, which makes way for music
    Voices voices;
    float ambientPhaseA = 0.0f; // radians
    float ambientPhaseB = 0.0f;
    float ambientTimer = 1.0f; // seconds until the next ambient note
    uint32_t rng = 12345;
};

// Opens the device and starts it. False leaves the reason in `log`, which may be null, and the game silent.
bool audioInit(AudioEngine& audio, std::string* log);
void audioShutdown(AudioEngine& audio);

// Heard from the next buffer on. The volume settings are percent: divide them by 100.
void audioSetVolumes(AudioEngine& audio, float music, float sfx);

// As musicScan; works without a device too.
bool audioLoadMusic(AudioEngine& audio, const std::string& basePath, std::string* log);

// Without a device these two do nothing.
void audioSetMusicMode(AudioEngine& audio, MusicMode mode);
void audioPlayEffect(AudioEngine& audio, int effect); // SoundEffect; a value above the last one plays nothing
