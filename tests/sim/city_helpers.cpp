#include "sim/city_helpers.h"

#include <algorithm>
#include <cstring>

City flatCity() {
    City city;
    std::fill(city.heights.begin(), city.heights.end(), 10.0f);
    return city;
}

void layRoads(City& city, int x0, int y0, int x1, int y1, uint8_t type) {
    for (int y = y0; y <= y1; y++)
        for (int x = x0; x <= x1; x++) city.cells[cellIndex(x, y)].road = type;
}

Building& addBuilding(City& city, int x, int y, uint8_t kind, uint8_t level) {
    Building building;
    building.kind = kind;
    building.level = level;
    building.x = static_cast<int16_t>(x);
    building.y = static_cast<int16_t>(y);
    building.progress = 1.0f;
    building.happiness = isGrownKind(kind) ? 55.0f : 60.0f;
    if (inMap(x, y)) city.cells[cellIndex(x, y)].buildingIndex = static_cast<int32_t>(city.buildings.size());
    return city.buildings.emplace_back(building);
}

Building& addWorkingBuilding(City& city, int x, int y, uint8_t kind, uint8_t level) {
    Building& building = addBuilding(city, x, y, kind, level);
    building.powered = building.watered = building.roadAccess = building.working = 1;
    return building;
}

namespace {

// FNV-1a with eight bytes a step, because tests hash whole cities by the thousand; the shift carries the high
// bits of a product back down.
struct Fnv {
    uint64_t hash = 14695981039346656037u;

    void bytes(const void* data, size_t size) {
        const unsigned char* byte = static_cast<const unsigned char*>(data);
        for (; size > 0; byte += sizeof(uint64_t)) {
            uint64_t word = 0;
            const size_t count = std::min(size, sizeof(word));
            std::memcpy(&word, byte, count);
            hash = (hash ^ word) * 1099511628211u;
            hash ^= hash >> 32;
            size -= count;
        }
    }
    template<class T> void add(const T& value) { bytes(&value, sizeof(value)); }
    template<class T> void addAll(const std::vector<T>& values) {
        add(values.size());
        bytes(values.data(), values.size() * sizeof(T));
    }
};

} // namespace

static uint64_t hashOfServices(const City& city) {
    Fnv fnv;
    for (const Grid& grid : city.coverage) fnv.addAll(grid);
    for (const Grid* grid : {&city.pollution, &city.landValue, &city.powerField, &city.waterField})
        fnv.addAll(*grid);
    return fnv.hash;
}

static uint64_t hashOfEconomy(const City& city) {
    Fnv fnv;
    for (const double value : {city.money, city.lastIncome, city.lastExpense}) fnv.add(value);
    for (const int32_t value : {city.population, city.jobs, city.employed, city.workers, city.commuters,
                                city.transitRiders, city.streetCells, city.avenueCells, city.historyCount})
        fnv.add(value);
    for (const float value :
         {city.happiness, city.educatedShare, city.goodsDemand, city.goodsSupply, city.goodsRatio})
        fnv.add(value);
    fnv.add(city.demand);
    fnv.add(city.taxRate);
    fnv.add(city.serviceBudget);
    fnv.add(city.districtTax);
    fnv.add(city.districtPolicy);
    fnv.add(city.history);
    return fnv.hash;
}

static uint64_t hashOfCourse(const City& city) {
    Fnv fnv;
    for (const int32_t value : {city.day, city.calendarDay, city.missionIndex, city.daysBelowZero,
                                city.raining, city.weatherDaysLeft})
        fnv.add(value);
    for (const uint8_t value : {city.keepPlaying, city.allMissionsDone, city.bankrupt}) fnv.add(value);
    fnv.add(city.seed);
    fnv.add(city.hourOfDay);
    fnv.add(city.eventCount);
    for (const GameEvent& event : city.events) {
        fnv.add(event.id);
        fnv.add(event.arg);
    }
    return fnv.hash;
}

CityHashes cityHashes(const City& city) {
    Fnv land;
    land.addAll(city.heights);
    land.addAll(city.cells);
    Fnv buildings;
    buildings.addAll(city.buildings);
    Fnv traffic;
    traffic.addAll(city.trafficFlow);
    traffic.addAll(city.trafficLoad);
    traffic.addAll(city.roadCapacity);
    Fnv staleness;
    staleness.addAll(city.cellDirty);
    for (const uint8_t flag : {city.roadsDirty, city.buildingsDirty, city.zonesDirty, city.overlayDirty})
        staleness.add(flag);
    return {land.hash,           buildings.hash,     hashOfServices(city), traffic.hash,
            hashOfEconomy(city), hashOfCourse(city), staleness.hash};
}

