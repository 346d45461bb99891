#include "view/models/building_look.h"

#include "sim/city_helpers.h"
#include "view/models/bus_stop.h"
#include "view/models/construction_site.h"
#include "view/models/model_helpers.h"

#include <cmath>
#include <limits>

// What one building adds to level ground at height 10, seen from the middle of its base.
static MeshBuilder modelOf(int kind, int level, float progress = 1.0f, int x = 48, int y = 48) {
    City city = flatCity();
    addBuilding(city, x, y, static_cast<uint8_t>(kind), static_cast<uint8_t>(level)).progress = progress;
    MeshBuilder mesh = buildingsOf(city);
    moveVertices(mesh, 0,
                 Vec3{static_cast<float>(x) * -8.0f - 4.0f, -9.4f, static_cast<float>(y) * -8.0f - 4.0f});
    return mesh;
}

static float seedOf(int x, int y) { return hash01(static_cast<uint32_t>(x), static_cast<uint32_t>(y), 5); }

TEST(BuildingMesh, AnEmptyCityHasNone) { EXPECT_TRUE(buildingsOf(flatCity()).empty()); }

TEST(BuildingMesh, BusStopsComeFirstRowByRow) {
    City city = flatCity();
    addBuilding(city, 1, 1, KIND_POLICE_STATION);
    for (const auto& [x, y] : {std::pair{7, 9}, {90, 2}, {3, 9}}) city.cells[cellIndex(x, y)].busStop = 1;
    const MeshBuilder mesh = buildingsOf(city);
    MeshBuilder one;
    addBusStop(one);
    const int expected[3][2] = {{90, 2}, {3, 9}, {7, 9}};
    for (size_t i = 0; i < 3; i++) {
        const Bounds bounds =
            boundsOf(MeshBuilder(mesh.begin() + i * one.size(), mesh.begin() + (i + 1) * one.size()));
        EXPECT_NEAR(bounds.min.x, static_cast<float>(expected[i][0]) * 8.0f + 1.0f, 1e-4f);
        EXPECT_NEAR(bounds.min.z, static_cast<float>(expected[i][1]) * 8.0f + 1.0f, 1e-4f);
        EXPECT_NEAR(bounds.min.y, 9.9f, 1e-4f) << "a little under the average height";
    }
    EXPECT_EQ(mesh[3 * one.size()].colour, (Vec3{0.92f, 0.94f, 0.96f})) << "then the buildings";
}

TEST(BuildingMesh, BuildingsFollowInTheOrderOfTheList) {
    City city = flatCity();
    addBuilding(city, 60, 60, KIND_HOSPITAL);
    addBuilding(city, 10, 10, KIND_HOMES);
    const MeshBuilder mesh = buildingsOf(city);
    EXPECT_NEAR(mesh.front().position.x, 60 * 8 + 4, 4.0f);
    EXPECT_NEAR(mesh.back().position.x, 10 * 8 + 4, 4.0f);
}

TEST(BuildingMesh, TheBaseLiesUnderTheAverageHeightOfTheCell) {
    City city = flatCity();
    city.heights[cornerIndex(48, 48)] = 14.0f;
    addBuilding(city, 48, 48, KIND_POLICE_STATION);
    const Bounds bounds = boundsOf(buildingsOf(city));
    EXPECT_NEAR(bounds.min.y, 11.0f - 0.6f, 1e-4f);
    EXPECT_NEAR((bounds.min.x + bounds.max.x) / 2.0f, 388.0f, 1e-3f);
}

TEST(BuildingMesh, CondemnedBuildingsAreLeftOut) {
    City city = flatCity();
    addBuilding(city, 10, 10, KIND_CONDEMNED);
    addBuilding(city, 11, 10, KIND_CONDEMNED).progress = 0.5f;
    EXPECT_TRUE(buildingsOf(city).empty());
}

TEST(BuildingMesh, BuildingsOffTheMapAreLeftOut) {
    City city = flatCity();
    const int16_t places[][2] = {{-1, 5}, {5, -1}, {96, 5}, {5, 96}, {-32768, 32767}};
    for (const auto& place : places) {
        Building building;
        building.x = place[0];
        building.y = place[1];
        building.progress = 1.0f;
        city.buildings.push_back(building);
    }
    EXPECT_TRUE(buildingsOf(city).empty());
}

