// Counts the threads that the game asks SDL for; on demand there is none to be had.
#pragma once

#include <string>

struct FakeThreads {
    int created = 0;
    std::string lastName;
    bool refuse = false;
};

FakeThreads& fakeThreads();
