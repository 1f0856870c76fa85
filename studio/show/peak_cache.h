#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "studio/show/waveform.h"

// Peaks as a file. All numbers are little-endian:
//   0   8  "vexpeak1"
//   8   8  size of the music in bytes
//   16  8  time of its last change, ns
//   24  4  its offset in the archive, 0 outside
//   28  8  seconds that a peak covers, in units of 2^-32
//   36  4  CRC-32 of the bytes before and of the peaks
//   40     low and high of each peak, a signed byte each

namespace vex::studio {

// What tells one music from another.
struct MusicStamp {
  std::uint64_t size = 0;
  std::int64_t changed = 0;
  std::uint32_t offset = 0;
};

std::string peakBytes(const Peaks& peaks, const MusicStamp& music);

// None where the bytes are no such file, or that of another music.
std::optional<Peaks> readPeaks(std::string_view bytes, const MusicStamp& music);

}  // namespace vex::studio
