#pragma once

#include <cstddef>
#include <vector>

// The music of the presentation: 90 s of song after production/cues.h and a tail of 2 s, both ends
// silent. Made from code; the same bytes on every run.

namespace vex {

enum class MixQuality {
  full,   // 44.1 kHz
  draft,  // same song and length at half the sample rate, in a second or two
};

inline constexpr double musicSeconds = 92.0;

// Two channels of equal length, -1 to 1.
struct StereoSound {
  int sampleRate = 44100;
  std::vector<float> left, right;
};

StereoSound renderMusic(MixQuality quality);

// The finished Ogg Vorbis file.
std::vector<std::byte> makeMusic(MixQuality quality);

}  // namespace vex
