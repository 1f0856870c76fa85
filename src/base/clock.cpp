#include "base/clock.h"

#include "platform/steady_clock.h"

namespace vex {

namespace {

constexpr float firstStep = 0.01f;
constexpr std::uint32_t forwardBytes = 200;

void beginFrame() {
  ++demoClock().frame;
  demoClock().previousTime = demoClock().time;
}

void endFrame(float time) {
  demoClock().time = time;
  if (!demoClock().firstFrame) return;
  demoClock().previousTime = time - firstStep;
  demoClock().firstFrame = false;
}

float timerTime() {
  return static_cast<float>((timeGetTime() / 1000.0 - demoClock().wallBase) + demoClock().startTime);
}

float soundTime() {
  const std::uint32_t position = filterPosition(demoClock().filter, leadingSound().position());
  return static_cast<float>(position) / static_cast<float>(leadingSound().length()) *
         leadingSound().duration();
}

}  // namespace

std::uint32_t filterPosition(SoundFilter& filter, std::uint32_t measured) {
  filter.position = measured;
  filter.delta = filter.position - filter.lastPosition;
  if (filter.delta > 2 * filter.lastDelta || filter.position < filter.lastPosition) {
    if (filter.position < filter.lastPosition) {
      filter.position = filter.lastPosition + forwardBytes;
    } else {
      filter.position = filter.lastPosition + filter.fallbackStep;
      filter.lastDelta = filter.delta;
    }
  } else {
    filter.lastDelta = filter.delta;
    filter.fallbackStep = filter.delta;
  }
  filter.lastPosition = filter.position;
  return filter.position;
}

void clockSetStartTime(float seconds) {
  demoClock().startTime = seconds;
}

void clockReset() {
  if (!leadingSound().active()) demoClock().wallBase = static_cast<float>(timeGetTime() / 1000.0);
}

void clockTick() {
  beginFrame();
  endFrame(leadingSound().active() ? soundTime() : timerTime());
}

float clockTime() {
  return demoClock().time;
}

float clockDelta() {
  return demoClock().time - demoClock().previousTime;
}

std::uint32_t clockFrame() {
  return demoClock().frame;
}

void clockAdvanceTo(float time) {
  beginFrame();
  endFrame(time);
}

}  // namespace vex
