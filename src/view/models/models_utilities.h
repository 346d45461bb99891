// Power and water: one fixed model a kind, but for the turbine, whose blades stand by the lot's seed.
#pragma once

#include "view/models/building_parts.h"

void addGasPlant(MeshBuilder& builder, const Lot& lot);
void addSolarFarm(MeshBuilder& builder, const Lot& lot);
void addWindTurbine(MeshBuilder& builder, const Lot& lot);
void addWaterPump(MeshBuilder& builder, const Lot& lot);
