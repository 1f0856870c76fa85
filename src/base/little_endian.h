#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace vex {

// The number in up to 8 bytes of a file, lowest byte first.
constexpr std::uint64_t littleEndian(std::span<const std::uint8_t> bytes) {
  std::uint64_t value = 0;
  for (std::size_t i = bytes.size(); i-- > 0;) value = value << 8 | bytes[i];
  return value;
}

}  // namespace vex
