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

// Appends the lowest `count` bytes of the value.
template <typename Bytes>
void appendLittleEndian(Bytes& bytes, std::uint64_t value, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i, value >>= 8)
    bytes.push_back(static_cast<typename Bytes::value_type>(value & 0xff));
}

}  // namespace vex
