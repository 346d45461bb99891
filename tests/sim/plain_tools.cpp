#include "sim/build_tools.h"
#include "sim/building_kinds.h"
#include "sim/plain_rules.h"

namespace plain {

static bool answer(City& city, StatusId id) {
    setStatus(city, id);
    return id != STATUS_NO_ROAD_HERE && id != STATUS_ROAD_HERE && id != STATUS_NO_MONEY_FOR_ROAD &&
           id != STATUS_NOTHING_HERE;
}

bool placeRoad(City& city, int x, int y, int type) {
    if (!canPlaceRoad(city, x, y, type)) {
        const bool same = type != ROAD_NONE && cellAt(city, x, y).road == type;
        return answer(city, same ? STATUS_ROAD_HERE : STATUS_NO_ROAD_HERE);
    }
    Cell& cell = city.cells[cellIndex(x, y)];
    const int cost = roadCost(type) - (cell.road ? roadCost(cell.road) : 0);
    if (cost > city.money) return answer(city, STATUS_NO_MONEY_FOR_ROAD);

    city.money -= cost;
    cell.road = static_cast<uint8_t>(type);
    cell.zone = ZONE_NONE;
    cell.hasTrees = 0;
    markCellDirty(city, x, y);
    city.roadsDirty = city.zonesDirty = city.overlayDirty = 1;
    plain::updateRoadAccess(city);
    plain::updateUtilities(city);
    return answer(city, type == ROAD_AVENUE ? STATUS_AVENUE_BUILT : STATUS_STREET_BUILT);
}

static void removeBuilding(City& city, int x, int y) {
    const int index = city.cells[cellIndex(x, y)].buildingIndex;
    const Building& building = city.buildings[index];
    city.money += 0.3 * buildingCost(building.kind, building.level);
    city.buildings.erase(city.buildings.begin() + index);
    for (Cell& cell : city.cells) {
        if (cell.buildingIndex == index)
            cell.buildingIndex = -1;
        else if (cell.buildingIndex > index)
            cell.buildingIndex--;
    }
    markCellDirty(city, x, y);
    city.buildingsDirty = city.overlayDirty = 1;
    plain::updateUtilities(city);
}

static void removeRoad(City& city, int x, int y) {
    city.cells[cellIndex(x, y)].road = ROAD_NONE;
    markCellDirty(city, x, y);
    city.roadsDirty = city.overlayDirty = 1;
    plain::updateRoadAccess(city);
    plain::updateUtilities(city);
}

bool bulldoze(City& city, int x, int y) {
    if (!inMap(x, y)) return false;
    Cell& cell = city.cells[cellIndex(x, y)];
    if (buildingAt(city, x, y)) {
        removeBuilding(city, x, y);
        return answer(city, STATUS_DEMOLISHED);
    }
    if (cell.busStop) {
        cell.busStop = 0;
        city.buildingsDirty = 1;
        return answer(city, STATUS_BUS_STOP_REMOVED);
    }
    if (cell.road) {
        removeRoad(city, x, y);
        return answer(city, STATUS_ROAD_REMOVED);
    }
    if (cell.zone) {
        cell.zone = ZONE_NONE;
        markCellDirty(city, x, y);
        city.zonesDirty = 1;
        return answer(city, STATUS_ZONE_REMOVED);
    }
    if (setDistrict(city, x, y, 0)) return answer(city, STATUS_DISTRICT_CLEARED);
    return answer(city, STATUS_NOTHING_HERE);
}

} // namespace plain
