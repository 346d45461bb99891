// model-sheet FILE.bmp HOUR [TILE]: draws every building model alone, and all of them together, into one
// picture, through the game's own renderer. The pictures in docs/pictures are made by
//   SDL_VIDEODRIVER=offscreen build/release/bin/model-sheet day.bmp 10.5
//   SDL_VIDEODRIVER=offscreen build/release/bin/model-sheet night.bmp 22
//   convert day.bmp +dither -colors 128 PNG8:docs/pictures/models-day.png
//   convert night.bmp +dither -colors 128 PNG8:docs/pictures/models-night.png
#include "sheet_window.h"
#include "view/gl/gl.h"
#include "view/models/building_look.h"
#include "view/picture/camera.h"
#include "view/picture/renderer.h"
#include "view/world/building_mesh.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

constexpr float SHEET_GROUND = 10.0f;
constexpr int COLUMNS = 12;      // tiles
constexpr int TOGETHER_ROWS = 3; // height of the view of all models, in tiles

struct Sheet {
    Renderer renderer;
    WorldMeshes meshes;
    std::vector<uint8_t> pixels; // RGB, top row first
    int tile = 160;              // pixels
    int width = 0;
    int height = 0;
    float hour = 12.0f;
};

struct SheetTile {
    BuildingLook look;
    float height; // of the model, for the camera
};

// --- What is drawn

static BuildingLook makeLook(int x, int y, int kind, int level, float progress = 1.0f) {
    BuildingLook look;
    look.ground = SHEET_GROUND;
    look.progress = progress;
    look.x = static_cast<int16_t>(x);
    look.y = static_cast<int16_t>(y);
    look.kind = static_cast<uint8_t>(kind);
    look.level = static_cast<uint8_t>(level);
    return look;
}

static BuildingLook makeBusStop(int x, int y) {
    BuildingLook look = makeLook(x, y, 0, 0);
    look.isBusStop = 1;
    return look;
}

// The grown kinds by level, a row for each of three seeds.
static void addGrownTiles(std::vector<SheetTile>& tiles) {
    constexpr float heights[4][3] = {{8, 12, 27}, {7, 14, 16}, {22, 42, 78}, {26, 28, 34}};
    for (const int seedX : {31, 46, 57})
        for (int kind = KIND_HOMES; kind <= KIND_FACTORY; kind++)
            for (int level = 1; level <= 3; level++)
                tiles.push_back({makeLook(seedX, 48, kind, level), heights[kind][level - 1]});
}

static void addFixedTiles(std::vector<SheetTile>& tiles) {
    constexpr float heights[] = {12, 15, 12, 18, 7, 6, 25, 5, 38, 14};
    for (int kind = KIND_POLICE_STATION; kind < KIND_COUNT; kind++)
        tiles.push_back({makeLook(48, 48, kind, 1), heights[kind - KIND_POLICE_STATION]});
    tiles.push_back({makeBusStop(48, 48), 4});
    tiles.push_back({makeLook(57, 48, KIND_PARK, 1), 7});
}

static void addSiteTiles(std::vector<SheetTile>& tiles) {
    const BuildingLook sites[4] = {makeLook(48, 48, KIND_HOMES, 1), makeLook(48, 48, KIND_POLICE_STATION, 1),
                                   makeLook(48, 48, KIND_HOMES, 3), makeLook(48, 48, KIND_OFFICE_TOWER, 3)};
    constexpr float heights[4] = {16, 26, 35, 88};
    for (int i = 0; i < 4; i++)
        for (const float progress : {0.0f, 0.3f, 0.9f}) {
            SheetTile tile = {sites[i], heights[i]};
            tile.look.progress = progress;
            tiles.push_back(tile);
        }
}

// The town of the lowest picture: blocks of six by two cells between its streets.
constexpr int TOWN_LEFT = 26;
constexpr int TOWN_RIGHT = 70;
constexpr int TOWN_TOP = 27;
constexpr int TOWN_BOTTOM = 60;

