#pragma once

#include <span>
#include <vector>

#include "production/synth/oscillator.h"

namespace vex::synth {

// One sounding note or hit, from its start to where it has died away. Without a right channel it is mono.
struct Voice {
  std::vector<float> left, right;
};

// What an instrument is told about a note.
struct NoteCall {
  float rate = 44100;              // samples a second
  float seconds = 0.5f;            // how long the key is held
  std::span<const float> pitches;  // MIDI note numbers, lowest first, at least one
  float fromPitch = 0;             // where a glide starts; 0: no glide
  float velocity = 1;              // 0 to 1
  float brightness = 0.5f;         // 0 to 1, from the score's curves
  NoiseSource* noise = nullptr;
};

inline std::size_t sampleCount(float seconds, float rate) {
  return static_cast<std::size_t>(seconds * rate + 0.5f);
}

// A stereo voice whose channels `render(samples, side)` makes one after the other: side -1 is the left one,
// 1 the right one. The samples are 0 before.
template <typename Render>
Voice renderSides(float seconds, float rate, Render render) {
  Voice voice;
  voice.left.resize(sampleCount(seconds, rate));
  voice.right.resize(voice.left.size());
  render(voice.left, -1.0f);
  render(voice.right, 1.0f);
  return voice;
}

}  // namespace vex::synth
