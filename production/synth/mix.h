#pragma once

#include <array>
#include <vector>

#include "production/synth/voice.h"

namespace vex::synth {

struct StereoTrack {
  std::vector<float> left, right;
};

enum class Bus {
  drums,
  bass,    // ducked hard and shortly by the kick
  front,   // leads and plucks: ducked a little
  wide,    // choir and pads: chorus, ducked
  free,    // what no kick moves
  reverb,  // what is sent to the room
  echo,    // what is sent to the delay
};
inline constexpr std::size_t busCount = 7;

struct Mix {
  float rate = 44100;
  std::array<StereoTrack, busCount> tracks;

  StereoTrack& track(Bus bus) { return tracks[static_cast<std::size_t>(bus)]; }
};

Mix makeMix(double seconds, float rate);

struct Placement {
  Bus bus = Bus::free;
  float gain = 1;
  float pan = 0;               // -1 left, 1 right; the other side is turned down
  float reverb = 0, echo = 0;  // share of it that is sent there
};

// Adds the voice at `seconds`; what lies outside the mix is lost.
void addVoice(Mix& mix, const Voice& voice, const Placement& place, double seconds, float gain = 1);

}  // namespace vex::synth
