// A building before it is finished, the same for all kinds: a rising concrete core, scaffold poles of the
// final height from the first day, and a crane.
#pragma once

#include "view/gl/mesh_builder.h"

// `centre` is the middle of the base in the world; `progress` from 0 to 1; t is the building's seed.
void addConstructionSite(MeshBuilder& builder, const Vec3& centre, float halfX, float halfZ,
                         float finalHeight, float progress, float t);
