#include <benchmark/benchmark.h>
#include <gsl/gsl_spline.h>
#include <unistd.h>

#include <cstdio>
#include <memory>
#include <string>

#include "benchmarks/allocation_count.h"
#include "benchmarks/figure.h"
#include "engine/spline.h"
#include "tests/support/project_builder.h"
#include "timeline/part_dispatcher.h"
#include "timeline/scene_function.h"

namespace vex {

namespace {

const std::vector<std::pair<double, double>> dots = {{0.0, 1.0}, {0.1, 4.0}, {0.25, -2.0}, {0.4, 3.0},
                                                     {0.5, 3.5}, {0.7, 0.0}, {0.85, 9.0},  {1.0, 2.0}};

float sum = 0;

void addArguments(Scene*, float, const void* const* arguments) {
  for (int i = 0; i < maxArguments; ++i) sum += Arguments(arguments).number(i);
}

CallData callOfNineSplines() {
  return {.function = "add", .parameters = std::vector<ParameterData>(9, {.type = 2, .dots = dots})};
}

// 15 parts last the whole show and one its last 1000 s. The others have all ended by then, and because
// the first part goes on, the cursor cannot pass them.
ProjectData showOf(int parts) {
  ProjectData project{.totalTime = 2000};
  project.parts.assign(15, {.length = 2000, .calls = {callOfNineSplines()}});
  for (int i = 0; i < parts - 16; ++i) {
    project.parts.push_back({.pos = 1.0 * i, .length = 1, .calls = {callOfNineSplines()}});
  }
  project.parts.push_back({.pos = 1000, .length = 1000, .calls = {callOfNineSplines()}});
  return project;
}

std::unique_ptr<PartDispatcher> emptyDispatcher() {
  auto dispatcher = std::make_unique<PartDispatcher>();
  Scene* scene = newScene<Scene>();
  std::snprintf(scene->name, sceneNameSize, "SceneTest");
  scene->registerFunction(addArguments, "add");
  dispatcher->addScene(scene);
  return dispatcher;
}

// A project file that is gone with the object.
struct ProjectOnDisk {
  std::string path = "/tmp/vexbench." + std::to_string(getpid()) + ".hvp";
  std::size_t size;

  explicit ProjectOnDisk(int parts) {
    const std::string bytes = buildProject(showOf(parts)).bytes;
    size = bytes.size();
    std::FILE* file = std::fopen(path.c_str(), "wb");
    std::fwrite(bytes.data(), 1, size, file);
    std::fclose(file);
  }
  ~ProjectOnDisk() { std::remove(path.c_str()); }
};

void runFrame(benchmark::State& state) {
  const ProjectOnDisk project(static_cast<int>(state.range(0)));
  const auto dispatcher = emptyDispatcher();
  dispatcher->loadProject(project.path.c_str());
  float t = 1500;
  dispatcher->runFrame(t);
  const std::uint64_t before = allocationCount();
  for (auto _ : state) {
    t += 0.001f;
    if (t > 1999) t = 1500;
    dispatcher->runFrame(t);
  }
  benchmark::DoNotOptimize(sum);
  state.counters["allocations"] =
      static_cast<double>(allocationCount() - before) / static_cast<double>(state.iterations());
}
BENCHMARK(runFrame)->Arg(20)->Arg(999);

void calcSpline(benchmark::State& state) {
  float x[8], y[8], t = 0;
  for (std::size_t i = 0; i < 8; ++i) {
    x[i] = static_cast<float>(dots[i].first);
    y[i] = static_cast<float>(dots[i].second);
  }
  for (auto _ : state) {
    benchmark::DoNotOptimize(calc_spline(x, y, 8, t));
    t = t < 0.98f ? t + 0.01f : 0.0f;
  }
}
BENCHMARK(calcSpline);

void gslSpline(benchmark::State& state) {
  double x[8], y[8], t = 0;
  for (std::size_t i = 0; i < 8; ++i) {
    x[i] = dots[i].first;
    y[i] = dots[i].second;
  }
  for (auto _ : state) {
    gsl_spline* spline = gsl_spline_alloc(gsl_interp_cspline, 8);
    gsl_spline_init(spline, x, y, 8);
    benchmark::DoNotOptimize(gsl_spline_eval(spline, t, nullptr));
    gsl_spline_free(spline);
    t = t < 0.98 ? t + 0.01 : 0.0;
  }
}
BENCHMARK(gslSpline);

void loadProject(benchmark::State& state) {
  const ProjectOnDisk project(999);
  for (auto _ : state) {
    auto dispatcher = emptyDispatcher();
    dispatcher->loadProject(project.path.c_str());
    state.PauseTiming();
    dispatcher.reset();
    state.ResumeTiming();
  }
  state.counters["bytes"] = static_cast<double>(project.size);
}
BENCHMARK(loadProject);

const bool added[] = {
    addFigure({.name = "runframe_999_vs_20_parts",
               .unit = "ratio",
               .peer = "20 parts; 16 active, nine 8-dot splines each",
               .limit = 1.5,
               .value = [](const Measurements& m) { return m.cpu("runFrame/999") / m.cpu("runFrame/20"); }}),
    addFigure({.name = "runframe_allocations",
               .unit = "a frame",
               .peer = "none",
               .limit = 0,
               .value = [](const Measurements& m) { return m.counter("runFrame/999", "allocations"); }}),
    addFigure({.name = "calc_spline_8_vs_gsl",
               .unit = "ratio",
               .peer = "GSL's cspline: alloc, init, eval",
               .limit = 1.0,
               .value = [](const Measurements& m) { return m.cpu("calcSpline") / m.cpu("gslSpline"); }}),
    addFigure({.name = "project_load_999_rate",
               .unit = "MB/s",
               .peer = "none",
               .limit = 50,
               .value =
                   [](const Measurements& m) {
                     return m.counter("loadProject", "bytes") / m.cpu("loadProject") / 1e6;
                   }}),
};

}  // namespace

}  // namespace vex
