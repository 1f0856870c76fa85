#pragma once

#include <cmath>
#include <optional>

#include "platform/sound_file.h"

// The beats of a piece of music that keeps its tempo.

namespace vex {

struct Beats {
  double perMinute = 0;
  double first = 0;  // time of the first that is no earlier than the sound, s
  int count = 0;     // of all to the end of the sound
  int marked = 0;    // of these: nothing that begins within half a beat is stronger than what begins there

  static constexpr double tolerance = 0.02;  // s that what marks a beat may be off

  // The share of the beats that chance marks.
  double chance() const { return 2 * tolerance * perMinute / 60; }

  // How many standard deviations more beats are marked than chance would mark.
  double sureness() const {
    const double expected = count * chance();
    return expected > 0 ? (marked - expected) / std::sqrt(expected) : 0;
  }
};

// Listens to the first half hour. None where chance alone could mark as many beats, as in noise. Half and
// double the tempo are the same beat to many a listener: which is told is a matter of taste.
std::optional<Beats> findBeats(SoundFile& sound);

}  // namespace vex