uint64_t cityHash(const City& city) {
    Fnv fnv;
    fnv.add(cityHashes(city));
    return fnv.hash;
}

static const char* brokenCellRule(const City& city, int x, int y) {
    const Cell& cell = city.cells[cellIndex(x, y)];
    if (cell.zone > ZONE_INDUSTRIAL || cell.terrain > TERRAIN_SAND || cell.road > ROAD_AVENUE)
        return "cell holds a number that means nothing";
    if (cell.district >= DISTRICT_COUNT || cell.hasTrees > 1 || cell.busStop > 1)
        return "cell holds a number that means nothing";
    if (cell.road && cell.zone) return "zone on a road";
    if (cell.road && cell.buildingIndex != -1) return "building on a road";
    if (cell.busStop && !cell.road) return "bus stop off the road";
    if (cell.buildingIndex == -1) return nullptr;
    const Building* building = buildingAt(city, x, y);
    if (!building) return "cell points outside the list of buildings";
    if (building->x != x || building->y != y) return "building does not stand on the cell that points at it";
    return nullptr;
}

static bool touchesRoad(const City& city, int x, int y) {
    const auto road = [&city](int cx, int cy) { return inMap(cx, cy) && city.cells[cellIndex(cx, cy)].road; };
    return road(x + 1, y) || road(x - 1, y) || road(x, y + 1) || road(x, y - 1);
}

static const char* brokenBuildingRule(const City& city, const Building& building) {
    if (buildingAt(city, building.x, building.y) != &building) return "building is not on the cell it names";
    if (building.kind >= KIND_COUNT) return "building of no kind";
    if (building.level < 1 || building.level > (isGrownKind(building.kind) ? 3 : 1)) return "wrong level";
    if (!(building.progress >= 0.0f && building.progress <= 1.0f)) return "progress out of range";
    if (building.roadAccess != touchesRoad(city, building.x, building.y)) return "wrong road access";
    if (building.powered > 1 || building.watered > 1 || building.working > 1) return "flag above 1";
    if (building.working && !(building.powered && building.watered && building.roadAccess))
        return "works without what it needs";
    if (building.working && !isFinished(building)) return "works before it is finished";
    if (building.occupants < 0 || building.unservedDays < 0 || building.unhappyDays < 0)
        return "count below zero";
    if (!(building.happiness >= 0.0f && building.happiness <= 100.0f)) return "happiness out of range";
    if (!(building.staffing >= 0.0f && building.staffing <= 1.0f)) return "staffing out of range";
    if (!(building.congestion >= 0.0f && building.congestion <= 1.0f)) return "congestion out of range";
    if (!(building.pollutionHere >= 0.0f && building.pollutionHere <= 1.0f)) return "pollution out of range";
    return nullptr;
}

static std::string at(const char* rule, int x, int y) {
    return std::string(rule) + " at " + std::to_string(x) + "," + std::to_string(y);
}

std::string brokenInvariant(const City& city) {
    if (city.cells.size() != CELL_COUNT || city.heights.size() != CORNER_COUNT) return "land of a wrong size";
    if (city.coverage.size() != COVERAGE_COUNT) return "wrong number of coverage grids";
    for (const Grid& grid : city.coverage)
        if (grid.size() != CELL_COUNT) return "coverage of a wrong size";
    for (const Grid* grid : {&city.trafficLoad, &city.pollution, &city.landValue, &city.trafficFlow,
                             &city.powerField, &city.waterField})
        if (grid->size() != CELL_COUNT) return "field of a wrong size";
    if (city.roadCapacity.size() != CELL_COUNT || city.cellDirty.size() != CELL_COUNT)
        return "field of a wrong size";
    if (city.events.size() > EVENT_LIMIT) return "too many events";
    if (city.historyCount < 0 || city.historyCount > HISTORY_LENGTH) return "history of a wrong length";

    for (int y = 0; y < GRID_SIZE; y++)
        for (int x = 0; x < GRID_SIZE; x++)
            if (const char* rule = brokenCellRule(city, x, y)) return at(rule, x, y);
    for (const Building& building : city.buildings)
        if (const char* rule = brokenBuildingRule(city, building)) return at(rule, building.x, building.y);
    return "";
}
