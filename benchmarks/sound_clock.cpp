#include "benchmarks/sound_clock.h"

#include <AL/alc.h>
#include <AL/alext.h>
#include <sndfile.h>

#include <chrono>
#include <cmath>
#include <thread>
#include <vector>

#include "platform/steady_clock.h"

namespace vex {

namespace {

constexpr int rate = 44100;
constexpr double measuredSeconds = 20.0;
constexpr double frameSeconds = 1.0 / 60.0;

struct Reading {
  double at;     // steadySeconds()
  double value;  // seconds of sound
};

// Sound that the device has consumed and its latency, in seconds, straight from the device: apart
// from everything that the clock is made of.
struct DeviceClock {
  ALCdevice* device = alcGetContextsDevice(alcGetCurrentContext());
  LPALCGETINTEGER64VSOFT get =
      reinterpret_cast<LPALCGETINTEGER64VSOFT>(alcGetProcAddress(device, "alcGetInteger64vSOFT"));

  double read(ALCenum what) const {
    ALCint64SOFT nanoseconds = 0;
    get(device, what, 1, &nanoseconds);
    return static_cast<double>(nanoseconds) * 1e-9;
  }
};

// The device takes whole blocks: the line through the middle of its steps, at time `at`.
double lineThrough(const std::vector<Reading>& steps, std::size_t& next, double at) {
  const auto middle = [&](std::size_t i) { return (steps[i].at + steps[i + 1].at) / 2.0; };
  while (next + 3 < steps.size() && middle(next + 1) < at) ++next;
  const double share = (at - middle(next)) / (middle(next + 1) - middle(next));
  return steps[next].value + share * (steps[next + 1].value - steps[next].value);
}

// Starts the music right after a step of the device, so that it is known where in the device's time
// it is first heard; less than 0 when that did not work out.
double startAtStep(const LedClock& clock) {
  clock.open();
  const DeviceClock device;
  if (!device.device) return -1.0;
  const double before = device.read(ALC_DEVICE_CLOCK_SOFT);
  double step = before;
  while (step == before) step = device.read(ALC_DEVICE_CLOCK_SOFT);
  if (!clock.start() || device.read(ALC_DEVICE_CLOCK_SOFT) != step) return -1.0;
  return step + device.read(ALC_DEVICE_LATENCY_SOFT);
}

struct ClockReadings {
  std::vector<Reading> steps;   // of the device, sound from the start of the music
  std::vector<Reading> frames;  // of the clock
};

ClockReadings runFrames(const LedClock& clock, double musicStart) {
  ClockReadings recording;
  const DeviceClock device;
  const double begin = steadySeconds();
  double nextFrame = begin;
  for (double now = begin; now < begin + measuredSeconds; now = steadySeconds()) {
    const double consumed = device.read(ALC_DEVICE_CLOCK_SOFT) - musicStart;
    if (recording.steps.empty() || consumed != recording.steps.back().value) {
      recording.steps.push_back({now, consumed});
    }
    if (now >= nextFrame) {
      nextFrame += frameSeconds;
      recording.frames.push_back({now, clock.frame()});
    }
    std::this_thread::sleep_for(std::chrono::microseconds(500));
  }
  return recording;
}

}  // namespace

void writeSilence(const char* path) {
  SF_INFO info{};
  info.samplerate = rate;
  info.channels = 2;
  info.format = SF_FORMAT_WAV | SF_FORMAT_PCM_16;
  SNDFILE* file = sf_open(path, SFM_WRITE, &info);
  const std::vector<short> second(2 * rate);
  for (int i = 0; i < measuredSeconds + 5; ++i) sf_writef_short(file, second.data(), rate);
  sf_close(file);
}

double meanClockError(benchmark::State& state, const LedClock& clock) {
  double musicStart = -1.0;
  for (int attempt = 0; attempt < 10 && musicStart < 0.0; ++attempt) musicStart = startAtStep(clock);
  if (musicStart < 0.0) {
    state.SkipWithError("the music didn't start within a step of the device");
    return 0.0;
  }
  const ClockReadings recording = runFrames(clock, musicStart);
  double sum = 0.0;
  int count = 0;
  std::size_t next = 0;
  for (const Reading& frame : recording.frames) {
    if (frame.value == 0.0) continue;  // nothing is heard yet
    sum += std::abs(frame.value - lineThrough(recording.steps, next, frame.at));
    ++count;
  }
  return 1000.0 * sum / count;
}

}  // namespace vex
