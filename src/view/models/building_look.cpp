#include "view/models/building_look.h"

#include "view/models/building_parts.h"
#include "view/models/bus_stop.h"
#include "view/models/construction_site.h"
#include "view/models/models_business.h"
#include "view/models/models_homes.h"
#include "view/models/models_services.h"
#include "view/models/models_utilities.h"

#include <algorithm>
#include <bitset>
#include <cassert>

using AddModel = void (*)(MeshBuilder& builder, const Lot& lot);

// How one kind is drawn, at one level where levels differ.
struct BuildingModel {
    AddModel addModel;
    float halfX; // of the construction site, and of a grown model
    float halfZ;
    float finalHeight; // of the construction site
};

constexpr int MODEL_LEVELS = 3;

// By kind and level: homes, shops, offices.
static const BuildingModel LEVEL_MODELS[][MODEL_LEVELS] = {
    {{addHouse, 3.2f, 3.2f, 5.0f},
     {addApartmentBlock, 3.2f, 3.2f, 10.5f},
     {addResidentialTower, 3.2f, 3.2f, 21.0f}},
    {{addShop, 3.2f, 3.2f, 6.5f}, {addShop, 3.2f, 3.2f, 13.0f}, {addShop, 3.2f, 3.2f, 21.0f}},
    {{addOfficeTower, 3.2f, 3.2f, 21.0f},
     {addOfficeTower, 3.2f, 3.2f, 39.0f},
     {addOfficeTower, 3.2f, 3.2f, 63.0f}},
};

static_assert(std::size(LEVEL_MODELS) == KIND_FACTORY);

// By kind, from the police station on.
static constexpr AddModel FIXED_MODELS[] = {
    addPoliceStation, addFireStation, addHospital,  addSchool,      addPark,
    addBusDepot,      addGasPlant,    addSolarFarm, addWindTurbine, addWaterPump,
};
static_assert(KIND_POLICE_STATION + std::size(FIXED_MODELS) == KIND_COUNT);

// Only a damaged save holds homes, shops or offices of a level outside 1 to 3; they are drawn as of level 3.
static int drawnLevel(const BuildingLook& look) {
    if (look.kind >= KIND_FACTORY || (look.level >= 1 && look.level <= MODEL_LEVELS)) return look.level;
    return MODEL_LEVELS;
}

static BuildingModel modelOf(const BuildingLook& look) {
    if (look.kind < KIND_FACTORY) return LEVEL_MODELS[look.kind][drawnLevel(look) - 1];
    if (look.kind == KIND_FACTORY)
        return {addFactory, 3.52f, 2.88f, 9.0f + 6.0f * static_cast<float>(look.level)};
    const bool known = look.kind < KIND_COUNT;
    return {known ? FIXED_MODELS[look.kind - KIND_POLICE_STATION] : nullptr, 2.88f, 2.88f, 14.0f};
}

void collectBuildingLooks(std::vector<BuildingLook>& looks, const City& city) {
    looks.clear();
    for (int16_t y = 0; y < GRID_SIZE; y++)
        for (int16_t x = 0; x < GRID_SIZE; x++)
            if (city.cells[cellIndex(x, y)].busStop)
                looks.push_back({.ground = cellAverageHeight(city, x, y), .x = x, .y = y, .isBusStop = 1});

    std::bitset<CELL_COUNT> takenCells;
    for (const Building& building : city.buildings) {
        if (building.kind == KIND_CONDEMNED || !inMap(building.x, building.y)) continue;
        const size_t cell = static_cast<size_t>(cellIndex(building.x, building.y));
        if (takenCells[cell]) continue;
        takenCells[cell] = true;

        // A progress that is no number isn't below 1, so it counts as finished.
        const bool underConstruction = building.progress < 1.0f;
        looks.push_back({.ground = cellAverageHeight(city, building.x, building.y),
                         .progress = underConstruction ? std::max(building.progress, 0.0f) : 1.0f,
                         .x = building.x,
                         .y = building.y,
                         .kind = building.kind,
                         .level = building.level});
    }
}

static void addFinishedBuilding(MeshBuilder& builder, const BuildingLook& look, const Vec3& base, float t) {
    const BuildingModel model = modelOf(look);
    if (!model.addModel) return;

    const size_t first = builder.size();
    model.addModel(builder, {base.x, base.z, model.halfX, model.halfZ, drawnLevel(look), t});
    moveVertices(builder, first, base);
}

void addBuildingLook(MeshBuilder& builder, const BuildingLook& look) {
    assert(inMap(look.x, look.y) && look.progress >= 0.0f && look.progress <= 1.0f);
    const float cornerX = static_cast<float>(look.x) * CELL_WIDTH;
    const float cornerZ = static_cast<float>(look.y) * CELL_WIDTH;
    if (look.isBusStop) {
        const size_t first = builder.size();
        addBusStop(builder);
        moveVertices(builder, first,
                     {cornerX + BUS_STOP_INSET, look.ground - BUS_STOP_SINK, cornerZ + BUS_STOP_INSET});
        return;
    }

    const Vec3 base = {cornerX + CELL_WIDTH / 2.0f, look.ground - GROUND, cornerZ + CELL_WIDTH / 2.0f};
    const float t = hash01(static_cast<uint32_t>(look.x), static_cast<uint32_t>(look.y), 5);
    if (look.progress >= 1.0f) return addFinishedBuilding(builder, look, base, t);

    const BuildingModel model = modelOf(look);
    addConstructionSite(builder, base, model.halfX, model.halfZ, model.finalHeight, look.progress, t);
}
