#include "audio/audio_engine.h"

#include "audio/mixer.h"
#include "audio/sample_rate.h"

#include <SDL.h>

#include <atomic>
#include <cassert>
#include <cstring>

constexpr int BUFFER_FRAMES = 1024;
constexpr int CHANNELS = 2;
constexpr int FRAME_BYTES = CHANNELS * static_cast<int>(sizeof(float));

static void SDLCALL fillStream(void* engine, Uint8* stream, int bytes) {
    assert(bytes % FRAME_BYTES == 0);
    std::memset(stream, 0, static_cast<size_t>(bytes)); // because audioRender adds to what is there
    float* stereo = static_cast<float*>(static_cast<void*>(stream));
    audioRender(*static_cast<AudioEngine*>(engine), stereo, bytes / FRAME_BYTES);
}

static bool fail(std::string* log, const char* what) {
    if (log) *log += std::string(what) + SDL_GetError() + "\n";
    return false;
}

bool audioInit(AudioEngine& audio, std::string* log) {
    assert(audio.device == 0);
    if (SDL_InitSubSystem(SDL_INIT_AUDIO) != 0) return fail(log, "No audio: ");

    SDL_AudioSpec wanted = {};
    wanted.freq = SAMPLE_RATE;
    wanted.format = AUDIO_F32;
    wanted.channels = CHANNELS;
    wanted.samples = BUFFER_FRAMES;
    wanted.callback = fillStream;
    wanted.userdata = &audio;
    SDL_AudioSpec obtained; // the same: SDL converts to what the device can do
    audio.device = SDL_OpenAudioDevice(nullptr, 0, &wanted, &obtained, 0);
    if (audio.device == 0) return fail(log, "No audio device: ");
    SDL_PauseAudioDevice(audio.device, 0);
    return true;
}

void audioShutdown(AudioEngine& audio) {
    if (audio.device != 0) SDL_CloseAudioDevice(audio.device);
    audio.device = 0;
}

// Without the lock: two volumes are no reason to wait for a buffer.
void audioSetVolumes(AudioEngine& audio, float music, float sfx) {
    std::atomic_ref<float>(audio.musicVolume).store(music, std::memory_order_relaxed);
    std::atomic_ref<float>(audio.sfxVolume).store(sfx, std::memory_order_relaxed);
}

bool audioLoadMusic(AudioEngine& audio, const std::string& basePath, std::string* log) {
    if (audio.device != 0) SDL_LockAudioDevice(audio.device);
    const bool loaded = musicScan(audio.music, basePath, log);
    if (audio.device != 0) SDL_UnlockAudioDevice(audio.device);
    return loaded;
}

void audioSetMusicMode(AudioEngine& audio, MusicMode mode) {
    if (audio.device == 0) return;
    SDL_LockAudioDevice(audio.device);
    musicSetMode(audio.music, mode);
    SDL_UnlockAudioDevice(audio.device);
}

void audioPlayEffect(AudioEngine& audio, int effect) {
    if (audio.device == 0) return;
    SDL_LockAudioDevice(audio.device);
    startEffect(audio.voices, audio.rng, effect);
    SDL_UnlockAudioDevice(audio.device);
}
