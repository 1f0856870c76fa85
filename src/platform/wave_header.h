#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace vex {

inline constexpr std::size_t waveHeaderSize = 44;

// RIFF header of PCM sound (Microsoft, Multimedia Programming Interface and Data Specifications 1.0), for
// `size` bytes of samples behind it: 8 bits unsigned or 16 bits little-endian, channels interleaved.
std::string waveHeader(int rate, int channels, int bytesPerSample, std::uint32_t size);

}  // namespace vex
