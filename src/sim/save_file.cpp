#include "sim/save_file.h"

#include "sim/file_io.h"
#include "sim/missions.h"
#include "sim/networks.h"
#include "sim/services.h"
#include "sim/traffic.h"

#include <algorithm>
#include <bit>
#include <cassert>
#include <cstddef>
#include <cstring>
#include <type_traits>

static_assert(std::endian::native == std::endian::little, "records go to the file as they lie in memory");
static_assert(std::is_trivially_copyable_v<Cell> && offsetof(Cell, buildingIndex) == 8);
static_assert(std::is_trivially_copyable_v<Building> && offsetof(Building, progress) == 8);

constexpr char MAGIC[4] = {'O', 'V', 'W', '2'};
constexpr size_t HEAD_SIZE = 149431;     // everything before the first building
constexpr size_t SMALLEST_SAVE = 149427; // version 2 without buildings

struct SaveWriter {
    std::vector<uint8_t>& bytes;

    void block(const void* data, size_t size) {
        const uint8_t* first = static_cast<const uint8_t*>(data);
        bytes.insert(bytes.end(), first, first + size);
    }
};

// A block past the end fails; it and all behind it change nothing, so that one test in the end is enough.
struct SaveReader {
    const uint8_t* at;
    size_t left;
    bool failed = false;

    void block(void* data, size_t size) {
        if (failed || size > left) {
            failed = true;
            return;
        }
        if (size > 0) std::memcpy(data, at, size); // an empty list may be null, which memcpy must not see
        at += size;
        left -= size;
    }
};

// In the order of the file. One list for both directions, so that they cannot drift apart.
template<class Stream, class AnyCity>
static void exchangeFields(Stream& stream, AnyCity& city, uint32_t version) {
    const auto field = [&stream](auto& value) { stream.block(&value, sizeof value); };
    field(city.seed);
    field(city.day);
    field(city.hourOfDay);
    field(city.money);
    field(city.lastIncome);
    field(city.lastExpense);
    field(city.population);
    field(city.jobs);
    field(city.employed);
    field(city.workers);
    field(city.happiness);
    field(city.educatedShare);
    field(city.goodsDemand);
    field(city.goodsSupply);
    field(city.goodsRatio);
    field(city.streetCells);
    field(city.avenueCells);
    field(city.commuters);
    field(city.transitRiders);
    field(city.demand);
    field(city.taxRate);
    field(city.serviceBudget);
    field(city.districtTax);
    field(city.districtPolicy);
    field(city.missionIndex);
    field(city.allMissionsDone);
    field(city.bankrupt);
    field(city.daysBelowZero);
    field(city.raining);
    field(city.weatherDaysLeft);
    if (version >= 3) field(city.calendarDay);
    field(city.historyCount);
    field(city.history);
}

template<class Record> static void writeRecords(SaveWriter& writer, const std::vector<Record>& records) {
    const uint32_t count = static_cast<uint32_t>(records.size());
    writer.block(&count, sizeof count);
    writer.block(records.data(), records.size() * sizeof(Record));
}

// The records must be there before room for them is made, so that a count that lies costs no memory.
template<class Record>
static bool readRecords(SaveReader& reader, std::vector<Record>& records, size_t least, size_t most) {
    uint32_t count = 0;
    reader.block(&count, sizeof count);
    if (reader.failed || count < least || count > most) return false;
    if (count > reader.left / sizeof(Record)) return false;
    records.resize(count);
    reader.block(records.data(), count * sizeof(Record));
    return true;
}

static bool readCity(SaveReader& reader, City& city) {
    char magic[4] = {};
    uint32_t version = 0;
    reader.block(magic, sizeof magic);
    reader.block(&version, sizeof version);
    if (std::memcmp(magic, MAGIC, sizeof magic) != 0) return false;
    if (version != 2 && version != SAVE_VERSION) return false;

    exchangeFields(reader, city, version);
    return readRecords(reader, city.heights, CORNER_COUNT, CORNER_COUNT) &&
           readRecords(reader, city.cells, CELL_COUNT, CELL_COUNT) &&
           readRecords(reader, city.buildings, 0, SAVED_BUILDING_LIMIT);
}

// Asks only for what becomes an index and for the rates: the rules are safe from all else, however odd.
static bool isValid(const City& city) {
    const auto allWithin = [](const auto& values, int low, int high) {
        return std::all_of(values.begin(), values.end(), [=](int v) { return v >= low && v <= high; });
    };
    return city.historyCount >= 0 && city.historyCount <= HISTORY_LENGTH && city.missionIndex >= 0 &&
           city.missionIndex <= missionCount() && allWithin(city.taxRate, 20, 200) &&
           allWithin(city.serviceBudget, 50, 150);
}

static void rebuildDerived(City& city) {
    std::fill(city.cellDirty.begin(), city.cellDirty.end(), uint8_t{1});
    std::fill(city.landValue.begin(), city.landValue.end(), 0.5f);
    updateUtilities(city);
    updateCoverage(city);
    updateTraffic(city);
    updateLandValue(city);
    city.roadsDirty = city.buildingsDirty = city.zonesDirty = city.overlayDirty = 1;
}

std::vector<uint8_t> encodeCity(const City& city) {
    std::vector<uint8_t> bytes;
    bytes.reserve(HEAD_SIZE + city.buildings.size() * sizeof(Building));
    SaveWriter writer{bytes};
    writer.block(MAGIC, sizeof MAGIC);
    writer.block(&SAVE_VERSION, sizeof SAVE_VERSION);
    exchangeFields(writer, city, SAVE_VERSION);
    writeRecords(writer, city.heights);
    writeRecords(writer, city.cells);
    writeRecords(writer, city.buildings);
    assert(bytes.size() == HEAD_SIZE + city.buildings.size() * sizeof(Building));
    return bytes;
}

bool decodeCity(City& city, const uint8_t* bytes, size_t size) {
    if (size < SMALLEST_SAVE) return false;
    City loaded; // all that is not in the file is as in a fresh record
    SaveReader reader{bytes, size};
    if (!readCity(reader, loaded) || !isValid(loaded)) return false;

    for (int32_t& level : loaded.districtTax) level = (level % 3 + 3) % 3;
    loaded.eventCount = city.eventCount;
    city = std::move(loaded);
    postEvent(city, STATUS_LOADED, 0);
    setStatus(city, STATUS_LOADED);
    rebuildDerived(city);
    return true;
}

bool saveCity(const City& city, const std::string& path) {
    const std::vector<uint8_t> bytes = encodeCity(city);
    return writeFile(path, bytes.data(), bytes.size());
}

bool loadCity(City& city, const std::string& path) {
    std::vector<uint8_t> bytes;
    return readFile(path, HEAD_SIZE + SAVED_BUILDING_LIMIT * sizeof(Building), bytes) &&
           decodeCity(city, bytes.data(), bytes.size());
}
