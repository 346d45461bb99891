#include "sim/build_tools.h"

#include "sim/city_helpers.h"
#include "sim/networks.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

// Cells that the tests below build on.
static constexpr int X = 40;
static constexpr int Y = 50;

static Cell& cellOf(City& city, int x = X, int y = Y) { return city.cells[cellIndex(x, y)]; }

// Raises one corner of the cell, so that its slope is `slope`.
static void tilt(City& city, float slope) { city.heights[cornerIndex(X, Y)] = 10.0f + slope * CELL_WIDTH; }

static void clearMarks(City& city) {
    std::fill(city.cellDirty.begin(), city.cellDirty.end(), uint8_t{0});
    city.roadsDirty = city.buildingsDirty = city.zonesDirty = city.overlayDirty = 0;
}

static bool onlyMarked(const City& city, int x, int y) {
    return city.cellDirty[cellIndex(x, y)] == 1 &&
           std::count(city.cellDirty.begin(), city.cellDirty.end(), 1) == 1;
}

static bool nothingMarked(const City& city) {
    return std::count(city.cellDirty.begin(), city.cellDirty.end(), 1) == 0;
}

// Runs an operation that must refuse: it answers false with this status and changes nothing else.
template<class Operation> static void expectRefused(City& city, int statusId, Operation operation) {
    setStatus(city, STATUS_ZONED, 77);
    const CityHashes before = cityHashes(city);
    EXPECT_FALSE(operation());
    EXPECT_EQ(city.statusId, statusId);
    EXPECT_EQ(city.statusArg, 0u);
    EXPECT_EQ(cityHashes(city), before);
}

// As above, for the operations that also leave the status of the one before.
template<class Operation> static void expectSilentlyRefused(City& city, Operation operation) {
    setStatus(city, STATUS_ZONED, 77);
    const CityHashes before = cityHashes(city);
    EXPECT_FALSE(operation());
    EXPECT_EQ(city.statusId, STATUS_ZONED);
    EXPECT_EQ(city.statusArg, 77u);
    EXPECT_EQ(cityHashes(city), before);
}

static void expectStatus(const City& city, int id, uint32_t arg = 0) {
    EXPECT_EQ(city.statusId, id);
    EXPECT_EQ(city.statusArg, arg);
}

// ---- roads

TEST(PlaceRoad, AStreetCosts80AndClearsZoneAndTrees) {
    City city = flatCity();
    clearMarks(city);
    city.statusArg = 9;
    cellOf(city).zone = ZONE_OFFICES;
    cellOf(city).hasTrees = 1;
    EXPECT_TRUE(placeRoad(city, X, Y, ROAD_STREET));
    expectStatus(city, STATUS_STREET_BUILT);
    EXPECT_EQ(city.money, 150000.0 - 80.0);
    EXPECT_EQ(cellOf(city).road, ROAD_STREET);
    EXPECT_EQ(cellOf(city).zone, ZONE_NONE);
    EXPECT_EQ(cellOf(city).hasTrees, 0);
    EXPECT_TRUE(onlyMarked(city, X, Y));
    EXPECT_TRUE(city.roadsDirty && city.zonesDirty && city.overlayDirty && city.buildingsDirty);
}

TEST(PlaceRoad, AnAvenueCosts240AlsoOnBareGroundAndAnswersUpgraded) {
    City city = flatCity();
    EXPECT_TRUE(placeRoad(city, X, Y, ROAD_AVENUE));
    expectStatus(city, STATUS_AVENUE_BUILT);
    EXPECT_EQ(city.money, 150000.0 - 240.0);
    EXPECT_EQ(cellOf(city).road, ROAD_AVENUE);
}

TEST(PlaceRoad, AnAvenueOverAStreetCosts160) {
    City city = flatCity();
    cellOf(city).road = ROAD_STREET;
    EXPECT_TRUE(placeRoad(city, X, Y, ROAD_AVENUE));
    expectStatus(city, STATUS_AVENUE_BUILT);
    EXPECT_EQ(city.money, 150000.0 - 160.0);
    EXPECT_EQ(cellOf(city).road, ROAD_AVENUE);
}

