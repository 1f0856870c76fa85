#include <benchmark/benchmark.h>

#include <cstdio>
#include <filesystem>
#include <string>

#include "benchmarks/figure.h"

// What the player itself spends on a frame of 20 000 faces in 50 animated meshes; a program of its own
// measures it over a GL that does nothing.

namespace vex {
namespace {

void renderOverNullGl(benchmark::State& state) {
  const auto program = std::filesystem::read_symlink("/proc/self/exe").parent_path() / "render_null_gl";
  for (auto _ : state) {
    double milliseconds = 0, allocations = 0;
    std::FILE* output = popen(program.c_str(), "r");
    const int read = output ? std::fscanf(output, "%lf %lf", &milliseconds, &allocations) : 0;
    if (!output || pclose(output) != 0 || read != 2) state.SkipWithError("render_null_gl failed");
    state.counters["ms"] = milliseconds;
    state.counters["allocations"] = allocations;
  }
}
BENCHMARK(renderOverNullGl)->Iterations(1)->UseRealTime()->Unit(benchmark::kMillisecond);

const bool added[] = {addFigure({.name = "render_own_ms",
                                 .unit = "ms",
                                 .peer = "20 000 faces, 50 animated meshes, GL calls empty",
                                 .limit = 0.3,
                                 .value =
                                     [](const Measurements& m) {
                                       return m.counter("renderOverNullGl/iterations:1/real_time", "ms");
                                     }}),
                      addFigure({.name = "render_allocations",
                                 .unit = "per frame",
                                 .peer = "the same scene",
                                 .limit = 0,
                                 .value = [](const Measurements& m) {
                                   return m.counter("renderOverNullGl/iterations:1/real_time", "allocations");
                                 }})};

}  // namespace
}  // namespace vex
