#include "program/demo_city.h"

#include "app/session.h"
#include "sim/build_tools.h"
#include "sim/daily_tick.h"

#include <cassert>

static void layStreets(City& city) {
    for (int x = 40; x <= 56; x++) placeRoad(city, x, 48, ROAD_STREET);
    for (int y = 42; y <= 54; y++) placeRoad(city, 48, y, ROAD_STREET);
    placeRoad(city, 48, 48, ROAD_AVENUE);
    // The middle of every land is level and dry.
    assert(city.cells[cellIndex(40, 48)].road && city.cells[cellIndex(48, 54)].road);
}

static void placeServices(City& city) {
    placeBuilding(city, 49, 42, KIND_GAS_POWER_PLANT);
    placeBuilding(city, 47, 54, KIND_WATER_PUMP);
    placeBuilding(city, 49, 54, KIND_PARK);
    placeBuilding(city, 47, 42, KIND_SCHOOL);
    placeBuilding(city, 49, 50, KIND_POLICE_STATION);
    placeBuilding(city, 47, 46, KIND_HOSPITAL); // too dear by now: its cell is zoned like the others
    placeBuilding(city, 49, 45, KIND_FIRE_STATION);
    assert(city.buildings.size() == 6);
    placeBusStop(city, 51, 48);
    placeBusStop(city, 45, 48);
}

static int zoneOfQuarter(int x, int y) {
    if (x < 48) return ZONE_RESIDENTIAL;
    return y < 48 ? ZONE_COMMERCIAL : ZONE_INDUSTRIAL;
}

static void zoneQuarters(City& city) {
    for (int y = 43; y <= 53; y++)
        for (int x = 41; x <= 55; x++)
            if (x != 48 && y != 48) setZone(city, x, y, zoneOfQuarter(x, y));
    for (int y = 43; y <= 47; y++)
        for (int x = 41; x <= 44; x++) setDistrict(city, x, y, 1);
}

// Lets the streets fill with cars, as they would in half a minute of play.
static void fillStreets(App& app) {
    resetStreetLife(app.streetLife);
    for (int step = 0; step < 300; step++) updateStreetLife(app.streetLife, app.city, 0.1f, 400);
}

void buildDemoCity(App& app, int days) {
    newCity(app);
    startTutorial(app, -1);
    layStreets(app.city);
    placeServices(app.city);
    zoneQuarters(app.city);
    for (int day = 0; day < days; day++) dailyTick(app.city);
    fillStreets(app);

    setSpeed(app, 0);
    app.camera.target = {388.0f, 0.0f, 388.0f};
    app.camera.yaw = 0.7f;
    app.camera.pitch = 0.75f;
    app.camera.distance = 150.0f;
    app.lastEventCount = app.city.eventCount;
}
