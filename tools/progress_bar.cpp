#include "progress_bar.h"

#include <algorithm>
#include <cmath>
#include <ostream>
#include <string>

static constexpr double PATIENCE = 0.5; // seconds
static constexpr double PAUSE = 0.1;    // seconds between two pictures
static constexpr int64_t BAR_LENGTH = 30;
static constexpr size_t LINE_LENGTH = 70; // blanks at the end wipe what stood there

static std::string timeLeft(double seconds) {
    const auto whole = static_cast<int64_t>(std::ceil(std::min(seconds, 1e9)));
    if (whole < 120) return std::to_string(whole) + " s left";
    if (whole < 120 * 60) return std::to_string(whole / 60) + " min left";
    return std::to_string(whole / 3600) + " h left";
}

static void drawLine(std::ostream& out, std::string text) {
    text.resize(LINE_LENGTH, ' ');
    out << "\r" << text << "\r" << std::flush;
}

void ProgressBar::begin(double now) {
    began = now;
    shown = 0.0;
}

void ProgressBar::update(int64_t done, int64_t all, double now) {
    const double spent = now - began;
    if (spent < PATIENCE || now - shown < PAUSE) return;

    const double share = static_cast<double>(done) / static_cast<double>(all);
    const auto length = static_cast<size_t>(share * BAR_LENGTH);
    const std::string bar = std::string(length, '#') + std::string(BAR_LENGTH - length, '.');
    drawLine(out, "[" + bar + "] " + std::to_string(done) + " of " + std::to_string(all) + " days, " +
                      timeLeft(spent / share - spent));
    shown = now;
}

void ProgressBar::end() {
    if (shown > 0.0) drawLine(out, "");
    shown = 0.0;
}