TEST(PlaceRoad, KeepsBusStopAndDistrictWhenAStreetBecomesAnAvenue) {
    City city = flatCity();
    cellOf(city).road = ROAD_STREET;
    cellOf(city).busStop = 1;
    cellOf(city).district = 4;
    EXPECT_TRUE(placeRoad(city, X, Y, ROAD_AVENUE));
    EXPECT_EQ(cellOf(city).busStop, 1);
    EXPECT_EQ(cellOf(city).district, 4);
}

TEST(PlaceRoad, TheSameRoadTwiceIsRefusedAsARoadHere) {
    for (const int type : {ROAD_STREET, ROAD_AVENUE}) {
        City city = flatCity();
        cellOf(city).road = static_cast<uint8_t>(type);
        expectRefused(city, STATUS_ROAD_HERE, [&] { return placeRoad(city, X, Y, type); });
    }
}

TEST(PlaceRoad, AStreetOverAnAvenueIsRefusedAsNoRoadHere) {
    City city = flatCity();
    cellOf(city).road = ROAD_AVENUE;
    expectRefused(city, STATUS_NO_ROAD_HERE, [&] { return placeRoad(city, X, Y, ROAD_STREET); });
}

TEST(PlaceRoad, NeitherWaterNorABuildingNorASteepSlopeTakesARoad) {
    City water = flatCity();
    cellOf(water).terrain = TERRAIN_WATER;
    expectRefused(water, STATUS_NO_ROAD_HERE, [&] { return placeRoad(water, X, Y, ROAD_STREET); });

    City built = flatCity();
    addBuilding(built, X, Y, KIND_PARK);
    expectRefused(built, STATUS_NO_ROAD_HERE, [&] { return placeRoad(built, X, Y, ROAD_STREET); });

    City steep = flatCity();
    tilt(steep, 1.75f);
    expectRefused(steep, STATUS_NO_ROAD_HERE, [&] { return placeRoad(steep, X, Y, ROAD_AVENUE); });
}

TEST(PlaceRoad, ClimbsASlopeOfExactly1Point6) {
    City city = flatCity();
    std::fill(city.heights.begin(), city.heights.end(), 0.0f);
    city.heights[cornerIndex(X, Y)] = 1.6f * CELL_WIDTH;
    EXPECT_EQ(cellSlope(city, X, Y), 1.6f);
    EXPECT_TRUE(placeRoad(city, X, Y, ROAD_STREET));
    city.heights[cornerIndex(X, Y + 5)] = std::nextafter(1.6f * CELL_WIDTH, 100.0f);
    EXPECT_FALSE(placeRoad(city, X, Y + 5, ROAD_STREET));
}

TEST(PlaceRoad, RockTakesARoad) {
    City city = flatCity();
    cellOf(city).terrain = TERRAIN_ROCK;
    EXPECT_TRUE(placeRoad(city, X, Y, ROAD_STREET));
}

TEST(PlaceRoad, OffTheMapIsRefusedAsNoRoadHere) {
    City city = flatCity();
    for (const auto& [x, y] : {std::pair{-1, 0}, {0, -1}, {96, 0}, {0, 96}, {1 << 30, -(1 << 30)}})
        expectRefused(city, STATUS_NO_ROAD_HERE,
                      [&, x = x, y = y] { return placeRoad(city, x, y, ROAD_STREET); });
}

TEST(PlaceRoad, ATypeThatDoesNotExistIsRefused) {
    City city = flatCity();
    for (const int type : {-1, 0, 3, 257})
        expectRefused(city, STATUS_NO_ROAD_HERE, [&] { return placeRoad(city, X, Y, type); });
}

