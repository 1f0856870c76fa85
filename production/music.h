#pragma once

#include <cstddef>
#include <vector>

#include "production/making/product.h"
#include "production/song/cues.h"

// The music: the sections of an arrangement and a tail in which the last chord rings out, both ends
// silent. Made from code; the same bytes on every run.

namespace vex {

enum class MixQuality {
  full,   // 44.1 kHz
  draft,  // same song and length at half the sample rate, in a few seconds
};

inline constexpr double tailSeconds = 4.0;
inline constexpr double musicSeconds = song::cueSeconds(song::songBars) + tailSeconds;  // of the show

// Two channels of equal length, -1 to 1.
struct StereoSound {
  int sampleRate = 44100;
  std::vector<float> left, right;
};

StereoSound renderMusic(MixQuality quality, song::Arrangement sections = song::showSections);

// The finished Ogg Vorbis file.
std::vector<std::byte> makeMusic(MixQuality quality, song::Arrangement sections = song::showSections);

Products musicFile();  // data\vex.ogg

}  // namespace vex
