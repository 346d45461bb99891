// The whole state of one game, and the small questions everyone asks of it.
// `App` owns the one City; every rule is a free function over it. generateMap resets it, loadCity replaces
// it.
#pragma once

#include "sim/day_memory.h"
#include "sim/grid.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

enum ZoneType : uint8_t {
    ZONE_NONE,
    ZONE_RESIDENTIAL,
    ZONE_COMMERCIAL,
    ZONE_OFFICES,
    ZONE_INDUSTRIAL
};

enum TerrainType : uint8_t {
    TERRAIN_GRASS,
    TERRAIN_WOODLAND,
    TERRAIN_ROCK,
    TERRAIN_WATER,
    TERRAIN_SAND
};

enum RoadType : uint8_t {
    ROAD_NONE,
    ROAD_STREET,
    ROAD_AVENUE
};

enum BuildingKind : uint8_t {
    KIND_HOMES,
    KIND_SHOPS,
    KIND_OFFICE_TOWER,
    KIND_FACTORY,
    KIND_POLICE_STATION,
    KIND_FIRE_STATION,
    KIND_HOSPITAL,
    KIND_SCHOOL,
    KIND_PARK,
    KIND_BUS_DEPOT,
    KIND_GAS_POWER_PLANT,
    KIND_SOLAR_FARM,
    KIND_WIND_TURBINE,
    KIND_WATER_PUMP,
    KIND_COUNT,
    KIND_CONDEMNED = 255 // the day's clean-up removes such a record
};

enum DistrictPolicy : uint8_t {
    POLICY_SMOKE_FREE = 1,
    POLICY_NO_TRUCKS = 2,
    POLICY_TRANSIT_FIRST = 4
};

constexpr int DISTRICT_COUNT = 9; // 0 is "no district", 1 to 8 are in use
constexpr int COVERAGE_COUNT = 8; // police, fire, health, education, parks, transit; two are kept at zero
constexpr int HISTORY_LENGTH = 60;
constexpr int EVENT_LIMIT = 6;

enum CoverageIndex {
    COVERAGE_POLICE,
    COVERAGE_FIRE,
    COVERAGE_HEALTH,
    COVERAGE_EDUCATION,
    COVERAGE_PARKS,
    COVERAGE_TRANSIT
};

enum HistoryRow {
    HISTORY_INCOME,
    HISTORY_EXPENSES,
    HISTORY_POPULATION,
    HISTORY_HAPPINESS,
    HISTORY_ROWS
};

// One id for what a tool answers and for what the city announces. The number in the comment behind an id
// is what its argument means.
enum StatusId : uint8_t {
    STATUS_WELCOME = 1,
    STATUS_LOADED = 2,
    STATUS_NO_ROAD_HERE = 3,
    STATUS_NO_MONEY_FOR_ROAD = 4,
    STATUS_AVENUE_BUILT = 5,
    STATUS_STREET_BUILT = 6,
    STATUS_ZONED = 7, // cells
    STATUS_ROCK_NOT_ZONED = 8,
    STATUS_PAINTED = 9,  // cells
    STATUS_CLEARED = 10, // cells
    STATUS_NO_MONEY = 11,
    STATUS_OUTSIDE_MAP = 12,
    STATUS_ON_WATER = 13,
    STATUS_TOO_STEEP = 14,
    STATUS_OCCUPIED = 15,
    STATUS_ROAD_HERE = 16,
    STATUS_BUS_STOP_NEEDS_ROAD = 17,
    STATUS_BUS_STOP_BUILT = 18,
    STATUS_NOTHING_HERE = 19,
    STATUS_ZONED_HERE = 20,
    STATUS_CONSTRUCTION_STARTED = 21, // kind
    STATUS_DEMOLISHED = 22,
    STATUS_ROAD_REMOVED = 23,
    STATUS_ZONE_REMOVED = 24,
    STATUS_DISTRICT_PAINTED = 25, // district
    STATUS_DISTRICT_CLEARED = 26,
    STATUS_BUS_STOP_REMOVED = 27,
    STATUS_FINISHED = 28,  // kind
    STATUS_ABANDONED = 29, // kind
    STATUS_BANKRUPT = 30,
    STATUS_MISSION_COMPLETE = 31, // reward
    STATUS_ALL_MISSIONS_COMPLETE = 32,
    STATUS_GAME_SAVED = 33,
    STATUS_SAVE_FAILED = 34,
    STATUS_NO_SAVED_GAME = 35
};

// The same 12 bytes stand in the save file. A cell with a road has no zone and no building; a bus stop
// stands on a road. A loaded file may break that, so readers must not rely on it for memory safety.
struct Cell {
    uint8_t zone = ZONE_NONE;
    uint8_t terrain = TERRAIN_GRASS;
    uint8_t road = ROAD_NONE;
    uint8_t district = 0;
    uint8_t hasTrees = 0;
    uint8_t busStop = 0;
    uint8_t padding[2] = {};
    int32_t buildingIndex = -1; // into City::buildings, -1 when none
};
static_assert(sizeof(Cell) == 12);

