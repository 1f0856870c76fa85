#include <benchmark/benchmark.h>

#include "benchmarks/figure.h"
#include "production/music.h"

namespace vex {

namespace {

void renderSong(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(renderMusic(MixQuality::full));
}
BENCHMARK(renderSong)->Iterations(1)->Repetitions(3)->Unit(benchmark::kMillisecond);

const bool added = addFigure(
    {.name = "synth_realtime_rate",
     .unit = "s/s",
     .peer = "seconds of music in a second of one core, from the score to the finished mix",
     .limit = 20,
     .value = [](const Measurements& m) { return musicSeconds / m.cpu("renderSong/iterations:1"); }});

}  // namespace

}  // namespace vex
