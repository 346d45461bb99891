// Any bytes as music: the first byte says how many tracks they are and in which mode these are played.
// Whatever they hold, the player stays within its buffers, and what is heard within the range of sound.
#include "audio/music_player.h"

#include <cmath>
#include <cstdlib>

constexpr int BUFFER_FRAMES = 16;

static void check(bool holds) {
    if (!holds) std::abort();
}

static MusicTrack trackOf(const uint8_t* data, size_t size) {
    MusicTrack track;
    track.size = size;
    track.bytes.reserve(size + TRACK_TAIL); // exactly, so that a read beyond it is seen
    track.bytes.assign(data, data + size);
    track.bytes.resize(size + TRACK_TAIL);
    return track;
}

static void checkPlayer(const MusicPlayer& player) {
    check(player.trackIndex < player.tracks.size());
    check(player.filePos <= player.tracks[player.trackIndex].size);
    check(2 * player.readFrame <= player.pcm.size());
    check(player.readFrac >= 0.0 && player.readFrac < 1.0);
    check(player.step >= 8000.0 / 44100.0 && player.step <= 48000.0 / 44100.0);
}

// Of what is decoded only the beginning is played, so that the rest of the file is soon reached.
static void playOneBuffer(MusicPlayer& player) {
    float out[2 * BUFFER_FRAMES] = {};
    musicMix(player, out, BUFFER_FRAMES, 1.0f);
    for (const float sample : out) check(std::fabs(sample) <= 1.0f);
    checkPlayer(player);
    player.readFrame = player.pcm.size() / 2;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    const size_t count = 1 + data[0] % 3;
    const MusicMode mode = data[0] & 0x80 ? MUSIC_MENU : MUSIC_GAME;
    const size_t length = (size - 1) / count;
    MusicPlayer player;
    for (size_t i = 0; i < count; i++) player.tracks.push_back(trackOf(data + 1 + i * length, length));

    musicSetMode(player, mode);
    checkPlayer(player);
    while (player.active && player.openCount <= count) playOneBuffer(player); // each once, as a rule
    musicSetMode(player, mode == MUSIC_MENU ? MUSIC_GAME : MUSIC_MENU);
    if (player.active) playOneBuffer(player);
    return 0;
}
