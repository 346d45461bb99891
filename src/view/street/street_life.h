// Cars and buses on the roads, for the eye alone: they read the road layout and the traffic of the city and
// change nothing in it. `App` owns the one StreetLife; the game screen updates it once a frame.
#pragma once

#include "sim/city.h"

constexpr int VEHICLE_LIMIT = 180;
constexpr int CAR_COLOUR_COUNT = 7;

// Drives in a straight line from the centre of one cell to the centre of the next.
struct Vehicle {
    int16_t toX = 0; // the cell being driven to
    int16_t toY = 0;
    int16_t fromX = 0; // the cell being left
    int16_t fromY = 0;
    float t = 0.0f;     // 0 at the centre of the cell being left, 1 at that of the next
    float speed = 0.0f; // cells a second on an empty road
    uint8_t isBus = 0;
    uint8_t colourIndex = 0; // of a car, below CAR_COLOUR_COUNT
    int8_t lane = 1;         // +1 right of the road's middle, -1 left of it, by chance and for life
    uint8_t dead = 0;        // the next update removes it

    bool operator==(const Vehicle&) const = default;
};

struct StreetLife {
    std::vector<Vehicle> vehicles;
    uint32_t rng = 4242;     // xorshift state; goes on from city to city
    float spawnTimer = 0.0f; // seconds of game time
    int32_t roadCells = 0;   // from the last scan
    int32_t busStops = 0;    // from the last scan
    float scanTimer = 0.0f;  // seconds of game time

    bool operator==(const StreetLife&) const = default;
};

// Empties the streets for another city.
void resetStreetLife(StreetLife& streetLife);

// `gameDt` is in seconds of game time, 0 while time stands still; `population` sets how busy the streets are.
void updateStreetLife(StreetLife& streetLife, const City& city, float gameDt, int population);

// How many vehicles the streets should hold, 0 to VEHICLE_LIMIT.
int vehicleTarget(int roadCells, int population);

// At the centre of the `to` cell: takes the next cell, or marks the vehicle dead when no road leads on.
void stepVehicle(StreetLife& streetLife, const City& city, Vehicle& vehicle);

// The generator of street life: the whole state after a step, and its low 24 bits as 0 to 1.
uint32_t nextRandom(uint32_t& state);
float nextRandomUnit(uint32_t& state);
