#include "view/models/bus_stop.h"

#include "view/models/building_parts.h"

void addBusStop(MeshBuilder& builder) {
    addPlainBox(builder, {0.0f, 0.0f, 0.0f}, {2.4f, 0.25f, 1.2f}, {0.50f, 0.52f, 0.56f}); // kerb slab
    addBox(builder, {0.0f, 2.4f, 0.0f}, {2.4f, 2.8f, 1.2f}, {0.28f, 0.44f, 0.60f}, MATERIAL_ROOF, 0.0f);
    addBox(builder, {0.05f, 0.25f, 0.0f}, {2.35f, 2.4f, 0.05f}, {0.60f, 0.78f, 0.90f}, MATERIAL_GLASS, 0.5f);
    addBench(builder, {1.2f, 0.25f, 0.6f});
    addPost(builder, {1.9f, 0.0f, 1.3f}, 3.4f, 0.1f, {0.35f, 0.36f, 0.40f});
    addQuad(builder, {1.5f, 3.4f, 1.3f}, {2.3f, 3.4f, 1.3f}, {2.3f, 3.8f, 1.3f}, {1.5f, 3.8f, 1.3f},
            {0.0f, 0.0f, 1.0f}, {0.96f, 0.78f, 0.20f}, 0.6f, MATERIAL_PLAIN);
}
