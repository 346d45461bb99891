#include "audio/music_player.h"

#include "audio/sample_rate.h"

#include <algorithm>
#include <cassert>
#include <climits>
#include <cstdio>
#include <filesystem>

constexpr float FADE_TIME = 1.2f;                        // seconds
constexpr float SAMPLE_UNIT = 3.0517578e-05f;            // 1/32768
constexpr uint64_t CONSUMED_FRAMES_KEPT = 8192;          // before they are removed in one move
constexpr uint64_t LARGEST_TRACK = INT_MAX - TRACK_TAIL; // the decoder counts bytes in an int

// --- The folder
// ------------------------------------------------------------------------------------------------

static bool readTrack(const std::string& path, MusicTrack& track) {
    // Asked of the path, because opening a pipe would wait for its writer: only plain files have a size.
    std::error_code error;
    const std::filesystem::path utf8 = std::u8string(path.begin(), path.end());
    const uint64_t size = std::filesystem::file_size(utf8, error);
    if (error || size > LARGEST_TRACK) return false;
    std::FILE* file = std::fopen(path.c_str(), "rb");
    if (!file) return false;

    track.size = size;
    track.bytes.assign(size + TRACK_TAIL, 0);
    const bool complete = std::fread(track.bytes.data(), 1, size, file) == size;
    std::fclose(file);
    return complete;
}

bool musicScan(MusicPlayer& player, const std::string& basePath, std::string* log) {
    player.tracks.clear();
    for (int number = 1; number <= LARGEST_TRACK_NUMBER; number++) {
        MusicTrack track;
        if (!readTrack(basePath + "music" + std::to_string(number) + ".mp3", track)) break;
        player.tracks.push_back(std::move(track));
    }

    const size_t count = player.tracks.size();
    if (log && count == 0) *log += "No music files found; playing without music\n";
    if (log && count > 0) *log += "Music: " + std::to_string(count) + " track(s)\n";
    return count > 0;
}

// --- Decoding
// --------------------------------------------------------------------------------------------------

static void appendSamples(std::vector<float>& pcm, const mp3d_sample_t* samples, int frames, int channels) {
    const int right = channels > 1 ? 1 : 0;
    for (int i = 0; i < frames; i++) {
        pcm.push_back(static_cast<float>(samples[i * channels]) * SAMPLE_UNIT);
        pcm.push_back(static_cast<float>(samples[i * channels + right]) * SAMPLE_UNIT);
    }
}

// Appends the next audio frame of the track to pcm. False at its end.
static bool decodeFrame(MusicPlayer& player) {
    const MusicTrack& track = player.tracks[player.trackIndex];
    while (player.filePos < track.size) {
        mp3dec_frame_info_t info = {};
        mp3d_sample_t samples[MINIMP3_MAX_SAMPLES_PER_FRAME];
        const int frames = mp3dec_decode_frame(&player.decoder, track.bytes.data() + player.filePos,
                                               static_cast<int>(track.size - player.filePos), samples, &info);
        if (info.frame_bytes == 0) {
            player.filePos = track.size;
            return false;
        }
        player.filePos += static_cast<uint64_t>(info.frame_bytes);
        if (frames <= 0 || info.channels <= 0) continue; // a tag, or what no decoder understands

        player.step = info.hz < 1 ? 1.0 : info.hz / static_cast<double>(SAMPLE_RATE);
        appendSamples(player.pcm, samples, frames, info.channels);
        return true;
    }
    return false;
}

static uint64_t decodedFrames(const MusicPlayer& player) { return player.pcm.size() / 2; }

static void dropConsumedFrames(MusicPlayer& player) {
    if (player.readFrame <= CONSUMED_FRAMES_KEPT) return;
    player.pcm.erase(player.pcm.begin(), player.pcm.begin() + static_cast<ptrdiff_t>(2 * player.readFrame));
    player.readFrame = 0;
}

// Makes `frames` frames ready from the reading position on. False when the track has ended before.
static bool musicEnsure(MusicPlayer& player, uint64_t frames) {
    assert(player.readFrame <= decodedFrames(player));
    dropConsumedFrames(player);
    while (player.readFrame + frames > decodedFrames(player))
        if (!decodeFrame(player)) return false;
    return true;
}

// --- Tracks
// ----------------------------------------------------------------------------------------------------

// Two frames must come out: between them the resampler finds its first sample.
static bool openTrack(MusicPlayer& player, size_t index) {
    player.openCount++;
    mp3dec_init(&player.decoder);
    player.trackIndex = static_cast<uint32_t>(index);
    player.filePos = 0;
    player.pcm.clear();
    player.readFrame = 0;
    player.readFrac = 0.0;
    player.step = 1.0;
    player.fadeClock = 0.0f;
    player.active = true;
    return musicEnsure(player, 2);
}

bool musicOpen(MusicPlayer& player, uint32_t start) {
    const size_t count = player.tracks.size();
    for (size_t i = 0; i < count; i++)
        if (openTrack(player, (start + i) % count)) return true;
    player.active = false;
    return false;
}

bool musicNext(MusicPlayer& player) { return musicOpen(player, player.trackIndex + 1); }

bool musicPlay(MusicPlayer& player, uint32_t index) {
    player.active = index < player.tracks.size() && openTrack(player, index);
    return player.active;
}

void musicSetMode(MusicPlayer& player, MusicMode mode) {
    if (mode == player.mode) return;
    player.mode = mode;
    player.active = false;
    if (mode != MUSIC_OFF && !player.tracks.empty()) musicOpen(player, 0);
}

// --- Playing
// ---------------------------------------------------------------------------------------------------

static bool openFollowingTrack(MusicPlayer& player) {
    return player.mode == MUSIC_MENU ? musicOpen(player, 0) : musicNext(player);
}

// Adds one frame, straight between the two decoded frames around the reading position.
static void addFrame(const MusicPlayer& player, float* out, float volume) {
    const float f = static_cast<float>(player.readFrac);
    const float* a = &player.pcm[2 * player.readFrame];
    const float* b = a + 2;
    const float fade = std::min(1.0f, player.fadeClock / FADE_TIME);
    out[0] += (b[0] * f + a[0] * (1.0f - f)) * volume * fade;
    out[1] += (b[1] * f + a[1] * (1.0f - f)) * volume * fade;
}

static void advance(MusicPlayer& player) {
    player.fadeClock += FRAME_TIME;
    player.readFrac += player.step;
    for (; player.readFrac >= 1.0; player.readFrac -= 1.0) player.readFrame++;
}

void musicMix(MusicPlayer& player, float* out, int frames, float volume) {
    if (!player.active || player.mode == MUSIC_OFF) return;
    for (int i = 0; i < frames;) {
        if (!musicEnsure(player, 2)) {
            if (player.tracks.empty() || !openFollowingTrack(player)) return;
            continue; // the same frame of the new track: the seam loses nothing
        }
        addFrame(player, out + 2 * i, volume);
        advance(player);
        i++;
    }
}
