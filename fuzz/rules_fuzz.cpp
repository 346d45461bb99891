// Whatever happens to a city, the game's passes and tools leave what their plain forms leave: two cities go
// through the operations that the input names, one in each form, and are compared field by field after every
// one.
#include "damaged_save.h"
#include "sim/build_tools.h"
#include "sim/city_helpers.h"
#include "sim/daily_tick.h"
#include "sim/finance.h"
#include "sim/grid_line.h"
#include "sim/grid_rect.h"
#include "sim/growth.h"
#include "sim/map_generation.h"
#include "sim/networks.h"
#include "sim/plain_rules.h"
#include "sim/population.h"
#include "sim/save_file.h"
#include "sim/services.h"
#include "sim/traffic.h"

#include <cstdio>
#include <cstdlib>

enum Operation {
    LAY_ROAD,
    BULLDOZE,
    SET_ZONES,
    SET_DISTRICTS,
    PLACE_BUILDING,
    PLACE_BUS_STOP,
    CHANGE_RATES,
    RUN_PASS,
    RUN_DAYS,
    EDIT_CELL,
    EDIT_BUILDING,
    EDIT_FIGURES,
    SAVE_AND_LOAD,
    LOAD_DAMAGED, // takes the rest of the input
    NEW_LAND,
    COPY_AND_MOVE,
    OPERATION_COUNT
};

constexpr int LONGEST_RUN = 48;    // operations
constexpr size_t BUILDINGS = 2000; // damaged saves with more would make a run last minutes

struct Drag {
    int x0, y0, x1, y1;
};

// Most land around the middle, where the town is; some lie off the map.
static int takeCoordinate(Input& input) { return 32 + input.take<int8_t>() % 52; }

static Drag takeDrag(Input& input, int longest) {
    const int x = takeCoordinate(input);
    const int y = takeCoordinate(input);
    const int dx = input.take<int8_t>() % longest;
    const int dy = input.take<int8_t>() % longest;
    return {x, y, x + dx, y + dy};
}

static City smallTown() {
    City city = flatCity();
    layRoads(city, 20, 40, 60, 40);
    layRoads(city, 40, 25, 40, 60, ROAD_AVENUE);
    for (const uint8_t kind : {KIND_GAS_POWER_PLANT, KIND_WATER_PUMP, KIND_BUS_DEPOT, KIND_SCHOOL, KIND_PARK})
        addBuilding(city, 22 + 3 * kind, 39, kind);
    for (int i = 0; i < 60; i++) addBuilding(city, 21 + i % 38, 41 + i / 38 * 2, static_cast<uint8_t>(i % 4));
    for (int x = 20; x <= 60; x++) city.cells[cellIndex(x, 38)].zone = static_cast<uint8_t>(1 + x % 4);
    for (const int x : {25, 35, 50}) city.cells[cellIndex(x, 40)].busStop = 1;
    city.money = 1e7;
    return city;
}

// Both forms of what a player does over many cells.
static void layRoad(City& city, City& plainCity, Input& input) {
    const int type = input.take<uint8_t>() % 4;
    const Drag drag = takeDrag(input, 30);
    placeRoadLine(city, drag.x0, drag.y0, drag.x1, drag.y1, type);
    walkLine(drag.x0, drag.y0, drag.x1, drag.y1,
             [&](int x, int y) { plain::placeRoad(plainCity, x, y, type); });
}

static void clear(City& city, City& plainCity, Input& input) {
    const Drag drag = takeDrag(input, 12);
    bulldozeRect(city, drag.x0, drag.y0, drag.x1, drag.y1);
    walkRect(drag.x0, drag.y0, drag.x1, drag.y1, [&](int x, int y) { plain::bulldoze(plainCity, x, y); });
}