TEST(PlaceRoad, PaysToTheLastCentAndNotBeyond) {
    struct Case {
        double money;
        uint8_t roadBefore;
        RoadType type;
        bool enough;
    };
    for (const Case& c :
         {Case{80.0, ROAD_NONE, ROAD_STREET, true}, Case{79.99, ROAD_NONE, ROAD_STREET, false},
          Case{240.0, ROAD_NONE, ROAD_AVENUE, true}, Case{239.99, ROAD_NONE, ROAD_AVENUE, false},
          Case{160.0, ROAD_STREET, ROAD_AVENUE, true}, Case{159.99, ROAD_STREET, ROAD_AVENUE, false}}) {
        City city = flatCity();
        cellOf(city).road = c.roadBefore;
        city.money = c.money;
        if (!c.enough) {
            expectRefused(city, STATUS_NO_MONEY_FOR_ROAD, [&] { return placeRoad(city, X, Y, c.type); });
            continue;
        }
        EXPECT_TRUE(placeRoad(city, X, Y, c.type));
        EXPECT_EQ(city.money, 0.0);
    }
}

TEST(PlaceRoad, GivesTheBuildingBesideItRoadAccessAndServiceAtOnce) {
    City city = flatCity();
    addBuilding(city, X + 1, Y, KIND_PARK);
    addBuilding(city, X + 2, Y, KIND_PARK);
    EXPECT_TRUE(placeRoad(city, X, Y, ROAD_STREET));
    EXPECT_EQ(city.buildings[0].working, 1);
    EXPECT_EQ(city.buildings[1].working, 0);
}

// ---- zones and districts

TEST(SetZone, ZonesBareLandAndClearsItsTreesWithoutAStatus) {
    for (int zone = ZONE_RESIDENTIAL; zone <= ZONE_INDUSTRIAL; zone++) {
        City city = flatCity();
        clearMarks(city);
        cellOf(city).hasTrees = 1;
        setStatus(city, STATUS_ROAD_REMOVED, 5);
        EXPECT_TRUE(setZone(city, X, Y, zone));
        EXPECT_EQ(cellOf(city).zone, zone);
        EXPECT_EQ(cellOf(city).hasTrees, 0);
        EXPECT_TRUE(onlyMarked(city, X, Y));
        EXPECT_TRUE(city.zonesDirty && !city.roadsDirty && !city.buildingsDirty && !city.overlayDirty);
        expectStatus(city, STATUS_ROAD_REMOVED, 5);
        EXPECT_EQ(city.money, 150000.0);
    }
}

TEST(SetZone, AnotherZoneReplacesTheOneThere) {
    City city = flatCity();
    cellOf(city).zone = ZONE_OFFICES;
    EXPECT_TRUE(setZone(city, X, Y, ZONE_COMMERCIAL));
    EXPECT_EQ(cellOf(city).zone, ZONE_COMMERCIAL);
}

TEST(SetZone, TheSameZoneRockWaterAndRoadsAnswerFalse) {
    City zoned = flatCity();
    cellOf(zoned).zone = ZONE_OFFICES;
    expectSilentlyRefused(zoned, [&] { return setZone(zoned, X, Y, ZONE_OFFICES); });

    for (const int terrain : {TERRAIN_ROCK, TERRAIN_WATER}) {
        City city = flatCity();
        cellOf(city).terrain = static_cast<uint8_t>(terrain);
        expectSilentlyRefused(city, [&] { return setZone(city, X, Y, ZONE_RESIDENTIAL); });
    }
    City road = flatCity();
    cellOf(road).road = ROAD_STREET;
    expectSilentlyRefused(road, [&] { return setZone(road, X, Y, ZONE_RESIDENTIAL); });
    expectSilentlyRefused(road, [&] { return setZone(road, X, Y, ZONE_NONE); });
}

