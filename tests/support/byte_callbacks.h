#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// Memory behind the codec's byte callbacks.

namespace vex {

inline std::string sunkBytes;
inline std::size_t sinkCapacity = std::string::npos;  // the sink refuses bytes beyond

inline int putIntoSink(int byte) {
  if (sunkBytes.size() >= sinkCapacity) return -1;
  sunkBytes += static_cast<char>(byte);
  return byte;
}

inline void emptySink(std::size_t capacity = std::string::npos) {
  sunkBytes.clear();
  sinkCapacity = capacity;
}

inline std::string_view sourceBytes;  // what is left

inline int getFromSource() {
  if (sourceBytes.empty()) return -1;
  const int byte = static_cast<unsigned char>(sourceBytes.front());
  sourceBytes.remove_prefix(1);
  return byte;
}

}  // namespace vex
