#include "view/building_mesh.h"

#include "sim/city_helpers.h"
#include "sim/map_generation.h"
#include "sim/networks.h"
#include "sim/save_file.h"
#include "view/fake_gl.h"
#include "view/model_helpers.h"

static size_t uploadCount(const FakeGl& fake) { return callsOf(fake, "BufferData").size(); }

static City village() {
    City city = flatCity();
    addBuilding(city, 20, 20, KIND_HOMES, 2);
    addBuilding(city, 21, 20, KIND_SCHOOL);
    addBuilding(city, 22, 20, KIND_SHOPS).progress = 0.5f;
    city.cells[cellIndex(20, 21)].busStop = 1;
    return city;
}

TEST(BuildingMeshUpload, TheFirstBuildUploadsTheWholeCity) {
    FakeGl fake;
    WorldMeshes meshes;
    const City city = village();
    buildBuildingMesh(meshes, city);
    MeshBuilder builder;
    buildBuildingMesh(builder, city);
    EXPECT_EQ(uploadCount(fake), 1u);
    EXPECT_EQ(meshes.buildingMesh.vertexCount, static_cast<int32_t>(builder.size()));
    EXPECT_TRUE(isSame(meshes.buildingCache.vertices, builder));
}

TEST(BuildingMeshUpload, ACityWithNothingInItStillMakesItsMesh) {
    FakeGl fake;
    WorldMeshes meshes;
    buildBuildingMesh(meshes, flatCity());
    EXPECT_NE(meshes.buildingMesh.vertexArray, 0u);
    EXPECT_EQ(meshes.buildingMesh.vertexCount, 0);
}

TEST(BuildingMeshUpload, NothingIsUploadedWhenNothingLooksDifferent) {
    FakeGl fake;
    WorldMeshes meshes;
    City city = village();
    buildBuildingMesh(meshes, city);
    fake.calls.clear();

    updateUtilities(city); // calls the buildings stale whatever it finds
    EXPECT_TRUE(city.buildingsDirty);
    buildBuildingMesh(meshes, city);
    EXPECT_TRUE(fake.calls.empty());
}

TEST(BuildingMeshUpload, AVisibleChangeIsUploadedOnce) {
    FakeGl fake;
    WorldMeshes meshes;
    City city = village();
    buildBuildingMesh(meshes, city);
    city.buildings[2].progress = 1.0f;
    buildBuildingMesh(meshes, city);
    buildBuildingMesh(meshes, city);
    EXPECT_EQ(uploadCount(fake), 2u);
}

TEST(BuildingMeshUpload, TheLastBuildingGoneLeavesAnEmptyMesh) {
    FakeGl fake;
    WorldMeshes meshes;
    buildBuildingMesh(meshes, village());
    buildBuildingMesh(meshes, flatCity());
    EXPECT_EQ(meshes.buildingMesh.vertexCount, 0);
    EXPECT_EQ(uploadCount(fake), 2u);
}

TEST(BuildingMeshUpload, ADestroyedMeshIsUploadedAnew) {
    FakeGl fake;
    WorldMeshes meshes;
    const City city = village();
    buildBuildingMesh(meshes, city);
    const int32_t vertexCount = meshes.buildingMesh.vertexCount;
    destroyMesh(meshes.buildingMesh);
    buildBuildingMesh(meshes, city);
    EXPECT_EQ(meshes.buildingMesh.vertexCount, vertexCount);
}

TEST(BuildingMeshUpload, TheSameMeshStandsAfterASaveAndALoad) {
    City city;
    generateMap(city, 7);
    for (int i = 0; i < 42; i++) {
        Building& building =
            addBuilding(city, 10 + i * 2, 30, static_cast<uint8_t>(i % KIND_COUNT), 1 + i % 3);
        if (i % 4 == 0) building.progress = 0.3f;
    }
    city.cells[cellIndex(50, 31)].road = ROAD_STREET;
    city.cells[cellIndex(50, 31)].busStop = 1;
    MeshBuilder before;
    buildBuildingMesh(before, city);

    const std::vector<uint8_t> save = encodeCity(city);
    City loaded;
    ASSERT_TRUE(decodeCity(loaded, save.data(), save.size()));
    MeshBuilder after;
    buildBuildingMesh(after, loaded);
    EXPECT_GT(before.size(), 10000u);
    EXPECT_TRUE(isSame(before, after));
}
