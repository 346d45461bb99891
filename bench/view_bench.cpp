// What the processor does for one picture.
#include "silent_gl.h"
#include "view/picture/renderer.h"
#include "view/picture/sky.h"

#include <benchmark/benchmark.h>

// A frame of a whole city: every mesh is there to be drawn.
static void benchRenderFrame(benchmark::State& state) {
    openGraphics();
    Renderer renderer;
    FrameParams params;
    params.viewProj = perspective(2.4f, 1.6f, 2.0f, 4000.0f);
    params.cameraTarget = {384.0f, 10.0f, 384.0f};
    params.shadowSize = static_cast<int>(state.range(0));
    renderer.shadowSize = params.shadowSize;
    renderer.shadowFramebuffer = 1;
    WorldMeshes meshes;
    const Mesh filled = {1, 1, 1536, 86016};
    meshes.terrainChunks.fill(filled);
    meshes.buildingBlocks.fill(filled);
    meshes.roadMesh = meshes.treeMesh = filled;
    meshes.waterMesh = meshes.hoverMesh = meshes.streetLifeMesh = filled;
    for (auto _ : state) {
        renderFrame(renderer, params, meshes);
        benchmark::DoNotOptimize(renderer.lightViewProj);
    }
}
BENCHMARK(benchRenderFrame)->Arg(0)->Arg(2048)->ArgName("shadowSize");

static void benchComputeSky(benchmark::State& state) {
    float hour = 0.0f;
    for (auto _ : state) {
        benchmark::DoNotOptimize(computeSky(hour, 1));
        hour = hour < 23.9f ? hour + 0.1f : 0.0f;
    }
}
BENCHMARK(benchComputeSky);