TEST(SetZone, NoneClearsAZoneAndAnswersFalseWhereNoneIs) {
    City city = flatCity();
    cellOf(city).zone = ZONE_INDUSTRIAL;
    clearMarks(city);
    EXPECT_TRUE(setZone(city, X, Y, ZONE_NONE));
    EXPECT_EQ(cellOf(city).zone, ZONE_NONE);
    EXPECT_TRUE(onlyMarked(city, X, Y) && city.zonesDirty);
    expectSilentlyRefused(city, [&] { return setZone(city, X, Y, ZONE_NONE); });
}

TEST(SetZone, UnderABuildingOnlyNoneIsAllowed) {
    City city = flatCity();
    addBuilding(city, X, Y, KIND_HOMES);
    cellOf(city).zone = ZONE_RESIDENTIAL;
    expectSilentlyRefused(city, [&] { return setZone(city, X, Y, ZONE_COMMERCIAL); });
    EXPECT_TRUE(setZone(city, X, Y, ZONE_NONE));
    EXPECT_EQ(cellOf(city).zone, ZONE_NONE);
    EXPECT_EQ(cellOf(city).buildingIndex, 0);
    expectSilentlyRefused(city, [&] { return setZone(city, X, Y, ZONE_NONE); });
}

TEST(SetZone, OffTheMapAndUnknownZonesAnswerFalse) {
    City city = flatCity();
    for (const int zone : {-1, 5, 256})
        expectSilentlyRefused(city, [&] { return setZone(city, X, Y, zone); });
    for (const auto& [x, y] : {std::pair{-1, 0}, {0, -1}, {96, 0}, {0, 96}})
        expectSilentlyRefused(city, [&, x = x, y = y] { return setZone(city, x, y, ZONE_OFFICES); });
}

TEST(SetDistrict, PaintsWaterAndRoadsTooAndLeavesNoStatus) {
    City city = flatCity();
    cellOf(city).terrain = TERRAIN_WATER;
    cellOf(city, X + 1).road = ROAD_STREET;
    clearMarks(city);
    setStatus(city, STATUS_ROAD_REMOVED, 5);
    EXPECT_TRUE(setDistrict(city, X, Y, 8));
    EXPECT_TRUE(onlyMarked(city, X, Y));
    EXPECT_TRUE(setDistrict(city, X + 1, Y, 1));
    EXPECT_EQ(cellOf(city).district, 8);
    EXPECT_EQ(cellOf(city, X + 1).district, 1);
    EXPECT_TRUE(city.overlayDirty && !city.zonesDirty && !city.roadsDirty && !city.buildingsDirty);
    expectStatus(city, STATUS_ROAD_REMOVED, 5);
}

TEST(SetDistrict, ZeroClears) {
    City city = flatCity();
    cellOf(city).district = 3;
    EXPECT_TRUE(setDistrict(city, X, Y, 0));
    EXPECT_EQ(cellOf(city).district, 0);
}

TEST(SetDistrict, TheSameNumberAnUnknownOneAndOffTheMapAnswerFalse) {
    City city = flatCity();
    cellOf(city).district = 3;
    for (const int district : {3, -1, 9, 259})
        expectSilentlyRefused(city, [&] { return setDistrict(city, X, Y, district); });
    expectSilentlyRefused(city, [&] { return setDistrict(city, 0, 96, 1); });
    expectSilentlyRefused(city, [&] { return setDistrict(city, -1, 5, 1); });
}

// ---- buildings and bus stops

