// The vertices of the last building mesh, so that a day on which one house changed redraws one house.
#pragma once

#include "view/building_look.h"

struct BuildingMeshCache {
    std::vector<BuildingLook> looks;
    std::vector<uint32_t> vertexCounts; // of each look
    MeshBuilder vertices;               // of all looks, in their order
    std::vector<BuildingLook> newLooks; // only kept so that an unchanged city takes nothing from the heap
};

// Makes the cache show the city, with the very bytes of a build from nothing. False when nothing looks
// different.
bool updateBuildingMeshCache(BuildingMeshCache& cache, const City& city);
