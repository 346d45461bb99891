#include "sim/population.h"

#include "sim/building_kinds.h"
#include "sim/numbers.h"

#include <algorithm>
#include <cassert>

static constexpr float EDUCATED_COVERAGE = 0.3f;
static constexpr float UNHAPPY_BELOW = 8.0f;
static constexpr float CONTENT_FROM = 35.0f;
static constexpr float MOVING_OUT_BELOW = 20.0f;

static void clearEconomy(City& city) {
    city.educatedShare = 0.0f;
    city.goodsDemand = 0.0f;
    city.goodsSupply = 0.0f;
    city.goodsRatio = 1.0f;
    city.population = 0;
    city.jobs = 0;
    city.employed = 0;
    city.workers = 0;
    city.happiness = 60.0f;
}

struct PeopleCount {
    int64_t residents = 0;
    int64_t educated = 0;
    int64_t jobs = 0;
};

static PeopleCount countPeople(const City& city) {
    PeopleCount count;
    for (const Building& building : city.buildings) {
        if (!building.working) continue;
        count.jobs += jobPlaces(building.kind, building.level);
        if (building.kind != KIND_HOMES) continue;
        count.residents += building.occupants;
        if (fieldAt(city.coverage[COVERAGE_EDUCATION], building.x, building.y) >= EDUCATED_COVERAGE)
            count.educated += building.occupants;
    }
    return count;
}

static float shareOf(int64_t part, int64_t whole) {
    return whole > 0 ? static_cast<float>(part) / static_cast<float>(whole) : 0.0f;
}

static int32_t staffOf(const Building& building, float staffing) {
    assert(staffing >= 0.0f && staffing <= 1.0f);
    const int places = jobPlaces(building.kind, building.level);
    return wholePart(static_cast<float>(places) * staffing + 0.5f);
}

// Staff of everything but homes, and the goods that factories make and shops ask for.
static void updateStaff(City& city, float fill) {
    const float officeFactor = 0.4f + 0.6f * city.educatedShare;
    city.goodsDemand = 0.0f;
    city.goodsSupply = 0.0f;
    for (Building& building : city.buildings) {
        building.staffing = 0.0f;
        if (building.kind == KIND_HOMES) continue;
        building.occupants = 0;
        if (!building.working) continue;

        const bool isOffice = building.kind == KIND_OFFICE_TOWER;
        building.staffing = isOffice ? hold(fill * officeFactor, 0.0f, 1.0f) : fill;
        building.occupants = staffOf(building, building.staffing);
        const float level = static_cast<float>(building.level);
        if (building.kind == KIND_FACTORY) city.goodsSupply += level * 6.0f * fill;
        if (building.kind == KIND_SHOPS) city.goodsDemand += level * 3.0f;
    }
}

// After the staff, because the goods of all buildings must be counted first. Without goods a shop earns less,
// by its `staffing`, though whom it has hired stays.
static void updateShops(City& city, float fill) {
    city.goodsRatio = city.goodsDemand == 0.0f ? 1.0f : hold(city.goodsSupply / city.goodsDemand, 0.0f, 1.0f);
    for (Building& building : city.buildings)
        if (building.kind == KIND_SHOPS && building.working)
            building.staffing = hold(city.goodsRatio * fill, 0.0f, 1.0f);
}

// What the building's happiness moves towards. In another order its sum would round to another number, and
// the same seed would not give the same city.
static float happinessTarget(const City& city, const Building& building, float fill) {
    const int cell = inMap(building.x, building.y) ? cellIndex(building.x, building.y) : -1;
    const auto here = [cell](const Grid& field) { return cell < 0 ? 0.0f : field[cell]; };
    float value = building.powered ? 55.0f : 25.0f;
    if (!building.watered && building.kind < KIND_PARK) value -= 22.0f;
    value += here(city.coverage[COVERAGE_POLICE]) * 10.0f;
    value += here(city.coverage[COVERAGE_FIRE]) * 8.0f;
    value += here(city.coverage[COVERAGE_HEALTH]) * 10.0f;
    value += here(city.coverage[COVERAGE_EDUCATION]) * 6.0f;
    value += here(city.coverage[COVERAGE_PARKS]) * 12.0f;
    value += here(city.coverage[COVERAGE_TRANSIT]) * 4.0f;
    value -= here(city.pollution) * 25.0f;
    value -= building.congestion * 15.0f;
    value += (here(city.landValue) - 0.4f) * 20.0f;
    if (building.kind == KIND_HOMES) {
        value += static_cast<float>(100 - city.taxRate[0]) * 0.08f;
        value -= (1.0f - fill) * 15.0f; // empty job places; missing ones lower the demand for homes instead
    }
    if (const int district = districtAt(city, building.x, building.y)) {
        if (city.districtPolicy[district] & POLICY_SMOKE_FREE) value += 2.0f;
        if (city.districtPolicy[district] & POLICY_NO_TRUCKS) value += 1.0f;
    }
    if (city.raining) value -= 2.0f;
    return hold(value, 0.0f, 100.0f);
}

