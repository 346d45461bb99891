// What a standing thing looks like: a pure function of a few inputs, so that nothing about it is saved and
// two equal looks always have equal vertices.
#pragma once

#include "sim/city.h"
#include "view/gl/mesh_builder.h"

struct BuildingLook {
    float ground = 0.0f;   // average height of the cell
    float progress = 1.0f; // 0 to 1; 1 when finished
    int16_t x = 0;         // on the map
    int16_t y = 0;
    uint8_t kind = KIND_HOMES; // may lie above the known kinds
    uint8_t level = 1;
    uint8_t isBusStop = 0; // then kind, level and progress mean nothing
    uint8_t padding = 0;   // looks are told apart by their bytes
};
static_assert(sizeof(BuildingLook) == 16);

// Replaces the list: bus stops row by row, then the buildings in the order of the list. Left out are the
// condemned, and what only a damaged save can hold: buildings off the map, and all but the first on one cell
// (a million of them would not fit into memory).
void collectBuildingLooks(std::vector<BuildingLook>& looks, const City& city);

// Appends the bus stop, the construction site or the model; nothing for a finished building of unknown kind.
void addBuildingLook(MeshBuilder& builder, const BuildingLook& look);
