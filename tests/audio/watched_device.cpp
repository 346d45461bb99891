#include "audio/watched_device.h"

#include <dlfcn.h>

WatchedDevice& watchedDevice() {
    static WatchedDevice device;
    return device;
}

template<typename Function> static Function* original(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

static void note(const char* what) {
    if (watchedDevice().onLock) watchedDevice().onLock(what);
}

// Found before SDL's own, which they hand on to.
extern "C" SDL_AudioDeviceID SDL_OpenAudioDevice(const char* name, int capture, const SDL_AudioSpec* wanted,
                                                 SDL_AudioSpec* obtained, int allowedChanges) {
    watchedDevice().wanted = *wanted;
    watchedDevice().allowedChanges = allowedChanges;
    return original<decltype(SDL_OpenAudioDevice)>("SDL_OpenAudioDevice")(name, capture, wanted, obtained,
                                                                          allowedChanges);
}

extern "C" void SDL_LockAudioDevice(SDL_AudioDeviceID device) {
    note("lock");
    original<decltype(SDL_LockAudioDevice)>("SDL_LockAudioDevice")(device);
}

extern "C" void SDL_UnlockAudioDevice(SDL_AudioDeviceID device) {
    note("unlock");
    original<decltype(SDL_UnlockAudioDevice)>("SDL_UnlockAudioDevice")(device);
}
