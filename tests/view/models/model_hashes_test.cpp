// No door, pipe or path of a model moves unseen. The tests beside this one say what a model must have; this
// one holds all the rest to the bit, by a hash of its vertices in model_hashes.txt.
#include "sim/building_kinds.h"
#include "sim/city_helpers.h"
#include "sim/map_generation.h"
#include "view/models/building_look.h"
#include "view/street/street_life_mesh.h"
#include "view/world/trees.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iomanip>
#include <sstream>

constexpr int PLACES = 24; // of each model: enough for every palette row and shape that the seed can choose

static const char* const KINDS[] = {
    "homes",  "shops", "offices",   "factory",   "police station", "fire station", "hospital",
    "school", "park",  "bus depot", "gas plant", "solar farm",     "wind turbine", "water pump"};
static_assert(std::size(KINDS) == KIND_COUNT);

// FNV-1a over the bytes.
static uint64_t hashOf(const MeshBuilder& mesh) {
    uint64_t hash = 14695981039346656037u;
    const auto* bytes = reinterpret_cast<const uint8_t*>(mesh.data());
    for (size_t i = 0; i < mesh.size() * sizeof(Vertex); i++) hash = (hash ^ bytes[i]) * 1099511628211u;
    return hash;
}

static void addLine(std::ostream& lines, const std::string& name, const MeshBuilder& mesh) {
    lines << name << ": " << mesh.size() << " vertices, " << std::hex << std::setw(16) << std::setfill('0')
          << hashOf(mesh) << std::dec << '\n';
}

// The look at places all over the map, one after another; a site grows on its way.
static MeshBuilder atManyPlaces(BuildingLook look, bool isSite = false) {
    MeshBuilder mesh;
    for (int i = 0; i < PLACES; i++) {
        look.x = static_cast<int16_t>(i * 37 % GRID_SIZE);
        look.y = static_cast<int16_t>(i * 53 % GRID_SIZE);
        look.ground = 10.0f + static_cast<float>(i);
        if (isSite) look.progress = static_cast<float>(i) / PLACES;
        addBuildingLook(mesh, look);
    }
    return mesh;
}

static void addBuildings(std::ostream& lines) {
    for (uint8_t kind = 0; kind < KIND_COUNT; kind++) {
        const uint8_t levels = isGrownKind(kind) ? 3 : 1;
        for (uint8_t level = 1; level <= levels; level++) {
            std::string name = KINDS[kind];
            if (levels > 1) name += " of level " + std::to_string(level);
            addLine(lines, name, atManyPlaces({.kind = kind, .level = level}));
            addLine(lines, "construction site of " + name,
                    atManyPlaces({.kind = kind, .level = level}, true));
        }
    }
    addLine(lines, "bus stop", atManyPlaces({.isBusStop = 1}));
}

static void addTrees(std::ostream& lines) {
    City city;
    generateMap(city, 1);
    const std::pair<const char*, int> seasons[] = {
        {"spring", 0}, {"summer", 100}, {"autumn", 200}, {"winter", 300}};
    for (const auto& [season, calendarDay] : seasons) {
        city.calendarDay = calendarDay;
        MeshBuilder mesh;
        buildTreeMesh(mesh, city);
        addLine(lines, std::string("trees in ") + season, mesh);
    }
}

static void addVehicles(std::ostream& lines) {
    for (const uint8_t isBus : {0, 1}) {
        StreetLife life;
        for (const CellStep& way : NEIGHBOURS)
            for (uint8_t colour = 0; colour < CAR_COLOUR_COUNT; colour++)
                life.vehicles.push_back({.toX = static_cast<int16_t>(30 + way.x),
                                         .toY = static_cast<int16_t>(40 + way.y),
                                         .fromX = 30,
                                         .fromY = 40,
                                         .t = static_cast<float>(colour) / 7.0f,
                                         .isBus = isBus,
                                         .colourIndex = colour,
                                         .lane = static_cast<int8_t>(colour % 2 ? 1 : -1)});
        MeshBuilder mesh;
        buildStreetLifeMesh(mesh, flatCity(), life);
        addLine(lines, isBus ? "buses" : "cars", mesh);
    }
}

TEST(ModelHashes, EveryModelIsTheOneThatWasLookedAt) {
    std::stringstream seen;
    addBuildings(seen);
    addTrees(seen);
    addVehicles(seen);

    const std::string path = ORLAVANE_TESTS "/view/models/model_hashes.txt";
    if (std::getenv("RENEW_MODEL_HASHES") != nullptr) {
        std::ofstream(path) << seen.str();
        FAIL() << path << " is written anew: see in its difference that no other model has changed";
    }

    std::ifstream file(path);
    std::string held;
    std::string line;
    std::string changed;
    while (std::getline(seen, line))
        if (!std::getline(file, held) || line != held) changed += line + '\n';
    EXPECT_EQ(changed, "") << R"(
Draw all models before and after the change, and look:
    SDL_VIDEODRIVER=offscreen build/release/bin/model-sheet sheet.bmp 10.5
When all are as they should be:
    RENEW_MODEL_HASHES=1 build/release/bin/view_tests --gtest_filter='ModelHashes.*')";
    EXPECT_FALSE(std::getline(file, held)) << "the table ends with its last model: " << held;
}
