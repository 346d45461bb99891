// Music for tests: tracks that lame encodes, and MPEG frames put together bit by bit.
#pragma once

#include "audio/music_player.h"

#include <string>

using Bytes = std::vector<uint8_t>;

MusicTrack trackOf(const Bytes& file);

// A chord with some noise on top, the ears apart, encoded by lame with the given options. Aborts without
// lame.
Bytes lameTrack(int hz, int channels, float seconds, const std::string& options);

// What the header of an MPEG frame says.
struct FrameHeader {
    int version = 1;      // 1, 2, or 25 for 2.5
    int layer = 3;        // 1 to 3
    int bitrateIndex = 9; // 0: free format, 15 is forbidden
    int rateIndex = 0;    // 0: 44100, 1: 48000, 2: 32000, halved by each later version; 3 is forbidden
    bool mono = false;
};

// The four bytes of the header, and how long its frame is; 0 in free format.
Bytes headerBytes(const FrameHeader& header);
size_t frameSize(const FrameHeader& header);

// A frame of silence in layer 3.
Bytes silentFrame(const FrameHeader& header);
// A frame of noise in layer 1; the seed tells one from another.
Bytes noiseFrame(FrameHeader header, uint32_t seed);

// `count` of either, one after the other; noise with seeds from `seed` on.
Bytes silentFrames(const FrameHeader& header, int count);
Bytes noiseFrames(const FrameHeader& header, int count, uint32_t seed = 1);

Bytes joined(const std::vector<Bytes>& parts);