TEST(PlaceBuilding, PaysAndStartsConstruction) {
    City city = flatCity();
    addBuilding(city, 3, 3, KIND_PARK);
    clearMarks(city);
    cellOf(city).hasTrees = 1;
    EXPECT_TRUE(placeBuilding(city, X, Y, KIND_HOSPITAL));
    expectStatus(city, STATUS_CONSTRUCTION_STARTED, KIND_HOSPITAL);
    EXPECT_EQ(city.money, 110000.0);
    EXPECT_EQ(cellOf(city).hasTrees, 0);
    EXPECT_EQ(cellOf(city).buildingIndex, 1);
    ASSERT_EQ(city.buildings.size(), 2u);
    const Building& building = city.buildings[1];
    EXPECT_EQ(building.kind, KIND_HOSPITAL);
    EXPECT_EQ(building.level, 1);
    EXPECT_EQ(building.x, X);
    EXPECT_EQ(building.y, Y);
    EXPECT_EQ(building.progress, 0.0f);
    EXPECT_EQ(building.happiness, 60.0f);
    EXPECT_EQ(building.occupants + building.unhappyDays + building.unservedDays, 0);
    EXPECT_EQ(building.staffing + building.congestion + building.pollutionHere, 0.0f);
    EXPECT_TRUE(onlyMarked(city, X, Y));
    EXPECT_TRUE(city.buildingsDirty && city.zonesDirty && city.overlayDirty && !city.roadsDirty);
}

TEST(PlaceBuilding, EveryPlacedKindCostsItsPrice) {
    constexpr int COSTS[] = {15000, 15000, 40000, 25000, 6000, 30000, 60000, 35000, 30000, 25000};
    for (int kind = KIND_POLICE_STATION; kind <= KIND_WATER_PUMP; kind++) {
        City city = flatCity();
        city.money = COSTS[kind - KIND_POLICE_STATION];
        EXPECT_TRUE(placeBuilding(city, X, Y, kind));
        EXPECT_EQ(city.money, 0.0);
        City poor = flatCity();
        poor.money = COSTS[kind - KIND_POLICE_STATION] - 0.01;
        expectRefused(poor, STATUS_NO_MONEY, [&] { return placeBuilding(poor, X, Y, kind); });
    }
}

TEST(PlaceBuilding, AnyKindMayBeAskedForAlsoOneThatGrows) {
    for (int kind = KIND_HOMES; kind <= KIND_WATER_PUMP; kind++) {
        City city = flatCity();
        city.money = buildingCost(kind, 1);
        EXPECT_TRUE(canPlaceBuilding(city, X, Y, kind, nullptr)) << kind;
        city.money -= 1.0;
        uint8_t asked = 0;
        EXPECT_FALSE(canPlaceBuilding(city, X, Y, kind, &asked)) << kind;
        EXPECT_EQ(asked, STATUS_NO_MONEY) << kind;
    }
}

TEST(PlaceBuilding, GrownAndUnknownKindsAreRefusedAsNothingHere) {
    City city = flatCity();
    for (const int kind : {0, 1, 2, 3, 14, 255, 256 + 4, -1}) {
        expectRefused(city, STATUS_NOTHING_HERE, [&] { return placeBuilding(city, X, Y, kind); });
        expectRefused(city, STATUS_NOTHING_HERE, [&] { return placeBuilding(city, -1, Y, kind); });
    }
}

TEST(PlaceBuilding, OffTheMapIsRefused) {
    City city = flatCity();
    for (const auto& [x, y] : {std::pair{-1, 0}, {0, -1}, {96, 0}, {0, 96}, {65536 + X, Y}})
        expectRefused(city, STATUS_OUTSIDE_MAP,
                      [&, x = x, y = y] { return placeBuilding(city, x, y, KIND_PARK); });
}

// Each step adds a reason that goes before the ones already there.
TEST(PlaceBuilding, TheFirstReasonWins) {
    City city = flatCity();
    const auto expectReason = [&](int reason) {
        expectRefused(city, reason, [&] { return placeBuilding(city, X, Y, KIND_PARK); });
        uint8_t asked = 0;
        EXPECT_FALSE(canPlaceBuilding(city, X, Y, KIND_PARK, &asked));
        EXPECT_EQ(asked, reason);
        EXPECT_FALSE(canPlaceBuilding(city, X, Y, KIND_PARK, nullptr));
    };
    city.money = 5999.0;
    expectReason(STATUS_NO_MONEY);
    tilt(city, 1.25f);
    expectReason(STATUS_TOO_STEEP);
    cellOf(city).zone = ZONE_OFFICES;
    expectReason(STATUS_ZONED_HERE);
    cellOf(city).terrain = TERRAIN_WATER;
    expectReason(STATUS_ON_WATER);
    addBuilding(city, X, Y, KIND_PARK);
    expectReason(STATUS_OCCUPIED);
    cellOf(city).road = ROAD_STREET;
    expectReason(STATUS_ROAD_HERE);
}