TEST(BuildingMesh, OfSeveralBuildingsOnOneCellTheFirstIsDrawn) {
    City city = flatCity();
    addBuilding(city, 10, 10, KIND_HOSPITAL);
    const MeshBuilder alone = buildingsOf(city);
    for (int i = 0; i < 1000; i++) addBuilding(city, 10, 10, KIND_SCHOOL);
    EXPECT_TRUE(isSame(buildingsOf(city), alone));
}

TEST(BuildingMesh, AProgressBelowOneIsASiteAndOneIsTheModel) {
    EXPECT_FALSE(verticesOfColour(modelOf(KIND_HOMES, 1, 0.999f), {0.95f, 0.80f, 0.15f}).empty());
    const MeshBuilder finished = modelOf(KIND_HOMES, 1, 1.0f);
    EXPECT_TRUE(verticesOfColour(finished, {0.95f, 0.80f, 0.15f}).empty());
    EXPECT_TRUE(isSame(finished, modelOf(KIND_HOMES, 1, 1.5f)));
}

TEST(BuildingMesh, AWildProgressIsHeldToItsRange) {
    const float infinity = std::numeric_limits<float>::infinity();
    EXPECT_TRUE(isSame(modelOf(KIND_HOMES, 1, -3.0f), modelOf(KIND_HOMES, 1, 0.0f)));
    EXPECT_TRUE(isSame(modelOf(KIND_HOMES, 1, -infinity), modelOf(KIND_HOMES, 1, 0.0f)));
    EXPECT_TRUE(isSame(modelOf(KIND_HOMES, 1, infinity), modelOf(KIND_HOMES, 1, 1.0f)));
    const float notANumber = std::numeric_limits<float>::quiet_NaN();
    EXPECT_TRUE(isSame(modelOf(KIND_HOMES, 1, notANumber), modelOf(KIND_HOMES, 1, 1.0f))) << "not below 1";
}

TEST(BuildingMesh, WildHeightsAreDrawnWithoutHarm) {
    City city = flatCity();
    city.heights[cornerIndex(48, 48)] = std::numeric_limits<float>::quiet_NaN();
    city.heights[cornerIndex(40, 40)] = std::numeric_limits<float>::infinity();
    addBuilding(city, 48, 48, KIND_SCHOOL);
    addBuilding(city, 40, 40, KIND_HOMES).progress = 0.5f;
    EXPECT_GT(buildingsOf(city).size(), 1000u);
}

TEST(BuildingMesh, AnUnknownKindIsNothingWhenFinishedAndASiteBefore) {
    MeshBuilder fixedSite;
    addConstructionSite(fixedSite, {0, 0, 0}, 2.88f, 2.88f, 14.0f, 0.5f, seedOf(48, 48));
    for (const int kind : {14, 15, 100, 254}) {
        EXPECT_TRUE(modelOf(kind, 1).empty()) << kind;
        MeshBuilder site = modelOf(kind, 1, 0.5f);
        EXPECT_EQ(site.size(), fixedSite.size()) << kind;
        EXPECT_NEAR(boundsOf(verticesOfColour(site, {0.66f, 0.65f, 0.62f})).max.x, 2.88f, 1e-3f);
    }
}

TEST(BuildingMesh, LevelsOutsideOneToThreeAreDrawnLikeLevelThree) {
    for (const int kind : {KIND_HOMES, KIND_SHOPS, KIND_OFFICE_TOWER})
        for (const int level : {0, 4, 200, 255}) {
            EXPECT_TRUE(isSame(modelOf(kind, level), modelOf(kind, 3))) << kind << ", " << level;
            EXPECT_TRUE(isSame(modelOf(kind, level, 0.4f), modelOf(kind, 3, 0.4f))) << kind << ", " << level;
        }
}

TEST(BuildingMesh, AFactorysSiteFollowsItsLevelWhateverItIs) {
    for (const int level : {0, 1, 2, 3, 200, 255}) {
        const MeshBuilder site = modelOf(KIND_FACTORY, level, 0.0f);
        const Bounds poles = boundsOf(verticesOfColour(site, STEEL_GREY));
        const float mastTop = 9.0f + 6.0f * static_cast<float>(level) + 9.0f + 2.0f * seedOf(48, 48);
        EXPECT_NEAR(poles.max.y, std::max(mastTop - 0.9f, 0.0f), 0.01f)
            << "the cable ends at the jib, " << level;
        EXPECT_LT(site.size(), 6000u);
    }
}

