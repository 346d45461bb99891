#include "view/world/terrain.h"

#include "sim/calendar.h"
#include "view/gl/fingerprint.h"

#include <algorithm>
#include <bit>
#include <cassert>

constexpr int CHUNK_VERTICES = CHUNK_SIZE * CHUNK_SIZE * 6;
constexpr int CORNER_ROW = CHUNK_SIZE + 1; // corners along a side of a chunk
constexpr int COLOUR_ROW = CHUNK_SIZE + 2; // its cells and their neighbours: all that its corners touch

// By season, from spring to winter.
constexpr Vec3 GRASS_COLOURS[] = {
    {0.46f, 0.70f, 0.30f}, {0.38f, 0.58f, 0.28f}, {0.62f, 0.50f, 0.22f}, {0.80f, 0.84f, 0.84f}};
constexpr Vec3 WOODLAND_COLOURS[] = {
    {0.27f, 0.48f, 0.22f}, {0.23f, 0.40f, 0.19f}, {0.48f, 0.38f, 0.16f}, {0.62f, 0.66f, 0.66f}};
constexpr Vec3 ROCK_COLOUR = {0.47f, 0.45f, 0.43f};
constexpr Vec3 WATER_BED_COLOUR = {0.17f, 0.28f, 0.32f};
constexpr Vec3 SAND_COLOUR = {0.80f, 0.74f, 0.52f};

// Residential, commercial, offices, industrial.
constexpr Vec3 ZONE_COLOURS[] = {
    {0.46f, 0.74f, 0.38f}, {0.42f, 0.56f, 0.92f}, {0.52f, 0.72f, 0.84f}, {0.88f, 0.74f, 0.30f}};
constexpr float ZONE_TINT = 0.38f;

// Of districts 1 to 8.
constexpr Vec3 DISTRICT_COLOURS[] = {{0.95f, 0.45f, 0.45f}, {0.45f, 0.70f, 0.95f}, {0.95f, 0.80f, 0.35f},
                                     {0.60f, 0.90f, 0.55f}, {0.80f, 0.55f, 0.95f}, {0.40f, 0.85f, 0.85f},
                                     {0.95f, 0.60f, 0.80f}, {0.70f, 0.70f, 0.45f}};
constexpr float DISTRICT_TINT = 0.4f;
static_assert(std::size(DISTRICT_COLOURS) == DISTRICT_COUNT - 1);

// Under the traffic overlay the ground steps back, so that the colours of the roads stand out.
constexpr Vec3 TRAFFIC_GROUND = {0.20f, 0.22f, 0.24f};
constexpr float TRAFFIC_TINT = 0.55f;

struct OverlayRamp {
    Grid City::*field;
    float scale;
    Vec3 low;  // at 0 and below
    Vec3 high; // at 1 and above
};

// Of OVERLAY_POWER to OVERLAY_HAPPY.
constexpr OverlayRamp OVERLAY_RAMPS[] = {
    {&City::powerField, 1.0f, {0.15f, 0.16f, 0.18f}, {0.98f, 0.84f, 0.22f}},
    {&City::waterField, 1.0f, {0.15f, 0.16f, 0.18f}, {0.20f, 0.62f, 1.00f}},
    {&City::pollution, 1.5f, {0.50f, 0.66f, 0.40f}, {0.36f, 0.22f, 0.10f}},
    {&City::landValue, 1.0f, {0.80f, 0.27f, 0.22f}, {0.26f, 0.74f, 0.38f}}};
static_assert(std::size(OVERLAY_RAMPS) == OVERLAY_COUNT - OVERLAY_POWER);

struct GroundCorner {
    Vec3 position;
    Vec3 normal;
    Vec3 colour;
};

// A cell touches up to four corners and a corner up to four cells: what they share is worked out once.
struct ChunkGround {
    int firstX; // cell
    int firstY;
    Vec3 cellColours[COLOUR_ROW][COLOUR_ROW]; // from the cell before the first; black off the map
    GroundCorner corners[CORNER_ROW][CORNER_ROW];
};

ChunkCells cellsOfChunk(int chunkIndex) {
    assert(chunkIndex >= 0 && chunkIndex < CHUNK_COUNT);
    const int x = chunkIndex % CHUNK_ROW * CHUNK_SIZE;
    const int y = chunkIndex / CHUNK_ROW * CHUNK_SIZE;
    return {std::max(x - 1, 0), std::max(y - 1, 0), std::min(x + CHUNK_SIZE + 1, GRID_SIZE),
            std::min(y + CHUNK_SIZE + 1, GRID_SIZE)};
}

