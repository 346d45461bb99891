// Where people work: shops, office towers and factories.
#pragma once

#include "view/models/building_parts.h"

void addShop(MeshBuilder& builder, const Lot& lot);
void addOfficeTower(MeshBuilder& builder, const Lot& lot);
void addFactory(MeshBuilder& builder, const Lot& lot);
