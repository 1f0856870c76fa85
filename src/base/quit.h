#pragma once

#include <cstdint>

namespace vex {

inline std::int8_t quitFlag = 0;

// A flag above 0 makes the next frame shut down.
inline void requestQuit(int flag) {
  quitFlag = static_cast<std::int8_t>(flag);
}

inline int quitRequested() {
  return quitFlag;
}

}  // namespace vex
