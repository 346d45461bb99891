// The one rate of everything that is heard.
#pragma once

constexpr int SAMPLE_RATE = 44100;           // stereo frames a second
constexpr float FRAME_TIME = 2.2675737e-05f; // seconds
