#include "sim/build_tools.h"

#include "sim/building_kinds.h"
#include "sim/grid_line.h"
#include "sim/grid_rect.h"
#include "sim/networks.h"

#include <cassert>

static constexpr float ROAD_MAX_SLOPE = 1.6f;
static constexpr float BUILDING_MAX_SLOPE = 1.2f;
static constexpr double BUS_STOP_COST = 500.0;
static constexpr double REFUND_SHARE = 0.3;

static bool refuse(City& city, StatusId reason) {
    setStatus(city, reason);
    return false;
}

static bool answer(City& city, StatusId id, uint32_t arg = 0) {
    setStatus(city, id, arg);
    return true;
}

bool canPlaceRoad(const City& city, int x, int y, int type) {
    if (!inMap(x, y) || (type != ROAD_STREET && type != ROAD_AVENUE)) return false;
    const Cell& cell = city.cells[cellIndex(x, y)];
    if (cell.terrain == TERRAIN_WATER || buildingAt(city, x, y)) return false;
    if (!(cellSlope(city, x, y) <= ROAD_MAX_SLOPE)) return false;
    return cell.road == ROAD_NONE || (cell.road == ROAD_STREET && type == ROAD_AVENUE);
}

// All of a road but the networks, of which it reads nothing.
static bool layRoad(City& city, int x, int y, int type) {
    if (!canPlaceRoad(city, x, y, type)) {
        const bool same = cellAt(city, x, y).road == type && type != ROAD_NONE;
        return refuse(city, same ? STATUS_ROAD_HERE : STATUS_NO_ROAD_HERE);
    }
    Cell& cell = city.cells[cellIndex(x, y)];
    const int cost = roadCost(type) - (cell.road ? roadCost(cell.road) : 0);
    assert(cost > 0); // an avenue over a street is all that may replace a road
    if (cost > city.money) return refuse(city, STATUS_NO_MONEY_FOR_ROAD);

    city.money -= cost;
    cell.road = static_cast<uint8_t>(type);
    cell.zone = ZONE_NONE;
    cell.hasTrees = 0;
    markCellDirty(city, x, y);
    city.roadsDirty = city.zonesDirty = city.overlayDirty = 1;
    return answer(city, type == ROAD_AVENUE ? STATUS_AVENUE_BUILT : STATUS_STREET_BUILT);
}

int placeRoadLine(City& city, int x0, int y0, int x1, int y1, int type) {
    int count = 0;
    walkLine(x0, y0, x1, y1, [&](int x, int y) { count += layRoad(city, x, y, type); });
    if (count > 0) updateUtilities(city);
    return count;
}

bool placeRoad(City& city, int x, int y, int type) { return placeRoadLine(city, x, y, x, y, type) > 0; }

static bool canSetZone(const City& city, int x, int y, int zone) {
    if (!inMap(x, y) || zone < ZONE_NONE || zone > ZONE_INDUSTRIAL) return false;
    const Cell& cell = city.cells[cellIndex(x, y)];
    if (cell.road || cell.terrain == TERRAIN_WATER || cell.zone == zone) return false;
    return zone == ZONE_NONE || (cell.terrain != TERRAIN_ROCK && !buildingAt(city, x, y));
}

bool setZone(City& city, int x, int y, int zone) {
    if (!canSetZone(city, x, y, zone)) return false;

    Cell& cell = city.cells[cellIndex(x, y)];
    cell.zone = static_cast<uint8_t>(zone);
    cell.hasTrees = 0;
    markCellDirty(city, x, y);
    city.zonesDirty = 1;
    return true;
}

bool setDistrict(City& city, int x, int y, int district) {
    if (!inMap(x, y) || district < 0 || district >= DISTRICT_COUNT) return false;
    Cell& cell = city.cells[cellIndex(x, y)];
    if (cell.district == district) return false;

    cell.district = static_cast<uint8_t>(district);
    markCellDirty(city, x, y);
    city.overlayDirty = 1;
    return true;
}

// 0 when nothing stands against it.
static uint8_t reasonAgainstBuilding(const City& city, int x, int y, int kind) {
    if (kind < 0 || kind >= KIND_COUNT) return STATUS_NOTHING_HERE;
    if (!inMap(x, y)) return STATUS_OUTSIDE_MAP;
    const Cell& cell = city.cells[cellIndex(x, y)];
    if (cell.road) return STATUS_ROAD_HERE;
    if (cell.busStop || buildingAt(city, x, y)) return STATUS_OCCUPIED;
    if (cell.terrain == TERRAIN_WATER) return STATUS_ON_WATER;
    if (cell.zone) return STATUS_ZONED_HERE;
    if (cellSlope(city, x, y) > BUILDING_MAX_SLOPE) return STATUS_TOO_STEEP;
    if (buildingCost(kind, 1) > city.money) return STATUS_NO_MONEY;
    return 0;
}

bool canPlaceBuilding(const City& city, int x, int y, int kind, uint8_t* statusOut) {
    const uint8_t reason = reasonAgainstBuilding(city, x, y, kind);
    if (statusOut && reason != 0) *statusOut = reason;
    return reason == 0;
}

