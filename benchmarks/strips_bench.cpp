#include <benchmark/benchmark.h>

#ifdef VEX_BENCH_MESHOPTIMIZER
#include <meshoptimizer.h>
#endif

#include <algorithm>
#include <random>

#include "benchmarks/figure.h"
#include "engine/strips.h"
#include "production/geometry/forms.h"

// Splitting meshes into fans and strips, against the size of the mesh and against another splitter.

namespace vex {

using namespace geometry;
namespace {

// A sphere of that many faces, but for the poles; its faces in the order of modelling, or in none.
void makeSphere(Mesh& mesh, int faceCount, bool shuffled) {
  const int around = faceCount == 2000 ? 40 : 125;
  const Surface surface = sphere(1.0f, around, faceCount / 2 / around + 1);
  for (const Vector& point : surface.points) mesh.vertices.push_back({.position = point, .normal = point});
  for (const Triangle& triangle : surface.triangles) {
    Face face;
    std::copy(triangle.points.begin(), triangle.points.end(), face.v.begin());
    mesh.faces.push_back(face);
  }
  if (shuffled) std::shuffle(mesh.faces.begin(), mesh.faces.end(), std::minstd_rand(1));
}

std::size_t vertexCount(const Mesh& mesh) {
  std::size_t count = mesh.solos.size();
  for (const auto* lists : {&mesh.fans, &mesh.strips}) {
    for (const StripList& list : *lists) count += list.vertices.size();
  }
  return count;
}

void splitIntoStrips(benchmark::State& state) {
  Mesh mesh;
  makeSphere(mesh, static_cast<int>(state.range(0)), state.range(1) != 0);
  for (auto _ : state) stripify(mesh);
  state.counters["faces"] = static_cast<double>(mesh.faces.size());
  state.counters["vertices"] = static_cast<double>(vertexCount(mesh));
}
BENCHMARK(splitIntoStrips)->ArgsProduct({{2000, 20000}, {0, 1}})->Unit(benchmark::kMicrosecond);

const bool added[] = {
    addFigure({.name = "strips_20000_vs_2000",
               .unit = "ratio",
               .peer = "a tenth of the faces, in the order of modelling",
               .limit = 12,
               .value =
                   [](const Measurements& m) {
                     return m.cpu("splitIntoStrips/20000/0") / m.cpu("splitIntoStrips/2000/0");
                   }}),
    // The caches take their share, and the processor learns the jumps of the short mesh by heart.
    addFigure({.name = "strips_20000_vs_2000_shuffled",
               .unit = "ratio",
               .peer = "the same in no order",
               .limit = {},
               .value = [](const Measurements& m) {
                 return m.cpu("splitIntoStrips/20000/1") / m.cpu("splitIntoStrips/2000/1");
               }})};

#ifdef VEX_BENCH_MESHOPTIMIZER

// In the order that it is meant for, with a mark between strips, which is not counted.
void splitByMeshoptimizer(benchmark::State& state) {
  Mesh mesh;
  makeSphere(mesh, 20000, false);
  mesh.buildArrays();
  constexpr std::uint32_t mark = ~0u;
  std::vector<std::uint32_t> ordered(mesh.indices.size());
  std::vector<std::uint32_t> strips(meshopt_stripifyBound(mesh.indices.size()));
  std::size_t size = 0;
  for (auto _ : state) {
    meshopt_optimizeVertexCacheStrip(ordered.data(), mesh.indices.data(), mesh.indices.size(),
                                     mesh.vertices.size());
    size = meshopt_stripify(strips.data(), ordered.data(), ordered.size(), mesh.vertices.size(), mark);
  }
  const auto marks = std::count(strips.begin(), strips.begin() + static_cast<std::ptrdiff_t>(size), mark);
  state.counters["vertices"] = static_cast<double>(size) - static_cast<double>(marks);
}
BENCHMARK(splitByMeshoptimizer)->Unit(benchmark::kMicrosecond);

const bool compared = addFigure({.name = "strips_vertices_vs_meshoptimizer",
                                 .unit = "ratio",
                                 .peer = "meshopt_stripify on 20 000 faces of a sphere",
                                 .limit = {},
                                 .value = [](const Measurements& m) {
                                   return m.counter("splitIntoStrips/20000/0", "vertices") /
                                          m.counter("splitByMeshoptimizer", "vertices");
                                 }});

#endif

}  // namespace
}  // namespace vex
