#include "platform/wave_header.h"

#include "platform/little_endian.h"

namespace vex {

std::string waveHeader(int rate, int channels, int bytesPerSample, std::uint32_t size) {
  const auto frameBytes = static_cast<std::uint32_t>(channels * bytesPerSample);
  const auto framesPerSecond = static_cast<std::uint32_t>(rate);
  std::string header = "RIFF";
  appendLittleEndian(header, waveHeaderSize - 8 + size, 4);
  header += "WAVEfmt ";
  appendLittleEndian(header, 16, 4);
  appendLittleEndian(header, 1, 2);
  appendLittleEndian(header, static_cast<std::uint32_t>(channels), 2);
  appendLittleEndian(header, framesPerSecond, 4);
  appendLittleEndian(header, framesPerSecond * frameBytes, 4);
  appendLittleEndian(header, frameBytes, 2);
  appendLittleEndian(header, static_cast<std::uint32_t>(8 * bytesPerSample), 2);
  header += "data";
  appendLittleEndian(header, size, 4);
  return header;
}

}  // namespace vex
