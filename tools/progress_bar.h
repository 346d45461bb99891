// A bar on the terminal while a script ticks for long. It comes after half a second, moves ten times a second
// and is gone when the ticking ends, so that the script's answers stand alone.
#pragma once

#include <cstdint>
#include <iosfwd>

struct ProgressBar {
    std::ostream& out;
    double began = 0.0; // seconds on the caller's clock
    double shown = 0.0; // when it was drawn last, 0 while it is not seen

    void begin(double now);
    void update(int64_t done, int64_t all, double now);
    void end();
};