// The rows of the selection table.
struct SiteRow {
    int kind;
    int level;
    float halfX;
    float halfZ;
    float finalHeight;
};

static const SiteRow SITE_ROWS[] = {
    {KIND_HOMES, 1, 3.2f, 3.2f, 5.0f},
    {KIND_HOMES, 2, 3.2f, 3.2f, 10.5f},
    {KIND_HOMES, 3, 3.2f, 3.2f, 21.0f},
    {KIND_SHOPS, 1, 3.2f, 3.2f, 6.5f},
    {KIND_SHOPS, 2, 3.2f, 3.2f, 13.0f},
    {KIND_SHOPS, 3, 3.2f, 3.2f, 21.0f},
    {KIND_OFFICE_TOWER, 1, 3.2f, 3.2f, 21.0f},
    {KIND_OFFICE_TOWER, 2, 3.2f, 3.2f, 39.0f},
    {KIND_OFFICE_TOWER, 3, 3.2f, 3.2f, 63.0f},
    {KIND_FACTORY, 1, 3.52f, 2.88f, 15.0f},
    {KIND_FACTORY, 2, 3.52f, 2.88f, 21.0f},
    {KIND_FACTORY, 3, 3.52f, 2.88f, 27.0f},
    {KIND_POLICE_STATION, 1, 2.88f, 2.88f, 14},
    {KIND_FIRE_STATION, 1, 2.88f, 2.88f, 14},
    {KIND_HOSPITAL, 1, 2.88f, 2.88f, 14},
    {KIND_SCHOOL, 1, 2.88f, 2.88f, 14},
    {KIND_PARK, 1, 2.88f, 2.88f, 14},
    {KIND_BUS_DEPOT, 1, 2.88f, 2.88f, 14},
    {KIND_GAS_POWER_PLANT, 1, 2.88f, 2.88f, 14},
    {KIND_SOLAR_FARM, 1, 2.88f, 2.88f, 14},
    {KIND_WIND_TURBINE, 1, 2.88f, 2.88f, 14},
    {KIND_WATER_PUMP, 1, 2.88f, 2.88f, 14},
};

TEST(BuildingMesh, EveryKindAndLevelHasItsSite) {
    for (const SiteRow& row : SITE_ROWS)
        for (const float progress : {0.0f, 0.02f, 0.7f, 0.999f}) {
            MeshBuilder expected;
            addConstructionSite(expected, {388, 9.4f, 388}, row.halfX, row.halfZ, row.finalHeight, progress,
                                seedOf(48, 48));
            City city = flatCity();
            addBuilding(city, 48, 48, static_cast<uint8_t>(row.kind), static_cast<uint8_t>(row.level))
                .progress = progress;
            EXPECT_TRUE(isSame(buildingsOf(city), expected)) << row.kind << ", " << row.level;
        }
}

// What each finished model weighs, how far it reaches around its base, what it is made of, and its lamps.
struct ModelRow {
    int kind;
    int level;
    size_t vertexCount;
    Vec3 min;
    Vec3 max;
    int materials;
    size_t lampCount;
};

constexpr int WALL = 1 << MATERIAL_WALL;
constexpr int ROOF = 1 << MATERIAL_ROOF;
constexpr int GLASS = 1 << MATERIAL_GLASS;
constexpr int PLAIN = 1 << MATERIAL_PLAIN;
constexpr int LEAVES = 1 << MATERIAL_TERRAIN;
constexpr int PANEL = 1 << MATERIAL_SOLAR_PANEL;

