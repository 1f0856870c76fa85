#pragma once

#include <chrono>

// Keeps frames from coming faster than the screen shows them.

namespace vex {

// Watches whether swaps wait for the screen by themselves. Where twenty in a row come clearly faster
// than the screen refreshes, they do not, and from then on frames are held back by the clock.
struct FramePacer {
  using Time = std::chrono::steady_clock::time_point;
  using Duration = std::chrono::steady_clock::duration;

  // `vsync`: the GL has accepted to wait for the screen; otherwise the clock paces from the start.
  FramePacer(double refreshRate, bool vsync);

  // To be called after each swap; returns until when to sleep, a time not after `now` for not at all.
  Time afterSwap(Time now);

  bool pacedByClock() const { return clocked; }

 private:
  Duration period;
  bool clocked;
  bool running = false;
  int swaps = 0;       // since windowStart
  Time windowStart{};  // of the measurement
  Time due{};          // of the frame just swapped, when paced by the clock
};

}  // namespace vex
