#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace vex::synth {

// Seconds, but for the level that is held (0 to 1).
struct EnvelopeShape {
  float attack = 0.005f;
  float decay = 0.1f;
  float sustain = 0.7f;
  float release = 0.1f;
};

// Value 0 to 1 at `seconds` after the start of a note that is held for `length`: linear attack,
// exponential decay (to a twentieth of the way in `decay`), and a release that ends at exactly 0.
inline float envelopeAt(const EnvelopeShape& shape, float seconds, float length) {
  const auto held = [&](float t) {
    if (t < shape.attack) return t / shape.attack;
    return shape.sustain + (1 - shape.sustain) * std::exp(-3 * (t - shape.attack) / shape.decay);
  };
  if (seconds < length) return held(seconds);
  const float left = 1 - (seconds - length) / shape.release;
  return left <= 0 ? 0 : held(length) * left * left;
}

// Lets the last `count` samples end at 0.
inline void fadeEnd(std::vector<float>& samples, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    samples[samples.size() - 1 - i] *= static_cast<float>(i) / static_cast<float>(count);
  }
}

// exp(-t / time), stepped once a sample.
struct Decay {
  float value = 1, factor = 1;
  Decay(float time, float rate) : factor(std::exp(-1 / (time * rate))) {}
  float next() {
    const float now = value;
    value *= factor;
    return now;
  }
};

}  // namespace vex::synth