Vec3 cornerPosition(const City& city, int cornerX, int cornerY, float lift) {
    assert(cornerX >= 0 && cornerX <= GRID_SIZE && cornerY >= 0 && cornerY <= GRID_SIZE);
    return {CELL_WIDTH * static_cast<float>(cornerX), city.heights[cornerIndex(cornerX, cornerY)] + lift,
            CELL_WIDTH * static_cast<float>(cornerY)};
}

Vec3 terrainNormal(const City& city, int cornerX, int cornerY) {
    assert(cornerX >= 0 && cornerX <= GRID_SIZE && cornerY >= 0 && cornerY <= GRID_SIZE);
    const int x0 = std::max(cornerX - 1, 0);
    const int x1 = std::min(cornerX + 1, GRID_SIZE);
    const int y0 = std::max(cornerY - 1, 0);
    const int y1 = std::min(cornerY + 1, GRID_SIZE);
    const std::vector<float>& heights = city.heights;
    const float dx = (heights[cornerIndex(x1, cornerY)] - heights[cornerIndex(x0, cornerY)]) /
                     (static_cast<float>(x1 - x0) * CELL_WIDTH);
    const float dz = (heights[cornerIndex(cornerX, y1)] - heights[cornerIndex(cornerX, y0)]) /
                     (static_cast<float>(y1 - y0) * CELL_WIDTH);
    return normalised({-dx, 1.0f, -dz});
}

static Vec3 groundColour(int terrain, Season season) {
    switch (terrain) {
    case TERRAIN_WOODLAND:
        return WOODLAND_COLOURS[season];
    case TERRAIN_ROCK:
        return ROCK_COLOUR;
    case TERRAIN_WATER:
        return WATER_BED_COLOUR;
    case TERRAIN_SAND:
        return SAND_COLOUR;
    default:
        return GRASS_COLOURS[season];
    }
}

// Null for an overlay whose ground is not the picture of a field.
static const OverlayRamp* overlayRamp(int overlayMode) {
    if (overlayMode < OVERLAY_POWER || overlayMode >= OVERLAY_COUNT) return nullptr;
    return &OVERLAY_RAMPS[overlayMode - OVERLAY_POWER];
}

// A value that is no number counts as low.
static Vec3 rampColour(const OverlayRamp& ramp, float value) {
    const float f = value * ramp.scale;
    if (f > 1.0f) return ramp.high;
    return f > 0.0f ? mix(ramp.low, ramp.high, f) : ramp.low;
}

// A zone or district that does not exist tints nothing.
static Vec3 tintedColour(Vec3 colour, const Cell& cell) {
    if (cell.zone >= ZONE_RESIDENTIAL && cell.zone <= ZONE_INDUSTRIAL)
        colour = mix(colour, ZONE_COLOURS[cell.zone - 1], ZONE_TINT);
    if (cell.district >= 1 && cell.district < DISTRICT_COUNT)
        colour = mix(colour, DISTRICT_COLOURS[cell.district - 1], DISTRICT_TINT);
    return colour;
}

static Vec3 cellColour(const City& city, int overlayMode, Season season, int x, int y) {
    const int index = cellIndex(x, y);
    if (const OverlayRamp* ramp = overlayRamp(overlayMode))
        return rampColour(*ramp, (city.*ramp->field)[index]);
    const Cell& cell = city.cells[index];
    // Otherwise a meadow would be one flat colour.
    const float j = (hash01(static_cast<uint32_t>(x), static_cast<uint32_t>(y), 11) - 0.5f) * 0.07f;
    const Vec3 colour = groundColour(cell.terrain, season) + Vec3{j, j, j * 0.5f};
    return overlayMode == OVERLAY_TRAFFIC ? mix(colour, TRAFFIC_GROUND, TRAFFIC_TINT)
                                          : tintedColour(colour, cell);
}

static void computeCellColours(ChunkGround& chunk, const City& city, int overlayMode) {
    const Season now = season(city);
    for (int row = 0; row < COLOUR_ROW; row++)
        for (int column = 0; column < COLOUR_ROW; column++) {
            const int x = chunk.firstX + column - 1;
            const int y = chunk.firstY + row - 1;
            if (inMap(x, y)) chunk.cellColours[row][column] = cellColour(city, overlayMode, now, x, y);
        }
}

