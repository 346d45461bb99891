// City services. Each is one fixed model, so that the player tells them apart at a glance; the lot only
// gives the park its trees.
#pragma once

#include "view/models/building_parts.h"

void addPoliceStation(MeshBuilder& builder, const Lot& lot);
void addFireStation(MeshBuilder& builder, const Lot& lot);
void addHospital(MeshBuilder& builder, const Lot& lot);
void addSchool(MeshBuilder& builder, const Lot& lot);
void addPark(MeshBuilder& builder, const Lot& lot);
void addBusDepot(MeshBuilder& builder, const Lot& lot);
