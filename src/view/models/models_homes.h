// Homes, level 1 to 3.
#pragma once

#include "view/models/building_parts.h"

void addHouse(MeshBuilder& builder, const Lot& lot);
void addApartmentBlock(MeshBuilder& builder, const Lot& lot);
void addResidentialTower(MeshBuilder& builder, const Lot& lot);
