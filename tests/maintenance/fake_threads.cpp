#include "maintenance/fake_threads.h"

#include <SDL_thread.h>

#include <dlfcn.h>

FakeThreads& fakeThreads() {
    static FakeThreads threads;
    return threads;
}

// Found before SDL's own, which it hands on to.
extern "C" SDL_Thread* SDL_CreateThread(SDL_ThreadFunction function, const char* name, void* data) {
    using Create = SDL_Thread* (*)(SDL_ThreadFunction, const char*, void*);
    static const Create create = reinterpret_cast<Create>(dlsym(RTLD_NEXT, "SDL_CreateThread"));
    fakeThreads().created++;
    fakeThreads().lastName = name;
    return fakeThreads().refuse ? nullptr : create(function, name, data);
}
