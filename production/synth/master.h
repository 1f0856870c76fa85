#pragma once

#include <span>

// The last stages over the whole mix, in the order in which they are used.

namespace vex::synth {

// Nothing below `hertz` differs between the channels (24 dB an octave).
void narrowLowEnd(std::span<float> left, std::span<float> right, float hertz, float rate);

struct Compressor {
  float keyCut = 130;     // hertz below which it does not listen: kick and bass shall not pump the rest
  float threshold = -11;  // dB, of the louder channel's mean square
  float ratio = 2;
  float attack = 0.03f, release = 0.12f;  // s
};
void compress(const Compressor& compressor, std::span<float> left, std::span<float> right, float rate);

// Highest magnitude of the signal between the samples too, four points a sample (ITU-R BS.1770, annex 2).
float truePeak(std::span<const float> left, std::span<const float> right);

// Looks 3 ms ahead, so that no true peak passes the ceiling (linear) and no gain step is heard.
void limit(std::span<float> left, std::span<float> right, float ceiling, float rate);

}  // namespace vex::synth
