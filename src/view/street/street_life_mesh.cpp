#include "view/street/street_life_mesh.h"

#include <cassert>

constexpr float LANE_OFFSET = 1.9f; // world units from the road's middle
constexpr float RIDE_HEIGHT = 0.2f; // over the ground, from which the road is lifted nearly as far

// A box around a vehicle's middle; bottom and top are over the vehicle's place on the road.
struct BodyPiece {
    float halfLength;
    float halfWidth;
    float bottom;
    float top;
    Vec3 colour;
    int material;
    float emissive;
};

// Where the lamps of a vehicle sit: the headlamps `along` before its middle, the tail lamps as far behind it.
struct LampPlaces {
    float along;
    float side;
    float height;
};

constexpr BodyPiece BUS_PIECES[] = {{2.4f, 1.25f, 0.85f, 3.05f, {0.96f, 0.74f, 0.16f}, MATERIAL_PLAIN, 0.0f},
                                    {2.25f, 1.28f, 1.45f, 2.45f, {0.55f, 0.70f, 0.82f}, MATERIAL_GLASS, 0.0f},
                                    {2.3f, 1.2f, 3.05f, 3.18f, {0.90f, 0.90f, 0.94f}, MATERIAL_PLAIN, 0.0f}};
constexpr LampPlaces BUS_LAMPS = {2.42f, 0.8f, 0.7f};

constexpr BodyPiece CAR_BODY = {1.35f, 0.62f, 0.25f, 0.90f, {}, MATERIAL_PLAIN, 0.0f};
constexpr BodyPiece CAR_CABIN = {0.74f, 0.56f, 0.90f, 1.38f, {0.20f, 0.24f, 0.30f}, MATERIAL_GLASS, 0.0f};
constexpr LampPlaces CAR_LAMPS = {1.36f, 0.42f, 0.52f};

constexpr Vec3 CAR_COLOURS[CAR_COLOUR_COUNT] = {
    {0.85f, 0.15f, 0.13f}, {0.92f, 0.92f, 0.94f}, {0.12f, 0.14f, 0.18f}, {0.20f, 0.42f, 0.78f},
    {0.55f, 0.56f, 0.60f}, {0.95f, 0.78f, 0.15f}, {0.25f, 0.62f, 0.35f}};

constexpr BodyPiece HEADLAMP = {0.08f, 0.28f, -0.12f, 0.12f, {1.0f, 0.96f, 0.78f}, MATERIAL_PLAIN, 1.0f};
constexpr BodyPiece TAIL_LAMP = {0.08f, 0.28f, -0.12f, 0.12f, {0.95f, 0.10f, 0.08f}, MATERIAL_PLAIN, 0.8f};

// A place and a heading, level on every slope.
struct Pose {
    Vec3 base;
    Vec3 direction; // unit length
    Vec3 side;      // unit length, at right angles to it
};

// A box along the pose's direction. It has no floor: nobody looks at a vehicle from below.
static void addOrientedBox(MeshBuilder& builder, const Pose& pose, const BodyPiece& piece) {
    assert(piece.halfLength > 0.0f && piece.halfWidth > 0.0f && piece.bottom < piece.top);
    const Vec3 low = pose.base + Vec3{0.0f, piece.bottom, 0.0f};
    const Vec3 up = {0.0f, piece.top - piece.bottom, 0.0f};
    const Vec3 ahead = pose.direction * piece.halfLength;
    const Vec3 aside = pose.side * piece.halfWidth;
    const Vec3 a = low + ahead + aside;
    const Vec3 b = low + ahead - aside;
    const Vec3 c = low - ahead - aside;
    const Vec3 d = low - ahead + aside;
    const auto addFace = [&](const Vec3& p, const Vec3& q, const Vec3& r, const Vec3& s, const Vec3& normal) {
        addQuad(builder, p, q, r, s, normal, piece.colour, piece.emissive, piece.material);
    };
    addFace(a, b, b + up, a + up, pose.direction);
    addFace(c, d, d + up, c + up, pose.direction * -1.0f);
    addFace(d, a, a + up, d + up, pose.side);
    addFace(b, c, c + up, b + up, pose.side * -1.0f);
    addFace(a + up, b + up, c + up, d + up, {0.0f, 1.0f, 0.0f});
}

static void addLamp(MeshBuilder& builder, const Pose& pose, float along, float side, float height,
                    const BodyPiece& lamp) {
    const Vec3 place = pose.base + pose.direction * along + pose.side * side + Vec3{0.0f, height, 0.0f};
    addOrientedBox(builder, {place, pose.direction, pose.side}, lamp);
}

static void addLamps(MeshBuilder& builder, const Pose& pose, const LampPlaces& lamps) {
    addLamp(builder, pose, lamps.along, lamps.side, lamps.height, HEADLAMP);
    addLamp(builder, pose, lamps.along, -lamps.side, lamps.height, HEADLAMP);
    addLamp(builder, pose, -lamps.along, lamps.side, lamps.height, TAIL_LAMP);
    addLamp(builder, pose, -lamps.along, -lamps.side, lamps.height, TAIL_LAMP);
}

static void addBus(MeshBuilder& builder, const Pose& pose) {
    for (const BodyPiece& piece : BUS_PIECES) addOrientedBox(builder, pose, piece);
    addLamps(builder, pose, BUS_LAMPS);
}

static void addCar(MeshBuilder& builder, const Pose& pose, int colourIndex) {
    BodyPiece body = CAR_BODY;
    body.colour = CAR_COLOURS[colourIndex % CAR_COLOUR_COUNT];
    addOrientedBox(builder, pose, body);
    addOrientedBox(builder, pose, CAR_CABIN);
    addLamps(builder, pose, CAR_LAMPS);
}

static Vec3 cellCentre(int x, int y) {
    return {(static_cast<float>(x) + 0.5f) * CELL_WIDTH, 0.0f, (static_cast<float>(y) + 0.5f) * CELL_WIDTH};
}

static Pose vehiclePose(const City& city, const Vehicle& vehicle) {
    assert(vehicle.t >= 0.0f && vehicle.t < 1.0f && (vehicle.lane == 1 || vehicle.lane == -1));
    const Vec3 from = cellCentre(vehicle.fromX, vehicle.fromY);
    const Vec3 way = cellCentre(vehicle.toX, vehicle.toY) - from;
    Pose pose;
    pose.direction = length(way) < 0.001f ? Vec3{1.0f, 0.0f, 0.0f} : normalised(way);
    pose.side = {-pose.direction.z, 0.0f, pose.direction.x};
    pose.base = from + way * vehicle.t + pose.side * (LANE_OFFSET * static_cast<float>(vehicle.lane));
    pose.base.y = heightAt(city, pose.base.x, pose.base.z) + RIDE_HEIGHT;
    return pose;
}

void buildStreetLifeMesh(MeshBuilder& builder, const City& city, const StreetLife& streetLife) {
    for (const Vehicle& vehicle : streetLife.vehicles) {
        if (vehicle.dead) continue;
        const Pose pose = vehiclePose(city, vehicle);
        if (vehicle.isBus)
            addBus(builder, pose);
        else
            addCar(builder, pose, vehicle.colourIndex);
    }
}

void buildStreetLifeMesh(WorldMeshes& meshes, const City& city, const StreetLife& streetLife) {
    meshes.streetLifeBuilder.clear();
    buildStreetLifeMesh(meshes.streetLifeBuilder, city, streetLife);
    uploadMesh(meshes.streetLifeMesh, meshes.streetLifeBuilder, true);
}
