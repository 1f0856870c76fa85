#include <benchmark/benchmark.h>

#include <string>

#include "authoring/project_text.h"
#include "benchmarks/figure.h"
#include "benchmarks/show_text.h"

namespace vex {

namespace {

void compileProject(benchmark::State& state) {
  const std::string text = textOf999Parts();
  for (auto _ : state) {
    const CompiledProject compiled = compileProjectText(text);
    if (!compiled.problems.empty()) state.SkipWithError(compiled.problems.front().text.c_str());
    benchmark::DoNotOptimize(compiled.bytes.data());
  }
  state.counters["bytes"] = static_cast<double>(text.size());
}
BENCHMARK(compileProject);

const bool added = addFigure({.name = "project_compile_999_rate",
                              .unit = "MB/s",
                              .peer = "none; MB of text",
                              .limit = 20,
                              .value = [](const Measurements& m) {
                                return m.counter("compileProject", "bytes") / m.cpu("compileProject") / 1e6;
                              }});

}  // namespace

}  // namespace vex