bool placeBuilding(City& city, int x, int y, int kind) {
    if (isGrownKind(kind)) return refuse(city, STATUS_NOTHING_HERE);
    uint8_t reason = 0;
    if (!canPlaceBuilding(city, x, y, kind, &reason)) return refuse(city, static_cast<StatusId>(reason));

    assert(kind >= KIND_POLICE_STATION && kind < KIND_COUNT);
    city.money -= buildingCost(kind, 1);
    Building building;
    building.kind = static_cast<uint8_t>(kind);
    building.x = static_cast<int16_t>(x);
    building.y = static_cast<int16_t>(y);
    building.happiness = 60.0f;
    Cell& cell = city.cells[cellIndex(x, y)];
    cell.hasTrees = 0;
    cell.buildingIndex = static_cast<int32_t>(city.buildings.size());
    city.buildings.push_back(building);
    markCellDirty(city, x, y);
    city.buildingsDirty = city.zonesDirty = city.overlayDirty = 1;
    updateUtilities(city);
    return answer(city, STATUS_CONSTRUCTION_STARTED, static_cast<uint32_t>(kind));
}

bool placeBusStop(City& city, int x, int y) {
    if (!inMap(x, y)) return false;
    Cell& cell = city.cells[cellIndex(x, y)];
    if (!cell.road) return refuse(city, STATUS_BUS_STOP_NEEDS_ROAD);
    if (cell.busStop) return false;
    if (city.money < BUS_STOP_COST) return refuse(city, STATUS_NO_MONEY);

    city.money -= BUS_STOP_COST;
    cell.busStop = 1;
    city.buildingsDirty = 1; // and no cell: its shelter is drawn among the buildings
    return answer(city, STATUS_BUS_STOP_BUILT);
}

// What a drag of the bulldozer leaves for its end, because it concerns the whole city and no cell reads it.
struct Demolition {
    std::vector<uint8_t> demolished; // for each building: it is down, though still in the list
    bool networksChanged = false;
};

// Takes the demolished out of the list, which keeps its order, and tells the cells. An index behind the list,
// as a loaded file may have, falls with the others, so that a drag leaves what its cells one by one would.
static void removeDemolished(City& city, const std::vector<uint8_t>& demolished) {
    assert(demolished.size() == city.buildings.size());
    const auto listed = static_cast<int32_t>(demolished.size());
    std::vector<int32_t> newIndex(demolished.size(), -1);
    int32_t kept = 0;
    for (int32_t i = 0; i < listed; i++) {
        if (demolished[i]) continue;
        newIndex[i] = kept;
        city.buildings[kept++] = city.buildings[i];
    }
    city.buildings.resize(kept);
    for (Cell& cell : city.cells) {
        if (cell.buildingIndex >= listed)
            cell.buildingIndex -= listed - kept;
        else if (cell.buildingIndex >= 0)
            cell.buildingIndex = newIndex[cell.buildingIndex];
    }
}

static void demolish(City& city, int x, int y, Demolition& demolition) {
    const int index = city.cells[cellIndex(x, y)].buildingIndex;
    assert(demolition.demolished.size() == city.buildings.size() && !demolition.demolished[index]);
    const Building& building = city.buildings[index];
    city.money += REFUND_SHARE * buildingCost(building.kind, building.level);
    demolition.demolished[index] = 1;
    demolition.networksChanged = true;
    markCellDirty(city, x, y);
    city.buildingsDirty = city.overlayDirty = 1;
}

static bool bulldozeCell(City& city, int x, int y, Demolition& demolition) {
    Cell& cell = city.cells[cellIndex(x, y)];
    // A loaded file may show one building on two cells: it falls, and pays, once.
    if (buildingAt(city, x, y) && !demolition.demolished[cell.buildingIndex]) {
        demolish(city, x, y, demolition);
        return answer(city, STATUS_DEMOLISHED);
    }
    if (cell.busStop) {
        cell.busStop = 0;
        city.buildingsDirty = 1;
        return answer(city, STATUS_BUS_STOP_REMOVED);
    }
    if (cell.road) {
        cell.road = ROAD_NONE;
        demolition.networksChanged = true;
        markCellDirty(city, x, y);
        city.roadsDirty = city.overlayDirty = 1;
        return answer(city, STATUS_ROAD_REMOVED);
    }
    if (cell.zone) {
        cell.zone = ZONE_NONE;
        markCellDirty(city, x, y);
        city.zonesDirty = 1;
        return answer(city, STATUS_ZONE_REMOVED);
    }
    if (setDistrict(city, x, y, 0)) return answer(city, STATUS_DISTRICT_CLEARED);
    return refuse(city, STATUS_NOTHING_HERE);
}

int bulldozeRect(City& city, int x0, int y0, int x1, int y1) {
    Demolition demolition;
    demolition.demolished.resize(city.buildings.size());
    int count = 0;
    walkRect(x0, y0, x1, y1, [&](int x, int y) { count += bulldozeCell(city, x, y, demolition); });
    if (demolition.networksChanged) {
        removeDemolished(city, demolition.demolished);
        updateUtilities(city);
    }
    return count;
}

bool bulldoze(City& city, int x, int y) { return bulldozeRect(city, x, y, x, y) > 0; }