TEST(PlaceBuilding, ABusStopWithoutARoadStillOccupiesTheCell) {
    City city = flatCity();
    cellOf(city).busStop = 1;
    expectRefused(city, STATUS_OCCUPIED, [&] { return placeBuilding(city, X, Y, KIND_PARK); });
}

TEST(PlaceBuilding, StandsOnASlopeOfExactly1Point2) {
    City city = flatCity();
    std::fill(city.heights.begin(), city.heights.end(), 0.0f);
    city.heights[cornerIndex(X, Y)] = 1.2f * CELL_WIDTH;
    EXPECT_EQ(cellSlope(city, X, Y), 1.2f);
    EXPECT_TRUE(placeBuilding(city, X, Y, KIND_PARK));
    city.heights[cornerIndex(X, Y + 5)] = std::nextafter(1.2f * CELL_WIDTH, 100.0f);
    expectRefused(city, STATUS_TOO_STEEP, [&] { return placeBuilding(city, X, Y + 5, KIND_PARK); });
}

TEST(PlaceBuilding, AskingLeavesTheStatusAloneWhenNothingStandsAgainstIt) {
    City city = flatCity();
    uint8_t asked = 99;
    EXPECT_TRUE(canPlaceBuilding(city, X, Y, KIND_PARK, &asked));
    EXPECT_EQ(asked, 99);
}

TEST(PlaceBusStop, CostsFiveHundredAndMarksBuildingsOnly) {
    City city = flatCity();
    cellOf(city).road = ROAD_AVENUE;
    clearMarks(city);
    city.money = 500.0;
    EXPECT_TRUE(placeBusStop(city, X, Y));
    expectStatus(city, STATUS_BUS_STOP_BUILT);
    EXPECT_EQ(city.money, 0.0);
    EXPECT_EQ(cellOf(city).busStop, 1);
    EXPECT_TRUE(nothingMarked(city));
    EXPECT_TRUE(city.buildingsDirty && !city.overlayDirty && !city.roadsDirty && !city.zonesDirty);
}

TEST(PlaceBusStop, NeedsARoadAndMoney) {
    City city = flatCity();
    expectRefused(city, STATUS_BUS_STOP_NEEDS_ROAD, [&] { return placeBusStop(city, X, Y); });
    cellOf(city).road = ROAD_STREET;
    city.money = 499.99;
    expectRefused(city, STATUS_NO_MONEY, [&] { return placeBusStop(city, X, Y); });
}

TEST(PlaceBusStop, ASecondStopAndOffTheMapLeaveTheStatus) {
    City city = flatCity();
    cellOf(city).road = ROAD_STREET;
    cellOf(city).busStop = 1;
    city.money = 0.0;
    expectSilentlyRefused(city, [&] { return placeBusStop(city, X, Y); });
    expectSilentlyRefused(city, [&] { return placeBusStop(city, -1, Y); });
    expectSilentlyRefused(city, [&] { return placeBusStop(city, X, 96); });
}

// ---- bulldozer

