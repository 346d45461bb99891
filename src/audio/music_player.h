// Streams the numbered MP3 tracks beside the program. They are read whole once, at start; decoding goes on
// inside the audio callback, a frame at a time. A game without any track is an ordinary one: it plays no
// music. All functions run under the lock of the audio device.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <minimp3.h>

constexpr int LARGEST_TRACK_NUMBER = 16;
// The decoder looks a byte past a frame that ends the file.
constexpr size_t TRACK_TAIL = 64;

enum MusicMode : int32_t {
    MUSIC_OFF,  // the state at construction, never asked for
    MUSIC_MENU, // the first track again and again
    MUSIC_GAME  // all tracks in order, round and round
};

struct MusicTrack {
    std::vector<uint8_t> bytes; // the file, then TRACK_TAIL zeros
    uint64_t size = 0;          // of the file
    // Where decoding begins: not far before the first frame that can be heard, or `size` if there is none.
    // What lies before is searched once, by the scan, and not in the callback.
    uint64_t start = 0;
};

struct MusicPlayer {
    std::vector<MusicTrack> tracks;
    MusicMode mode = MUSIC_OFF;
    uint32_t trackIndex = 0;
    uint32_t openCount = 0; // attempts so far: tells that the stream was restarted
    bool active = false;    // a track is streaming
    mp3dec_t decoder = {};
    uint64_t filePos = 0;   // of the next frame in the track
    std::vector<float> pcm; // stereo, decoded and not yet consumed
    uint64_t readFrame = 0; // the stereo frame in pcm that the resampler stands on
    double readFrac = 0.0;  // from there towards the next, 0 to below 1
    double step = 1.0;      // frames of the track for each frame heard
    float fadeClock = 0.0f; // seconds since the track began
};

// Stops the player and replaces the tracks by music1.mp3 to music16.mp3 of the folder, whose path ends with a
// separator; the first number that cannot be read, or that memory has no room for, ends the list. True if
// there is any. `log` may be null.
bool musicScan(MusicPlayer& player, const std::string& basePath, std::string* log);

// Another mode starts over at the first track.
void musicSetMode(MusicPlayer& player, MusicMode mode);

// Adds stereo frames to `out`.
void musicMix(MusicPlayer& player, float* out, int frames, float volume);

// Opens the first playable track from `start` on, round and round. False if none is: the player has stopped.
bool musicOpen(MusicPlayer& player, uint32_t start);
// The following track, and exactly the given one; like musicOpen they stop the player when they fail.
bool musicNext(MusicPlayer& player);
bool musicPlay(MusicPlayer& player, uint32_t index);
