// fingerprints SCRIPT...: one hash for each thing that must be the same on every system, of the city that
// each script leaves and of what needs no city. Two systems are held against each other by comparing what
// they print.
#include "city_script.h"
#include "maintenance/sha256.h"
#include "sim/map_generation.h"
#include "sim/save_file.h"
#include "ui/logo/logo.h"
#include "view/models/building_look.h"
#include "view/picture/sky.h"
#include "view/street/street_life_mesh.h"
#include "view/world/road_mesh.h"
#include "view/world/terrain.h"
#include "view/world/trees.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>

static void print(const std::string& name, const std::string& bytes) {
    std::printf("%s: %zu bytes, %s\n", name.c_str(), bytes.size(), sha256Text(bytes).c_str());
}

template<typename Record> static std::string bytesOf(const std::vector<Record>& records) {
    return {reinterpret_cast<const char*>(records.data()), records.size() * sizeof(Record)};
}

// Hashes what was built, and empties the builder for the next.
static void printMesh(const std::string& name, MeshBuilder& builder) {
    print(name, bytesOf(builder));
    builder.clear();
}

static void printMeshes(const std::string& name, const City& city) {
    MeshBuilder builder;
    for (int overlay = 0; overlay < OVERLAY_COUNT; overlay++) {
        const std::string suffix = " under overlay " + std::to_string(overlay);
        for (int chunk = 0; chunk < CHUNK_COUNT; chunk++) buildTerrainChunk(builder, city, overlay, chunk);
        printMesh(name + " land" + suffix, builder);
        buildRoadMesh(builder, city, overlay);
        printMesh(name + " roads" + suffix, builder);
    }
    buildTreeMesh(builder, city);
    printMesh(name + " trees", builder);
    std::vector<BuildingLook> looks;
    collectBuildingLooks(looks, city);
    for (const BuildingLook& look : looks) addBuildingLook(builder, look);
    printMesh(name + " buildings", builder);

    StreetLife streetLife;
    for (int step = 0; step < 300; step++) updateStreetLife(streetLife, city, 0.1f, city.population);
    buildStreetLifeMesh(builder, city, streetLife);
    printMesh(name + " vehicles", builder);
}

static bool printCity(const std::string& path) {
    City city;
    generateMap(city, 0);
    std::ifstream script(path, std::ios::binary);
    std::ostringstream out;
    const std::string name = std::filesystem::path(path).filename().string();
    if (runScript(city, name, script, out, std::cerr) != 0) return false;
    print(name + " answers", out.str());
    print(name + " save", bytesOf(encodeCity(city)));
    printMeshes(name, city);
    return true;
}

static void printLogo() {
    for (const int size : {16, 64, 256}) {
        std::vector<uint8_t> pixels;
        paintLogo(size, pixels);
        print("logo " + std::to_string(size), bytesOf(pixels));
    }
}

static void printSky() {
    std::vector<SkyState> skies;
    for (int minute = 0; minute < 24 * 60; minute++)
        for (const int overcast : {0, 1})
            skies.push_back(computeSky(static_cast<float>(minute) / 60.0f, overcast));
    print("sky", bytesOf(skies));
}

int main(int argc, char** argv) {
    for (int i = 1; i < argc; i++)
        if (!printCity(argv[i])) return 1;
    printLogo();
    printSky();
    return 0;
}