// The same 44 bytes stand in the save file.
struct Building {
    uint8_t kind = KIND_HOMES;
    uint8_t level = 1; // 1 to 3 for grown kinds, 1 for the others
    int16_t x = 0;
    int16_t y = 0;
    uint8_t padding[2] = {};
    float progress = 0.0f; // construction, 1 when finished
    uint8_t powered = 0;
    uint8_t watered = 0;
    uint8_t roadAccess = 0;
    uint8_t working = 0;
    int32_t occupants = 0;    // residents of a home, staff of anything else
    int32_t unservedDays = 0; // read by the rules, advanced by none of them
    int32_t unhappyDays = 0;
    float happiness = 0.0f;  // 0 to 100
    float staffing = 0.0f;   // share of job places filled
    float congestion = 0.0f; // average load on the commute, 0 to 1
    float pollutionHere = 0.0f;
};
static_assert(sizeof(Building) == 44);

struct GameEvent {
    uint8_t id = 0;
    uint32_t arg = 0;
};

struct City {
    uint8_t keepPlaying = 0;

    // What the view has not drawn yet; only the view clears these.
    PerCell<uint8_t> cellDirty = PerCell<uint8_t>(CELL_COUNT);
    uint8_t roadsDirty = 0;
    uint8_t buildingsDirty = 0;
    uint8_t zonesDirty = 0;
    uint8_t overlayDirty = 0;

    uint32_t seed = 0;
    std::vector<float> heights = std::vector<float>(CORNER_COUNT); // corners, CORNER_SIDE a row
    PerCell<Cell> cells = PerCell<Cell>(CELL_COUNT);
    std::vector<Building> buildings; // in order of creation; removal keeps the order

    // Derived each day, never saved.
    std::vector<Grid> coverage = std::vector<Grid>(COVERAGE_COUNT, Grid(CELL_COUNT));
    Grid trafficLoad = Grid(CELL_COUNT);
    Grid pollution = Grid(CELL_COUNT);
    Grid landValue = Grid(CELL_COUNT);
    Grid trafficFlow = Grid(CELL_COUNT);
    Grid powerField = Grid(CELL_COUNT);
    Grid waterField = Grid(CELL_COUNT);
    PerCell<int32_t> roadCapacity = PerCell<int32_t>(CELL_COUNT);

    std::array<int32_t, 4> taxRate = {100, 100, 100, 100}; // percent: homes, shops, offices, industry
    std::array<int32_t, 8> serviceBudget = {100, 100, 100, 100, 100, 100, 100, 100}; // percent
    std::array<int32_t, DISTRICT_COUNT> districtTax = {1, 1, 1, 1, 1, 1, 1, 1, 1}; // 0 low, 1 normal, 2 high
    std::array<uint8_t, DISTRICT_COUNT> districtPolicy = {};                       // DistrictPolicy bits

    double money = 150000.0;
    double lastIncome = 0.0;
    double lastExpense = 0.0;

    int32_t population = 0;
    int32_t jobs = 0;
    int32_t employed = 0;
    int32_t workers = 0;
    float happiness = 60.0f;
    std::array<float, 4> demand = {}; // -1 to 1, indexed like taxRate
    float educatedShare = 0.0f;
    int32_t commuters = 0;
    int32_t transitRiders = 0;
    float goodsDemand = 0.0f;
    float goodsSupply = 0.0f;
    float goodsRatio = 1.0f;
    int32_t streetCells = 0;
    int32_t avenueCells = 0;

    int32_t historyCount = 0;
    std::array<std::array<float, HISTORY_LENGTH>, HISTORY_ROWS> history = {};

    int32_t day = 0;         // daily ticks so far
    float hourOfDay = 9.0f;  // the sun's clock
    int32_t calendarDay = 0; // the sun clock's days; a new map does not reset it

    int32_t missionIndex = 0;
    uint8_t allMissionsDone = 0;
    uint8_t bankrupt = 0;
    int32_t daysBelowZero = 0;
    int32_t raining = 0;
    int32_t weatherDaysLeft = 4;

    // The answer of the last tool operation.
    uint8_t statusId = 0;
    uint32_t statusArg = 0;

    std::vector<GameEvent> events; // newest first, at most EVENT_LIMIT
    uint32_t eventCount = 0;       // counts on for ever: news is a change of this, not of the queue's length

    DayMemory memory; // what the day's passes keep for themselves: no rule, nothing to save
};

// Bilinear height in world units; positions off the map are held to its edge.
float heightAt(const City& city, float worldX, float worldY);
// Mean of the four corners. The cell must be on the map.
float cellAverageHeight(const City& city, int x, int y);
// Highest minus lowest corner, divided by the cell's width. The cell must be on the map.
float cellSlope(const City& city, int x, int y);

// Empty land for a coordinate off the map, which a building of a loaded file may have.
const Cell& cellAt(const City& city, int x, int y);
// 0 off the map.
float fieldAt(const Grid& grid, int x, int y);
// 1 to 8, or 0 for a cell in no district.
int districtAt(const City& city, int x, int y);
// Whether the cell lies in a district with this policy.
bool hasPolicy(const City& city, int x, int y, DistrictPolicy policy);

// A coordinate off the map marks nothing.
void markCellDirty(City& city, int x, int y);

// The building on a cell, nullptr for none, for a cell off the map and for an index outside the list.
const Building* buildingAt(const City& city, int x, int y);

// Leaves the answer of a tool operation.
void setStatus(City& city, StatusId id, uint32_t arg = 0);

// Puts an event at the front of the queue, which forgets its oldest past EVENT_LIMIT.
void postEvent(City& city, StatusId id, uint32_t arg);

inline bool isFinished(const Building& building) { return building.progress >= 1.0f; }