static const ModelRow MODEL_ROWS[] = {
    {KIND_HOMES, 1, 360, {-4.00f, 0, -4.00f}, {4.00f, 8.08f, 4.00f}, WALL | ROOF | PLAIN | LEAVES, 0},
    {KIND_HOMES, 2, 870, {-3.40f, 0, -3.40f}, {3.40f, 12.48f, 4.00f}, WALL | ROOF | PLAIN, 0},
    {KIND_HOMES, 3, 1590, {-3.60f, 0, -3.60f}, {3.60f, 27.13f, 4.00f}, WALL | ROOF | GLASS | PLAIN, 1},
    {KIND_SHOPS, 1, 312, {-3.20f, 0, -3.20f}, {3.20f, 7.70f, 3.95f}, WALL | GLASS | PLAIN, 0},
    {KIND_SHOPS, 2, 342, {-3.32f, 0, -3.32f}, {3.32f, 14.20f, 3.95f}, WALL | GLASS | PLAIN, 0},
    {KIND_SHOPS, 3, 432, {-3.32f, 0, -3.32f}, {3.32f, 15.60f, 3.95f}, WALL | GLASS | PLAIN, 0},
    {KIND_OFFICE_TOWER, 1, 600, {-3.20f, 0, -3.20f}, {3.20f, 22.08f, 3.95f}, WALL | ROOF | GLASS | PLAIN, 1},
    {KIND_OFFICE_TOWER, 2, 990, {-3.34f, 0, -3.34f}, {3.34f, 40.28f, 3.34f}, ROOF | GLASS | PLAIN, 1},
    {KIND_OFFICE_TOWER, 3, 1014, {-3.34f, 0, -3.34f}, {3.34f, 72.08f, 3.34f}, ROOF | GLASS | PLAIN, 1},
    {KIND_FACTORY, 1, 306, {-4.00f, 0, -4.00f}, {4.00f, 24.00f, 4.00f}, WALL | ROOF | PLAIN, 0},
    {KIND_FACTORY, 2, 486, {-4.00f, 0, -4.00f}, {4.00f, 26.00f, 4.00f}, WALL | ROOF | PLAIN, 0},
    {KIND_FACTORY, 3, 828, {-4.00f, 0, -4.00f}, {4.00f, 32.28f, 4.00f}, WALL | ROOF | PLAIN, 1},
    {KIND_POLICE_STATION, 1, 312, {-3.26f, 0, -2.88f}, {3.26f, 12.00f, 3.03f}, WALL | PLAIN, 2},
    {KIND_FIRE_STATION, 1, 528, {-3.30f, 0, -2.98f}, {3.30f, 15.84f, 3.08f}, WALL | ROOF | PLAIN, 2},
    {KIND_HOSPITAL, 1, 534, {-3.46f, 0, -3.30f}, {3.46f, 12.28f, 4.00f}, WALL | ROOF | GLASS | PLAIN, 1},
    {KIND_SCHOOL, 1, 528, {-4.00f, 0, -4.00f}, {4.00f, 18.60f, 4.00f}, WALL | ROOF | PLAIN | LEAVES, 0},
    {KIND_PARK, 1, 945, {-4.00f, 0.72f, -4.00f}, {4.46f, 6.74f, 4.76f}, PLAIN | LEAVES, 2},
    {KIND_BUS_DEPOT, 1, 696, {-3.20f, 0, -3.20f}, {3.20f, 5.85f, 3.20f}, WALL | ROOF | PLAIN, 0},
    {KIND_GAS_POWER_PLANT, 1, 2952, {-3.95f, 0, -3.95f}, {3.95f, 25.20f, 3.95f}, PLAIN, 0},
    {KIND_SOLAR_FARM, 1, 462, {-3.00f, 0.60f, -3.60f}, {3.70f, 3.60f, 2.80f}, PANEL | PLAIN, 0},
    {KIND_WIND_TURBINE, 1, 594, {-6.99f, 0, -1.70f}, {9.13f, 35.20f, 1.60f}, PLAIN, 0},
    {KIND_WATER_PUMP, 1, 450, {-3.05f, 0, -2.86f}, {3.20f, 14.00f, 3.20f}, WALL | ROOF | PLAIN, 1},
};

TEST(BuildingMesh, EveryModelKeepsItsWeightItsSizeItsMaterialsAndItsLamps) {
    for (const ModelRow& row : MODEL_ROWS) {
        SCOPED_TRACE(testing::Message() << "kind " << row.kind << ", level " << row.level);
        const MeshBuilder mesh = modelOf(row.kind, row.level);
        EXPECT_EQ(mesh.size(), row.vertexCount);
        expectNear(boundsOf(mesh).min, row.min, 0.006f);
        expectNear(boundsOf(mesh).max, row.max, 0.006f);
        EXPECT_EQ(materialsOf(mesh), row.materials);
        EXPECT_EQ(lampsOf(mesh).size(), row.lampCount);
    }
}