// A better day takes back one bad day instead of all, so that where most are bad the building falls.
static void updateHappiness(const City& city, Building& building, float fill) {
    building.happiness += (happinessTarget(city, building, fill) - building.happiness) * 0.2f;
    if (building.happiness < UNHAPPY_BELOW)
        building.unhappyDays = saturated(int64_t{building.unhappyDays} + 1);
    else
        building.unhappyDays = building.unhappyDays > 0 ? building.unhappyDays - 1 : 0;
}

static void updateResidents(Building& home, float demand) {
    assert(home.kind == KIND_HOMES && isFinished(home));
    const int capacity = homeCapacity(home.level);
    const int step = capacity < 16 ? 1 : capacity / 8;
    int64_t residents = home.occupants;
    if (home.working && home.happiness >= CONTENT_FROM) {
        if (demand > -0.3f) residents += step;
    } else if (home.working) {
        if (home.happiness < MOVING_OUT_BELOW) residents -= capacity >= 20 ? capacity / 10 : 1;
    } else if (home.unservedDays > 3) { // only from a loaded file: who is cut off stays
        residents -= step;
    }
    home.occupants = static_cast<int32_t>(std::clamp<int64_t>(residents, 0, capacity));
}

void updatePopulation(City& city) {
    clearEconomy(city);
    if (city.buildings.empty()) return;

    const PeopleCount count = countPeople(city);
    city.population = saturated(count.residents);
    city.workers = wholePart(0.6f * static_cast<float>(city.population));
    city.educatedShare = shareOf(count.educated, city.population);
    city.jobs = saturated(count.jobs);
    city.employed = std::min(city.workers, city.jobs);
    const float fill = hold(shareOf(city.workers, count.jobs), 0.0f, 1.0f);
    updateStaff(city, fill);
    updateShops(city, fill);

    float residents = 0.0f;
    float happiness = 0.0f;
    for (Building& building : city.buildings) {
        if (!isFinished(building)) continue;
        updateHappiness(city, building, fill);
        if (building.kind != KIND_HOMES) continue;
        if (building.occupants > 0) {
            residents += static_cast<float>(building.occupants);
            happiness += building.happiness * static_cast<float>(building.occupants);
        }
        updateResidents(building, city.demand[0]);
    }
    city.happiness = residents > 0.0f ? happiness / residents : 60.0f;
}

static float heldDemand(float value) { return hold(value, -1.0f, 1.0f); }

void updateDemand(City& city) {
    int64_t allPlaces = 0;
    int64_t placesInShops = 0;
    int64_t placesInOffices = 0;
    for (const Building& building : city.buildings) {
        if (!building.working) continue;
        const int places = jobPlaces(building.kind, building.level);
        allPlaces += places;
        if (building.kind == KIND_SHOPS) placesInShops += places;
        if (building.kind == KIND_OFFICE_TOWER) placesInOffices += places;
    }
    const float places = static_cast<float>(allPlaces);
    const float shopPlaces = static_cast<float>(placesInShops);
    const float officePlaces = static_cast<float>(placesInOffices);
    const float workers = static_cast<float>(city.workers);
    const float customers = 0.3f * static_cast<float>(city.population);

    // The constants in the divisors keep the demand of a small town small, and that of an empty one at 0.
    city.demand[0] = heldDemand((places - workers) / (workers + 300.0f));
    city.demand[1] = heldDemand((customers - shopPlaces) / (customers + 300.0f));
    city.demand[2] =
        heldDemand((city.educatedShare * workers * 0.6f - officePlaces) / (0.6f * workers + 200.0f));
    float industry = 0.5f * (workers - places) / (workers + 300.0f);
    if (city.goodsDemand > 0.0f)
        industry += 0.5f * (city.goodsDemand - city.goodsSupply) / (city.goodsDemand + 80.0f);
    city.demand[3] = heldDemand(industry);
}