static void runPass(City& city, City& plainCity, int pass) {
    struct Forms {
        void (*game)(City&);
        void (*plain)(City&);
    };
    static constexpr Forms PASSES[] = {{updateRoadAccess, plain::updateRoadAccess},
                                       {updateUtilities, plain::updateUtilities},
                                       {updateCoverage, plain::updateCoverage},
                                       {updateTraffic, plain::updateTraffic},
                                       {updateLandValue, plain::updateLandValue},
                                       {updatePopulation, plain::updatePopulation},
                                       {growZones, plain::growZones},
                                       {removeCondemnedBuildings, plain::removeCondemnedBuildings},
                                       {updateDemand, plain::updateDemand}};
    const Forms& forms = PASSES[static_cast<size_t>(pass) % std::size(PASSES)];
    forms.game(city);
    forms.plain(plainCity);
}

// What has one form only and is done to both.
static void onBoth(City& city, City& plainCity, void (*operation)(City&, Input&), Input& input) {
    Input again = input;
    operation(plainCity, again);
    operation(city, input);
}

static void setZones(City& city, Input& input) {
    const int zone = input.take<uint8_t>() % 6;
    const Drag drag = takeDrag(input, 12);
    walkRect(drag.x0, drag.y0, drag.x1, drag.y1, [&](int x, int y) { setZone(city, x, y, zone); });
}

static void setDistricts(City& city, Input& input) {
    const int district = input.take<uint8_t>() % 10;
    const Drag drag = takeDrag(input, 12);
    walkRect(drag.x0, drag.y0, drag.x1, drag.y1, [&](int x, int y) { setDistrict(city, x, y, district); });
}

static void build(City& city, Input& input) {
    const int kind = input.take<uint8_t>() % (KIND_COUNT + 1);
    const int x = takeCoordinate(input);
    placeBuilding(city, x, takeCoordinate(input), kind);
}

static void buildStop(City& city, Input& input) {
    const int x = takeCoordinate(input);
    placeBusStop(city, x, takeCoordinate(input));
}

static void changeRates(City& city, Input& input) {
    const int index = input.take<uint8_t>() % 10;
    const int steps = input.take<int8_t>();
    adjustTax(city, index, steps);
    adjustBudget(city, index, steps);
    cycleDistrictTax(city, index);
    toggleDistrictPolicy(city, index, 1 << (input.take<uint8_t>() % 3));
}

static void editCell(City& city, Input& input) {
    Cell& cell = city.cells[input.take<uint16_t>() % CELL_COUNT];
    cell.road = input.take<uint8_t>() % 4;
    cell.zone = input.take<uint8_t>() % 6;
    cell.terrain = input.take<uint8_t>() % 6;
    cell.district = input.take<uint8_t>() % 12;
    cell.busStop = input.take<uint8_t>() % 2;
}

static void editBuilding(City& city, Input& input) {
    if (city.buildings.empty()) return;
    Building& building = city.buildings[input.take<uint16_t>() % city.buildings.size()];
    building.kind = input.take<uint8_t>() % (KIND_COUNT + 2);
    building.level = input.take<uint8_t>() % 5;
    building.progress = static_cast<float>(input.take<uint8_t>()) / 200.0f;
    building.occupants = input.take<int16_t>();
    building.unhappyDays = input.take<int8_t>();
    building.unservedDays = input.take<int8_t>();
}

static void editFigures(City& city, Input& input) {
    city.money += static_cast<double>(input.take<int32_t>());
    city.day += input.take<uint8_t>();
    city.missionIndex = input.take<uint8_t>() % 8;
    city.keepPlaying = 1;
    city.bankrupt = 0;
    for (float& demand : city.demand) demand = static_cast<float>(input.take<int8_t>()) / 128.0f;
}

// What an edit has spoilt is refused, and the city stays as it is.
static void saveAndLoad(City& city, Input&) {
    const Bytes bytes = encodeCity(city);
    decodeCity(city, bytes.data(), bytes.size());
}

static void loadDamaged(City& city, Input& input) {
    const Bytes bytes = damagedSave(input);
    City loaded;
    if (decodeCity(loaded, bytes.data(), bytes.size()) && loaded.buildings.size() <= BUILDINGS)
        decodeCity(city, bytes.data(), bytes.size());
}

