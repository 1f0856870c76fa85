#pragma once

#include <algorithm>
#include <array>
#include <cmath>

#include "base/pi.h"

namespace vex::synth {

// How many samples share one set of filter coefficients.
inline constexpr int controlBlock = 16;

// tanh to within 3 % and never beyond 1: drives that saturate softly.
inline float softClip(float x) {
  const float limited = std::clamp(x, -3.0f, 3.0f);
  const float square = limited * limited;
  return limited * (27 + square) / (27 + 9 * square);
}

// Tangent of the warped half angle, with the cutoff kept below where the transform breaks down.
inline float warpedCutoff(float hertz, float rate) {
  return std::tan(pi * std::clamp(hertz, 5.0f, 0.45f * rate) / rate);
}

struct Bands {
  float low, band, high;
};

// Trapezoidal state-variable filter (Simper 2013). `quality` is the gain at the cutoff: 0.707 is flat.
// The band output has gain 1 at its centre.
struct StateVariableFilter {
  float first = 0, second = 0;
  float damping = 1, a1 = 0, a2 = 0, a3 = 0;

  void set(float hertz, float quality, float rate) {
    const float g = warpedCutoff(hertz, rate);
    damping = 1 / quality;
    a1 = 1 / (1 + g * (g + damping));
    a2 = g * a1;
    a3 = g * a2;
  }

  Bands next(float input) {
    const float v3 = input - second;
    const float v1 = a1 * first + a2 * v3;
    const float v2 = second + a2 * first + a3 * v3;
    first = 2 * v1 - first;
    second = 2 * v2 - second;
    return {v2, damping * v1, input - damping * v1 - v2};
  }
};

// Four one-pole stages with a saturated feedback path. Resonance 0 to 4; above 4 it would sing.
struct LadderFilter {
  std::array<float, 4> stages{};
  float gain = 0, resonance = 0;

  void set(float hertz, float newResonance, float rate) {
    const float g = warpedCutoff(hertz, rate);
    gain = g / (1 + g);
    resonance = newResonance;
  }

  float next(float input) {
    // The bass that resonance takes away is given back by half.
    float value = softClip(input * (1 + 0.5f * resonance) - resonance * output);
    for (float& stage : stages) {
      const float step = (value - stage) * gain;
      value = stage + step;
      stage = value + step;
    }
    output = value;
    return value;
  }

  float output = 0;
};

// One pole of low pass; input minus output is the high pass.
struct OnePole {
  float state = 0, share = 1;
  void set(float hertz, float rate) { share = 1 - std::exp(-6.28318531f * hertz / rate); }
  float next(float input) { return state += share * (input - state); }
};

}  // namespace vex::synth
