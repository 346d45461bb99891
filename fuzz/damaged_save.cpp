#include "damaged_save.h"

#include "sim/city_helpers.h"
#include "sim/daily_tick.h"
#include "sim/map_generation.h"
#include "sim/save_file.h"

#include <algorithm>

constexpr size_t HEAD_END = 1195;
constexpr size_t CALENDAR_AT = 223;
constexpr size_t CELLS_AT = 38835;
constexpr size_t BUILDING_COUNT_AT = 149427;
constexpr size_t BUILDINGS_AT = 149431;

enum Change {
    CHANGE_ANYWHERE, // u32 offset, u32 value
    CHANGE_HEAD,     // u16 offset, u32 value
    CHANGE_CELL,     // u16 index, 12 bytes
    CHANGE_BUILDING, // u8 index, 44 bytes
    ADD_BUILDING,    // 44 bytes, also entered in its cell if it has one
    ADD_MANY,        // u8 count: the last building again and again
    CUT,             // u32 size
    VERSION_2,
    FIRST_BYTES, // all the rest of the input stands at the head of the file
    CHANGE_COUNT
};

static Bytes goodSave() {
    City city;
    generateMap(city, 3);
    layRoads(city, 40, 48, 56, 48);
    addBuilding(city, 45, 49, KIND_GAS_POWER_PLANT);
    addBuilding(city, 46, 49, KIND_WATER_PUMP);
    addBuilding(city, 47, 49, KIND_BUS_DEPOT);
    city.cells[cellIndex(48, 48)].busStop = 1;
    for (int x = 40; x <= 56; x++) {
        city.cells[cellIndex(x, 47)].zone = static_cast<uint8_t>(1 + x % 4);
        if (x < 45 || x > 47) addBuilding(city, x, 49, static_cast<uint8_t>(x % 4), 2).occupants = 9;
    }
    dailyTick(city);
    return encodeCity(city);
}

static void put(Bytes& bytes, size_t at, const void* data, size_t size) {
    if (at + size <= bytes.size()) std::memcpy(bytes.data() + at, data, size);
}

static uint32_t valueAt(const Bytes& bytes, size_t at) {
    uint32_t value = 0;
    if (at + sizeof value <= bytes.size()) std::memcpy(&value, bytes.data() + at, sizeof value);
    return value;
}

static void addBuildings(Bytes& bytes, const uint8_t* record, uint32_t count) {
    if (bytes.size() < BUILDINGS_AT) return;
    const uint32_t total = valueAt(bytes, BUILDING_COUNT_AT) + count;
    put(bytes, BUILDING_COUNT_AT, &total, sizeof total);
    for (uint32_t i = 0; i < count; i++) bytes.insert(bytes.end(), record, record + sizeof(Building));
}

static void enterInCell(Bytes& bytes, const Building& building) {
    if (!inMap(building.x, building.y)) return;
    const uint32_t index = valueAt(bytes, BUILDING_COUNT_AT) - 1;
    put(bytes, CELLS_AT + sizeof(Cell) * cellIndex(building.x, building.y) + 8, &index, sizeof index);
}

static void change(Bytes& bytes, Input& input) {
    uint8_t record[sizeof(Building)];
    switch (input.take<uint8_t>() % CHANGE_COUNT) {
    case CHANGE_ANYWHERE: {
        const size_t at = input.take<uint32_t>() % (bytes.size() + 1);
        const uint32_t value = input.take<uint32_t>();
        put(bytes, at, &value, sizeof value);
        break;
    }
    case CHANGE_HEAD: {
        const size_t at = input.take<uint16_t>() % HEAD_END;
        const uint32_t value = input.take<uint32_t>();
        put(bytes, at, &value, sizeof value);
        break;
    }
    case CHANGE_CELL: {
        const size_t index = input.take<uint16_t>() % CELL_COUNT;
        input.take(record, sizeof(Cell));
        put(bytes, CELLS_AT + index * sizeof(Cell), record, sizeof(Cell));
        break;
    }
    case CHANGE_BUILDING: {
        const size_t index = input.take<uint8_t>();
        input.take(record, sizeof(Building));
        put(bytes, BUILDINGS_AT + index * sizeof(Building), record, sizeof(Building));
        break;
    }
    case ADD_BUILDING: {
        Building building;
        input.take(&building, sizeof building);
        std::memcpy(record, &building, sizeof building);
        addBuildings(bytes, record, 1);
        enterInCell(bytes, building);
        break;
    }
    case ADD_MANY: {
        const uint32_t count = input.take<uint8_t>();
        if (bytes.size() < BUILDINGS_AT + sizeof(Building)) break;
        std::copy(bytes.end() - sizeof(Building), bytes.end(), record);
        addBuildings(bytes, record, count);
        break;
    }
    case CUT:
        bytes.resize(std::min<size_t>(bytes.size(), input.take<uint32_t>()));
        break;
    case VERSION_2: {
        const uint32_t version = 2;
        put(bytes, 4, &version, sizeof version);
        if (bytes.size() >= HEAD_END)
            bytes.erase(bytes.begin() + CALENDAR_AT, bytes.begin() + CALENDAR_AT + 4);
        break;
    }
    case FIRST_BYTES: {
        const size_t size = std::min(input.left, bytes.size());
        input.take(bytes.data(), size);
        break;
    }
    }
}

Bytes damagedSave(Input& input) {
    static const Bytes good = goodSave();
    Bytes bytes = good;
    while (input.left > 0) change(bytes, input);
    bytes.shrink_to_fit(); // so that a read past the end is seen
    return bytes;
}