static bool isTownStreet(int x, int y) { return y % 3 == 0 || x % 7 == 0; }

static float townChance(int x, int y, uint32_t salt) {
    return hash01(static_cast<uint32_t>(x), static_cast<uint32_t>(y), salt);
}

static BuildingLook makeTownBuilding(int x, int y, int& fixedCount) {
    const float chance = townChance(x, y, 78);
    if (chance < 0.14f)
        return makeLook(x, y, KIND_POLICE_STATION + fixedCount++ % (KIND_COUNT - KIND_POLICE_STATION), 1);

    constexpr int kinds[8] = {KIND_HOMES, KIND_HOMES, KIND_HOMES,   KIND_HOMES,
                              KIND_SHOPS, KIND_SHOPS, KIND_FACTORY, KIND_OFFICE_TOWER};
    const float fortune = townChance(x, y, 79);
    const int level = 1 + static_cast<int>(fortune * fortune * 2.999f);
    const float progress = chance > 0.94f ? fortune : 1.0f;
    return makeLook(x, y, kinds[static_cast<int>(townChance(x, y, 80) * 7.999f)], level, progress);
}

static std::vector<BuildingLook> makeTown() {
    std::vector<BuildingLook> town;
    int fixedCount = 0;
    for (int y = TOWN_TOP; y <= TOWN_BOTTOM; y++)
        for (int x = TOWN_LEFT; x <= TOWN_RIGHT; x++) {
            if (!isTownStreet(x, y))
                town.push_back(makeTownBuilding(x, y, fixedCount));
            else if (townChance(x, y, 77) < 0.05f)
                town.push_back(makeBusStop(x, y));
        }
    return town;
}

// --- How it is drawn

static void addGround(MeshBuilder& builder, const Vec3& centre, bool withStreets) {
    constexpr float reach = 700.0f;
    addFlatQuad(builder, centre.x - reach, centre.x + reach, centre.z - reach, centre.z + reach, SHEET_GROUND,
                {0.30f, 0.46f, 0.22f}, MATERIAL_PLAIN);
    if (!withStreets) return;
    for (int y = TOWN_TOP; y <= TOWN_BOTTOM; y++)
        for (int x = TOWN_LEFT; x <= TOWN_RIGHT; x++) {
            if (!isTownStreet(x, y)) continue;
            const float cornerX = static_cast<float>(x) * CELL_WIDTH;
            const float cornerZ = static_cast<float>(y) * CELL_WIDTH;
            addFlatQuad(builder, cornerX, cornerX + CELL_WIDTH, cornerZ, cornerZ + CELL_WIDTH,
                        SHEET_GROUND + 0.18f, {0.25f, 0.25f, 0.27f}, MATERIAL_ROAD);
        }
}

static FrameParams lookAtModel(const Sheet& sheet, int width, int height, const Vec3& target, float distance,
                               float yaw, float pitch) {
    FrameParams params;
    const Vec3 direction = {std::sin(yaw) * std::cos(pitch), std::sin(pitch),
                            std::cos(yaw) * std::cos(pitch)};
    const float aspect = static_cast<float>(width) / static_cast<float>(height);
    params.width = width;
    params.height = height;
    params.cameraTarget = target;
    params.cameraPos = target + direction * distance;
    params.viewProj = multiply(perspective(CAMERA_FOCAL, aspect, CAMERA_NEAR, CAMERA_FAR),
                               lookAt(params.cameraPos, target, {0.0f, 1.0f, 0.0f}));
    params.hour = sheet.hour;
    params.shadowSize = 2048;
    return params;
}