static void newLand(City& city, Input& input) { generateMap(city, input.take<uint8_t>()); }

// What the passes remember goes with a city that is copied, and stays behind in none.
static void copyAndMove(City& city, Input&) {
    City copy = city;
    copy.cells[0].road = ROAD_STREET;
    updateTraffic(copy);
    City moved = std::move(city);
    city = moved;
}

static void operate(City& city, City& plainCity, Input& input) {
    switch (input.take<uint8_t>() % OPERATION_COUNT) {
    case LAY_ROAD:
        return layRoad(city, plainCity, input);
    case BULLDOZE:
        return clear(city, plainCity, input);
    case SET_ZONES:
        return onBoth(city, plainCity, setZones, input);
    case SET_DISTRICTS:
        return onBoth(city, plainCity, setDistricts, input);
    case PLACE_BUILDING:
        return onBoth(city, plainCity, build, input);
    case PLACE_BUS_STOP:
        return onBoth(city, plainCity, buildStop, input);
    case CHANGE_RATES:
        return onBoth(city, plainCity, changeRates, input);
    case RUN_PASS:
        return runPass(city, plainCity, input.take<uint8_t>());
    case RUN_DAYS:
        for (int days = input.take<uint8_t>() % 4; days >= 0; days--) {
            dailyTick(city);
            plain::dailyTick(plainCity);
        }
        return;
    case EDIT_CELL:
        return onBoth(city, plainCity, editCell, input);
    case EDIT_BUILDING:
        return onBoth(city, plainCity, editBuilding, input);
    case EDIT_FIGURES:
        return onBoth(city, plainCity, editFigures, input);
    case SAVE_AND_LOAD:
        return onBoth(city, plainCity, saveAndLoad, input);
    case LOAD_DAMAGED:
        return onBoth(city, plainCity, loadDamaged, input);
    case NEW_LAND:
        return onBoth(city, plainCity, newLand, input);
    case COPY_AND_MOVE:
        return onBoth(city, plainCity, copyAndMove, input);
    }
}

template<class T> static bool sameBytes(const std::vector<T>& a, const std::vector<T>& b) {
    return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(T)) == 0;
}

// The first group of fields that differs; null for equal cities.
static const char* difference(const City& a, const City& b) {
    if (encodeCity(a) != encodeCity(b)) return "what is saved";
    for (int i = 0; i < COVERAGE_COUNT; i++)
        if (!sameBytes(a.coverage[i], b.coverage[i])) return "coverage";
    if (!sameBytes(a.trafficLoad, b.trafficLoad) || !sameBytes(a.trafficFlow, b.trafficFlow))
        return "traffic";
    if (!sameBytes(a.roadCapacity, b.roadCapacity)) return "road capacity";
    if (!sameBytes(a.pollution, b.pollution)) return "pollution";
    if (!sameBytes(a.landValue, b.landValue)) return "land value";
    if (!sameBytes(a.powerField, b.powerField) || !sameBytes(a.waterField, b.waterField)) return "networks";
    if (!sameBytes(a.cellDirty, b.cellDirty) || a.roadsDirty != b.roadsDirty ||
        a.zonesDirty != b.zonesDirty || a.buildingsDirty != b.buildingsDirty ||
        a.overlayDirty != b.overlayDirty)
        return "marks";
    if (a.statusId != b.statusId || a.statusArg != b.statusArg) return "status";
    if (a.eventCount != b.eventCount || a.events.size() != b.events.size()) return "events";
    return nullptr;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const City town = smallTown();
    Input input{data, size};
    City city = town;
    City plainCity = town;
    for (int i = 0; i < LONGEST_RUN && input.left > 0; i++) {
        const int operation = *input.at % OPERATION_COUNT;
        operate(city, plainCity, input);
        if (const char* fields = difference(city, plainCity)) {
            std::fprintf(stderr, "operation %d, number %d: %s\n", operation, i, fields);
            std::abort();
        }
    }
    return 0;
}
