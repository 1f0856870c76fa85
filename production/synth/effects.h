#pragma once

#include <span>
#include <vector>

// Effects over whole recordings. Those with an input add to their output, which may be longer than what
// they are given to write into: the rest is lost.

namespace vex::synth {

struct Reverb {
  float seconds = 2.4f;  // until 60 dB are gone
  float damping = 7500;  // hertz above which the tail dies sooner
  float before = 0.02f;  // s of silence before it
};

// Feedback network of eight delays that a Householder matrix mixes (Jot 1991), two diffusers before it.
void addReverb(const Reverb& reverb, std::span<const float> left, std::span<const float> right,
               std::span<float> wetLeft, std::span<float> wetRight, float rate);

struct Echo {
  float seconds = 0.35f;
  float feedback = 0.45f;
  float lowCut = 300, highCut = 4500;  // hertz, inside the loop
};

// Echoes that cross from side to side.
void addEcho(const Echo& echo, std::span<const float> left, std::span<const float> right,
             std::span<float> wetLeft, std::span<float> wetRight, float rate);

// Two slow moving taps a channel, mixed in place.
void applyChorus(std::span<float> left, std::span<float> right, float amount, float rate);

struct Duck {
  float depth = 0.6f;     // share of the level that is taken away
  float recover = 0.25f;  // s until it is back
};

// Gain curve: falls within 4 ms at each time (s) by depth times that hit's weight, and comes back.
struct DuckHit {
  double seconds;
  float weight;
};
std::vector<float> makeDuckCurve(const Duck& duck, std::span<const DuckHit> hits, std::size_t size,
                                 float rate);

}  // namespace vex::synth
