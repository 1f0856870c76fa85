#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace vex {

inline std::string littleEndianBytes(std::uint64_t value, int count) {
  std::string bytes;
  for (int i = 0; i < count; ++i) bytes += static_cast<char>(value >> 8 * i & 0xff);
  return bytes;
}

inline std::string pakRecord(std::string name, std::uint32_t offset, std::uint32_t size) {
  name.resize(32, '\0');
  return name + littleEndianBytes(offset, 4) + littleEndianBytes(size, 4);
}

// A whole archive of the members (name, bytes) in the given order.
inline std::string pakBytes(const std::vector<std::pair<std::string, std::string>>& members) {
  std::string directory = littleEndianBytes(members.size(), 2), data;
  for (const auto& [name, bytes] : members) {
    directory += pakRecord(name, static_cast<std::uint32_t>(2 + 40 * members.size() + data.size()),
                           static_cast<std::uint32_t>(bytes.size()));
    data += bytes;
  }
  return directory + data;
}

}  // namespace vex
