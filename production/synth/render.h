#pragma once

#include <cmath>
#include <vector>

#include "production/synth/filter.h"
#include "production/synth/voice.h"

// What the instruments share.

namespace vex {

// Writes body() into each sample; control(seconds) goes before each block of controlBlock.
template <typename Control, typename Body>
void renderBlocks(std::vector<float>& samples, float rate, Control control, Body body) {
  for (std::size_t i = 0; i < samples.size(); ++i) {
    if (i % controlBlock == 0) control(static_cast<float>(i) / rate);
    samples[i] = body();
  }
}

// Pitch at `seconds`: from the glide's start to the note in 70 ms.
inline float glidedPitch(const NoteCall& call, float seconds) {
  const float target = call.pitches.front();
  if (call.fromPitch <= 0) return target;
  return target + (call.fromPitch - target) * std::exp(-seconds / 0.028f);
}

inline float cents(float amount) {
  return std::exp2(amount / 1200.0f);
}

// The two channels of a voice, of that length, from a function of the channel and its side, -1 or 1.
template <typename Fill>
Voice renderBothSides(float seconds, float rate, Fill fill) {
  Voice voice{std::vector<float>(sampleCount(seconds, rate)), std::vector<float>(sampleCount(seconds, rate))};
  fill(voice.left, -1.0f);
  fill(voice.right, 1.0f);
  return voice;
}

}  // namespace vex
