#include "audio/tracks.h"

#include "audio/voices.h"
#include "temp_dir.h"

#include <cmath>
#include <cstdlib>
#include <cstring>

MusicTrack trackOf(const Bytes& file) {
    MusicTrack track;
    track.size = file.size();
    track.bytes = file;
    track.bytes.resize(file.size() + TRACK_TAIL);
    return track;
}

Bytes joined(const std::vector<Bytes>& parts) {
    Bytes all;
    for (const Bytes& part : parts) all.insert(all.end(), part.begin(), part.end());
    return all;
}

// --- From lame
// --------------------------------------------------------------------------------------------------

static void putNumber(std::string& out, uint32_t value, int bytes) {
    for (int i = 0; i < bytes; i++) out += static_cast<char>(value >> (8 * i));
}

static std::string waveFile(int hz, int channels, const std::vector<int16_t>& samples) {
    const auto size = static_cast<uint32_t>(2 * samples.size());
    const auto rate = static_cast<uint32_t>(hz);
    const auto frame = static_cast<uint32_t>(2 * channels);
    std::string out = "RIFF";
    putNumber(out, 36 + size, 4);
    out += "WAVEfmt ";
    putNumber(out, 16, 4);
    putNumber(out, 1, 2);
    putNumber(out, frame / 2, 2);
    putNumber(out, rate, 4);
    putNumber(out, rate * frame, 4);
    putNumber(out, frame, 2);
    putNumber(out, 16, 2);
    out += "data";
    putNumber(out, size, 4);
    for (const int16_t sample : samples) putNumber(out, static_cast<uint16_t>(sample), 2);
    return out;
}

static std::vector<int16_t> chord(int hz, int channels, float seconds) {
    std::vector<int16_t> samples;
    uint32_t state = 7;
    for (int i = 0; i < static_cast<int>(seconds * static_cast<float>(hz)); i++) {
        const double t = 6.283185307 * i / hz;
        for (int channel = 0; channel < channels; channel++) {
            const double tones = std::sin(t * (220.0 + 110.0 * channel)) + 0.5 * std::sin(t * 1375.0);
            samples.push_back(static_cast<int16_t>(8000.0 * tones +
                                                   3000.0 * (static_cast<double>(noiseUnit(state)) - 0.5)));
        }
    }
    return samples;
}

Bytes lameTrack(int hz, int channels, float seconds, const std::string& options) {
    const TempDir dir;
    writeText(dir.file("in.wav"), waveFile(hz, channels, chord(hz, channels, seconds)));
    const std::string command =
        "lame --quiet " + options + " " + dir.file("in.wav") + " " + dir.file("out.mp3");
    if (std::system(command.c_str()) != 0) std::abort();
    const std::string text = readText(dir.file("out.mp3"));
    return {text.begin(), text.end()};
}

// --- Bit by bit
// -------------------------------------------------------------------------------------------------

Bytes headerBytes(const FrameHeader& header) {
    const int version = header.version == 1 ? 3 : header.version == 2 ? 2 : 0;
    const auto second = static_cast<uint8_t>(0xE0 | version << 3 | (4 - header.layer) << 1 | 1);
    const auto third = static_cast<uint8_t>(header.bitrateIndex << 4 | header.rateIndex << 2);
    const auto fourth = static_cast<uint8_t>(header.mono ? 0xC0 : 0x00);
    return {0xFF, second, third, fourth};
}

// In kbit/s, by bitrate index; the later versions share a table.
static int bitrate(const FrameHeader& header) {
    static const int table[2][3][15] = {
        {{0, 32, 64, 96, 128, 160, 192, 224, 256, 288, 320, 352, 384, 416, 448},
         {0, 32, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, 384},
         {0, 32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320}},
        {{0, 32, 48, 56, 64, 80, 96, 112, 128, 144, 160, 176, 192, 224, 256},
         {0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160},
         {0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160}}};
    return table[header.version == 1 ? 0 : 1][header.layer - 1][header.bitrateIndex];
}

static int sampleRate(const FrameHeader& header) {
    static const int rates[] = {44100, 48000, 32000};
    return rates[header.rateIndex] / (header.version == 1 ? 1 : header.version == 2 ? 2 : 4);
}

size_t frameSize(const FrameHeader& header) {
    const int samples = header.layer == 1 ? 384 : header.layer == 3 && header.version != 1 ? 576 : 1152;
    const int bytes = samples * bitrate(header) * 125 / sampleRate(header);
    return static_cast<size_t>(header.layer == 1 ? bytes & ~3 : bytes);
}

Bytes silentFrame(const FrameHeader& header) {
    Bytes frame = headerBytes(header);
    frame.resize(frameSize(header)); // granules of no bits at all
    return frame;
}

struct BitWriter {
    Bytes& bytes;
    size_t position; // in bits

    void put(uint32_t value, int bits) {
        for (int bit = bits - 1; bit >= 0; bit--, position++)
            if (value >> bit & 1) bytes[position / 8] |= static_cast<uint8_t>(128 >> position % 8);
    }
};

Bytes noiseFrame(FrameHeader header, uint32_t seed) {
    header.layer = 1;
    Bytes frame = headerBytes(header);
    frame.resize(frameSize(header));
    BitWriter out = {frame, 32};
    const int channels = header.mono ? 1 : 2;
    for (int band = 0; band < 32; band++)
        for (int channel = 0; channel < channels; channel++)
            out.put(band < 3 ? 4 : 0, 4);                  // five bits a sample
    for (int i = 0; i < 3 * channels; i++) out.put(12, 6); // the scale
    for (int i = 0; i < 12 * 3 * channels; i++) out.put(nextNoise(seed) >> 27, 5);
    return frame;
}

Bytes silentFrames(const FrameHeader& header, int count) {
    return joined(std::vector<Bytes>(static_cast<size_t>(count), silentFrame(header)));
}

Bytes noiseFrames(const FrameHeader& header, int count, uint32_t seed) {
    Bytes all;
    for (int i = 0; i < count; i++) {
        const Bytes frame = noiseFrame(header, seed + static_cast<uint32_t>(i) * 977);
        all.insert(all.end(), frame.begin(), frame.end());
    }
    return all;
}
