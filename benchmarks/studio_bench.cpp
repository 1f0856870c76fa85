#include <benchmark/benchmark.h>

#include <string>

#include "benchmarks/figure.h"
#include "benchmarks/show_text.h"
#include "studio/document/document.h"

namespace vex {

namespace {

// A dot that a mouse drags in the first of 999 parts, where most of the text stands behind it: from the event
// to the changed text, its record and the places of all values. Every other value has more digits, so that
// all places move.
void moveDot(benchmark::State& state) {
  studio::Document document(textOf999Parts());
  constexpr studio::ParameterAt at{0, 0, 2};
  document.beginGesture("Move dot");
  std::size_t placed = 0;
  for (int i = 0; auto _ : state) {
    const double y = i++ % 2 == 0 ? 0.5 : 0.1234;
    if (!document.setDot(at, 1, 0.5, y)) state.SkipWithError("refused");
    placed += document.places().parts.back().whole.end;
    benchmark::DoNotOptimize(placed);
  }
  document.endGesture();
}
BENCHMARK(moveDot);

const bool added = addFigure({.name = "studio_edit_us",
                              .unit = "us",
                              .peer = "none; a dot moved among 999 parts",
                              .limit = 2000,
                              .value = [](const Measurements& m) { return m.cpu("moveDot") * 1e6; }});

}  // namespace

}  // namespace vex