TEST(Bulldoze, ABuildingGivesBackThreeTenthsOfLevelTimesCost) {
    City city = flatCity();
    addBuilding(city, X, Y, KIND_FACTORY, 2);
    cellOf(city).zone = ZONE_INDUSTRIAL;
    clearMarks(city);
    EXPECT_TRUE(bulldoze(city, X, Y));
    expectStatus(city, STATUS_DEMOLISHED);
    EXPECT_EQ(city.money, 154200.0);
    EXPECT_TRUE(city.buildings.empty());
    EXPECT_EQ(cellOf(city).buildingIndex, -1);
    EXPECT_EQ(cellOf(city).zone, ZONE_INDUSTRIAL);
    EXPECT_TRUE(onlyMarked(city, X, Y));
    EXPECT_TRUE(city.buildingsDirty && city.overlayDirty && !city.roadsDirty && !city.zonesDirty);
}

TEST(Bulldoze, TheOtherBuildingsKeepTheirOrderAndTheirCells) {
    City city = flatCity();
    for (int i = 0; i < 5; i++) addBuilding(city, 10 + i, 20, KIND_PARK);
    EXPECT_TRUE(bulldoze(city, 12, 20));
    ASSERT_EQ(city.buildings.size(), 4u);
    EXPECT_EQ(cellOf(city, 12, 20).buildingIndex, -1);
    for (size_t i = 0; i < 4; i++) EXPECT_EQ(city.buildings[i].x, i < 2 ? 10 + i : 11 + i);
    for (const int x : {10, 11, 13, 14}) EXPECT_EQ(buildingAt(city, x, 20)->x, x);
    EXPECT_EQ(brokenInvariant(city), "");
}

TEST(Bulldoze, APowerPlantLeavesItsBuildingsInTheDarkAtOnce) {
    City city = flatCity();
    layRoads(city, 10, 21, 14, 21);
    addBuilding(city, 10, 20, KIND_WIND_TURBINE);
    addBuilding(city, 12, 20, KIND_BUS_DEPOT);
    updateUtilities(city);
    EXPECT_EQ(city.buildings[1].working, 1);
    EXPECT_TRUE(bulldoze(city, 10, 20));
    EXPECT_EQ(city.buildings[0].kind, KIND_BUS_DEPOT);
    EXPECT_EQ(city.buildings[0].working, 0);
}

TEST(Bulldoze, TakesOneThingAtATime) {
    City city = flatCity();
    Cell& cell = cellOf(city);
    cell.road = ROAD_STREET;
    cell.busStop = 1;
    cell.zone = ZONE_OFFICES; // only a loaded city has a zone under a road
    cell.district = 2;
    addBuilding(city, X, Y, KIND_PARK);
    for (const int status : {STATUS_DEMOLISHED, STATUS_BUS_STOP_REMOVED, STATUS_ROAD_REMOVED,
                             STATUS_ZONE_REMOVED, STATUS_DISTRICT_CLEARED}) {
        city.statusArg = 3;
        EXPECT_TRUE(bulldoze(city, X, Y));
        expectStatus(city, status);
    }
    expectRefused(city, STATUS_NOTHING_HERE, [&] { return bulldoze(city, X, Y); });
}

TEST(Bulldoze, ARoadWithAStopTakesTwoClicksAndNothingComesBack) {
    City city = flatCity();
    cellOf(city).road = ROAD_AVENUE;
    cellOf(city).busStop = 1;
    clearMarks(city);
    EXPECT_TRUE(bulldoze(city, X, Y));
    expectStatus(city, STATUS_BUS_STOP_REMOVED);
    EXPECT_EQ(cellOf(city).road, ROAD_AVENUE);
    EXPECT_TRUE(nothingMarked(city));
    EXPECT_TRUE(city.buildingsDirty && !city.roadsDirty && !city.overlayDirty && !city.zonesDirty);
    EXPECT_TRUE(bulldoze(city, X, Y));
    expectStatus(city, STATUS_ROAD_REMOVED);
    EXPECT_EQ(cellOf(city).road, ROAD_NONE);
    EXPECT_TRUE(onlyMarked(city, X, Y));
    EXPECT_TRUE(city.roadsDirty && city.overlayDirty && !city.zonesDirty);
    EXPECT_EQ(city.money, 150000.0);
}

