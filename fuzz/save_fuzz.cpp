// Damaged saves are read, and what could be read comes back equal from what it saves. Nothing lives here, so
// that many are read a second; save_life_fuzz plays on.
#include "damaged_save.h"
#include "sim/save_file.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Input input{data, size};
    input.take<uint32_t>(); // the salt of save_life_fuzz, so that one corpus serves both
    const Bytes bytes = damagedSave(input);
    static City city; // in use before, as the game's own is
    if (!decodeCity(city, bytes.data(), bytes.size())) return 0;

    const Bytes saved = encodeCity(city);
    static City again;
    if (!decodeCity(again, saved.data(), saved.size()) || encodeCity(again) != saved) std::abort();
    return 0;
}
