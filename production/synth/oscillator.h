#pragma once

#include <cmath>
#include <cstdint>

// Sound sources, one sample a call. Phases and steps are in turns (0 to 1); step = hertz / sample rate.

namespace vex::synth {

// xorshift32 (Marsaglia 2003); the music has its own so that nothing else can move it.
struct NoiseSource {
  std::uint32_t state = 0x9e3779b9u;

  // -1 to just below 1.
  float next() {
    state ^= state << 13;
    state ^= state >> 17;
    state ^= state << 5;
    return static_cast<float>(static_cast<std::int32_t>(state)) * (1.0f / 2147483648.0f);
  }
};

inline float wrapPhase(float phase) {
  return phase >= 1.0f ? phase - 1.0f : phase;
}

// Sine of an angle in turns, error below 4e-6: the Taylor series on a quarter wave.
inline float sineOfTurns(float turns) {
  float t = turns - std::floor(turns + 0.5f);
  if (t > 0.25f) t = 0.5f - t;
  if (t < -0.25f) t = -0.5f - t;
  const float x = t * 6.28318531f;
  const float square = x * x;
  return x * (1 + square * (-1.0f / 6 + square * (1.0f / 120 + square * (-1.0f / 5040 + square / 362880))));
}

// Polynomial residue that rounds a step of height 2 at phase 0 (Valimaki and Huovilainen 2007), so that
// what would fold back above half the sample rate is mostly gone.
inline float polyBlep(float phase, float step) {
  if (phase < step) {
    const float t = phase / step;
    return t + t - t * t - 1;
  }
  if (phase > 1 - step) {
    const float t = (phase - 1) / step;
    return t * t + t + t + 1;
  }
  return 0;
}

struct Sine {
  float phase = 0;
  float next(float step) {
    const float value = sineOfTurns(phase);
    phase = wrapPhase(phase + step);
    return value;
  }
};

// Rises from -1 to 1.
struct Saw {
  float phase = 0;
  float next(float step) {
    const float value = 2 * phase - 1 - polyBlep(phase, step);
    phase = wrapPhase(phase + step);
    return value;
  }
};

// 1 for the share `width` of the period, else -1.
struct Pulse {
  float phase = 0;
  float next(float step, float width) {
    const float value =
        (phase < width ? 1.0f : -1.0f) + polyBlep(phase, step) - polyBlep(wrapPhase(phase + 1 - width), step);
    phase = wrapPhase(phase + step);
    return value;
  }
};

// Hertz of a MIDI note number; 69 is the A of 440 Hz.
inline float noteHertz(float note) {
  return 440.0f * std::exp2((note - 69.0f) / 12.0f);
}

}  // namespace vex::synth
