#include "view/building_mesh_cache.h"

#include "sim/city_helpers.h"
#include "sim/hash.h"
#include "view/building_mesh.h"
#include "view/model_helpers.h"

static bool showsCity(const BuildingMeshCache& cache, const City& city) {
    MeshBuilder fresh;
    buildBuildingMesh(fresh, city);
    return isSame(fresh, cache.vertices);
}

// A town of every kind and level, with sites and bus stops.
static City town() {
    City city = flatCity();
    for (int i = 0; i < 30; i++) {
        const uint8_t kind = static_cast<uint8_t>(i % KIND_COUNT);
        Building& building =
            addBuilding(city, 20 + i % 10, 30 + i / 10, kind, static_cast<uint8_t>(1 + i % 3));
        if (i % 5 == 0) building.progress = 0.4f;
    }
    for (int x = 20; x < 30; x += 2) city.cells[cellIndex(x, 40)].busStop = 1;
    return city;
}

TEST(BuildingMeshCache, FirstShowsTheWholeCity) {
    const City city = town();
    BuildingMeshCache cache;
    EXPECT_TRUE(updateBuildingMeshCache(cache, city));
    EXPECT_TRUE(showsCity(cache, city));
}

TEST(BuildingMeshCache, AnUnchangedCityChangesNothing) {
    City city = town();
    BuildingMeshCache cache;
    updateBuildingMeshCache(cache, city);
    const Vertex* const vertices = cache.vertices.data();
    EXPECT_FALSE(updateBuildingMeshCache(cache, city));
    city.buildingsDirty = 1;
    city.buildings[3].happiness = 10.0f;
    city.buildings[3].powered = 0;
    city.heights[0] = 99.0f; // nothing stands there
    EXPECT_FALSE(updateBuildingMeshCache(cache, city));
    EXPECT_EQ(cache.vertices.data(), vertices);
}

TEST(BuildingMeshCache, ACityWithNothingInItIsShownFromTheStart) {
    BuildingMeshCache cache;
    EXPECT_FALSE(updateBuildingMeshCache(cache, flatCity()));
    EXPECT_TRUE(cache.vertices.empty());
}

TEST(BuildingMeshCache, FollowsEveryKindOfChange) {
    City city = town();
    BuildingMeshCache cache;
    updateBuildingMeshCache(cache, city);
    const auto expectShown = [&](const char* change) {
        EXPECT_TRUE(updateBuildingMeshCache(cache, city)) << change;
        EXPECT_TRUE(showsCity(cache, city)) << change;
    };

    addBuilding(city, 50, 50, KIND_SCHOOL).progress = 0.0f;
    expectShown("a new site");
    city.buildings.back().progress = 0.5f;
    expectShown("a site that grows");
    city.buildings.back().progress = 1.0f;
    expectShown("a finished building");
    city.buildings[14].level = 2;
    expectShown("a level gained");
    city.buildings.erase(city.buildings.begin() + 20);
    expectShown("a bulldozed building");
    city.buildings.erase(city.buildings.begin());
    expectShown("the first building gone");
    city.buildings.pop_back();
    expectShown("the last building gone");
    city.cells[cellIndex(25, 40)].busStop = 1;
    expectShown("a new bus stop");
    city.cells[cellIndex(20, 40)].busStop = 0;
    expectShown("a bus stop gone");
    city.heights[cornerIndex(24, 33)] = 12.0f;
    expectShown("four cells of another height");
    city.buildings[5].kind = KIND_CONDEMNED;
    expectShown("a condemned building");
    std::swap(city.buildings[10], city.buildings[30]);
    expectShown("another order");
    city = flatCity();
    expectShown("a new city");
    city = town();
    expectShown("a loaded city");
}

TEST(BuildingMeshCache, ReplacedBuildingsOfOneCellAreToldApart) {
    City city = flatCity();
    addBuilding(city, 20, 20, KIND_HOMES);
    BuildingMeshCache cache;
    updateBuildingMeshCache(cache, city);
    city.buildings.clear();
    addBuilding(city, 20, 20, KIND_SHOPS);
    EXPECT_TRUE(updateBuildingMeshCache(cache, city));
    EXPECT_TRUE(showsCity(cache, city));
}

static void editAtRandom(City& city, uint32_t step) {
    uint32_t drawn = 0;
    const auto draw = [&] { return hashCell(step, drawn++, 4242); };
    const uint32_t count = static_cast<uint32_t>(city.buildings.size());
    for (uint32_t edit = draw() % 4 + 1; edit > 0; edit--) {
        const uint32_t at = draw() % (count > 8 ? count - 8 : 1);
        Building& building = city.buildings[at];
        switch (draw() % 7) {
        case 0:
            building.level = static_cast<uint8_t>(draw() % 4);
            break;
        case 1:
            building.progress = static_cast<float>(draw() % 5) * 0.25f;
            break;
        case 2:
            building.kind = static_cast<uint8_t>(draw() % 16);
            break;
        case 3:
            city.buildings.erase(city.buildings.begin() + at);
            return;
        case 4:
            city.cells[draw() % CELL_COUNT].busStop ^= 1;
            break;
        case 5:
            city.heights[draw() % CORNER_COUNT] += 0.5f;
            break;
        default: {
            const int x = static_cast<int>(draw() % GRID_SIZE);
            const int y = static_cast<int>(draw() % GRID_SIZE);
            addBuilding(city, x, y, static_cast<uint8_t>(draw() % KIND_COUNT)).progress = 0.0f;
            return;
        }
        }
    }
}

TEST(BuildingMeshCache, AfterAnyCourseOfEditsTheBytesAreThoseOfABuildFromNothing) {
    City city = town();
    BuildingMeshCache cache;
    for (uint32_t step = 0; step < 150; step++) {
        editAtRandom(city, step);
        updateBuildingMeshCache(cache, city);
        ASSERT_TRUE(showsCity(cache, city)) << "step " << step;
    }
}
