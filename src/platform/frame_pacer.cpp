#include "platform/frame_pacer.h"

#include <algorithm>

namespace vex {

namespace {

constexpr int windowSwaps = 20;
constexpr double honouredShare = 0.8;  // of the time that this many refreshes take; a few may be queued

}  // namespace

FramePacer::FramePacer(double refreshRate, bool vsync)
    : period(std::chrono::duration_cast<Duration>(std::chrono::duration<double>(1.0 / refreshRate))),
      clocked(!vsync) {}

FramePacer::Time FramePacer::afterSwap(Time now) {
  if (!running) {
    running = true;
    windowStart = due = now;
    return now;
  }
  if (!clocked && ++swaps == windowSwaps) {
    clocked = now - windowStart < honouredShare * windowSwaps * period;
    windowStart = due = now;
    swaps = 0;
  }
  if (!clocked) return now;
  due = std::max(due + period, now);  // a late frame is not made up for
  return due;
}

}  // namespace vex
