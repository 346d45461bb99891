// The operations with which the player changes the land. Each pays, changes and answers at once, through
// City::statusId and statusArg; a refusal changes neither money nor land. There is no undo.
//
// A drag is the operation on one cell after the other, with its last answer. It answers how many cells said
// yes, and what concerns the whole city is done once at its end.
#pragma once

#include "sim/city.h"

bool canPlaceRoad(const City& city, int x, int y, int type);
bool placeRoad(City& city, int x, int y, int type);
int placeRoadLine(City& city, int x0, int y0, int x1, int y1, int type);

// True if the cell changed. Leaves no status.
bool setZone(City& city, int x, int y, int zone);
bool setDistrict(City& city, int x, int y, int district);

// The first reason against it goes to `statusOut`, which may be null.
bool canPlaceBuilding(const City& city, int x, int y, int kind, uint8_t* statusOut);
bool placeBuilding(City& city, int x, int y, int kind);
bool placeBusStop(City& city, int x, int y);

// Takes away one thing, the first of: building, bus stop, road, zone, district.
bool bulldoze(City& city, int x, int y);
int bulldozeRect(City& city, int x0, int y0, int x1, int y1);
