// Power and water: one fixed model a kind. Only a turbine's blades stand by the lot's seed, so that not all
// turbines are alike; they do not turn, since their mesh is sent only when the town changes.
#pragma once

#include "view/models/building_parts.h"

void addGasPlant(MeshBuilder& builder, const Lot& lot);
void addSolarFarm(MeshBuilder& builder, const Lot& lot);
void addWindTurbine(MeshBuilder& builder, const Lot& lot);
void addWaterPump(MeshBuilder& builder, const Lot& lot);
