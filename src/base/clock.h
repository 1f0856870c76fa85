#pragma once

#include <cstdint>

#include "base/current.h"

// The demo clock, in seconds: follows the sound that leads it while that is active, otherwise the system
// timer.

namespace vex {

// Holds back a jump of more than twice the last step for one frame and turns a step backwards into
// a small one forwards. Bytes, modulo 2^32.
struct SoundFilter {
  std::uint32_t position = 0;
  std::uint32_t lastPosition = 0;
  std::uint32_t delta = 0;
  std::uint32_t lastDelta = 0;
  std::uint32_t fallbackStep = 0;
};

struct DemoClock {
  float time = 0.0f;
  float previousTime = 0.0f;
  float startTime = 0.0f;
  float wallBase = 0.0f;  // timeGetTime() in seconds at clockReset()
  bool firstFrame = true;
  std::uint32_t frame = 0;
  SoundFilter filter;
};

// Tests may set it.
inline DemoClock& demoClock() {
  return current<DemoClock>();
}

// What leads the clock while it is active: the music, once there is some. Bytes of the decoded stream.
struct LeadingSound {
  bool (*active)() = [] { return false; };
  std::uint32_t (*position)() = nullptr;
  std::uint32_t (*length)() = nullptr;
  float (*duration)() = nullptr;  // seconds
};
inline LeadingSound& leadingSound() {
  return current<LeadingSound>();
}

// The filtered position for a measured one.
std::uint32_t filterPosition(SoundFilter& filter, std::uint32_t measured);

void clockSetStartTime(float seconds);

// Called just before the main loop, when the leading sound plays already or never will.
void clockReset();

// Once a frame. The step of the first frame is 0.01 s.
void clockTick();

float clockTime();
float clockDelta();  // between the last two frames

// Number of the frame, 0 before the first one. It tells frames apart while the time stands still.
std::uint32_t clockFrame();

// A frame at a time given by hand, for who renders without a running clock.
void clockAdvanceTo(float time);

}  // namespace vex
