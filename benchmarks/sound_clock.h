#pragma once

#include <benchmark/benchmark.h>

#include <functional>

// How well a clock keeps with what the silent device has consumed of the music that leads it.

namespace vex {

// Silence as a WAV file, long enough.
void writeSilence(const char* path);

struct LedClock {
  std::function<void()> open;     // the device and the music, which is about to start
  std::function<bool()> start;    // whether it plays
  std::function<double()> frame;  // goes on by a frame: the clock's time, s; 0 as long as nothing is heard
};

// Mean difference, ms, over 20 s of frames at 60 a second. Skips where the music never starts within a step
// of the device, in ten attempts.
double meanClockError(benchmark::State& state, const LedClock& clock);

}  // namespace vex
