// A building before it is finished, the same for all kinds, so that a growing town reads at a glance: a
// rising concrete core, a crane, and scaffold poles that tell the final height from the first day.
#pragma once

#include "view/gl/mesh_builder.h"

// `centre` is the middle of the base in the world; `progress` from 0 to 1; t is the building's seed.
void addConstructionSite(MeshBuilder& builder, const Vec3& centre, float halfX, float halfZ,
                         float finalHeight, float progress, float t);
