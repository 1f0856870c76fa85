#pragma once

#include <cmath>
#include <vector>

#include "production/synth/envelope.h"
#include "production/synth/filter.h"
#include "production/synth/voice.h"

// What the instruments share.

namespace vex::synth {

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

// Turns a sample of the glided pitch.
inline float glidedStep(const NoteCall& call, float seconds) {
  return noteHertz(glidedPitch(call, seconds)) / call.rate;
}

// As renderBlocks for a note that is held; body(level) is given velocity times envelope.
template <typename Control, typename Body>
void renderNote(std::vector<float>& samples, const NoteCall& call, const EnvelopeShape& shape,
                Control control, Body body) {
  float level = 0;
  renderBlocks(
      samples, call.rate,
      [&](float t) {
        level = call.velocity * envelopeAt(shape, t, call.seconds);
        control(t);
      },
      [&] { return body(level); });
}

// Mono, to the end of its release.
template <typename Control, typename Body>
Voice renderNote(const NoteCall& call, const EnvelopeShape& shape, Control control, Body body) {
  Voice voice{std::vector<float>(sampleCount(call.seconds + shape.release, call.rate)), {}};
  renderNote(voice.left, call, shape, control, body);
  return voice;
}

}  // namespace vex::synth
