#include "view/building_mesh_cache.h"

#include <algorithm>

// The old vertices of a place.
struct OldVertices {
    size_t lookIndex = 0;
    size_t first = 0;
    size_t count = 0; // 0 = none
};

// At most one bus stop and one building stand on a cell.
static size_t placeIndex(const BuildingLook& look) {
    const int cell = cellIndex(look.x, look.y);
    return static_cast<size_t>(look.isBusStop ? cell + CELL_COUNT : cell);
}

static std::vector<OldVertices> indexOldVertices(const BuildingMeshCache& cache) {
    std::vector<OldVertices> byPlace(2 * CELL_COUNT);
    size_t first = 0;
    for (size_t i = 0; i < cache.looks.size(); i++) {
        byPlace[placeIndex(cache.looks[i])] = {i, first, cache.vertexCounts[i]};
        first += cache.vertexCounts[i];
    }
    return byPlace;
}

// The vertices of one look on their way into the new mesh.
struct Piece {
    bool isKept = false; // comes from the old mesh, otherwise from the redrawn vertices
    size_t from = 0;
    size_t to = 0;
    size_t count = 0;
};

// Finds the vertices that can stay and draws all others. Kept pieces stay in the order of the old mesh.
static std::vector<Piece> collectPieces(MeshBuilder& redrawn, const BuildingMeshCache& cache) {
    const std::vector<OldVertices> oldVertices = indexOldVertices(cache);
    std::vector<Piece> pieces;
    size_t keptEnd = 0;
    size_t to = 0;
    for (const BuildingLook& look : cache.newLooks) {
        const OldVertices& old = oldVertices[placeIndex(look)];
        const bool isKept =
            old.count > 0 && old.first >= keptEnd && isSameLook(cache.looks[old.lookIndex], look);
        if (isKept) {
            pieces.push_back({true, old.first, to, old.count});
            keptEnd = old.first + old.count;
        } else {
            const size_t from = redrawn.size();
            addBuildingLook(redrawn, look);
            pieces.push_back({false, from, to, redrawn.size() - from});
        }
        to += pieces.back().count;
    }
    return pieces;
}

// Kept pieces that go left are moved from the left, those that go right from the right, so that none is
// written over before it has moved.
static void assembleMesh(MeshBuilder& vertices, MeshBuilder& redrawn, const std::vector<Piece>& pieces) {
    if (vertices.empty()) return vertices.swap(redrawn);

    const size_t newCount = pieces.empty() ? 0 : pieces.back().to + pieces.back().count;
    vertices.resize(std::max(vertices.size(), newCount));
    const auto begin = vertices.begin();
    for (const Piece& piece : pieces)
        if (piece.isKept && piece.to < piece.from)
            std::copy_n(begin + piece.from, piece.count, begin + piece.to);
    for (auto piece = pieces.rbegin(); piece != pieces.rend(); ++piece)
        if (piece->isKept && piece->to > piece->from)
            std::copy_backward(begin + piece->from, begin + piece->from + piece->count,
                               begin + piece->to + piece->count);
    for (const Piece& piece : pieces)
        if (!piece.isKept) std::copy_n(redrawn.begin() + piece.from, piece.count, begin + piece.to);
    vertices.resize(newCount);
}

bool updateBuildingMeshCache(BuildingMeshCache& cache, const City& city) {
    std::vector<BuildingLook>& looks = cache.newLooks;
    collectBuildingLooks(looks, city);
    if (std::equal(looks.begin(), looks.end(), cache.looks.begin(), cache.looks.end(), isSameLook))
        return false;

    MeshBuilder redrawn;
    const size_t surelyNew = looks.size() - std::min(looks.size(), cache.looks.size());
    redrawn.reserve(surelyNew * TYPICAL_VERTEX_COUNT);
    const std::vector<Piece> pieces = collectPieces(redrawn, cache);
    assembleMesh(cache.vertices, redrawn, pieces);

    cache.looks.swap(looks);
    looks.reserve(cache.looks.capacity()); // so that a day without visible change takes nothing from the heap
    cache.vertexCounts.clear();
    for (const Piece& piece : pieces) cache.vertexCounts.push_back(static_cast<uint32_t>(piece.count));
    return true;
}
