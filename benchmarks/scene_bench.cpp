#include <benchmark/benchmark.h>

#include <array>
#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <string>
#include <string_view>
#include <utility>

#include "benchmarks/figure.h"
#include "scenes/scene_tables.h"

// What each scene of the staged presentation costs the player itself, over the whole show: a program of its
// own measures it over a GL that does nothing.

namespace vex {
namespace {

namespace fs = std::filesystem;

constexpr const char* benchmarkName = "scenesOverNullGl/iterations:1";

void scenesOverNullGl(benchmark::State& state) {
  const fs::path bin = fs::read_symlink("/proc/self/exe").parent_path();
  const fs::path run = bin.parent_path() / "run";
  const std::string command = (bin / "scenes_null_gl").native() + " " + run.native();
  for (auto _ : state) {
    std::FILE* output = fs::exists(run / "vex.pak") ? popen(command.c_str(), "r") : nullptr;
    char scene[64];
    double mean = 0, high = 0;
    while (output && std::fscanf(output, "%63s %lf %lf", scene, &mean, &high) == 3) {
      state.counters[scene] = mean;
      state.counters[scene + std::string(".95%")] = high;
    }
    if (!output || pclose(output) != 0) state.SkipWithError("no run folder, or scenes_null_gl failed");
  }
}
BENCHMARK(scenesOverNullGl)->Iterations(1)->Repetitions(3)->UseRealTime()->Unit(benchmark::kMillisecond);

constexpr std::size_t sceneCount = 13;

template <std::size_t index>
double ownMilliseconds(const Measurements& m) {
  return m.counter(benchmarkName, sceneEntries()[index].name);
}

template <std::size_t... indices>
bool addScenes(std::index_sequence<indices...>) {
  constexpr std::array<double (*)(const Measurements&), sceneCount> values{ownMilliseconds<indices>...};
  bool added = sceneEntries().size() == sceneCount;
  for (std::size_t i = 0; added && i < sceneCount; ++i) {
    constexpr std::size_t prefix = std::string_view("Scene").size();
    added = addFigure({.name = std::string("scene_own_ms_") + (sceneEntries()[i].name + prefix),
                       .unit = "ms",
                       .peer = "a frame of the show, GL calls empty",
                       .limit = 0.5,
                       .value = values[i]});
  }
  return added;
}

const bool added = addScenes(std::make_index_sequence<sceneCount>());

}  // namespace
}  // namespace vex
