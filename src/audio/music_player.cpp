#include "audio/music_player.h"

#include "audio/sample_rate.h"

#include <algorithm>
#include <cassert>
#include <climits>
#include <cstdio>
#include <filesystem>
#include <new>

constexpr float FADE_TIME = 1.2f;                        // seconds
constexpr float SAMPLE_UNIT = 3.0517578e-05f;            // 1/32768
constexpr uint64_t CONSUMED_FRAMES_KEPT = 8192;          // because removing them moves all that follow
constexpr uint64_t LARGEST_TRACK = INT_MAX - TRACK_TAIL; // the decoder counts bytes in an int
constexpr uint64_t LARGEST_FRAME = 4096;                 // in bytes; no header says more than 2881

// --- The decoder

// One frame of sound, or none where the decoder passed over what it did not understand.
struct Frame {
    mp3d_sample_t samples[MINIMP3_MAX_SAMPLES_PER_FRAME];
    mp3dec_frame_info_t info = {};
    int count = 0; // of samples for each channel
};

// Decodes what comes next in the track and moves the position behind it, to the track's end if there is
// nothing more.
static void decodeAt(mp3dec_t& decoder, const MusicTrack& track, uint64_t& position, Frame& frame) {
    assert(position < track.size && track.bytes.size() >= track.size + TRACK_TAIL);
    frame.info = {};
    frame.count = mp3dec_decode_frame(&decoder, track.bytes.data() + position,
                                      static_cast<int>(track.size - position), frame.samples, &frame.info);
    if (frame.info.channels <= 0) frame.count = 0; // a tag
    position =
        frame.info.frame_bytes == 0 ? track.size : position + static_cast<uint64_t>(frame.info.frame_bytes);
    assert(position <= track.size && frame.count * frame.info.channels <= MINIMP3_MAX_SAMPLES_PER_FRAME);
}

// Where a fresh decoder may begin to come to the same first sound as from the track's begin. What it knows of
// earlier frames must not be lost: only where it has forgotten them itself does it begin later.
static uint64_t findStart(const MusicTrack& track) {
    mp3dec_t decoder = {};
    Frame frame;
    uint64_t start = 0;
    for (uint64_t position = 0; position < track.size;) {
        const uint64_t before = position;
        decodeAt(decoder, track, position, frame);
        // Further than a frame: it has searched, and forgotten. The frame that it found ends here.
        if (position - before > LARGEST_FRAME) start = position - LARGEST_FRAME;
        if (frame.count > 0) return start;
        if (decoder.header[0] == 0) start = position; // it has given up on what it found
    }
    return track.size;
}

// --- The folder

static bool makeRoom(std::vector<uint8_t>& bytes, uint64_t size) {
    try {
        bytes.assign(size, 0);
    } catch (const std::bad_alloc&) {
        return false;
    }
    return true;
}

static bool readTrack(const std::string& path, MusicTrack& track) {
    // Asked of the path, because opening a pipe would wait for its writer: only plain files have a size.
    std::error_code error;
    const std::filesystem::path utf8 = std::u8string(path.begin(), path.end());
    const uint64_t size = std::filesystem::file_size(utf8, error);
    if (error || size > LARGEST_TRACK || !makeRoom(track.bytes, size + TRACK_TAIL)) return false;
    std::FILE* file = std::fopen(path.c_str(), "rb");
    if (!file) return false;

    track.size = size;
    const bool complete = std::fread(track.bytes.data(), 1, size, file) == size;
    std::fclose(file);
    return complete;
}

bool musicScan(MusicPlayer& player, const std::string& basePath, std::string* log) {
    player.active = false; // its track goes
    player.tracks.clear();
    for (int number = 1; number <= LARGEST_TRACK_NUMBER; number++) {
        MusicTrack track;
        if (!readTrack(basePath + "music" + std::to_string(number) + ".mp3", track)) break;
        track.start = findStart(track);
        player.tracks.push_back(std::move(track));
    }

    const size_t count = player.tracks.size();
    if (log && count == 0) *log += "No music files found; playing without music\n";
    if (log && count > 0) *log += "Music: " + std::to_string(count) + " track(s)\n";
    return count > 0;
}

// --- Decoded samples

static void appendSamples(std::vector<float>& pcm, const Frame& frame) {
    const int channels = frame.info.channels;
    const int right = channels > 1 ? 1 : 0;
    for (int i = 0; i < frame.count; i++) {
        pcm.push_back(static_cast<float>(frame.samples[i * channels]) * SAMPLE_UNIT);
        pcm.push_back(static_cast<float>(frame.samples[i * channels + right]) * SAMPLE_UNIT);
    }
}

// Appends the next audio frame of the track to pcm. False at its end.
static bool decodeFrame(MusicPlayer& player) {
    assert(player.trackIndex < player.tracks.size());
    const MusicTrack& track = player.tracks[player.trackIndex];
    Frame frame;
    while (player.filePos < track.size) {
        decodeAt(player.decoder, track, player.filePos, frame);
        if (frame.count <= 0) continue;
        player.step = frame.info.hz < 1 ? 1.0 : frame.info.hz / static_cast<double>(SAMPLE_RATE);
        appendSamples(player.pcm, frame);
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

// Two frames must come out: between them the resampler finds its first sample.
static bool openTrack(MusicPlayer& player, size_t index) {
    assert(player.tracks[index].start <= player.tracks[index].size);
    player.openCount++;
    mp3dec_init(&player.decoder);
    player.trackIndex = static_cast<uint32_t>(index);
    player.filePos = player.tracks[index].start;
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
    assert(mode >= MUSIC_OFF && mode <= MUSIC_GAME);
    if (mode == player.mode) return;
    player.mode = mode;
    player.active = false;
    if (mode != MUSIC_OFF && !player.tracks.empty()) musicOpen(player, 0);
}

// --- Playing

static bool openFollowingTrack(MusicPlayer& player) {
    return player.mode == MUSIC_MENU ? musicOpen(player, 0) : musicNext(player);
}

// Adds one frame, straight between the two decoded frames around the reading position.
static void addFrame(const MusicPlayer& player, float* out, float volume) {
    assert(player.readFrame + 1 < decodedFrames(player));
    const float f = static_cast<float>(player.readFrac);
    const float* a = &player.pcm[2 * player.readFrame];
    const float* b = a + 2;
    const float fade = std::min(1.0f, player.fadeClock / FADE_TIME);
    out[0] += (b[0] * f + a[0] * (1.0f - f)) * volume * fade;
    out[1] += (b[1] * f + a[1] * (1.0f - f)) * volume * fade;
}

static void advance(MusicPlayer& player) {
    assert(player.step > 0.0 && player.readFrac >= 0.0 && player.readFrac < 1.0);
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
