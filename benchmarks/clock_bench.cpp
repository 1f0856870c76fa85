#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "app/music.h"
#include "base/clock.h"
#include "base/options.h"
#include "benchmarks/figure.h"
#include "benchmarks/sound_clock.h"

namespace vex {

namespace {

// Frames at 60 a second with the live clock, on the silent device.
void runClock(benchmark::State& state) {
  setenv("ALSOFT_DRIVERS", "null", 1);
  const std::string path = "/tmp/vexbench." + std::to_string(getpid()) + ".wav";
  writeSilence(path.c_str());
  const LedClock clock{.open =
                           [&path] {
                             shutDownMusic();
                             options().soundEnabled = true;
                             demoClock() = {};
                             openMusic(path.c_str());
                           },
                       .start =
                           [] {
                             startMusic();
                             return musicActive();
                           },
                       .frame =
                           [] {
                             clockTick();
                             return double{clockTime()};
                           }};
  for (auto _ : state) state.counters["mean_ms"] = meanClockError(state, clock);
  shutDownMusic();
  std::remove(path.c_str());
}
BENCHMARK(runClock)->Iterations(1)->Repetitions(1)->Unit(benchmark::kMillisecond);

const bool added =
    addFigure({.name = "clock_error_ms",
               .unit = "ms",
               .peer = "what the silent device has consumed, mean over 20 s",
               .limit = 5.0,
               .value = [](const Measurements& m) { return m.counter("runClock/iterations:1", "mean_ms"); }});

}  // namespace

}  // namespace vex
