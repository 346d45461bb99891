// What loads of a damaged save is played for a few days and saved again.
#include "damaged_save.h"
#include "sim/exercise_city.h"
#include "sim/save_file.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Input input{data, size};
    const uint32_t salt = input.take<uint32_t>();
    const Bytes bytes = damagedSave(input);
    City city;
    if (decodeCity(city, bytes.data(), bytes.size()) && !exerciseCity(city, salt)) std::abort();
    return 0;
}
