#include "icon_files.h"

using Bytes = std::vector<uint8_t>;

static void append(Bytes& bytes, const Bytes& more) { bytes.insert(bytes.end(), more.begin(), more.end()); }

static void appendLowFirst(Bytes& bytes, uint32_t value, int count) {
    for (int i = 0; i < count; i++) bytes.push_back(static_cast<uint8_t>(value >> (8 * i)));
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