static void drawInto(Sheet& sheet, const std::vector<BuildingLook>& looks, const FrameParams& params,
                     int left, int top, bool withStreets) {
    MeshBuilder ground;
    addGround(ground, params.cameraTarget, withStreets);
    uploadMesh(sheet.meshes.terrainChunks[0], ground, false);
    MeshBuilder buildings;
    for (const BuildingLook& look : looks) addBuildingLook(buildings, look);
    uploadMesh(sheet.meshes.buildingBlocks[0], buildings, false);
    renderFrame(sheet.renderer, params, sheet.meshes);

    std::vector<uint8_t> picture(static_cast<size_t>(params.width) * params.height * 3);
    gl.PixelStorei(GL_PACK_ALIGNMENT, 1);
    gl.ReadPixels(0, 0, params.width, params.height, GL_RGB, GL_UNSIGNED_BYTE, picture.data());
    for (int y = 0; y < params.height; y++) {
        const uint8_t* from = &picture[static_cast<size_t>(params.height - 1 - y) * params.width * 3];
        uint8_t* to = &sheet.pixels[(static_cast<size_t>(top + y) * sheet.width + left) * 3];
        std::memcpy(to, from, static_cast<size_t>(params.width) * 3);
    }
}

static void drawTile(Sheet& sheet, const SheetTile& tile, size_t index) {
    const int column = static_cast<int>(index) % COLUMNS;
    const int row = static_cast<int>(index) / COLUMNS;
    const float middle = tile.look.isBusStop ? 2.2f : CELL_WIDTH / 2.0f;
    const Vec3 target = {static_cast<float>(tile.look.x) * CELL_WIDTH + middle,
                         SHEET_GROUND + 0.42f * tile.height,
                         static_cast<float>(tile.look.y) * CELL_WIDTH + middle};
    const float distance = tile.look.isBusStop ? 9.0f : std::max(17.0f, 9.0f + 1.25f * tile.height);
    drawInto(sheet, {tile.look}, lookAtModel(sheet, sheet.tile, sheet.tile, target, distance, 0.5f, 0.6f),
             column * sheet.tile, row * sheet.tile, false);
}

static void drawSheet(Sheet& sheet) {
    std::vector<SheetTile> tiles;
    addGrownTiles(tiles);
    addFixedTiles(tiles);
    addSiteTiles(tiles);
    const int tileRows = static_cast<int>(tiles.size()) / COLUMNS;
    sheet.width = COLUMNS * sheet.tile;
    sheet.height = (tileRows + TOGETHER_ROWS) * sheet.tile;
    sheet.pixels.resize(static_cast<size_t>(sheet.width) * sheet.height * 3);

    for (size_t i = 0; i < tiles.size(); i++) drawTile(sheet, tiles[i], i);
    drawInto(sheet, makeTown(),
             lookAtModel(sheet, sheet.width, TOGETHER_ROWS * sheet.tile, {386.0f, SHEET_GROUND, 386.0f},
                         140.0f, 0.5f, 0.8f),
             0, tileRows * sheet.tile, true);
}

// --- The program

int main(int argc, char** argv) {
    Sheet sheet;
    if (argc >= 3) sheet.hour = static_cast<float>(std::atof(argv[2]));
    if (argc >= 4) sheet.tile = std::clamp(std::atoi(argv[3]), 16, 640);
    if (argc < 3) {
        std::fprintf(stderr, "usage: model-sheet FILE.bmp HOUR [TILE]\n");
        return 1;
    }

    std::string log;
    if (!openSheetWindow("model-sheet", COLUMNS * sheet.tile, TOGETHER_ROWS * sheet.tile) ||
        !initRenderer(sheet.renderer, &log)) {
        std::fprintf(stderr, "model-sheet: no picture: %s %s\n", SDL_GetError(), log.c_str());
        return 1;
    }
    drawSheet(sheet);
    if (!saveSheet(sheet.pixels, sheet.width, sheet.height, argv[1])) {
        std::fprintf(stderr, "model-sheet: %s: %s\n", argv[1], SDL_GetError());
        return 1;
    }
    SDL_Quit();
    return 0;
}