TEST(BuildingMesh, OnlyRotorsFlagsAndTreetopsReachOutOfTheLot) {
    for (const ModelRow& row : MODEL_ROWS) {
        if (row.kind == KIND_WIND_TURBINE || row.kind == KIND_PARK) continue;
        const Bounds bounds = boundsOf(modelOf(row.kind, row.level));
        EXPECT_GE(std::min(bounds.min.x, bounds.min.z), -4.001f) << row.kind;
        EXPECT_LE(std::max(bounds.max.x, bounds.max.z), 4.001f) << row.kind;
    }
}

TEST(BuildingMesh, EveryNormalIsOfUnitLengthAndEveryColourInRange) {
    for (const ModelRow& row : MODEL_ROWS)
        for (const float progress : {0.4f, 1.0f})
            for (const Vertex& vertex : modelOf(row.kind, row.level, progress)) {
                ASSERT_NEAR(length(vertex.normal), 1.0f, 1e-4f) << row.kind;
                for (const float channel :
                     {vertex.colour.x, vertex.colour.y, vertex.colour.z, vertex.emissive}) {
                    ASSERT_GE(channel, 0.0f);
                    ASSERT_LE(channel, 1.0f);
                }
            }
}

TEST(BuildingMesh, TheSeedOfABuildingIsTheHashOfItsCell) {
    for (const int x : {3, 20, 77}) {
        const MeshBuilder house = modelOf(KIND_HOMES, 1, 1.0f, x, 50);
        EXPECT_EQ(house[0].colour, paletteRow(wallPalette, seedOf(x, 50)));
        EXPECT_FLOAT_EQ(house[0].emissive, 0.6f + 0.3f * seedOf(x, 50));
    }
}

TEST(BuildingMesh, NeighbouringSolarFarmsLineUp) {
    City city = flatCity();
    addBuilding(city, 20, 20, KIND_SOLAR_FARM);
    addBuilding(city, 21, 20, KIND_SOLAR_FARM);
    const MeshBuilder mesh = buildingsOf(city);
    const size_t half = mesh.size() / 2;
    for (size_t i = 0; i < half; i++)
        expectNear(mesh[half + i].position, mesh[i].position + Vec3{8, 0, 0}, 1e-3f);
}

TEST(BuildingMesh, NeighbouringWindTurbinesStandApart) {
    const MeshBuilder first =
        verticesOfColour(modelOf(KIND_WIND_TURBINE, 1, 1.0f, 20, 20), {0.95f, 0.95f, 0.96f});
    const MeshBuilder second =
        verticesOfColour(modelOf(KIND_WIND_TURBINE, 1, 1.0f, 21, 20), {0.95f, 0.95f, 0.96f});
    EXPECT_GT(length(first[2].position - second[2].position), 0.2f);
}

TEST(BuildingMesh, AParkOnASlopeKeepsItsLawnFlatAtTheAverageHeight) {
    City city = flatCity();
    for (int y = 0; y < CORNER_SIDE; y++)
        for (int x = 0; x < CORNER_SIDE; x++) city.heights[cornerIndex(x, y)] = static_cast<float>(x);
    addBuilding(city, 48, 48, KIND_PARK);
    const Bounds lawn = boundsOf(verticesOfColour(buildingsOf(city), {0.36f, 0.62f, 0.30f}));
    EXPECT_EQ(lawn.min.y, lawn.max.y);
    EXPECT_NEAR(lawn.min.y, 48.5f + 0.12f, 1e-3f);
}

TEST(BuildingMesh, WhatDoesNotShowDoesNotChangeTheMesh) {
    City city = flatCity();
    Building& building = addBuilding(city, 30, 30, KIND_HOMES, 2);
    const MeshBuilder before = buildingsOf(city);
    building.happiness = 3.0f;
    building.occupants = 12;
    building.powered = building.watered = building.working = 0;
    city.day = 400;
    city.calendarDay = 300;
    city.raining = 1;
    EXPECT_TRUE(isSame(buildingsOf(city), before));
}
