#include "icon_files.h"

#include <algorithm>
#include <string_view>

using Bytes = std::vector<uint8_t>;

static void append(Bytes& bytes, const Bytes& more) { bytes.insert(bytes.end(), more.begin(), more.end()); }

static void appendText(Bytes& bytes, std::string_view text) {
    bytes.insert(bytes.end(), text.begin(), text.end());
}

// PNG keeps the high byte first, ICO and the blocks of deflate the low byte.
static void appendHighFirst(Bytes& bytes, uint32_t value) {
    for (int shift = 24; shift >= 0; shift -= 8) bytes.push_back(static_cast<uint8_t>(value >> shift));
}

static void appendLowFirst(Bytes& bytes, uint32_t value, int count) {
    for (int i = 0; i < count; i++) bytes.push_back(static_cast<uint8_t>(value >> (8 * i)));
}

static uint32_t crc32(const Bytes& bytes) {
    uint32_t crc = 0xFFFFFFFFu;
    for (const uint8_t byte : bytes) {
        crc ^= byte;
        for (int bit = 0; bit < 8; bit++) crc = (crc >> 1) ^ ((crc & 1) * 0xEDB88320u);
    }
    return ~crc;
}

static uint32_t adler32(const Bytes& bytes) {
    uint32_t low = 1;
    uint32_t high = 0;
    for (const uint8_t byte : bytes) {
        low = (low + byte) % 65521;
        high = (high + low) % 65521;
    }
    return high << 16 | low;
}

// A zlib stream of stored blocks. Icons are few and small: the same bytes on every machine, with nothing to
// link, are worth more than their compression.
static Bytes storedStream(const Bytes& data) {
    constexpr size_t BLOCK = 65535;
    Bytes stream = {0x78, 0x01};
    for (size_t start = 0; start < data.size(); start += BLOCK) {
        const size_t count = std::min(BLOCK, data.size() - start);
        stream.push_back(start + count == data.size()); // the last block says so
        appendLowFirst(stream, static_cast<uint32_t>(count), 2);
        appendLowFirst(stream, ~static_cast<uint32_t>(count), 2);
        stream.insert(stream.end(), data.data() + start, data.data() + start + count);
    }
    appendHighFirst(stream, adler32(data));
    return stream;
}

static void appendChunk(Bytes& png, std::string_view name, const Bytes& data) {
    Bytes checked;
    appendText(checked, name);
    append(checked, data);
    appendHighFirst(png, static_cast<uint32_t>(data.size()));
    append(png, checked);
    appendHighFirst(png, crc32(checked));
}

// Every row of a PNG begins with the filter that was used on it: none.
static Bytes unfilteredRows(int size, const Bytes& pixels) {
    const size_t stride = static_cast<size_t>(size) * 4;
    Bytes rows;
    for (size_t start = 0; start < pixels.size(); start += stride) {
        rows.push_back(0);
        rows.insert(rows.end(), pixels.data() + start, pixels.data() + start + stride);
    }
    return rows;
}

Bytes encodePng(int size, const Bytes& pixels) {
    Bytes header;
    appendHighFirst(header, static_cast<uint32_t>(size));
    appendHighFirst(header, static_cast<uint32_t>(size));
    append(header, {8, 6, 0, 0, 0}); // bits of a channel, red green blue alpha, and no choice in the rest

    Bytes png = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
    appendChunk(png, "IHDR", header);
    appendChunk(png, "IDAT", storedStream(unfilteredRows(size, pixels)));
    appendChunk(png, "IEND", {});
    return png;
}

Bytes encodeIco(const std::vector<IconPicture>& pictures) {
    constexpr uint32_t HEADER_BYTES = 6;
    constexpr uint32_t ENTRY_BYTES = 16;
    const uint32_t count = static_cast<uint32_t>(pictures.size());
    Bytes ico;
    appendLowFirst(ico, 0, 2);
    appendLowFirst(ico, 1, 2); // an icon, not a cursor
    appendLowFirst(ico, count, 2);
    uint32_t offset = HEADER_BYTES + ENTRY_BYTES * count;
    for (const IconPicture& picture : pictures) {
        const uint8_t side = static_cast<uint8_t>(picture.size); // 256 is written as 0
        append(ico, {side, side, 0, 0});                         // and no palette
        appendLowFirst(ico, 1, 2);                               // planes
        appendLowFirst(ico, 32, 2);                              // bits of a pixel
        appendLowFirst(ico, static_cast<uint32_t>(picture.png.size()), 4);
        appendLowFirst(ico, offset, 4);
        offset += static_cast<uint32_t>(picture.png.size());
    }
    for (const IconPicture& picture : pictures) append(ico, picture.png);
    return ico;
}