// The mean of the cells that touch the corner, so that colours fade from cell to cell.
static Vec3 cornerColour(const ChunkGround& chunk, int column, int row) {
    Vec3 sum;
    int count = 0;
    for (int dy = -1; dy <= 0; dy++)
        for (int dx = -1; dx <= 0; dx++) {
            if (!inMap(chunk.firstX + column + dx, chunk.firstY + row + dy)) continue;
            sum = sum + chunk.cellColours[row + dy + 1][column + dx + 1];
            count++;
        }
    assert(count > 0); // every corner touches a cell of the map
    return sum * (1.0f / static_cast<float>(count));
}

static void computeCorners(ChunkGround& chunk, const City& city) {
    for (int row = 0; row < CORNER_ROW; row++)
        for (int column = 0; column < CORNER_ROW; column++) {
            const int x = chunk.firstX + column;
            const int y = chunk.firstY + row;
            chunk.corners[row][column] = {cornerPosition(city, x, y), terrainNormal(city, x, y),
                                          cornerColour(chunk, column, row)};
        }
}

static void addCorner(MeshBuilder& builder, const GroundCorner& corner, float u, float v) {
    addVertex(builder, corner.position, corner.normal, corner.colour, 0.0f, MATERIAL_TERRAIN, u, v);
}

// Split where roads and highlight are, otherwise roads would sink into one slope and float over the next.
static void addCell(MeshBuilder& builder, const ChunkGround& chunk, int column, int row) {
    const GroundCorner& a = chunk.corners[row][column];
    const GroundCorner& b = chunk.corners[row][column + 1];
    const GroundCorner& c = chunk.corners[row + 1][column + 1];
    const GroundCorner& d = chunk.corners[row + 1][column];
    addCorner(builder, a, 0.0f, 0.0f);
    addCorner(builder, b, 1.0f, 0.0f);
    addCorner(builder, c, 1.0f, 1.0f);
    addCorner(builder, a, 0.0f, 0.0f);
    addCorner(builder, c, 1.0f, 1.0f);
    addCorner(builder, d, 0.0f, 1.0f);
}

void buildTerrainChunk(MeshBuilder& builder, const City& city, int overlayMode, int chunkIndex) {
    assert(chunkIndex >= 0 && chunkIndex < CHUNK_COUNT);
    ChunkGround chunk;
    chunk.firstX = chunkIndex % CHUNK_ROW * CHUNK_SIZE;
    chunk.firstY = chunkIndex / CHUNK_ROW * CHUNK_SIZE;
    computeCellColours(chunk, city, overlayMode);
    computeCorners(chunk, city);

    builder.reserve(builder.size() + CHUNK_VERTICES);
    for (int row = 0; row < CHUNK_SIZE; row++)
        for (int column = 0; column < CHUNK_SIZE; column++) addCell(builder, chunk, column, row);
}

// All that cellColour reads besides place, season and overlay, otherwise a chunk would keep old colours.
static uint32_t colourSource(const City& city, int overlayMode, int x, int y) {
    const int index = cellIndex(x, y);
    if (const OverlayRamp* ramp = overlayRamp(overlayMode))
        return std::bit_cast<uint32_t>((city.*ramp->field)[index]);
    const Cell& cell = city.cells[index];
    if (overlayMode == OVERLAY_TRAFFIC) return cell.terrain;
    return cell.terrain | uint32_t{cell.zone} << 8 | uint32_t{cell.district} << 16;
}

// Takes in one corner more on each side too, since normals look that far.
static uint64_t chunkFingerprint(const City& city, int overlayMode, int chunkIndex) {
    const auto [x0, y0, x1, y1] = cellsOfChunk(chunkIndex);
    uint64_t fingerprint = mixFingerprint(FINGERPRINT_START, static_cast<uint32_t>(overlayMode));
    fingerprint = mixFingerprint(fingerprint, static_cast<uint32_t>(season(city)));
    for (int y = y0; y < y1; y++)
        for (int x = x0; x < x1; x++)
            fingerprint = mixFingerprint(fingerprint, colourSource(city, overlayMode, x, y));
    for (int y = y0; y <= y1; y++)
        for (int x = x0; x <= x1; x++)
            fingerprint = mixFingerprint(fingerprint, city.heights[cornerIndex(x, y)]);
    return fingerprint;
}

void buildTerrainChunk(WorldMeshes& meshes, const City& city, int chunkIndex) {
    Mesh& mesh = meshes.terrainChunks[chunkIndex];
    const uint64_t fingerprint = chunkFingerprint(city, meshes.overlayMode, chunkIndex);
    if (fingerprint == mesh.fingerprint) return;

    MeshBuilder builder;
    buildTerrainChunk(builder, city, meshes.overlayMode, chunkIndex);
    uploadMesh(mesh, builder, false);
    mesh.fingerprint = fingerprint;
}
