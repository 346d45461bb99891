// What the game asks of SDL's audio device: the form of the sound, and when it takes and gives back the lock.
#pragma once

#include <SDL_audio.h>

#include <functional>
#include <string>

struct WatchedDevice {
    SDL_AudioSpec wanted = {};
    int allowedChanges = -1;
    std::function<void(const std::string& what)> onLock; // "lock" or "unlock"
};

WatchedDevice& watchedDevice();