TEST(Bulldoze, TheBuildingBesideARoadLosesItsAccessAtOnce) {
    City city = flatCity();
    cellOf(city).road = ROAD_STREET;
    addBuilding(city, X, Y + 1, KIND_PARK);
    updateUtilities(city);
    EXPECT_EQ(city.buildings[0].working, 1);
    EXPECT_TRUE(bulldoze(city, X, Y));
    EXPECT_EQ(city.buildings[0].roadAccess, 0);
    EXPECT_EQ(city.buildings[0].working, 0);
}

TEST(Bulldoze, AZoneAndADistrictMarkWhatTheyChange) {
    City city = flatCity();
    cellOf(city).zone = ZONE_OFFICES;
    cellOf(city).district = 5;
    clearMarks(city);
    EXPECT_TRUE(bulldoze(city, X, Y));
    EXPECT_TRUE(onlyMarked(city, X, Y) && city.zonesDirty && !city.overlayDirty);
    clearMarks(city);
    EXPECT_TRUE(bulldoze(city, X, Y));
    EXPECT_TRUE(onlyMarked(city, X, Y) && city.overlayDirty && !city.zonesDirty);
}

TEST(Bulldoze, OffTheMapLeavesTheStatus) {
    City city = flatCity();
    for (const auto& [x, y] : {std::pair{-1, 0}, {0, -1}, {96, 0}, {0, 96}, {200, -7}})
        expectSilentlyRefused(city, [&, x = x, y = y] { return bulldoze(city, x, y); });
}

// ---- cities that no tool could have built, as a damaged save may bring them

TEST(BuildToolsOnAWildCity, AnIndexOutsideTheListIsNoBuilding) {
    City city = flatCity();
    for (const int index : {-2, 0, 7, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
        cellOf(city).buildingIndex = index;
        EXPECT_TRUE(canPlaceRoad(city, X, Y, ROAD_STREET));
        EXPECT_TRUE(canPlaceBuilding(city, X, Y, KIND_PARK, nullptr));
        expectRefused(city, STATUS_NOTHING_HERE, [&] { return bulldoze(city, X, Y); });
    }
}

TEST(BuildToolsOnAWildCity, EveryCellThatNamedTheDemolishedBuildingIsFree) {
    City city = flatCity();
    addBuilding(city, 1, 1, KIND_PARK);
    addBuilding(city, 2, 1, KIND_PARK);
    cellOf(city, 7, 7).buildingIndex = 0;
    cellOf(city, 8, 8).buildingIndex = std::numeric_limits<int>::max();
    EXPECT_TRUE(bulldoze(city, 7, 7));
    EXPECT_EQ(cellOf(city, 1, 1).buildingIndex, -1);
    EXPECT_EQ(cellOf(city, 7, 7).buildingIndex, -1);
    EXPECT_EQ(cellOf(city, 2, 1).buildingIndex, 0);
    EXPECT_EQ(buildingAt(city, 8, 8), nullptr);
}

TEST(BuildToolsOnAWildCity, ABuildingOfNoKindGivesNothingBack) {
    City city = flatCity();
    addBuilding(city, X, Y, 200, 255);
    EXPECT_TRUE(bulldoze(city, X, Y));
    EXPECT_EQ(city.money, 150000.0);
    addBuilding(city, X, Y, KIND_PARK, 0);
    EXPECT_TRUE(bulldoze(city, X, Y));
    EXPECT_EQ(city.money, 150000.0 + 1800.0); // a level below 1 counts as 1
}

TEST(BuildToolsOnAWildCity, NoRoadOnGroundOfNoHeight) {
    City city = flatCity();
    std::fill(city.heights.begin(), city.heights.end(), std::nanf(""));
    expectRefused(city, STATUS_NO_ROAD_HERE, [&] { return placeRoad(city, X, Y, ROAD_STREET); });
}
