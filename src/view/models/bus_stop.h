// The shelter on a road cell with a bus stop.
#pragma once

#include "view/gl/mesh_builder.h"

constexpr float BUS_STOP_INSET = 1.0f; // from the cell's corner, along x and z
constexpr float BUS_STOP_SINK = 0.1f;  // under the cell's average height, since roads slope

// With its back corner at the origin, 2.4 along x and 1.2 out towards +z.
void addBusStop(MeshBuilder& builder);
